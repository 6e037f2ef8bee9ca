#include "store/table/card_table.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <functional>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/disk.h"
#include "store/table/packed_parts.h"
#include "store/table/row_shift.h"
#include "store/table/table_content.h"
#include "store/table/table_reader.h"
#include "store/table/table_writer.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr char kQuote = '"';
constexpr int kSpareRows = 2;

}  // namespace

struct CardTable::State {
  using SpareRow = std::vector<std::optional<std::string>>;

  TableContent content;
  int cursor = 0;
  bool bof = true;
  bool eof = true;
  char separator = ';';
  std::string name;
  std::array<SpareRow, kSpareRows> spare_rows;
  // Rows from number `reached` on read as the row `ahead` further on.
  int reached = 0;
  int ahead = 0;

  RowHandle RowAt(int row) const { return content.order.At(row - 1); }
  bool HasRow(int row) const { return row >= 1 && row <= content.order.size(); }
  Value Get(int row, int column) const {
    return column >= 1 && HasRow(row) ? content.rows.Get(RowAt(row), column - 1) : std::nullopt;
  }
  bool Set(int row, int column, Value value) {
    if (column < 1 || !HasRow(row) || column > content.rows.FieldCount(RowAt(row))) return false;
    content.rows.Set(RowAt(row), column - 1, value);
    return true;
  }
  void TakeOver(TableContent&& fresh) {
    content = std::move(fresh);
    cursor = content.order.size();
    bof = eof = cursor == 0;
    ahead = 0;
  }
};

CardTable::CardTable() : state_(std::make_unique<State>()) {}
CardTable::~CardTable() = default;
CardTable::CardTable(CardTable&&) noexcept = default;
CardTable& CardTable::operator=(CardTable&&) noexcept = default;

void CardTable::Clear() {
  state_->TakeOver(TableContent());
}

void CardTable::AddColumn(std::string_view name) {
  state_->content.columns.Add(name);
  state_->content.rows.AddColumn();
}

bool CardTable::SetColumnType(std::string_view name, std::string_view /*type*/) {
  return state_->content.columns.Find(name) >= 0;
}

CardTable::Value CardTable::ColumnName(int i) const {
  if (i < 1 || i > ColumnCount()) return std::nullopt;
  return state_->content.columns.Name(i - 1);
}

int CardTable::ColumnIndex(std::string_view name) const {
  return state_->content.columns.Find(name) + 1;
}
int CardTable::ColumnCount() const {
  return state_->content.columns.size();
}
int CardTable::RowCount() const {
  return state_->content.order.size();
}
int CardTable::CurrentRow() const {
  return state_->cursor;
}
bool CardTable::Bof() const {
  return state_->bof;
}
bool CardTable::Eof() const {
  return state_->eof;
}

void CardTable::AppendRow() {
  RowHandle row = 0;
  if (state_->content.rows.Add(row)) state_->content.order.Append(row);
}

bool CardTable::InsertRow(bool after) {
  const int at = Reach(state_->cursor);
  RowHandle row = 0;
  if (at == 0 || !state_->content.rows.Add(row)) return false;
  state_->content.order.Insert(after ? at : at - 1, row);
  if (after) ++state_->ahead;
  return true;
}

bool CardTable::ShiftRows(const RowShift& shift, const PackedFields& fields) {
  std::vector<RowHandle> rows(shift.inserted().size());
  PackedReader reader(fields);
  for (size_t i = 0; i < rows.size(); ++i) {
    RowStore& store = state_->content.rows;
    if (reader.Next() ? store.AddFilled(reader.fields(), rows[i]) : store.Add(rows[i])) continue;
    for (size_t made = 0; made < i; ++made) state_->content.rows.Remove(rows[made]);
    return false;
  }
  for (const int row : shift.removed()) state_->content.rows.Remove(state_->RowAt(row));
  state_->content.order.Erase(shift.removed());
  state_->content.order.Insert(shift.inserted(), rows);
  state_->ahead = 0;
  if (state_->cursor > RowCount()) Last();
  return true;
}

bool CardTable::DeleteRow() {
  const int at = Reach(state_->cursor);
  if (at == 0) return false;
  state_->content.rows.Remove(state_->RowAt(at));
  state_->content.order.Erase(at - 1);
  if (at > RowCount()) state_->ahead = 0;
  if (state_->cursor > RowCount()) Last();
  return true;
}

bool CardTable::First() {
  return GoTo(1);
}
bool CardTable::Last() {
  return GoTo(RowCount());
}

bool CardTable::Prior() {
  if (RowCount() > 0 && state_->cursor >= 2) return MoveTo(state_->cursor - 1);
  state_->bof = true;
  if (RowCount() == 0) state_->eof = true;
  return false;
}

bool CardTable::Next() {
  if (state_->cursor < RowCount()) return MoveTo(state_->cursor + 1);
  state_->eof = true;
  if (RowCount() == 0) state_->bof = true;
  return false;
}

bool CardTable::GoTo(int row) {
  if (state_->HasRow(row)) return MoveTo(row);
  state_->bof = state_->eof = true;
  return false;
}

bool CardTable::MoveTo(int row) {
  state_->cursor = row;
  state_->bof = state_->eof = false;
  return true;
}

int CardTable::Reach(int row) const {
  if (!state_->HasRow(row)) return 0;
  if (row < state_->reached || row + state_->ahead > RowCount()) state_->ahead = 0;
  state_->reached = row;
  return row + state_->ahead;
}

CardTable::Value CardTable::FieldByName(std::string_view name) const {
  return Field(ColumnIndex(name));
}

bool CardTable::SetFieldByName(std::string_view name, Value value) {
  return SetField(ColumnIndex(name), value);
}

CardTable::Value CardTable::Field(int column) const {
  return state_->Get(Reach(state_->cursor), column);
}

bool CardTable::SetField(int column, Value value) {
  return state_->Set(Reach(state_->cursor), column, value);
}

std::string_view CardTable::FieldAt(int column, int row) {
  if (!GoTo(row)) return "";
  return Field(column).value_or("");
}

std::string_view CardTable::Peek(int column, int row) const {
  return state_->Get(row, column).value_or("");
}

void CardTable::PeekAll(int row, std::span<const int> columns, std::span<std::string_view> values) const {
  if (!state_->HasRow(row)) return std::fill(values.begin(), values.end(), "");
  state_->content.rows.GetAll(state_->RowAt(row), columns, values);
}

void CardTable::Expect(int row) const {
  if (state_->HasRow(row)) state_->content.rows.Expect(state_->RowAt(row));
}

bool CardTable::Poke(int column, int row, Value value) {
  return state_->Set(row, column, value);
}

void CardTable::PokeRows(std::span<const int> rows, const PackedFields& fields) {
  RowStore& store = state_->content.rows;
  // Returns which of the rows must move.
  const auto poke_in_place = [&](const PackedFields::Place& from, size_t end) {
    std::vector<size_t> left;
    RowStore::ComposedRow composed;
    PackedReader reader(fields, from);
    for (size_t i = from.row; i < end; ++i) {
      const int row = rows[i];
      // The other part's rows are not to be looked at.
      if (i + kAhead < end) Expect(rows[i + kAhead]);
      reader.Next();
      if (!state_->HasRow(row) || !store.RewriteInPlace(state_->RowAt(row), reader.fields(), composed)) {
        left.push_back(i);
      }
    }
    return left;
  };
  const auto parts = ReadInTwoParts(fields, poke_in_place);
  PackedReader reader(fields);
  size_t read = 0;
  for (const std::vector<size_t>& left : {std::cref(parts.first), std::cref(parts.second)}) {
    for (const size_t i : left) {
      for (; read <= i; ++read) reader.Next();
      PokeMoving(rows[i], reader.fields());
    }
  }
}

void CardTable::PokeMoving(int row, std::span<const FieldView> fields) {
  if (!state_->HasRow(row) || state_->content.rows.Rewrite(state_->RowAt(row), fields)) return;
  for (const FieldView& field : fields) (void)Poke(field.column, row, field.text);
}

bool CardTable::SaveRow(int k) {
  if (k < 0 || k >= kSpareRows) return false;
  const int at = Reach(state_->cursor);
  if (at == 0) return false;
  const RowHandle row = state_->RowAt(at);
  State::SpareRow& spare = state_->spare_rows[static_cast<size_t>(k)];
  spare.clear();
  for (int i = 0; i < state_->content.rows.FieldCount(row); ++i) spare.emplace_back(state_->content.rows.Get(row, i));
  return true;
}

bool CardTable::RestoreRow(int k) {
  if (k < 0 || k >= kSpareRows) return false;
  const int at = Reach(state_->cursor);
  if (at == 0) return false;
  std::vector<FieldText> fields;
  for (const std::optional<std::string>& field : state_->spare_rows[static_cast<size_t>(k)]) {
    fields.push_back(FieldText::Own(field));
  }
  state_->content.rows.SetAll(state_->RowAt(at), std::move(fields));
  return true;
}

bool CardTable::LoadFromFile(const fs::path& path) {
  const std::unique_ptr<ReadableFile> file = RealDisk().Open(path);
  if (file == nullptr || !LoadFrom(*file)) return false;
  SetNameFromPath(path.string());
  return true;
}

bool CardTable::LoadFrom(ReadableFile& file, ContentHash* hash, Progress* progress) {
  TableContent content;
  if (!TableReader(file, state_->separator, content, hash, progress).Read()) return false;
  state_->TakeOver(std::move(content));
  return true;
}

bool CardTable::SaveToFile(const fs::path& path) {
  const fs::path target = RealDisk().Resolve(path);
  std::error_code error;
  const fs::file_type type = fs::symlink_status(target, error).type();
  if (type == fs::file_type::not_found) return Replace(target);
  if (type != fs::file_type::regular) return Write(target);
  // A file that is protected from writing stays, though it could be replaced.
  return std::ofstream(target, std::ios::app | std::ios::binary).is_open() && Replace(target);
}

bool CardTable::Write(const fs::path& path) {
  const std::unique_ptr<WritableFile> file = RealDisk().Create(path);
  return file != nullptr && SaveTo(*file) && file->Close();
}

bool CardTable::Replace(const fs::path& path) {
  const fs::path fresh = BesideName(path);
  Disk& disk = RealDisk();
  if (Write(fresh)) {
    disk.CopyRights(path, fresh);
    if (disk.Rename(fresh, path)) return true;
  }
  (void)disk.Remove(fresh);
  return false;
}

bool CardTable::SaveTo(WritableFile& file, Progress* progress) {
  if (!TableWriter(file, state_->separator, state_->content, progress).Write()) return false;
  state_->ahead = 0;
  if (RowCount() > 0) Last();
  return true;
}

void CardTable::SetNameFromPath(std::string_view path) {
  const std::string_view before_point = path.substr(0, path.rfind('.'));
  const size_t folder = before_point.find_last_of(":\\/");
  state_->name = before_point.substr(folder == std::string_view::npos ? 0 : folder + 1);
}

const std::string& CardTable::TableName() const {
  return state_->name;
}
void CardTable::SetSeparator(char separator) {
  state_->separator = separator;
}
char CardTable::Separator() const {
  return state_->separator;
}
char CardTable::Quote() const {
  return kQuote;
}

LineEnd CardTable::line_end() const {
  return state_->content.line_end;
}

}  // namespace tessaro
