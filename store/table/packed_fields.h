#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaro {

// A field by the number of its column, from 1.
struct FieldView {
  int column = 0;
  std::string_view text;
  bool operator==(const FieldView&) const = default;
};

// Fields of many rows in one piece of memory. Per field the column and the length of the text, each in as many groups
// of seven bits as it needs, and the text; a row ends with the column 0. For a text that is the last one of its column
// again there is one number, the column with kRepeated added. For a number that is the last one of its column and one,
// as those of cards mostly are, there is the column in two groups, of which the second is 0. Every few hundred rows
// nothing is taken from before, so that reading can begin there.
class PackedFields {
 public:
  // Bytes that a row of one counted number takes.
  static constexpr size_t kCountedRow = 3;

  struct Place {
    size_t row = 0;    // how many rows stand before it
    size_t start = 0;  // in the bytes
  };

  // Takes over bytes that bytes() gave. Nothing when they are not those of so many rows.
  static std::optional<PackedFields> FromBytes(std::string bytes, size_t rows);

  // Fields of column 0 and below are left out.
  void AddRow(std::span<const FieldView> fields);
  void AddRow(std::initializer_list<FieldView> fields) { AddRow(std::span(fields.begin(), fields.size())); }
  // Adds fields to the row that was added last.
  void AddToLastRow(std::span<const FieldView> fields);
  void AddToLastRow(std::initializer_list<FieldView> fields) { AddToLastRow(std::span(fields.begin(), fields.size())); }

  // Adds the rows of others behind these.
  void Append(PackedFields others);

  // Makes room for so many bytes at once.
  void Reserve(size_t bytes) { bytes_.reserve(bytes); }

  size_t rows() const { return rows_; }
  // The columns of the fields, ascending, each once.
  const std::vector<int>& columns() const { return columns_; }
  const std::string& bytes() const { return bytes_; }
  // A place near the middle where reading can begin; the beginning where there is none.
  Place Middle() const { return places_.empty() ? Place() : places_[places_.size() / 2]; }
  bool operator==(const PackedFields& other) const { return rows_ == other.rows_ && bytes_ == other.bytes_; }

 private:
  // The last text of a column.
  struct LastText {
    size_t start = 0;  // in the bytes; 0: there is none
    size_t size = 0;
    size_t row = 0;           // that it stands in
    uint64_t word = 0;        // the text, where a word holds it
    bool is_counted = false;  // and it stands nowhere else
  };
  void Add(const FieldView& field);
  void BeginPiece();
  void NoteColumn(int column);
  bool IsNextTo(const LastText& last, const FieldView& field, uint64_t word) const;
  bool Repeats(const LastText& last, const FieldView& field) const;

  std::string bytes_;
  size_t rows_ = 0;
  std::vector<int> columns_;
  std::vector<LastText> last_;  // by column
  std::vector<Place> places_;   // where reading can begin, but for the beginning
};

// Walks through the rows once. The fields must outlive it and not change.
class PackedReader {
 public:
  explicit PackedReader(const PackedFields& fields) : rest_(fields.bytes()) {}
  PackedReader(const PackedFields& fields, const PackedFields::Place& from)
      : rest_(std::string_view(fields.bytes()).substr(from.start)) {}
  explicit PackedReader(std::string_view bytes) : rest_(bytes) {}
  // Its fields point into itself.
  PackedReader(const PackedReader&) = delete;
  PackedReader& operator=(const PackedReader&) = delete;

  // The fields of the next row, valid until the call after it. False at the end, and where bytes are no row.
  bool Next();
  const std::vector<FieldView>& fields() const { return fields_; }
  bool AtEnd() const { return rest_.empty(); }

 private:
  std::optional<size_t> TakeNumber();
  // The column of a number that is counted up, if that comes next; 0: it does not.
  size_t TakeCounted();
  // The text of a field whose column is named so; nothing where there is none.
  std::optional<std::string_view> TakeText(size_t column, bool repeated);
  // Makes the last text of a column the number behind it. False: there is none.
  bool CountUp(size_t column);

  std::string_view rest_;
  std::vector<FieldView> fields_;
  std::vector<std::string_view> last_;  // by column
  std::vector<uint64_t> counted_;       // by column, the texts of counted numbers; all its room is made at once
};

}  // namespace tessaro
