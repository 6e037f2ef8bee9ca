#include "store/table/packed_fields.h"

#include <algorithm>
#include <array>
#include <bit>
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

// Columns below this one can be counted: they need one group.
constexpr size_t kMostCountedColumns = kMore;

// Returns where the next one begins.
char* PutNumber(char* at, size_t number) {
  for (; number >= kMore; number >>= kGroupBits) *at++ = static_cast<char>((number & (kMore - 1)) | kMore);
  *at++ = static_cast<char>(number);
  return at;
}

// By how much a byte of a word is shifted that stands there in memory.
constexpr size_t ShiftOf(size_t byte) {
  return 8 * (std::endian::native == std::endian::little ? byte : sizeof(uint64_t) - 1 - byte);
}

// The word that stands in memory as the text; 0 where it has no room for it. Copied bytes would have to be waited for.
uint64_t WordOf(std::string_view text) {
  uint64_t word = 0;
  for (size_t i = 0; i < text.size() && text.size() <= sizeof word; ++i) {
    word |= uint64_t{static_cast<unsigned char>(text[i])} << ShiftOf(i);
  }
  return word;
}

// Counts up a number of so many digits. False: it is none, or the next one is longer.
bool CountUp(uint64_t& word, size_t size) {
  constexpr uint64_t kByte = 0xFF;
  for (; size > 0; --size) {
    const size_t shift = ShiftOf(size - 1);
    const uint64_t digit = (word >> shift) & kByte;
    if (digit < '0' || digit > '9') return false;
    if (digit < '9') return word += uint64_t{1} << shift, true;
    word -= uint64_t{9} << shift;
  }
  return false;
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
  --rows_;
  for (const FieldView& field : fields) Add(field);
  bytes_ += '\0';
  ++rows_;
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
  if (column < kMostColumns && last_.size() <= column) last_.resize(column + 1);
  LastText none;
  LastText& last = column < kMostColumns ? last_[column] : none;
  // One that has a last text was noted with it.
  if (last.start == 0) NoteColumn(field.column);
  const uint64_t word = WordOf(field.text);
  std::array<char, 2 * kMostGroups> head;
  if (IsNextTo(last, field, word)) {
    bytes_ += static_cast<char>(column | kMore);
    bytes_ += '\0';
    last.is_counted = true;
  } else if (Repeats(last, field)) {
    bytes_.append(head.data(), PutNumber(head.data(), column + kRepeated));
  } else {
    char* const length = PutNumber(head.data(), column);
    bytes_.append(head.data(), PutNumber(length, field.text.size()));
    last.start = bytes_.size();
    last.size = field.text.size();
    last.is_counted = false;
    bytes_ += field.text;
  }
  last.word = word;
  last.row = rows_;
}

void PackedFields::NoteColumn(int column) {
  const auto place = std::lower_bound(columns_.begin(), columns_.end(), column);
  if (place == columns_.end() || *place != column) columns_.insert(place, column);
}

bool PackedFields::IsNextTo(const LastText& last, const FieldView& field, uint64_t word) const {
  // A reader has one place for the number of a column in a row.
  if (last.start == 0 || last.row == rows_ || last.size != field.text.size() || last.size > sizeof word) return false;
  uint64_t next = last.word;
  return static_cast<size_t>(field.column) < kMostCountedColumns && CountUp(next, last.size) && next == word;
}

bool PackedFields::Repeats(const LastText& last, const FieldView& field) const {
  return field.text.size() >= kLeastRepeated && last.size == field.text.size() && !last.is_counted &&
         field.text == std::string_view(bytes_).substr(last.start, last.size);
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
  while (true) {
    if (const size_t counted = TakeCounted(); counted != 0) {
      if (!CountUp(counted)) return false;
      fields_.push_back({static_cast<int>(counted), last_[counted]});
      continue;
    }
    const std::optional<size_t> column = TakeNumber();
    if (!column || *column == 0) return column.has_value();
    const bool repeated = *column >= kRepeated;
    const size_t named = *column - (repeated ? kRepeated : 0);
    const std::optional<std::string_view> text = TakeText(named, repeated);
    if (!text || named == 0 || named >= kRepeated) return false;
    fields_.push_back({static_cast<int>(named), *text});
  }
}

size_t PackedReader::TakeCounted() {
  if (rest_.size() < 2 || rest_[1] != '\0') return 0;
  const auto group = static_cast<unsigned char>(rest_.front());
  if (group <= kMore) return 0;
  rest_.remove_prefix(2);
  return group - kMore;
}

bool PackedReader::CountUp(size_t column) {
  if (column >= last_.size() || last_[column].size() > sizeof(uint64_t)) return false;
  if (counted_.empty()) counted_.resize(kMostCountedColumns);
  std::string_view& last = last_[column];
  uint64_t& word = counted_[column];
  const char* const text = reinterpret_cast<const char*>(&word);
  if (last.data() != text) {
    word = WordOf(last);
    last = std::string_view(text, last.size());
  }
  return tessaro::CountUp(word, last.size());
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
