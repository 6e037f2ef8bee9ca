#include "print/page_view.h"

#include <QPainter>
#include <algorithm>

namespace tessaro {
namespace {

constexpr int kAround = 8;  // free around the paper
constexpr int kLeastWidth = 240;

}  // namespace

PageView::PageView(QWidget* parent) : QWidget(parent) {
  setMinimumSize(kLeastWidth, kLeastWidth);
}

QSize PageView::sizeHint() const {
  return {kLeastWidth * 2, kLeastWidth * 2};
}

void PageView::ShowPages(PrintedPages* pages) {
  pages_ = pages;
  page_ = 0;
  if (pages != nullptr) pages->SetPictureObserver([this] { update(); });
  FitHeight();
  update();
}

void PageView::ShowPage(int page) {
  page_ = page;
  update();
}

void PageView::SetWide(bool wide) {
  wide_ = wide;
  FitHeight();
  update();
}

PixelSize PageView::Paper() const {
  return pages_ == nullptr ? PixelSize() : pages_->order().paper;
}

void PageView::FitHeight() {
  const PixelSize paper = Paper();
  const bool grows = wide_ && paper.width > 0;
  setMinimumHeight(grows ? (width() - 2 * kAround) * paper.height / paper.width + 2 * kAround : kLeastWidth);
}

void PageView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  FitHeight();
}

void PageView::paintEvent(QPaintEvent* /*event*/) {
  const PixelSize paper = Paper();
  if (pages_ == nullptr || page_ >= pages_->Count() || paper.width == 0) return;
  QPainter painter(this);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  const double scale = std::min((width() - 2.0 * kAround) / paper.width, (height() - 2.0 * kAround) / paper.height);
  painter.translate((width() - paper.width * scale) / 2, (height() - paper.height * scale) / 2);
  painter.scale(scale, scale);
  const QRect sheet(0, 0, paper.width, paper.height);
  painter.fillRect(sheet.translated(2, 3), QColor(0, 0, 0, 60));
  painter.fillRect(sheet, Qt::white);
  painter.setClipRect(sheet);
  pages_->Paint(painter, page_);
}

}  // namespace tessaro
