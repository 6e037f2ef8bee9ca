#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaro {

class Disk;

// Settings in sections and keys, as bytes. What this program does not know (comments, foreign keys, blank lines, their
// order) is written back as it was read. Sections and keys are found without regard to case; of a doubled key the first
// counts.
class IniFile {
 public:
  // Takes any bytes; lines that are neither section, key nor comment are kept and mean nothing.
  void Parse(std::string_view text);
  const std::string& Text() const { return text_; }

  // A missing file reads as empty. False when there is a file that could not be read.
  [[nodiscard]] bool Load(Disk& disk, const std::filesystem::path& path);
  // Replaces the file in one step; a failure leaves the old file as it was.
  [[nodiscard]] bool Save(Disk& disk, const std::filesystem::path& path) const;

  // Whether anything was set to another value, or removed, since it was loaded.
  bool changed() const { return !touched_.empty(); }
  // Does all that to `other` as well. Of the sections `lists`, of which any key was touched, it gets all keys and no
  // others.
  void RepeatIn(IniFile& other, std::span<const std::string_view> lists) const;

  bool Has(std::string_view section, std::string_view key) const;
  std::string GetString(std::string_view section, std::string_view key, std::string_view fallback = {}) const;
  // The leading decimal number of the value; the fallback when the key is missing or its value has no digits.
  int64_t GetInt(std::string_view section, std::string_view key, int64_t fallback) const;
  // What is set reads back the same, blanks and quotes at its ends included. False for text that no INI line can hold
  // (a line end or a zero byte in it).
  bool SetString(std::string_view section, std::string_view key, std::string_view value);
  bool SetInt(std::string_view section, std::string_view key, int64_t value);
  void Remove(std::string_view section, std::string_view key);
  // With all that stands in it, comments too.
  void RemoveSection(std::string_view section);

 private:
  struct Name {
    std::string section;
    std::string key;
  };
  void Touch(std::string_view section, std::string_view key);
  std::vector<std::string> KeysOf(std::string_view section) const;

  std::string text_;
  std::vector<Name> touched_;
};

}  // namespace tessaro
