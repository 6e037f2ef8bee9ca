#include "edit/character_table.h"

#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr std::string_view kSection = "ZEICHEN";
constexpr size_t kMostCells = 1024;

// Each code page has a table of its own.
std::string KeyOf(EditSide side, CodePage page) {
  const std::string key = side == EditSide::Front ? "SIGN" : "SIGNH";
  return page.western() ? key : key + std::to_string(static_cast<int>(page.set()));
}

// Bytes to which the code page gives no character, and those that leave no trace on paper.
bool IsInvisible(char16_t character) {
  const bool control = character >= 0x80 && character <= 0xA0;
  const bool format = character == 0xAD || (character >= 0x200B && character <= 0x200F);
  const bool own = character >= 0xE000 && character < 0xF900;
  return control || format || own;
}

}  // namespace

std::string DefaultCharacters(CodePage page) {
  constexpr int kFirstHigh = 0x80;
  std::string characters = "[]{}|\\~@^`";
  for (int byte = kFirstHigh; byte <= 0xFF; ++byte) {
    const auto character = static_cast<char>(byte);
    if (!IsInvisible(page.CharacterOf(character))) characters += character;
  }
  return characters;
}

std::string ReadCharacters(const IniFile& settings, EditSide side, CodePage page) {
  std::string text = settings.GetString(kSection, KeyOf(side, page));
  std::string characters;
  for (size_t at = 0; at < text.size() && characters.size() < kMostCells; ++at) {
    const int64_t byte = LeadingNumber(std::string_view(text).substr(at));
    if (byte < ' ' || byte > 0xFF) return DefaultCharacters(page);
    characters += static_cast<char>(byte);
    at = text.find(' ', at);
    if (at == std::string::npos) break;
  }
  return characters.empty() ? DefaultCharacters(page) : characters;
}

void WriteCharacters(std::string_view characters, EditSide side, IniFile& settings, CodePage page) {
  std::string text;
  for (const char c : characters) {
    if (!text.empty()) text += ' ';
    text += std::to_string(static_cast<unsigned char>(c));
  }
  settings.SetString(kSection, KeyOf(side, page), text);
}

}  // namespace tessaro
