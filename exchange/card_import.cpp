#include "exchange/card_import.h"

#include <utility>

#include "cards/card_edit.h"
#include "exchange/blank_card.h"
#include "store/file/safe_save.h"

namespace tessaro {
namespace {

constexpr int64_t kTellEvery = int64_t{1} << 16;

}  // namespace

ImportResult ImportText(CardFile& file, std::string_view text, const TextLayout& layout, int topic,
                        const WorkObserver& observer) {
  const int last_card = file.CardCount() + 1;
  WorkWatch watch(observer, kTellEvery);
  CardCommand command;
  CardTexts texts;
  int64_t count = 0;
  TextCards cards(text, layout);
  for (TextCards::Card card; cards.Next(card);) {
    if (!watch.GoOn(cards.Position())) return {ImportEnd::Cancelled, 0};
    const int64_t number = file.highest_id() + ++count;
    if (number > kMostCardNumber) return {ImportEnd::NoNumbers, 0};
    MakeBlank(texts, count, topic);
    texts[kIdAt] = SixDigitText(number);
    texts[kQuestionAt] = std::move(card.front);
    texts[kAnswerAt] = std::move(card.back);
    command.InsertBehind(last_card, FieldsIn(file.columns(), texts));
  }
  CardEdit edit(file);
  if (count > 0 && !edit.Apply(std::move(command))) return {ImportEnd::Failed, 0};
  (void)edit.Finish();
  return {ImportEnd::Done, count};
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
