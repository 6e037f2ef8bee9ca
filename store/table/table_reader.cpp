#include "store/table/table_reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "platform/disk.h"
#include "platform/other_thread.h"
#include "platform/progress.h"
#include "store/table/content_stamp.h"
#include "store/table/table_scan.h"

namespace tessaro {
namespace {

constexpr size_t kPiece = size_t{1} << 18;
constexpr size_t kLeastRoom = 4096;
// So much is searched for marks at once.
constexpr size_t kScanSize = 4096;
constexpr size_t kFirstEnds = 64;
// A row of a half always fits a record of its own.
constexpr uint64_t kMostSplit = UINT32_MAX;
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

// Whether a line feed ends a line whatever stands before `text`: a backslash may stand before it, and a carriage return
// between the two, and that backslash may belong to another one.
bool SurelyEndsLine(std::string_view text, size_t line_feed) {
  size_t end = line_feed;
  if (end > 0 && text[end - 1] == '\r') --end;
  size_t backslashes = 0;
  while (backslashes < end && text[end - 1 - backslashes] == '\\') ++backslashes;
  return backslashes < end && backslashes % 2 == 0;
}

}  // namespace

struct TableReader::SecondHalf {
  SecondHalf(const TableReader& first, std::unique_ptr<ReadableFile> from_middle, size_t middle)
      : file(std::move(from_middle)), reader(first, *file, middle, content, first.hash_ == nullptr ? nullptr : &hash) {}

  std::unique_ptr<ReadableFile> file;
  TableContent content;
  ContentHash hash;
  TableReader reader;
  std::future<bool> read;  // last, so that the thread ends before anything goes
};

TableReader::TableReader(ReadableFile& file, char separator, TableContent& content, ContentHash* hash,
                         Progress* progress, size_t least_split)
    : file_(&file),
      separator_(separator),
      plain_(separator != '\n' && separator != '\\' && separator != '\r'),
      least_split_(least_split),
      content_(content),
      hash_(hash),
      progress_(progress) {}

TableReader::TableReader(const TableReader& first, ReadableFile& file, size_t start, TableContent& content,
                         ContentHash* hash)
    : file_(&file),
      separator_(first.separator_),
      plain_(first.plain_),
      least_split_(SIZE_MAX),
      content_(content),
      hash_(hash),
      progress_(nullptr),
      text_(first.text_),
      room_(first.file_->Size()),
      size_(start),
      scan_(start),
      columns_(first.columns_),
      ends_(first.ends_.size()) {
  content_.line_end = first.content_.line_end;
  content_.rows.BeginLoading(first.content_.columns.size(), separator_, room_ - start, true);
}

TableReader::~TableReader() = default;

bool TableReader::Read() {
  content_.loaded_separator = separator_;
  // One byte more than announced, so that the end of an unchanged file is found without making room again.
  const size_t announced = static_cast<size_t>(file_->Size()) + 1;
  if (!MakeRoom(std::max(announced, kLeastRoom)) && !MakeRoom(kLeastRoom)) return false;
  while (!at_end_) {
    if (!ReadPiece()) return false;
    if (!in_lines_) {
      ReadHeader();
      if (in_lines_) StartSecondHalf();
    }
    if (in_lines_ && !ReadRows()) return false;
    if (second_half_ && (at_end_ || size_ == room_) && !JoinSecondHalf()) return false;
  }
  if (in_lines_) EndFile();
  return !full_;
}

bool TableReader::MakeRoom(size_t room) {
  MemoryBlock& block = content_.rows.block();
  if (!block.Reserve(room)) return false;
  text_ = block.data();
  room_ = block.room();
  return true;
}

bool TableReader::ReadPiece() {
  if (size_ == room_ && !MakeRoom(size_ + size_ / 2)) return false;
  const std::ptrdiff_t count = file_->Read(text_ + size_, std::min(kPiece, room_ - size_));
  if (count < 0) return false;
  at_end_ = count == 0;
  if (hash_ != nullptr) hash_->Add({text_ + size_, static_cast<size_t>(count)});
  size_ += static_cast<size_t>(count);
  return true;
}

// Shares the rest of the file with a second thread, where that is worth it. From now on this reader may only use what
// lies before the middle.
void TableReader::StartSecondHalf() {
  const uint64_t announced = file_->Size();
  if (!plain_ || announced < least_split_ || announced > kMostSplit || announced > room_) return;
  if (std::thread::hardware_concurrency() < 2) return;
  const size_t middle = (announced / 2 / ContentHash::kPiece + 1) * ContentHash::kPiece;
  if (middle >= announced || middle < size_ + kScanWidth) return;
  std::unique_ptr<ReadableFile> from_middle = file_->ReadFrom(middle);
  if (from_middle == nullptr) return;
  second_half_ = std::make_unique<SecondHalf>(*this, std::move(from_middle), middle);
  room_ = middle;
  second_half_->read =
      std::async(OnOtherThread(), [&second = second_half_->reader] { return second.ReadSecondHalf(); });
}

bool TableReader::ReadSecondHalf() {
  const size_t start = size_;
  while (!at_end_ && size_ < room_) {
    if (!ReadPiece()) return false;
    if ((in_lines_ || FindFirstLine(start)) && !ReadRows()) return false;
  }
  return true;
}

bool TableReader::FindFirstLine(size_t start) {
  const std::string_view half(text_ + start, size_ - start);
  while (scan_ < size_) {
    const size_t at = scan_++;
    if (text_[at] != '\n' || !SurelyEndsLine(half, at - start)) continue;
    in_lines_ = true;
    first_line_ = scan_;
    line_ = {.start = scan_, .segment = scan_};
    return true;
  }
  return false;
}

// Reads the line that goes over the middle to its end, takes over the rows after it and goes on where the second half
// ends.
bool TableReader::JoinSecondHalf() {
  const std::unique_ptr<SecondHalf> half = std::move(second_half_);
  const bool good = half->read.get();
  room_ = content_.rows.block().room();
  // A file that has become shorter meanwhile ends before the middle.
  if (at_end_) return ReadRows();
  TableReader& second = half->reader;
  counted_ += second.counted_;
  if (hash_ != nullptr) hash_->Append(std::move(half->hash));
  size_ = second.in_lines_ ? second.first_line_ : second.size_;
  if (!good || !ReadRows()) return false;
  if (second.in_lines_ && !TakeOver(second)) return false;
  rest_of_file_ = std::move(half->file);
  file_ = rest_of_file_.get();
  return true;
}

bool TableReader::TakeOver(TableReader& second) {
  RowHandle added = 0;
  if (!content_.rows.Append(std::move(second.content_.rows), added)) return false;
  const RowOrder& order = second.content_.order;
  for (int i = 0; i < order.size(); ++i) content_.order.Append(order.At(i) + added);
  size_ = second.size_;
  // A line that it had begun is looked at anew.
  scan_ = second.line_.start;
  line_ = {.start = scan_, .segment = scan_};
  unescaped_.clear();
  return true;
}

// Waits for the whole first line. A file that ends before keeps the names that a separator ended; the last is dropped.
void TableReader::ReadHeader() {
  const void* const found = std::memchr(text_ + scan_, '\n', size_ - scan_);
  in_lines_ = found != nullptr;
  scan_ = in_lines_ ? static_cast<size_t>(static_cast<const char*>(found) - text_) : size_;
  if (!in_lines_ && !at_end_) return;
  const bool has_return = in_lines_ && scan_ > 0 && text_[scan_ - 1] == '\r';
  if (has_return) content_.line_end = LineEnd::CrLf;
  const size_t end = scan_ - (has_return ? 1 : 0);
  size_t name = 0;
  for (size_t i = 0; i < end; ++i) {
    if (text_[i] != separator_) continue;
    AddName(name, i);
    name = i + 1;
  }
  if (in_lines_) AddName(name, end);
  content_.rows.BeginLoading(content_.columns.size(), separator_, content_.rows.block().room());
  columns_ = static_cast<size_t>(content_.columns.size());
  ends_.resize(std::min(columns_, kFirstEnds));
  if (in_lines_) ++scan_;
  line_ = {.start = scan_, .segment = scan_};
  Count(scan_ - (has_return ? 1 : 0));
}

void TableReader::AddName(size_t from, size_t to) {
  content_.columns.Add(UnescapedName({text_ + from, to - from}, separator_));
}

// Goes through what has been read and stops before a mark whose meaning depends on bytes still to come.
bool TableReader::ReadRows() {
  std::array<uint32_t, kScanSize + kScanWidth> places;
  // The search for marks looks past the end of its text, which is not to be touched where the other half begins.
  const size_t end = second_half_ ? std::min(size_, room_ - kScanWidth) : size_;
  while (scan_ < end && !full_) {
    const size_t start = scan_;
    const size_t size = std::min(end - start, kScanSize);
    const size_t count = FindMarks(text_ + start, size, separator_, places.data());
    scan_ += size;
    if (!FollowMarks(start, {places.data(), count})) return true;
  }
  return !full_;
}

// Handles marks, whose places count from `start`. False when more must be read to know what one of them means; that is
// the next to look at. The mark that nearly all are, a separator after a field without escapes, is handled right here.
bool TableReader::FollowMarks(size_t start, std::span<const uint32_t> places) {
  size_t fields = line_.fields;
  size_t segment = line_.segment;
  for (const uint32_t place : places) {
    const size_t at = start + place;
    if (plain_ && text_[at] == separator_ && !line_.escaped && fields < ends_.size()) {
      ends_[fields++] = at - line_.start;
      segment = at + 1;
      continue;
    }
    // An escaped mark is no more one.
    if (at < segment) continue;
    line_.fields = fields;
    line_.segment = segment;
    if (!FollowMark(at)) {
      scan_ = at;
      return false;
    }
    fields = line_.fields;
    segment = line_.segment;
  }
  line_.fields = fields;
  line_.segment = segment;
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

// At the end of the file no byte follows, and the field is dropped.
bool TableReader::Unescape(size_t at) {
  size_t escaped = at + 1;
  if (escaped < size_ && text_[escaped] == '\r' && (escaped + 1 < size_ ? text_[escaped + 1] == '\n' : !at_end_)) {
    ++escaped;
  }
  if (escaped >= size_) return at_end_;
  const char letter = text_[escaped];
  const bool is_feed = letter == 'n' || letter == 'N';
  if (line_.fields < columns_) {
    if (unescaped_.empty() && !line_.escaped) line_.unescaped_start = content_.rows.unescaped_size();
    const std::string_view with_backslash(text_ + line_.segment, at + 1 - line_.segment);
    full_ |= !content_.rows.AddUnescaped(with_backslash, is_feed ? '\n' : letter);
  }
  const bool as_written = letter == 'n' || letter == '\\' || (letter == separator_ && !is_feed);
  line_.odd |= !as_written || escaped != at + 1 || !plain_;
  line_.escaped = true;
  line_.lost_returns += escaped - at - 1;
  line_.segment = escaped + 1;
  return true;
}

void TableReader::EndField(size_t at) {
  if (line_.fields < columns_) {
    if (line_.fields == ends_.size()) ends_.resize(std::min(2 * ends_.size(), columns_));
    ends_[line_.fields] = at - line_.start;
    if (line_.escaped) {
      full_ |= !content_.rows.AddUnescaped({text_ + line_.segment, at - line_.segment});
      unescaped_.push_back({line_.fields, content_.rows.unescaped_size() - line_.unescaped_start});
    }
  }
  ++line_.fields;
  line_.escaped = false;
  line_.segment = at + 1;
}

void TableReader::EndLine(size_t at) {
  const bool has_return = at > line_.segment && text_[at - 1] == '\r';
  EndField(at - (has_return ? 1 : 0));
  const bool as_written = !line_.odd && line_.fields == columns_ && has_return == (content_.line_end == LineEnd::CrLf);
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
  const LoadedRow loaded = {.start = line_.start,
                            .ends = {ends_.data(), std::min(line_.fields, columns_)},
                            .unescaped_start = line_.unescaped_start,
                            .unescaped = unescaped_,
                            .as_written = as_written};
  if (content_.rows.AddLoaded(loaded, row)) {
    content_.order.Append(row);
  } else {
    full_ = true;
  }
  unescaped_.clear();
}

void TableReader::Count(size_t characters) {
  const int64_t counted = counted_.load(std::memory_order_relaxed) + static_cast<int64_t>(characters);
  counted_.store(counted, std::memory_order_relaxed);
  if (progress_ == nullptr) return;
  const int64_t behind = second_half_ ? second_half_->reader.counted_.load(std::memory_order_relaxed) : 0;
  progress_->SetPosition(counted + behind);
}

}  // namespace tessaro
