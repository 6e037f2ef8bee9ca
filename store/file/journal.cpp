#include "store/file/journal.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "store/table/card_columns.h"
#include "store/table/card_table.h"

namespace tessaro {
namespace {

constexpr std::array<std::string_view, 3> kMagics = {"Tessaro journal 1\n", "Tessaro journal 2\n",
                                                     "Tessaro journal 3\n"};
constexpr std::string_view kMagic = kMagics.back();

constexpr int kOldIdColumn = 1;
constexpr size_t kRecordHead = 2 * sizeof(uint64_t);

enum class Kind : uint8_t { Row = 1, Table = 2, SavePoint = 3, Edit = 4 };

uint64_t Checksum(std::string_view bytes) {
  return XXH3_64bits(bytes.data(), bytes.size());
}

template <typename Number>
void Put(std::string& text, Number number) {
  for (size_t i = 0; i < sizeof number; ++i) {
    text += static_cast<char>(static_cast<uint64_t>(number) >> (8 * i) & 0xFF);
  }
}

void Put(std::string& text, const ContentStamp& stamp) {
  Put(text, stamp.size);
  Put(text, stamp.hash);
}

// Takes numbers and bytes from the front of a text; once something is missing, nothing more is taken.
class Taker {
 public:
  explicit Taker(std::string_view text) : rest_(text) {}

  bool ok() const { return ok_; }
  bool AtEnd() const { return rest_.empty(); }
  std::string_view rest() const { return rest_; }

  std::string_view Bytes(uint64_t count) {
    if (!ok_ || count > rest_.size()) {
      ok_ = false;
      return {};
    }
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }

  template <typename Number>
  Number Take() {
    uint64_t number = 0;
    const std::string_view bytes = Bytes(sizeof(Number));
    for (size_t i = 0; i < bytes.size(); ++i) number |= uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
    return static_cast<Number>(number);
  }

  ContentStamp TakeStamp() {
    const auto size = Take<uint64_t>();
    return {size, Take<uint64_t>()};
  }

 private:
  std::string_view rest_;
  bool ok_ = true;
};

void PutContent(PiecedText& text, const RowChange& change) {
  Put(text.own(), change.row);
  Put(text.own(), static_cast<uint32_t>(change.fields.size()));
  for (const RowChange::Field& field : change.fields) {
    Put(text.own(), field.column);
    Put(text.own(), static_cast<uint32_t>(field.text.size()));
    text.own() += field.text;
  }
}

void PutContent(PiecedText& text, const TableChange& change) {
  text.AddView(change.text);
}

void PutContent(PiecedText& text, const SavePoint& point) {
  Put(text.own(), point.stamp);
}

void PutContent(PiecedText& text, const EditChange& change) {
  Put(text.own(), change.row_count);
  for (const std::vector<int>* rows : {&change.edit.removed, &change.edit.places, &change.edit.replaced}) {
    text.own().reserve(text.own().size() + sizeof(uint32_t) * (rows->size() + 1));
    Put(text.own(), static_cast<uint32_t>(rows->size()));
    for (const int row : *rows) Put(text.own(), static_cast<uint32_t>(row));
  }
  for (const PackedFields* fields : {&change.old_ids, &change.edit.inserted, &change.edit.replacing}) {
    Put(text.own(), uint64_t{fields->bytes().size()});
    text.AddView(fields->bytes());
  }
}

uint64_t PayloadChecksum(const PiecedText& record) {
  XXH3_state_t state;
  XXH3_64bits_reset(&state);
  size_t head = kRecordHead;
  for (const std::string_view piece : record.pieces()) {
    XXH3_64bits_update(&state, piece.data() + head, piece.size() - head);
    head = 0;
  }
  return XXH3_64bits_digest(&state);
}

template <typename What>
PiecedText RecordText(size_t kind, int64_t time, const What& what) {
  PiecedText text;
  text.own().resize(kRecordHead);  // its numbers are known at the end
  Put(text.own(), static_cast<uint8_t>(kind));
  Put(text.own(), time);
  PutContent(text, what);
  std::string head;
  Put(head, uint64_t{text.size() - kRecordHead});
  Put(head, PayloadChecksum(text));
  text.front().replace(0, kRecordHead, head);
  return text;
}

std::optional<EditChange> TakeEdit(Taker& taker) {
  EditChange change;
  TableEdit& edit = change.edit;
  change.row_count = taker.Take<uint32_t>();
  for (std::vector<int>* rows : {&edit.removed, &edit.places, &edit.replaced}) {
    const auto count = taker.Take<uint32_t>();
    for (uint32_t i = 0; i < count && taker.ok(); ++i) rows->push_back(taker.Take<int32_t>());
  }
  const std::pair<PackedFields*, size_t> packed[] = {{&change.old_ids, edit.removed.size() + edit.replaced.size()},
                                                     {&edit.inserted, edit.places.size()},
                                                     {&edit.replacing, edit.replaced.size()}};
  for (const auto& [fields, rows] : packed) {
    const auto length = taker.Take<uint64_t>();
    std::optional<PackedFields> taken = PackedFields::FromBytes(std::string(taker.Bytes(length)), rows);
    if (!taken) return std::nullopt;
    *fields = std::move(*taken);
  }
  return change;
}

RowChange TakeRow(Taker& taker) {
  RowChange change;
  change.row = taker.Take<uint32_t>();
  const auto field_count = taker.Take<uint32_t>();
  for (uint32_t i = 0; i < field_count && taker.ok(); ++i) {
    const auto column = taker.Take<uint32_t>();
    const auto length = taker.Take<uint32_t>();
    change.fields.push_back({column, std::string(taker.Bytes(length))});
  }
  return change;
}

std::optional<JournalRecord> ParsePayload(std::string_view payload) {
  Taker taker(payload);
  const auto kind = static_cast<Kind>(taker.Take<uint8_t>());
  JournalRecord record;
  record.time = taker.Take<int64_t>();
  if (kind == Kind::Row) {
    record.what = TakeRow(taker);
  } else if (kind == Kind::Table) {
    record.what = TableChange{std::string(taker.Bytes(taker.rest().size()))};
  } else if (kind == Kind::SavePoint) {
    record.what = SavePoint{taker.TakeStamp()};
  } else if (kind == Kind::Edit) {
    std::optional<EditChange> edit = TakeEdit(taker);
    if (!edit) return std::nullopt;
    record.what = std::move(*edit);
  } else {
    return std::nullopt;
  }
  if (!taker.ok() || !taker.AtEnd()) return std::nullopt;
  return record;
}

std::optional<JournalRecord> TakeRecord(Taker& taker) {
  const auto length = taker.Take<uint64_t>();
  const auto checksum = taker.Take<uint64_t>();
  const std::string_view payload = taker.Bytes(length);
  if (!taker.ok() || checksum != Checksum(payload)) return std::nullopt;
  return ParsePayload(payload);
}

std::optional<ContentStamp> TakeHead(Taker& taker) {
  const std::string_view magic = taker.Bytes(kMagic.size());
  if (std::find(kMagics.begin(), kMagics.end(), magic) == kMagics.end()) return std::nullopt;
  const std::string_view numbers = taker.rest();
  const ContentStamp base = taker.TakeStamp();
  const auto checksum = taker.Take<uint64_t>();
  if (!taker.ok() || checksum != Checksum(numbers.substr(0, 2 * sizeof(uint64_t)))) return std::nullopt;
  return base;
}

PackedFields OldIds(const std::vector<int>& rows, const CardTable& cards) {
  PackedFields ids;
  ids.Reserve(PackedFields::kCountedRow * rows.size());
  const int column = cards.ColumnIndex(kId);
  for (const int row : rows) {
    cards.Expect(row + CardTable::kAhead);
    AddOldId(cards.Peek(column, row), ids);
  }
  return ids;
}

}  // namespace

void AddOldId(std::string_view id, PackedFields& ids) {
  ids.AddRow({{kOldIdColumn, id}});
}

EditChange EditChangeOf(TableEdit edit, PackedFields old_ids, const CardTable& cards) {
  EditChange change;
  change.row_count = static_cast<uint32_t>(cards.RowCount());
  change.old_ids = OldIds(edit.removed, cards);
  const bool known = old_ids.rows() == edit.replaced.size();
  change.old_ids.Append(known ? std::move(old_ids) : OldIds(edit.replaced, cards));
  change.edit = std::move(edit);
  return change;
}

bool Apply(const EditChange& change, CardTable& cards) {
  const TableEdit& edit = change.edit;
  if (change.row_count != static_cast<uint32_t>(cards.RowCount()) || !Fits(edit, cards)) return false;
  const int id_column = cards.ColumnIndex(kId);
  PackedReader old_ids(change.old_ids);
  for (const std::vector<int>* rows : {&edit.removed, &edit.replaced}) {
    for (const int row : *rows) {
      if (!old_ids.Next() || old_ids.fields() != std::vector{FieldView{kOldIdColumn, cards.Peek(id_column, row)}})
        return false;
    }
  }
  return Perform(edit, ShiftOf(edit), cards);
}

std::string JournalHead(const ContentStamp& base) {
  std::string numbers;
  Put(numbers, base);
  Put(numbers, Checksum(numbers));
  return std::string(kMagic) + numbers;
}

std::string JournalText(const JournalRecord& record) {
  return std::visit([&](const auto& what) { return RecordText(record.what.index() + 1, record.time, what).Joined(); },
                    record.what);
}

PiecedText JournalPieces(int64_t time, const EditChange& change) {
  return RecordText(static_cast<size_t>(Kind::Edit), time, change);
}

std::optional<JournalContents> ParseJournal(std::string_view text) {
  Taker taker(text);
  const std::optional<ContentStamp> base = TakeHead(taker);
  if (!base) return std::nullopt;
  JournalContents contents{*base, {}, false};
  while (!contents.cut && !taker.AtEnd()) {
    std::optional<JournalRecord> record = TakeRecord(taker);
    contents.cut = !record;
    if (record) contents.records.push_back(std::move(*record));
  }
  return contents;
}

std::optional<std::vector<JournalRecord>> ChangesSince(JournalContents contents, const ContentStamp& stamp) {
  std::vector<JournalRecord>& records = contents.records;
  const auto tells_of_it = [&](const JournalRecord& record) {
    const auto* point = std::get_if<SavePoint>(&record.what);
    return point != nullptr && point->stamp == stamp;
  };
  const auto last = std::find_if(records.rbegin(), records.rend(), tells_of_it);
  if (last == records.rend() && contents.base != stamp) return std::nullopt;
  records.erase(records.begin(), last.base());
  std::erase_if(records, [](const JournalRecord& record) { return std::holds_alternative<SavePoint>(record.what); });
  return std::move(records);
}

}  // namespace tessaro
