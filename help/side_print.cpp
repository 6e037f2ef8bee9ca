#include "help/side_print.h"

#include "print/page_output.h"
#include "print/printed_pages.h"

namespace tessaro {

bool PrintSide(QPrinter& printer, std::string_view side, const QFont& font) {
  const SideLook look = {font, Qt::black, Qt::white};
  PrintOrder order = {.form = PrintForm::Large, .sides = PrintSides::Fronts, .most_percent = 100};
  order.paper = PaperOf(printer.pageLayout());
  order.margin = PixelsOf(printer.pageLayout().margins(QPageLayout::Millimeter).left());
  PrintedPages pages({.cards = 1, .side = [side](int, SideName) { return side; }, .front = look, .back = look}, order);
  return PrintPages(printer, pages, {}) == OutputEnd::Done;
}

}  // namespace tessaro
