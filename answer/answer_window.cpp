#include "answer/answer_window.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QToolButton>

#include "answer/verdict_field.h"
#include "settings/keys.h"
#include "widgets/help_request.h"
#include "widgets/icons.h"
#include "widgets/theme.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

// The screen that the place is on, or else the first one.
QRect ScreenOf(const KeptPlace& place) {
  const QScreen* screen = QGuiApplication::screenAt({place.x + place.width / 2, place.y + place.height / 2});
  if (screen == nullptr) screen = QGuiApplication::primaryScreen();
  return screen->availableGeometry();
}

// `frame` is what the desktop puts around a window.
KeptPlace OnScreen(KeptPlace place, const QSize& frame) {
  QRect screen = ScreenOf(place);
  screen.setSize(screen.size() - frame);
  place.x -= screen.x();
  place.y -= screen.y();
  place = PlaceWithin(place, screen.width(), screen.height());
  place.x += screen.x();
  place.y += screen.y();
  return place;
}

// The place in the size that the learner's letters need.
KeptPlace ForLettersOf(const IniFile& settings, KeptPlace place) {
  const auto percent = static_cast<int>(keys::kTextPercent.Read(settings));
  place.width = place.width * percent / 100;
  place.height = place.height * percent / 100;
  return place;
}

}  // namespace

AnswerWindow::AnswerWindow(const AnswerSurroundings& around, std::string_view suffix, const KeptPlace& first_place)
    : around_(around), suffix_(suffix), first_place_(first_place) {
  // Under the card it leaves the room to the card.
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
}

void AnswerWindow::DressHeader(QLabel& title, QToolButton& floats, QToolButton& closes, QToolButton& helps) {
  floats_ = &floats;
  MakeQuiet(title);
  closes.setIcon(Icon("close"));
  helps.setIcon(Icon("help"));
  floats.setIcon(Icon("float"));
  for (QToolButton* button : {&floats, &closes, &helps}) button->setToolButtonStyle(Qt::ToolButtonIconOnly);
  connect(&closes, &QAbstractButton::clicked, this, &AnswerWindow::CloseWanted);
  connect(&floats, &QAbstractButton::clicked, this, [this] { Q_EMIT FloatWanted(!IsFloating()); });
  connect(&helps, &QAbstractButton::clicked, this, [this] { RequestHelp(*this); });
}

void AnswerWindow::WatchKeys() {
  installEventFilter(this);
  for (QWidget* control : findChildren<QWidget*>()) control->installEventFilter(this);
}

void AnswerWindow::Float(QWidget& owner) {
  const IniFile& settings = around_.settings.ini;
  const KeptPlace place = OnScreen(ReadPlace(settings, suffix_, ForLettersOf(settings, first_place_)),
                                   owner.frameGeometry().size() - owner.size());
  setParent(&owner, Qt::Tool);
  // A window that the system has already would be moved as if it had no frame.
  destroy();
  resize(place.width, place.height);
  move(place.x, place.y);
  floats_->setToolTip(u"Unter die Karte setzen"_s);
  show();
}

void AnswerWindow::BeDocked() {
  floats_->setToolTip(u"Als eigenes Fenster zeigen"_s);
  show();
}

void AnswerWindow::KeepPlace() {
  if (!IsFloating()) return;
  WritePlace({.x = x(), .y = y(), .width = width(), .height = height()}, suffix_, around_.settings.ini);
}

bool AnswerWindow::Asks() const {
  const CardOnScreen card = around_.learning.Card();
  return card.row != 0 && !card.navigation && card.open;
}

void AnswerWindow::Register(bool known) {
  if (around_.gate.Result() != AnswerModeResult::None) {
    around_.gate.SetResult(known ? AnswerModeResult::Known : AnswerModeResult::NotKnown);
  }
  known ? around_.learning.Known() : around_.learning.NotKnown();
}

void AnswerWindow::FocusOn(QWidget& control) {
  window()->activateWindow();
  control.setFocus();
}

bool AnswerWindow::IsLearningKey(const QKeyEvent& event) const {
  const QKeyCombination pressed(event.modifiers() & ~Qt::KeypadModifier, static_cast<Qt::Key>(event.key()));
  const QKeyCombination as_it_is(event.modifiers(), static_cast<Qt::Key>(event.key()));
  return learning_keys_.contains(QKeySequence(pressed)) || learning_keys_.contains(QKeySequence(as_it_is));
}

bool AnswerWindow::eventFilter(QObject* watched, QEvent* event) {
  if (auto* field = qobject_cast<QLineEdit*>(watched); field != nullptr && event->type() == QEvent::Resize) {
    DressVerdict(*field);
  }
  if (event->type() == QEvent::ShortcutOverride) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (!IsLearningKey(key)) return QWidget::eventFilter(watched, event);
    event->setAccepted(!LeaveToLearning(key));
    return true;
  }
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  auto& key = *static_cast<QKeyEvent*>(event);
  if (KeyPressed(key)) return true;
  if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter) return QWidget::eventFilter(watched, event);
  if (auto* button = qobject_cast<QAbstractButton*>(watched); button != nullptr && !key.isAutoRepeat()) button->click();
  return true;
}

void AnswerWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  Q_EMIT CloseWanted();
}

void AnswerWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) DressVerdictFields(*this);
}

}  // namespace tessaro
