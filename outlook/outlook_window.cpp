#include "outlook/outlook_window.h"

#include <QCloseEvent>
#include <QShortcut>
#include <utility>

#include "outlook/card_lines.h"
#include "outlook/dlkarten.h"
#include "outlook/outlook_page.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int kCardsAtOnce = 200;

}  // namespace

OutlookWindow::OutlookWindow(const CardFile& file, ProgramSettings& settings, const Clock& clock,
                             std::string_view place_suffix)
    : QWidget(nullptr, Qt::Window),
      file_(file),
      settings_(settings),
      clock_(clock),
      work_(clock, this),
      place_suffix_(place_suffix) {
  const auto on = [this](const QKeySequence& keys, auto act) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, act);
  };
  on(Qt::Key_F5, [this] { Renew(); });
  on(Qt::Key_Escape, [this] { close(); });
  on(Qt::CTRL | Qt::Key_T, [this] { CurrentPage().ToggleTable(); });
}

OutlookWindow::~OutlookWindow() {
  delete list_;
}

void OutlookWindow::TiePage(OutlookPage& page) {
  connect(&page, &OutlookPage::CardsWanted, this, &OutlookWindow::OpenCards);
}

void OutlookWindow::Renew() {
  deck_is_read_ = false;
  rows_ = file_.cards().RowCount();
  delete list_;
  setWindowTitle(u"%1: %2"_s.arg(windowTitle().section(u':', 0, 0), FromPath(file_.paths().cards.filename())));
  CurrentPage().ShowWaiting();
  work_.Count<OutlookReading>(OutlookReading(file_, clock_.Now(), days_), kCardsAtOnce,
                              [this](OutlookReading& reading) {
                                deck_ = reading.Take();
                                deck_is_read_ = true;
                                DeckRead();
                              });
}

void OutlookWindow::OpenCards(const QString& title, const std::vector<int>& rows) {
  // Rows that came, went or moved make the figures worthless.
  if (RowsChanged()) return Renew();
  if (list_ == nullptr) list_ = new TF_dlkarten(file_, this);
  list_->Show(title, LinesOf(file_, deck_, Parameters(), rows), deck_.now, edit_);
}

void OutlookWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ActivationChange && isActiveWindow() && rows_ >= 0 && RowsChanged()) Renew();
  QWidget::changeEvent(event);
}

void OutlookWindow::showEvent(QShowEvent* event) {
  if (rows_ < 0) RestoreWindowPlace(*this, settings_.ini, place_suffix_);
  QWidget::showEvent(event);
}

void OutlookWindow::closeEvent(QCloseEvent* event) {
  work_.Stop();
  KeepWindowPlace(*this, settings_.ini, place_suffix_);
  QWidget::closeEvent(event);
  Q_EMIT Closed();
}

}  // namespace tessaro
