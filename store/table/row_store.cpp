#include "store/table/row_store.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace tessaro {
namespace {

// A handle is the number of a record's first word. A record has two words or more, so rows can be counted by an int.
constexpr size_t kMostWords = size_t{1} << 32;
constexpr size_t kLeastRoom = 1024;

// What the upper bits of a record's place tell; the rest is a start or a number.
constexpr uint64_t kChanged = uint64_t{1} << 63;
constexpr uint64_t kAsWritten = uint64_t{1} << 62;
constexpr uint64_t kShort = uint64_t{1} << 61;
constexpr uint64_t kWide = uint64_t{1} << 60;
constexpr uint64_t kPlaceMask = kWide - 1;
constexpr size_t kPlaceWords = 2;

constexpr size_t kMostNarrow = std::numeric_limits<uint16_t>::max();
constexpr size_t kMostWide = std::numeric_limits<uint32_t>::max();

void StorePlace(uint32_t* record, uint64_t place) {
  record[0] = static_cast<uint32_t>(place);
  record[1] = static_cast<uint32_t>(place >> 32);
}

uint64_t LoadPlace(const uint32_t* record) {
  return record[0] | (static_cast<uint64_t>(record[1]) << 32);
}

}  // namespace

size_t RowStore::Place::End(size_t field) const {
  if (wide) return ends[field];
  return (ends[field / 2] >> (field % 2 * 16)) & kMostNarrow;
}

RowStore::Place RowStore::Find(RowHandle row) const {
  const uint32_t* record = Record(row);
  const uint64_t place = LoadPlace(record);
  const bool is_short = (place & kShort) != 0;
  Place found;
  found.start = place & kPlaceMask;
  found.changed = (place & kChanged) != 0;
  found.as_written = (place & kAsWritten) != 0;
  found.wide = (place & kWide) != 0;
  if (found.changed) return found;
  found.end_count = is_short ? record[kPlaceWords] : static_cast<size_t>(loaded_columns_);
  found.ends = record + kPlaceWords + (is_short ? 1 : 0);
  return found;
}

void RowStore::BeginLoading(int columns, size_t file_size) {
  loaded_columns_ = columns_ = columns;
  // Records are seldom larger than half of their text; a failure only means that they grow later.
  (void)records_.Reserve(file_size / 2);
}

uint32_t* RowStore::AddRecord(size_t words, RowHandle& row) {
  const size_t needed = (words_used_ + words) * sizeof(uint32_t);
  if (words_used_ + words > kMostWords) return nullptr;
  if (needed > records_.room() && !records_.Reserve(std::max({kLeastRoom, needed, 2 * records_.room()}))) {
    return nullptr;
  }
  row = static_cast<RowHandle>(words_used_);
  words_used_ += words;
  return Record(row);
}

void RowStore::PackEnds(std::span<const size_t> ends, bool wide, uint32_t* words) {
  if (wide) {
    for (const size_t end : ends) *words++ = static_cast<uint32_t>(end);
    return;
  }
  size_t i = 0;
  for (; i + 1 < ends.size(); i += 2) *words++ = static_cast<uint32_t>(ends[i] | (ends[i + 1] << 16));
  if (i < ends.size()) *words = static_cast<uint32_t>(ends[i]);
}

template <typename EndOf>
RowStore::ChangedRow RowStore::FieldsInBlock(uint64_t start, size_t count, EndOf end_of) const {
  ChangedRow fields(static_cast<size_t>(columns_));
  size_t from = 0;
  for (size_t i = 0; i < count; ++i) {
    fields[i] = FieldText::InBlock(start + from, end_of(i) - from);
    from = end_of(i) + 1;
  }
  return fields;
}

bool RowStore::AddLoaded(size_t start, std::span<const size_t> ends, bool as_written, RowHandle& row) {
  const size_t last_end = ends.empty() ? 0 : ends.back();
  const bool is_short = ends.size() < static_cast<size_t>(loaded_columns_);
  const bool wide = last_end > kMostNarrow;
  const bool changed = last_end > kMostWide;
  const size_t end_words = (is_short ? 1 : 0) + (wide ? ends.size() : (ends.size() + 1) / 2);
  uint32_t* const record = AddRecord(kPlaceWords + (changed ? 0 : end_words), row);
  if (record == nullptr) return false;
  if (changed) {
    MakeChanged(row, FieldsInBlock(start, ends.size(), [ends](size_t i) { return ends[i]; }));
    return true;
  }
  StorePlace(record, start | (as_written ? kAsWritten : 0) | (is_short ? kShort : 0) | (wide ? kWide : 0));
  if (is_short) record[kPlaceWords] = static_cast<uint32_t>(ends.size());
  PackEnds(ends, wide, record + kPlaceWords + (is_short ? 1 : 0));
  return true;
}

bool RowStore::Append(const RowStore& behind, RowHandle& added) {
  uint32_t* const records = AddRecord(behind.words_used_, added);
  if (records == nullptr) return false;
  std::copy_n(behind.Record(0), behind.words_used_, records);
  return true;
}

void RowStore::AddColumn() {
  ++columns_;
  for (ChangedRow& row : changed_) row.emplace_back();
}

bool RowStore::Add(RowHandle& row) {
  if (!removed_.empty()) {
    row = removed_.back();
    removed_.pop_back();
    changed_[LoadPlace(Record(row)) & kPlaceMask] = ChangedRow(static_cast<size_t>(columns_));
    return true;
  }
  if (AddRecord(kPlaceWords, row) == nullptr) return false;
  MakeChanged(row, ChangedRow(static_cast<size_t>(columns_)));
  return true;
}

void RowStore::Remove(RowHandle row) {
  const Place place = Find(row);
  if (!place.changed) return;
  changed_[place.start] = ChangedRow();
  removed_.push_back(row);
}

int RowStore::FieldCount(RowHandle row) const {
  const Place place = Find(row);
  return place.changed ? static_cast<int>(changed_[place.start].size()) : columns_;
}

RowStore::Value RowStore::FieldAt(const Place& place, int field) const {
  const auto index = static_cast<size_t>(field);
  if (place.changed) {
    const ChangedRow& fields = changed_[place.start];
    return index < fields.size() ? fields[index].Get(block_.data()) : std::nullopt;
  }
  if (index >= place.end_count) return std::nullopt;
  const size_t from = index == 0 ? 0 : place.End(index - 1) + 1;
  return std::string_view(block_.data() + place.start + from, place.End(index) - from);
}

RowStore::Value RowStore::Get(RowHandle row, int field) const {
  return FieldAt(Find(row), field);
}

void RowStore::GetAll(RowHandle row, std::span<const int> columns, std::span<std::string_view> values) const {
  const Place place = Find(row);
  for (size_t i = 0; i < columns.size(); ++i) values[i] = FieldAt(place, columns[i] - 1).value_or("");
}

void RowStore::Set(RowHandle row, int field, Value value) {
  Change(row)[static_cast<size_t>(field)].Set(value);
}

void RowStore::SetAll(RowHandle row, std::vector<FieldText> fields) {
  const Place place = Find(row);
  if (place.changed) {
    changed_[place.start] = std::move(fields);
  } else {
    MakeChanged(row, std::move(fields));
  }
}

RowStore::Value RowStore::AsWritten(RowHandle row) const {
  const Place place = Find(row);
  if (!place.as_written || loaded_columns_ != columns_) return std::nullopt;
  return std::string_view(block_.data() + place.start, place.End(place.end_count - 1));
}

RowStore::ChangedRow& RowStore::Change(RowHandle row) {
  const Place place = Find(row);
  if (place.changed) return changed_[place.start];
  MakeChanged(row, FieldsInBlock(place.start, place.end_count, [&place](size_t i) { return place.End(i); }));
  return changed_.back();
}

void RowStore::MakeChanged(RowHandle row, ChangedRow fields) {
  StorePlace(Record(row), changed_.size() | kChanged);
  changed_.push_back(std::move(fields));
}

}  // namespace tessaro
