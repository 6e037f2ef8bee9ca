#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cards/card_edit.h"
#include "store/file/card_file.h"

namespace tessaro {

// What a command of the editor or one of its tools did to the cards.
enum class EditKind {
  Text,
  Insert,
  Paste,
  Cut,
  Mark,
  Remove,
  Statistics,
  LineBreaks,
  Link,
  Renumber,
  Overview,
  Topics,
  Pictures
};

// The commands of the editor and its tools that can be taken back and given again, the newest first. Answers given
// since stay. Each command is done through it. Where others change cards, what could be taken back is forgotten, since
// it no longer fits.
class CommandStack : private CardWatcher {
 public:
  // Holds at most `limit` bytes; the oldest commands are forgotten first.
  CommandStack(CardFile& file, size_t limit);

  struct Moved {
    EditKind kind = EditKind::Text;
    int row = 0;  // of the card table, where the user then is
  };

  // Does a command. `row` is where the user is before it; see SetRowAfter. Nothing when it could not be done: all is as
  // it was. A command that changes nothing is done and not kept.
  std::optional<RowShift> Do(EditKind kind, CardCommand command, int row);
  // Changes the texts of one card. Several in a row on the same card, until Seal, are taken back together.
  bool DoText(int row, const std::vector<FieldView>& fields);
  // Marks these cards, ascending, for deletion, or takes their marks away where they are marked. `row` as with Do.
  void DoMarks(const std::vector<int>& rows, int row);
  // Where the user is after the command that was done last.
  void SetRowAfter(int row);
  // To be called before a command is done that also changes these settings of the card file: they go back with it.
  void KeepSettings();
  // The next change of a text is a command of its own.
  void Seal() { text_row_ = 0; }

  bool CanUndo() const { return !undo_.empty(); }  // there is a command to take back
  bool CanRedo() const { return !redo_.empty(); }  // or to give again
  // Which it is; only where there is one.
  EditKind NextUndo() const { return undo_.back().kind; }
  EditKind NextRedo() const { return redo_.back().kind; }
  // Nothing when there is none, or when it could not be done; all is then as it was.
  std::optional<Moved> Undo();
  std::optional<Moved> Redo();
  size_t MemoryBytes() const { return bytes_; }
  // Whether the memory did not hold all commands since this was asked last: what was forgotten.
  enum class Forgotten { Nothing, Oldest, All };
  Forgotten TakeForgotten() { return std::exchange(forgotten_, Forgotten::Nothing); }

 private:
  struct Landmarks {
    std::string overview, home;
  };
  struct Entry {
    EditKind kind = EditKind::Text;
    CardCommand inverse;
    std::vector<int> marks;  // the deletion marks that come back with the cards
    int row_before = 0;
    int row_after = 0;
    std::optional<Landmarks> landmarks;
    size_t Bytes() const { return inverse.MemoryBytes() + marks.capacity() * sizeof(int) + sizeof(Entry); }
  };
  using Entries = std::deque<Entry>;

  void RowsShifted(const RowShift& shift) override;
  void CardsChanged(std::span<const int> rows, std::span<const int> columns) override;
  void ForgetUnlessOwn();
  Entry NewEntry(EditKind kind, int row) const;
  void Push(Entry entry);
  void Forget(Entries& entries);
  std::optional<CardEditDone> Apply(CardCommand command);
  std::optional<Moved> Exchange(Entries& from, Entries& to, bool back);
  Landmarks ReadLandmarks() const;
  void WriteLandmarks(const Landmarks& landmarks);

  CardFile& file_;
  CardWatch watch_;
  size_t limit_;
  size_t bytes_ = 0;
  Entries undo_;
  Entries redo_;
  std::optional<Landmarks> kept_settings_;
  int text_row_ = 0;  // of the text change that is not yet sealed
  bool applying_ = false;
  Forgotten forgotten_ = Forgotten::Nothing;
};

}  // namespace tessaro
