#include "answer/similar_cards.h"

#include <algorithm>
#include <numeric>
#include <string_view>

#include "cards/card_reader.h"

namespace tessaro {
namespace {

// Longer sides count as equally long.
constexpr uint32_t kMostLetters = 4095;

// Characters outside of tags.
uint32_t LettersOf(std::string_view side) {
  size_t count = 0;
  for (size_t at = 0; at < side.size();) {
    const size_t tag = std::min(side.find('<', at), side.size());
    count += tag - at;
    at = std::min(side.find('>', tag), side.size() - 1) + 1;
  }
  return static_cast<uint32_t>(std::min<size_t>(count, kMostLetters));
}

// Where the first of each key would stand when all were sorted; the last element is the number of all.
std::vector<uint32_t> BeginsOf(const std::vector<uint32_t>& keys, size_t key_count) {
  std::vector<uint32_t> begins(key_count + 1, 0);
  for (const uint32_t key : keys) ++begins[key + 1];
  for (size_t i = 1; i < begins.size(); ++i) begins[i] += begins[i - 1];
  return begins;
}

// The cards of `order` sorted by their keys; equal ones stay as they stand there.
std::vector<uint32_t> SortedBy(const std::vector<uint32_t>& keys, std::vector<uint32_t> begins,
                               const std::vector<uint32_t>& order) {
  std::vector<uint32_t> sorted(order.size());
  for (const uint32_t card : order) sorted[begins[keys[card]]++] = card;
  return sorted;
}

}  // namespace

SimilarCards::SimilarCards(const CardFile& file, int side)
    : file_(file), side_(side), count_(static_cast<size_t>(CardReader(file).Count())) {
  letters_.reserve(count_);
  topics_.reserve(count_);
}

bool SimilarCards::Step(int cards) {
  const bool at_once = count_ <= static_cast<size_t>(cards);
  if (letters_.size() < count_) {
    const size_t end = std::min(count_, letters_.size() + static_cast<size_t>(cards));
    while (letters_.size() < end) LookAt(letters_.size());
    if (!at_once) return true;
  }
  if (by_letters_.size() < count_) {
    Order all(count_);
    std::iota(all.begin(), all.end(), 0U);
    by_letters_ = SortedBy(letters_, BeginsOf(letters_, kMostLetters + 1), all);
    if (!at_once) return true;
  }
  if (by_topic_.size() < count_) {
    topic_begins_ = BeginsOf(topics_, numbers_.size());
    by_topic_ = SortedBy(topics_, topic_begins_, by_letters_);
  }
  return false;
}

void SimilarCards::LookAt(size_t card) {
  const CardTable& table = file_.cards();
  const int row = static_cast<int>(card) + kFirstCardRow;
  table.Expect(row + CardTable::kAhead);
  letters_.push_back(LettersOf(table.Peek(side_, row)));
  const std::string_view topic = table.Peek(file_.columns().topic, row);
  // Cards of a topic mostly stand beside each other.
  if (card == 0 || topic != last_topic_) {
    last_topic_ = topic;
    last_number_ = numbers_.try_emplace(last_topic_, static_cast<uint32_t>(numbers_.size())).first->second;
  }
  topics_.push_back(last_number_);
}

std::vector<int> SimilarCards::OfTopic(int row, size_t most) const {
  const uint32_t topic = topics_[static_cast<size_t>(row - kFirstCardRow)];
  return Nearest(by_topic_.data() + topic_begins_[topic], by_topic_.data() + topic_begins_[topic + 1], row, most);
}

std::vector<int> SimilarCards::OfAll(int row, size_t most) const {
  return Nearest(by_letters_.data(), by_letters_.data() + by_letters_.size(), row, most);
}

std::vector<int> SimilarCards::Nearest(const uint32_t* begin, const uint32_t* end, int row, size_t most) const {
  const auto own = static_cast<uint32_t>(row - kFirstCardRow);
  const auto is_before = [this](uint32_t a, uint32_t b) {
    return letters_[a] != letters_[b] ? letters_[a] < letters_[b] : a < b;
  };
  const uint32_t* const place = std::lower_bound(begin, end, own, is_before);
  const uint32_t* before = place;  // behind the next one on this side
  const uint32_t* behind = place + 1;
  bool turn = true;  // of the one before
  std::vector<int> rows;
  while (rows.size() < most && (before != begin || behind != end)) {
    bool take_before = behind == end;
    if (before != begin && behind != end) {
      const uint32_t less = letters_[own] - letters_[before[-1]];
      const uint32_t more = letters_[*behind] - letters_[own];
      take_before = less < more || (less == more && turn);
    }
    turn = !take_before;
    rows.push_back(static_cast<int>(take_before ? *--before : *behind++) + kFirstCardRow);
  }
  return rows;
}

}  // namespace tessaro
