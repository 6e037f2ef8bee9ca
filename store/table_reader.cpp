#include "store/table_reader.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>

#include "platform/disk.h"
#include "platform/progress.h"
#include "store/table_scan.h"

namespace tessaro {
namespace {

constexpr size_t kPiece = size_t{1} << 20;
constexpr size_t kLeastRoom = 4096;
static_assert(TextBlock::kReadableBehind >= kScanWidth);

// Undoes the escapes of a column name. Unlike in a row, a backslash before any other letter stays.
std::string UnescapedName(std::string_view text, char separator) {
  std::string name;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool has_next = text[i] == '\\' && i + 1 < text.size();
    if (has_next && text[i + 1] == 'n') {
      name += '\n';
      ++i;
    } else if (has_next && (text[i + 1] == separator || text[i + 1] == '\\')) {
      name += text[++i];
    } else {
      name += text[i];
    }
  }
  return name;
}

}  // namespace

TableReader::TableReader(ReadableFile& file, char separator, TableContent& content)
    : file_(file), separator_(separator), content_(content) {}

bool TableReader::Read() {
  content_.loaded_separator = separator_;
  // One byte more than announced, so that the end of an unchanged file is found without making room again.
  const size_t announced = static_cast<size_t>(file_.Size()) + 1;
  if (!content_.rows.block().Reserve(std::max(announced, kLeastRoom), 0) &&
      !content_.rows.block().Reserve(kLeastRoom, 0)) {
    return false;
  }
  while (!at_end_) {
    if (!ReadPiece()) return false;
    if (!has_header_) ReadHeader();
    if (has_header_ && !ReadRows()) return false;
  }
  if (has_header_) EndFile();
  return !full_;
}

bool TableReader::ReadPiece() {
  TextBlock& block = content_.rows.block();
  if (size_ == block.room() && !block.Reserve(size_ + size_ / 2, size_)) return false;
  text_ = block.data();
  const std::ptrdiff_t count = file_.Read(text_ + size_, std::min(kPiece, block.room() - size_));
  if (count < 0) return false;
  at_end_ = count == 0;
  size_ += static_cast<size_t>(count);
  return true;
}

// Waits for the whole first line. A file that ends before keeps the names that a separator ended; the last is dropped.
void TableReader::ReadHeader() {
  const void* const found = std::memchr(text_ + scan_, '\n', size_ - scan_);
  has_header_ = found != nullptr;
  scan_ = has_header_ ? static_cast<size_t>(static_cast<const char*>(found) - text_) : size_;
  if (!has_header_ && !at_end_) return;
  const bool has_return = has_header_ && scan_ > 0 && text_[scan_ - 1] == '\r';
  if (has_return) content_.line_end = LineEnd::CrLf;
  const size_t end = scan_ - (has_return ? 1 : 0);
  size_t name = 0;
  for (size_t i = 0; i < end; ++i) {
    if (text_[i] != separator_) continue;
    AddName(name, i);
    name = i + 1;
  }
  if (has_header_) AddName(name, end);
  content_.rows.SetLoadedColumns(content_.columns.size());
  columns_ = static_cast<size_t>(content_.columns.size());
  if (has_header_) ++scan_;
  line_ = {.start = scan_, .segment = scan_};
  Count(scan_ - (has_return ? 1 : 0));
}

void TableReader::AddName(size_t from, size_t to) {
  content_.columns.Add(UnescapedName({text_ + from, to - from}, separator_));
}

// Goes through what has been read and stops before a mark whose meaning depends on bytes still to come.
bool TableReader::ReadRows() {
  while (scan_ < size_) {
    size_t next = std::min(scan_ + kScanWidth, size_);
    for (uint64_t marks = FindMarks(text_ + scan_, separator_); marks != 0; marks &= marks - 1) {
      const size_t at = scan_ + static_cast<size_t>(std::countr_zero(marks));
      if (at >= size_) break;
      const size_t behind = FollowMark(at);
      if (behind == at) {
        scan_ = at;
        return true;
      }
      if (behind > at + 1) {
        next = behind;
        break;
      }
    }
    if (full_) return false;
    scan_ = next;
  }
  return true;
}

// Handles the mark and returns where the text goes on; `at` itself when more must be read to know.
size_t TableReader::FollowMark(size_t at) {
  const char mark = text_[at];
  if (mark == '\n') {
    EndLine(at);
  } else if (mark == '\\') {
    return Unescape(at);
  } else if (mark != '\r') {
    EndField(at);
  } else if (at + 1 < size_) {
    // A separator that is a carriage return is none before a line feed.
    if (text_[at + 1] != '\n') EndField(at);
  } else if (!at_end_) {
    return at;
  }
  return at + 1;
}

// The escaped byte takes the place of its backslash. At the end of the file there is none, and the field is dropped.
size_t TableReader::Unescape(size_t at) {
  size_t escaped = at + 1;
  if (escaped < size_ && text_[escaped] == '\r' && (escaped + 1 < size_ ? text_[escaped + 1] == '\n' : !at_end_)) {
    ++escaped;
  }
  if (escaped >= size_) return at_end_ ? size_ : at;
  const char letter = text_[escaped];
  MoveSegment(at);
  text_[at - line_.shift] = letter == 'n' || letter == 'N' ? '\n' : letter;
  line_.shift += escaped - at;
  line_.lost_returns += escaped - at - 1;
  line_.segment = escaped + 1;
  return escaped + 1;
}

void TableReader::MoveSegment(size_t to) {
  if (line_.shift == 0) return;
  std::memmove(text_ + line_.segment - line_.shift, text_ + line_.segment, to - line_.segment);
}

void TableReader::EndField(size_t at) {
  MoveSegment(at);
  if (line_.fields++ < columns_) ends_.push_back(at - line_.shift - line_.start);
  line_.segment = at + 1;
}

void TableReader::EndLine(size_t at) {
  const bool has_return = at > line_.segment && text_[at - 1] == '\r';
  EndField(at - (has_return ? 1 : 0));
  const bool as_written =
      line_.shift == 0 && line_.fields == columns_ && has_return == (content_.line_end == LineEnd::CrLf);
  AddRow(as_written);
  Count(at + 1 - line_.start - line_.lost_returns - (has_return ? 1 : 0));
  line_ = {.start = at + 1, .segment = at + 1};
  ends_.clear();
}

// A last line without a line feed is a row too, but the field that was begun is dropped.
void TableReader::EndFile() {
  if (line_.start == size_) return;
  AddRow(false);
  Count(size_ - line_.start - line_.lost_returns);
}

void TableReader::AddRow(bool as_written) {
  RowHandle row = 0;
  if (content_.rows.AddLoaded(line_.start, ends_, as_written, row)) {
    content_.order.Append(row);
  } else {
    full_ = true;
  }
}

void TableReader::Count(size_t characters) {
  ProgressState& progress = Progress();
  progress.counter += static_cast<int64_t>(characters);
  if (progress.display) progress.ShowPosition(progress.counter);
}

}  // namespace tessaro
