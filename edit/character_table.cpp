#include "edit/character_table.h"

#include "platform/code_page.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr std::string_view kSection = "ZEICHEN";
constexpr size_t kMostCells = 1024;

std::string_view KeyOf(EditSide side) {
  return side == EditSide::Front ? "SIGN" : "SIGNH";
}

// Bytes to which the code page gives no character, and those that leave no trace on paper.
bool IsInvisible(int byte) {
  return byte == 0x81 || byte == 0x8D || byte == 0x8F || byte == 0x90 || byte == 0x9D || byte == 0xA0 || byte == 0xAD;
}

}  // namespace

std::string DefaultCharacters() {
  constexpr int kFirstHigh = 0x80;
  std::string characters = "[]{}|\\~@^`";
  for (int byte = kFirstHigh; byte <= 0xFF; ++byte) {
    if (!IsInvisible(byte)) characters += static_cast<char>(byte);
  }
  return characters;
}

std::string ReadCharacters(const IniFile& settings, EditSide side) {
  std::string text = settings.GetString(kSection, KeyOf(side));
  std::string characters;
  for (size_t at = 0; at < text.size() && characters.size() < kMostCells; ++at) {
    const int64_t byte = LeadingNumber(std::string_view(text).substr(at));
    if (byte < ' ' || byte > 0xFF) return DefaultCharacters();
    characters += static_cast<char>(byte);
    at = text.find(' ', at);
    if (at == std::string::npos) break;
  }
  return characters.empty() ? DefaultCharacters() : characters;
}

void WriteCharacters(std::string_view characters, EditSide side, IniFile& settings) {
  std::string text;
  for (const char c : characters) {
    if (!text.empty()) text += ' ';
    text += std::to_string(static_cast<unsigned char>(c));
  }
  settings.SetString(kSection, KeyOf(side), text);
}

}  // namespace tessaro
