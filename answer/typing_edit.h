#pragma once

#include <QPlainTextEdit>

namespace tessaro {

// The input of the typing training: it is written at its end only, key by key. Nothing can be pasted or dropped, and a
// key that is held down writes once.
class TypingEdit : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit TypingEdit(QWidget* parent = nullptr);

  // Takes `text` in place of what stands there, without a word to anyone.
  void Replace(const QString& text);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

  // What a key writes or takes back. Other keys do nothing.
  void Type(QKeyEvent& event);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* /*event*/) override {}
  void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
  bool canInsertFromMimeData(const QMimeData* /*source*/) const override { return false; }
  void insertFromMimeData(const QMimeData* /*source*/) override {}
};

}  // namespace tessaro
