#pragma once

#include <QLabel>

namespace tessaro {

// A line of plain text that takes the room it is given and ends in "…" where that is too little. Its tooltip then has
// the whole of it.
class ElidedLabel : public QLabel {
  Q_OBJECT

 public:
  explicit ElidedLabel(QWidget* parent = nullptr);
  // As it is painted now.
  QString ShownText() const;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;
};

}  // namespace tessaro
