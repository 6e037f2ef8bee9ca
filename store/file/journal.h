#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "store/file/pieced_text.h"
#include "store/table/content_stamp.h"
#include "store/table/table_edit.h"

// The form of a journal: what changed in a card file since it was saved, in the order in which it happened.
namespace tessaro {

// New texts for fields of one row; rows and columns as the card table counts them.
struct RowChange {
  struct Field {
    uint32_t column = 0;
    std::string text;
    bool operator==(const Field&) const = default;
  };
  uint32_t row = 0;
  std::vector<Field> fields;
  bool operator==(const RowChange&) const = default;
};

// The whole card table became this, in the form of a card file.
struct TableChange {
  std::string text;
  bool operator==(const TableChange&) const = default;
};

// Rows came, went or changed in one step. The old IDs tell whether it is done to the right cards.
struct EditChange {
  uint32_t row_count = 0;  // of the table before
  PackedFields old_ids;    // of the rows that go, then of those that change
  TableEdit edit;
  bool operator==(const EditChange&) const = default;
};
// `old_ids`: of the rows that change, from a caller that has them, made by AddOldId; else none.
EditChange EditChangeOf(TableEdit edit, PackedFields old_ids, const CardTable& cards);
void AddOldId(std::string_view id, PackedFields& ids);
// Does it to the table as it is to be done: all of it, or nothing when the table is another.
bool Apply(const EditChange& change, CardTable& cards);

// At this point the cards were written, and the file that holds them has this stamp.
struct SavePoint {
  ContentStamp stamp;
  bool operator==(const SavePoint&) const = default;
};

struct JournalRecord {
  int64_t time = 0;  // seconds since 1970
  std::variant<RowChange, TableChange, SavePoint, EditChange> what;
  bool operator==(const JournalRecord&) const = default;
};

struct JournalContents {
  ContentStamp base;  // of the card file that the first record belongs to
  std::vector<JournalRecord> records;
  bool cut = false;  // something unreadable followed the last record; it was left out
};

// A journal is a head and then one record a change; all numbers are little-endian:
//   head     "Tessaro journal 3\n", u64 size and u64 hash of the base, u64 checksum of these 16 bytes
//   record   u64 length of the payload, u64 checksum of the payload, payload
//   payload  u8 kind, i64 time, then
//            kind 1, row:         u32 row, u32 number of fields, for each: u32 column, u32 length, bytes
//            kind 2, table:       the bytes of the table to the end
//            kind 3, save point:  u64 size, u64 hash
//            kind 4, edit:        u32 rows before; u32 count and u32 row each for those that go, for the places of
//                                 those that come, for those that change; u64 length and bytes of the packed fields
//                                 of the old IDs, of the rows that come, of the rows that change
// A head with "1" begins a journal without edits, as it was written before there were any, one with "2" a journal
// without counted numbers.
// The checksum is XXH3 with 64 bits. Nothing is ever rewritten in place, so a crash can only cut the end.
std::string JournalHead(const ContentStamp& base);
std::string JournalText(const JournalRecord& record);
// The same of a change that stays as it is as long as the text is asked for.
PiecedText JournalPieces(int64_t time, const EditChange& change);
// Takes any bytes; nothing when there is no whole head. Reading ends before the first record that is cut or damaged.
std::optional<JournalContents> ParseJournal(std::string_view text);

// The records that a card file of this stamp lacks: those after the last place where the journal tells of it. Nothing
// when it never does: the journal is that of another state. The result may be empty: all of it was saved.
std::optional<std::vector<JournalRecord>> ChangesSince(JournalContents contents, const ContentStamp& stamp);

}  // namespace tessaro
