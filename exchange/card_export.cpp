#include "exchange/card_export.h"

#include <array>
#include <string>
#include <string_view>

#include "exchange/blank_card.h"
#include "platform/disk.h"
#include "platform/utf8.h"
#include "store/file/safe_save.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr size_t kBufferSize = size_t{256} * 1024;

// Collects text and writes it in the form of the file.
class TextWriter {
 public:
  TextWriter(WritableFile& file, TextFileForm form) : file_(file), form_(form) { buffer_.reserve(kBufferSize * 2); }

  std::string& buffer() { return buffer_; }
  bool WriteFull() { return buffer_.size() < kBufferSize || Write(); }
  bool Write() {
    if (form_.cr_lf) buffer_ = WithCrLf(buffer_);
    const bool good = file_.Write(form_.utf8 ? Utf8FromCodePage(buffer_) : buffer_);
    buffer_.clear();
    return good;
  }

 private:
  static std::string WithCrLf(std::string_view text) {
    std::string lines;
    lines.reserve(text.size() + text.size() / 8);
    for (const char c : text) {
      if (c == '\n') lines += '\r';
      lines += c;
    }
    return lines;
  }

  WritableFile& file_;
  TextFileForm form_;
  std::string buffer_;
};

struct Side {
  std::string_view text;
  char quote;           // in place of a double quote; that itself for none
  bool line_feeds_too;  // line feeds are written as an escape
};

void Append(std::string& target, Side side) {
  size_t from = 0;
  for (size_t i = 0; i < side.text.size(); ++i) {
    const char c = side.text[i];
    if (c != '\\' && c != '\n' && c != '"') continue;
    if (c == '\n' && !side.line_feeds_too) continue;
    target.append(side.text, from, i - from);
    from = i + 1;
    if (c == '"') {
      target += side.quote;
    } else {
      target += '\\';
      target += c == '\n' ? 'n' : '\\';
    }
  }
  target.append(side.text, from);
}

bool Contains(std::string_view text, char c) {
  return text.find(c) != std::string_view::npos;
}

// The fields of a row in the order of the card columns.
using Fields = std::array<std::string_view, kCardColumns.size()>;

// Hands the rows to `add`, which puts one into the writer's text; it answers with a separator that the row holds, or
// with '\0'.
template <typename AddRow>
ExportResult WriteRows(const CardTable& cards, TextWriter& writer, const WorkObserver& observer, const AddRow& add) {
  std::array<int, kCardColumns.size()> columns = {};
  for (size_t i = 0; i < columns.size(); ++i) columns[i] = cards.ColumnIndex(kCardColumns[i]);
  ExportResult result;
  WorkWatch watch(observer, kTellEveryCards);
  Fields fields;
  for (int row = 1; row <= cards.RowCount(); ++row) {
    cards.PeekAll(row, columns, fields);
    if (fields[kIdAt].starts_with('#')) break;
    if (!watch.GoOn(result.cards)) return {ExportEnd::Cancelled, result.cards, '\0'};
    result.separator = add(fields);
    if (result.separator != '\0') {
      result.end = ExportEnd::UnfitSeparator;
      break;
    }
    ++result.cards;
    if (!writer.WriteFull()) return {ExportEnd::WriteFailed, result.cards, '\0'};
  }
  if (!writer.Write()) result.end = ExportEnd::WriteFailed;
  return result;
}

}  // namespace

ExportResult WriteTableExport(const CardTable& cards, char separator, char quote, TextFileForm form, WritableFile& file,
                              const WorkObserver& observer) {
  TextWriter writer(file, form);
  return WriteRows(cards, writer, observer, [&](const Fields& fields) {
    if (Contains(fields[kQuestionAt], separator) || Contains(fields[kAnswerAt], separator)) return separator;
    std::string& line = writer.buffer();
    for (size_t i = 0; i < fields.size(); ++i) {
      if (i > 0) line += separator;
      if (i == kQuestionAt || i == kAnswerAt) {
        Append(line, {fields[i], quote, true});
      } else {
        line += fields[i];
      }
    }
    line += '\n';
    return '\0';
  });
}

ExportResult WriteTextExport(const CardTable& cards, char separator, char card_separator, TextFileForm form,
                             WritableFile& file, const WorkObserver& observer) {
  TextWriter writer(file, form);
  return WriteRows(cards, writer, observer, [&](const Fields& fields) {
    for (const char unfit : {separator, card_separator}) {
      if (Contains(fields[kQuestionAt], unfit) || Contains(fields[kAnswerAt], unfit)) return unfit;
    }
    std::string& text = writer.buffer();
    Append(text, {fields[kQuestionAt], '"', false});
    text += separator;
    text += '\n';
    Append(text, {fields[kAnswerAt], '"', false});
    text += card_separator;
    text += '\n';
    return '\0';
  });
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
