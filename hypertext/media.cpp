#include "hypertext/media.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/code_page.h"
#include "platform/disk.h"
#include "platform/utf8.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSeparators = "\\/";
constexpr size_t kMostLevels = 64;  // of folders in a name

// A name on the disk, as cards write it, in lower case. A name that is not UTF-8 comes from an old system: its bytes
// are taken for the code page's own.
std::string LowerCaseOfDiskName(std::string_view name) {
  std::string bytes;
  for (size_t at = 0; at < name.size();) {
    const auto first = FirstUtf8(name.substr(at));
    const auto byte = first ? code_page::ByteOf(first->first) : std::nullopt;
    if (!byte) return LowerCase(std::string(name));
    bytes += *byte;
    at += first->second;
  }
  return LowerCase(std::move(bytes));
}

// Where a folder and then ".." stand in the name, both are left out: what a card names has one spelling.
std::vector<std::string_view> PartsOf(std::string_view name) {
  std::vector<std::string_view> parts;
  while (!name.empty()) {
    const std::string_view part = name.substr(0, name.find_first_of(kSeparators));
    name.remove_prefix(std::min(part.size() + 1, name.size()));
    if (part.empty() || part == ".") continue;
    if (part == ".." && !parts.empty() && parts.back() != "..") {
      parts.pop_back();
    } else {
      parts.push_back(part);
    }
  }
  return parts;
}

// Without dots and without a separator at its end.
fs::path PlainFolder(const fs::path& folder) {
  const fs::path plain = folder.lexically_normal();
  return plain.has_filename() ? plain : plain.parent_path();
}

struct DirectiveForm {
  std::string_view mark;
  std::array<std::string_view, 4> endings;
};

// The endings apply in exactly these forms.
constexpr DirectiveForm FormOf(MediaKind kind) {
  switch (kind) {
    case MediaKind::Picture:
      return {"#SHOW:", {".bmp", ".BMP", ".jpg", ".JPG"}};
    case MediaKind::Video:
      return {"#PLAY:", {".avi", ".AVI", ".mpg", ".MPG"}};
    case MediaKind::Sound:
      return {"#WAVE:", {".wav", ".WAV", ".mid", ".MID"}};
    case MediaKind::Text:
      break;
  }
  return {"#TEXT:", {".txt", ".TXT", ".rtf", ".RTF"}};
}

// The name that `text` begins with: up to a blank, line end or bracket, and at most the dot, three letters and a marker
// from its first dot on.
std::string_view DirectiveName(std::string_view text) {
  text = text.substr(0, text.find_first_of(" \r\n<>"));
  const size_t dot = text.find('.');
  return dot == std::string_view::npos ? text : text.substr(0, dot + 5);
}

}  // namespace

MediaFolders FoldersOf(const fs::path& card_file, std::string_view media_folder, const SideCodePages& pages) {
  const fs::path folder = card_file.parent_path();
  return {folder, folder / Utf8FromCodePage(media_folder), pages};
}

MediaFinder::MediaFinder(const Disk& disk, const MediaFolders& folders)
    : disk_(&disk), folders_({PlainFolder(folders.folder), PlainFolder(folders.alternative), folders.pages}) {}

void MediaFinder::Forget() {
  known_.clear();
}

std::optional<fs::path> MediaFinder::Find(std::string_view name) {
  const auto& [front, back] = folders_.pages;
  auto found = FindUtf8(Utf8FromCodePage(name, front));
  if (!found && !(back == front)) found = FindUtf8(Utf8FromCodePage(name, back));
  if (!found && !front.western() && !back.western()) found = FindUtf8(Utf8FromCodePage(name));
  return found;
}

std::optional<fs::path> MediaFinder::FindUtf8(std::string_view name) {
  std::vector<std::string_view> parts = PartsOf(name);
  if (parts.empty() || parts.back() == ".." || parts.size() > kMostLevels || name.find('\0') != std::string_view::npos)
    return std::nullopt;
  if (name.size() > 1 && name[1] == ':') {
    const fs::path drive = std::string(name.substr(0, 2)) + "/";
    if (!drive.is_absolute()) return std::nullopt;  // this system has no drives
    parts.front().remove_prefix(std::min<size_t>(2, parts.front().size()));
    if (parts.front().empty()) parts.erase(parts.begin());
    return FindIn(drive, parts);
  }
  for (const fs::path& folder : {folders_.folder, folders_.alternative}) {
    if (folder.empty()) continue;
    if (auto found = FindIn(folder, parts)) return found;
  }
  if (name.front() == '/') return FindIn("/", parts);
  return std::nullopt;
}

std::optional<fs::path> MediaFinder::FindIn(fs::path folder, const std::vector<std::string_view>& parts) {
  if (parts.empty()) return std::nullopt;
  fs::path exact = folder;
  for (const std::string_view part : parts) exact /= part;
  if (disk_->Exists(exact)) return exact;
  for (size_t i = 0; i < parts.size(); ++i) {
    if (parts[i] == "..") {
      folder = folder.parent_path();
      continue;
    }
    const Folder& names = NamesIn(folder);
    const Names& candidates = i + 1 < parts.size() ? names.folders : names.files;
    const auto match = candidates.find(LowerCaseOfDiskName(parts[i]));
    if (match == candidates.end()) return std::nullopt;
    folder /= match->second;
  }
  return folder;
}

const MediaFinder::Folder& MediaFinder::NamesIn(const fs::path& folder) {
  const auto [known, is_new] = known_.try_emplace(folder.string());
  if (is_new) {
    const auto keep = [](const std::vector<std::string>& names, Names& kept) {
      for (const std::string& name : names) kept.emplace(LowerCaseOfDiskName(name), name);
    };
    keep(disk_->FileNames(folder), known->second.files);
    keep(disk_->FolderNames(folder), known->second.folders);
  }
  return known->second;
}

std::optional<fs::path> FindMedia(const Disk& disk, const MediaFolders& folders, std::string_view name) {
  return MediaFinder(disk, folders).Find(name);
}

std::optional<MediaDirective> FindDirective(std::string_view side, MediaKind kind) {
  const DirectiveForm form = FormOf(kind);
  const size_t at = side.find(form.mark);
  if (at == std::string_view::npos) return std::nullopt;
  const bool applies = std::any_of(form.endings.begin(), form.endings.end(), [side](std::string_view ending) {
    return side.find(ending) != std::string_view::npos;
  });
  std::string_view name = DirectiveName(side.substr(at + form.mark.size()));
  // Deliberate: of texts the marker has the opposite sense, and another sign.
  bool text_first = kind == MediaKind::Text;
  if (name.ends_with('+')) {
    text_first = true;
    name.remove_suffix(1);
  } else if (kind == MediaKind::Text && name.ends_with('!')) {
    text_first = false;
    name.remove_suffix(1);
  }
  if (!applies || name.empty()) return std::nullopt;
  return MediaDirective{std::string(name), text_first};
}

}  // namespace tessaro
