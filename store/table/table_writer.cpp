#include "store/table/table_writer.h"

#include "platform/disk.h"
#include "platform/progress.h"
#include "store/table/table_scan.h"

namespace tessaro {
namespace {

constexpr size_t kBufferSize = size_t{256} * 1024;
// A shorter span is copied to the buffer, since a call of the system costs more than that.
constexpr size_t kLeastDirect = size_t{16} * 1024;

}  // namespace

TableWriter::TableWriter(WritableFile& file, char separator, const TableContent& content, Progress* progress)
    : file_(file),
      separator_(separator),
      content_(content),
      progress_(progress),
      line_end_(content.line_end == LineEnd::CrLf ? "\r\n" : "\n"),
      spans_fit_(separator == content.loaded_separator) {}

bool TableWriter::Write() {
  if (content_.columns.size() == 0) return true;
  buffer_.reserve(kBufferSize);
  AddHeader();
  for (int i = 0; i < content_.order.size(); ++i) {
    if (!WriteRow(content_.order.At(i))) return false;
    Count();
  }
  return WriteSpan() && WriteBuffer();
}

void TableWriter::AddHeader() {
  for (int column = 0; column < content_.columns.size(); ++column) {
    if (column > 0) buffer_ += separator_;
    buffer_ += content_.columns.Name(column);
  }
  buffer_ += line_end_;
  Count();
}

bool TableWriter::WriteRow(RowHandle row) {
  if (const RowStore::Value bytes = content_.rows.AsWritten(row); bytes && spans_fit_) {
    const size_t size = bytes->size() + line_end_.size();
    if (!span_.empty() && span_.data() + span_.size() == bytes->data()) {
      span_ = {span_.data(), span_.size() + size};
      return true;
    }
    if (!WriteSpan()) return false;
    span_ = {bytes->data(), size};
    return true;
  }
  if (!WriteSpan()) return false;
  AddFields(row);
  return buffer_.size() < kBufferSize || WriteBuffer();
}

void TableWriter::AddFields(RowHandle row) {
  for (int column = 0; column < content_.columns.size(); ++column) {
    if (column > 0) buffer_ += separator_;
    if (const RowStore::Value value = content_.rows.Get(row, column)) AddEscaped(*value);
  }
  buffer_ += line_end_;
}

void TableWriter::AddEscaped(std::string_view text) {
  for (size_t mark = 0; (mark = FindFirstMark(text, separator_)) < text.size(); text.remove_prefix(mark + 1)) {
    buffer_ += text.substr(0, mark);
    buffer_ += '\\';
    buffer_ += text[mark] == '\n' ? 'n' : text[mark];
  }
  buffer_ += text;
}

bool TableWriter::WriteSpan() {
  const std::string_view span = span_;
  span_ = {};
  if (span.size() < kLeastDirect) {
    buffer_ += span;
    return buffer_.size() < kBufferSize || WriteBuffer();
  }
  return WriteBuffer() && file_.Write(span);
}

bool TableWriter::WriteBuffer() {
  const bool written = buffer_.empty() || file_.Write(buffer_);
  buffer_.clear();
  return written;
}

void TableWriter::Count() {
  counted_ += content_.columns.size();
  if (progress_ != nullptr) progress_->SetPosition(counted_);
}

}  // namespace tessaro
