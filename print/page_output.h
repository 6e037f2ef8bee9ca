#pragma once

#include <QPageLayout>
#include <QString>
#include <functional>

#include "hypertext/layout.h"

class QPagedPaintDevice;

namespace tessaro {

class PrintedPages;

// The sheet of a page layout in pixels of the layout, in which letters are measured.
PixelSize PaperOf(const QPageLayout& page);
int PixelsOf(double millimetres);

enum class OutputEnd { Done, Cancelled, Failed };

// Pages counted from 1; `to` 0: to the end.
struct PageRange {
  int from = 1;
  int to = 0;
};

// Puts the pages on paper, on the whole sheet without regard to its margins. Asks `keep_going` before each page.
OutputEnd PrintPages(QPagedPaintDevice& device, PrintedPages& pages, const PageRange& range,
                     const std::function<bool(int page)>& keep_going = {});

// The same into a PDF file. Unless it is done, a file that was there stays as it was.
OutputEnd WritePdf(const QString& path, const QPageLayout& page, PrintedPages& pages, const QString& title,
                   const std::function<bool(int page)>& keep_going = {});

}  // namespace tessaro
