#include "store/index/learn_index.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <functional>
#include <limits>
#include <optional>
#include <utility>

#include "platform/progress.h"
#include "store/index/bisection_order.h"
#include "store/index/index_text.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr int64_t kStartScore = -1;
constexpr int64_t kEndScore = 999999999;
constexpr int kScoreDigits = 9;
constexpr int kProgressStep = 100;

constexpr std::array<std::string_view, 3> kColumns = {kBoxPos, kScore, kId};
constexpr std::array<std::string_view, 3> kFirstFields = {"-1", "-1", kStartMark};
constexpr std::array<std::string_view, 3> kLastFields = {"999999", "999999999", kEndMark};

// The key of a score that is written as the program writes it.
std::optional<int64_t> NineDigits(std::string_view score) {
  if (score.size() != kScoreDigits) return std::nullopt;
  return DigitsOnly(score);
}

constexpr std::array<size_t, 3> kDigits = {0, kScoreDigits, 6};

const IndexFrame kFrame = {kColumns, kFirstFields, kLastFields, kDigits};

}  // namespace

bool LearnIndex::Build(const CardTable& cards, const CardIds& ids, Progress* progress) {
  if (!BuildOrder(cards, progress)) return false;
  fingerprint_ = ids.fingerprint();
  return true;
}

bool LearnIndex::BuildAgain(const CardTable& cards) {
  const std::optional<uint64_t> fingerprint = fingerprint_;
  if (!built_ || !BuildOrder(cards, nullptr)) return false;
  fingerprint_ = fingerprint;
  return true;
}

bool LearnIndex::BuildOrder(const CardTable& cards, Progress* progress) {
  const CardColumns columns = ColumnsOf(cards);
  if (columns.id == 0 || columns.score == 0) return false;
  const int last = cards.RowCount() - 1;
  LearnIndex built;
  built.keys_.resize(static_cast<size_t>(std::max(cards.RowCount(), 0)) + 1);
  std::vector<int64_t> keys;
  if (last >= kFirstCardRow) keys.reserve(static_cast<size_t>(last));
  for (int row = last; row >= kFirstCardRow; --row) {
    __builtin_prefetch(cards.Peek(columns.score, row - CardTable::kAhead).data());
    const std::string_view score = cards.Peek(columns.score, row);
    const std::optional<int64_t> key = NineDigits(score);
    keys.push_back(key ? *key : LeadingNumber(score));
    built.keys_[static_cast<size_t>(row)] = keys.back();
    if (!key) built.odd_scores_[row] = score;
    if (progress != nullptr && row % kProgressStep == 0) progress->SetPosition(cards.RowCount() - row);
  }
  std::vector<int32_t> order = BisectionOrder(keys, kEndScore);
  for (int32_t& entry : order) entry = last - entry;
  built.sequence_.Assign(order);
  built.built_ = true;
  *this = std::move(built);
  return true;
}

template <typename ReadRows>
bool LearnIndex::AdoptRows(const ReadRows& read_rows, const CardIds& ids, LineEnd line_end) {
  LearnIndex adopted;
  adopted.keys_.resize(static_cast<size_t>(ids.RowCount()) + 1);
  IndexedRows rows(ids);
  int64_t least_key = std::numeric_limits<int64_t>::min();  // for the row to come
  // To a row that was added.
  const auto give_key = [&](int64_t key) {
    if (key > kEndScore || key < std::exchange(least_key, key)) return false;
    adopted.keys_[static_cast<size_t>(rows.rows().back())] = key;
    return true;
  };
  const TakeIndexRow take = {
      .numbers = [&](auto numbers) { return rows.Add(numbers[0], numbers[2]) && give_key(numbers[1]); },
      .fields =
          [&](IndexFields fields) {
            const std::optional<int64_t> nine_digits = NineDigits(fields[1]);
            if (!rows.Add(fields[0], fields[2])) return false;
            if (!nine_digits) adopted.odd_scores_[rows.rows().back()] = fields[1];
            return give_key(nine_digits ? *nine_digits : LeadingNumber(fields[1]));
          }};
  if (!read_rows(kFrame, ids, take) || !rows.AllFit()) return false;
  adopted.sequence_.Assign(rows.rows());
  adopted.fingerprint_ = ids.fingerprint();
  adopted.line_end_ = line_end;
  adopted.built_ = true;
  *this = std::move(adopted);
  return true;
}

bool LearnIndex::Adopt(const CardTable& table, const CardIds& ids) {
  return AdoptRows(std::bind_front(ReadIndexTable, std::cref(table)), ids, table.line_end());
}

bool LearnIndex::Adopt(std::string_view text, const CardIds& ids) {
  return AdoptRows(std::bind_front(ReadIndexText, text), ids, LineEndOf(text));
}

bool LearnIndex::SaveTo(WritableFile& file, const CardIds& ids, Progress* progress) const {
  IndexWriter writer(file, line_end_, progress);
  writer.Row(kColumns);
  writer.Row(kFirstFields);
  sequence_.ForEach([&](int32_t card_row) {
    const auto box_pos = static_cast<uint32_t>(card_row);
    const auto score = static_cast<uint32_t>(keys_[static_cast<size_t>(card_row)]);
    const uint32_t id = ids.number(card_row);
    const bool odd_score = !odd_scores_.empty() && odd_scores_.count(card_row) > 0;
    if (id != kNotSixDigits && !odd_score) {
      return writer.NumberRow(std::array{IndexNumber{box_pos}, IndexNumber{score, kScoreDigits}, IndexNumber{id, 6}});
    }
    std::array<char, kScoreDigits + 1> nine_digits = {};
    std::snprintf(nine_digits.data(), nine_digits.size(), "%09u", score % 1'000'000'000);
    writer.Row(std::array<std::string_view, 3>{
        std::to_string(box_pos), odd_score ? odd_scores_.at(card_row) : nine_digits.data(), ids.Text(card_row)});
  });
  writer.Row(kLastFields);
  return writer.Finish();
}

int LearnIndex::BoxPos(int row) const {
  if (row < 1 || row > RowCount()) return 0;
  if (row == 1) return kStartBoxPos;
  return row == RowCount() ? kEndBoxPos : sequence_.At(row - kFirstCardRow);
}

int64_t LearnIndex::Score(int row) const {
  if (row < 1 || row > RowCount()) return 0;
  if (row == 1) return kStartScore;
  return row == RowCount() ? kEndScore : keys_[static_cast<size_t>(sequence_.At(row - kFirstCardRow))];
}

int LearnIndex::RowOfCard(int card_row) const {
  const int position = sequence_.PositionOf(card_row);
  return position < 0 ? 0 : position + kFirstCardRow;
}

void LearnIndex::Update(int card_row, int64_t score) {
  if (!built_ || card_row < kFirstCardRow) return;
  const auto key_of_card = static_cast<size_t>(card_row);
  if (key_of_card >= keys_.size()) keys_.resize(key_of_card + 1);
  int place = FirstNotBelow(score);
  const int old_place = sequence_.PositionOf(card_row);
  if (old_place == place && keys_[key_of_card] == score) return;
  if (old_place != place) {
    if (old_place >= 0) sequence_.Erase(old_place);
    if (old_place >= 0 && old_place < place) --place;
    sequence_.Insert(place, card_row);
  }
  keys_[key_of_card] = score;
  odd_scores_.erase(card_row);
}

void LearnIndex::Shift(const RowShift& shift) {
  if (!built_ || shift.empty()) return;
  sequence_.Shift(shift);
  MoveByRow(keys_, shift, int64_t{0});
  std::unordered_map<int, std::string> odd_scores;
  for (auto& [row, score] : odd_scores_) {
    if (const int now = shift.Map(row); now != 0) odd_scores[now] = std::move(score);
  }
  odd_scores_ = std::move(odd_scores);
  fingerprint_.reset();
}

void LearnIndex::Put(int card_row, std::string_view score) {
  const std::optional<int64_t> nine_digits = NineDigits(score);
  const int64_t key = nine_digits ? *nine_digits : LeadingNumber(score);
  odd_scores_.erase(card_row);
  if (key <= kEndScore) {
    Update(card_row, key);
  } else if (const int position = sequence_.PositionOf(card_row); position >= 0) {
    sequence_.Erase(position);
  }
  if (!nine_digits && built_) odd_scores_[card_row] = score;
}

LearnIndex::Place LearnIndex::PlaceOf(int card_row) const {
  Place place;
  place.card_row = card_row;
  place.row = RowOfCard(card_row);
  const auto key_of_card = static_cast<size_t>(card_row);
  if (key_of_card < keys_.size()) place.score = keys_[key_of_card];
  if (const auto odd = odd_scores_.find(card_row); odd != odd_scores_.end()) place.odd_score = odd->second;
  return place;
}

void LearnIndex::Restore(const Place& place) {
  const auto key_of_card = static_cast<size_t>(place.card_row);
  if (key_of_card >= keys_.size() || PlaceOf(place.card_row) == place) return;
  const int old_position = sequence_.PositionOf(place.card_row);
  if (old_position >= 0) sequence_.Erase(old_position);
  if (place.row != 0) {
    const int position = place.row - kFirstCardRow;
    sequence_.Insert(IsInOrder(position, place.score) ? position : FirstNotBelow(place.score), place.card_row);
  }
  keys_[key_of_card] = place.score;
  odd_scores_.erase(place.card_row);
  if (place.odd_score) odd_scores_[place.card_row] = *place.odd_score;
}

int LearnIndex::FirstNotBelow(int64_t score) const {
  return sequence_.FirstNot([&](int32_t row) { return keys_[static_cast<size_t>(row)] < score; });
}

// Whether a card of this score may come in before the one at `position`.
bool LearnIndex::IsInOrder(int position, int64_t score) const {
  const auto key_at = [&](int at) { return keys_[static_cast<size_t>(sequence_.At(at))]; };
  return position >= 0 && position <= sequence_.size() && (position == 0 || key_at(position - 1) <= score) &&
         (position == sequence_.size() || score <= key_at(position));
}

}  // namespace tessaro
