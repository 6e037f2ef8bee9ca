#include "edit/renumbering.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>
#include <vector>

#include "cards/card_reader.h"
#include "cards/link_rewriting.h"
#include "cards/navigation.h"
#include "edit/landmark_settings.h"
#include "edit/overview_cards.h"
#include "hypertext/markup.h"
#include "platform/other_thread.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

// The first card row of each number that links can lead to; 0 = no card.
class FirstRows {
 public:
  // Makes room for numbers that are not above `most`, as nearly all are where that is the number of cards.
  void Expect(int most) { rows_.resize(static_cast<size_t>(most) + 1); }
  // To be called for the cards in their order.
  void Note(std::string_view id, int row) {
    const int64_t number = LeadingNumber(id);
    if (!IsTarget(number) || At(number) != 0) return;
    const auto at = static_cast<size_t>(number);
    if (at >= rows_.size()) rows_.resize(std::bit_ceil(at + 1));
    rows_[at] = row;
  }
  // Notes those of cards that come behind.
  void Append(const FirstRows& behind) {
    if (behind.rows_.size() > rows_.size()) rows_.resize(behind.rows_.size());
    for (size_t number = 0; number < behind.rows_.size(); ++number) {
      if (rows_[number] == 0) rows_[number] = behind.rows_[number];
    }
  }
  int At(int64_t number) const {
    return IsTarget(number) && static_cast<size_t>(number) < rows_.size() ? rows_[static_cast<size_t>(number)] : 0;
  }

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
  // Notes those of cards that come behind.
  void Append(const TaggedRows& behind) {
    if (home == 0) home = behind.home;
    if (index == 0) index = behind.index;
    if (overview == 0) overview = behind.overview;
  }
};

// What becomes of some cards depends on others; this is to be known of all of them first.
struct SeenCards {
  FirstRows first_rows;
  TaggedRows tagged;
  std::vector<int> linking;  // rows of cards with links

  // Adds what was seen of the cards behind these.
  void Append(const SeenCards& behind) {
    first_rows.Append(behind.first_rows);
    tagged.Append(behind.tagged);
    linking.insert(linking.end(), behind.linking.begin(), behind.linking.end());
  }
};

class Numbering {
 public:
  Numbering(const CardFile& file, const RenumberChoice& choice) : file_(file), choice_(choice) {}

  // What is to be done; nothing when it was ended early.
  std::optional<CardCommand> Command(const KeepGoing& keep_going) {
    const int end = CardReader(file_).LastCardRow() + 1;
    TwoPartsGoOn goes_on(keep_going, end);
    auto seen = InTwoParts(kFirstCardRow, end, [&](int first, int behind) {
      SeenCards part;
      part.first_rows.Expect(file_.CardCount());
      for (int row = first; row < behind && goes_on(row); ++row) SeeCard(row, part);
      return part;
    });
    if (goes_on.ended()) return std::nullopt;
    seen_ = std::move(seen.first);
    seen_.Append(seen.second);
    TwoPartsGoOn goes_on_again(keep_going, end, end);
    auto commands =
        InTwoParts(kFirstCardRow, end, [&](int first, int behind) { return CommandFor(first, behind, goes_on_again); });
    if (goes_on_again.ended()) return std::nullopt;
    commands.first.AppendReplaced(std::move(commands.second));
    return std::move(commands.first);
  }
  // Afterwards: the numbers that these cards will have; empty: there is no such card.
  std::string HomeId() const {
    const int home = seen_.tagged.home != 0 ? seen_.tagged.home : seen_.tagged.index;
    return IdOfCard(home != 0 ? home : kFirstCardRow);
  }
  std::string OverviewId() const {
    const int stored = seen_.first_rows.At(LeadingNumber(OverviewSetting(file_.settings())));
    return IdOfCard(stored != 0 ? stored : seen_.tagged.overview != 0 ? seen_.tagged.overview : seen_.tagged.index);
  }

 private:
  int64_t IdOfRow(int row) const { return choice_.start + row - kFirstCardRow; }
  std::string IdOfCard(int row) const { return row == 0 ? std::string() : IdText(IdOfRow(row)); }

  // What becomes of a link to that number.
  std::optional<int64_t> NewTarget(int64_t number) const {
    const int row = seen_.first_rows.At(number);
    if (row != 0) return IdOfRow(row);
    return choice_.clear_dead_links ? std::optional<int64_t>(0) : std::nullopt;
  }

  void SeeCard(int row, SeenCards& seen) const {
    const CardColumns& columns = file_.columns();
    const std::array wanted = {columns.id, columns.question, columns.answer};
    std::array<std::string_view, 3> texts;
    file_.cards().Expect(row + CardTable::kAhead);
    file_.cards().PeekAll(row, wanted, texts);
    seen.first_rows.Note(texts[0], row);
    seen.tagged.Note(texts[1], row);
    if (HoldsLinkValue(texts[1]) || HoldsLinkValue(texts[2])) seen.linking.push_back(row);
  }

  CardCommand CommandFor(int first, int end, TwoPartsGoOn& goes_on) const {
    CardCommand command;
    command.ReserveReplaced(static_cast<size_t>(end - kFirstCardRow));
    std::vector<FieldView> fields;
    auto linking = std::lower_bound(seen_.linking.begin(), seen_.linking.end(), first);
    for (int row = first; row < end && goes_on(row); ++row) {
      const std::string id = IdText(IdOfRow(row));
      fields.assign(1, {file_.columns().id, id});
      std::array<std::optional<std::string>, 2> sides;
      if (linking != seen_.linking.end() && *linking == row) {
        sides = RewrittenSides(row);
        ++linking;
      }
      if (sides[0]) fields.push_back({file_.columns().question, *sides[0]});
      if (sides[1]) fields.push_back({file_.columns().answer, *sides[1]});
      command.Replace(row, fields);
    }
    return command;
  }

  std::array<std::optional<std::string>, 2> RewrittenSides(int row) const {
    const NumberMap targets = [this](int64_t number) { return NewTarget(number); };
    const CardTable& cards = file_.cards();
    return {RewriteLinks(cards.Peek(file_.columns().question, row), targets),
            RewriteLinks(cards.Peek(file_.columns().answer, row), targets)};
  }

  const CardFile& file_;
  RenumberChoice choice_;
  SeenCards seen_;
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
