#include "exchange/card_export.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <initializer_list>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "exchange/blank_card.h"
#include "platform/code_page.h"
#include "platform/disk.h"
#include "platform/turns.h"
#include "platform/utf8.h"
#include "store/file/safe_save.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

// So much text is written at once, and a row more.
constexpr size_t kLongText = size_t{1} << 18;

std::string WithCrLf(std::string_view text) {
  std::string lines;
  lines.reserve(text.size() + text.size() / 8);
  for (const char c : text) {
    if (c == '\n') lines += '\r';
    lines += c;
  }
  return lines;
}

// Whether the sides are in code pages of their own, so that each part of a text is brought into UTF-8 by itself.
bool HasPages(const TextFileForm& form) {
  return form.utf8 && !form.pages.western();
}

// What stands around the sides, as it comes into the text.
std::string Outside(std::string_view text, const TextFileForm& form) {
  return HasPages(form) ? Utf8FromCodePage(text) : std::string(text);
}

// Brings a composed text into the form of the file.
void Bring(std::string& text, const TextFileForm& form) {
  if (form.cr_lf) text = WithCrLf(text);
  if (form.utf8 && !HasPages(form)) text = Utf8FromCodePage(text);
}

// A few bytes that are looked for, sixteen places at once.
class Marks {
 public:
  void Add(char mark) {
    if (count_ < bytes_.size()) bytes_[count_] = Group{} + mark;
    ++count_;
  }
  // Whether a text may hold one: never false when it does, and true for short texts, which are looked at as quickly
  // otherwise.
  bool MayStandIn(std::string_view text) const {
    if (text.size() < sizeof(Group) || count_ > bytes_.size()) return true;
    Group found = {};
    for (size_t at = 0; at < text.size(); at += sizeof(Group)) {
      Group group;
      // The last group may go over some bytes again.
      std::memcpy(&group, text.data() + std::min(at, text.size() - sizeof(Group)), sizeof(Group));
      for (size_t i = 0; i < count_; ++i) found |= static_cast<Group>(group == bytes_[i]);
    }
    uint64_t halves[2];
    std::memcpy(halves, &found, sizeof(found));
    return (halves[0] | halves[1]) != 0;
  }

 private:
  using Group = char __attribute__((vector_size(16)));
  std::array<Group, 5> bytes_ = {};
  size_t count_ = 0;
};

// Puts the sides of cards into a text: a backslash is written twice, and where `quote` stands for a double quote a line
// feed as a backslash and "n".
class SideWriter {
 public:
  // Sides must not hold the separators. `page` is that of the sides.
  SideWriter(std::initializer_list<char> separators, std::optional<char> quote, const TextFileForm& form, CodePage page)
      : separators_(separators), quote_(quote.value_or('"')), quote_text_(Outside({&quote_, 1}, form)) {
    if (HasPages(form)) BringIntoUtf8(page);
    Kind('\\') = Byte::Backslash;
    if (quote) Kind('\n') = Byte::LineFeed;
    if (quote) Kind('"') = Byte::Quote;
    for (const char separator : separators) {
      Kind(separator) = Byte::Separator;
      if (const auto same = SameCharacter(separator)) Kind(*same) = Byte::Separator;
    }
    for (size_t i = 0; i < kinds_.size(); ++i) {
      if (kinds_[i] != Byte::Plain) marks_.Add(static_cast<char>(i));
    }
  }

  // False when the side holds a separator; something of it may then stand in the text.
  bool Append(std::string_view side, std::string& text) const {
    if (!marks_.MayStandIn(side)) {
      text += side;
      return true;
    }
    size_t from = 0;
    for (size_t i = 0; i < side.size(); ++i) {
      const Byte kind = kinds_[static_cast<uint8_t>(side[i])];
      if (kind == Byte::Plain) continue;
      if (kind == Byte::Separator) return false;
      text.append(side, from, i - from);
      from = i + 1;
      text += kind == Byte::High       ? std::string_view(characters_[static_cast<uint8_t>(side[i]) - kFirstHigh])
              : kind == Byte::Quote    ? std::string_view(quote_text_)
              : kind == Byte::LineFeed ? "\\n"
                                       : "\\\\";
    }
    text.append(side, from);
    return true;
  }

  const std::vector<char>& separators() const { return separators_; }
  // Its byte or, where the text has characters, that character.
  bool Holds(std::string_view side, char separator) const {
    const std::optional<char> same = SameCharacter(separator);
    return side.find(separator) != std::string_view::npos || (same && side.find(*same) != std::string_view::npos);
  }

 private:
  enum class Byte : uint8_t { Plain, High, Backslash, LineFeed, Quote, Separator };
  static constexpr size_t kFirstHigh = 0x80;

  Byte& Kind(char c) { return kinds_[static_cast<uint8_t>(c)]; }
  std::optional<char> SameCharacter(char separator) const {
    return page_ ? page_->ByteOf(code_page::CharacterOf(separator)) : std::nullopt;
  }
  void BringIntoUtf8(CodePage page) {
    page_ = page;
    for (size_t i = kFirstHigh; i < kinds_.size(); ++i) {
      const auto byte = static_cast<char>(i);
      kinds_[i] = Byte::High;
      characters_.push_back(Utf8FromCodePage({&byte, 1}, page));
    }
  }

  std::array<Byte, 256> kinds_{};
  Marks marks_;  // those bytes that are not plain
  std::vector<char> separators_;
  char quote_;
  std::string quote_text_;
  std::optional<CodePage> page_;         // where sides are brought into UTF-8
  std::vector<std::string> characters_;  // of its bytes from kFirstHigh on
};

// Of the first and the second side.
using SideWriters = std::array<SideWriter, 2>;

// The first of the separators that one of the sides holds.
std::optional<char> SeparatorIn(const SideWriters& writers, std::string_view question, std::string_view answer) {
  for (const char separator : writers[0].separators()) {
    if (writers[0].Holds(question, separator) || writers[1].Holds(answer, separator)) return separator;
  }
  return std::nullopt;
}

// Rows that follow one another, from `next` up to `behind`, and the text of those that were composed last.
struct Piece {
  int next = 0;
  int behind = 0;
  std::string text;
  int64_t cards = 0;  // in the text
  ExportEnd end = ExportEnd::Done;
  char separator = '\0';
  bool last = false;  // nothing more is to be written
};

// Hands the fields of the rows in these columns, the first of which is the ID, to `add`, which puts a row into a text.
// It answers with a separator that the row holds, and then nothing of the row counts.
template <size_t count, typename AddRow>
class RowComposer {
 public:
  RowComposer(const CardTable& cards, const std::array<std::string_view, count>& names, const AddRow& add)
      : cards_(cards), add_(add) {
    for (size_t i = 0; i < count; ++i) columns_[i] = cards.ColumnIndex(names[i]);
  }

  int RowCount() const { return cards_.RowCount(); }
  // Composes the next rows, to the piece's end or until the text is long enough. May run on several threads.
  void Compose(Piece& piece) const {
    piece.text.clear();
    piece.cards = 0;
    std::array<std::string_view, count> fields;
    for (int& row = piece.next; row < piece.behind && !piece.last && piece.text.size() < kLongText; ++row) {
      cards_.Expect(row + CardTable::kAhead);
      cards_.PeekAll(row, columns_, fields);
      piece.last = fields[0].starts_with('#');
      if (!piece.last) Add(fields, piece);
    }
  }

 private:
  void Add(const std::array<std::string_view, count>& fields, Piece& piece) const {
    const size_t size = piece.text.size();
    const std::optional<char> separator = add_(fields, piece.text);
    if (!separator) {
      ++piece.cards;
      return;
    }
    piece.text.resize(size);
    piece.end = ExportEnd::UnfitSeparator;
    piece.separator = *separator;
    piece.last = true;
  }

  const CardTable& cards_;
  const AddRow& add_;
  std::array<int, count> columns_ = {};
};

// Writes the rows of a table, some thousand at a time.
template <typename Composer>
class RowsExport {
 public:
  RowsExport(const Composer& rows, TextFileForm form, WritableFile& file, const WorkObserver& observer)
      : rows_(rows), form_(form), file_(file), observer_(observer) {}

  ExportResult Write() try {
    const int rows = rows_.RowCount();
    const auto compose = [&](int number, Piece& piece) {
      piece.next = number * kRowsOfPiece + 1;
      piece.behind = std::min(piece.next + kRowsOfPiece, rows + 1);
      Compose(piece);
    };
    const auto write = [&](Piece& piece, bool on_own) {
      return WriteWhole(piece, on_own ? observer_ : WorkObserver());
    };
    WorkInTurns<Piece>((rows + kRowsOfPiece - 1) / kRowsOfPiece, rows >= kWorthAThread, compose, write);
    return result_;
  } catch (const std::bad_alloc&) {
    return {ExportEnd::WriteFailed};
  }

 private:
  static constexpr int kRowsOfPiece = 4096;

  // Goes on composing where a piece is long. False when nothing more is to be written.
  bool WriteWhole(Piece& piece, const WorkObserver& observer) {
    while (WriteComposed(piece, observer)) {
      if (piece.next == piece.behind) return true;
      Compose(piece);
    }
    return false;
  }
  void Compose(Piece& piece) const {
    rows_.Compose(piece);
    Bring(piece.text, form_);
  }
  bool WriteComposed(const Piece& piece, const WorkObserver& observer) {
    result_ = {piece.end, result_.cards + piece.cards, piece.separator};
    if (!file_.Write(piece.text)) {
      result_.end = ExportEnd::WriteFailed;
    } else if (observer && !observer(result_.cards)) {
      result_.end = ExportEnd::Cancelled;
    }
    return !piece.last && result_.end == ExportEnd::Done;
  }

  const Composer& rows_;
  TextFileForm form_;
  WritableFile& file_;
  const WorkObserver& observer_;
  ExportResult result_;
};

}  // namespace

ExportResult WriteTableExport(const CardTable& cards, char separator, char quote, TextFileForm form, WritableFile& file,
                              const WorkObserver& observer) {
  const SideWriters sides = {SideWriter({separator}, quote, form, form.pages.front),
                             SideWriter({separator}, quote, form, form.pages.back)};
  const std::string between = Outside({&separator, 1}, form);
  const auto add = [&](const auto& fields, std::string& line) -> std::optional<char> {
    for (size_t i = 0; i < fields.size(); ++i) {
      if (i > 0) line += between;
      if (i != kQuestionAt && i != kAnswerAt) {
        HasPages(form) ? line += Outside(fields[i], form) : line += fields[i];
      } else if (!sides[i == kQuestionAt ? 0 : 1].Append(fields[i], line)) {
        return separator;
      }
    }
    line += '\n';
    return std::nullopt;
  };
  const RowComposer rows(cards, kCardColumns, add);
  return RowsExport(rows, form, file, observer).Write();
}

ExportResult WriteTextExport(const CardTable& cards, char separator, char card_separator, TextFileForm form,
                             WritableFile& file, const WorkObserver& observer) {
  const SideWriters sides = {SideWriter({separator, card_separator}, std::nullopt, form, form.pages.front),
                             SideWriter({separator, card_separator}, std::nullopt, form, form.pages.back)};
  const std::string behind_question = Outside({&separator, 1}, form) + '\n';
  const std::string behind_answer = Outside({&card_separator, 1}, form) + '\n';
  const auto add = [&](const auto& fields, std::string& text) -> std::optional<char> {
    const auto& [id, question, answer] = fields;
    bool fits = sides[0].Append(question, text);
    text += behind_question;
    fits = fits && sides[1].Append(answer, text);
    text += behind_answer;
    if (!fits) return SeparatorIn(sides, question, answer);
    return std::nullopt;
  };
  constexpr std::array kColumns = {kId, kQuestion, kAnswer};
  const RowComposer rows(cards, kColumns, add);
  return RowsExport(rows, form, file, observer).Write();
}

ExportResult ExportToFile(Disk& disk, const std::filesystem::path& path, const ExportWriter& write) {
  ExportResult result;
  const bool replaced = ReplaceFile(disk, path, [&](WritableFile& file) {
    result = write(file);
    return result.end == ExportEnd::Done || result.end == ExportEnd::UnfitSeparator;
  });
  if (!replaced && result.end != ExportEnd::Cancelled) result.end = ExportEnd::WriteFailed;
  return result;
}

std::filesystem::path WithTextEnding(const std::filesystem::path& path) {
  const std::string name = path.filename().string();
  const bool has = name.find(".txt") != std::string::npos || name.find(".TXT") != std::string::npos;
  return has ? path : std::filesystem::path(path.string() + ".txt");
}

}  // namespace tessaro
