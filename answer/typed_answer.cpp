#include "answer/typed_answer.h"

#include <algorithm>

namespace tessaro {
namespace {

constexpr size_t kMostWord = 100;

bool PartsWords(char c) {
  constexpr std::string_view kDelimiters = " ,;?!\r\n";
  return kDelimiters.find(c) != std::string_view::npos;
}

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

bool Holds(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

bool HoldsInAnyCase(std::string_view text, std::string_view part, CodePage page) {
  return std::search(text.begin(), text.end(), part.begin(), part.end(),
                     [page](char a, char b) { return page.ToUpper(a) == page.ToUpper(b); }) != text.end();
}

}  // namespace

TypedCheck CheckTyped(std::string_view text, size_t cursor, std::string_view key, size_t blanks, CodePage page) {
  text = text.substr(0, kMostTyped);
  cursor = std::min(cursor, text.size());
  if (BlanksAtEnd(text) >= blanks) return {.verdict = TypedVerdict::ShowAnswer};
  const std::string_view word = WordAt(text, cursor);
  if (Holds(key, word)) return {};
  if (HoldsInAnyCase(key, word, page)) return {.verdict = TypedVerdict::OtherCase};
  TypedCheck wrong = {.verdict = TypedVerdict::Wrong};
  if (cursor > 0) wrong.select = cursor - 1;
  return wrong;
}

}  // namespace tessaro
