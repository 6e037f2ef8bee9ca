#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

namespace tessaro {

// Asks for the help on this window or control, as F1 does there. Whoever gives help watches for the event.
inline void RequestHelp(QWidget& place) {
  QEvent request(QEvent::HelpRequest);
  QCoreApplication::sendEvent(&place, &request);
}

}  // namespace tessaro
