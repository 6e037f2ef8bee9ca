#include "exchange/card_frame.h"

#include "store/table/card_columns.h"

namespace tessaro {

void AppendFrameRow(std::string& text, std::string_view mark) {
  text += mark;
  text.append(kCardColumns.size() - 1, kFieldSeparator);
}

std::string CardFileHead() {
  std::string head;
  for (const std::string_view name : kCardColumns) {
    if (!head.empty()) head += kFieldSeparator;
    head += name;
  }
  head += '\n';
  AppendFrameRow(head, kStartMark);
  return head + '\n';
}

}  // namespace tessaro
