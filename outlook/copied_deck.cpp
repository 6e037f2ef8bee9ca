#include "outlook/copied_deck.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "cards/card_reader.h"
#include "cards/card_writer.h"
#include "platform/memory_file.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr const char* kName = "/copy.mlb";

// Holds one file and takes no other.
class OneFileDisk : public Disk {
 public:
  explicit OneFileDisk(std::string text) : text_(std::move(text)) {}

  std::unique_ptr<ReadableFile> Open(const fs::path& path) override {
    return path == kName ? std::make_unique<MemoryReader>(text_) : nullptr;
  }
  std::unique_ptr<WritableFile> Create(const fs::path& /*path*/) override { return nullptr; }
  bool Rename(const fs::path& /*from*/, const fs::path& /*to*/) override { return false; }
  bool Link(const fs::path& /*from*/, const fs::path& /*to*/) override { return false; }
  void CopyRights(const fs::path& /*from*/, const fs::path& /*to*/) override {}
  bool Remove(const fs::path& /*path*/) override { return true; }
  bool FlushFolder(const fs::path& /*folder*/) override { return true; }
  LockAttempt Lock(const fs::path& /*path*/) override { return {}; }
  bool Exists(const fs::path& path) const override { return path == kName; }
  fs::path Resolve(const fs::path& path) const override { return path; }
  std::optional<FileState> State(const fs::path& path) const override {
    return Exists(path) ? std::optional(FileState{text_.size(), 0, 1}) : std::nullopt;
  }
  std::optional<uint64_t> FreeBytes(const fs::path& /*folder*/) const override { return std::nullopt; }
  std::vector<std::string> FileNames(const fs::path& /*folder*/) const override { return {}; }

 private:
  std::string text_;
};

void AddRow(std::string& text, std::initializer_list<std::string_view> fields) {
  bool first = true;
  for (const std::string_view field : fields) {
    if (!first) text += kFieldSeparator;
    text += field;
    first = false;
  }
  text += '\n';
}

// Histories are written as they are read, so that no strange byte of the file gets into the copy.
std::string TextOf(const CardFile& file, const std::vector<int>& rows) {
  std::string text;
  AddRow(text, {kId, kTopic, kQuestion, kAnswer, kScore, kTimeLearned, kYesNoRow, kTimeRow});
  AddRow(text, {kStartMark, "", "", "", "", "", "", ""});
  const CardReader cards(file);
  int number = 0;
  for (const int row : rows) {
    const AnswerHistory history = cards.History(row);
    std::string letters = LettersText(history.letters);
    std::replace_if(
        letters.begin(), letters.end(), [](char c) { return c != kKnownLetter && c != kNotKnownLetter; }, '-');
    char id[16];
    std::snprintf(id, sizeof id, "%06d", ++number);
    AddRow(text, {id, "00", "", "", ScoreText(std::clamp<int64_t>(cards.Score(row), 0, kMaxScore)), "0", letters,
                  TimesAfterAnswer(history.times)});
  }
  AddRow(text, {kEndMark, "", "", "", "", "", "", ""});
  return text;
}

}  // namespace

CopiedDeck::CopiedDeck(const CardFile& file, const std::vector<int>& rows)
    : disk_(std::make_unique<OneFileDisk>(TextOf(file, rows))), copy_(std::make_unique<CardFile>(*disk_)) {
  (void)copy_->Open(kName);
  copy_->journal().End();
}

CopiedDeck::~CopiedDeck() = default;

}  // namespace tessaro
