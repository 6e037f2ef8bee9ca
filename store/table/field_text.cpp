#include "store/table/field_text.h"

#include <cstring>
#include <utility>

namespace tessaro {

static_assert(sizeof(FieldText) == 16);

FieldText::FieldText(FieldText&& other) noexcept
    : place_(std::exchange(other.place_, 0)), size_and_kind_(std::exchange(other.size_and_kind_, 0)) {}

FieldText& FieldText::operator=(FieldText&& other) noexcept {
  std::swap(place_, other.place_);
  std::swap(size_and_kind_, other.size_and_kind_);
  return *this;
}

FieldText::~FieldText() {
  if (IsOutside()) delete[] Outside();
}

FieldText FieldText::InBlock(uint64_t place, size_t size) {
  FieldText field;
  field.place_ = place;
  field.size_and_kind_ = size | kInBlock;
  return field;
}

FieldText FieldText::Own(std::optional<std::string_view> value) {
  FieldText field;
  if (!value) return field;
  field.size_and_kind_ = value->size() | kOwned;
  if (field.IsOutside()) field.place_ = reinterpret_cast<uintptr_t>(new char[value->size()]);
  if (!value->empty()) std::memcpy(field.bytes(), value->data(), value->size());
  return field;
}

std::optional<std::string_view> FieldText::Get(const RowBlocks& blocks) const {
  if (IsOwned()) return std::string_view(bytes(), size());
  if ((size_and_kind_ & kInBlock) != 0) return std::string_view(blocks.At(place_), size());
  return std::nullopt;
}

void FieldText::Set(std::optional<std::string_view> value) {
  // Fields of fixed width are changed over and over: they keep their bytes.
  const bool fits = value && IsOwned() && value->size() == size() && !value->empty();
  if (fits) {
    std::memmove(bytes(), value->data(), value->size());
  } else {
    *this = Own(value);
  }
}

}  // namespace tessaro
