#include "platform/side_code_page.h"

#include <unicode/uchar.h>
#include <unicode/ucnv.h>

#include <algorithm>

namespace tessaro {
namespace {

using code_page::Tables;

constexpr std::array<const char*, kCharacterSets> kConverters = {"windows-1252", "windows-1250", "windows-1251",
                                                                 "windows-1253", "windows-1254", "windows-1257",
                                                                 "windows-1255", "windows-1256", "windows-874"};

constexpr char16_t kNoCharacter = 0xFFFD;
// Of the private area, added to a byte that the converter has no character for.
constexpr char16_t kPrivate = 0xF800;

// Without its converter a set would keep its bytes and show ASCII alone.
void ReadCharacters(Tables& tables) {
  UErrorCode error = U_ZERO_ERROR;
  UConverter* converter = ucnv_open(kConverters[static_cast<size_t>(tables.set)], &error);
  for (size_t i = 0; i < tables.characters.size(); ++i) {
    const auto byte = static_cast<char>(i);
    UChar character = 0;
    UErrorCode fault = U_ZERO_ERROR;
    const int32_t length = converter == nullptr ? 0 : ucnv_toUChars(converter, &character, 1, &byte, 1, &fault);
    const bool known = length == 1 && fault <= U_ZERO_ERROR && character != kNoCharacter;
    tables.characters[i] = i < 0x80 ? static_cast<char16_t>(i)
                           : known  ? character
                                    : static_cast<char16_t>(kPrivate + i);
  }
  ucnv_close(converter);
}

std::optional<char> HighByte(const Tables& tables, char32_t character) {
  const auto of = [&](char byte) { return tables.characters[static_cast<uint8_t>(byte)]; };
  const auto at = std::lower_bound(tables.high_bytes.begin(), tables.high_bytes.end(), character,
                                   [&](char byte, char32_t wanted) { return of(byte) < wanted; });
  return at != tables.high_bytes.end() && of(*at) == character ? std::optional(*at) : std::nullopt;
}

// The character itself where the code page lacks the other form.
char Form(const Tables& tables, size_t byte, UChar32 form) {
  if (form < 0x80) return static_cast<char>(form);
  return HighByte(tables, static_cast<char32_t>(form)).value_or(static_cast<char>(byte));
}

void ReadLetters(Tables& tables) {
  constexpr UChar32 kDottedCapital = 0x0130;
  constexpr UChar32 kDotlessSmall = 0x0131;
  const bool turkish = tables.set == CharacterSet::Turkish;
  for (size_t i = 0; i < tables.characters.size(); ++i) {
    const UChar32 character = tables.characters[i];
    tables.upper[i] = Form(tables, i, turkish && character == 'i' ? kDottedCapital : u_toupper(character));
    const int type = u_charType(character);
    tables.letter[i] = type == U_UPPERCASE_LETTER || type == U_LOWERCASE_LETTER || type == U_OTHER_LETTER;
  }
  for (size_t i = 0; i < tables.characters.size(); ++i) {
    const auto upper = static_cast<uint8_t>(tables.upper[i]);
    const UChar32 character = tables.characters[upper];
    tables.folded[i] = Form(tables, upper, turkish && character == 'I' ? kDotlessSmall : u_tolower(character));
  }
}

Tables MakeTables(CharacterSet set) {
  Tables tables;
  tables.set = set;
  ReadCharacters(tables);
  for (size_t i = 0; i < tables.high_bytes.size(); ++i) tables.high_bytes[i] = static_cast<char>(i + 0x80);
  std::sort(tables.high_bytes.begin(), tables.high_bytes.end(), [&](char a, char b) {
    return tables.characters[static_cast<uint8_t>(a)] < tables.characters[static_cast<uint8_t>(b)];
  });
  ReadLetters(tables);
  return tables;
}

template <CharacterSet set>
const Tables& TablesOf() {
  static const Tables kTables = MakeTables(set);
  return kTables;
}

const Tables& TablesOf(CharacterSet set) {
  switch (set) {
    case CharacterSet::Western:
      break;
    case CharacterSet::CentralEuropean:
      return TablesOf<CharacterSet::CentralEuropean>();
    case CharacterSet::Cyrillic:
      return TablesOf<CharacterSet::Cyrillic>();
    case CharacterSet::Greek:
      return TablesOf<CharacterSet::Greek>();
    case CharacterSet::Turkish:
      return TablesOf<CharacterSet::Turkish>();
    case CharacterSet::Baltic:
      return TablesOf<CharacterSet::Baltic>();
    case CharacterSet::Hebrew:
      return TablesOf<CharacterSet::Hebrew>();
    case CharacterSet::Arabic:
      return TablesOf<CharacterSet::Arabic>();
    case CharacterSet::Thai:
      return TablesOf<CharacterSet::Thai>();
  }
  return code_page::kWestern;
}

}  // namespace

CodePage::CodePage(CharacterSet set) : tables_(&TablesOf(set)) {}

std::optional<char> CodePage::HighByteOf(char32_t character) const {
  return HighByte(*tables_, character);
}

std::u16string CodePage::Characters(std::string_view bytes) const {
  std::u16string text(bytes.size(), u'\0');
  std::transform(bytes.begin(), bytes.end(), text.begin(), [this](char byte) { return CharacterOf(byte); });
  return text;
}

std::optional<std::string> Converted(std::string_view bytes, CodePage from, CodePage to) {
  std::string converted(bytes);
  if (from == to) return converted;
  for (char& c : converted) {
    const std::optional<char> byte = to.ByteOf(from.CharacterOf(c));
    if (!byte) return std::nullopt;
    c = *byte;
  }
  return converted;
}

std::u16string Lacking(std::string_view bytes, CodePage from, CodePage to) {
  std::u16string lacking;
  if (from == to) return lacking;
  for (const char c : bytes) {
    const char16_t character = from.CharacterOf(c);
    if (!to.ByteOf(character) && lacking.find(character) == std::u16string::npos) lacking += character;
  }
  return lacking;
}

}  // namespace tessaro
