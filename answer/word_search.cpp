#include "answer/word_search.h"

#include <bitset>

namespace tessaro {
namespace {

// Looks for a word in all places of a key at once, and in all forms that the key has where brackets may be missing.
class WordSearch {
 public:
  // Element i: the word's first i letters end where the key was read to. An empty beginning ends everywhere.
  using Ends = std::bitset<kMostWord + 1>;

  WordSearch(std::string_view word, const Tolerance& tolerance, CodePage page) : folding_(tolerance, page) {
    for (const char c : word.substr(0, kMostWord)) {
      if (const std::optional<char> letter = folding_(c)) after_[static_cast<unsigned char>(*letter)].set(++size_);
    }
  }

  Ends Start() const { return Ends(1); }
  bool IsFound(const Ends& ends) const { return ends[size_]; }
  // One character of the key on.
  Ends Read(const Ends& ends, char c) const {
    if (PartsWords(c)) return Start();
    const std::optional<char> letter = folding_(c);
    return letter ? ((ends << 1) & after_[static_cast<unsigned char>(*letter)]) | Start() : ends;
  }

 private:
  LetterFolding folding_;
  std::array<Ends, 256> after_;  // for a letter: element i when it is the word's i-th
  size_t size_ = 0;
};

}  // namespace

bool PartsWords(char c) {
  constexpr std::string_view kDelimiters = " ,;?!\r\n";
  return kDelimiters.find(c) != std::string_view::npos;
}

bool HoldsWord(std::string_view key, std::string_view word, const Tolerance& tolerance, CodePage page) {
  const WordSearch search(word, tolerance, page);
  const std::vector<bool> paired = tolerance.brackets ? PairedBrackets(key) : std::vector<bool>(key.size());
  WordSearch::Ends ends = search.Start();
  std::vector<WordSearch::Ends> before;  // the open brackets
  for (size_t i = 0; i < key.size() && !search.IsFound(ends); ++i) {
    WordSearch::Ends next = search.Read(ends, key[i]);
    if (paired[i]) next |= ends;
    if (paired[i] && key[i] == '(') before.push_back(ends);
    if (paired[i] && key[i] == ')') {
      next |= before.back();
      before.pop_back();
    }
    ends = next;
  }
  return search.IsFound(ends);
}

}  // namespace tessaro
