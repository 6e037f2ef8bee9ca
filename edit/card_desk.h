#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "cards/navigation.h"
#include "edit/card_search.h"
#include "edit/command_stack.h"
#include "edit/desk_result.h"
#include "edit/link_making.h"
#include "store/file/card_file.h"

namespace tessaro {

// The card that the editor works on, and what can be done with it. It follows its card when rows come and go, wherever
// that was done.
class CardDesk : private CardWatcher {
 public:
  // Both must live longer. `made` counts the cards made since the program began.
  CardDesk(CardFile& file, int64_t& made);

  // The row of the card; 0 when there is none. Positions count the cards from 1.
  int row() const { return row_; }
  int position() const { return row_ == 0 ? 0 : row_ - 1; }
  const std::string& id() const { return id_; }
  bool IsMarked() const { return file_.deletion_marks().Has(row_); }
  // A side as it is shown: without carriage returns, and with the marker while a link is made there.
  std::string Shown(EditSide side) const;
  // The side as it was when the card was taken up.
  const std::string& Opened(EditSide side) const { return opened_[Index(side)]; }

  // Takes up another card; false when it is none. What was shown must be stored before.
  bool GoTo(int row);
  bool GoToPosition(int position) { return GoTo(position + 1); }
  bool GoToId(int64_t id);
  // To the card behind, before, at the ends. False, and nothing moves, where there is none.
  bool Next() { return GoTo(row_ + 1); }
  bool Previous() { return GoTo(row_ - 1); }
  bool First() { return GoTo(kFirstCardRow); }
  bool Last();
  // To the first card with "<home>", else the first with "<index>", else the first of all.
  bool Home();
  // To where the overview in row order begins. False: there is none.
  bool Overview();
  // Goes to the card that a link names, and remembers the way back. False: there is none, or it is marked for deletion.
  bool FollowLink(int64_t id);
  bool CanGoBack() const { return !way_back_.Empty(); }
  // To the card where the last link was followed, whatever its number is by now.
  bool GoBack();
  // Marks 0 and 1 stay with their cards.
  void SetMark(size_t mark) { marks_[mark] = row_; }
  int MarkedRow(size_t mark) const { return marks_[mark]; }
  // The row of the card with this number that links can lead to; 0: none.
  int TargetRow(int64_t id) const;
  // Whether the link index leads to the card with this number, if there is one. It always should.
  bool IndexLeadsTo(int64_t id) const { return file_.link_index().RowOfId(id) == file_.RowOfId(id); }

  // Writes the sides as they are shown, where they were changed; the other one wherever the card stands by now.
  StoreOutcome Store(std::string_view front, std::string_view back);
  StoreOutcome StoreById(std::string_view front, std::string_view back);

  // Puts an empty card behind this one and goes there.
  DeskResult InsertEmpty();
  // Keeps the sides of this card, as they are stored, for Paste; without a card what was kept stays.
  void Copy();
  bool CanPaste() const { return clipboard_.has_value(); }
  // Puts a new card with the sides that were copied behind this one and goes there. NoCard: none was.
  DeskResult Paste();
  // Copies the card and removes it, which the result tells of; an empty one takes the place of a file's last card. The
  // desk goes to the card behind, else to that before.
  DeskResult Cut();
  // Marks the card for deletion, or takes its mark away; it stays in the file until RemoveMarked.
  DeskResult ToggleDeletion();
  DeskResult ResetStatistics();  // as without answers
  // The same for several cards, rows ascending. Marks those that are not; where all are, none is any more.
  void MarkAll(const std::vector<int>& rows);
  // False: nothing was done.
  bool ResetAll(const std::vector<int>& rows);
  // Removes the cards marked for deletion; where none would be left, an empty one takes their place. False: failed.
  bool RemoveMarked();
  // Makes the first empty card of a file without cards; true when it did.
  bool EnsureCard();

  CommandStack& commands() { return commands_; }  // for tools
  // Takes the newest command back, gives it again, and goes where the user was; see CommandStack.
  std::optional<CommandStack::Moved> Undo() { return Follow(commands_.Undo()); }
  std::optional<CommandStack::Moved> Redo() { return Follow(commands_.Redo()); }

  // Begins a link in the place of the selection; the side must be stored. Nothing else may be changed there by others.
  void BeginLink(EditSide side, SideRange selection);
  bool IsLinking() const { return link_.has_value(); }
  // Null, and no side, while none is made.
  const PendingLink* link() const { return link_ ? &link_->link : nullptr; }
  EditSide link_side() const { return link_->side; }
  // Makes the card shown, which must be stored, the target of the link and goes back to the source. False: the place
  // was lost, no link is written, and the link is given up.
  bool FinishLink(std::string_view face);
  void CancelLink() { link_.reset(); }  // the card keeps the text that was selected

  // Searches from the first card on, or behind the card found last, and goes to what it finds. `examined` counts from
  // the first card.
  SearchResult Search(const SearchQuery& query, const KeepGoing& keep_going = {});
  SearchResult SearchMore(const KeepGoing& keep_going = {});
  const std::optional<SearchQuery>& query() const { return query_; }

 private:
  struct LinkInWork {
    int row = 0;
    std::string id;
    EditSide side = EditSide::Front;
    PendingLink link;
  };

  static size_t Index(EditSide side) { return side == EditSide::Front ? 0 : 1; }
  int ColumnOf(EditSide side) const;
  std::string_view Text(int row, EditSide side) const;
  bool IsCard(int row) const;
  bool StandsThere(int row, std::string_view id) const;
  void RowsShifted(const RowShift& shift) override;
  void CardsChanged(std::span<const int> rows, std::span<const int> columns) override;
  bool LinksOn(EditSide side) const;
  StoreOutcome Write(std::string_view front, std::string_view back);
  DeskResult Insert(EditKind kind, std::string_view front, std::string_view back);
  void AddEmptyCard(CardCommand& command, int behind);
  int64_t NextScore() const { return 60 * (made_ + 1); }
  DeskResult Here(DeskOutcome outcome) const { return {outcome, id_, position()}; }
  std::optional<CommandStack::Moved> Follow(std::optional<CommandStack::Moved> moved);
  int LinkSourceRow() const;

  CardFile& file_;
  int64_t& made_;
  CardWatch watch_;
  CommandStack commands_;
  int row_ = 0;
  std::string id_;
  std::array<std::string, 2> opened_;
  std::array<int, 2> marks_{};
  std::optional<std::array<std::string, 2>> clipboard_;
  BackStack way_back_;  // rows
  Landmarks landmarks_;
  std::optional<LinkInWork> link_;
  std::optional<SearchQuery> query_;
  int found_ = 0;
  int examined_ = 0;
};

}  // namespace tessaro
