#pragma once

#include <QPainter>
#include <QPixmap>
#include <QVBoxLayout>
#include <QWidget>

namespace tessaro {

// The paper is in line with the frames of the buttons below, which keep room for their focus ring.
inline constexpr int kPaperEdge = 3;

// The sheet of paper that a page is: the same in a light and a dark desktop.
class PaperPage : public QWidget {
 public:
  // Takes the content; the margin in pixels.
  PaperPage(QWidget* content, int margin) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kPaperEdge + margin, margin, kPaperEdge + margin, margin);
    layout->addWidget(content);
  }
  void SetPaper(const QColor& paper) {
    paper_ = paper;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    constexpr qreal kRadius = 6;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor edge = palette().color(QPalette::WindowText);
    edge.setAlphaF(0.25F);
    painter.setPen(edge);
    painter.setBrush(paper_);
    painter.drawRoundedRect(QRectF(rect()).adjusted(kPaperEdge + 0.5, 0.5, -kPaperEdge - 0.5, -0.5), kRadius, kRadius);
  }

 private:
  QColor paper_ = Qt::white;
};

// A picture in the middle of its page, made smaller where it does not fit, never larger.
class PictureView : public QWidget {
 public:
  // Until the next one; null shows none.
  void SetPicture(const QPixmap& picture) {
    picture_ = picture;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    if (picture_.isNull()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const bool fits = picture_.width() <= width() && picture_.height() <= height();
    QRect place(QPoint(0, 0), fits ? picture_.size() : picture_.size().scaled(size(), Qt::KeepAspectRatio));
    place.moveCenter(rect().center());
    painter.drawPixmap(place, picture_);
  }

 private:
  QPixmap picture_;
};

}  // namespace tessaro
