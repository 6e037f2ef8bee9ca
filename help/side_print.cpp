#include "help/side_print.h"

#include <QFontInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <functional>
#include <vector>

#include "widgets/htmlview.h"
#include "widgets/painter.h"
#include "widgets/picture_store.h"
#include "widgets/qt_measurer.h"
#include "widgets/text_cache.h"

namespace tessaro {
namespace {

struct Sheet {
  int top = 0;
  int bottom = 0;
};

// Cuts the side between its lines, whose parts come from the top down.
std::vector<Sheet> SheetsOf(const Layout& layout, int height) {
  std::vector<Sheet> sheets = {{}};
  for (const Fragment& fragment : layout.fragments) {
    const int bottom = fragment.rect.top + fragment.rect.height;
    if (bottom - sheets.back().top > height && fragment.rect.top > sheets.back().top) {
      sheets.back().bottom = fragment.rect.top;
      sheets.push_back({.top = fragment.rect.top});
    }
    sheets.back().bottom = std::max(sheets.back().bottom, bottom);
  }
  return sheets;
}

}  // namespace

bool PrintSide(QPrinter& printer, std::string_view side, const QFont& font) {
  QPainter painter;
  if (!painter.begin(&printer)) return false;
  // Laid out in pixels of the screen, in which letters are measured, and enlarged to those of the printer.
  const double scale = printer.resolution() / QGuiApplication::primaryScreen()->logicalDotsPerInchY();
  const QSize page = printer.pageLayout().paintRectPixels(printer.resolution()).size() / scale;
  TextCache texts;
  texts.SetFont(font);
  PictureStore pictures;
  const std::function<ColourClass(int64_t)> colours;
  QtMeasurer measurer(texts, pictures, colours, {page.width(), page.height()});
  const Layout layout = LayOut(side, {page.width(), page.height()}, QFontInfo(font).pointSize(), measurer);
  painter.scale(scale, scale);
  bool first = true;
  for (const Sheet& sheet : SheetsOf(layout, page.height())) {
    if (!first && !printer.newPage()) return false;
    first = false;
    painter.save();
    painter.translate(0, -sheet.top);
    const QRect shown(0, sheet.top, layout.size.width, sheet.bottom - sheet.top);
    painter.setClipRect(shown);
    PaintSide(painter, layout, shown, {font, Qt::black, Qt::white}, texts, pictures);
    painter.restore();
  }
  return painter.end();
}

}  // namespace tessaro
