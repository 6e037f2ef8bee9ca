#include "outlook/outlook_window.h"

#include <QCloseEvent>
#include <QScreen>
#include <QShortcut>
#include <QTabBar>
#include <algorithm>
#include <utility>

#include "outlook/dlkarten.h"
#include "outlook/outlook_page.h"
#include "widgets/messages.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int kAroundTabs = 40;
constexpr int kReadDelay = 300;  // milliseconds: changes come in rows

}  // namespace

OutlookWindow::OutlookWindow(CardFile& file, ProgramSettings& settings, const Clock& clock,
                             std::string_view place_suffix)
    : QWidget(nullptr, Qt::Window),
      file_(file),
      settings_(settings),
      clock_(clock),
      work_(clock, this),
      watch_(std::in_place, file.watchers(), static_cast<CardWatcher&>(*this)),
      place_suffix_(place_suffix) {
  read_later_.setSingleShot(true);
  read_later_.setInterval(kReadDelay);
  connect(&read_later_, &QTimer::timeout, this, &OutlookWindow::Read);
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
  pages_.push_back(&page);
  connect(&page, &OutlookPage::CardsWanted, this, &OutlookWindow::OpenCards);
  connect(&page, &OutlookPage::CardWanted, this, &OutlookWindow::OpenCard);
}

void OutlookWindow::Renew() {
  delete list_;
  Read();
}

void OutlookWindow::Read() {
  read_later_.stop();
  deck_is_read_ = false;
  setWindowTitle(u"%1: %2"_s.arg(windowTitle().section(u':', 0, 0), FromPath(file_.paths().cards.filename())));
  CurrentPage().ShowWaiting();
  work_.Count<OutlookReading>(OutlookReading(file_, clock_.Now(), days_), [this](OutlookReading& reading) {
    deck_ = std::make_shared<const DeckOutlook>(reading.Take());
    deck_is_read_ = true;
    DeckRead();
  });
}

void OutlookWindow::OpenCards(const QString& title, const std::vector<int>& rows) {
  if (list_ == nullptr) list_ = new TF_dlkarten(file_, this);
  list_->Show(title, Lines(rows), edit_);
}

CardLines OutlookWindow::Lines(const std::vector<int>& rows) const {
  return CardLines(file_, deck_, Parameters(), rows);
}

void OutlookWindow::OpenCard(const QString& title, int row) {
  edit_ ? edit_(row) : OpenCards(title, {row});
}

// The rows behind the figures are others now, and what is being counted goes by rows too.
void OutlookWindow::RowsShifted(const RowShift& /*shift*/) {
  work_.Stop();
  deck_is_read_ = false;
  for (OutlookPage* page : pages_) page->ForgetCards();
  read_later_.start();
}

void OutlookWindow::CardsChanged(std::span<const int> /*rows*/, std::span<const int> /*columns*/) {
  read_later_.start();
}

void OutlookWindow::showEvent(QShowEvent* event) {
  if (!std::exchange(placed_, true)) {
    // All tabs are to be read, in large letters too; what the learner made of the window counts more.
    const int tabs = findChild<QTabBar*>()->sizeHint().width() + kAroundTabs;
    resize(std::max(width(), std::min(tabs, screen()->availableGeometry().width())), height());
    RestoreWindowPlace(*this, settings_.ini, place_suffix_);
  }
  QWidget::showEvent(event);
}

void OutlookWindow::closeEvent(QCloseEvent* event) {
  if (HasOpenDialog(*this)) return event->ignore();
  read_later_.stop();
  work_.Stop();
  delete list_;
  watch_.reset();
  KeepWindowPlace(*this, settings_.ini, place_suffix_);
  QWidget::closeEvent(event);
  Q_EMIT Closed();
}

}  // namespace tessaro
