#include "help/help_desk.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QScrollArea>
#include <QTabWidget>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "help/wnhelp.h"
#include "widgets/messages.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

const QWidget* PageInFront(const QTabWidget& tabs) {
  const QWidget* page = tabs.currentWidget();
  const auto* scrolls = qobject_cast<const QScrollArea*>(page);
  return scrolls != nullptr ? scrolls->widget() : page;
}

// The names of a control and of all around it: its own, then its class. The page in front stands for a row of tabs.
std::vector<std::string> NamesAround(const QWidget* place) {
  std::vector<std::string> names;
  for (; place != nullptr; place = place->parentWidget()) {
    const auto* tabs = qobject_cast<const QTabWidget*>(place);
    const QWidget* page = tabs != nullptr ? PageInFront(*tabs) : nullptr;
    if (page != nullptr) names.push_back(page->objectName().toStdString());
    names.push_back(place->objectName().toStdString());
    const std::string kind = place->metaObject()->className();
    names.push_back(kind.substr(kind.rfind(':') + 1));
  }
  return names;
}

int CardOf(const HelpDeck& deck, const QWidget& place) {
  if (const auto* box = qobject_cast<const QMessageBox*>(place.window())) {
    const int card = deck.CardOfMessage(ToBytes(box->text()).value_or(""));
    if (card != 0) return card;
  }
  return deck.CardOfPlace(NamesAround(&place));
}

bool IsHelpKey(const QKeyEvent& key) {
  return key.key() == Qt::Key_F1 && (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier && !key.isAutoRepeat();
}

// A field that takes any key, to define it, or a control for which the key has a meaning of its own.
bool WantsKeyItself(QObject& control) {
  QKeyEvent question(QEvent::ShortcutOverride, Qt::Key_F1, Qt::NoModifier);
  question.ignore();
  QCoreApplication::sendEvent(&control, &question);
  return question.isAccepted();
}

}  // namespace

HelpDesk::HelpDesk(Disk& disk, std::filesystem::path deck, ProgramSettings& settings, Messages& messages)
    : disk_(disk), deck_(std::move(deck)), settings_(settings), messages_(messages) {
  qApp->installEventFilter(this);
}

HelpDesk::~HelpDesk() = default;

bool HelpDesk::eventFilter(QObject* watched, QEvent* event) {
  if (!watched->isWidgetType()) return false;
  const bool key = event->type() == QEvent::KeyPress && IsHelpKey(*static_cast<QKeyEvent*>(event));
  if (event->type() != QEvent::HelpRequest && (!key || WantsKeyItself(*watched))) return false;
  Open(*static_cast<QWidget*>(watched));
  return true;
}

void HelpDesk::Open(QWidget& place) {
  // A menu or a list that has dropped down would stay in front and keep all keys.
  while (QWidget* popup = QApplication::activePopupWidget()) {
    if (!popup->close()) break;
  }
  TF_wnhelp* window = Window(*place.window());
  if (window == nullptr) return;
  const int card = CardOf(window->deck(), place);
  // The frame of the card measures itself only while it is on the screen.
  window->Bring(QApplication::activeModalWidget());
  window->ShowCard(card != 0 ? card : window->deck().StartCard());
}

TF_wnhelp* HelpDesk::Window(QWidget& asker) {
  if (window_ != nullptr) return window_.get();
  std::optional<HelpDeck> deck = HelpDeck::Read(disk_, deck_);
  if (deck) {
    window_ = std::make_unique<TF_wnhelp>(*std::move(deck), settings_, messages_);
  } else if (deck_.empty()) {
    messages_.Error(&asker,
                    u"Die Hilfe (Hilfe.mlb) ist beim Programm nicht zu finden.\nInstallieren Sie Tessaro neu."_s);
  } else {
    messages_.Error(&asker, u"Die Hilfe ist beschädigt oder nicht lesbar:\n%1\nInstallieren Sie Tessaro neu."_s.arg(
                                FromPath(deck_)));
  }
  return window_.get();
}

}  // namespace tessaro
