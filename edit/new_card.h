#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "store/file/card_file.h"

namespace tessaro {

// The fields of a card that is made, with the statistics of a new one. Its texts are views: they must outlive it.
class NewCard {
 public:
  // `score` is held to what a card can keep.
  NewCard(const CardFile& file, int64_t id, std::string_view front, std::string_view back, int64_t score = 1);
  const std::vector<FieldView>& fields() const { return fields_; }

 private:
  std::string id_;
  std::string score_;
  std::vector<FieldView> fields_;
};

// The number for the next card that is made. 0 when there is no room for `count` more: no card is made with a number
// that links cannot lead to.
int64_t NextId(const CardFile& file, int64_t count = 1);

// What the statistics of a card read when all its answers are forgotten.
std::vector<FieldView> ResetStatistics(const CardFile& file);

}  // namespace tessaro
