#include "outlook/day_edit.h"

#include <QKeyEvent>
#include <utility>

namespace tessaro {

void DayEdit::keyPressEvent(QKeyEvent* event) {
  if (std::exchange(led_on_, false) && event->text() == QLatin1String(".")) return event->accept();
  const Section before = currentSection();
  const QString text = event->text();
  QDateEdit::keyPressEvent(event);
  led_on_ = !text.isEmpty() && text.front().isDigit() && currentSection() != before;
}

}  // namespace tessaro
