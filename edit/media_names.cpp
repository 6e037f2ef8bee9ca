#include "edit/media_names.h"

#include <algorithm>

#include "edit/markup_tools.h"
#include "platform/code_page.h"
#include "platform/utf8.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

// A path as cards write it.
std::optional<std::string> InCodePage(const fs::path& path, CodePage page) {
  std::string name;
  for (const char32_t character : path.u32string()) {
    const std::optional<char> byte = page.ByteOf(character);
    if (!byte) return std::nullopt;
    name += *byte == '/' ? '\\' : *byte;
  }
  return name;
}

}  // namespace

std::optional<std::string> RelativeMediaName(const MediaFolders& folders, const fs::path& file) {
  for (const fs::path& folder : {folders.folder, folders.alternative}) {
    if (folder.empty()) continue;
    const fs::path relative = file.lexically_normal().lexically_relative(folder.lexically_normal());
    if (relative.empty() || *relative.begin() == ".." || *relative.begin() == ".") continue;
    for (const CodePage page : {CodePage(), folders.pages.front, folders.pages.back}) {
      if (auto name = InCodePage(relative, page)) return name;
    }
    return std::nullopt;
  }
  return std::nullopt;
}

std::optional<std::string> FullMediaName(const fs::path& file) {
  std::optional<std::string> name = InCodePage(file, {});
  if (name) std::replace(name->begin(), name->end(), '\\', '/');
  return name;
}

std::string PlainNameOf(const fs::path& file) {
  std::string name;
  for (const char32_t character : file.filename().u32string()) {
    name += code_page::ByteOf(character).value_or('_');
  }
  return PlainFileName(name);
}

std::string FreeName(const Disk& disk, const fs::path& folder, std::string_view name) {
  const std::vector<std::string> taken = disk.FileNames(folder);
  const auto is_taken = [&taken](std::string_view wanted) {
    return std::any_of(taken.begin(), taken.end(),
                       [wanted](const std::string& one) { return EqualIgnoringCase(one, wanted); });
  };
  const size_t point = std::min(name.rfind('.'), name.size());
  std::string free(name);
  for (int number = 2; is_taken(free) || disk.Exists(folder / free); ++number) {
    free = std::string(name.substr(0, point)) + "_" + std::to_string(number) + std::string(name.substr(point));
  }
  return free;
}

bool WriteNewFile(Disk& disk, const fs::path& to, std::string_view bytes) {
  if (disk.Exists(to) || !disk.MakeFolder(to.parent_path())) return false;
  const std::unique_ptr<WritableFile> file = disk.Create(to);
  if (file != nullptr && file->Write(bytes) && file->Flush() && file->Close()) return true;
  (void)disk.Remove(to);
  return false;
}

bool CopyFile(Disk& disk, const fs::path& from, const fs::path& to) {
  const std::optional<std::string> bytes = ReadFile(disk, from);
  return bytes && WriteNewFile(disk, to, *bytes);
}

}  // namespace tessaro
