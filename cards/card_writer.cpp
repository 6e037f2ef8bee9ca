#include "cards/card_writer.h"

#include <vector>

#include "cards/figures.h"

namespace tessaro {

CardChange LearnedColumns(const CardFile& file, int row) {
  const CardColumns& columns = file.columns();
  const auto text = [&](int column) { return std::string(file.cards().Peek(column, row)); };
  CardChange contents;
  contents.topic = text(columns.topic);
  contents.yes_no_row = text(columns.yes_no_row);
  contents.time_row = text(columns.time_row);
  contents.score = text(columns.score);
  contents.time_learned = text(columns.time_learned);
  return contents;
}

void CardWriter::Write(int row, const CardChange& change) {
  const CardReader cards(file_);
  const bool was_unknown = unknown_ && cards.IsUnknown(row);
  const CardColumns& columns = file_.columns();
  std::vector<int> changed;
  const auto put = [&](int column, const std::optional<std::string>& text) {
    if (!text) return;
    file_.cards().Poke(column, row, *text);
    changed.push_back(column);
  };
  put(columns.topic, change.topic);
  put(columns.yes_no_row, change.yes_no_row);
  put(columns.time_row, change.time_row);
  put(columns.score, change.score);
  put(columns.time_learned, change.time_learned);
  if (!changed.empty()) file_.RowChanged(row, changed);

  if (unknown_) *unknown_ += static_cast<int>(cards.IsUnknown(row)) - static_cast<int>(was_unknown);
}

CardChange CardWriter::Exchange(int row, const CardChange& columns) {
  CardChange before = LearnedColumns(file_, row);
  CardChange change;
  bool differs = false;
  for (const auto column : {&CardChange::topic, &CardChange::yes_no_row, &CardChange::time_row, &CardChange::score,
                            &CardChange::time_learned}) {
    if (!(columns.*column) || columns.*column == before.*column) continue;
    change.*column = columns.*column;
    differs = true;
  }
  if (differs) Write(row, change);
  return before;
}

int64_t CardWriter::UnknownCount() {
  if (unknown_ && counted_rows_ == file_.cards().RowCount()) return *unknown_;
  counted_rows_ = file_.cards().RowCount();
  unknown_ = CountUnknown(file_);
  return *unknown_;
}

std::string ScoreText(int64_t score) {
  std::string digits = std::to_string(score);
  constexpr size_t kWidth = 9;
  if (digits.size() < kWidth) digits.insert(0, kWidth - digits.size(), '0');
  return digits;
}

}  // namespace tessaro
