#include "edit/card_desk.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "cards/card_reader.h"
#include "edit/new_card.h"
#include "hypertext/markup.h"

namespace tessaro {
namespace {

// A tenth of what the cards take, but enough for many small commands.
size_t MemoryFor(const CardFile& file) {
  constexpr uint64_t kLeast = 16U << 20U;
  return static_cast<size_t>(std::max(kLeast, file.on_disk() ? file.on_disk()->size / 10 : 0));
}

}  // namespace

CardDesk::CardDesk(CardFile& file, int64_t& made)
    : file_(file),
      made_(made),
      watch_(file.watchers(), static_cast<CardWatcher&>(*this)),
      commands_(file, MemoryFor(file)) {}

int CardDesk::ColumnOf(EditSide side) const {
  return side == EditSide::Front ? file_.columns().question : file_.columns().answer;
}

std::string_view CardDesk::Text(int row, EditSide side) const {
  return file_.cards().Peek(ColumnOf(side), row);
}

bool CardDesk::IsCard(int row) const {
  return CardReader(file_).IsCardRow(row);
}

bool CardDesk::StandsThere(int row, std::string_view id) const {
  return IsCard(row) && file_.cards().Peek(file_.columns().id, row) == id;
}

bool CardDesk::LinksOn(EditSide side) const {
  return link_ && link_->side == side && link_->row == row_ && StandsThere(row_, link_->id);
}

std::string CardDesk::Shown(EditSide side) const {
  return LinksOn(side) ? link_->link.Shown() : WithoutReturns(Text(row_, side));
}

bool CardDesk::GoTo(int row) {
  if (!IsCard(row)) return false;
  commands_.Seal();
  row_ = row;
  id_ = file_.cards().Peek(file_.columns().id, row);
  for (const EditSide side : {EditSide::Front, EditSide::Back}) opened_[Index(side)] = WithoutReturns(Text(row, side));
  return true;
}

bool CardDesk::GoToId(int64_t id) {
  return GoTo(file_.RowOfId(id));
}

bool CardDesk::Last() {
  return GoTo(CardReader(file_).LastCardRow());
}

bool CardDesk::Home() {
  return GoTo(landmarks_.HomeRow(file_));
}

bool CardDesk::Overview() {
  return GoTo(landmarks_.OverviewRow(file_));
}

int CardDesk::TargetRow(int64_t id) const {
  const int row = id > 0 ? file_.RowOfId(id) : 0;
  return file_.deletion_marks().Has(row) ? 0 : row;
}

bool CardDesk::FollowLink(int64_t id) {
  const int row = TargetRow(id);
  if (row == 0) return false;
  way_back_.Push(row_);
  return GoTo(row);
}

bool CardDesk::GoBack() {
  const auto row = static_cast<int>(way_back_.Pop());
  return row != 0 && GoTo(row);
}

void CardDesk::RowsShifted(const RowShift& shift) {
  const int row = shift.Map(row_);
  // Without its card the desk goes to the one that took its place.
  row_ = row != 0 ? row : std::min(shift.MapOrBefore(row_) + 1, CardReader(file_).LastCardRow());
  for (int& mark : marks_) mark = shift.Map(mark);
  way_back_.Follow(shift);
  landmarks_.Forget();
  if (link_) link_->row = shift.Map(link_->row);
  found_ = found_ == 0 ? 0 : shift.MapOrBefore(found_);
  if (row == 0 && !GoTo(row_)) row_ = 0;
}

// A number that changed, by renumbering or its undo, is followed.
void CardDesk::CardsChanged(std::span<const int> rows, std::span<const int> columns) {
  const auto touched = [columns](int column) {
    return std::find(columns.begin(), columns.end(), column) != columns.end();
  };
  if (touched(file_.columns().question)) landmarks_.Forget();
  const int id = file_.columns().id;
  if (!touched(id)) return;
  const auto changed = [rows](int row) { return std::binary_search(rows.begin(), rows.end(), row); };
  if (changed(row_)) id_ = file_.cards().Peek(id, row_);
  if (link_ && changed(link_->row)) link_->id = file_.cards().Peek(id, link_->row);
}

StoreOutcome CardDesk::Store(std::string_view front, std::string_view back) {
  if (row_ == 0) return StoreOutcome::Unchanged;
  if (front == Shown(EditSide::Front) && back == Shown(EditSide::Back)) return StoreOutcome::Unchanged;
  return StandsThere(row_, id_) ? Write(front, back) : StoreOutcome::Moved;
}

StoreOutcome CardDesk::StoreById(std::string_view front, std::string_view back) {
  const int row = file_.RowOfId(LeadingNumber(id_));
  if (!IsCard(row)) return StoreOutcome::Failed;
  row_ = row;
  return Write(front, back);
}

StoreOutcome CardDesk::Write(std::string_view front, std::string_view back) {
  std::array<std::string, 2> texts = {std::string(front), std::string(back)};
  std::vector<FieldView> fields;
  for (const EditSide side : {EditSide::Front, EditSide::Back}) {
    std::string& text = texts[Index(side)];
    // A side that was not touched keeps its bytes.
    if (text == Shown(side)) continue;
    if (LinksOn(side)) {
      link_->link.TakeShown(text);
      text = link_->link.side();
    }
    fields.push_back({ColumnOf(side), text});
  }
  if (fields.empty()) return StoreOutcome::Unchanged;
  return commands_.DoText(row_, fields) ? StoreOutcome::Saved : StoreOutcome::Failed;
}

DeskResult CardDesk::Insert(EditKind kind, std::string_view front, std::string_view back) {
  const int64_t id = NextId(file_);
  if (id == 0) return Here(DeskOutcome::NoNumberLeft);
  const int behind = row_ == 0 ? 1 : row_;
  CardCommand command;
  command.InsertBehind(behind, NewCard(file_, id, front, back, NextScore()).fields());
  if (!commands_.Do(kind, std::move(command), row_)) return Here(DeskOutcome::Failed);
  ++made_;
  GoTo(behind + 1);
  commands_.SetRowAfter(row_);
  return Here(DeskOutcome::Done);
}

DeskResult CardDesk::InsertEmpty() {
  return Insert(EditKind::Insert, kBlankSide, kBlankSide);
}

void CardDesk::Copy() {
  if (row_ == 0) return;
  clipboard_ = {std::string(Text(row_, EditSide::Front)), std::string(Text(row_, EditSide::Back))};
}

DeskResult CardDesk::Paste() {
  if (!clipboard_) return {};
  return Insert(EditKind::Paste, (*clipboard_)[0], (*clipboard_)[1]);
}

void CardDesk::AddEmptyCard(CardCommand& command, int behind) {
  // A file without numbers left still needs a card: it could not be opened again without one.
  const int64_t id = std::min(file_.highest_id() + 1, kMaxLinkTarget);
  command.InsertBehind(behind, NewCard(file_, id, kBlankSide, kBlankSide, NextScore()).fields());
  ++made_;
}

DeskResult CardDesk::Cut() {
  if (row_ == 0) return {};
  Copy();
  DeskResult cut = Here(DeskOutcome::Done);
  CardCommand command;
  command.Remove(row_);
  if (file_.CardCount() == 1) AddEmptyCard(command, 1);
  if (!commands_.Do(EditKind::Cut, std::move(command), row_)) return Here(DeskOutcome::Failed);
  commands_.SetRowAfter(row_);
  return cut;
}

DeskResult CardDesk::ToggleDeletion() {
  if (row_ == 0) return {};
  DeskResult result = Here(DeskOutcome::Done);
  commands_.DoMarks({row_}, row_);
  result.marked = IsMarked();
  return result;
}

void CardDesk::MarkAll(const std::vector<int>& rows) {
  std::vector<int> fresh;
  const auto unmarked = [this](int row) { return IsCard(row) && !file_.deletion_marks().Has(row); };
  std::copy_if(rows.begin(), rows.end(), std::back_inserter(fresh), unmarked);
  if (!rows.empty()) commands_.DoMarks(fresh.empty() ? rows : fresh, row_);
}

bool CardDesk::ResetAll(const std::vector<int>& rows) {
  CardCommand command;
  for (const int row : rows) command.Replace(row, tessaro::ResetStatistics(file_));
  return commands_.Do(EditKind::Statistics, std::move(command), row_).has_value();
}

DeskResult CardDesk::ResetStatistics() {
  if (row_ == 0) return {};
  return Here(ResetAll({row_}) ? DeskOutcome::Done : DeskOutcome::Failed);
}

bool CardDesk::RemoveMarked() {
  const std::vector<int>& marked = file_.deletion_marks().rows();
  if (marked.empty()) return true;
  CardCommand command;
  for (const int row : marked) command.Remove(row);
  if (static_cast<int>(marked.size()) == file_.CardCount()) AddEmptyCard(command, 1);
  if (!commands_.Do(EditKind::Remove, std::move(command), row_)) return false;
  commands_.SetRowAfter(row_);
  return true;
}

bool CardDesk::EnsureCard() {
  if (file_.CardCount() > 0) return false;
  CardCommand command;
  AddEmptyCard(command, 1);
  return CardEdit(file_).Apply(std::move(command)) && GoTo(kFirstCardRow);
}

std::optional<CommandStack::Moved> CardDesk::Follow(std::optional<CommandStack::Moved> moved) {
  if (moved && !GoTo(moved->row)) Last();
  return moved;
}

void CardDesk::BeginLink(EditSide side, SideRange selection) {
  link_ = {row_, id_, side, PendingLink(WithoutReturns(Text(row_, side)), selection)};
}

int CardDesk::LinkSourceRow() const {
  if (StandsThere(link_->row, link_->id)) return link_->row;
  return file_.RowOfId(LeadingNumber(link_->id));
}

bool CardDesk::FinishLink(std::string_view face) {
  const int source = LinkSourceRow();
  const LinkInWork work = *std::exchange(link_, std::nullopt);
  if (row_ == 0 || IsMarked() || !IsCard(source)) return false;
  const auto side = work.link.Finish(WithoutReturns(Text(source, work.side)), id_, face);
  if (!side) return false;
  CardCommand command;
  command.Replace(source, {{ColumnOf(work.side), *side}});
  if (!commands_.Do(EditKind::Link, std::move(command), source)) return false;
  commands_.SetRowAfter(source);
  return GoTo(source);
}

SearchResult CardDesk::Search(const SearchQuery& query, const KeepGoing& keep_going) {
  query_ = query;
  found_ = 0;
  examined_ = 0;
  return SearchMore(keep_going);
}

SearchResult CardDesk::SearchMore(const KeepGoing& keep_going) {
  if (!query_) return {};
  SearchResult result = SearchCards(file_, CardSearch(*query_), found_ + 1, keep_going);
  // Cancelled, it is as if it had not been asked for.
  if (!result.cancelled) examined_ += result.examined;
  result.examined = examined_;
  if (result.row != 0) found_ = result.row;
  if (result.row != 0) GoTo(result.row);
  return result;
}

}  // namespace tessaro
