#include "store/file/card_text_count.h"

#include <algorithm>
#include <cstddef>

#include "platform/disk.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr size_t kPiece = size_t{1} << 18U;

std::string_view WithoutLineEnd(std::string_view line) {
  if (line.ends_with('\n')) line.remove_suffix(1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

// The field of a line; a backslash takes the meaning from the separator after it.
std::string_view FieldOf(std::string_view line, int field) {
  size_t start = 0;
  for (size_t at = 0; at < line.size(); ++at) {
    if (line[at] == '\\') {
      ++at;
    } else if (line[at] == kFieldSeparator) {
      if (--field < 0) return line.substr(start, at - start);
      start = at + 1;
    }
  }
  return field == 0 ? line.substr(start) : std::string_view();
}

int IdColumn(std::string_view header) {
  const auto columns = static_cast<int>(std::count(header.begin(), header.end(), kFieldSeparator)) + 1;
  for (int column = 0; column < columns; ++column) {
    if (FieldOf(header, column) == kId) return column;
  }
  return columns;
}

}  // namespace

void CardTextCount::Add(std::string_view bytes) {
  if (lines_ == 0) header_ += bytes.substr(0, bytes.find('\n'));
  lines_ += std::count(bytes.begin(), bytes.end(), '\n');
  hash_.Add(bytes);

  tail_ += bytes;
  const size_t last = tail_.rfind('\n');
  if (last == std::string::npos || last == 0) return;
  const size_t before = tail_.rfind('\n', last - 1);
  if (before != std::string::npos) tail_.erase(0, before + 1);
}

bool CardTextCount::HasEndRow() const {
  if (rows() == 0 || !tail_.ends_with('\n')) return false;
  return FieldOf(WithoutLineEnd(tail_), IdColumn(WithoutLineEnd(header_))) == kEndMark;
}

bool CountFile(Disk& disk, const std::filesystem::path& path, CardTextCount& count) {
  const std::unique_ptr<ReadableFile> file = disk.Open(path);
  if (file == nullptr) return false;
  std::string piece(kPiece, '\0');
  for (;;) {
    const std::ptrdiff_t size = file->Read(piece.data(), piece.size());
    if (size <= 0) return size == 0;
    count.Add(std::string_view(piece.data(), static_cast<size_t>(size)));
  }
}

std::optional<int64_t> CountCardsIn(Disk& disk, const std::filesystem::path& path) {
  CardTextCount count;
  if (!CountFile(disk, path, count) || !count.HasEndRow()) return std::nullopt;
  return std::max<int64_t>(count.rows() - 2, 0);
}

}  // namespace tessaro
