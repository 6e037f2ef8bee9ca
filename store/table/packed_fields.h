#pragma once

#include <cstddef>
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
// again there is one number, the column with kRepeated added. Every few hundred rows nothing is repeated from before,
// so that reading can begin there.
class PackedFields {
 public:
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
  struct Slice {
    size_t start = 0;
    size_t size = 0;
  };
  void Add(const FieldView& field);
  void BeginPiece();
  void NoteColumn(int column);
  bool Repeats(const FieldView& field) const;

  std::string bytes_;
  size_t rows_ = 0;
  std::vector<int> columns_;
  std::vector<Slice> last_;    // by column, in the bytes
  std::vector<Place> places_;  // where reading can begin, but for the beginning
};

// Walks through the rows once. The fields must outlive it and not change.
class PackedReader {
 public:
  explicit PackedReader(const PackedFields& fields) : rest_(fields.bytes()) {}
  PackedReader(const PackedFields& fields, const PackedFields::Place& from)
      : rest_(std::string_view(fields.bytes()).substr(from.start)) {}
  explicit PackedReader(std::string_view bytes) : rest_(bytes) {}

  // The fields of the next row, valid until the call after it. False at the end, and where bytes are no row.
  bool Next();
  const std::vector<FieldView>& fields() const { return fields_; }
  bool AtEnd() const { return rest_.empty(); }

 private:
  std::optional<size_t> TakeNumber();
  // The text of a field whose column is named so; nothing where there is none.
  std::optional<std::string_view> TakeText(size_t column, bool repeated);

  std::string_view rest_;
  std::vector<FieldView> fields_;
  std::vector<std::string_view> last_;  // by column
};

}  // namespace tessaro
