// The part of the card file that has to do with changes which are not saved yet.

#include <algorithm>
#include <set>
#include <utility>

#include "platform/memory_file.h"
#include "store/file/card_file.h"
#include "store/file/card_layout.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

// Adds what an edit did to the rows that were changed so far.
void AddEdit(const TableEdit& edit, std::set<int>& rows, int& removed) {
  const RowShift shift = ShiftOf(edit);
  const std::vector<int>& inserted = shift.inserted();
  rows.insert(edit.replaced.begin(), edit.replaced.end());
  removed += static_cast<int>(edit.removed.size());
  // There may be many edits of many rows, most of which only add cards behind all others.
  const bool all_stay = edit.removed.empty() && (inserted.empty() || rows.empty() || *rows.rbegin() < inserted.front());
  if (!all_stay) {
    std::set<int> moved;
    for (const int row : rows) moved.insert(shift.Map(row));
    moved.erase(0);
    rows = std::move(moved);
  }
  rows.insert(inserted.begin(), inserted.end());
}

UnsavedChanges Summary(const std::vector<JournalRecord>& records) {
  UnsavedChanges summary;
  std::set<int> rows;
  int removed = 0;
  summary.first = summary.last = records.front().time;
  for (const JournalRecord& record : records) {
    summary.first = std::min(summary.first, record.time);
    summary.last = std::max(summary.last, record.time);
    if (const auto* change = std::get_if<RowChange>(&record.what)) rows.insert(static_cast<int>(change->row));
    if (const auto* change = std::get_if<EditChange>(&record.what)) AddEdit(change->edit, rows, removed);
    if (!std::holds_alternative<TableChange>(record.what)) continue;
    summary.whole_table = true;
    rows.clear();
    removed = 0;
  }
  summary.cards = static_cast<int>(rows.size()) + removed;
  return summary;
}

bool Apply(const TableChange& change, CardTable& cards) {
  CardTable table;
  table.SetSeparator(kFieldSeparator);
  MemoryReader reader(change.text);
  if (!table.LoadFrom(reader) || CompleteCards(table) == CardTableState::Unusable) return false;
  table.SetNameFromPath(cards.TableName() + ".");
  cards = std::move(table);
  return true;
}

// The first and the last row are no cards and never change.
bool Apply(const RowChange& change, CardTable& cards) {
  const auto fits = [&](const RowChange::Field& field) {
    return field.column >= 1 && field.column <= static_cast<uint32_t>(cards.ColumnCount());
  };
  if (change.row < kFirstCardRow || change.row >= static_cast<uint32_t>(cards.RowCount()) ||
      !std::all_of(change.fields.begin(), change.fields.end(), fits)) {
    return false;
  }
  for (const RowChange::Field& field : change.fields) {
    cards.Poke(static_cast<int>(field.column), static_cast<int>(change.row), field.text);
  }
  return true;
}

// Leaves out what a later change of the whole table made void. False when there is none: such changes are nothing
// without the cards that they were made in.
bool BeginWithTable(std::vector<JournalRecord>& changes) {
  const auto is_table = [](const JournalRecord& record) { return std::holds_alternative<TableChange>(record.what); };
  const auto last = std::find_if(changes.rbegin(), changes.rend(), is_table);
  if (last == changes.rend()) return false;
  changes.erase(changes.begin(), last.base() - 1);
  return true;
}

}  // namespace

void CardFile::RowChanged(int row, std::span<const int> columns) {
  changed_ = true;
  content_.unknown.reset();
  journal_.RowChanged(content_.cards, row, columns);
}

void CardFile::TableChanged() {
  changed_ = true;
  content_.unknown.reset();
  journal_.TableChanged(content_.cards);
}

ContentStamp CardFile::LastStamp(const CardFilePaths& paths) const {
  std::optional<ContentStamp> stamp = StampOf(disk_, paths.cards);
  if (!stamp) stamp = StampOf(disk_, paths.backup);
  return stamp.value_or(ContentHash().Stamp());
}

CardJournal::Found CardFile::FindForBackup(const fs::path& journal, const ContentStamp& backup,
                                           const ContentStamp& replaced) const {
  CardJournal::Found found = journal_.Find(journal, backup);
  if (found.fits) return found;
  found = journal_.Find(journal, replaced);
  found.fits = found.fits && (found.changes.empty() || BeginWithTable(found.changes));
  return found;
}

void CardFile::BeginJournal(OpenReport& report) {
  journal_.Begin(paths_.journal, content_.stamp);
  TakeNoteOf(journal_.Find(paths_.journal, content_.stamp), report);
}

void CardFile::TakeNoteOf(CardJournal::Found found, OpenReport& report) {
  if (!found.exists) return;
  if (!found.fits) {
    report.put_aside = journal_.PutAside(paths_.journal);
  } else if (found.changes.empty()) {
    // All of it was saved; only the removing of the journal was cut short.
    (void)disk_.Remove(paths_.journal);
  } else {
    report.unsaved = Summary(found.changes);
    unsaved_ = std::move(found.changes);
  }
}

bool CardFile::TakeOverUnsaved(const StageObserver& observer) {
  std::vector<int> rows;
  bool whole_table = false;
  for (const JournalRecord& record : std::exchange(unsaved_, {})) {
    const auto* row = std::get_if<RowChange>(&record.what);
    const auto* table = std::get_if<TableChange>(&record.what);
    const auto* edit = std::get_if<EditChange>(&record.what);
    if (row != nullptr && !Apply(*row, content_.cards)) break;
    if (table != nullptr && !Apply(*table, content_.cards)) break;
    if (edit != nullptr && !Apply(*edit, content_.cards)) break;
    if (row != nullptr) rows.push_back(static_cast<int>(row->row));
    if (edit != nullptr) rows.insert(rows.end(), edit->edit.replaced.begin(), edit->edit.replaced.end());
    whole_table = whole_table || table != nullptr || (edit != nullptr && edit->edit.MovesRows());
  }
  content_.columns = ColumnsOf(content_.cards);
  RecountIds();
  changed_ = true;
  content_.unknown.reset();
  journal_.Adopt(content_.cards, std::move(rows), whole_table);
  return RebuildIndexes(observer);
}

std::vector<ChangesPutAside> CardFile::ListPutAside() const {
  std::vector<ChangesPutAside> found;
  const fs::path folder = paths_.cards.parent_path();
  const std::string begin = BeginOfAsideName(paths_.journal);
  std::vector<std::string> names = IsOpen() ? disk_.FileNames(folder) : std::vector<std::string>();
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    if (!name.starts_with(begin) || !name.ends_with(paths_.journal.extension().string())) continue;
    const std::optional<std::string> text = ReadFile(disk_, folder / name);
    const std::optional<JournalContents> contents = text ? ParseJournal(*text) : std::nullopt;
    if (!contents || contents->records.empty()) continue;
    const CardJournal::Found here = journal_.Find(folder / name, content_.stamp);
    const bool fit = here.fits && !here.changes.empty();
    found.push_back({folder / name, Summary(fit ? here.changes : contents->records), fit});
  }
  return found;
}

bool CardFile::TakeOverPutAside(const fs::path& path, const StageObserver& observer) {
  if (!IsOpen() || changed_ || read_only_) return false;
  CardJournal::Found found = journal_.Find(path, content_.stamp);
  if (!found.fits || found.changes.empty()) return false;
  unsaved_ = std::move(found.changes);
  return TakeOverUnsaved(observer);
}

fs::path CardFile::PutUnsavedAside() {
  unsaved_.clear();
  fs::path aside = journal_.PutAside(paths_.journal);
  // Cards that were restored are in no journal yet.
  if (changed_) TableChanged();
  return aside;
}

}  // namespace tessaro
