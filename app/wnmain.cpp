#include "app/wnmain.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <utility>

#include "app/commands.h"
#include "app/frbegin.h"
#include "app/program.h"
#include "app/sample_files.h"
#include "cards/figures.h"
#include "learn/dlparam.h"
#include "settings/kept_place.h"
#include "settings/learning_parameters.h"
#include "settings/recent_files.h"
#include "ui_wnmain.h"
#include "widgets/long_work.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr auto kTitle = "Tessaro Hypertext-Lernprogramm 3.0"_L1;
constexpr int kStatusPadding = 4;
constexpr int64_t kFiguresLast = 60;  // seconds after which the figures of the start page are looked up anew

// The one card file that is being dragged; empty when it is anything else.
QString DraggedFile(const QMimeData& data) {
  const QList<QUrl> urls = data.urls();
  if (urls.size() != 1 || !urls.first().isLocalFile()) return {};
  const QString path = urls.first().toLocalFile();
  return HasCardFileType(ToPath(path)) ? path : QString();
}

}  // namespace

TF_wnmain::TF_wnmain(Program& program)
    : program_(program), file_(program.file()), ui_(std::make_unique<Ui::TF_wnmain>()) {
  ui_->setupUi(this);
  MakeStatusLine();
  MakeMenus(*this, program_);
  ConnectSignals();
  RestoreWindowPlace(*this, program_.settings().ini, place_suffix::kMain);
  ui_->FrameBegin->SetSamples(SampleFiles(program_.places().samples));
  ShowState();
}

TF_wnmain::~TF_wnmain() = default;

void TF_wnmain::ConnectSignals() {
  connect(ui_->FrameBegin, &TFrameBegin::OpenWanted, this, &TF_wnmain::FileOpenExecute);
  connect(ui_->FrameBegin, &TFrameBegin::NewWanted, this, &TF_wnmain::FileNewExecute);
  connect(ui_->FrameBegin, &TFrameBegin::CheckWanted, this, &TF_wnmain::KarteiPruefenExecute);
  connect(&check_timer_, &QTimer::timeout, this, &TF_wnmain::ContinueCheck);
  connect(&waiting_timer_, &QTimer::timeout, this, &TF_wnmain::FulfilWaiting);
  connect(ui_->FrameBegin, &TFrameBegin::LearnWanted, this, &TF_wnmain::LernStartExecute);
  connect(ui_->FrameBegin, &TFrameBegin::RowOrderWanted, this,
          [this] { program_.OpenLearning(MethodChoice{.method = Method::RowOrder}); });
  connect(ui_->FrameBegin, &TFrameBegin::EditWanted, this, [this] { program_.OpenEditor(); });
  connect(ui_->FrameBegin, &TFrameBegin::SearchWanted, this, [this] { program_.OpenSearch(); });
  connect(&program_, &Program::EditorClosed, this, &TF_wnmain::ShowState);
  connect(ui_->FrameBegin, &TFrameBegin::BoxesWanted, this, [this] { program_.ChooseMethod(true); });
  // Opening a file fills the page anew, and with it the button that was pressed: not while it is being pressed.
  connect(ui_->FrameBegin, &TFrameBegin::FileWanted, this, [this](const QString& path) { OpenLater(ToPath(path)); });
  connect(ui_->FrameBegin, &TFrameBegin::SampleWanted, this, [this](const QString& path) { OpenLater(ToPath(path)); });
  connect(&program_.outlook(), &OutlookWindows::Summarised, ui_->FrameBegin, &TFrameBegin::ShowKnownNow);
  connect(&program_, &Program::LearningOpened, this, &TF_wnmain::ShowLearningCommands);
  connect(&program_, &Program::LearningClosed, this, &TF_wnmain::ShowAfterLearning);
  // The news comes in the middle of a learning step.
  file_.journal().SetFailureObserver(
      [this] { QMetaObject::invokeMethod(this, &TF_wnmain::TellThatChangesAreNotKept, Qt::QueuedConnection); });
}

void TF_wnmain::MakeStatusLine() {
  label_status_.setObjectName(u"LabelStatus"_s);
  label_sizes_.setObjectName(u"LabelSizes"_s);
  label_status_.setMinimumHeight(label_status_.fontMetrics().height() + kStatusPadding);
  ui_->StatusBar->addWidget(&label_status_, 1);
  ui_->StatusBar->addPermanentWidget(&label_sizes_);
}

void TF_wnmain::OpenLater(const std::filesystem::path& path) {
  QTimer::singleShot(0, this, [this, path] { OpenFile(path); });
}

bool TF_wnmain::event(QEvent* event) {
  const bool handled = QMainWindow::event(event);
  if (event->type() == QEvent::Paint && !at_start_.empty()) QTimer::singleShot(0, this, &TF_wnmain::FulfilStart);
  return handled;
}

void TF_wnmain::FulfilAtStart(const StartWish& wish) {
  constexpr int kPaintedAtLast = 500;  // milliseconds: a window that starts as an icon is not painted
  at_start_ = wish;
  if (!wish.card_file.empty()) ui_->FrameBegin->ShowLoading(wish.card_file);
  QTimer::singleShot(kPaintedAtLast, this, &TF_wnmain::FulfilStart);
}

void TF_wnmain::FulfilStart() {
  if (!at_start_.empty()) Fulfil(std::exchange(at_start_, {}));
}

void TF_wnmain::FulfilForOtherStart(const StartWish& wish) {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  QWidget* const dialog = QApplication::activeModalWidget();
  QWidget* const front = dialog != nullptr ? dialog : this;
  front->raise();
  front->activateWindow();
  if (!wish.empty()) FulfilWhenFree(wish);
}

void TF_wnmain::FulfilWhenFree(const StartWish& wish) {
  waiting_ = wish;
  FulfilWaiting();
}

void TF_wnmain::FulfilWaiting() {
  constexpr int kLookEvery = 200;  // milliseconds
  if (LongWork::Running() || QApplication::activeModalWidget() != nullptr) return waiting_timer_.start(kLookEvery);
  waiting_timer_.stop();
  const StartWish wish = std::exchange(waiting_, {});
  if (!wish.empty()) QTimer::singleShot(0, this, [this, wish] { Fulfil(wish); });
}

void TF_wnmain::Fulfil(const StartWish& wish) {
  if (wish.deed == StartWish::Deed::NewFile) return FileNewExecute();
  const bool learns = wish.deed == StartWish::Deed::Learn;
  std::filesystem::path path = wish.card_file;
  if (path.empty() && !file_.IsOpen()) {
    const std::vector<std::filesystem::path> recent = RecentFiles(program_.settings().ini);
    if (!recent.empty()) path = recent.front();
  }
  // It may be that of this window.
  const bool is_open = path.empty() || program_.disk().Resolve(path) == file_.paths().cards;
  const bool opened = is_open || OpenFile(path);
  if (!opened && !file_.IsOpen()) ShowStartPage();
  if (!learns || !opened) return;
  if (!file_.IsOpen()) return ShowStatus(u"Zum Lernen erst eine Kartei öffnen oder anlegen"_s);
  LernStartExecute();
}

void TF_wnmain::LernStartExecute() {
  program_.OpenLearning();
}

void TF_wnmain::LernAuswahlExecute() {
  program_.ChooseMethod(false);
}

void TF_wnmain::LernEinstellungExecute() {
  IniFile& settings = program_.settings().ini;
  TF_dlparam dialog(ReadParameterEntry(settings, file_.settings()), this);
  if (dialog.exec() != QDialog::Accepted) return;
  WriteParameterEntry(dialog.entry(), settings, file_.settings());
  program_.SaveSettings();
  (void)file_.SaveSettings();
  // When a card is due depends on them.
  ShowStartPage();
}

void TF_wnmain::MAboutClick() {
  program_.messages().Information(
      this,
      u"Tessaro Hypertext-Lernprogramm\nVersion %1\n\n"
      u"Karteikarten mit Verweisen, Bildern und Tönen,\n"
      u"vorgelegt dann, wenn es Zeit für sie ist."_s.arg(QApplication::applicationVersion()));
}

bool TF_wnmain::FormCloseQuery() {
  if (HasOpenDialog(*this) || !program_.CloseWindows()) return false;
  if (!file_.IsOpen()) return true;
  const bool empty = file_.CardCount() == 0;
  if (!empty && !file_.changed()) {
    (void)file_.SaveSettings();
    return true;
  }
  const QString question = empty ? u"\nKartei wirklich speichern?.\nSie enthält keine Karten\noder ist defekt."_s
                                 : u"\nAktuelle Kartei\nspeichern?"_s;
  const Answer answer = program_.messages().Question(this, question, u"Speichern"_s, u"Nicht speichern"_s,
                                                     u"Abbrechen"_s, empty ? Answer::Cancel : Answer::Yes);
  return answer == Answer::No || (answer == Answer::Yes && FileSaveExecute());
}

void TF_wnmain::closeEvent(QCloseEvent* event) {
  event->setAccepted(!LongWork::Running() && FormCloseQuery());
  if (!event->isAccepted()) return;
  KeepWindowPlace(*this, program_.settings().ini, place_suffix::kMain);
  program_.SaveSettings();
  file_.Close();
}

void TF_wnmain::changeEvent(QEvent* event) {
  // A learning run beside this window changes the card file.
  if (event->type() == QEvent::ActivationChange) {
    setWindowModified(file_.changed());
    if (isActiveWindow()) RenewFigures();
  }
  QMainWindow::changeEvent(event);
}

void TF_wnmain::dragEnterEvent(QDragEnterEvent* event) {
  if (!LongWork::Running() && !DraggedFile(*event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void TF_wnmain::dropEvent(QDropEvent* event) {
  const QString path = DraggedFile(*event->mimeData());
  if (path.isEmpty()) return;
  event->acceptProposedAction();
  // The program that the file came from waits until this handler is done.
  OpenLater(ToPath(path));
}

void TF_wnmain::ShowTitle() {
  const QString name = FromPath(file_.paths().cards.filename()) + (file_.read_only() ? u" (nur lesen)"_s : QString());
  setWindowTitle(file_.IsOpen() ? u"%1[*] - %2"_s.arg(name, kTitle) : QString(kTitle));
  setWindowModified(file_.changed());
}

void TF_wnmain::ShowState() {
  ShowLearningCommands();
  ShowTitle();
  ShowRecent();
  ShowStartPage();
  BeginCheck();
}

void TF_wnmain::ShowLearningCommands() {
  EnableCommands(*this, file_.IsOpen(), program_.learning());
}

BeginFile TF_wnmain::LookAtFile() {
  const LearningParameters parameters = ReadParameters(program_.settings().ini);
  figures_at_ = program_.clock().Now();
  BeginFile begin;
  begin.path = file_.paths().cards;
  begin.figures = FiguresOf(file_, parameters, figures_at_);
  begin.after_run = begin.path == learned_;
  return begin;
}

void TF_wnmain::ShowStartPage() {
  if (!file_.IsOpen()) return ui_->FrameBegin->ShowNoFile();
  ui_->FrameBegin->ShowFile(LookAtFile());
}

void TF_wnmain::RenewFigures() {
  if (!file_.IsOpen() || LongWork::Running() || program_.clock().Now() - figures_at_ < kFiguresLast) return;
  ui_->FrameBegin->Renew(LookAtFile());
}

void TF_wnmain::ShowRecent() {
  std::vector<std::filesystem::path> files = RecentFiles(program_.settings().ini);
  std::erase(files, file_.paths().cards);
  ui_->FrameBegin->SetRecent(files);
  auto* menu = findChild<QMenu*>(u"MenuRecent"_s);
  menu->clear();
  menu->setEnabled(!files.empty());
  for (const std::filesystem::path& file : files) {
    QAction* action = menu->addAction(FromPath(file.stem()).replace(u'&', u"&&"_s));
    action->setStatusTip(FromPath(file));
    connect(action, &QAction::triggered, this, [this, file] { OpenLater(file); });
  }
}

void TF_wnmain::ShowAfterLearning() {
  learned_ = file_.paths().cards;
  ShowState();
  if (file_.changed()) ShowStatus(u"Änderungen noch nicht gespeichert"_s);
  raise();
  activateWindow();
}

void TF_wnmain::ShowStatus(const QString& text) {
  label_status_.setPalette({});
  label_status_.setText(text);
  label_status_.repaint();
}

void TF_wnmain::ShowStatus(const QString& text, Accent accent) {
  QPalette colours = palette();
  colours.setColor(QPalette::WindowText, AccentColour(accent, colours));
  label_status_.setPalette(colours);
  label_status_.setText(text);
  label_status_.repaint();
}

}  // namespace tessaro
