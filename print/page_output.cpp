#include "print/page_output.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QScreen>
#include <climits>

#include "print/printed_pages.h"

namespace tessaro {
namespace {

constexpr int kPdfDots = 300;  // an inch, of pictures

double ScreenDots() {
  return QGuiApplication::primaryScreen()->logicalDotsPerInchY();
}

// Makes the page known; false: there is none.
bool Reach(PrintedPages& pages, int page) {
  while (pages.Count() <= page && pages.FindPage()) continue;
  return page < pages.Count();
}

}  // namespace

PixelSize PaperOf(const QPageLayout& page) {
  const QSizeF inches = page.fullRect(QPageLayout::Inch).size();
  return {qRound(inches.width() * ScreenDots()), qRound(inches.height() * ScreenDots())};
}

int PixelsOf(double millimetres) {
  constexpr double kMillimetresOfAnInch = 25.4;
  return qRound(millimetres / kMillimetresOfAnInch * ScreenDots());
}

OutputEnd PrintPages(QPagedPaintDevice& device, PrintedPages& pages, const QPageRanges& numbers,
                     const std::function<bool(int page)>& keep_going) {
  QPageLayout layout = device.pageLayout();
  layout.setMode(QPageLayout::FullPageMode);
  device.setPageLayout(layout);
  QPainter painter;
  if (!painter.begin(&device)) return OutputEnd::Failed;
  painter.scale(device.logicalDpiX() / ScreenDots(), device.logicalDpiY() / ScreenDots());
  const int last = numbers.isEmpty() ? INT_MAX : numbers.lastPage();
  bool begun = false;
  for (int page = 0; page < last && Reach(pages, page); ++page) {
    if (keep_going && !keep_going(page)) return OutputEnd::Cancelled;
    if (!numbers.isEmpty() && !numbers.contains(page + 1)) continue;
    if (begun && !device.newPage()) return OutputEnd::Failed;
    begun = true;
    pages.Paint(painter, page);
  }
  return painter.end() ? OutputEnd::Done : OutputEnd::Failed;
}

OutputEnd WritePdf(const QString& path, const QPageLayout& page, PrintedPages& pages, const QString& title,
                   const std::function<bool(int page)>& keep_going) {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly)) return OutputEnd::Failed;
  OutputEnd end = OutputEnd::Failed;
  {
    QPdfWriter writer(&file);
    writer.setResolution(kPdfDots);
    writer.setPageLayout(page);
    writer.setTitle(title);
    writer.setCreator(QGuiApplication::applicationName());
    end = PrintPages(writer, pages, {}, keep_going);
  }
  if (end != OutputEnd::Done) return end;
  return file.error() == QFileDevice::NoError && file.commit() ? OutputEnd::Done : OutputEnd::Failed;
}

}  // namespace tessaro
