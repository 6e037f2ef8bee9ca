#pragma once

#include <QLineEdit>
#include <cstdint>

namespace tessaro {

// A field that takes the key pressed in it. Tab, Shift+Tab and Escape keep their meaning in the dialog.
class HotKeyEdit : public QLineEdit {
  Q_OBJECT

 public:
  explicit HotKeyEdit(QWidget* parent = nullptr);

  // The stored form of the key (see shortcut_code.h).
  int64_t code() const { return code_; }
  void SetCode(int64_t code);

 Q_SIGNALS:
  void KeyTaken();
  // The key pressed cannot be a shortcut, perhaps because the program needs it; the field keeps the one it had.
  void KeyRefused(bool needed);

 protected:
  bool event(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  int64_t code_ = 0;
};

}  // namespace tessaro
