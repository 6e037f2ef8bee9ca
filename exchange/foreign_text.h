#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/side_code_page.h"

// Text files of other programs.
namespace tessaro {

enum class Encoding { CodePage, Utf8, Utf8WithMark, Utf16Little, Utf16Big };

// The text of a file in the code page of the cards. CR LF has become a line feed, zero bytes are left out.
struct ForeignText {
  // A character that the code page lacks, and what stands in for it: its plain form, else "?".
  struct Replacement {
    char32_t character = 0;
    std::string by;
  };
  static constexpr size_t kMostExamples = 8;

  std::string bytes;
  Encoding encoding = Encoding::CodePage;
  int64_t zeros = 0;                  // that were left out
  int64_t replaced = 0;               // characters that the code page lacks
  std::vector<Replacement> examples;  // the first of them, each once
};

// Which code page the characters of a text belong to, found out while it is read: that of a front, of a back, or 1252
// between and around them. Separators are characters of 1252.
class FieldPages {
 public:
  // Of a text in 1252 alone.
  FieldPages() = default;
  // Of text cards: a front up to `separator`, a back up to `card_separator`; `swapped`: the other way round.
  static FieldPages OfText(const SideCodePages& pages, char separator, char card_separator, bool swapped);
  // Of a table of cards: a card in each line, its columns parted by `separator`.
  // `quote` stands for a double quote.
  static FieldPages OfTable(const SideCodePages& pages, char separator, char quote);

  bool western() const { return pages_.western(); }
  // That of the character which follows; to be asked for each one in its turn.
  CodePage Next(char32_t character);
  // Whether a byte parts or quotes: no other character may become it.
  bool IsTaken(char byte) const { return byte == marks_[0] || byte == marks_[1]; }

 private:
  FieldPages(const SideCodePages& pages, char separator, char other);
  char32_t Mark(size_t i) const { return code_page::CharacterOf(marks_[i]); }
  CodePage NextOfTable(char32_t character);

  SideCodePages pages_;
  std::array<char, 2> marks_{};  // the separator, and that of cards or the quote
  bool table_ = false;
  bool in_back_ = false;
  size_t column_ = 0;
  bool escaped_ = false;
};

// UTF-8 and UTF-16 are known by their marks, UTF-8 without one by being nothing else; all other text is in the code
// page, where each side has its own. Takes any bytes: what is malformed in a marked file is kept byte by byte in UTF-8,
// and "?" in UTF-16. Works in the memory of `raw`.
ForeignText ReadForeignText(std::string raw, FieldPages pages = {});
// The same for a text that is known to be in the code page.
ForeignText ReadCodePageText(std::string raw);

}  // namespace tessaro
