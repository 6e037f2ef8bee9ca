#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "cards/card_reader.h"
#include "store/file/card_file.h"

namespace tessaro {

// New contents for some columns of one card row; what is not set stays.
struct CardChange {
  std::optional<std::string> topic, yes_no_row, time_row, score, time_learned;
};
// All that learning writes in a row, as it stands.
CardChange LearnedColumns(const CardFile& file, int row);

// The one place through which learning changes card rows. Tells the file, which journals them, and knows at any time
// how many cards have the score 0, without looking at them all.
class CardWriter {
 public:
  // The file must outlive the writer.
  explicit CardWriter(CardFile& file) : file_(file) {}

  // Writes the set columns of a card row, which must exist.
  void Write(int row, const CardChange& change);
  // Brings the columns that `columns` sets to these contents, and gives what stood there. No change is no write.
  CardChange Exchange(int row, const CardChange& columns);

  // The unknown cards: CountUnknown. Counted over the file at the first
  // call and when the number of rows changed since; else it costs nothing.
  int64_t UnknownCount();
  // To be called when someone else may have changed cards: the next UnknownCount counts anew.
  void ForgetCount() { unknown_.reset(); }

 private:
  CardFile& file_;
  std::optional<int64_t> unknown_;
  int counted_rows_ = 0;
};

// A score as its column holds it: nine digits with leading zeros.
std::string ScoreText(int64_t score);

}  // namespace tessaro
