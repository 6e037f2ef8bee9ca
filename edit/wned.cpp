// The editor window: what it is made of, what it shows, how it is opened and closed.

#include "edit/wned.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QHeaderView>

#include "cards/card_reader.h"
#include "cards/link_state.h"
#include "edit/card_model.h"
#include "edit/card_work.h"
#include "edit/ed_texts.h"
#include "edit/side_field.h"
#include "edit/wnlink.h"
#include "edit/wnsign.h"
#include "edit/wnsuch.h"
#include "edit/wntab.h"
#include "settings/kept_place.h"
#include "ui_wned.h"
#include "widgets/long_work.h"
#include "widgets/messages.h"
#include "widgets/text.h"
#include "widgets/theme.h"
#include "widgets/window_place.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int kStoreDelay = 5000;  // milliseconds without typing
constexpr int kWideForList = 900;  // pixels of the window: the list of cards beside them

std::unique_ptr<Ui::TF_wned> SetUp(QMainWindow& window) {
  auto ui = std::make_unique<Ui::TF_wned>();
  ui->setupUi(&window);
  return ui;
}

}  // namespace

TF_wned::TF_wned(CardFile& file, ProgramSettings& settings, const EditorMachine& machine, int64_t& made,
                 QWidget* parent)
    : QMainWindow(parent),
      file_(file),
      settings_(settings),
      machine_(machine),
      ui_(SetUp(*this)),
      desk_(file, made),
      model_(new CardModel(file, this)),
      watch_(file.watchers(), static_cast<CardWatcher&>(*this)),
      sides_(*ui_, machine_.clock),
      media_(file, settings, machine) {
  MakeStatusLine();
  MakeCommands();
  DressWindow();
  ConnectSides();
  ConnectNavigation();
  sides_.ReadLooks(file_, settings_);
  ReadTopics();
  RestoreWindowPlace(*this, settings_.ini, place_suffix::kEditor);
  FitSides();
  ready_ = true;
  const bool first = !file_.read_only() && desk_.EnsureCard();
  if (desk_.row() == 0) desk_.First();
  ShowCard();
  ActiveText().setFocus();
  if (first) ShowStatus(FirstCardText());
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
  store_timer_.setSingleShot(true);
  store_timer_.setInterval(kStoreDelay);
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
  MakeQuiet(label_length_);
  SetAccent(*ui_->LabelGeloescht, Accent::NotKnown);
}

void TF_wned::ConnectSides() {
  for (const EditSide side : {EditSide::Front, EditSide::Back}) {
    sides_.field(side).SetIsCard([this](int64_t number) { return desk_.TargetRow(number) != 0; });
  }
  sides_.SetLinkColours(
      [this](int64_t id) { return LinkColour(file_, id, ReadParameters(settings_.ini), machine_.clock.Now()); });
  connect(&sides_, &EditedSides::Typed, this, [this] {
    store_timer_.start();
    setWindowModified(true);
    ShowLength();
  });
  connect(&sides_, &EditedSides::Activated, this, &TF_wned::ShowLength);
  connect(&sides_, &EditedSides::LinkClicked, this, &TF_wned::FollowLink);
  connect(&sides_, &EditedSides::ForeignLeftOut, this, [this](const QString& characters) {
    for (const QChar letter : characters) {
      if (!left_out_.contains(letter)) left_out_ += letter;
    }
    ShowStatus(LeftOutText(left_out_));
  });
  // Where they come from is free again before the user is asked about them.
  connect(&sides_, &EditedSides::FilesDropped, this, &TF_wned::DropFiles, Qt::QueuedConnection);
  connect(&sides_, &EditedSides::PicturePasted, this,
          [this](const QImage& picture) { InsertMedia(media_.PastedTag(picture, desk_.id(), this)); });
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
  for (const size_t mark : {0U, 1U}) {
    const QAbstractButton* button = mark == 0 ? ui_->SpeedButtonGoMarke1 : ui_->SpeedButtonGoMarke2;
    connect(button, &QAbstractButton::clicked, this, [this, mark] {
      Go([this, mark] { return desk_.GoTo(desk_.MarkedRow(mark)); }, u"Keine Karte ist markiert"_s);
    });
  }
}

bool TF_wned::MayChange() {
  if (file_.read_only()) machine_.messages.Information(this, ReadOnlyText());
  return desk_.row() != 0 && !file_.read_only();
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
  if (other) left_out_.clear();
  for (const EditSide side : {EditSide::Front, EditSide::Back}) {
    const std::string text = desk_.Shown(side);
    SideField& shown = sides_.field(side);
    other || shown.Side() != text ? shown.SetSide(text) : shown.HighlightAnew();
    if (other && shown.hasFocus()) shown.SelectIfBlank();
    shown.setEnabled(desk_.row() != 0);
  }
  sides_.ShowLooks(desk_.IsMarked(), file_.read_only());
  store_timer_.stop();
  if (other) sides_.ScrollPreviewToTop();
  sides_.ShowPreview();
  ShowLength();
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

// Adds what the commands have cost, if something.
void TF_wned::ShowStatus(const QString& text) {
  const QString forgotten = ForgottenText(desk_.commands().TakeForgotten());
  const QString shown = forgotten.isEmpty() ? text : text + u". "_s + forgotten;
  label_status_.setText(shown);
  label_status_.setToolTip(shown);
}

void TF_wned::FitSides() {
  const bool list = width() >= kWideForList;
  ui_->KartenListe->setVisible(list);
  sides_.Fit(width() - (list ? ui_->KartenListe->width() : 0));
}

bool TF_wned::StoreSide() {
  store_timer_.stop();
  if (busy_ || desk_.row() == 0) return true;
  const std::string front = sides_.field(EditSide::Front).Side();
  const std::string back = sides_.field(EditSide::Back).Side();
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
  if (outcome == StoreOutcome::Moved) CheckLinkIndex(LeadingNumber(desk_.id()));
  TellStored(outcome, EmptySideHint(front.empty(), back.empty(), desk_.position()));
  return outcome != StoreOutcome::Failed;
}

void TF_wned::TellStored(StoreOutcome outcome, const QString& hint) {
  if (outcome == StoreOutcome::Failed) ShowStatus(u"Update fehlgeschlagen"_s);
  if (outcome != StoreOutcome::Saved) return;
  QStringList told = {u"Änderung in Karte %1 gespeichert"_s.arg(FromBytes(desk_.id()))};
  if (!hint.isEmpty()) told << hint;
  if (!left_out_.isEmpty()) told << LeftOutText(std::exchange(left_out_, {}));
  ShowStatus(told.join(u". "_s));
  ShowCommands();
  setWindowModified(file_.changed());
}

// After a while without typing; never asks then.
void TF_wned::KeepTyped() {
  if (busy_ || LongWork::Running() || QApplication::activeModalWidget() != nullptr) return store_timer_.start();
  busy_ = true;
  const std::string front = sides_.field(EditSide::Front).Side();
  const std::string back = sides_.field(EditSide::Back).Side();
  const StoreOutcome outcome = desk_.Store(front, back);
  busy_ = false;
  if (outcome != StoreOutcome::Saved) return;
  TellStored(outcome, front.empty() || back.empty() ? EmptySidesHint(desk_.position()) : QString());
}

bool TF_wned::Settle() {
  if (!StoreSide()) return false;
  const int marked = static_cast<int>(file_.deletion_marks().rows().size());
  const bool all = marked == file_.CardCount();
  busy_ = true;
  const bool done = desk_.RemoveMarked();
  busy_ = false;
  if (!done) machine_.messages.Error(this, u"\nFehler bei der Entfernung\nder markierten Karten."_s);
  if (marked > 0 && done) ShowCard();
  if (all && done) ShowStatus(FirstCardText());
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

std::vector<int> TF_wned::MarkedRows() const {
  return table_window_ != nullptr && table_window_->isVisible() ? table_window_->MarkedRows() : std::vector<int>();
}

void TF_wned::closeEvent(QCloseEvent* event) {
  // A dialog of its own is on the stack.
  if (busy_ || HasOpenDialog(*this)) return event->ignore();
  if (link_window_ != nullptr) EndLink();
  if (LongWork::Running() || !Settle()) return event->ignore();
  KeepWindowPlace(*this, settings_.ini, place_suffix::kEditor);
  for (QWidget* window : {static_cast<QWidget*>(search_window_.get()), static_cast<QWidget*>(table_window_.get()),
                          static_cast<QWidget*>(sign_window_.get())}) {
    if (window != nullptr) window->close();
  }
  LongWork work(this, machine_.clock);
  if (!CardEdit(file_).Finish(ShowIndexes(work))) {
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
    sides_.ReadLooks(file_, settings_);
    sides_.ShowPreview();
  }
  if (event->type() != QEvent::ActivationChange || !ready_) return;
  // Whoever goes to another window finds the card as it was typed. Who comes back may have set other fonts or saved
  // the cards under another name there.
  if (!isActiveWindow()) return KeepTyped();
  SettingsChanged();
}

void TF_wned::SettingsChanged() {
  const bool was_busy = std::exchange(busy_, true);
  sides_.ReadLooks(file_, settings_);
  sides_.ShowLooks(desk_.IsMarked(), file_.read_only());
  sides_.ShowPreview();
  model_->ShowAnew();
  busy_ = was_busy;
  ShowPosition();
}

}  // namespace tessaro
