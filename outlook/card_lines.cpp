#include "outlook/card_lines.h"

#include <algorithm>
#include <array>
#include <deque>
#include <string_view>
#include <utility>

#include "cards/card_reader.h"
#include "hypertext/plain_text.h"
#include "outlook/due_count.h"
#include "settings/side_settings.h"

namespace tessaro {
namespace {

// The places 0 ... count - 1 in the order of their keys.
template <typename KeyOf>
std::vector<int> OrderedPlaces(int count, bool descending, KeyOf key_of) {
  std::vector<std::pair<decltype(key_of(0)), int>> keys;
  keys.reserve(static_cast<size_t>(count));
  for (int place = 0; place < count; ++place) keys.emplace_back(key_of(place), place);
  std::stable_sort(keys.begin(), keys.end(), [descending](const auto& a, const auto& b) {
    return descending ? b.first < a.first : a.first < b.first;
  });
  std::vector<int> places;
  places.reserve(keys.size());
  for (const auto& [key, place] : keys) places.push_back(place);
  return places;
}

// A text to be ordered: most are told apart by their first letters, held as numbers.
struct TextKey {
  static constexpr size_t kHead = 16;
  std::array<uint64_t, 2> head{};
  std::string_view rest;
  bool operator<(const TextKey& other) const { return head != other.head ? head < other.head : rest < other.rest; }
};

// Keeps the letters behind the first ones in `rests`.
TextKey KeyOf(std::string_view text, std::deque<std::string>& rests) {
  TextKey key;
  for (size_t i = 0; i < TextKey::kHead; ++i) {
    uint64_t& part = key.head[i / sizeof(uint64_t)];
    part = (part << 8U) | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
  }
  if (text.size() > TextKey::kHead) key.rest = rests.emplace_back(text.substr(TextKey::kHead));
  return key;
}

}  // namespace

CardLines::CardLines(const CardFile& file, std::shared_ptr<const DeckOutlook> deck,
                     const LearningParameters& parameters, const std::vector<int>& rows)
    : file_(file), deck_(std::move(deck)), parameters_(parameters) {
  const CardReader cards(file);
  lines_.reserve(rows.size());
  for (const int row : rows) {
    if (cards.IsCardRow(row)) lines_.push_back({row, row});
  }
}

std::optional<double> CardLines::Recall(int place) const {
  const CardTrace* trace = TraceAt(place);
  return trace != nullptr ? std::optional(RecallAt(*trace, deck_->weights, deck_->now)) : std::nullopt;
}

int64_t CardLines::Due(int place) const {
  const CardTrace* trace = TraceAt(place);
  if (trace == nullptr) return 0;
  CardTrace moved = *trace;
  moved.row = Row(place);
  return DueTimeOf(file_, moved, parameters_, deck_->now);
}

int CardLines::Misses(int place) const {
  const CardTrace* trace = TraceAt(place);
  return trace != nullptr ? trace->misses : 0;
}

int64_t CardLines::Seconds(int place) const {
  return std::max<int64_t>(CardReader(file_).TimeLearned(Row(place)), 0);
}

std::vector<int> CardLines::PlacesBy(CardLineKey key, bool descending) const {
  const auto by = [&](auto key_of) { return OrderedPlaces(Count(), descending, key_of); };
  switch (key) {
    case CardLineKey::Question: {
      std::deque<std::string> rests;
      return by([&, page = ReadCodePages(file_.settings()).front](int place) {
        return KeyOf(page.Folded(QuestionStart(file_, Row(place))), rests);
      });
    }
    case CardLineKey::Recall:
      return by([&](int place) { return Recall(place); });
    case CardLineKey::Due:
      return by([&](int place) { return Due(place); });
    case CardLineKey::Misses:
      return by([&](int place) { return Misses(place); });
    case CardLineKey::Seconds:
      return by([&](int place) { return Seconds(place); });
    default:
      return by([&](int place) { return Row(place); });
  }
}

void CardLines::Sort(CardLineKey key, bool descending) {
  // In the order of the table they are read fastest.
  std::sort(lines_.begin(), lines_.end(), [](const Line& a, const Line& b) { return a.row < b.row; });
  std::vector<Line> ordered;
  ordered.reserve(lines_.size());
  for (const int place : PlacesBy(key, descending)) ordered.push_back(LineAt(place));
  lines_ = std::move(ordered);
}

int CardLines::PlaceOf(int row) const {
  const auto found = std::find_if(lines_.begin(), lines_.end(), [row](const Line& line) { return line.row == row; });
  return found != lines_.end() ? static_cast<int>(found - lines_.begin()) : -1;
}

std::vector<int> CardLines::Follow(const RowShift& shift) {
  std::vector<int> gone;
  for (int place = 0; place < Count(); ++place) {
    int& row = lines_[static_cast<size_t>(place)].row;
    row = shift.Map(row);
    if (row == 0) gone.push_back(place);
  }
  return gone;
}

void CardLines::DropGone() {
  std::erase_if(lines_, [](const Line& line) { return line.row == 0; });
}

std::string QuestionStart(const CardFile& file, int row) {
  constexpr size_t kLetters = 80;
  std::string text = PlainBeginning(CardReader(file).Question(row));
  text.resize(std::min(text.size(), kLetters));
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

}  // namespace tessaro
