#include "widgets/window_place.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <string>

#include "store/file/ini_file.h"

namespace tessaro {
namespace {

constexpr std::string_view kSection = "POS";

std::string Key(std::string_view name, std::string_view suffix) {
  return std::string(name).append(suffix);
}

int Read(const IniFile& settings, std::string_view name, std::string_view suffix, int fallback) {
  constexpr int64_t kBeyondAnyScreen = 100000;
  return static_cast<int>(
      std::clamp(settings.GetInt(kSection, Key(name, suffix), fallback), -kBeyondAnyScreen, kBeyondAnyScreen));
}

// The screen that the place was on may be gone.
QRect ScreenAround(const QRect& place) {
  const QScreen* screen = QGuiApplication::screenAt(place.center());
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  return screen != nullptr ? screen->availableGeometry() : place;
}

}  // namespace

void RestoreWindowPlace(QWidget& window, const IniFile& settings, std::string_view suffix) {
  QRect place(Read(settings, "x", suffix, 0), Read(settings, "y", suffix, 0),
              Read(settings, "cx", suffix, window.width()), Read(settings, "cy", suffix, window.height()));
  bool placed = settings.Has(kSection, Key("x", suffix)) && settings.Has(kSection, Key("y", suffix));
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
  if (Read(settings, "max", suffix, 0) == 1) window.setWindowState(window.windowState() | Qt::WindowMaximized);
}

void KeepWindowPlace(const QWidget& window, IniFile& settings, std::string_view suffix) {
  const bool maximised = window.isMaximized();
  const QRect inside = maximised ? window.normalGeometry() : window.geometry();
  const QPoint corner = maximised ? inside.topLeft() : window.pos();
  settings.SetInt(kSection, Key("x", suffix), corner.x());
  settings.SetInt(kSection, Key("y", suffix), corner.y());
  settings.SetInt(kSection, Key("cx", suffix), inside.width());
  settings.SetInt(kSection, Key("cy", suffix), inside.height());
  if (maximised || settings.Has(kSection, Key("max", suffix))) {
    settings.SetInt(kSection, Key("max", suffix), maximised ? 1 : 0);
  }
}

}  // namespace tessaro
