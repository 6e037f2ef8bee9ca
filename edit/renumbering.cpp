#include "edit/renumbering.h"

#include <array>
#include <utility>
#include <vector>

#include "cards/card_reader.h"
#include "cards/link_rewriting.h"
#include "cards/navigation.h"
#include "edit/landmark_settings.h"
#include "edit/overview_cards.h"
#include "hypertext/markup.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

// The first card row of each number that links can lead to; 0 = no card.
class FirstRows {
 public:
  FirstRows() : rows_(static_cast<size_t>(kMaxLinkTarget) + 1) {}
  // To be called for the cards in their order.
  void Note(std::string_view id, int row) {
    const int64_t number = LeadingNumber(id);
    if (IsTarget(number) && At(number) == 0) rows_[static_cast<size_t>(number)] = row;
  }
  int At(int64_t number) const { return IsTarget(number) ? rows_[static_cast<size_t>(number)] : 0; }

 private:
  static bool IsTarget(int64_t number) { return number > 0 && number <= kMaxLinkTarget; }

  std::vector<int> rows_;
};

// The first cards with the tags that other commands look for; 0 = none.
struct TaggedRows {
  int home = 0;
  int index = 0;
  int overview = 0;  // generated, and the beginning of the overview

  void Note(std::string_view front, int row) {
    bool is_index = false;
    bool is_generated = false;
    for (size_t at = front.find('<'); at != std::string_view::npos; at = front.find('<', at + 1)) {
      const std::string_view tag = front.substr(at);
      if (home == 0 && tag.starts_with(kHomeTag)) home = row;
      is_index = is_index || tag.starts_with(kIndexTag);
      is_generated = is_generated || tag.starts_with(kAutomapTag);
    }
    if (is_index && index == 0) index = row;
    if (is_index && is_generated && overview == 0) overview = row;
  }
};

class Numbering {
 public:
  Numbering(const CardFile& file, const RenumberChoice& choice) : file_(file), choice_(choice) {}

  // What is to be done; nothing when it was ended early. The cards are walked once, since their texts lie far apart;
  // what must wait until all numbers are known is noted.
  std::optional<CardCommand> Command(const KeepGoing& keep_going) {
    const int last = CardReader(file_).LastCardRow();
    for (int row = kFirstCardRow; row <= last; ++row) {
      if (!GoesOn(keep_going, row)) return std::nullopt;
      ReadCard(row);
    }
    const NumberMap targets = [this](int64_t number) { return NewTarget(number); };
    CardCommand command;
    for (const Work& work : work_) {
      // The second walk goes on where the first one ended.
      if (!GoesOn(keep_going, work.row + last)) return std::nullopt;
      AddCard(work, targets, command);
    }
    return command;
  }
  // Afterwards: the numbers that these cards will have; empty: there is no such card.
  std::string HomeId() const {
    const int home = tagged_.home != 0 ? tagged_.home : tagged_.index;
    return IdOfCard(home != 0 ? home : kFirstCardRow);
  }
  std::string OverviewId() const {
    const int stored = rows_.At(LeadingNumber(OverviewSetting(file_.settings())));
    return IdOfCard(stored != 0 ? stored : tagged_.overview != 0 ? tagged_.overview : tagged_.index);
  }

 private:
  struct Work {
    int row = 0;
    bool new_id = false;
    bool has_links = false;
  };

  int64_t IdOfRow(int row) const { return choice_.start + row - kFirstCardRow; }
  std::string IdOfCard(int row) const { return row == 0 ? std::string() : IdText(IdOfRow(row)); }

  // What becomes of a link to that number.
  std::optional<int64_t> NewTarget(int64_t number) const {
    const int row = rows_.At(number);
    if (row != 0) return IdOfRow(row);
    return choice_.clear_dead_links ? std::optional<int64_t>(0) : std::nullopt;
  }

  void ReadCard(int row) {
    const CardColumns& columns = file_.columns();
    const std::array wanted = {columns.id, columns.question, columns.answer};
    std::array<std::string_view, 3> texts;
    file_.cards().Expect(row + CardTable::kAhead);
    file_.cards().PeekAll(row, wanted, texts);
    rows_.Note(texts[0], row);
    tagged_.Note(texts[1], row);
    const Work work = {row, texts[0] != IdText(IdOfRow(row)), HoldsLinkValue(texts[1]) || HoldsLinkValue(texts[2])};
    if (work.new_id || work.has_links) work_.push_back(work);
  }

  void AddCard(const Work& work, const NumberMap& targets, CardCommand& command) {
    fields_.clear();
    const CardColumns& columns = file_.columns();
    const std::string id = IdText(IdOfRow(work.row));
    std::optional<std::string> front;
    std::optional<std::string> back;
    if (work.has_links) {
      front = RewriteLinks(file_.cards().Peek(columns.question, work.row), targets);
      back = RewriteLinks(file_.cards().Peek(columns.answer, work.row), targets);
    }
    if (work.new_id) fields_.push_back({columns.id, id});
    if (front) fields_.push_back({columns.question, *front});
    if (back) fields_.push_back({columns.answer, *back});
    if (!fields_.empty()) command.Replace(work.row, fields_);
  }

  const CardFile& file_;
  RenumberChoice choice_;
  FirstRows rows_;
  TaggedRows tagged_;
  std::vector<Work> work_;
  std::vector<FieldView> fields_;
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

std::optional<int64_t> CountDeadLinks(const CardFile& file, const KeepGoing& keep_going) {
  const CardReader cards(file);
  FirstRows rows;
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) rows.Note(cards.Id(row), row);
  int64_t dead = 0;
  const auto count = [&](int64_t number) { dead += rows.At(number) == 0 ? 1 : 0; };
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    if (!GoesOn(keep_going, row)) return std::nullopt;
    VisitLinks(cards.Question(row), count);
    VisitLinks(cards.Answer(row), count);
  }
  return dead;
}

RenumberOutcome Renumber(CardFile& file, CommandStack& commands, const RenumberChoice& choice, int row,
                         const KeepGoing& keep_going) {
  if (!CanNumberFrom(file, choice.start)) return RenumberOutcome::BadStart;
  Numbering numbering(file, choice);
  std::optional<CardCommand> command = numbering.Command(keep_going);
  if (!command) return RenumberOutcome::Cancelled;
  commands.KeepSettings();
  const std::string overview = numbering.OverviewId();
  if (!commands.Do(EditKind::Renumber, *std::move(command), row)) return RenumberOutcome::Failed;
  SetOverviewSetting(overview, file.settings());
  SetHomeSetting(numbering.HomeId(), file.settings());
  file.SetHighestId(choice.start + file.CardCount() - 1);
  return RenumberOutcome::Done;
}

}  // namespace tessaro
