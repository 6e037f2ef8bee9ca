#include "settings/backup_settings.h"

#include "settings/keys.h"

namespace tessaro {

GenerationSettings ReadGenerationSettings(const IniFile& settings) {
  return {.on = keys::kBackups.Read(settings), .most_mb = keys::kBackupMegabytes.Read(settings)};
}

}  // namespace tessaro
