#include "hypertext/media.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/disk.h"
#include "store/code_page.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSeparators = "\\/";

// Bytes of the code page as UTF-8, which file names are in.
std::string ToUtf8(std::string_view bytes) {
  std::string utf8;
  for (const char byte : bytes) {
    const auto value = static_cast<uint8_t>(byte);
    const unsigned character = value >= 0x80 && value < 0xA0 ? code_page::kHighControls[value - 0x80] : value;
    if (character < 0x80) {
      utf8 += byte;
    } else if (character < 0x800) {
      utf8 += {static_cast<char>(0xC0 | character >> 6U), static_cast<char>(0x80 | (character & 0x3FU))};
    } else {
      utf8 += {static_cast<char>(0xE0 | character >> 12U), static_cast<char>(0x80 | (character >> 6U & 0x3FU)),
               static_cast<char>(0x80 | (character & 0x3FU))};
    }
  }
  return utf8;
}

// The character that a UTF-8 text begins with and how many bytes it takes; nothing for what no code page byte is: four
// bytes and more, and what is no UTF-8.
std::optional<std::pair<unsigned, size_t>> FirstCharacter(std::string_view utf8) {
  const auto byte = [utf8](size_t at) -> unsigned { return at < utf8.size() ? static_cast<uint8_t>(utf8[at]) : 0; };
  const auto follows = [byte](size_t at) { return (byte(at) & 0xC0U) == 0x80U; };
  if (byte(0) < 0x80) return std::pair(byte(0), size_t{1});
  if ((byte(0) & 0xE0U) == 0xC0U && follows(1))
    return std::pair((byte(0) & 0x1FU) << 6U | (byte(1) & 0x3FU), size_t{2});
  if ((byte(0) & 0xF0U) != 0xE0U || !follows(1) || !follows(2)) return std::nullopt;
  return std::pair((byte(0) & 0x0FU) << 12U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU), size_t{3});
}

std::optional<char> ByteOfCharacter(unsigned character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<char>(character);
  const auto& high = code_page::kHighControls;
  const auto* found = std::find(high.begin(), high.end(), character);
  if (found == high.end()) return std::nullopt;
  return static_cast<char>(0x80 + (found - high.begin()));
}

std::string LowerCase(std::string_view bytes) {
  std::string lower(bytes);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return ToLower(c); });
  return lower;
}

// A name on the disk, as cards write it, in lower case. A name that is not UTF-8 comes from an old system: its bytes
// are taken for the code page's own.
std::string LowerCaseOfDiskName(std::string_view name) {
  std::string bytes;
  for (size_t at = 0; at < name.size();) {
    const auto first = FirstCharacter(name.substr(at));
    const auto byte = first ? ByteOfCharacter(first->first) : std::nullopt;
    if (!byte) return LowerCase(name);
    bytes += *byte;
    at += first->second;
  }
  return LowerCase(bytes);
}

std::vector<std::string_view> PartsOf(std::string_view name) {
  std::vector<std::string_view> parts;
  while (!name.empty()) {
    const std::string_view part = name.substr(0, name.find_first_of(kSeparators));
    name.remove_prefix(std::min(part.size() + 1, name.size()));
    if (!part.empty() && part != ".") parts.push_back(part);
  }
  return parts;
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

MediaFinder::MediaFinder(const Disk& disk, MediaFolders folders) : disk_(&disk), folders_(std::move(folders)) {}

void MediaFinder::Forget() {
  known_.clear();
}

std::optional<fs::path> MediaFinder::Find(std::string_view name) {
  std::vector<std::string_view> parts = PartsOf(name);
  if (parts.empty() || parts.back() == ".." || name.find('\0') != std::string_view::npos) return std::nullopt;
  if (name.size() > 1 && name[1] == ':') {
    const fs::path drive = std::string(name.substr(0, 2)) + "/";
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
  for (const std::string_view part : parts) exact /= ToUtf8(part);
  if (disk_->Exists(exact)) return exact;
  for (size_t i = 0; i < parts.size(); ++i) {
    if (parts[i] == "..") {
      folder /= "..";
      continue;
    }
    const Folder& names = NamesIn(folder);
    const Names& candidates = i + 1 < parts.size() ? names.folders : names.files;
    const auto match = candidates.find(LowerCase(parts[i]));
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
