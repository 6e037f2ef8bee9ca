// Linked into a program with windows, this tells on its output when they have been painted, and then ends it. Given a
// card file as its last argument, it waits for the window that bears its name, unless WATCH_FIRST_PAINT is set.
#include <unistd.h>

#include <QApplication>
#include <QFileInfo>
#include <QWidget>

namespace {

class StartWatch : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && watched->isWidgetType()) Painted(*static_cast<QWidget*>(watched)->window());
    return false;
  }

 protected:
  void customEvent(QEvent* /*event*/) override {
    if (write(STDOUT_FILENO, "painted\n", 8) == 8) QApplication::quit();
  }

 private:
  // A part of the window may be painted before the rest: what is posted with so low a priority comes after all of it.
  // The first frame is on the screen when the event that painted it has ended, and before what else waits.
  void Painted(const QWidget& window) {
    const QFileInfo last(QApplication::arguments().constLast());
    const bool first = qEnvironmentVariableIsSet("WATCH_FIRST_PAINT");
    const bool waits = last.suffix() == QStringLiteral("mlb") && !first;
    if (told_ || (waits && !window.windowTitle().startsWith(last.fileName()))) return;
    told_ = true;
    QCoreApplication::postEvent(this, new QEvent(QEvent::User),
                                first ? Qt::HighEventPriority : Qt::LowEventPriority - 1);
  }

  bool told_ = false;
};

void Watch() {
  qApp->installEventFilter(new StartWatch(qApp));
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(Watch)
