#include "help/wnhelp.h"

#include <QCloseEvent>
#include <QPrintDialog>
#include <QShortcut>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "help/side_print.h"
#include "settings/kept_place.h"
#include "ui_wnhelp.h"
#include "widgets/card_pages.h"
#include "widgets/icons.h"
#include "widgets/messages.h"
#include "widgets/side_look.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int kNumberRole = Qt::UserRole;
constexpr int kLettersInList = 38;
constexpr int kListSpacing = 2;
constexpr int kPrintPoints = 11;     // however large the letters on the screen are
constexpr double kPrintMargin = 20;  // millimetres

// A little larger than the texts of windows, as the paper is read from further away.
QFont CardFont() {
  QFont font = QApplication::font();
  font.setPointSizeF(QFontInfo(font).pointSizeF() * 1.2);
  return font;
}

SideLook Look() {
  SideLook look = LookOf(SideSettings());
  look.font = CardFont();
  return look;
}

}  // namespace

TF_wnhelp::TF_wnhelp(HelpDeck deck, ProgramSettings& settings, Messages& messages)
    : QWidget(nullptr, Qt::Window),
      ui_(std::make_unique<Ui::TF_wnhelp>()),
      deck_(std::move(deck)),
      settings_(settings),
      messages_(messages) {
  ui_->setupUi(this);
  pages_ = ui_->Karte;
  setAttribute(Qt::WA_QuitOnClose, false);
  pages_->KeepViewIn(settings_.ini);
  DressButtons();
  MakeKeys();
  ui_->EditSuche->installEventFilter(this);
  const int list_width = fontMetrics().averageCharWidth() * kLettersInList;
  ui_->ListKarten->setSpacing(kListSpacing);
  ui_->Teiler->setStretchFactor(1, 1);
  ui_->Teiler->setSizes({list_width, std::max(width() - list_width, list_width)});
  connect(pages_, &CardPages::LinkClicked, this, &TF_wnhelp::ShowCard);
  connect(ui_->EditSuche, &QLineEdit::textChanged, this, &TF_wnhelp::FillList);
  connect(ui_->ListKarten, &QListWidget::itemClicked, this, &TF_wnhelp::OpenEntry);
  connect(ui_->ListKarten, &QListWidget::itemActivated, this, &TF_wnhelp::OpenEntry);
  FillList();
  RestoreWindowPlace(*this, settings_.ini, place_suffix::kHelp);
}

TF_wnhelp::~TF_wnhelp() = default;

void TF_wnhelp::DressButtons() {
  const auto dress = [this](QToolButton* button, const char* icon, auto act) {
    button->setIcon(Icon(icon));
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setAutoRaise(true);
    connect(button, &QAbstractButton::clicked, this, act);
  };
  dress(ui_->BtBack, "back", &TF_wnhelp::BtBackClick);
  dress(ui_->BtHome, "home", [this] { ShowCard(deck_.StartCard()); });
  dress(ui_->BtIndex, "index", [this] { ShowCard(deck_.IndexCard()); });
  dress(ui_->BtPrint, "print", &TF_wnhelp::BtPrintClick);
}

void TF_wnhelp::MakeKeys() {
  const auto on = [this](const QKeySequence& keys, auto act) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, act);
  };
  on(Qt::ALT | Qt::Key_Left, [this] { BtBackClick(); });
  on(Qt::ALT | Qt::Key_Home, [this] { ShowCard(deck_.StartCard()); });
  on(Qt::CTRL | Qt::Key_I, [this] { ShowCard(deck_.IndexCard()); });
  on(Qt::CTRL | Qt::Key_F, [this] {
    ui_->EditSuche->setFocus();
    ui_->EditSuche->selectAll();
  });
  on(Qt::CTRL | Qt::Key_P, [this] { BtPrintClick(); });
  on(Qt::Key_Escape, [this] { close(); });
}

void TF_wnhelp::ShowCard(int64_t number) {
  if (deck_.Card(number) == nullptr || number == shown_) return;
  back_.Push(shown_);
  Show(static_cast<int>(number));
}

void TF_wnhelp::Show(int number) {
  shown_ = number;
  const HelpCard& card = *deck_.Card(number);
  setWindowTitle(u"Hilfe: %1"_s.arg(FromBytes(card.title)));
  pages_->ShowSide(card.side, Look());
  ui_->BtBack->setEnabled(!back_.Empty());
  MarkShown();
}

void TF_wnhelp::Bring(const QWidget* dialog) {
  ui_->EditSuche->clear();
  (void)winId();  // its window on the screen is made
  QWindow* owner = dialog != nullptr ? dialog->windowHandle() : nullptr;
  if (windowHandle()->transientParent() != owner && !IsMine(dialog)) {
    // The desktop is told whom a window belongs to when it is shown.
    hide();
    windowHandle()->setTransientParent(owner);
  }
  if (isMinimized()) showNormal();
  show();
  raise();
  activateWindow();
  pages_->findChild<TFrameHtml*>()->setFocus();
}

bool TF_wnhelp::IsMine(const QWidget* dialog) const {
  while (dialog != nullptr && dialog != this) dialog = dialog->parentWidget();
  return dialog == this;
}

void TF_wnhelp::BtBackClick() {
  if (!back_.Empty()) Show(static_cast<int>(back_.Pop()));
}

void TF_wnhelp::BtPrintClick() {
  QPrinter printer(QPrinter::HighResolution);
  printer.setDocName(windowTitle());
  printer.setPageMargins({kPrintMargin, kPrintMargin, kPrintMargin, kPrintMargin}, QPageLayout::Millimeter);
  QPrintDialog dialog(&printer, this);
  if (dialog.exec() != QDialog::Accepted) return;
  const QFont font(QApplication::font().family(), kPrintPoints);
  if (!PrintSide(printer, deck_.Card(shown_)->side, font)) messages_.Error(this, u"Drucken ist nicht möglich."_s);
}

void TF_wnhelp::FillList() {
  const QString wanted = ui_->EditSuche->text().simplified();
  ui_->ListKarten->clear();
  if (!wanted.isEmpty()) return ListFound(wanted);
  ListChapters();
  MarkShown();
}

void TF_wnhelp::ListChapters() {
  for (const HelpChapter& chapter : deck_.Chapters()) {
    if (!chapter.name.empty()) AddHeading(FromBytes(chapter.name));
    for (const int number : chapter.cards) AddEntry(number);
  }
}

void TF_wnhelp::ListFound(const QString& wanted) {
  const std::optional<std::string> bytes = ToBytes(wanted);
  const std::vector<int> found = bytes ? deck_.Search(*bytes) : std::vector<int>();
  if (found.empty()) AddHeading(u"Nichts gefunden"_s);
  for (const int number : found) AddEntry(number);
}

void TF_wnhelp::AddEntry(int number) {
  auto* entry = new QListWidgetItem(FromBytes(deck_.Card(number)->title), ui_->ListKarten);
  entry->setData(kNumberRole, number);
  entry->setToolTip(entry->text());
}

void TF_wnhelp::AddHeading(const QString& text) {
  auto* heading = new QListWidgetItem(text, ui_->ListKarten);
  heading->setFlags(Qt::NoItemFlags);
  heading->setForeground(palette().windowText());
  QFont font = ui_->ListKarten->font();
  font.setBold(true);
  heading->setFont(font);
}

void TF_wnhelp::MarkShown() {
  ui_->ListKarten->setCurrentItem(nullptr);
  for (int row = 0; row < ui_->ListKarten->count(); ++row) {
    if (ui_->ListKarten->item(row)->data(kNumberRole).toInt() == shown_) ui_->ListKarten->setCurrentRow(row);
  }
}

void TF_wnhelp::OpenEntry(const QListWidgetItem* entry) {
  if (entry != nullptr) ShowCard(entry->data(kNumberRole).toInt());
}

// From the search the keys lead on: Enter opens the first card found, Down goes to the list.
bool TF_wnhelp::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    QListWidget& list = *ui_->ListKarten;
    if (key == Qt::Key_Return || key == Qt::Key_Enter) return OpenEntry(list.item(0)), true;
    if (key == Qt::Key_Down) {
      if (list.currentRow() < 0) list.setCurrentRow(0);
      list.setFocus();
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

void TF_wnhelp::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) FillList();
}

void TF_wnhelp::closeEvent(QCloseEvent* event) {
  if (HasOpenDialog(*this)) return event->ignore();
  KeepWindowPlace(*this, settings_.ini, place_suffix::kHelp);
  QWidget::closeEvent(event);
}

}  // namespace tessaro
