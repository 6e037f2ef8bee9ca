// Reads any bytes as a table file, works on the table, writes it, and compares every step with the plain model.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "tests/store/table_twins.h"

namespace {

void Require(bool good) {
  if (!good) std::abort();
}

}  // namespace

// The first bytes choose the separator, how much is read at once, what the file says of its size and how many
// operations follow; the rest is the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kHead = 4;
  if (size < kHead) return 0;
  const size_t operations = data[3];
  std::string_view rest(reinterpret_cast<const char*>(data) + kHead, size - kHead);
  const std::string_view work = rest.substr(0, 2 * operations);
  rest.remove_prefix(work.size());

  tessaro::TableTwins twins(static_cast<char>(data[0]));
  const uint64_t told_size = data[2] < 128 ? rest.size() : data[2] * 16U;
  Require(twins.Load(rest, data[1] + 1U, told_size));
  for (size_t i = 0; i + 1 < work.size(); i += 2) {
    Require(twins.Do(static_cast<uint8_t>(work[i]), static_cast<uint8_t>(work[i + 1])));
  }
  Require(twins.SameContent());
  Require(twins.SameFile());
  return 0;
}
