#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/side_code_page.h"

// Checking an answer while it is typed. Not the answer is judged, but the word that is being written: it must stand
// somewhere in the key, the card's side that is to be known.
namespace tessaro {

enum class TypedVerdict {
  Right,
  OtherCase,  // but for upper and lower case
  Wrong,
  ShowAnswer,  // so many blanks at the end ask for the answer; no word was looked at
};

struct TypedCheck {
  TypedVerdict verdict = TypedVerdict::Right;
  // The character that the next key should replace. None at the beginning of the text.
  std::optional<size_t> select = std::nullopt;
};

inline constexpr size_t kMostTyped = 198;

// `text` is what was typed, as far as kMostTyped characters; `cursor` is the place before which the next character
// goes; `blanks` at its end ask for the answer (at least 1). Both texts are
// of the code page.
TypedCheck CheckTyped(std::string_view text, size_t cursor, std::string_view key, size_t blanks, CodePage page = {});

// A piece of a text that is compared with another one.
struct ComparedPiece {
  std::string text;
  bool same = false;  // the other text has it, too, in the same order
};

struct TypedComparison {
  std::vector<ComparedPiece> typed;
  std::vector<ComparedPiece> answer;
};

// What was typed beside the answer's text: word by word, and letter by letter in words that resemble each other. Of a
// longer answer the first 1,000 characters are looked at; the pieces hold no more of it.
TypedComparison CompareTyped(std::string_view typed, std::string_view answer);

}  // namespace tessaro
