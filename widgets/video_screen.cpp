#include "widgets/video_screen.h"

#include <QPainter>

namespace tessaro {

VideoScreen::VideoScreen(QWidget* parent) : QWidget(parent) {
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void VideoScreen::ShowFrame(const QImage& frame) {
  frame_ = frame;
  update();
}

void VideoScreen::Clear() {
  ShowFrame(QImage());
}

void VideoScreen::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::black);
  if (frame_.isNull()) return;
  QRect place(QPoint(), frame_.size().scaled(size(), Qt::KeepAspectRatio));
  place.moveCenter(rect().center());
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(place, frame_);
}

}  // namespace tessaro
