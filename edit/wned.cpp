// The editor window: what it is made of, what it shows, how it is opened and closed.

#include "edit/wned.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QHeaderView>
#include <QScrollBar>

#include "cards/card_reader.h"
#include "cards/link_state.h"
#include "edit/card_model.h"
#include "edit/ed_texts.h"
#include "edit/side_field.h"
#include "edit/wnlink.h"
#include "edit/wnsign.h"
#include "edit/wnsuch.h"
#include "edit/wntab.h"
#include "ui_wned.h"
#include "widgets/long_work.h"
#include "widgets/messages.h"
#include "widgets/side_look.h"
#include "widgets/text.h"
#include "widgets/theme.h"
#include "widgets/window_place.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr std::string_view kPlaceSuffix = "E";
constexpr int kLongPreview = 10;  // milliseconds; one that takes longer waits for a pause in the typing
constexpr int kPreviewDelay = 25;
constexpr int kStoreDelay = 5000;  // without typing
constexpr int kWideForBoth = 760;  // pixels of the card's field: both sides beside each other
constexpr int kWideForList = 900;  // pixels of the window: the list of cards beside them

}  // namespace

TF_wned::TF_wned(CardFile& file, ProgramSettings& settings, const EditorMachine& machine, int64_t& made,
                 QWidget* parent)
    : QMainWindow(parent),
      file_(file),
      settings_(settings),
      machine_(machine),
      ui_(std::make_unique<Ui::TF_wned>()),
      desk_(file, made),
      model_(new CardModel(file, this)),
      watch_(file.watchers(), static_cast<CardWatcher&>(*this)) {
  ui_->setupUi(this);
  MakeStatusLine();
  MakeCommands();
  DressWindow();
  ConnectSides();
  ConnectNavigation();
  ReadLooks();
  ReadTopics();
  RestoreWindowPlace(*this, settings_.ini, kPlaceSuffix);
  FitSides();
  ready_ = true;
  const bool first = !file_.read_only() && desk_.EnsureCard();
  if (desk_.row() == 0) desk_.First();
  ShowCard();
  ActiveText().setFocus();
  if (first) {
    ShowStatus(
        u"Sie sehen hier die erste leere Karte, weitere Leerkarten erhalten Sie durch Anklicken des "
        u"Leerkartensymbols (links über dem Symbol \"Ausschneiden\")"_s);
  }
}

TF_wned::~TF_wned() = default;

void TF_wned::MakeStatusLine() {
  label_status_.setObjectName(u"LabelStatus"_s);
  label_length_.setObjectName(u"LabelLaenge"_s);
  label_status_.setTextFormat(Qt::PlainText);
  // A long text is cut off; it must not keep the window wide.
  label_status_.setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  ui_->StatusBar->addWidget(&label_status_, 1);
  ui_->StatusBar->addPermanentWidget(&label_length_);
  preview_timer_.setSingleShot(true);
  store_timer_.setSingleShot(true);
  store_timer_.setInterval(kStoreDelay);
  connect(&preview_timer_, &QTimer::timeout, this, &TF_wned::ShowPreview);
  connect(&store_timer_, &QTimer::timeout, this, &TF_wned::KeepTyped);
}

void TF_wned::DressWindow() {
  ui_->KartenListe->setModel(model_);
  for (int column = 0; column < CardModel::kColumns; ++column) {
    ui_->KartenListe->setColumnHidden(column, column != CardModel::Number && column != CardModel::Front);
  }
  const int digits = fontMetrics().horizontalAdvance(u"999990  "_s);
  ui_->KartenListe->setColumnWidth(CardModel::Number, digits);
  ui_->KartenListe->horizontalHeader()->setStretchLastSection(false);
  ui_->KartenListe->horizontalHeader()->setSectionResizeMode(CardModel::Front, QHeaderView::Stretch);
  ui_->KartenListe->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  ui_->Aufteilung->setStretchFactor(0, 0);
  ui_->Aufteilung->setStretchFactor(1, 1);
  ui_->Aufteilung->setSizes({240, 1000});
  ui_->PageControlKarte->addTab(u"Vorderseite"_s);
  ui_->PageControlKarte->addTab(u"Rückseite"_s);
  ui_->PageControlKarte->setExpanding(false);
  ui_->PageControlKarte->setFocusPolicy(Qt::NoFocus);
  MakeQuiet(label_length_);
  SetAccent(*ui_->LabelGeloescht, Accent::NotKnown);
}

void TF_wned::ConnectSides() {
  for (const EditSide side : {EditSide::Front, EditSide::Back}) {
    SideField& text = TextOf(side);
    text.SetIsCard([this](int64_t number) { return desk_.TargetRow(number) != 0; });
    connect(&text, &SideField::SideChanged, this, [this] {
      preview_timer_.start();
      store_timer_.start();
      ShowLength();
    });
    connect(&text, &SideField::FocusTaken, this, [this, side] { Activate(side); });
    connect(&text, &SideField::ForeignLeftOut, this,
            [this](const QString& left_out) { ShowStatus(ForeignText(left_out)); });
    connect(&text, &SideField::FilesDropped, this, [this, side](const QStringList& paths) { DropFiles(side, paths); });
    connect(&text, &SideField::PicturePasted, this,
            [this, side](const QImage& picture) { PastePicture(side, picture); });
  }
  for (TFrameHtml* frame : {ui_->TFrameHtmlV, ui_->TFrameHtmlH}) {
    connect(frame, &TFrameHtml::LinkClicked, this, &TF_wned::FollowLink);
    frame->SetLinkColours([this](int64_t id) {
      switch (LinkStateOf(file_, id, ReadParameters(settings_.ini), machine_.clock.Now())) {
        case LinkState::KnownNotDue:
          return ColourClass::Green;
        case LinkState::DueOrWrong:
          return ColourClass::Red;
        case LinkState::NeverLearned:
          break;
      }
      return ColourClass::Blue;
    });
  }
  connect(ui_->PageControlKarte, &QTabBar::currentChanged, this, [this](int page) {
    const EditSide side = page == 0 ? EditSide::Front : EditSide::Back;
    if (side != active_) Activate(side);
  });
}

void TF_wned::ConnectNavigation() {
  connect(ui_->KartenListe->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& index) {
            const int row = model_->CardRow(index.row());
            if (!busy_ && row > 0 && row != desk_.row()) ShowRow(row);
          });
  connect(ui_->EditGoto, &QLineEdit::returnPressed, this, &TF_wned::SpeedButtonGoto);
  connect(ui_->SpeedButtonGoto, &QAbstractButton::clicked, this, &TF_wned::SpeedButtonGoto);
  connect(ui_->SpeedButtonMarke1, &QAbstractButton::clicked, this, [this] { SpeedButtonMarke(0); });
  connect(ui_->SpeedButtonMarke2, &QAbstractButton::clicked, this, [this] { SpeedButtonMarke(1); });
  connect(ui_->SpeedButtonGoMarke1, &QAbstractButton::clicked, this, [this] { SpeedButtonGoMarke(0); });
  connect(ui_->SpeedButtonGoMarke2, &QAbstractButton::clicked, this, [this] { SpeedButtonGoMarke(1); });
}

MediaFolders TF_wned::Folders() const {
  return {file_.paths().cards.parent_path(), MediaFolder()};
}

std::filesystem::path TF_wned::MediaFolder() const {
  // An absolute path stands for itself.
  return file_.paths().cards.parent_path() / ToPath(FromBytes(settings_.ini.GetString("MEDIA", "Folder", "Medien")));
}

void TF_wned::ReadLooks() {
  looks_ = {ReadSideLook(file_.settings(), SideName::Front), ReadSideLook(file_.settings(), SideName::Back)};
  ui_->TFrameHtmlV->SetMediaFolders(Folders());
  ui_->TFrameHtmlH->SetMediaFolders(Folders());
}

void TF_wned::ShowLooks() {
  for (const EditSide side : {EditSide::Front, EditSide::Back}) {
    QFont font = looks_[side == EditSide::Front ? 0 : 1].font;
    font.setStrikeOut(desk_.IsMarked());
    TextOf(side).setFont(font);
    TextOf(side).setReadOnly(file_.read_only());
  }
}

bool TF_wned::MayChange() {
  if (file_.read_only()) machine_.messages.Information(this, ReadOnlyText());
  return desk_.row() != 0 && !file_.read_only();
}

SideField& TF_wned::TextOf(EditSide side) {
  return side == EditSide::Front ? *ui_->RichEditKarteVorne : *ui_->RichEditKarteHinten;
}

void TF_wned::ShowRow(int row) {
  if (row == desk_.row() || row == 0) return;
  if (!StoreSide()) return ShowPosition();
  if (desk_.GoTo(row)) ShowCard();
}

void TF_wned::ShowCard() {
  ShowSides();
  ShowPosition();
  ShowCommands();
}

// Shows the sides as the cards have them; what was typed is stored by then.
void TF_wned::ShowSides() {
  const bool other = std::exchange(shown_, desk_.id()) != desk_.id();
  for (const EditSide side : {EditSide::Front, EditSide::Back}) {
    const std::string text = desk_.Shown(side);
    SideField& shown = TextOf(side);
    other || shown.Side() != text ? shown.SetSide(text) : shown.HighlightAnew();
    shown.setEnabled(desk_.row() != 0);
  }
  ShowLooks();
  store_timer_.stop();
  if (other) ui_->TFrameHtmlV->verticalScrollBar()->setValue(0);
  if (other) ui_->TFrameHtmlH->verticalScrollBar()->setValue(0);
  ShowPreview();
  ShowLength();
}

void TF_wned::ShowPreview() {
  const int64_t begin = machine_.clock.Milliseconds();
  const auto show = [](TFrameHtml& frame, const SideField& text, const SideLook& look) {
    const int at = frame.verticalScrollBar()->value();
    frame.ShowSide(text.Side(), look);
    frame.verticalScrollBar()->setValue(at);
  };
  show(*ui_->TFrameHtmlV, *ui_->RichEditKarteVorne, looks_[0]);
  show(*ui_->TFrameHtmlH, *ui_->RichEditKarteHinten, looks_[1]);
  preview_timer_.setInterval(machine_.clock.Milliseconds() - begin > kLongPreview ? kPreviewDelay : 0);
}

void TF_wned::ShowPosition() {
  const QString id = FromBytes(desk_.id());
  ui_->LabelPosition->setText(desk_.row() == 0
                                  ? u"Keine Karte"_s
                                  : u"Karte %1 von %2   ID %3"_s.arg(desk_.position()).arg(file_.CardCount()).arg(id));
  ui_->LabelGeloescht->setVisible(desk_.IsMarked());
  setWindowTitle((file_.read_only() ? u"Karteneditor - %1 (nur lesen)[*]"_s : u"Karteneditor - %1[*]"_s)
                     .arg(FromPath(file_.paths().cards.filename())));
  setWindowModified(file_.changed());
  const int row = model_->ViewRow(desk_.row());
  const bool was_busy = std::exchange(busy_, true);
  ui_->KartenListe->setCurrentIndex(model_->index(row, CardModel::Front));
  busy_ = was_busy;
  if (link_window_ != nullptr) link_window_->ShowTarget(id);
}

void TF_wned::ShowLength() {
  const size_t length = ActiveText().Side().size();
  label_length_.setText(u"Textlänge: %1 Bytes (Zeichen, Leerzeichen, Zeilenumbrüche)"_s.arg(length));
}

void TF_wned::ShowStatus(const QString& text) {
  label_status_.setText(text);
  label_status_.setToolTip(text);
}

void TF_wned::Activate(EditSide side) {
  active_ = side;
  ui_->PageControlKarte->setCurrentIndex(side == EditSide::Front ? 0 : 1);
  FitSides();
  for (const EditSide one : {EditSide::Front, EditSide::Back}) {
    QLabel& title = one == EditSide::Front ? *ui_->TitelVorne : *ui_->TitelHinten;
    QFont font = title.font();
    font.setBold(one == side);
    title.setFont(font);
  }
  ShowLength();
}

// Both sides beside each other where there is room, else the active one.
void TF_wned::FitSides() {
  const bool list = width() >= kWideForList;
  ui_->KartenListe->setVisible(list);
  const int room = width() - (list ? ui_->KartenListe->width() : 0);
  const bool both = room >= kWideForBoth;
  ui_->PageControlKarte->setVisible(!both);
  ui_->Vorne->setVisible(both || active_ == EditSide::Front);
  ui_->Hinten->setVisible(both || active_ == EditSide::Back);
  ui_->TitelVorne->setVisible(both);
  ui_->TitelHinten->setVisible(both);
}

bool TF_wned::StoreSide() {
  store_timer_.stop();
  if (busy_ || desk_.row() == 0) return true;
  const std::string front = TextOf(EditSide::Front).Side();
  const std::string back = TextOf(EditSide::Back).Side();
  busy_ = true;
  StoreOutcome outcome = desk_.Store(front, back);
  if (outcome == StoreOutcome::Moved) {
    const QString question =
        u"\nÄnderung Karte ID.%1 nicht gespeichert\nweil Position geändert.\nJetzt suchen und speichern?"_s.arg(
            FromBytes(desk_.id()));
    const Answer answer =
        machine_.messages.Question(this, question, u"Speichern"_s, u"Nicht speichern"_s, u"Abbrechen"_s, Answer::Yes);
    if (answer == Answer::Yes) outcome = desk_.StoreById(front, back);
    if (answer == Answer::Cancel) outcome = StoreOutcome::Failed;
    if (answer == Answer::No) outcome = StoreOutcome::Unchanged;
  }
  busy_ = false;
  TellStored(outcome);
  return outcome != StoreOutcome::Failed;
}

void TF_wned::TellStored(StoreOutcome outcome) {
  const QString hint =
      EmptySideHint(TextOf(EditSide::Front).Side().empty(), TextOf(EditSide::Back).Side().empty(), desk_.position());
  if (outcome == StoreOutcome::Failed) ShowStatus(u"Update fehlgeschlagen"_s);
  if (outcome != StoreOutcome::Saved) return;
  const QString saved = u"Änderung in Karte %1 gespeichert"_s.arg(FromBytes(desk_.id()));
  ShowStatus(hint.isEmpty() ? saved : saved + u". "_s + hint);
  ShowCommands();
  setWindowModified(file_.changed());
}

// After a while without typing; never asks then.
void TF_wned::KeepTyped() {
  if (busy_ || LongWork::Running() || QApplication::activeModalWidget() != nullptr) return store_timer_.start();
  busy_ = true;
  const StoreOutcome outcome = desk_.Store(TextOf(EditSide::Front).Side(), TextOf(EditSide::Back).Side());
  busy_ = false;
  if (outcome == StoreOutcome::Saved) TellStored(outcome);
}

bool TF_wned::Settle() {
  if (!StoreSide()) return false;
  const bool removed = !file_.deletion_marks().rows().empty();
  busy_ = true;
  const bool done = desk_.RemoveMarked();
  busy_ = false;
  if (!done) machine_.messages.Error(this, u"\nFehler bei der Entfernung\nder markierten Karten."_s);
  if (removed && done) ShowCard();
  return done;
}

void TF_wned::RowsShifted(const RowShift& /*shift*/) {
  if (busy_) return;
  ShowCard();
}

void TF_wned::CardsChanged(std::span<const int> rows, std::span<const int> /*columns*/) {
  if (busy_) return;
  const bool here = std::binary_search(rows.begin(), rows.end(), desk_.row());
  // What is being typed stays; storing it is what follows.
  if (here && !store_timer_.isActive()) ShowSides();
  ShowPosition();
  ShowCommands();
}

bool TF_wned::IsInUse() const {
  return isVisible() || (table_window_ != nullptr && table_window_->isVisible()) ||
         (search_window_ != nullptr && search_window_->isVisible());
}

void TF_wned::closeEvent(QCloseEvent* event) {
  // A dialog of its own is on the stack.
  if (busy_ || HasOpenDialog(*this)) return event->ignore();
  if (link_window_ != nullptr) EndLink();
  if (LongWork::Running() || !Settle()) return event->ignore();
  KeepWindowPlace(*this, settings_.ini, kPlaceSuffix);
  for (QWidget* window : {static_cast<QWidget*>(search_window_.get()), static_cast<QWidget*>(table_window_.get()),
                          static_cast<QWidget*>(sign_window_.get())}) {
    if (window != nullptr) window->close();
  }
  LongWork work(this, machine_.clock);
  if (!CardEdit(file_).Finish()) {
    machine_.messages.Error(this, u"\nIndexaufbau Fehler,\nDefekt in Kartei.\nSiehe Hilfeindex!"_s);
  }
  QMainWindow::closeEvent(event);
  Q_EMIT Closed();
}

void TF_wned::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  FitSides();
}

void TF_wned::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && ready_) {
    SetAccent(*ui_->LabelGeloescht, Accent::NotKnown);
  }
  if (event->type() != QEvent::ActivationChange || !ready_) return;
  // Whoever goes to another window finds the card as it was typed. Who comes back may have set other fonts or saved
  // the cards under another name there.
  if (!isActiveWindow()) return KeepTyped();
  ReadLooks();
  ShowLooks();
  ShowPreview();
  ShowPosition();
}

}  // namespace tessaro
