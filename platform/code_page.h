#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The code page of card texts, Windows-1252: its characters, literals in it, and the case of its letters. Sources are
// UTF-8; a literal that goes into or is compared with card text is written "Menü"_cp and is converted by the compiler.
namespace tessaro {
namespace code_page {

// The characters of the bytes 0x80 ... 0x9F; the five bytes without a character stand for themselves.
inline constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

// All 256 bytes have one, and come back by ByteOf.
constexpr char16_t CharacterOf(char byte) {
  const auto value = static_cast<uint8_t>(byte);
  return value >= 0x80 && value < 0xA0 ? kHighControls[value - 0x80U] : value;
}

// Nothing when the code page lacks the character.
constexpr std::optional<char> ByteOf(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<char>(character);
  for (size_t i = 0; i < kHighControls.size(); ++i) {
    if (kHighControls[i] == character) return static_cast<char>(0x80 + i);
  }
  return std::nullopt;
}

// A literal of UTF-8 bytes, turned into the code page as it is made.
template <size_t N>
struct Literal {
  std::array<char, N> bytes = {};
  size_t size = 0;

  // NOLINTNEXTLINE(google-explicit-constructor): a literal operator takes it from the bare literal.
  consteval Literal(const char (&utf8)[N]) {
    for (size_t i = 0; i + 1 < N;) {
      const auto lead = static_cast<uint8_t>(utf8[i]);
      const size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
      char32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
      for (size_t k = 1; k < length; ++k) character = (character << 6U) | (static_cast<uint8_t>(utf8[i + k]) & 0x3FU);
      // Where there is no such byte this is no constant expression, and the compiler says so.
      bytes[size++] = ByteOf(character).value();
      i += length;
    }
  }
};

// Letters with accents included; ß and what is no letter stay.
constexpr std::array<char, 256> MakeUpperTable() {
  std::array<char, 256> table = {};
  for (size_t i = 0; i < table.size(); ++i) {
    const bool plain = (i >= 'a' && i <= 'z') || (i >= 0xE0 && i <= 0xFE && i != 0xF7);
    const bool accented = i == 0x9A || i == 0x9C || i == 0x9E;
    table[i] = static_cast<char>(plain ? i - 0x20 : accented ? i - 0x10 : i == 0xFF ? 0x9F : i);
  }
  return table;
}

inline constexpr std::array<char, 256> kUpper = MakeUpperTable();

// The way back of MakeUpperTable.
constexpr std::array<char, 256> MakeLowerTable() {
  std::array<char, 256> table = {};
  for (size_t i = 0; i < table.size(); ++i) table[i] = static_cast<char>(i);
  for (size_t i = 0; i < table.size(); ++i) {
    const auto upper = static_cast<uint8_t>(kUpper[i]);
    if (upper != i) table[upper] = static_cast<char>(i);
  }
  return table;
}

inline constexpr std::array<char, 256> kLower = MakeLowerTable();

}  // namespace code_page

// The bytes of a literal; they live as long as the program.
template <code_page::Literal literal>
consteval std::string_view operator""_cp() {
  return std::string_view(literal.bytes.data(), literal.size);
}

// One character in upper or lower case.
constexpr char ToUpper(char c) {
  return code_page::kUpper[static_cast<uint8_t>(c)];
}
constexpr char ToLower(char c) {
  return code_page::kLower[static_cast<uint8_t>(c)];
}

// Texts of the code page.
inline std::string UpperCase(std::string text) {
  for (char& c : text) c = ToUpper(c);
  return text;
}
inline std::string LowerCase(std::string text) {
  for (char& c : text) c = ToLower(c);
  return text;
}
inline bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return ToUpper(x) == ToUpper(y); });
}

}  // namespace tessaro
