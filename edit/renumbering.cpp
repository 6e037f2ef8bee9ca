#include "edit/renumbering.h"

#include <array>
#include <utility>
#include <vector>

#include "cards/card_reader.h"
#include "cards/navigation.h"
#include "edit/landmark_settings.h"
#include "edit/link_rewriting.h"
#include "edit/overview_cards.h"
#include "hypertext/markup.h"

namespace tessaro {
namespace {

bool Holds(std::string_view text, std::string_view tag) {
  return text.find(tag) != std::string_view::npos;
}

// The first card row of each number that links can lead to; 0 = no card.
std::vector<int> FirstRows(const CardFile& file) {
  const CardReader cards(file);
  std::vector<int> rows(static_cast<size_t>(kMaxLinkTarget) + 1);
  for (int row = cards.LastCardRow(); row >= kFirstCardRow; --row) {
    const int64_t number = LeadingNumber(cards.Id(row));
    if (number > 0 && number <= kMaxLinkTarget) rows[static_cast<size_t>(number)] = row;
  }
  return rows;
}

class Numbering {
 public:
  Numbering(const CardFile& file, const RenumberChoice& choice)
      : file_(file), cards_(file), choice_(choice), rows_(FirstRows(file)) {}

  int64_t IdOfRow(int row) const { return choice_.start + row - kFirstCardRow; }
  int RowOf(int64_t number) const {
    return number > 0 && number <= kMaxLinkTarget ? rows_[static_cast<size_t>(number)] : 0;
  }
  // What becomes of a link to that number.
  std::optional<int64_t> NewTarget(int64_t number) const {
    const int row = RowOf(number);
    if (row != 0) return IdOfRow(row);
    return choice_.clear_dead_links ? std::optional<int64_t>(0) : std::nullopt;
  }

  std::optional<CardCommand> Command(const KeepGoing& keep_going) const {
    const NumberMap targets = [this](int64_t number) { return NewTarget(number); };
    CardCommand command;
    for (int row = kFirstCardRow; row <= cards_.LastCardRow(); ++row) {
      if (!GoesOn(keep_going, row)) return std::nullopt;
      AddCard(row, targets, command);
    }
    return command;
  }

  // The number of the card where the overview begins, as it will be; empty: there is none.
  std::string OverviewId() const {
    const int stored = RowOf(LeadingNumber(OverviewSetting(file_.settings())));
    int index = stored;
    for (int row = kFirstCardRow; stored == 0 && row <= cards_.LastCardRow(); ++row) {
      const std::string_view front = cards_.Question(row);
      if (!Holds(front, kIndexTag)) continue;
      if (index == 0) index = row;
      if (!Holds(front, kAutomapTag)) continue;
      index = row;
      break;
    }
    return index == 0 ? std::string() : IdText(IdOfRow(index));
  }

 private:
  void AddCard(int row, const NumberMap& targets, CardCommand& command) const {
    const CardColumns& columns = file_.columns();
    const std::array wanted = {columns.id, columns.question, columns.answer};
    std::array<std::string_view, 3> texts;
    file_.cards().PeekAll(row, wanted, texts);
    const std::string id = IdText(IdOfRow(row));
    const auto front = RewriteLinks(texts[1], targets);
    const auto back = RewriteLinks(texts[2], targets);
    std::vector<FieldView> fields;
    if (texts[0] != id) fields.push_back({columns.id, id});
    if (front) fields.push_back({columns.question, *front});
    if (back) fields.push_back({columns.answer, *back});
    if (!fields.empty()) command.Replace(row, fields);
  }

  const CardFile& file_;
  CardReader cards_;
  RenumberChoice choice_;
  std::vector<int> rows_;
};

}  // namespace

std::optional<int64_t> ReadStartNumber(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  const auto number = DigitsOnly(text);
  return number ? std::optional<int64_t>(*number) : std::nullopt;
}

bool CanNumberFrom(const CardFile& file, int64_t start) {
  return start >= 1 && start <= kMaxLinkTarget && start + file.CardCount() - 1 <= kMaxLinkTarget;
}

int64_t CountDeadLinks(const CardFile& file, const KeepGoing& keep_going) {
  const CardReader cards(file);
  const std::vector<int> rows = FirstRows(file);
  int64_t dead = 0;
  const auto count = [&](int64_t number) { dead += rows[static_cast<size_t>(number)] == 0 ? 1 : 0; };
  for (int row = kFirstCardRow; row <= cards.LastCardRow() && GoesOn(keep_going, row); ++row) {
    VisitLinks(cards.Question(row), count);
    VisitLinks(cards.Answer(row), count);
  }
  return dead;
}

RenumberOutcome Renumber(CardFile& file, CommandStack& commands, const RenumberChoice& choice, int row,
                         const KeepGoing& keep_going) {
  if (!CanNumberFrom(file, choice.start)) return RenumberOutcome::BadStart;
  const Numbering numbering(file, choice);
  std::optional<CardCommand> command = numbering.Command(keep_going);
  if (!command) return RenumberOutcome::Cancelled;
  const std::string overview = numbering.OverviewId();
  const int home = Landmarks().HomeRow(file);
  commands.KeepSettings();
  if (!commands.Do(EditKind::Renumber, *std::move(command), row)) return RenumberOutcome::Failed;
  SetOverviewSetting(overview, file.settings());
  SetHomeSetting(home == 0 ? std::string() : IdText(numbering.IdOfRow(home)), file.settings());
  file.RecountIds();
  return RenumberOutcome::Done;
}

}  // namespace tessaro
