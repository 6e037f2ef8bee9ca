#include "store/table/packed_fields.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tessaro {
namespace {

constexpr unsigned kGroupBits = 7;
constexpr unsigned kMore = 1U << kGroupBits;
constexpr unsigned kMostBits = 35;  // five groups

constexpr size_t kMostGroups = 10;

constexpr size_t kRepeated = size_t{1} << 30U;
// A shorter text takes less room than the number that would repeat it.
constexpr size_t kLeastRepeated = 8;
// Of columns from here on no last text is kept.
constexpr size_t kMostColumns = 256;

constexpr size_t kRowsOfPiece = 256;

// Returns where the next one begins.
char* PutNumber(char* at, size_t number) {
  for (; number >= kMore; number >>= kGroupBits) *at++ = static_cast<char>((number & (kMore - 1)) | kMore);
  *at++ = static_cast<char>(number);
  return at;
}

}  // namespace

std::optional<PackedFields> PackedFields::FromBytes(std::string bytes, size_t rows) {
  PackedReader reader{std::string_view(bytes)};
  PackedFields fields;
  size_t found = 0;
  for (; reader.Next(); ++found) {
    for (const FieldView& field : reader.fields()) fields.NoteColumn(field.column);
  }
  if (found != rows || !reader.AtEnd()) return std::nullopt;
  fields.bytes_ = std::move(bytes);
  fields.rows_ = rows;
  return fields;
}

void PackedFields::AddRow(std::span<const FieldView> fields) {
  if (rows_ % kRowsOfPiece == 0 && rows_ > 0) BeginPiece();
  for (const FieldView& field : fields) Add(field);
  bytes_ += '\0';
  ++rows_;
}

void PackedFields::AddToLastRow(std::span<const FieldView> fields) {
  bytes_.pop_back();
  for (const FieldView& field : fields) Add(field);
  bytes_ += '\0';
}

void PackedFields::Append(PackedFields others) {
  if (rows_ == 0) return void(*this = std::move(others));
  if (others.rows_ > 0) BeginPiece();
  for (const Place& place : others.places_) places_.push_back({rows_ + place.row, bytes_.size() + place.start});
  for (const int column : others.columns_) NoteColumn(column);
  bytes_ += others.bytes_;
  rows_ += others.rows_;
}

void PackedFields::BeginPiece() {
  last_.clear();
  places_.push_back({rows_, bytes_.size()});
}

void PackedFields::Add(const FieldView& field) {
  if (field.column < 1) return;
  const auto column = static_cast<size_t>(field.column);
  // One that has a last text was noted with it.
  if (column >= last_.size() || last_[column].start == 0) NoteColumn(field.column);
  std::array<char, 2 * kMostGroups> head;
  if (Repeats(field)) {
    bytes_.append(head.data(), PutNumber(head.data(), column + kRepeated));
    return;
  }
  char* const length = PutNumber(head.data(), column);
  bytes_.append(head.data(), PutNumber(length, field.text.size()));
  if (column < kMostColumns && last_.size() <= column) last_.resize(column + 1);
  if (column < kMostColumns) last_[column] = {bytes_.size(), field.text.size()};
  bytes_ += field.text;
}

void PackedFields::NoteColumn(int column) {
  const auto place = std::lower_bound(columns_.begin(), columns_.end(), column);
  if (place == columns_.end() || *place != column) columns_.insert(place, column);
}

bool PackedFields::Repeats(const FieldView& field) const {
  const auto column = static_cast<size_t>(field.column);
  if (field.text.size() < kLeastRepeated || column >= last_.size()) return false;
  return field.text == std::string_view(bytes_).substr(last_[column].start, last_[column].size);
}

std::optional<size_t> PackedReader::TakeNumber() {
  if (!rest_.empty() && static_cast<unsigned char>(rest_.front()) < kMore) {
    const size_t number = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    return number;
  }
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
    const bool repeated = *column >= kRepeated;
    const size_t named = *column - (repeated ? kRepeated : 0);
    const std::optional<std::string_view> text = TakeText(named, repeated);
    if (!text || named == 0 || named >= kRepeated) return false;
    fields_.push_back({static_cast<int>(named), *text});
  }
  return false;
}

std::optional<std::string_view> PackedReader::TakeText(size_t column, bool repeated) {
  if (repeated) return column < last_.size() ? std::optional(last_[column]) : std::nullopt;
  const std::optional<size_t> length = TakeNumber();
  if (!length || *length > rest_.size()) return std::nullopt;
  const std::string_view text = rest_.substr(0, *length);
  rest_.remove_prefix(*length);
  if (column < kMostColumns && last_.size() <= column) last_.resize(column + 1);
  if (column < kMostColumns) last_[column] = text;
  return text;
}

}  // namespace tessaro
