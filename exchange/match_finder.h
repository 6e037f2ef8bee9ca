#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "exchange/similarity.h"
#include "exchange/word_trie.h"

namespace tessaro {

struct Match {
  int row = 0;
  int result = kNoMatch;  // see Similarity
  bool operator==(const Match&) const = default;
};

// Finds the target cards that are like a source card without comparing it with all of them.
//
// Of the W words of a target at least h = ceil(threshold x W / 100) must stand in the source. So every target that can
// match holds one of its W - h + 1 rarest words in common with the source, and only those are looked up: a source card
// is searched for all known words at once, and each word leads to the targets for which it is a rare one. Equal fronts
// are found by their hash.
class MatchFinder {
 public:
  // Gives the sides of a target card by its row, as they stand now.
  using SidesOf = std::function<CardSides(int row)>;

  MatchFinder(const CompareRule& rule, SidesOf sides_of) : rule_(rule), sides_of_(std::move(sides_of)) {}

  // Counts the words of a card. When all cards there are at first are counted, each is to be made findable: only then
  // it is known which words are rare.
  void Count(int row);
  void MakeFindable(int row);
  // A card that came or changed since. One that is left out is not found until it is put again.
  void Put(int row);
  void LeaveOut(int row);

  // The matches of a source card in the rows from `first_row` on, in ascending order.
  std::vector<Match> Find(CardSides source, int first_row) const;

 private:
  static constexpr size_t kSides = 2;
  struct Target {
    uint64_t first_word = 0;  // in words_
    uint32_t front_words = 0;
    uint32_t back_words = 0;
    uint64_t length = 0;  // of both sides
    bool findable = false;
  };
  struct PerWord {
    uint32_t cards = 0;            // how often it was counted
    std::vector<int32_t> rare_in;  // rows
  };
  struct Search;

  // Words of both sides count as one where the rule does not tell them apart.
  size_t Channel(size_t side) const { return rule_.either_side ? 0 : side; }
  void ReadWords(int row);
  PerWord& Word(size_t channel, uint32_t word);
  void FindEqual(Search& search) const;
  void FindByWords(Search& search) const;
  int Judge(const Target& target, size_t source_length) const;
  size_t HitsNeeded(const Target& target, size_t source_length) const;

  CompareRule rule_;
  SidesOf sides_of_;
  WordTrie trie_;
  std::array<std::vector<PerWord>, kSides> per_word_;                 // by channel and word
  mutable std::array<std::vector<uint32_t>, kSides> found_in_;        // beside it: the last search that found the word
  std::vector<Target> targets_;                                       // by row
  std::vector<uint32_t> words_;                                       // of all targets, front words first
  std::unordered_map<uint64_t, std::vector<int32_t>> rows_of_front_;  // by hash
  mutable std::vector<uint32_t> seen_in_;                             // by row: the last search that met it
  mutable uint32_t search_ = 0;
};

}  // namespace tessaro
