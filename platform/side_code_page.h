#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/code_page.h"

// The code pages that card sides are written in, one byte a character. All other text of the program is Windows-1252.
namespace tessaro {

enum class CharacterSet : uint8_t {
  Western,
  CentralEuropean,
  Cyrillic,
  Greek,
  Turkish,
  Baltic,
  Hebrew,
  Arabic,
  Thai,
};
inline constexpr size_t kCharacterSets = 9;

namespace code_page {

struct Tables {
  CharacterSet set = CharacterSet::Western;
  std::array<char16_t, 256> characters = {};
  std::array<char, 256> upper = {};
  std::array<char, 256> folded = {};
  std::array<bool, 256> letter = {};
  std::array<char, 128> high_bytes = {};  // those from 0x80 on, by their characters
};

inline constexpr Tables kWestern = [] {
  Tables tables;
  for (size_t i = 0; i < 256; ++i) tables.characters[i] = CharacterOf(static_cast<char>(i));
  tables.upper = kUpper;
  for (size_t i = 0; i < 256; ++i) tables.folded[i] = kLower[static_cast<uint8_t>(kUpper[i])];
  // Those with two cases, and the few with one: ß, ƒ, ª, º and µ.
  constexpr std::array<size_t, 5> kOneCase = {0xDF, 0x83, 0xAA, 0xBA, 0xB5};
  for (size_t i = 0; i < 256; ++i) {
    const auto c = static_cast<char>(i);
    const bool one_case = std::find(kOneCase.begin(), kOneCase.end(), i) != kOneCase.end();
    tables.letter[i] = kUpper[i] != c || kLower[i] != c || one_case;
  }
  return tables;
}();

}  // namespace code_page

// A code page, passed by value. At first it is Windows-1252.
class CodePage {
 public:
  constexpr CodePage() = default;
  // The tables are made once for each set.
  explicit CodePage(CharacterSet set);

  CharacterSet set() const { return tables_->set; }
  bool western() const { return tables_ == &code_page::kWestern; }
  bool right_to_left() const { return set() == CharacterSet::Hebrew || set() == CharacterSet::Arabic; }

  // All 256 bytes have one, and come back by ByteOf.
  char16_t CharacterOf(char byte) const { return tables_->characters[static_cast<uint8_t>(byte)]; }
  // Nothing when the code page lacks the character.
  std::optional<char> ByteOf(char32_t character) const {
    if (western()) return code_page::ByteOf(character);
    return character < 0x80 ? std::optional(static_cast<char>(character)) : HighByteOf(character);
  }
  std::u16string Characters(std::string_view bytes) const;

  // Letters as the languages of the code page have them: in the Turkish one the large "i" has its dot.
  char ToUpper(char c) const { return tables_->upper[static_cast<uint8_t>(c)]; }
  // The small letter, and the same one for all forms of a letter: Greek has two small ones.
  char Folded(char c) const { return tables_->folded[static_cast<uint8_t>(c)]; }
  std::string Folded(std::string text) const {
    for (char& c : text) c = Folded(c);
    return text;
  }
  bool IsLetter(char c) const { return tables_->letter[static_cast<uint8_t>(c)]; }

  bool operator==(const CodePage& other) const { return tables_ == other.tables_; }

 private:
  std::optional<char> HighByteOf(char32_t character) const;

  const code_page::Tables* tables_ = &code_page::kWestern;
};

// Those of the two sides of a card.
struct SideCodePages {
  CodePage front;
  CodePage back;

  bool western() const { return front.western() && back.western(); }
  bool operator==(const SideCodePages&) const = default;
};

// The bytes in another code page. Nothing when that lacks one of the characters.
std::optional<std::string> Converted(std::string_view bytes, CodePage from, CodePage to);
// The characters that the other code page lacks, each once.
std::u16string Lacking(std::string_view bytes, CodePage from, CodePage to);

}  // namespace tessaro
