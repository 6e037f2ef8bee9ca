#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "store/page_warmer.h"
#include "store/table_content.h"

namespace tessaro {

class ReadableFile;
struct ProgressState;

// Reads a table file into an empty content, once. The file is read piece by piece into one block, and each piece is
// taken apart while it is still in the processor's cache. Escapes are undone in place: the text of a row behind an
// escape moves to the front, so that every field still is one run of bytes.
class TableReader {
 public:
  TableReader(ReadableFile& file, char separator, TableContent& content);

  // False when reading broke off or memory is short; the content then is of no use.
  [[nodiscard]] bool Read();

 private:
  // The line being read. It has lost `shift` bytes so far: the text from `segment` on belongs `shift` bytes further to
  // the front.
  struct Line {
    size_t start = 0;
    size_t segment = 0;
    size_t shift = 0;
    size_t lost_returns = 0;
    size_t fields = 0;
  };

  bool ReadPiece();
  void ReadHeader();
  void AddName(size_t from, size_t to);
  bool ReadRows();
  bool FollowMarks(size_t start, std::span<const uint32_t> places);
  bool FollowMark(size_t at);
  bool Unescape(size_t at);
  void EndField(size_t at);
  void EndLine(size_t at);
  void EndFile();
  void MoveSegment(size_t to);
  void AddRow(bool as_written);
  void Count(size_t characters);

  ReadableFile& file_;
  const char separator_;
  const bool plain_;  // the separator has no other meaning
  TableContent& content_;
  ProgressState& progress_;
  char* text_ = nullptr;
  size_t size_ = 0;  // bytes read so far
  size_t scan_ = 0;  // bytes looked at so far
  size_t columns_ = 0;
  bool at_end_ = false;
  bool has_header_ = false;
  bool full_ = false;
  Line line_;
  std::optional<PageWarmer> warmer_;
  std::vector<size_t> ends_;  // of the fields of the line
};

}  // namespace tessaro
