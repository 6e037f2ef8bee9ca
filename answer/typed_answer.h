#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "answer/tolerance.h"
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
// goes; `blanks` at its end ask for the answer (at least 1). Both texts are of the code page.
TypedCheck CheckTyped(std::string_view text, size_t cursor, std::string_view key, size_t blanks, CodePage page = {},
                      const Tolerance& tolerance = {});

// A piece of a text that is compared with another one.
struct ComparedPiece {
  enum class Likeness {
    Same,       // the other text has it, too, in the same order
    Tolerated,  // otherwise written there, or missing, as is allowed
    Different,
  };
  std::string text;
  Likeness likeness = Likeness::Different;
};

struct TypedComparison {
  std::vector<ComparedPiece> typed;
  std::vector<ComparedPiece> answer;
  // They are not the same, but nothing differs in a way that is not allowed.
  bool IsTolerated() const;
};

// What was typed beside the answer's text: word by word, and letter by letter in words that resemble each other. Of a
// longer answer the first 1,000 characters are looked at; the pieces hold no more of it.
TypedComparison CompareTyped(std::string_view typed, std::string_view answer, CodePage page = {},
                             const Tolerance& tolerance = {});

}  // namespace tessaro
