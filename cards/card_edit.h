#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <vector>

#include "store/file/card_file.h"

namespace tessaro {

// What is to be done to the cards in one step, as a value. Rows are those of the card table before it; rows of one kind
// of work are named in ascending order.
class CardCommand {
 public:
  void Remove(int row);
  // Puts a card in behind this row, which may be the first of the table, with these fields. Several behind the same row
  // stand there in the order of the calls.
  void InsertBehind(int row, std::span<const FieldView> fields);
  void InsertBehind(int row, std::initializer_list<FieldView> fields) {
    InsertBehind(row, std::span(fields.begin(), fields.size()));
  }
  // Gives fields of a card new texts. The card of the last call may be named again with other columns.
  void Replace(int row, std::span<const FieldView> fields);
  void Replace(int row, std::initializer_list<FieldView> fields) {
    Replace(row, std::span(fields.begin(), fields.size()));
  }

  // Makes room for so many bytes of texts of inserted rows, ...
  void ReserveInserted(size_t bytes) { edit_.inserted.Reserve(bytes); }
  // ... or for so many rows that get a counted number.
  void ReserveReplaced(size_t rows);
  // Replaces also what another command does, which does nothing else, in rows behind these.
  void AppendReplaced(CardCommand behind);

  bool empty() const { return !edit_.MovesRows() && edit_.replaced.empty(); }
  // Memory that it holds.
  size_t MemoryBytes() const { return edit_.MemoryBytes() + learned_.capacity() * sizeof(uint64_t); }

 private:
  friend class CardEdit;
  TableEdit edit_;
  // In an inverse, beside the replaced rows: of what the command left in the columns that learning writes. 0: it did
  // not touch them.
  std::vector<uint64_t> learned_;
};

// What a command has done.
struct CardEditDone {
  CardCommand inverse;  // takes it back; what applying it gives does it again
  RowShift shift;       // where the rows went
};

// The one way by which cards come, go or change outside learning. It keeps the journal, both indexes and the highest
// number right and tells who watches the file (CardWatcher).
class CardEdit {
 public:
  explicit CardEdit(CardFile& file) : file_(file) {}

  // Does all of a command; nothing, with the cards as they were, when it names rows that are no cards, rows out of
  // order, columns that do not exist or more cards than there is room for, or would leave no card: who removes the last
  // one inserts another with the same command. An inverse is for the cards as its command
  // left them, answers aside: where a card was answered since, or its statistics changed otherwise, the columns that
  // learning writes stay as they are.
  std::optional<CardEditDone> Apply(CardCommand command, IndexWork index_work = IndexWork::Follow);
  // The same without an inverse, for what is never taken back: that of many cards takes long and much memory.
  std::optional<RowShift> ApplyForGood(CardCommand command);

  // To be called when the editor closes or a dialog ends that made cards: both indexes get the order among equal keys
  // that they have when they are built, if that may be another. False: the card table has a defect.
  [[nodiscard]] bool Finish(const StageObserver& observer = {});

 private:
  // The part of the command that changes something; fills in the inverse but for its row numbers, and the IDs of the
  // cards that change.
  TableEdit Effective(CardCommand command, CardCommand& inverse, PackedFields& old_ids) const;
  // The same for the replaced rows from a place on, up to this one of them.
  struct Part {
    std::vector<int> rows;              // in which something changes
    std::optional<PackedFields> fresh;  // what they get; nothing: just what the command says, as is mostly so
    PackedFields old;                   // what stands there
    PackedFields old_ids;
    std::vector<uint64_t> learned;  // as in the inverse
  };
  Part EffectivePart(const CardCommand& command, const PackedFields::Place& from, size_t end) const;
  // Of the fields wanted in a row those that change something, and what stands there.
  struct Change {
    std::vector<FieldView> fresh;
    std::vector<FieldView> old;
    bool learned = false;  // some are in columns that learning writes
  };
  void Compare(int row, const std::vector<FieldView>& fields, bool answered, Change& change) const;
  void KeepRemoved(const TableEdit& edit, const RowShift& shift, CardCommand& inverse) const;
  bool IsLearned(int column) const;
  uint64_t LearnedHash(int row) const;

  CardFile& file_;
};

}  // namespace tessaro
