// The check of the open card file: quietly after it was opened, and as a command.

#include "app/check_texts.h"
#include "app/dlcheck.h"
#include "app/frbegin.h"
#include "app/program.h"
#include "app/wnmain.h"
#include "settings/keys.h"
#include "settings/side_settings.h"
#include "ui_wnmain.h"
#include "widgets/long_work.h"

#include <QLocale>

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int kBeginAfter = 300;    // milliseconds: the start page is painted first
constexpr int64_t kCheckSlice = 4;  // milliseconds, so that no key press waits noticeably
constexpr int kRowsAtOnce = 200;

std::string MediaFolderName(Program& program) {
  return keys::kMediaFolder.Read(program.settings().ini);
}

}  // namespace

// It cannot run on another thread: the user may begin to learn at any time, and answers change the cards.
void TF_wnmain::BeginCheck() {
  check_timer_.stop();
  check_.reset();
  if (!file_.IsOpen() || file_.paths().cards != checked_) ui_->FrameBegin->ShowCheck({});
  if (file_.IsOpen()) check_timer_.start(kBeginAfter);
  program_.outlook().BeginSummary();
}

void TF_wnmain::ContinueCheck() {
  if (LongWork::Running()) return;
  if (!file_.IsOpen()) return check_timer_.stop();
  if (check_ == nullptr || check_->RowCount() != file_.cards().RowCount()) {
    check_ = std::make_unique<DeckCheck>(file_, program_.clock().Now());
    check_->LookForMedia(program_.disk(),
                         FoldersOf(file_.paths().cards, MediaFolderName(program_), ReadCodePages(file_.settings())));
    check_timer_.start(0);
  }
  const int64_t end = program_.clock().Milliseconds() + kCheckSlice;
  bool more = true;
  do {
    more = check_->Step(kRowsAtOnce);
  } while (more && program_.clock().Milliseconds() < end);
  if (more) return;
  check_timer_.stop();
  ShowCheck(check_->TakeReport());
  check_.reset();
}

void TF_wnmain::ShowCheck(const DeckReport& report) {
  checked_ = file_.paths().cards;
  const QString summary = SummaryText(report);
  ui_->FrameBegin->ShowCheck(summary.isEmpty() ? QString()
                                               : u"Bei der Prüfung der Kartei aufgefallen: %1."_s.arg(summary));
}

DeckReport TF_wnmain::CheckNow() {
  LongWork work(this, program_.clock());
  DeckCheck check(file_, program_.clock().Now());
  check.LookForMedia(program_.disk(),
                     FoldersOf(file_.paths().cards, MediaFolderName(program_), ReadCodePages(file_.settings())));
  work.NextStage(u"Kartei prüfen"_s, check.Range());
  while (check.Step(kRowsAtOnce)) work.SetPosition(check.Position());
  return check.TakeReport();
}

void TF_wnmain::RepairNow(const std::vector<DeckFinding>& findings) {
  int repaired = 0;
  {
    LongWork work(this, program_.clock());
    work.NextStage(u"Index aufbauen"_s, file_.cards().RowCount());
    repaired = RepairDeck(file_, findings, program_.clock().Now());
  }
  ShowState();
  ShowStatus(repaired == 1 ? u"Eine Reparatur ausgeführt, noch nicht gespeichert"_s
                           : u"%1 Reparaturen ausgeführt, noch nicht gespeichert"_s.arg(QLocale().toString(repaired)));
}

void TF_wnmain::KarteiPruefenExecute() {
  if (!file_.IsOpen() || LongWork::Running()) return;
  // A learning run knows its cards by row and number.
  if (!program_.CloseLearning()) return;
  const DeckReport report = CheckNow();
  if (report.findings.empty()) {
    ShowCheck(report);
    const QString good =
        report.cards == 1 ? u"\nDie Kartei ist in Ordnung.\nEine Karte geprüft."_s
                          : u"\nDie Kartei ist in Ordnung.\n%1 Karten geprüft."_s.arg(QLocale().toString(report.cards));
    return program_.messages().Information(this, good + PutAsideText(file_.ListPutAside()));
  }
  TF_dlcheck dialog(file_, report, this);
  if (dialog.exec() == QDialog::Accepted) RepairNow(dialog.Chosen());
  const QString put_aside = PutAsideText(file_.ListPutAside());
  if (!put_aside.isEmpty()) program_.messages().Information(this, put_aside);
  check_timer_.stop();
  ShowCheck(CheckNow());
}

}  // namespace tessaro
