// The part of the card file that has to do with rows that come, go and change.

#include <algorithm>
#include <utility>

#include "platform/other_thread.h"
#include "store/file/card_file.h"
#include "store/table/packed_parts.h"

namespace tessaro {
namespace {

// Above this share of the cards a new index is made sooner than each card is put in its place.
constexpr int kMostPutPart = 4;

constexpr size_t kLong = size_t{1} << 18U;  // bytes of an edit that are worth a thread

// The rows of the edit in which IDs and scores change, as they count now.
struct ReplacedKeys {
  std::vector<int> ids;
  std::vector<uint32_t> numbers;  // that those become, as SixDigits reads them
  std::vector<int> scores;
};

// Those from a place among the replaced rows on, up to this one of them.
ReplacedKeys KeysOfPart(const TableEdit& edit, const RowShift& shift, const CardColumns& columns,
                        const PackedFields::Place& from, size_t end) {
  ReplacedKeys keys;
  const std::vector<int>& named = edit.replacing.columns();
  const auto names = [&](int column) { return std::count(named.begin(), named.end(), column) > 0; };
  if (names(columns.id)) {
    keys.ids.reserve(end - from.row);
    keys.numbers.reserve(end - from.row);
  }
  if (names(columns.score)) keys.scores.reserve(end - from.row);
  PackedReader reader(edit.replacing, from);
  for (size_t i = from.row; i < end; ++i) {
    reader.Next();
    const int row = shift.Map(edit.replaced[i]);
    for (const FieldView& field : reader.fields()) {
      // A field may be named twice: the last one counts.
      if (field.column == columns.id) {
        if (keys.ids.empty() || keys.ids.back() != row) keys.ids.push_back(row);
        keys.numbers.resize(keys.ids.size());
        keys.numbers.back() = SixDigits(field.text);
      }
      if (field.column == columns.score && (keys.scores.empty() || keys.scores.back() != row)) {
        keys.scores.push_back(row);
      }
    }
  }
  return keys;
}

ReplacedKeys ReplacedKeysOf(const TableEdit& edit, const RowShift& shift, const CardColumns& columns) {
  auto [keys, behind] = ReadInTwoParts(edit.replacing, [&](const PackedFields::Place& from, size_t end) {
    return KeysOfPart(edit, shift, columns, from, end);
  });
  keys.ids.insert(keys.ids.end(), behind.ids.begin(), behind.ids.end());
  keys.numbers.insert(keys.numbers.end(), behind.numbers.begin(), behind.numbers.end());
  keys.scores.insert(keys.scores.end(), behind.scores.begin(), behind.scores.end());
  return std::move(keys);
}

}  // namespace

std::optional<RowShift> CardFile::Edit(TableEdit edit, PackedFields old_ids, IndexWork index_work) {
  if (!IsOpen() || !Fits(edit, content_.cards)) return std::nullopt;
  const RowShift shift = ShiftOf(edit);
  const EditChange change = EditChangeOf(std::move(edit), std::move(old_ids), content_.cards);
  // A long record is made and written beside the work for the table and the indexes.
  const bool is_long = change.edit.MemoryBytes() >= kLong;
  std::future put = std::async(OnOtherThread(is_long), [&] { return journal_.PutEdit(change); });
  const auto tell_shift = [&](auto told, const RowShift& of) {
    if (!shift.empty()) watchers_.ForEach([&](CardWatcher& watcher) { (watcher.*told)(of); });
  };
  tell_shift(&CardWatcher::RowsWillShift, shift);
  if (!Perform(change.edit, shift, content_.cards)) {
    (void)put.get();
    journal_.EditDone(content_.cards, false);
    tell_shift(&CardWatcher::RowsShifted, RowShift());
    return std::nullopt;
  }
  bool rebuilt = false;
  if (index_work == IndexWork::Later) {
    LeaveOutOfIndexes(shift);
  } else {
    rebuilt = FollowInIndexes(change.edit, shift);
  }
  changed_ = true;
  content_.unknown.reset();
  journal_.EditDone(content_.cards, put.get());
  tell_shift(&CardWatcher::RowsShifted, shift);
  TellOfChanges(change.edit, shift);
  if (rebuilt) watchers_.ForEach([](CardWatcher& watcher) { watcher.IndexesRebuilt(); });
  return shift;
}

bool CardFile::FollowInIndexes(const TableEdit& edit, const RowShift& shift) {
  const auto [renumbered, numbers, scored] = ReplacedKeysOf(edit, shift, content_.columns);
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
  if (build_links || build_scores) ids.emplace(content_.cards, CardIds::Known{renumbered, numbers});

  content_.link_index.Shift(shift);
  if (!build_links) {
    content_.link_index.Remove(renumbered);
    content_.link_index.Put(renumbered, content_.cards);
    content_.link_index.Put(shift.inserted(), content_.cards);
  }
  const auto raise = [&](int row, uint32_t number) {
    RaiseHighestId(number != kNotSixDigits ? number : LeadingNumber(content_.cards.Peek(content_.columns.id, row)));
  };
  for (size_t i = 0; i < renumbered.size(); ++i) raise(renumbered[i], numbers[i]);
  for (const int row : shift.inserted()) raise(row, ids ? ids->number(row) : kNotSixDigits);
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
