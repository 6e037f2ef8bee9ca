#include "widgets/scroll_pages.h"

#include <QDialog>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabWidget>

namespace tessaro {
namespace {

constexpr QSize kRoomForFrame = {16, 72};

// As wide as its page at least, which only scrolls up and down.
class PageScroll : public QScrollArea {
 public:
  explicit PageScroll(QWidget* page) {
    setWidget(page);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    page->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
  }
  QSize sizeHint() const override {
    const QSize hint = widget()->sizeHint();
    const int height = widget()->hasHeightForWidth() ? widget()->heightForWidth(hint.width()) : 0;
    return {hint.width() + verticalScrollBar()->sizeHint().width(), std::max(hint.height(), height)};
  }
  QSize minimumSizeHint() const override {
    const int least = 5 * fontMetrics().height();
    return {widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width(), least};
  }
};

}  // namespace

void LetPagesScroll(QTabWidget& pages) {
  const int current = pages.currentIndex();
  for (int i = 0; i < pages.count(); ++i) {
    const QString title = pages.tabText(i);
    QWidget* page = pages.widget(i);
    pages.removeTab(i);
    pages.insertTab(i, new PageScroll(page), title);
    page->show();
  }
  pages.setCurrentIndex(current);
}

void FitToScreen(QDialog& dialog) {
  const QWidget* parent = dialog.parentWidget();
  const QScreen* screen = parent != nullptr ? parent->screen() : dialog.screen();
  const QSize room = screen->availableGeometry().size() - kRoomForFrame;
  dialog.resize(dialog.sizeHint().expandedTo(dialog.size()).boundedTo(room));
}

}  // namespace tessaro
