#pragma once

#include <filesystem>

#include "platform/disk.h"
#include "store/file/ini_file.h"

namespace tessaro {

// The program's own settings, tessaro.ini, in memory while the program runs.
struct ProgramSettings {
  IniFile ini;
  std::filesystem::path path;

  // Brings what was set here since the last time into the file, and what others have written there meanwhile into
  // `ini`: only keys that this program set are changed, lists as a whole. Others who do so wait. False leaves the file
  // as it was; the next time tries it again.
  [[nodiscard]] bool Save(Disk& disk);
};

}  // namespace tessaro
