#include "settings/setting.h"

#include <algorithm>
#include <cmath>

#include "settings/decimal_text.h"
#include "store/file/ini_file.h"

namespace tessaro {

bool FlagSetting::Read(const IniFile& settings) const {
  return settings.GetInt(section, key, standard ? 1 : 0) != 0;
}

void FlagSetting::Write(bool value, IniFile& settings) const {
  settings.SetInt(section, key, value ? 1 : 0);
}

int64_t NumberSetting::Read(const IniFile& settings) const {
  return std::clamp(settings.GetInt(section, key, standard), least, most);
}

void NumberSetting::Write(int64_t value, IniFile& settings) const {
  settings.SetInt(section, key, value);
}

double DecimalSetting::Read(const IniFile& settings) const {
  const auto number = LeadingDecimal(settings.GetString(section, key));
  return number ? std::clamp(*number, least, most) : standard;
}

void DecimalSetting::Write(double value, IniFile& settings) const {
  settings.SetString(section, key, DecimalText(value));
}

std::string TextSetting::Read(const IniFile& settings) const {
  return settings.GetString(section, key, standard);
}

bool TextSetting::Write(std::string_view value, IniFile& settings) const {
  return settings.SetString(section, key, value);
}

}  // namespace tessaro
