#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tessaro {

class IniFile;

// One value of an INI file: where it stands, what holds while it does not stand there, and its bounds. The program's
// values are all listed in keys.h.

struct FlagSetting {
  std::string_view section;
  std::string_view key;
  bool standard = false;
  // Any number but 0 is true.
  bool Read(const IniFile& settings) const;
  void Write(bool value, IniFile& settings) const;
};

struct NumberSetting {
  std::string_view section;
  std::string_view key;
  int64_t standard = 0;
  int64_t least = INT64_MIN;
  int64_t most = INT64_MAX;
  bool Allows(int64_t value) const { return value >= least && value <= most; }
  // What stands out of bounds is taken for the nearest bound.
  int64_t Read(const IniFile& settings) const;
  void Write(int64_t value, IniFile& settings) const;
};

// A decimal number, written with "."; a "," is read, too.
struct DecimalSetting {
  std::string_view section;
  std::string_view key;
  double standard = 0;
  double least = 0;
  double most = 0;
  bool Allows(double value) const { return value >= least && value <= most; }
  // What is out of bounds is taken for the nearest bound, what is no number for the standard.
  double Read(const IniFile& settings) const;
  void Write(double value, IniFile& settings) const;
};

struct TextSetting {
  std::string_view section;
  std::string_view key;
  std::string_view standard;
  std::string Read(const IniFile& settings) const;
  // False for a text that no INI line can hold; the old one stays.
  [[nodiscard]] bool Write(std::string_view value, IniFile& settings) const;
};

}  // namespace tessaro
