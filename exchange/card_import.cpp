#include "exchange/card_import.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "cards/card_edit.h"
#include "exchange/blank_card.h"
#include "platform/other_thread.h"
#include "store/file/safe_save.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

// So many cards are added in one step: what comes is in memory twice for the time of a step.
constexpr int64_t kCardsAtOnce = 20'000;

// Cards that are to come behind those of a card file.
struct Step {
  CardCommand command;
  int64_t cards = 0;
  int64_t position = 0;  // in the text, behind them
};

// Makes the cards of a text new cards of a card file that has so many cards and this highest number.
class NewCards {
 public:
  NewCards(const CardFile& file, std::string_view text, const TextLayout& layout, int topic)
      : cards_(text, layout),
        highest_(file.highest_id()),
        last_row_(file.CardCount() + 1),
        topic_(topic),
        fields_(FieldsIn(file.columns(), texts_)) {}

  // The next ones; none at the end. May be done on another thread.
  Step Next() {
    Step step;
    for (; step.cards < kCardsAtOnce && cards_.Next(card_); ++step.cards) Add(step.command);
    step.position = cards_.Position();
    last_row_ += static_cast<int>(step.cards);
    return step;
  }

 private:
  void Add(CardCommand& command) {
    MakeBlank(texts_, ++count_, topic_);
    texts_[kIdAt] = IdText(highest_ + count_);
    std::swap(texts_[kQuestionAt], card_.front);
    std::swap(texts_[kAnswerAt], card_.back);
    for (size_t i = 0; i < fields_.size(); ++i) fields_[i].text = texts_[i];
    command.InsertBehind(last_row_, fields_);
  }

  TextCards cards_;
  TextCards::Card card_;
  int64_t highest_;
  int last_row_;
  int topic_;
  int64_t count_ = 0;
  CardTexts texts_;
  std::vector<FieldView> fields_;  // views of these texts, in their order
};

}  // namespace

ImportResult ImportText(CardFile& file, std::string_view text, const TextLayout& layout, const TextCheck& check,
                        int topic, const WorkObserver& observer) {
  if (check.Given() > kMostCardNumber - file.highest_id()) return {ImportEnd::NoNumbers, 0};
  ImportResult result;
  std::vector<CardCommand> inverses;
  NewCards cards(file, text, layout, topic);
  // While cards are added another thread reads the next ones.
  const bool is_long = check.Given() > kCardsAtOnce;
  std::future next = std::async(OnOtherThread(is_long), [&] { return cards.Next(); });
  for (Step step = next.get(); step.cards > 0; step = next.get()) {
    next = std::async(OnOtherThread(is_long), [&] { return cards.Next(); });
    if (observer && !observer(step.position)) {
      result.end = ImportEnd::Cancelled;
      break;
    }
    std::optional<CardEditDone> done = CardEdit(file).Apply(std::move(step.command), IndexWork::Later);
    if (!done) {
      result.end = ImportEnd::Failed;
      break;
    }
    inverses.push_back(std::move(done->inverse));
    result.cards += step.cards;
  }
  if (result.end != ImportEnd::Done) {
    for (; !inverses.empty(); inverses.pop_back())
      (void)CardEdit(file).Apply(std::move(inverses.back()), IndexWork::Later);
    file.RecountIds();
    result.cards = 0;
  }
  (void)CardEdit(file).Finish();
  return result;
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
