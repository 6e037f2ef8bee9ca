#include "outlook/copied_deck.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "cards/card_edit.h"
#include "cards/card_writer.h"
#include "platform/memory_file.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr const char* kName = "/copy.mlb";

// Holds one file and takes no other.
class OneFileDisk : public Disk {
 public:
  explicit OneFileDisk(const std::string& text) : text_(text) {}

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
  const std::string& text_;
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

// The times up to the first 0: the others would only have to be read again.
std::string UsedTimes(const AnswerHistory& history) {
  std::string text;
  for (const int64_t time : history.times) {
    if (time == 0) break;
    text += std::to_string(time) + ' ';
  }
  return text;
}

}  // namespace

HistoriesText::HistoriesText() {
  AddRow(text_, {kId, kTopic, kQuestion, kAnswer, kScore, kTimeLearned, kYesNoRow, kTimeRow});
  AddRow(text_, {kStartMark, "", "", "", "", "", "", ""});
  // A card that is never chosen: a card file must have one.
  AddRow(text_, {"000001", "00", "<navigation>", "", ScoreText(0), "0", BlankYesNoRow(), BlankTimeRow()});
}

// Histories are written as they are read, so that no strange byte of the file gets into the copy.
void HistoriesText::Add(const CardReader& cards, int row) {
  const AnswerHistory history = ParseAnswers(cards.TimeRow(row), cards.YesNoRow(row));
  std::string letters = LettersText(history.letters);
  std::replace_if(
      letters.begin(), letters.end(), [](char c) { return c != kKnownLetter && c != kNotKnownLetter; }, '-');
  const int64_t score = std::clamp<int64_t>(cards.Score(row), 0, kMaxScore);
  AddRow(text_, {IdText(++cards_ + 1), "00", "", "", ScoreText(score), "0", letters, UsedTimes(history)});
}

std::string HistoriesText::Take() {
  AddRow(text_, {kEndMark, "", "", "", "", "", "", ""});
  return std::move(text_);
}

CopiedDeck::CopiedDeck(const std::string& text)
    : disk_(std::make_unique<OneFileDisk>(text)), copy_(std::make_unique<CardFile>(*disk_)) {
  (void)copy_->Open(kName);
  copy_->journal().End();
}

CopiedDeck::~CopiedDeck() = default;

void CopiedDeck::AddNew(int count) {
  const CardColumns& columns = copy_->columns();
  const std::string score = ScoreText(0);
  CardCommand command;
  std::vector<std::string> ids;
  ids.reserve(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) ids.push_back(copy_->IssueId());
  for (const std::string& id : ids) {
    command.InsertBehind(CardReader(*copy_).LastCardRow(), {{columns.id, id},
                                                            {columns.topic, "00"},
                                                            {columns.score, score},
                                                            {columns.time_learned, "0"},
                                                            {columns.yes_no_row, BlankYesNoRow()},
                                                            {columns.time_row, BlankTimeRow()}});
  }
  if (count > 0) (void)CardEdit(*copy_).Apply(std::move(command));
}

}  // namespace tessaro
