#include "store/table/row_store.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "store/table/row_record.h"

namespace tessaro {

using namespace row_record;

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
  if ((place & kUnescaped) != 0) {
    found.unescaped = found.ends + (found.wide ? found.end_count : (found.end_count + 1) / 2);
  }
  return found;
}

void RowStore::BeginLoading(int columns, char separator, size_t file_size, bool second_half) {
  loaded_columns_ = columns_ = columns;
  separator_ = separator;
  if (second_half) unescaped_block_ = RowBlocks::kUnescapedOfSecondHalf;
  // Records are seldom larger than half of their text; a failure only means that they grow later.
  (void)records_.Reserve(file_size / 2);
}

uint32_t* RowStore::AddRecord(size_t words, RowHandle& row) {
  const size_t needed = (words_used_ + words) * sizeof(uint32_t);
  if (words_used_ + words > kMostWords) return nullptr;
  if (needed > records_.room() && !records_.Reserve(std::max({kLeastBlock, needed, 2 * records_.room()}))) {
    return nullptr;
  }
  row = static_cast<RowHandle>(words_used_);
  words_used_ += words;
  return Record(row);
}

bool RowStore::GrowUnescaped(size_t needed) {
  MemoryBlock& block = blocks_[unescaped_block_];
  return block.Reserve(std::max({kLeastBlock, needed, 2 * block.room()}));
}

// Returns where the words after the ends begin.
uint32_t* RowStore::PackEnds(std::span<const size_t> ends, bool wide, uint32_t* words) {
  if (wide) {
    for (const size_t end : ends) *words++ = static_cast<uint32_t>(end);
    return words;
  }
  size_t i = 0;
  for (; i + 1 < ends.size(); i += 2) *words++ = static_cast<uint32_t>(ends[i] | (ends[i + 1] << 16));
  if (i < ends.size()) *words++ = static_cast<uint32_t>(ends[i]);
  return words;
}

void RowStore::PackUnescaped(size_t start, std::span<const UnescapedField> fields, uint32_t* words) const {
  *words++ = static_cast<uint32_t>(fields.size());
  StorePlace(words, RowBlocks::PlaceIn(unescaped_block_, start));
  words += kPlaceWords;
  for (const UnescapedField& unescaped : fields) {
    *words++ = static_cast<uint32_t>(unescaped.field);
    *words++ = static_cast<uint32_t>(unescaped.end);
  }
}

RowStore::ChangedRow RowStore::FieldsOf(const LoadedRow& loaded) const {
  ChangedRow fields(static_cast<size_t>(columns_));
  size_t from = 0;
  for (size_t i = 0; i < loaded.ends.size(); ++i) {
    fields[i] = FieldText::InBlock(loaded.start + from, loaded.ends[i] - from);
    from = loaded.ends[i] + 1;
  }
  from = 0;
  for (const auto& [field, end] : loaded.unescaped) {
    const uint64_t place = RowBlocks::PlaceIn(unescaped_block_, loaded.unescaped_start + from);
    fields[field] = FieldText::InBlock(place, end - from);
    from = end;
  }
  return fields;
}

RowStore::ChangedRow RowStore::FieldsOf(const Place& place) const {
  ChangedRow fields(static_cast<size_t>(columns_));
  size_t from = 0;
  for (size_t i = 0; i < place.end_count; ++i) {
    fields[i] = FieldText::InBlock(place.start + from, place.End(i) - from);
    from = place.End(i) + 1;
  }
  if (place.unescaped == nullptr) return fields;
  const uint64_t start = LoadPlace(place.unescaped + 1);
  const uint32_t* entry = place.unescaped + kUnescapedHead;
  from = 0;
  for (uint32_t i = 0; i < *place.unescaped; ++i, entry += kUnescapedWords) {
    fields[entry[0]] = FieldText::InBlock(start + from, entry[1] - from);
    from = entry[1];
  }
  return fields;
}

bool RowStore::AddLoaded(const LoadedRow& loaded, RowHandle& row) {
  const std::span<const size_t> ends = loaded.ends;
  const size_t last_end = ends.empty() ? 0 : ends.back();
  const bool is_short = ends.size() < static_cast<size_t>(loaded_columns_);
  const bool wide = last_end > kMostNarrow;
  const bool changed = last_end > kMostWide;
  const bool unescaped = !loaded.unescaped.empty();
  const size_t end_words = (is_short ? 1 : 0) + (wide ? ends.size() : (ends.size() + 1) / 2);
  const size_t unescaped_words = unescaped ? kUnescapedHead + kUnescapedWords * loaded.unescaped.size() : 0;
  uint32_t* const record = AddRecord(kPlaceWords + (changed ? 0 : end_words + unescaped_words), row);
  if (record == nullptr) return false;
  if (changed) {
    MakeChanged(row, FieldsOf(loaded));
    return true;
  }
  StorePlace(record, loaded.start | (loaded.as_written ? kAsWritten : 0) | (is_short ? kShort : 0) |
                         (wide ? kWide : 0) | (unescaped ? kUnescaped : 0));
  if (is_short) record[kPlaceWords] = static_cast<uint32_t>(ends.size());
  uint32_t* const behind = PackEnds(ends, wide, record + kPlaceWords + (is_short ? 1 : 0));
  if (unescaped) PackUnescaped(loaded.unescaped_start, loaded.unescaped, behind);
  return true;
}

bool RowStore::Append(RowStore&& behind, RowHandle& added) {
  uint32_t* const records = AddRecord(behind.words_used_, added);
  if (records == nullptr) return false;
  std::copy_n(behind.Record(0), behind.words_used_, records);
  std::swap(blocks_[behind.unescaped_block_], behind.blocks_[behind.unescaped_block_]);
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
    return index < fields.size() ? fields[index].Get(blocks_) : std::nullopt;
  }
  if (index >= place.end_count) return std::nullopt;
  if (place.unescaped != nullptr) {
    if (const Value text = Unescaped(place, static_cast<uint32_t>(index))) return text;
  }
  const size_t from = index == 0 ? 0 : place.End(index - 1) + 1;
  return std::string_view(blocks_.At(place.start) + from, place.End(index) - from);
}

RowStore::Value RowStore::Unescaped(const Place& place, uint32_t field) const {
  const uint32_t* const entries = place.unescaped + kUnescapedHead;
  // A row may have very many of them.
  uint32_t first = 0;
  for (uint32_t count = *place.unescaped; count > 0;) {
    const uint32_t half = count / 2;
    const bool below = entries[kUnescapedWords * (first + half)] < field;
    first = below ? first + half + 1 : first;
    count = below ? count - half - 1 : half;
  }
  const uint32_t* const entry = entries + kUnescapedWords * first;
  if (first == *place.unescaped || entry[0] != field) return std::nullopt;
  const uint32_t from = first == 0 ? 0 : entry[1 - static_cast<int>(kUnescapedWords)];
  return std::string_view(blocks_.At(LoadPlace(place.unescaped + 1)) + from, entry[1] - from);
}

RowStore::Value RowStore::Get(RowHandle row, int field) const {
  return FieldAt(Find(row), field);
}

void RowStore::GetAll(RowHandle row, std::span<const int> columns, std::span<std::string_view> values) const {
  const Place place = Find(row);
  for (size_t i = 0; i < columns.size(); ++i) values[i] = FieldAt(place, columns[i] - 1).value_or("");
}

void RowStore::Expect(RowHandle row) const {
  const uint64_t place = LoadPlace(Record(row));
  if ((place & kChanged) != 0) return;
  const char* const text = blocks_.At(place & kPlaceMask);
  // The sides of a card are often in the second line of the cache.
  constexpr int kCacheLine = 64;
  __builtin_prefetch(text);
  __builtin_prefetch(text + kCacheLine);
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
  return std::string_view(blocks_.At(place.start), place.End(place.end_count - 1));
}

RowStore::ChangedRow& RowStore::Change(RowHandle row) {
  const Place place = Find(row);
  if (place.changed) return changed_[place.start];
  MakeChanged(row, FieldsOf(place));
  return changed_.back();
}

void RowStore::MakeChanged(RowHandle row, ChangedRow fields) {
  StorePlace(Record(row), changed_.size() | kChanged);
  changed_.push_back(std::move(fields));
}

}  // namespace tessaro
