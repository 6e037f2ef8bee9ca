// Reads any bytes as settings, and sees to it that what is set reads back and the rest stays.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/code_page.h"
#include "store/file/ini_file.h"

namespace {

void Require(bool good) {
  if (!good) std::abort();
}

// Takes a short text off the front.
std::string Take(std::string_view& bytes) {
  if (bytes.empty()) return {};
  const size_t size = static_cast<unsigned char>(bytes.front()) % 8U;
  std::string text(bytes.substr(1, size));
  bytes.remove_prefix(1 + text.size());
  return text;
}

}  // namespace

// The first bytes are a section, a key and a value; the rest is the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::string section = Take(bytes);
  const std::string key = Take(bytes);
  const std::string value = Take(bytes);

  tessaro::IniFile ini;
  ini.Parse(bytes);
  Require(ini.Text() == bytes);
  Require(ini.Has(section, key) || ini.GetString(section, key, "none") == "none");
  (void)ini.GetInt(section, key, 5);
  const std::string other = ini.GetString("POS", "x", "none");

  if (ini.SetString(section, key, value)) {
    Require(ini.GetString(section, key, "none") == value);
    tessaro::IniFile again;
    again.Parse(ini.Text());
    Require(again.GetString(section, key, "none") == value);
    const std::string text = ini.Text();
    Require(ini.SetString(section, key, value) && ini.Text() == text);
    if (!tessaro::EqualIgnoringCase(section, "POS")) Require(ini.GetString("POS", "x", "none") == other);
  } else {
    Require(ini.Text() == bytes);
  }
  ini.Remove(section, key);
  Require(!ini.Has(section, key));
  return 0;
}
