#pragma once

#include "store/file/backup_generations.h"

namespace tessaro {

class IniFile;

// Whether dated copies are made and how many megabytes they may take, from section "Sicherungen"; what is missing or
// out of bounds gets its default or the nearest bound.
GenerationSettings ReadGenerationSettings(const IniFile& settings);

}  // namespace tessaro
