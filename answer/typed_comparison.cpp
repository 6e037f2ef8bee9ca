// What was typed beside the answer. The longest common row of words is found first; between two common words the
// letters of both texts are compared in the same way, where they have enough in common to be the same words written
// otherwise.

#include <algorithm>
#include <cstdint>

#include "answer/typed_answer.h"

namespace tessaro {
namespace {

constexpr size_t kMostCompared = 1000;

using Likeness = ComparedPiece::Likeness;

// A word or a letter, and what it counts as.
struct Element {
  std::string_view text;
  std::string folded;
  bool optional = false;  // a letter that may be missing
};
using Elements = std::vector<Element>;

// How the elements of two rows are like their partners in the longest common row.
struct Common {
  std::vector<Likeness> first;
  std::vector<Likeness> second;
  size_t count = 0;
};

// A table of sizes of common rows; of a few hundred by a thousand elements at most.
Common LongestCommon(const Elements& first, const Elements& second) {
  const size_t width = second.size() + 1;
  std::vector<uint16_t> sizes((first.size() + 1) * width, 0);
  for (size_t i = first.size(); i-- > 0;) {
    for (size_t j = second.size(); j-- > 0;) {
      sizes[i * width + j] = first[i].folded == second[j].folded
                                 ? static_cast<uint16_t>(sizes[(i + 1) * width + j + 1] + 1)
                                 : std::max(sizes[(i + 1) * width + j], sizes[i * width + j + 1]);
    }
  }
  Common common = {std::vector<Likeness>(first.size(), Likeness::Different),
                   std::vector<Likeness>(second.size(), Likeness::Different), sizes[0]};
  for (size_t i = 0, j = 0; i < first.size() && j < second.size();) {
    if (first[i].folded == second[j].folded) {
      const Likeness likeness = first[i].text == second[j].text ? Likeness::Same : Likeness::Tolerated;
      common.first[i++] = common.second[j++] = likeness;
    } else {
      sizes[(i + 1) * width + j] >= sizes[i * width + j + 1] ? ++i : ++j;
    }
  }
  return common;
}

void Append(std::vector<ComparedPiece>& pieces, std::string_view text, Likeness likeness) {
  if (text.empty()) return;
  if (pieces.empty() || pieces.back().likeness != likeness) pieces.push_back({.text = {}, .likeness = likeness});
  pieces.back().text += text;
}

void AppendLetters(std::vector<ComparedPiece>& pieces, const Elements& letters, const std::vector<Likeness>& likeness) {
  for (size_t i = 0; i < letters.size(); ++i) {
    const bool may_differ = likeness[i] == Likeness::Different && letters[i].optional;
    Append(pieces, letters[i].text, may_differ ? Likeness::Tolerated : likeness[i]);
  }
}

size_t CountNeeded(const Elements& letters) {
  return static_cast<size_t>(
      std::count_if(letters.begin(), letters.end(), [](const Element& letter) { return !letter.optional; }));
}

// One of the two texts, in words and letters.
class ComparedText {
 public:
  ComparedText(std::string_view text, const LetterFolding& folding, bool optional_brackets)
      : text_(text), folding_(folding), in_brackets_(text.size(), false) {
    if (optional_brackets) FindBrackets();
  }

  // Words and the blanks between them.
  Elements Words() const {
    Elements words;
    for (size_t begin = 0; begin < text_.size();) {
      const bool blank = text_[begin] == ' ';
      size_t end = begin + 1;
      while (end < text_.size() && (text_[end] == ' ') == blank) ++end;
      words.push_back(ElementOf(text_.substr(begin, end - begin)));
      begin = end;
    }
    return words;
  }

  // Those of some of its words.
  Elements Letters(const Elements& words) const {
    Elements letters;
    for (const Element& word : words) {
      for (size_t i = 0; i < word.text.size(); ++i) {
        letters.push_back(ElementOf(word.text.substr(i, 1)));
        const auto place = static_cast<size_t>(word.text.data() + i - text_.data());
        letters.back().optional = letters.back().folded.empty() || in_brackets_[place];
      }
    }
    return letters;
  }

 private:
  Element ElementOf(std::string_view text) const {
    Element element = {.text = text, .folded = {}};
    for (const char c : text) {
      if (const std::optional<char> letter = folding_(c)) element.folded += *letter;
    }
    return element;
  }

  // With the blanks beside them, of which one is too much when they are missing.
  void FindBrackets() {
    const std::vector<bool> paired = PairedBrackets(text_);
    int depth = 0;
    for (size_t i = 0; i < text_.size(); ++i) {
      if (paired[i] && text_[i] == '(') ++depth;
      in_brackets_[i] = depth > 0 || (text_[i] == ' ' && i > 0 && in_brackets_[i - 1]);
      if (paired[i] && text_[i] == ')') --depth;
    }
    for (size_t i = text_.size(); i-- > 1;) {
      if (text_[i - 1] == ' ' && in_brackets_[i]) in_brackets_[i - 1] = true;
    }
  }

  std::string_view text_;
  const LetterFolding& folding_;
  std::vector<bool> in_brackets_;
};

// The two texts and what became of them so far.
class Comparison {
 public:
  Comparison(const ComparedText& typed, const ComparedText& answer) : typed_(typed), answer_(answer) {}

  TypedComparison Result() {
    const Elements typed = typed_.Words();
    const Elements answer = answer_.Words();
    const Common words = LongestCommon(typed, answer);
    for (size_t i = 0, j = 0; i < typed.size() || j < answer.size();) {
      AppendDifferent(TakeDifferent(typed, words.first, i), TakeDifferent(answer, words.second, j));
      if (i < typed.size()) AppendCommon(typed[i++], answer[j++]);
    }
    return result_;
  }

 private:
  // The elements from `at` on that belong to no common row; `at` is behind them then.
  static Elements TakeDifferent(const Elements& words, const std::vector<Likeness>& likeness, size_t& at) {
    Elements different;
    while (at < words.size() && likeness[at] == Likeness::Different) different.push_back(words[at++]);
    return different;
  }

  // Words that differ: letters that they share stand out only where they are half of them at least.
  void AppendDifferent(const Elements& typed_words, const Elements& answer_words) {
    const Elements typed = typed_.Letters(typed_words);
    const Elements answer = answer_.Letters(answer_words);
    Common common = LongestCommon(typed, answer);
    if (2 * common.count < std::max(CountNeeded(typed), CountNeeded(answer))) {
      common.first.assign(typed.size(), Likeness::Different);
      common.second.assign(answer.size(), Likeness::Different);
    }
    AppendLetters(result_.typed, typed, common.first);
    AppendLetters(result_.answer, answer, common.second);
  }

  // A word that both have, perhaps written otherwise.
  void AppendCommon(const Element& typed, const Element& answer) {
    if (typed.text != answer.text) return AppendDifferent({typed}, {answer});
    Append(result_.typed, typed.text, Likeness::Same);
    Append(result_.answer, answer.text, Likeness::Same);
  }

  const ComparedText& typed_;
  const ComparedText& answer_;
  TypedComparison result_;
};

}  // namespace

bool TypedComparison::IsTolerated() const {
  const auto has = [this](Likeness likeness) {
    const auto is = [likeness](const ComparedPiece& piece) { return piece.likeness == likeness; };
    return std::any_of(typed.begin(), typed.end(), is) || std::any_of(answer.begin(), answer.end(), is);
  };
  return has(Likeness::Tolerated) && !has(Likeness::Different);
}

TypedComparison CompareTyped(std::string_view typed, std::string_view answer, CodePage page,
                             const Tolerance& tolerance) {
  const LetterFolding folding(tolerance, page);
  const ComparedText typed_text(typed.substr(0, kMostTyped), folding, false);
  const ComparedText answer_text(answer.substr(0, kMostCompared), folding, tolerance.brackets);
  return Comparison(typed_text, answer_text).Result();
}

}  // namespace tessaro
