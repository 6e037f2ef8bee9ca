#include "exchange/match_finder.h"

#include <algorithm>
#include <utility>

namespace tessaro {
namespace {

constexpr size_t kWhole = 100;

uint64_t HashOf(std::string_view text) {
  return std::hash<std::string_view>()(text);
}

}  // namespace

struct MatchFinder::Search {
  CardSides source;
  int first_row = 0;
  std::vector<Match> matches;
};

MatchFinder::PerWord& MatchFinder::Word(size_t channel, uint32_t word) {
  std::vector<PerWord>& words = per_word_[channel];
  if (words.size() <= word) {
    words.resize(trie_.size());
    found_in_[channel].resize(trie_.size());
  }
  return words[word];
}

void MatchFinder::ReadWords(int row) {
  const auto index = static_cast<size_t>(row);
  if (targets_.size() <= index) {
    targets_.resize(index + 1);
    seen_in_.resize(index + 1);
  }
  Target& target = targets_[index];
  target = {};
  target.first_word = words_.size();
  const CardSides sides = sides_of_(row);
  const auto add = [&](std::string_view word) { words_.push_back(trie_.Add(word)); };
  ForEachWord(sides.front, rule_.min_word_length, add);
  target.front_words = static_cast<uint32_t>(words_.size() - target.first_word);
  ForEachWord(sides.back, rule_.min_word_length, add);
  target.back_words = static_cast<uint32_t>(words_.size() - target.first_word - target.front_words);
  target.length = sides.front.size() + sides.back.size();
  rows_of_front_[HashOf(sides.front)].push_back(row);
}

void MatchFinder::Count(int row) {
  ReadWords(row);
  const Target& target = targets_[static_cast<size_t>(row)];
  for (size_t i = 0; i < target.front_words + target.back_words; ++i) {
    ++Word(Channel(i < target.front_words ? 0 : 1), words_[target.first_word + i]).cards;
  }
}

void MatchFinder::MakeFindable(int row) {
  Target& target = targets_[static_cast<size_t>(row)];
  target.findable = true;
  struct Place {
    uint32_t cards;
    size_t channel;
    uint32_t word;
  };
  std::vector<Place> places;
  for (size_t i = 0; i < target.front_words + target.back_words; ++i) {
    const size_t channel = Channel(i < target.front_words ? 0 : 1);
    const uint32_t word = words_[target.first_word + i];
    places.push_back({Word(channel, word).cards, channel, word});
  }
  const size_t needed = (static_cast<size_t>(rule_.threshold) * places.size() + kWhole - 1) / kWhole;
  if (places.empty() || needed > places.size()) return;
  const auto rarest = places.begin() + static_cast<std::ptrdiff_t>(places.size() - needed + 1);
  std::partial_sort(places.begin(), rarest, places.end(),
                    [](const Place& a, const Place& b) { return a.cards < b.cards; });
  for (auto place = places.begin(); place != rarest; ++place) {
    std::vector<int32_t>& rows = Word(place->channel, place->word).rare_in;
    if (rows.empty() || rows.back() != row) rows.push_back(row);
  }
}

void MatchFinder::Put(int row) {
  Count(row);
  MakeFindable(row);
}

void MatchFinder::LeaveOut(int row) {
  if (static_cast<size_t>(row) < targets_.size()) targets_[static_cast<size_t>(row)].findable = false;
}

std::vector<Match> MatchFinder::Find(CardSides source, int first_row) const {
  ++search_;
  Search search = {source, first_row, {}};
  FindEqual(search);
  FindByWords(search);
  std::sort(search.matches.begin(), search.matches.end(), [](const Match& a, const Match& b) { return a.row < b.row; });
  return std::move(search.matches);
}

void MatchFinder::FindEqual(Search& search) const {
  const auto look = [&](std::string_view front) {
    const auto found = rows_of_front_.find(HashOf(front));
    if (found == rows_of_front_.end()) return;
    for (const int32_t row : found->second) {
      const auto index = static_cast<size_t>(row);
      if (row < search.first_row || !targets_[index].findable || seen_in_[index] == search_) continue;
      const CardSides target = sides_of_(row);
      const bool equal = target.front == search.source.front ||
                         (rule_.either_side && target == CardSides{search.source.back, search.source.front});
      if (!equal) continue;
      seen_in_[index] = search_;
      search.matches.push_back({row, Similarity(target, search.source, rule_)});
    }
  };
  look(search.source.front);
  if (rule_.either_side) look(search.source.back);
}

// All words are looked up before any card is judged: a card is met by one of its words and judged by all.
void MatchFinder::FindByWords(Search& search) const {
  struct Found {
    size_t channel;
    uint32_t word;
  };
  std::vector<Found> found;
  const auto look = [&](size_t channel, std::string_view side) {
    trie_.ForEachIn(side, [&](uint32_t word) {
      if (word >= found_in_[channel].size() || found_in_[channel][word] == search_) return;
      found_in_[channel][word] = search_;
      found.push_back({channel, word});
    });
  };
  look(Channel(0), search.source.front);
  look(Channel(1), search.source.back);
  const size_t length = search.source.front.size() + search.source.back.size();
  for (const Found& word : found) {
    for (const int32_t row : per_word_[word.channel][word.word].rare_in) {
      const auto index = static_cast<size_t>(row);
      if (row < search.first_row || seen_in_[index] == search_ || !targets_[index].findable) continue;
      seen_in_[index] = search_;
      if (const int result = Judge(targets_[index], length); result != kNoMatch)
        search.matches.push_back({row, result});
    }
  }
}

int MatchFinder::Judge(const Target& target, size_t source_length) const {
  const size_t words = target.front_words + target.back_words;
  const size_t needed = HitsNeeded(target, source_length);
  if (needed > words) return kNoMatch;
  size_t misses = 0;
  for (size_t i = 0; i < words; ++i) {
    const size_t channel = Channel(i < target.front_words ? 0 : 1);
    if (found_in_[channel][words_[target.first_word + i]] != search_ && ++misses > words - needed) return kNoMatch;
  }
  return SimilarityPercent(words - misses, words, target.length, source_length, rule_);
}

// The smallest number of hits that gives the percentage.
size_t MatchFinder::HitsNeeded(const Target& target, size_t source_length) const {
  const size_t words = target.front_words + target.back_words;
  const size_t for_all = static_cast<size_t>(rule_.threshold) * words;
  if (rule_.ignore_length || target.length >= source_length) return (for_all + kWhole - 1) / kWhole;
  const size_t whole = target.length * kWhole;
  return whole == 0 ? words + 1 : (for_all * source_length + whole - 1) / whole;
}

}  // namespace tessaro
