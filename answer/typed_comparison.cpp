// What was typed beside the answer. The longest common row of words is found first; between two common words the
// letters of both texts are compared in the same way, where they have enough in common to be the same words written
// otherwise.

#include <algorithm>
#include <cstdint>

#include "answer/typed_answer.h"

namespace tessaro {
namespace {

constexpr size_t kMostCompared = 1000;

using Pieces = std::vector<std::string_view>;

// Which elements of two rows belong to their longest common row.
struct Common {
  std::vector<bool> first;
  std::vector<bool> second;
  size_t count = 0;
};

// A table of sizes of common rows; of a few hundred by a thousand elements at most.
Common LongestCommon(const Pieces& first, const Pieces& second) {
  const size_t width = second.size() + 1;
  std::vector<uint16_t> sizes((first.size() + 1) * width, 0);
  for (size_t i = first.size(); i-- > 0;) {
    for (size_t j = second.size(); j-- > 0;) {
      sizes[i * width + j] = first[i] == second[j] ? static_cast<uint16_t>(sizes[(i + 1) * width + j + 1] + 1)
                                                   : std::max(sizes[(i + 1) * width + j], sizes[i * width + j + 1]);
    }
  }
  Common common = {std::vector<bool>(first.size()), std::vector<bool>(second.size()), sizes[0]};
  for (size_t i = 0, j = 0; i < first.size() && j < second.size();) {
    if (first[i] == second[j]) {
      common.first[i++] = common.second[j++] = true;
    } else {
      sizes[(i + 1) * width + j] >= sizes[i * width + j + 1] ? ++i : ++j;
    }
  }
  return common;
}

// Words and the blanks between them.
Pieces WordsOf(std::string_view text) {
  Pieces words;
  for (size_t begin = 0; begin < text.size();) {
    const bool blank = text[begin] == ' ';
    size_t end = begin + 1;
    while (end < text.size() && (text[end] == ' ') == blank) ++end;
    words.push_back(text.substr(begin, end - begin));
    begin = end;
  }
  return words;
}

Pieces LettersOf(const Pieces& words) {
  Pieces letters;
  for (const std::string_view word : words) {
    for (size_t i = 0; i < word.size(); ++i) letters.push_back(word.substr(i, 1));
  }
  return letters;
}

void Append(std::vector<ComparedPiece>& pieces, std::string_view text, bool same) {
  if (text.empty()) return;
  if (pieces.empty() || pieces.back().same != same) pieces.push_back({.text = {}, .same = same});
  pieces.back().text += text;
}

void AppendAll(std::vector<ComparedPiece>& pieces, const Pieces& texts, const std::vector<bool>& same) {
  for (size_t i = 0; i < texts.size(); ++i) Append(pieces, texts[i], same[i]);
}

// Words that differ: letters that they share stand out only where they are half of them at least.
void AppendDifferent(const Pieces& typed, const Pieces& answer, TypedComparison& result) {
  const Pieces typed_letters = LettersOf(typed);
  const Pieces answer_letters = LettersOf(answer);
  Common common = LongestCommon(typed_letters, answer_letters);
  if (2 * common.count < std::max(typed_letters.size(), answer_letters.size())) {
    common.first.assign(typed_letters.size(), false);
    common.second.assign(answer_letters.size(), false);
  }
  AppendAll(result.typed, typed_letters, common.first);
  AppendAll(result.answer, answer_letters, common.second);
}

// The elements from `at` on that belong to no common row; `at` is behind them then.
Pieces TakeDifferent(const Pieces& words, const std::vector<bool>& same, size_t& at) {
  Pieces different;
  while (at < words.size() && !same[at]) different.push_back(words[at++]);
  return different;
}

}  // namespace

TypedComparison CompareTyped(std::string_view typed, std::string_view answer) {
  const Pieces typed_words = WordsOf(typed.substr(0, kMostTyped));
  const Pieces answer_words = WordsOf(answer.substr(0, kMostCompared));
  const Common words = LongestCommon(typed_words, answer_words);
  TypedComparison result;
  size_t i = 0;
  size_t j = 0;
  while (i < typed_words.size() || j < answer_words.size()) {
    const Pieces typed_other = TakeDifferent(typed_words, words.first, i);
    const Pieces answer_other = TakeDifferent(answer_words, words.second, j);
    AppendDifferent(typed_other, answer_other, result);
    if (i < typed_words.size()) Append(result.typed, typed_words[i++], true);
    if (j < answer_words.size()) Append(result.answer, answer_words[j++], true);
  }
  return result;
}

}  // namespace tessaro
