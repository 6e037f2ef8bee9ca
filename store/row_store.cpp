#include "store/row_store.h"

#include <limits>
#include <utility>

namespace tessaro {
namespace {

// 64 Ki words a chunk; a handle is the number of a record's first word. One chunk less than a handle can reach, so that
// rows of two words can be counted by an int.
constexpr int kChunkBits = 16;
constexpr size_t kChunkWords = size_t{1} << kChunkBits;
constexpr size_t kMostChunks = (size_t{1} << (32 - kChunkBits)) - 1;

// What the upper bits of a record's place tell; the rest is a start or a number.
constexpr uint64_t kChanged = uint64_t{1} << 63;
constexpr uint64_t kAsWritten = uint64_t{1} << 62;
constexpr uint64_t kShort = uint64_t{1} << 61;
constexpr uint64_t kPlaceMask = kShort - 1;
constexpr size_t kPlaceWords = 2;

void StorePlace(uint32_t* record, uint64_t place) {
  record[0] = static_cast<uint32_t>(place);
  record[1] = static_cast<uint32_t>(place >> 32);
}

uint64_t LoadPlace(const uint32_t* record) {
  return record[0] | (static_cast<uint64_t>(record[1]) << 32);
}

// The fields of a loaded row, which begins at `start` and has its ends counted from there, and null ones behind.
template <typename End>
std::vector<FieldText> FieldsInBlock(uint64_t start, std::span<const End> ends, int columns) {
  std::vector<FieldText> fields(static_cast<size_t>(columns));
  size_t from = 0;
  for (size_t i = 0; i < ends.size(); ++i) {
    fields[i] = FieldText::InBlock(start + from, ends[i] - from);
    from = size_t{ends[i]} + 1;
  }
  return fields;
}

}  // namespace

uint32_t* RowStore::Record(RowHandle row) {
  return records_[row >> kChunkBits].get() + (row & (kChunkWords - 1));
}

const uint32_t* RowStore::Record(RowHandle row) const {
  return records_[row >> kChunkBits].get() + (row & (kChunkWords - 1));
}

RowStore::Place RowStore::Find(RowHandle row) const {
  const uint32_t* record = Record(row);
  const uint64_t place = LoadPlace(record);
  Place found;
  found.start = place & kPlaceMask;
  found.changed = (place & kChanged) != 0;
  found.as_written = (place & kAsWritten) != 0;
  const bool is_short = (place & kShort) != 0;
  found.end_count = is_short ? record[kPlaceWords] : static_cast<size_t>(loaded_columns_);
  found.ends = record + kPlaceWords + (is_short ? 1 : 0);
  return found;
}

uint32_t* RowStore::AddRecord(size_t words, RowHandle& row) {
  if (records_.empty() || words_used_ + words > kChunkWords) {
    if (records_.size() == kMostChunks) return nullptr;
    records_.push_back(std::make_unique_for_overwrite<uint32_t[]>(kChunkWords));
    words_used_ = 0;
  }
  row = static_cast<RowHandle>(((records_.size() - 1) << kChunkBits) + words_used_);
  words_used_ += words;
  return Record(row);
}

bool RowStore::AddLoaded(size_t start, std::span<const size_t> ends, bool as_written, RowHandle& row) {
  const bool is_short = ends.size() < static_cast<size_t>(loaded_columns_);
  const size_t words = kPlaceWords + (is_short ? 1 : 0) + ends.size();
  const bool fits = words <= kChunkWords && (ends.empty() || ends.back() <= std::numeric_limits<uint32_t>::max());
  uint32_t* record = AddRecord(fits ? words : kPlaceWords, row);
  if (record == nullptr) return false;
  if (!fits) {
    MakeChanged(row, FieldsInBlock(start, ends, columns_));
    return true;
  }
  StorePlace(record, start | (as_written ? kAsWritten : 0) | (is_short ? kShort : 0));
  record += kPlaceWords;
  if (is_short) *record++ = static_cast<uint32_t>(ends.size());
  for (const size_t end : ends) *record++ = static_cast<uint32_t>(end);
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

RowStore::Value RowStore::Get(RowHandle row, int field) const {
  const Place place = Find(row);
  const auto index = static_cast<size_t>(field);
  if (place.changed) {
    const ChangedRow& fields = changed_[place.start];
    return index < fields.size() ? fields[index].Get(block_.data()) : std::nullopt;
  }
  if (index >= place.end_count) return std::nullopt;
  const size_t from = index == 0 ? 0 : size_t{place.ends[index - 1]} + 1;
  return std::string_view(block_.data() + place.start + from, place.ends[index] - from);
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
  return std::string_view(block_.data() + place.start, place.ends[place.end_count - 1]);
}

RowStore::ChangedRow& RowStore::Change(RowHandle row) {
  const Place place = Find(row);
  if (place.changed) return changed_[place.start];
  MakeChanged(row, FieldsInBlock(place.start, std::span(place.ends, place.end_count), columns_));
  return changed_.back();
}

void RowStore::MakeChanged(RowHandle row, ChangedRow fields) {
  StorePlace(Record(row), changed_.size() | kChanged);
  changed_.push_back(std::move(fields));
}

}  // namespace tessaro
