#pragma once

#include <cstddef>

#include "platform/other_thread.h"
#include "store/table/packed_fields.h"

namespace tessaro {

// Walks over the rows in two parts (InTwoParts): `walk(from, end)` reads from a place on, up to this row.
template <typename Walk>
auto ReadInTwoParts(const PackedFields& fields, const Walk& walk) {
  const PackedFields::Place middle = fields.Middle();
  return InTwoParts(0, static_cast<int>(middle.row), static_cast<int>(fields.rows()), [&](int first, int end) {
    return walk(first == 0 ? PackedFields::Place() : middle, static_cast<size_t>(end));
  });
}

}  // namespace tessaro
