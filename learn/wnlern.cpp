#include "learn/wnlern.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QKeyEvent>
#include <algorithm>
#include <utility>

#include "cards/link_state.h"
#include "learn/command_keys.h"
#include "learn/dldata.h"
#include "learn/lern_texts.h"
#include "learn/start_method.h"
#include "learn/wnlern_look.h"
#include "settings/kept_place.h"
#include "settings/keys.h"
#include "ui_wnlern.h"
#include "widgets/help_request.h"
#include "widgets/messages.h"
#include "widgets/side_look.h"
#include "widgets/text.h"
#include "widgets/video_screen.h"
#include "widgets/window_place.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int kSecond = 1000;  // milliseconds

// Takes the second press of a double click away from an answer. It would answer the card that has just appeared, which
// nobody has read by then.
class SecondPressFilter : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* /*button*/, QEvent* event) override { return event->type() == QEvent::MouseButtonDblClick; }
};

// Gives Enter to a control that the learner reached with Tab, as the space bar always is: elsewhere Enter answers. The
// next card takes this back.
class EnterFilter : public QObject {
 public:
  using QObject::QObject;
  bool eventFilter(QObject* watched, QEvent* event) override {
    switch (event->type()) {
      case QEvent::FocusIn: {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) reached_ = watched;
        if (reason == Qt::OtherFocusReason || reason == Qt::MouseFocusReason) reached_ = nullptr;
        return false;
      }
      case QEvent::ShortcutOverride:
        if (watched == reached_ && IsEnter(*event)) event->accept();
        return false;
      case QEvent::KeyPress:
        if (watched != reached_ || !IsEnter(*event)) return false;
        static_cast<QAbstractButton*>(watched)->click();
        return true;
      default:
        return false;
    }
  }
  void Forget() { reached_ = nullptr; }

 private:
  static bool IsEnter(const QEvent& event) {
    const auto& key = static_cast<const QKeyEvent&>(event);
    return (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) &&
           (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier && !key.isAutoRepeat();
  }
  const QObject* reached_ = nullptr;
};

}  // namespace

TF_wnlern::TF_wnlern(CardFile& file, ProgramSettings& settings, const Clock& clock, Random& random, Messages& messages,
                     AnswerGate& gate, QWidget* parent)
    : QMainWindow(parent),
      file_(file),
      settings_(settings),
      clock_(clock),
      random_(random),
      messages_(messages),
      gate_(gate),
      ui_(std::make_unique<Ui::TF_wnlern>()) {
  ui_->setupUi(this);
  ConnectAnswers();
  ConnectNavigation();
  ConnectMethods();
  ConnectView();
  ConnectModes();
  ConnectNotice();
  NoteOwnKeys();
  DressControls(*ui_, *this);
  auto* enter = new EnterFilter(this);
  for (auto* button : findChildren<QAbstractButton*>()) button->installEventFilter(enter);
  connect(this, &TF_wnlern::CardShown, this, [enter] { enter->Forget(); });
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, &TF_wnlern::TimerLernTimer);
}

TF_wnlern::~TF_wnlern() = default;

void TF_wnlern::ConnectAnswers() {
  auto* second_presses = new SecondPressFilter(this);
  for (QWidget* row : {ui_->Antwortzeile, ui_->Tageszeile}) {
    for (auto* button : row->findChildren<QAbstractButton*>()) button->installEventFilter(second_presses);
  }
  for (AnswerButton* button : {ui_->BtHand, ui_->BtLerneIch, ui_->BtWeissIch}) {
    button->setProperty(kHint, button->toolTip());
  }
  connect(ui_->BtHand, &QAbstractButton::clicked, this, &TF_wnlern::BtHandClick);
  connect(ui_->BtWeissIch, &QAbstractButton::clicked, this, &TF_wnlern::Weiss_ichExecute);
  connect(ui_->BtLerneIch, &QAbstractButton::clicked, this, &TF_wnlern::Lerne_ichExecute);
  connect(ui_->MDrehen, &QAction::triggered, this, &TF_wnlern::BtHandClick);
  connect(ui_->MKarteDrehen, &QAction::triggered, this, &TF_wnlern::BtHandClick);
  connect(ui_->Weiss_ich, &QAction::triggered, this, &TF_wnlern::Weiss_ichExecute);
  connect(ui_->Lerne_ich, &QAction::triggered, this, &TF_wnlern::Lerne_ichExecute);
  // A key that is held down must not run through the cards.
  for (QAction* action :
       {ui_->MKarteDrehen, ui_->Weiss_ich, ui_->Lerne_ich, ui_->MAntwortZurueck, ui_->MAntwortWieder}) {
    action->setAutoRepeat(false);
  }
  connect(ui_->SpeedButtonUndo, &QAbstractButton::clicked, this, &TF_wnlern::SpeedButtonUndoClick);
  connect(ui_->MAntwortZurueck, &QAction::triggered, this, &TF_wnlern::MAntwortZurueckClick);
  connect(ui_->MAntwortWieder, &QAction::triggered, this, &TF_wnlern::MAntwortWiederClick);
  const auto connect_days = [this](QToolButton* button, QAction* action, int days) {
    connect(button, &QAbstractButton::clicked, this, [this, days] { SpeedButtonTageClick(days); });
    connect(action, &QAction::triggered, this, [this, days] { SpeedButtonTageClick(days); });
  };
  connect_days(ui_->SpeedButtonTage1, ui_->MTage1, 1);
  connect_days(ui_->SpeedButtonTage3, ui_->MTage3, 3);
  connect_days(ui_->SpeedButtonTage7, ui_->MTage7, 7);
  connect_days(ui_->SpeedButtonTage14, ui_->MTage14, 14);
  connect_days(ui_->SpeedButtonTage30, ui_->MTage30, 30);
  connect_days(ui_->SpeedButtonTage60, ui_->MTage60, 60);
  connect_days(ui_->SpeedButton100, ui_->M100, 100);
  connect_days(ui_->SpeedButtonTage365, ui_->MTage365, 365);
}

void TF_wnlern::ConnectNavigation() {
  const auto tie = [this](QToolButton* button, QAction* action, void (TF_wnlern::*handler)()) {
    connect(button, &QAbstractButton::clicked, this, handler);
    connect(action, &QAction::triggered, this, handler);
  };
  tie(ui_->SpeedButtonHome, ui_->MHome, &TF_wnlern::SpeedButtonHomeClick);
  tie(ui_->SpeedButtonBack, ui_->MBack, &TF_wnlern::SpeedButtonBackClick);
  tie(ui_->SpeedButtonVis, ui_->MVis, &TF_wnlern::SpeedButtonVisClick);
  const auto edit = [this] { Q_EMIT EditWanted(run_ == nullptr ? 0 : run_->card().row); };
  connect(ui_->TbEdit, &QAbstractButton::clicked, this, edit);
  connect(ui_->MEditor, &QAction::triggered, this, edit);
  connect(ui_->MDrucken, &QAction::triggered, this,
          [this] { Q_EMIT PrintWanted(run_ == nullptr ? 0 : run_->card().row); });
  connect(ui_->PageControlAnz, &CardPages::LinkClicked, this, &TF_wnlern::LinkClick);
  connect(ui_->PageControlAnz, &CardPages::SoundWanted, this, &TF_wnlern::SoundWanted);
  connect(ui_->PageControlAnz, &CardPages::VideoWanted, this, &TF_wnlern::VideoWanted);
  connect(ui_->PageControlAnz, &CardPages::PictureFailed, this, [this] { messages_.Error(this, PictureFailedText()); });
  connect(ui_->PageControlAnz, &CardPages::DrawingFailed, this, [this] { messages_.Error(this, DrawingFailedText()); });
}

void TF_wnlern::ConnectMethods() {
  auto* methods = new QActionGroup(this);
  methods->addAction(ui_->MAutoStandard);
  methods->addAction(ui_->MAutoReihe);
  methods->addAction(ui_->MLeitner);
  connect(ui_->MAutoStandard, &QAction::triggered, this, [this] { MethodClick(Method::Standard); });
  connect(ui_->MAutoReihe, &QAction::triggered, this, [this] { MethodClick(Method::RowOrder); });
  ui_->ButtonMethode->addActions(methods->actions());
  ui_->ButtonMethode->setPopupMode(QToolButton::InstantPopup);
  // Its arrow stands in the text; the style's own hangs below it.
  ui_->ButtonMethode->setStyleSheet(u"QToolButton::menu-indicator { image: none; }"_s);
  connect(ui_->MLeitner, &QAction::triggered, this, &TF_wnlern::SpeedButtonLeitnerClick);
  connect(ui_->SpeedButtonLeitner, &QAbstractButton::clicked, this, &TF_wnlern::SpeedButtonLeitnerClick);
  connect(ui_->SpeedButtonLeitnerOn, &QAbstractButton::clicked, this, [this] { MethodClick(automatic_); });
  connect(ui_->SpeedButtonLeitnerOff, &QAbstractButton::clicked, this, [this] { MethodClick(Method::Leitner); });
  connect(ui_->MReiheAnfang, &QAction::triggered, this, &TF_wnlern::MReiheAnfangClick);
  connect(ui_->MNeueKarten, &QAction::triggered, this, &TF_wnlern::MNeueKartenClick);
  connect(ui_->MZeitsperre, &QAction::triggered, this, &TF_wnlern::SpeedButtonSperreClick);
  connect(ui_->SpeedButtonSperre, &QAbstractButton::clicked, this,
          [this] { SpeedButtonSperreClick(!ui_->MZeitsperre->isChecked()); });
}

void TF_wnlern::ConnectView() {
  auto* places = new QActionGroup(this);
  places->addAction(ui_->MAnsichtOben);
  places->addAction(ui_->MAnsichtUnten);
  connect(ui_->MAnsichtOben, &QAction::triggered, this, [this] { MAnsichtClick(false); });
  connect(ui_->MAnsichtUnten, &QAction::triggered, this, [this] { MAnsichtClick(true); });
  connect(ui_->MAnzeigen, &QAction::triggered, this, &TF_wnlern::MAnzeigenClick);
  connect(ui_->MFrage, &QAction::triggered, this, &TF_wnlern::MFrageClick);
  connect(ui_->MVollbild, &QAction::triggered, this, &TF_wnlern::MVollbildClick);
  connect(ui_->MHilfe, &QAction::triggered, this, [this] { RequestHelp(*this); });
  for (const char* name : {"ZoomIn", "ZoomOut", "ZoomNormal", "PapierHell"}) {
    ui_->MenuAnsicht->insertAction(ui_->MVollbild, ui_->PageControlAnz->findChild<QAction*>(QLatin1StringView(name)));
  }
  ui_->MenuKarte->insertAction(ui_->MKopieren, ui_->PageControlAnz->findChild<QAction*>(u"TonNochEinmal"_s));
  connect(ui_->TbCalc, &QAbstractButton::clicked, this, &TF_wnlern::TbCalcClick);
  connect(ui_->MEinzelstatistik, &QAction::triggered, this, &TF_wnlern::TbCalcClick);
  connect(ui_->MShortCutsDef, &QAction::triggered, this, &TF_wnlern::MShortCutsDefClick);
  connect(ui_->MInvers, &QAction::triggered, this, &TF_wnlern::SpeedButtonInversClick);
  connect(ui_->SpeedButtonInversEin, &QAbstractButton::clicked, this, [this] { SpeedButtonInversClick(false); });
  connect(ui_->SpeedButtonInversAus, &QAbstractButton::clicked, this, [this] { SpeedButtonInversClick(true); });
  connect(ui_->MTausch, &QAction::triggered, this, &TF_wnlern::SpeedButtonTauschClick);
  connect(ui_->SpeedButtonTausch, &QAbstractButton::clicked, this, &TF_wnlern::SpeedButtonTauschClick);
  connect(ui_->MKopieren, &QAction::triggered, this, &TF_wnlern::MKopierenClick);
  connect(ui_->MSpeichern, &QAction::triggered, this, &TF_wnlern::MSpeichernClick);
  connect(ui_->MClose, &QAction::triggered, this, &TF_wnlern::close);
}

void TF_wnlern::NoteOwnKeys() {
  ui_->MAntwortZurueck->setShortcut(Qt::CTRL | Qt::Key_Z);
  ui_->MAntwortWieder->setShortcuts({Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y});
  ui_->MSpeichern->setShortcut(Qt::CTRL | Qt::Key_S);
  ui_->MDrucken->setShortcut(Qt::CTRL | Qt::Key_P);
  ui_->MKopieren->setShortcut(Qt::CTRL | Qt::Key_C);
  ui_->MEditor->setShortcut(Qt::Key_F8);
  ui_->MVollbild->setShortcut(Qt::Key_F11);
  ui_->MAuswahlleiste->setShortcut(Qt::CTRL | Qt::Key_1);
  ui_->MEingabezeile->setShortcut(Qt::CTRL | Qt::Key_2);
  ui_->MTastaturtraining->setShortcut(Qt::CTRL | Qt::Key_3);
  for (auto* action : findChildren<QAction*>()) {
    if (!action->shortcuts().isEmpty()) own_keys_.emplace_back(action, action->shortcuts());
  }
}

void TF_wnlern::ConnectNotice() {
  connect(ui_->ButtonNeuerLauf, &QAbstractButton::clicked, this, [this] {
    MakeRun();
    StartRun();
  });
  connect(ui_->ButtonOhneSperre, &QAbstractButton::clicked, this, [this] { SpeedButtonSperreClick(false); });
  connect(ui_->ButtonHinweisEnde, &QAbstractButton::clicked, this, &TF_wnlern::close);
  connect(ui_->ButtonAuswertung, &QAbstractButton::clicked, this, &TF_wnlern::EvaluationWanted);
}

void TF_wnlern::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  if (!event->spontaneous() && run_ == nullptr) FormShow();
}

void TF_wnlern::closeEvent(QCloseEvent* event) {
  // A message box of the running command or a dialog is open: it has to be answered first.
  if (in_command_ || HasOpenDialog(*this)) {
    event->ignore();
    return;
  }
  QMainWindow::closeEvent(event);
  if (run_ != nullptr) FormClose();
}

void TF_wnlern::FormShow() {
  RestoreWindowPlace(*this, settings_.ini, place_suffix::kLearning);
  ReadOptions();
  ReadShortcuts();
  ReadLooks();
  start_milliseconds_ = clock_.Milliseconds();
  MakeRun();
  if (keys::kShowStatistics.Read(settings_.ini)) SwitchStatistics(true);
  // Once the window stands: what the run has to tell comes up over it.
  QTimer::singleShot(0, this, &TF_wnlern::StartRun);
}

void TF_wnlern::FormClose() {
  timer_.stop();
  KeepWindowPlace(*this, settings_.ini, place_suffix::kLearning);
  SwitchStatistics(false);
  KeepStartMethod(automatic_, settings_.ini, file_.settings());
  run_->KeepPositions();
  run_.reset();
  gate_.SetResult(AnswerModeResult::None);
  Q_EMIT MediaStopWanted();
  Q_EMIT Closed();
}

void TF_wnlern::MakeRun() {
  if (run_ != nullptr) run_->KeepPositions();
  run_ = std::make_unique<LearningRun>(file_, settings_.ini, clock_, random_);
  run_->SetMethod(automatic_);
  run_->Set(&RunOptions::no_new_cards, ui_->MNeueKarten->isChecked());
  run_->Set(&RunOptions::time_lock, ui_->MZeitsperre->isChecked());
  run_->Set(&RunOptions::inverse, ui_->MInvers->isChecked());
  run_->Set(&RunOptions::swapped, ui_->MTausch->isChecked());
  notice_ = Notice::None;
  ShowRun();
}

void TF_wnlern::StartRun() {
  Do([this](LearningRun& run) {
    const bool chosen = first_choice_.has_value();
    if (chosen) TakeChoice(run, *std::exchange(first_choice_, std::nullopt));
    return run.Start(chosen || !keys::kStartAtHome.Read(file_.settings()) ? Destination::Method : Destination::Home);
  });
}

void TF_wnlern::ReadOptions() {
  automatic_ = StartMethod(settings_.ini, file_.settings());
  ui_->MNeueKarten->setChecked(keys::kFewNewCards.Read(settings_.ini));
  const bool below = keys::kBarBelow.Read(settings_.ini);
  (below ? ui_->MAnsichtUnten : ui_->MAnsichtOben)->setChecked(true);
  PlaceControlBar(*ui_, below);
  ui_->MAnzeigen->setChecked(keys::kShowFigures.Read(settings_.ini));
  ui_->MFrage->setChecked(keys::kRepeatQuestion.Read(settings_.ini));
  FitControls(*ui_, width());
}

void TF_wnlern::ReadShortcuts() {
  const std::array<QAction*, kLearningCommands> actions = {ui_->MKarteDrehen, ui_->Weiss_ich, ui_->Lerne_ich,
                                                           ui_->MBack, ui_->MHome};
  const CommandKeys keys = KeysOfCommands(ReadLearningKeys(settings_.ini));
  QList<QKeySequence> taken;
  for (size_t i = 0; i < actions.size(); ++i) {
    actions[i]->setShortcuts(keys[i]);
    taken += keys[i];
  }
  // The learner's own keys come first; a file of settings may hold any.
  for (const auto& [action, own] : own_keys_) {
    QList<QKeySequence> free = own;
    free.removeIf([&](const QKeySequence& key) { return taken.contains(key); });
    action->setShortcuts(free);
  }
  learning_keys_ = taken;
  Q_EMIT LearningKeysChanged();
  const QString turn = turn_key_ = FirstKeyName(keys[static_cast<size_t>(LearningCommand::Turn)]);
  // The same command stands in two menus, but only one action may own the key.
  ui_->MDrehen->setText(turn.isEmpty() ? tr("&Drehen") : tr("&Drehen") + u'\t' + turn);
  ui_->BtWeissIch->SetKeyText(FirstKeyName(keys[static_cast<size_t>(LearningCommand::Known)]));
  ui_->BtLerneIch->SetKeyText(FirstKeyName(keys[static_cast<size_t>(LearningCommand::NotKnown)]));
}

void TF_wnlern::ReadLooks() {
  looks_ = {ReadSideLook(file_.settings(), SideName::Front), ReadSideLook(file_.settings(), SideName::Back)};
  const int paper = std::max(CardPages::PaperWidth(looks_[0].font), CardPages::PaperWidth(looks_[1].font));
  ui_->Kartenspalte->setMaximumWidth(std::max(paper, AnswersWidth(*ui_, true)));
  FitControls(*ui_, width());
  ui_->PageControlAnz->SetMediaFolders(
      FoldersOf(file_.paths().cards, keys::kMediaFolder.Read(settings_.ini), ReadCodePages(file_.settings())));
  ui_->PageControlAnz->KeepViewIn(settings_.ini);
  ui_->PageControlAnz->SetLinkColours(
      [this](int64_t id) { return LinkColour(file_, id, run_->parameters(), clock_.Now()); });
}

void TF_wnlern::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  FitControls(*ui_, width());
}

void TF_wnlern::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) ui_->MVollbild->setChecked(isFullScreen());
  if (event->type() == QEvent::WindowStateChange && run_ != nullptr) TimerLernTimer();
  if (event->type() != QEvent::PaletteChange && event->type() != QEvent::FontChange) return;
  DressControls(*ui_, *this);
  FitControls(*ui_, width());
}

// The buttons have the focus; a long card is read with the keys for pages all the same.
void TF_wnlern::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_PageDown || event->key() == Qt::Key_PageUp) {
    ui_->PageControlAnz->ScrollBy(event->key() == Qt::Key_PageDown ? 1 : -1);
    return;
  }
  QMainWindow::keyPressEvent(event);
}

// Wakes with the next full second, and not at all while nobody sees the watch.
void TF_wnlern::TimerLernTimer() {
  const int64_t passed = clock_.Milliseconds() - start_milliseconds_;
  const QString time = QString::fromStdString(StopwatchText(passed / kSecond));
  if (ui_->DisplayUebungszeit->text() != time) ui_->DisplayUebungszeit->setText(time);
  if (isMinimized() || run_ == nullptr) return timer_.stop();
  timer_.start(static_cast<int>(kSecond - passed % kSecond));
}

}  // namespace tessaro
