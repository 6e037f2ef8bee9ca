#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/side_code_page.h"

namespace tessaro {

// What a typed answer may do otherwise than the card and still be right. Nothing, unless the learner wishes it.
struct Tolerance {
  bool letter_case = false;
  bool accents = false;      // é is as good as e, ё as е; points over or under letters may be missing
  bool punctuation = false;  // may be missing, be too much or be another
  // A bracket ( or ) that has its partner on the card may be missing, and so may all between the two, with them. This
  // is the card's side only: what is typed is never left out.
  bool brackets = false;
};

// What characters of a code page stand for where one text is compared with another.
class LetterFolding {
 public:
  LetterFolding(const Tolerance& tolerance, CodePage page);
  // Nothing: the character does not count.
  std::optional<char> operator()(char c) const { return folded_[static_cast<unsigned char>(c)]; }

 private:
  std::array<std::optional<char>, 256> folded_;
};

// For each character whether it is a bracket that has its partner. What has none is a character like any other.
std::vector<bool> PairedBrackets(std::string_view text);

}  // namespace tessaro
