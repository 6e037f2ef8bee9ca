// The commands of the main window that open and save card files.

#include <QApplication>
#include <QLocale>
#include <QTime>

#include "app/dlneu.h"
#include "app/frbegin.h"
#include "app/program.h"
#include "app/sample_files.h"
#include "app/wnmain.h"
#include "cards/code_page_change.h"
#include "settings/keys.h"
#include "settings/recent_files.h"
#include "widgets/long_work.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

const QString kCardFiles = u"Karteien (*.mlb *.MLB)"_s;

// The end of a stage's progress: characters of the file while reading, rows while building, fields while writing.
int64_t RangeOf(FileStage stage, uint64_t size, const CardFile& file) {
  constexpr int kLearnIndexColumns = 3;
  constexpr int kLinkIndexColumns = 2;
  const int64_t rows = file.CardCount() + 2;
  switch (stage) {
    case FileStage::SaveCards:
      return rows * file.cards().ColumnCount();
    case FileStage::SaveLearnIndex:
      return rows * kLearnIndexColumns;
    case FileStage::SaveLinkIndex:
      return rows * kLinkIndexColumns;
    default:
      return static_cast<int64_t>(size);
  }
}

bool IsLoadOfIndex(FileStage stage) {
  return stage == FileStage::LoadLearnIndex || stage == FileStage::LoadLinkIndex;
}

}  // namespace

QString TF_wnmain::LastFolder() const {
  if (file_.IsOpen()) return FromPath(file_.paths().cards.parent_path());
  const std::vector<fs::path> recent = RecentFiles(program_.settings().ini);
  if (!recent.empty()) return FromPath(recent.front().parent_path());
  return FromPath(program_.places().documents);
}

StageObserver TF_wnmain::ShowStages(LongWork& work) {
  const auto begun = [this, &work, no_index = false](FileStage stage, uint64_t size) mutable {
    no_index = no_index || (IsLoadOfIndex(stage) && size == 0);
    const QString size_text = StageSizeText(stage, size);
    if (!size_text.isEmpty()) label_sizes_.setText(size_text);
    // While saving cards the status line may hold the warning of little space: it stays.
    if (stage != FileStage::SaveCards) {
      ShowStatus(no_index && !IsLoadOfIndex(stage) ? u"Indextabellen werden aufgebaut"_s : StatusText(stage));
    }
    work.NextStage(StageText(stage), RangeOf(stage, size, file_));
  };
  return {begun, &work};
}

void TF_wnmain::FileOpenExecute() {
  if (!LeaveFile()) return;
  const QString path = program_.messages().ChooseFileToOpen(this, u"Kartei öffnen"_s, LastFolder(), kCardFiles);
  if (!path.isEmpty()) LoadFile(ToPath(path));
}

bool TF_wnmain::OpenFile(const fs::path& path) {
  // Whatever dialog is open, of whatever window, is answered first.
  if (LongWork::Running() || QApplication::activeModalWidget() != nullptr) {
    FulfilWhenFree({.card_file = path});
    return false;
  }
  return LeaveFile() && LoadFile(path);
}

bool TF_wnmain::LeaveFile() {
  if (!program_.CloseWindows()) return false;
  if (!file_.IsOpen()) return true;
  if (!file_.changed()) {
    (void)file_.SaveSettings();
    return true;
  }
  const Answer answer = program_.messages().Question(this, u"\nAktuelle Kartei\nzuerst speichern?"_s, u"Speichern"_s,
                                                     u"Nicht speichern"_s, u"Abbrechen"_s, Answer::Yes);
  return answer == Answer::No || (answer == Answer::Yes && FileSaveExecute());
}

std::optional<fs::path> TF_wnmain::OwnFile(const fs::path& chosen) {
  const fs::path& samples = program_.places().samples;
  if (samples.empty() || chosen.parent_path() != samples) return chosen;
  std::optional<fs::path> copy = OwnCopyOfSample(chosen, program_.places().documents);
  if (!copy) {
    program_.messages().Error(this, u"\nDas Beispiel kann nicht in den Ordner\n%1\nkopiert werden."_s.arg(
                                        FromPath(program_.places().documents)));
  }
  return copy;
}

bool TF_wnmain::LoadFile(const fs::path& chosen) {
  const std::optional<fs::path> path = OwnFile(chosen);
  if (!path) return false;
  OpenReport report;
  {
    LongWork work(this, program_.clock());
    report = file_.Open(*path, ShowStages(work));
  }
  if (report.result == OpenResult::CannotOpen) (void)OpenBackupOf(*path, report);
  refused_ = report.result == OpenResult::Opened ? fs::path() : program_.disk().Resolve(*path);
  if (report.result == OpenResult::CannotOpen) RemoveRecentFile(program_.settings().ini, *path);
  if (report.result == OpenResult::Opened) {
    learned_.clear();
    AddRecentFile(program_.settings().ini, file_.paths().cards);
    KeepBytesPerCard();
  }
  Tell(report, *path);
  if (file_.IsOpen()) FinishConversion(file_);
  return report.result == OpenResult::Opened && file_.IsOpen();
}

bool TF_wnmain::OpenBackupOf(const fs::path& missing, OpenReport& report) {
  const fs::path cards = program_.disk().Resolve(missing);
  const fs::path backup = PathsFor(cards).backup;
  const std::optional<FileState> state = program_.disk().State(backup);
  if (!state || program_.disk().Exists(cards)) return false;
  constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;
  const QString question = MissingText(cards, backup, state->modified_ns / kNanosecondsPerSecond);
  if (program_.messages().Question(this, question, u"Öffnen"_s, u"Nicht öffnen"_s, {}, Answer::Yes) != Answer::Yes) {
    return false;
  }
  file_.Close();
  LongWork work(this, program_.clock());
  report = file_.RestoreAs(cards, backup, ShowStages(work));
  return true;
}

void TF_wnmain::Tell(OpenReport report, const fs::path& path) {
  ShowState();
  program_.SaveSettings();
  label_sizes_.clear();
  if (report.result != OpenResult::Opened) {
    ShowStatus({});
    return program_.messages().Error(this, RefusalText(report, path));
  }
  const bool built = report.learn_index_rebuilt || report.link_index_rebuilt;
  const QString loaded =
      report.cards == 1 ? u"Eine Karte geladen"_s : u"%1 Karten geladen"_s.arg(QLocale().toString(report.cards));
  ShowStatus(built && !report.index_unfit ? loaded + u", Indextabellen aufgebaut"_s : loaded);
  if (report.read_only) AskToWrite(report);
  for (const QString& remark : RemarkTexts(report)) program_.messages().Error(this, remark);
  if (report.unsaved) AskForUnsaved(*report.unsaved);
}

void TF_wnmain::AskToWrite(OpenReport& report) {
  if (program_.messages().Question(this, NoLockText(file_.paths().cards), u"Nur lesen"_s, u"Trotzdem ändern"_s, {},
                                   Answer::Yes) == Answer::Yes) {
    return;
  }
  const OpenReport written = file_.WriteWithoutLock();
  report.unsaved = written.unsaved;
  report.put_aside = written.put_aside;
  ShowTitle();
}

void TF_wnmain::AskForUnsaved(const UnsavedChanges& unsaved) {
  const Answer answer = program_.messages().Question(this, UnsavedText(unsaved), u"Übernehmen"_s, u"Nicht übernehmen"_s,
                                                     u"Kartei schließen"_s, Answer::Yes);
  if (answer == Answer::Cancel) {
    // Nothing is decided: the next opening asks again.
    file_.Close();
    ShowState();
    return ShowStatus(u"Kartei geschlossen, nicht gespeicherte Antworten bleiben erhalten"_s);
  }
  if (answer == Answer::No) {
    const fs::path aside = file_.PutUnsavedAside();
    if (!aside.empty()) ShowStatus(u"Nicht übernommen, erhalten in %1"_s.arg(FromPath(aside.filename())));
    return;
  }
  bool built = false;
  {
    LongWork work(this, program_.clock());
    built = file_.TakeOverUnsaved(ShowStages(work));
  }
  ShowState();
  ShowStatus(u"Änderungen übernommen, noch nicht gespeichert"_s);
  if (!built) program_.messages().Error(this, DefectText(IndexDefect::LearnIndex));
}

void TF_wnmain::TellThatChangesAreNotKept() {
  program_.messages().Error(Asker(),
                            u"\nIhre Antworten können zur Zeit nicht\nlaufend auf die Platte geschrieben "
                            u"werden.\nVielleicht ist sie voll, oder der Ordner\nist schreibgeschützt.\n\nSie können "
                            u"weiterlernen. Bitte speichern "
                            u"Sie,\nbevor Sie das Programm beenden."_s);
}

void TF_wnmain::FileNewExecute() {
  if (!LeaveFile()) return;
  TF_dlneu dialog(program_.messages(), ToPath(LastFolder()), this);
  if (dialog.exec() != QDialog::Accepted) return;
  if (!file_.CreateNew(dialog.path())) {
    return program_.messages().Error(this, FailureText(SaveResult::CardsFailed, dialog.path()));
  }
  WriteCodePages(dialog.code_pages(), file_.settings());
  (void)file_.SaveSettings();
  AddRecentFile(program_.settings().ini, file_.paths().cards);
  program_.SaveSettings();
  ShowState();
  ShowStatus(u"Neue Kartei angelegt"_s);
  TellIfNotLocked();
  label_sizes_.clear();
}

void TF_wnmain::TellIfNotLocked() {
  if (!file_.IsOpen() || file_.locked() || file_.read_only()) return;
  ShowStatus(u"Gespeichert, aber nicht davor geschützt, dass ein zweites Programm die Kartei ändert"_s,
             Accent::Warning);
}

QString TF_wnmain::TellSpace(SaveKind kind, const fs::path& target) {
  IniFile& settings = program_.settings().ini;
  int64_t bytes_per_card = keys::kBytesPerCard.Read(settings);
  const SpaceEstimate space = file_.EstimateSpace(bytes_per_card, target);
  keys::kBytesPerCard.Write(bytes_per_card, settings);
  label_sizes_.setText(SpaceText(kind, target, space));
  if (space.Enough()) {
    ShowStatus(StageText(FileStage::SaveCards), Accent::Notice);
    return {};
  }
  ShowStatus(LowSpaceText(kind), Accent::Warning);
  return LowSpaceText(kind);
}

void TF_wnmain::KeepBytesPerCard() {
  const std::optional<FileState> state = program_.disk().State(file_.paths().cards);
  if (!state || file_.CardCount() == 0) return;
  keys::kBytesPerCard.Write(static_cast<int64_t>(state->size) / file_.CardCount(), program_.settings().ini);
}

QWidget* TF_wnmain::Asker() {
  QWidget* active = QApplication::activeWindow();
  return active != nullptr ? active : this;
}

bool TF_wnmain::MayOverwrite() {
  if (!file_.ChangedOnDisk()) return true;
  return program_.messages().Question(Asker(),
                                      u"\nEin anderes Programm hat die Kartei\nauf der Platte inzwischen geändert.\n\n"
                                      u"Soll sie durch die Kartei in diesem Fenster\nersetzt werden?"_s,
                                      u"Ersetzen"_s, u"Nicht speichern"_s, {}, Answer::No) == Answer::Yes;
}

bool TF_wnmain::MayReplace(const fs::path& target) {
  if (target == replaced_anyway_) return true;
  const QString question = TiesText(program_.disk().TiesOf(target), target);
  if (question.isEmpty()) return true;
  if (program_.messages().Question(Asker(), question, u"Ersetzen"_s, u"Nicht speichern"_s, {}, Answer::No) !=
      Answer::Yes) {
    return false;
  }
  replaced_anyway_ = target;
  return true;
}

bool TF_wnmain::FileSaveExecute() {
  if (!file_.IsOpen() || LongWork::Running()) return false;
  const fs::path& cards = file_.paths().cards;
  if (file_.read_only()) {
    program_.messages().Error(Asker(), FailureText(SaveResult::ReadOnly, cards));
    return false;
  }
  if (!program_.StoreEdited(true) || !MayOverwrite() || !MayReplace(cards)) return false;
  const SaveResult result = Write(cards, TellSpace(SaveKind::Plain, cards),
                                  [this](const StageObserver& observer) { return file_.Save(observer); });
  if (result != SaveResult::CardsFailed) KeepGeneration();
  if (result == SaveResult::Saved) ForgetConversion(file_);
  return result == SaveResult::Saved;
}

void TF_wnmain::FileSaveAsExecute() {
  const fs::path target = ChooseTarget(u"Kartei speichern unter"_s, file_.paths().cards);
  if (target.empty()) return;
  if (IsOpenFile(target)) {
    FileSaveExecute();
    return;
  }
  const SaveResult result = Write(target, TellSpace(SaveKind::AnotherName, target),
                                  [&](const StageObserver& observer) { return file_.SaveAs(target, observer); });
  if (result != SaveResult::CardsFailed) KeepGeneration();
  if (result == SaveResult::Saved) ForgetConversion(file_);
  AddRecentFile(program_.settings().ini, file_.paths().cards);
  ShowState();
  TellIfNotLocked();
}

void TF_wnmain::MBackupClick() {
  const fs::path target = ChooseTarget(u"Sicherungskopie anlegen"_s, CopyName());
  if (target.empty()) return;
  if (IsOpenFile(target)) {
    return program_.messages().Error(this,
                                     u"\nDas ist die offene Kartei selbst.\nBitte wählen Sie einen anderen Namen."_s);
  }
  const QString warning = TellSpace(SaveKind::AnotherName, target);
  const auto copy = [&](const StageObserver& observer) { return file_.SaveCopy(target, observer); };
  if (Write(target, warning, copy) != SaveResult::Saved) return;
  const QString text = warning.isEmpty() ? u"Backup nach Datei\n%1\nerfolgreich."_s
                                         : u"Backup nach Datei\n%1\nEventuell zu wenig\nPlatz auf Disk."_s;
  program_.messages().Information(this, text.arg(FromPath(target)));
}

bool TF_wnmain::IsOpenFile(const fs::path& path) const {
  return program_.disk().Resolve(path) == file_.paths().cards;
}

fs::path TF_wnmain::CopyName() const {
  const fs::path& cards = file_.paths().cards;
  const std::string stem = ShortName(cards.stem().string()) + "-Sicherung";
  fs::path copy = cards.parent_path() / (stem + ".mlb");
  for (int number = 2; program_.disk().Exists(copy); ++number)
    copy.replace_filename(stem + '-' + std::to_string(number) + ".mlb");
  return copy;
}

fs::path TF_wnmain::ChooseTarget(const QString& title, const fs::path& proposed) {
  const fs::path path = ToPath(program_.messages().ChooseFileToSave(this, title, FromPath(proposed), kCardFiles));
  if (path.empty()) return {};
  if (!HasCardFileType(path)) {
    OpenReport wrong_type;
    wrong_type.result = OpenResult::WrongType;
    program_.messages().Error(this, RefusalText(wrong_type, path));
    return {};
  }
  if (path.filename().string().size() > kLongestName) {
    program_.messages().Error(this, u"\nDer Name ist zu lang.\nBitte wählen Sie einen kürzeren."_s);
    return {};
  }
  return IsOpenFile(path) || MayReplace(path) ? path : fs::path();
}

SaveResult TF_wnmain::Write(const fs::path& target, const QString& warning, const SaveStep& save) {
  SaveResult result = SaveResult::Saved;
  {
    LongWork work(this, program_.clock());
    result = save(ShowStages(work));
  }
  setWindowModified(file_.changed());
  if (result != SaveResult::Saved) {
    ShowStatus(u"Nicht vollständig gespeichert"_s, Accent::Warning);
    program_.messages().Error(Asker(), FailureText(result, target));
    return result;
  }
  const QString saved = u"Gespeichert um %1"_s.arg(QTime::currentTime().toString(u"HH:mm"_s));
  warning.isEmpty() ? ShowStatus(saved) : ShowStatus(warning + u' ' + saved, Accent::Warning);
  KeepBytesPerCard();
  return result;
}

void TF_wnmain::IndexAufbauExecute() {
  bool built = false;
  SaveResult saved = SaveResult::Saved;
  {
    LongWork work(this, program_.clock());
    const StageObserver show = ShowStages(work);
    built = file_.RebuildIndexes(show);
    if (built) saved = file_.SaveIndexes(show);
  }
  ShowStatus(built ? u"Index neu aufgebaut"_s : QString());
  const QString failure = built ? FailureText(saved, file_.paths().cards) : DefectText(IndexDefect::LearnIndex);
  if (!failure.isEmpty()) program_.messages().Error(this, failure);
}

}  // namespace tessaro
