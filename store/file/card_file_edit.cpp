// The part of the card file that has to do with rows that come, go and change.

#include <algorithm>
#include <utility>

#include "platform/other_thread.h"
#include "store/file/card_file.h"

namespace tessaro {
namespace {

// Above this share of the cards a new index is made sooner than each card is put in its place.
constexpr int kMostPutPart = 4;

constexpr size_t kLong = size_t{1} << 18U;  // bytes of an edit that are worth a thread

// The rows of the edit in which IDs and scores change, as they count now.
struct ReplacedKeys {
  std::vector<int> ids;
  std::vector<int> scores;
};

ReplacedKeys ReplacedKeysOf(const TableEdit& edit, const RowShift& shift, const CardColumns& columns) {
  ReplacedKeys keys;
  // A field may be named twice.
  const auto add = [](std::vector<int>& rows, int row) {
    if (rows.empty() || rows.back() != row) rows.push_back(row);
  };
  const std::vector<int>& named = edit.replacing.columns();
  if (std::count(named.begin(), named.end(), columns.id) > 0) keys.ids.reserve(edit.replaced.size());
  if (std::count(named.begin(), named.end(), columns.score) > 0) keys.scores.reserve(edit.replaced.size());
  PackedReader reader(edit.replacing);
  for (const int row : edit.replaced) {
    reader.Next();
    for (const FieldView& field : reader.fields()) {
      if (field.column == columns.id) add(keys.ids, shift.Map(row));
      if (field.column == columns.score) add(keys.scores, shift.Map(row));
    }
  }
  return keys;
}

}  // namespace

std::optional<RowShift> CardFile::Edit(TableEdit edit, PackedFields old_ids, IndexWork index_work) {
  if (!IsOpen() || !Fits(edit, content_.cards)) return std::nullopt;
  const RowShift shift = ShiftOf(edit);
  const EditChange change = EditChangeOf(std::move(edit), std::move(old_ids), content_.cards);
  // A long record is made and written beside the work for the table and the indexes.
  const bool is_long = change.edit.MemoryBytes() >= kLong;
  std::future record = std::async(OnOtherThread(is_long), [&] { return journal_.EditRecord(change); });
  const auto tell_shift = [&](auto told, const RowShift& of) {
    if (!shift.empty()) watchers_.ForEach([&](CardWatcher& watcher) { (watcher.*told)(of); });
  };
  tell_shift(&CardWatcher::RowsWillShift, shift);
  if (!Perform(change.edit, shift, content_.cards)) {
    tell_shift(&CardWatcher::RowsShifted, RowShift());
    return std::nullopt;
  }
  std::future kept =
      std::async(OnOtherThread(is_long), [&] { return journal_.NoteEdit(content_.cards, change, record.get()); });
  bool rebuilt = false;
  if (index_work == IndexWork::Later) {
    LeaveOutOfIndexes(shift);
  } else {
    rebuilt = FollowInIndexes(change.edit, shift);
  }
  changed_ = true;
  content_.unknown.reset();
  journal_.Noted(kept.get());
  tell_shift(&CardWatcher::RowsShifted, shift);
  TellOfChanges(change.edit, shift);
  if (rebuilt) watchers_.ForEach([](CardWatcher& watcher) { watcher.IndexesRebuilt(); });
  return shift;
}

bool CardFile::FollowInIndexes(const TableEdit& edit, const RowShift& shift) {
  const auto [renumbered, scored] = ReplacedKeysOf(edit, shift, content_.columns);
  const auto are_many = [&](const std::vector<int>& changed) {
    return changed.size() + shift.inserted().size() > static_cast<size_t>(CardCount() / kMostPutPart);
  };
  const bool ids_differ = !shift.empty() || !renumbered.empty();
  const bool build_links = are_many(renumbered);
  const bool build_scores = are_many(scored);
  content_.equal_keys_differ = content_.equal_keys_differ || (!build_links && ids_differ) ||
                               (!build_scores && !(shift.empty() && scored.empty()));
  // Where nothing but scores changed, their index needs no IDs.
  if (build_scores && !ids_differ && content_.learn_index.BuildAgain(content_.cards)) return true;
  std::optional<CardIds> ids;
  if (build_links || build_scores) ids.emplace(content_.cards);

  content_.link_index.Shift(shift);
  if (!build_links) content_.link_index.Remove(renumbered);
  for (const std::vector<int>* rows : {&renumbered, &shift.inserted()}) {
    if (!build_links) content_.link_index.Put(*rows, content_.cards);
    for (const int row : *rows) {
      const uint32_t number = ids ? ids->number(row) : kNotSixDigits;
      RaiseHighestId(number != kNotSixDigits ? number : LeadingNumber(content_.cards.Peek(content_.columns.id, row)));
    }
  }
  if (build_links) (void)BuildLinkIndex(content_, *ids, {});

  content_.learn_index.Shift(shift);
  if (build_scores) return BuildLearnIndex(content_, *ids, {});
  const auto put_score = [&](int row) {
    content_.learn_index.Put(row, content_.cards.Peek(content_.columns.score, row));
  };
  std::for_each(scored.begin(), scored.end(), put_score);
  std::for_each(shift.inserted().begin(), shift.inserted().end(), put_score);
  return false;
}

void CardFile::LeaveOutOfIndexes(const RowShift& shift) {
  content_.link_index.Shift(shift);
  content_.learn_index.Shift(shift);
  for (const int row : shift.inserted()) RaiseHighestId(LeadingNumber(content_.cards.Peek(content_.columns.id, row)));
  content_.equal_keys_differ = true;
}

void CardFile::RaiseHighestId(int64_t id) {
  content_.highest_id = std::max(content_.highest_id, id);
}

void CardFile::TellOfChanges(const TableEdit& edit, const RowShift& shift) const {
  if (edit.replaced.empty()) return;
  std::vector<int> rows = edit.replaced;
  for (int& row : rows) row = shift.Map(row);
  watchers_.ForEach([&](CardWatcher& watcher) { watcher.CardsChanged(rows, edit.replacing.columns()); });
}

}  // namespace tessaro
