#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "store/table/table_content.h"

namespace tessaro {

class ContentHash;
class ReadableFile;
class Progress;

// Reads a table file into an empty content, once. The file is read piece by piece into one block, and each piece is
// taken apart while it is still in the processor's cache. The block stays as it was read; a field with escapes gets a
// text without them elsewhere, so that every field is one run of bytes.
//
// The second half of a large file is read on a thread of its own, from the first line end after the middle that is one
// whatever stands before it; its rows then are put after those of the first half.
class TableReader {
 public:
  // Smaller files are read in one go.
  static constexpr size_t kLeastSplit = size_t{8} << 20;

  // `hash`, which may be null, takes all bytes read; `progress`, which may be null too, hears of the characters read.
  TableReader(ReadableFile& file, char separator, TableContent& content, ContentHash* hash,
              Progress* progress = nullptr, size_t least_split = kLeastSplit);
  ~TableReader();

  // False when reading broke off or memory is short; the content then is of no use.
  [[nodiscard]] bool Read();

 private:
  struct SecondHalf;

  // The line being read.
  struct Line {
    size_t start = 0;
    size_t segment = 0;          // of the field: what follows its last escape
    bool escaped = false;        // the field has an escape
    bool odd = false;            // an escape is not what would be written
    size_t unescaped_start = 0;  // of the texts without escapes
    size_t lost_returns = 0;
    size_t fields = 0;
  };

  // The reader of a second half, which begins at `start`.
  TableReader(const TableReader& first, ReadableFile& file, size_t start, TableContent& content, ContentHash* hash);

  bool MakeRoom(size_t room);
  bool ReadPiece();
  void ReadHeader();
  void AddName(size_t from, size_t to);
  void StartSecondHalf();
  bool ReadSecondHalf();
  bool JoinSecondHalf();
  bool TakeOver(TableReader& second);
  bool FindFirstLine(size_t start);
  bool ReadRows();
  bool FollowMarks(size_t start, std::span<const uint32_t> places);
  bool FollowMark(size_t at);
  bool Unescape(size_t at);
  void EndField(size_t at);
  void EndLine(size_t at);
  void EndFile();
  void AddRow(bool as_written);
  void Count(size_t characters);

  ReadableFile* file_;
  const char separator_;
  const bool plain_;  // the separator has no other meaning
  const size_t least_split_;
  TableContent& content_;
  ContentHash* const hash_;
  Progress* const progress_;  // null in a second half
  char* text_ = nullptr;
  size_t room_ = 0;  // bytes that this reader may read to, counted from the start of the file as all that follow
  size_t size_ = 0;  // bytes read so far
  size_t scan_ = 0;  // bytes looked at so far
  size_t columns_ = 0;
  bool at_end_ = false;
  bool in_lines_ = false;  // the names, or what comes before the first line of a second half, have been read
  bool full_ = false;
  size_t first_line_ = 0;  // where that of a second half starts
  Line line_;
  std::vector<size_t> ends_;  // of the fields of the line
  std::vector<UnescapedField> unescaped_;
  std::atomic<int64_t> counted_ = 0;  // characters
  std::unique_ptr<ReadableFile> rest_of_file_;
  std::unique_ptr<SecondHalf> second_half_;
};

}  // namespace tessaro
