#include "exchange/card_import.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "cards/card_edit.h"
#include "exchange/blank_card.h"
#include "store/file/safe_save.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

// Cards are added in so many steps, fewer when they are few: what comes is in memory twice for the time of a step, and
// an index that grows by a quarter or more is made anew.
constexpr int64_t kMostSteps = 3;
constexpr int64_t kLeastCardsAtOnce = 50'000;

// Adds cards behind those of a card file, in steps that can all be taken back.
class Appender {
 public:
  Appender(CardFile& file, int64_t cards) : file_(file), step_(std::max(kLeastCardsAtOnce, cards / kMostSteps + 1)) {}

  // False when the card file could not take a step.
  bool Add(const CardTexts& texts) {
    command_.InsertBehind(file_.CardCount() + 1, FieldsIn(file_.columns(), texts));
    return ++waiting_ < step_ || AddWaiting();
  }
  bool AddWaiting() {
    if (std::exchange(waiting_, 0) == 0) return true;
    std::optional<CardEditDone> done = CardEdit(file_).Apply(std::exchange(command_, {}));
    if (done) steps_.push_back(std::move(done->inverse));
    return done.has_value();
  }
  void TakeBack() {
    for (; !steps_.empty(); steps_.pop_back()) (void)CardEdit(file_).Apply(std::move(steps_.back()));
    file_.RecountIds();
  }

 private:
  CardFile& file_;
  int64_t step_;
  CardCommand command_;
  int64_t waiting_ = 0;
  std::vector<CardCommand> steps_;  // that take back what was added
};

}  // namespace

ImportResult ImportText(CardFile& file, std::string_view text, const TextLayout& layout, int topic,
                        const WorkObserver& observer) {
  const int64_t highest = file.highest_id();
  const int64_t given = CheckText(text, layout).Given();
  if (given > kMostCardNumber - highest) return {ImportEnd::NoNumbers, 0};
  WorkWatch watch(observer, kTellEveryBytes);
  Appender appender(file, given);
  CardTexts texts;
  ImportResult result;
  TextCards cards(text, layout);
  for (TextCards::Card card; result.end == ImportEnd::Done && cards.Next(card);) {
    if (!watch.GoOn(cards.Position())) result.end = ImportEnd::Cancelled;
    MakeBlank(texts, ++result.cards, topic);
    texts[kIdAt] = IdText(highest + result.cards);
    texts[kQuestionAt] = std::move(card.front);
    texts[kAnswerAt] = std::move(card.back);
    if (!appender.Add(texts)) result.end = ImportEnd::Failed;
  }
  if (result.end == ImportEnd::Done && !appender.AddWaiting()) result.end = ImportEnd::Failed;
  if (result.end != ImportEnd::Done) appender.TakeBack();
  (void)CardEdit(file).Finish();
  return result.end == ImportEnd::Done ? result : ImportResult{result.end, 0};
}

ImportResult ReplaceByTable(Disk& disk, const CardFilePaths& paths, std::string_view text, const TableLayout& layout,
                            const TableCheck& check, const WorkObserver& observer) {
  if (check.cards == 0) return {ImportEnd::NoCards, 0};
  bool cancelled = false;
  const WorkObserver watched = [&](int64_t done) {
    cancelled = observer && !observer(done);
    return !cancelled;
  };
  // Before the cards: indexes without cards are built anew, but those of other cards might seem to fit.
  for (const std::filesystem::path& index : {paths.learn_index, paths.link_index}) {
    if (!disk.Remove(index)) return {ImportEnd::Failed, 0};
  }
  const bool replaced = ReplaceFile(
      disk, paths.cards, [&](WritableFile& file) { return WriteTable(text, layout, check, file, watched); },
      paths.backup);
  if (!replaced) return {cancelled ? ImportEnd::Cancelled : ImportEnd::Failed, 0};
  return {ImportEnd::Done, check.cards};
}

}  // namespace tessaro
