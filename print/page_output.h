#pragma once

#include <QPageLayout>
#include <QPageRanges>
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

// Puts the pages of these numbers on paper, all if there are none, on the whole sheet without regard to its margins.
// Asks `keep_going` before each page, with its place from 0 on.
OutputEnd PrintPages(QPagedPaintDevice& device, PrintedPages& pages, const QPageRanges& numbers,
                     const std::function<bool(int page)>& keep_going = {});

// The same into a PDF file. Unless it is done, a file that was there stays as it was.
OutputEnd WritePdf(const QString& path, const QPageLayout& page, PrintedPages& pages, const QString& title,
                   const std::function<bool(int page)>& keep_going = {});

}  // namespace tessaro
