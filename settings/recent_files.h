#pragma once

#include <filesystem>
#include <vector>

namespace tessaro {

class IniFile;

// The card files opened last, newest first, each once; section "RECENT" of the program's settings, keys "1" to "8".
std::vector<std::filesystem::path> RecentFiles(const IniFile& settings);
// Puts a file at the top; the list keeps its length.
void AddRecentFile(IniFile& settings, const std::filesystem::path& path);
void RemoveRecentFile(IniFile& settings, const std::filesystem::path& path);

}  // namespace tessaro
