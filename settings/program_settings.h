#pragma once

#include <filesystem>

#include "platform/disk.h"
#include "store/file/ini_file.h"

namespace tessaro {

// The program's own settings, tessaro.ini, in memory while the program runs.
struct ProgramSettings {
  IniFile ini;
  std::filesystem::path path;
  [[nodiscard]] bool Save(Disk& disk) const { return ini.Save(disk, path); }
};

}  // namespace tessaro
