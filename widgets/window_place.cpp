#include "widgets/window_place.h"

#include <QApplication>
#include <QLayout>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>

#include "settings/kept_place.h"

namespace tessaro {
namespace {

// The screen that the place was on may be gone.
QRect ScreenAround(const QRect& place) {
  const QScreen* screen = QGuiApplication::screenAt(place.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? screen->availableGeometry() : place;
}

}  // namespace

void RestoreWindowPlace(QWidget& window, const IniFile& settings, std::string_view suffix) {
  const KeptPlace kept = ReadPlace(settings, suffix, {.width = window.width(), .height = window.height()});
  QRect place(kept.x, kept.y, kept.width, kept.height);
  bool placed = HasPlace(settings, suffix);
  const QWidget* active = QApplication::activeWindow();
  // The window's own frame is not known yet; another one of the program has the same.
  const QSize frame = active != nullptr ? active->frameGeometry().size() - active->size() : QSize(0, 0);
  if (!placed && active != nullptr && active != &window) {
    place.moveCenter(active->frameGeometry().center());
    placed = true;
  }
  const QRect screen = ScreenAround(place);
  place.setSize(place.size().boundedTo(screen.size() - frame).expandedTo(window.minimumSize()));
  window.resize(place.size());
  if (placed) {
    const QSize whole = place.size() + frame;
    const QPoint corner(std::max(screen.left(), std::min(place.left(), screen.right() + 1 - whole.width())),
                        std::max(screen.top(), std::min(place.top(), screen.bottom() + 1 - whole.height())));
    window.move(corner);
    // While a window is being shown for the first time its frame is unknown, and what moves then is the place inside of
    // it: the title bar would come to stand above the corner, and go up with each showing.
    if (window.windowHandle() != nullptr) window.windowHandle()->setFramePosition(corner);
  }
  if (kept.maximised) window.setWindowState(window.windowState() | Qt::WindowMaximized);
}

void RestorePlaceAside(QWidget& window, const IniFile& settings, std::string_view suffix) {
  RestoreWindowPlace(window, settings, suffix);
  const QWidget* parent = window.parentWidget();
  if (HasPlace(settings, suffix) || parent == nullptr || !parent->isVisible()) return;
  constexpr QPoint kInside(24, 48);
  window.move(parent->geometry().bottomRight() - window.rect().bottomRight() - kInside);
}

void KeepWindowPlace(const QWidget& window, IniFile& settings, std::string_view suffix) {
  const bool maximised = window.isMaximized();
  const QRect inside = maximised ? window.normalGeometry() : window.geometry();
  const QPoint corner = maximised ? inside.topLeft() : window.pos();
  WritePlace(
      {.x = corner.x(), .y = corner.y(), .width = inside.width(), .height = inside.height(), .maximised = maximised},
      suffix, settings);
}

void GrowToContent(QWidget& window) {
  QLayout& layout = *window.layout();
  layout.activate();
  const int width = std::max(window.width(), layout.totalMinimumSize().width());
  const int height = layout.hasHeightForWidth() ? layout.totalHeightForWidth(width) : layout.totalSizeHint().height();
  window.resize(width, std::max(window.height(), height));
}

}  // namespace tessaro
