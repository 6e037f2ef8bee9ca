// The part of the row store that has to do with many rows which come or change at once.

#include <algorithm>
#include <cstring>

#include "store/table/row_record.h"
#include "store/table/row_store.h"
#include "store/table/table_scan.h"

namespace tessaro {

using namespace row_record;

bool RowStore::AddFilled(std::span<const FieldView> fields, RowHandle& row) {
  // A table that was not loaded has no other rows of this kind.
  if (loaded_columns_ == 0) loaded_columns_ = columns_;
  const auto not_ascending = [](const FieldView& field, const FieldView& next) { return field.column >= next.column; };
  const bool in_order = std::adjacent_find(fields.begin(), fields.end(), not_ascending) == fields.end() &&
                        (fields.empty() || fields.back().column <= columns_);
  size_t most = static_cast<size_t>(columns_);
  for (const FieldView& field : fields) most += field.text.size();
  const bool is_narrow = most <= kMostNarrow && in_order && loaded_columns_ == columns_;
  const bool shares = is_narrow && FindShared(fields);
  const std::optional<uint64_t> place = is_narrow ? PlaceOfRewritten(most) : std::nullopt;
  if (!place) {
    if (!Add(row)) return false;
    for (const FieldView& field : fields) Set(row, field.column - 1, field.text);
    return true;
  }
  const size_t end_words = (static_cast<size_t>(columns_) + 1) / 2;
  const size_t shared_words = shares ? kUnescapedHead + kUnescapedWords * shared_.fields.size() : 0;
  uint32_t* const record = AddRecord(kPlaceWords + end_words + shared_words, row);
  if (record == nullptr) return false;
  rewritten_size_ += WriteFields(fields, shares, blocks_.At(*place));
  StorePlace(record, *place | (shares ? kUnescaped : 0));
  uint32_t* const behind = PackEnds(composed_.ends, false, record + kPlaceWords);
  if (shares) PackUnescaped(shared_.start, shared_.fields, behind);
  return true;
}

size_t RowStore::WriteFields(std::span<const FieldView> fields, bool shares, char* start) {
  char* at = start;
  composed_.ends.clear();
  auto next = fields.begin();
  auto shared = shared_.fields.begin();
  for (size_t index = 0; index < static_cast<size_t>(columns_); ++index) {
    if (index > 0) *at++ = separator_;
    if (next != fields.end() && static_cast<size_t>(next->column) == index + 1) {
      const bool is_shared = shares && shared != shared_.fields.end() && shared->field == index;
      if (is_shared) {
        ++shared;
      } else {
        at = std::copy(next->text.begin(), next->text.end(), at);
      }
      ++next;
    }
    composed_.ends.push_back(static_cast<size_t>(at - start));
  }
  return static_cast<size_t>(at - start);
}

bool RowStore::FindShared(std::span<const FieldView> fields) {
  constexpr size_t kLeast = 48;
  constexpr size_t kMost = 1024;
  common_.fields.clear();
  common_.text.clear();
  last_texts_.resize(static_cast<size_t>(columns_));
  for (const FieldView& field : fields) {
    if (field.text.size() < kLeast || field.text.size() > kMost) continue;
    const auto index = static_cast<size_t>(field.column) - 1;
    if (last_texts_[index] != field.text) {
      last_texts_[index] = field.text;
      continue;
    }
    common_.text += field.text;
    common_.fields.push_back({index, common_.text.size()});
  }
  if (common_.fields.empty()) return false;
  if (common_.fields == shared_.fields && common_.text == shared_.text) return true;
  common_.start = unescaped_size_;
  if (!AddUnescaped(common_.text)) return false;
  shared_ = common_;
  return true;
}

bool RowStore::IsPlain(const FieldView& field) const {
  return FindFirstMark(field.text, separator_) == field.text.size();
}

bool RowStore::Overwrite(RowHandle row, const Place& place, std::span<const FieldView> fields) {
  const auto fits = [&](const FieldView& field) {
    const auto index = static_cast<size_t>(field.column) - 1;
    if (index >= place.end_count || FieldAt(place, field.column - 1)->size() != field.text.size()) return false;
    return place.unescaped == nullptr || !Unescaped(place, static_cast<uint32_t>(index));
  };
  if (!std::all_of(fields.begin(), fields.end(), fits)) return false;
  for (const FieldView& field : fields) {
    const auto index = static_cast<size_t>(field.column) - 1;
    const size_t from = index == 0 ? 0 : place.End(index - 1) + 1;
    std::memmove(blocks_.At(place.start) + from, field.text.data(), field.text.size());
    if (IsPlain(field)) continue;
    uint32_t* const record = Record(row);
    StorePlace(record, LoadPlace(record) & ~kAsWritten);
  }
  return true;
}

bool RowStore::ComposeRow(const Place& place, size_t first, std::span<const FieldView> fields,
                          ComposedRow& composed) const {
  auto& [text, ends, unescaped] = composed;
  text.clear();
  ends.clear();
  unescaped = place.unescaped == nullptr ? 0 : *place.unescaped;
  for (size_t i = 0; i < first; ++i) ends.push_back(place.End(i));
  const size_t start = first == 0 ? 0 : place.End(first - 1);
  size_t from = first == 0 ? 0 : start + 1;
  auto next = fields.begin();
  for (size_t i = first; i < place.end_count; ++i) {
    const size_t end = place.End(i);
    if (i > 0) text += separator_;
    const bool is_named = next != fields.end() && static_cast<size_t>(next->column) == i + 1;
    const Value elsewhere =
        is_named && place.unescaped != nullptr ? Unescaped(place, static_cast<uint32_t>(i)) : std::nullopt;
    if (!is_named || elsewhere == next->text) {
      text.append(blocks_.At(place.start) + from, end - from);
    } else {
      if (elsewhere) --unescaped;
      text += next->text;
    }
    if (is_named) ++next;
    ends.push_back(start + text.size());
    from = end + 1;
  }
  // Of the texts that stand elsewhere all get others here, or none.
  return next == fields.end() && (unescaped == 0 || unescaped == *place.unescaped);
}

std::optional<uint64_t> RowStore::PlaceOfRewritten(size_t size) {
  MemoryBlock& block = blocks_[RowBlocks::kRewritten];
  const size_t needed = rewritten_size_ + size;
  if (needed > block.room() && !block.Reserve(std::max({kLeastBlock, needed, 2 * block.room()}))) return std::nullopt;
  return RowBlocks::PlaceIn(RowBlocks::kRewritten, rewritten_size_);
}

bool RowStore::Rewrite(RowHandle row, std::span<const FieldView> fields, ComposedRow& composed, bool may_move) {
  const Place place = Find(row);
  if (place.changed || place.end_count == 0) return false;
  if (Overwrite(row, place, fields)) return true;
  const int first_column = fields.empty() ? 1 : std::max(fields.front().column, 1);
  const size_t first = std::min(static_cast<size_t>(first_column) - 1, place.end_count);
  if (!ComposeRow(place, first, fields, composed)) return false;
  const size_t kept = first == 0 ? 0 : place.End(first - 1);  // bytes at the front that stay
  const size_t size = kept + composed.text.size();
  const size_t old_size = place.End(place.end_count - 1);
  if (size > (place.wide ? kMostWide : kMostNarrow)) return false;
  uint64_t start = place.start;
  if (size > old_size) {
    const std::optional<uint64_t> moved = may_move ? PlaceOfRewritten(size) : std::nullopt;
    if (!moved) return false;
    start = *moved;
    rewritten_size_ += size;
    std::memcpy(blocks_.At(start), blocks_.At(place.start), kept);
  }
  // A row is written together with the line end behind it.
  const bool as_written =
      place.as_written && size == old_size &&
      std::all_of(fields.begin(), fields.end(), [&](const FieldView& field) { return IsPlain(field); });
  std::memcpy(blocks_.At(start) + kept, composed.text.data(), composed.text.size());
  uint32_t* const record = Record(row);
  const uint64_t kind = LoadPlace(record) & ~(kPlaceMask | kAsWritten | (composed.unescaped == 0 ? kUnescaped : 0));
  StorePlace(record, start | kind | (as_written ? kAsWritten : 0));
  PackEnds(composed.ends, place.wide, record + kPlaceWords + ((kind & kShort) != 0 ? 1 : 0));
  return true;
}

}  // namespace tessaro
