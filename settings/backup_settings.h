#pragma once

#include "store/file/backup_generations.h"

namespace tessaro {

class IniFile;

GenerationSettings ReadGenerationSettings(const IniFile& settings);

}  // namespace tessaro
