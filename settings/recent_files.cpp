#include "settings/recent_files.h"

#include <string>

#include "store/file/ini_file.h"

namespace tessaro {
namespace {

constexpr std::string_view kSection = "RECENT";
constexpr size_t kMost = 8;

void Write(IniFile& settings, const std::vector<std::filesystem::path>& files) {
  for (size_t i = 0; i < kMost; ++i) {
    const std::string key = std::to_string(i + 1);
    if (i >= files.size() || !settings.SetString(kSection, key, files[i].string())) settings.Remove(kSection, key);
  }
}

}  // namespace

std::vector<std::filesystem::path> RecentFiles(const IniFile& settings) {
  std::vector<std::filesystem::path> files;
  for (size_t i = 1; i <= kMost; ++i) {
    std::string file = settings.GetString(kSection, std::to_string(i));
    if (!file.empty()) files.emplace_back(std::move(file));
  }
  return files;
}

void AddRecentFile(IniFile& settings, const std::filesystem::path& path) {
  std::vector<std::filesystem::path> files = RecentFiles(settings);
  std::erase(files, path);
  files.insert(files.begin(), path);
  if (files.size() > kMost) files.resize(kMost);
  Write(settings, files);
}

void RemoveRecentFile(IniFile& settings, const std::filesystem::path& path) {
  std::vector<std::filesystem::path> files = RecentFiles(settings);
  std::erase(files, path);
  Write(settings, files);
}

}  // namespace tessaro
