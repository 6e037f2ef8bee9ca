#include "store/table/packed_fields.h"

#include <array>
#include <limits>
#include <utility>

namespace tessaro {
namespace {

constexpr unsigned kGroupBits = 7;
constexpr unsigned kMore = 1U << kGroupBits;
constexpr unsigned kMostBits = 35;  // five groups

constexpr size_t kMostGroups = 10;

// Returns where the next one begins.
char* PutNumber(char* at, size_t number) {
  for (; number >= kMore; number >>= kGroupBits) *at++ = static_cast<char>((number & (kMore - 1)) | kMore);
  *at++ = static_cast<char>(number);
  return at;
}

}  // namespace

std::optional<PackedFields> PackedFields::FromBytes(std::string bytes, size_t rows) {
  PackedReader reader{std::string_view(bytes)};
  size_t found = 0;
  while (reader.Next()) ++found;
  if (found != rows || !reader.AtEnd()) return std::nullopt;
  PackedFields fields;
  fields.bytes_ = std::move(bytes);
  fields.rows_ = rows;
  return fields;
}

void PackedFields::AddRow(const std::vector<FieldView>& fields) {
  for (const FieldView& field : fields) Add(field);
  bytes_ += '\0';
  ++rows_;
}

void PackedFields::AddToLastRow(const std::vector<FieldView>& fields) {
  bytes_.pop_back();
  for (const FieldView& field : fields) Add(field);
  bytes_ += '\0';
}

void PackedFields::Add(const FieldView& field) {
  if (field.column < 1) return;
  std::array<char, 2 * kMostGroups> head;
  char* const length = PutNumber(head.data(), static_cast<size_t>(field.column));
  char* const end = PutNumber(length, field.text.size());
  bytes_.append(head.data(), end).append(field.text);
}

std::optional<size_t> PackedReader::TakeNumber() {
  size_t number = 0;
  for (unsigned bits = 0; bits < kMostBits && !rest_.empty(); bits += kGroupBits) {
    const auto group = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    number |= static_cast<size_t>(group & (kMore - 1)) << bits;
    if (group < kMore) return number;
  }
  return std::nullopt;
}

bool PackedReader::Next() {
  fields_.clear();
  while (const std::optional<size_t> column = TakeNumber()) {
    if (*column == 0) return true;
    const std::optional<size_t> length = TakeNumber();
    if (!length || *length > rest_.size() || *column > std::numeric_limits<int>::max()) return false;
    fields_.push_back({static_cast<int>(*column), rest_.substr(0, *length)});
    rest_.remove_prefix(*length);
  }
  return false;
}

}  // namespace tessaro
