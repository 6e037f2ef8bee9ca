#pragma once

#include <QImage>
#include <QWidget>

namespace tessaro {

// Shows the frames of a video, as large as they fit in their proportions.
class VideoScreen : public QWidget {
  Q_OBJECT

 public:
  explicit VideoScreen(QWidget* parent = nullptr);
  // Until the next frame. A null image goes black.
  void ShowFrame(const QImage& frame);
  // Goes black.
  void Clear();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QImage frame_;
};

}  // namespace tessaro
