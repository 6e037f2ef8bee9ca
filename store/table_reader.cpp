#include "store/table_reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string>

#include "platform/disk.h"
#include "platform/progress.h"
#include "store/table_scan.h"

namespace tessaro {
namespace {

constexpr size_t kPiece = size_t{1} << 18;
constexpr size_t kLeastRoom = 4096;
// So much is searched for marks at once.
constexpr size_t kScanSize = 4096;
constexpr size_t kFirstEnds = 64;
static_assert(MemoryBlock::kReadableBehind >= kScanWidth);

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
    : file_(file),
      separator_(separator),
      plain_(separator != '\n' && separator != '\\' && separator != '\r'),
      content_(content),
      progress_(Progress()) {}

bool TableReader::Read() {
  content_.loaded_separator = separator_;
  // One byte more than announced, so that the end of an unchanged file is found without making room again.
  const size_t announced = static_cast<size_t>(file_.Size()) + 1;
  if (!content_.rows.block().Reserve(std::max(announced, kLeastRoom)) && !content_.rows.block().Reserve(kLeastRoom)) {
    return false;
  }
  warmer_.emplace(content_.rows.block().data(), static_cast<size_t>(file_.Size()));
  while (!at_end_) {
    if (!ReadPiece()) return false;
    if (!has_header_) ReadHeader();
    if (has_header_ && !ReadRows()) return false;
  }
  if (has_header_) EndFile();
  return !full_;
}

bool TableReader::ReadPiece() {
  MemoryBlock& block = content_.rows.block();
  if (size_ == block.room()) {
    warmer_->Stop();
    if (!block.Reserve(size_ + size_ / 2)) return false;
  }
  text_ = block.data();
  const std::ptrdiff_t count = file_.Read(text_ + size_, std::min(kPiece, block.room() - size_));
  if (count < 0) return false;
  at_end_ = count == 0;
  size_ += static_cast<size_t>(count);
  warmer_->Reached(size_);
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
  content_.rows.BeginLoading(content_.columns.size(), content_.rows.block().room());
  columns_ = static_cast<size_t>(content_.columns.size());
  ends_.resize(std::min(columns_, kFirstEnds));
  if (has_header_) ++scan_;
  line_ = {.start = scan_, .segment = scan_};
  Count(scan_ - (has_return ? 1 : 0));
}

void TableReader::AddName(size_t from, size_t to) {
  content_.columns.Add(UnescapedName({text_ + from, to - from}, separator_));
}

// Goes through what has been read and stops before a mark whose meaning depends on bytes still to come.
bool TableReader::ReadRows() {
  std::array<uint32_t, kScanSize + kScanWidth> places;
  while (scan_ < size_ && !full_) {
    const size_t start = scan_;
    const size_t size = std::min(size_ - start, kScanSize);
    const size_t count = FindMarks(text_ + start, size, separator_, places.data());
    scan_ += size;
    if (!FollowMarks(start, {places.data(), count})) return true;
  }
  return !full_;
}

// Handles marks, whose places count from `start`. False when more must be read to know what one of them means; that is
// the next to look at. The mark that nearly all are, a separator in a line that has no escape, is handled right here.
bool TableReader::FollowMarks(size_t start, std::span<const uint32_t> places) {
  Line line = line_;
  for (const uint32_t place : places) {
    const size_t at = start + place;
    if (plain_ && text_[at] == separator_ && line.shift == 0 && line.fields < ends_.size()) {
      ends_[line.fields++] = at - line.start;
      line.segment = at + 1;
      continue;
    }
    line_ = line;
    // An escaped mark is no more one.
    if (at >= line.segment && !FollowMark(at)) {
      scan_ = at;
      return false;
    }
    line = line_;
  }
  line_ = line;
  return true;
}

bool TableReader::FollowMark(size_t at) {
  const char mark = text_[at];
  if (mark == '\n') {
    EndLine(at);
    return true;
  }
  if (mark == '\\') return Unescape(at);
  if (mark == '\r' && at + 1 == size_ && !at_end_) return false;
  // A separator that is a carriage return is none before a line feed.
  if (mark != '\r' || at + 1 == size_ || text_[at + 1] != '\n') EndField(at);
  return true;
}

// The escaped byte takes the place of its backslash. At the end of the file there is none, and the field is dropped.
bool TableReader::Unescape(size_t at) {
  size_t escaped = at + 1;
  if (escaped < size_ && text_[escaped] == '\r' && (escaped + 1 < size_ ? text_[escaped + 1] == '\n' : !at_end_)) {
    ++escaped;
  }
  if (escaped >= size_) return at_end_;
  const char letter = text_[escaped];
  if (line_.shift != 0) MoveSegment(at);
  text_[at - line_.shift] = letter == 'n' || letter == 'N' ? '\n' : letter;
  line_.shift += escaped - at;
  line_.lost_returns += escaped - at - 1;
  line_.segment = escaped + 1;
  return true;
}

void TableReader::MoveSegment(size_t to) {
  std::memmove(text_ + line_.segment - line_.shift, text_ + line_.segment, to - line_.segment);
}

void TableReader::EndField(size_t at) {
  if (line_.shift != 0) MoveSegment(at);
  if (line_.fields < columns_) {
    if (line_.fields == ends_.size()) ends_.resize(std::min(2 * ends_.size(), columns_));
    ends_[line_.fields] = at - line_.shift - line_.start;
  }
  ++line_.fields;
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
}

// A last line without a line feed is a row too, but the field that was begun is dropped.
void TableReader::EndFile() {
  if (line_.start == size_) return;
  AddRow(false);
  Count(size_ - line_.start - line_.lost_returns);
}

void TableReader::AddRow(bool as_written) {
  RowHandle row = 0;
  if (content_.rows.AddLoaded(line_.start, {ends_.data(), std::min(line_.fields, columns_)}, as_written, row)) {
    content_.order.Append(row);
  } else {
    full_ = true;
  }
}

void TableReader::Count(size_t characters) {
  progress_.counter += static_cast<int64_t>(characters);
  if (progress_.display) progress_.ShowPosition(progress_.counter);
}

}  // namespace tessaro
