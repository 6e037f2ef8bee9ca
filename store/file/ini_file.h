#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

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
  std::string text_;
};

}  // namespace tessaro
