#include "app/sample_files.h"

#include <algorithm>
#include <system_error>

#include "store/file/card_file.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr const char* kMediaFolder = "Medien";

// The folder of this name with card files in it.
fs::path FindFolder(const fs::path& program_folder, const char* name) {
  constexpr int kLevels = 4;
  fs::path level = program_folder;
  for (int i = 0; i < kLevels; ++i, level = level.parent_path()) {
    for (const fs::path& folder : {level / name, level / "share" / "tessaro" / name}) {
      if (!SampleFiles(folder).empty()) return folder;
    }
  }
  return {};
}

// Under a name of its own until it is whole, so that a full disk leaves no half file that looks like the user's own.
bool CopyIfMissing(const fs::path& from, const fs::path& to) {
  std::error_code error;
  if (fs::exists(to, error)) return true;
  fs::path unfinished = to;
  unfinished += ".neu";
  fs::copy_file(from, unfinished, fs::copy_options::overwrite_existing, error);
  if (!error) fs::rename(unfinished, to, error);
  if (!error) return true;
  fs::remove(unfinished, error);
  return false;
}

bool CopyMedia(const fs::path& from, const fs::path& to) {
  std::error_code error;
  if (!fs::is_directory(from, error)) return true;
  fs::create_directories(to, error);
  if (error) return false;
  const std::vector<fs::path> files{fs::directory_iterator(from, error), fs::directory_iterator()};
  return !error && std::all_of(files.begin(), files.end(), [&](const fs::path& file) {
    return !fs::is_regular_file(file) || CopyIfMissing(file, to / file.filename());
  });
}

// Samples come without index files; a first saving makes them.
bool MakeIndexes(const fs::path& path) {
  CardFile file;
  return file.Open(path).result == OpenResult::Opened && file.Save() == SaveResult::Saved;
}

}  // namespace

fs::path FindSampleFolder(const fs::path& program_folder) {
  return FindFolder(program_folder, "samples");
}

fs::path FindHelp(const fs::path& program_folder) {
  const fs::path folder = FindFolder(program_folder, "help");
  return folder.empty() ? fs::path() : SampleFiles(folder).front();
}

std::vector<fs::path> SampleFiles(const fs::path& folder) {
  std::error_code error;
  std::vector<fs::path> files{fs::directory_iterator(folder, error), fs::directory_iterator()};
  std::erase_if(files, [](const fs::path& file) { return !HasCardFileType(file); });
  std::sort(files.begin(), files.end());
  return files;
}

std::optional<fs::path> OwnCopyOfSample(const fs::path& sample, const fs::path& documents) {
  std::error_code error;
  const fs::path copy = documents / sample.filename();
  if (fs::exists(copy, error)) return copy;
  fs::create_directories(documents, error);
  if (error || !CopyMedia(sample.parent_path() / kMediaFolder, documents / kMediaFolder)) return std::nullopt;
  const CardFilePaths from = PathsFor(sample);
  if (fs::exists(from.settings, error) && !CopyIfMissing(from.settings, PathsFor(copy).settings)) return std::nullopt;
  if (!CopyIfMissing(sample, copy) || !MakeIndexes(copy)) return std::nullopt;
  return copy;
}

}  // namespace tessaro
