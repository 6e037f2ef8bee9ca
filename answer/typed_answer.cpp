#include "answer/typed_answer.h"

#include <algorithm>

#include "answer/word_search.h"

namespace tessaro {
namespace {

size_t BlanksAtEnd(std::string_view text) {
  return text.size() - (text.find_last_not_of(' ') + 1);
}

// The word around the cursor; empty between two delimiters.
std::string_view WordAt(std::string_view text, size_t cursor) {
  size_t begin = cursor;
  while (begin > 0 && !PartsWords(text[begin - 1])) --begin;
  size_t end = begin;
  while (end < text.size() && end - begin < kMostWord && !PartsWords(text[end])) ++end;
  return text.substr(begin, end - begin);
}

}  // namespace

TypedCheck CheckTyped(std::string_view text, size_t cursor, std::string_view key, size_t blanks, CodePage page,
                      const Tolerance& tolerance) {
  text = text.substr(0, kMostTyped);
  cursor = std::min(cursor, text.size());
  if (BlanksAtEnd(text) >= blanks) return {.verdict = TypedVerdict::ShowAnswer};
  const std::string_view word = WordAt(text, cursor);
  if (HoldsWord(key, word, tolerance, page)) return {};
  Tolerance any_case = tolerance;
  any_case.letter_case = true;
  if (HoldsWord(key, word, any_case, page)) return {.verdict = TypedVerdict::OtherCase};
  TypedCheck wrong = {.verdict = TypedVerdict::Wrong};
  if (cursor > 0) wrong.select = cursor - 1;
  return wrong;
}

}  // namespace tessaro
