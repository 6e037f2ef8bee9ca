#pragma once

#include <QDateEdit>

namespace tessaro {

// A date that may be typed with its points or without them. Two digits lead on to the next part by themselves; in a
// plain QDateEdit the point typed behind them would leave that part out.
class DayEdit : public QDateEdit {
  Q_OBJECT
 public:
  using QDateEdit::QDateEdit;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  bool led_on_ = false;  // by the last key
};

}  // namespace tessaro
