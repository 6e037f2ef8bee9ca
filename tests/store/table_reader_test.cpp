#include "store/table_reader.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "platform/disk.h"
#include "platform/progress.h"
#include "store/content_stamp.h"

namespace tessaro {
namespace {

// A file of which more or less is there than announced.
class SplitFile : public ReadableFile {
 public:
  SplitFile(const std::string& text, uint64_t announced, bool splits, size_t at = 0)
      : text_(text), announced_(announced), splits_(splits), at_(at) {}
  uint64_t Size() const override { return announced_; }
  std::ptrdiff_t Read(char* buffer, size_t size) override {
    const size_t count = at_ < text_.size() ? text_.copy(buffer, size, at_) : 0;
    at_ += count;
    return static_cast<std::ptrdiff_t>(count);
  }
  std::unique_ptr<ReadableFile> ReadFrom(uint64_t offset) override {
    if (!splits_) return nullptr;
    return std::make_unique<SplitFile>(text_, announced_, false, offset);
  }

 private:
  const std::string& text_;
  uint64_t announced_;
  bool splits_;
  size_t at_;
};

// Everything that a file was read as.
std::string Reading(const std::string& text, uint64_t announced, bool splits) {
  SplitFile file(text, announced, splits);
  TableContent content;
  ContentHash hash;
  Progress().counter = 0;
  if (!TableReader(file, ';', content, &hash, 1).Read()) return "failed";
  std::string reading = std::to_string(hash.Stamp().hash) + " " + std::to_string(Progress().counter);
  for (int i = 0; i < content.order.size(); ++i) {
    const RowHandle row = content.order.At(i);
    reading += content.rows.AsWritten(row) ? "\n=" : "\n";
    for (int field = 0; field < content.columns.size(); ++field) {
      const RowStore::Value value = content.rows.Get(row, field);
      reading += value ? "<" + std::string(*value) + ">" : "-";
    }
  }
  return reading;
}

// Text that is rich in marks, most of them in odd places, though with stretches that have none.
std::string RandomText(std::mt19937& random, size_t size) {
  std::string text = random() % 2 == 0 ? "A;B;C\n" : "A;B\r\n";
  const std::string marks = random() % 8 == 0 ? "ab;\\\r" : "ab;;\\\\\r\n\nn";
  while (text.size() < size) {
    const bool plain = random() % 4 == 0;
    const size_t count = random() % (plain ? 5000 : 200);
    for (size_t i = 0; i < count; ++i) text += plain ? 'x' : marks[random() % marks.size()];
  }
  return text;
}

TEST(TableReader, ReadsTwoHalvesAsOneWhole) {
  constexpr int kRounds = 8;
  std::mt19937 random(1);
  for (int round = 0; round < kRounds; ++round) {
    const std::string text = RandomText(random, ContentHash::kPiece + random() % (4 * ContentHash::kPiece));
    const std::string whole = Reading(text, text.size(), false);
    // Also a file that has become longer or shorter, even so much that there is no second half.
    for (const uint64_t announced : {text.size(), text.size() + 7, 3 * text.size(), text.size() * 3 / 4}) {
      ASSERT_TRUE(Reading(text, announced, true) == whole) << "round " << round << ", announced " << announced;
    }
  }
}

// The middle lies at a place of its own in each of these: between backslashes, before a carriage return, ...
TEST(TableReader, FindsTheFirstLineBehindTheMiddle) {
  const size_t middle = 2 * ContentHash::kPiece;
  for (const std::string seam :
       {"\\\\\\\\\\\\\n", "\\\\\\\\\\\n", "a\\\r\n", "a\\\\\r\n", "a\\\r\r\n", ";\r\n\r\n", "\n\n\n"}) {
    for (const size_t before : {size_t{0}, seam.size() / 2, seam.size() - 1, seam.size()}) {
      std::string text = "A;B\n" + std::string(middle - 4 - before, 'x') + seam + "1;2\n3;4\n";
      text.resize(text.size() + middle - 1000, 'y');
      ASSERT_TRUE(Reading(text, text.size(), true) == Reading(text, text.size(), false)) << seam << before;
    }
  }
}

}  // namespace
}  // namespace tessaro
