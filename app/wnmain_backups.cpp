// The backups of the open card file: made after a save, brought back by the user.

#include <QDateTime>
#include <algorithm>
#include <utility>

#include "app/dlrestore.h"
#include "app/program.h"
#include "app/wnmain.h"
#include "settings/backup_settings.h"
#include "store/file/card_text_count.h"
#include "widgets/long_work.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

const QString kBackups = u"Sicherungen und Karteien (*.ml~ *.ML~ *.mlb *.MLB)"_s;

QDateTime FromLocalTime(const LocalTime& time) {
  return {QDate(time.year, time.month, time.day), QTime(time.hour, time.minute, std::min(time.second, 59))};
}

void AddPutAside(const CardFile& file, const Disk& disk, std::vector<BackupOffer>& offers) {
  for (const ChangesPutAside& aside : file.ListPutAside()) {
    offers.push_back({.path = aside.path,
                      .saved = QDateTime::fromSecsSinceEpoch(aside.changes.last),
                      .bytes = disk.State(aside.path).value_or(FileState()).size,
                      .cards = {},
                      .put_aside = aside.changes.cards,
                      .fit = aside.fit && !file.changed()});
  }
}

}  // namespace

LocalTime ToLocalTime(int64_t seconds) {
  const QDateTime time = QDateTime::fromSecsSinceEpoch(seconds);
  const QDate date = time.date();
  return {date.year(), date.month(), date.day(), time.time().hour(), time.time().minute(), time.time().second()};
}

void TF_wnmain::KeepGeneration() {
  const fs::path& folder = program_.places().backups;
  const GenerationSettings settings = ReadGenerationSettings(program_.settings().ini);
  if (folder.empty() || !settings.on || !file_.on_disk()) return;
  const SavedCards saved = {file_.paths().cards, *file_.on_disk(), file_.stamp(), file_.CardCount()};
  const LocalTime now = ToLocalTime(program_.clock().Now());
  program_.RunInBackground(*this, [this, &disk = program_.disk(), folder, saved, now, settings] {
    const GenerationResult result = GenerationFolder(disk, folder).Add(saved, now, settings);
    return [this, result] { ShowGenerationResult(result); };
  });
}

void TF_wnmain::ShowGenerationResult(GenerationResult result) {
  if (result == GenerationResult::Failed) {
    ShowStatus(u"Gespeichert, aber die zusätzliche Sicherung ist misslungen"_s, Accent::Warning);
  } else if (result == GenerationResult::NoRoom) {
    ShowStatus(u"Gespeichert, aber für eine zusätzliche Sicherung ist zu wenig Platz"_s, Accent::Warning);
  }
}

std::vector<BackupOffer> TF_wnmain::BackupsOf(const fs::path& cards) {
  std::vector<BackupOffer> offers;
  const fs::path last = PathsFor(cards).backup;
  if (const std::optional<FileState> state = program_.disk().State(last)) {
    constexpr int64_t kNanosecondsPerSecond = 1'000'000'000;
    offers.push_back({.path = last,
                      .saved = QDateTime::fromSecsSinceEpoch(state->modified_ns / kNanosecondsPerSecond),
                      .bytes = state->size,
                      .cards = CountCardsIn(program_.disk(), last),
                      .last_save = true});
  }
  if (cards == file_.paths().cards) AddPutAside(file_, program_.disk(), offers);
  if (program_.places().backups.empty()) return offers;
  for (const Generation& generation : GenerationFolder(program_.disk(), program_.places().backups).Of(cards)) {
    offers.push_back({.path = generation.path,
                      .saved = FromLocalTime(generation.name.saved),
                      .bytes = generation.bytes,
                      .cards = generation.name.cards});
  }
  return offers;
}

fs::path TF_wnmain::ChooseBackup(const fs::path& cards) {
  const std::vector<BackupOffer> offers = cards.empty() ? std::vector<BackupOffer>() : BackupsOf(cards);
  if (!offers.empty()) {
    TF_dlrestore dialog(FromPath(cards.stem()), offers, this);
    if (dialog.exec() != QDialog::Accepted || !dialog.path().empty()) return dialog.path();
  }
  return ToPath(program_.messages().ChooseFileToOpen(this, u"Restore"_s, LastFolder(), kBackups));
}

void TF_wnmain::TakeOverPutAside(const fs::path& changes) {
  bool taken = false;
  {
    LongWork work(this, program_.clock());
    taken = file_.TakeOverPutAside(changes, ShowStages(work));
  }
  ShowState();
  if (taken) return ShowStatus(u"Änderungen übernommen, noch nicht gespeichert"_s);
  program_.messages().Error(
      this, u"\nDie Änderungen passen nicht\nzum Stand der Kartei.\n\n%1"_s.arg(FromPath(changes.filename())));
}

void TF_wnmain::MRestoreClick() {
  if (!LeaveFile()) return;
  const fs::path cards = file_.IsOpen() ? file_.paths().cards : refused_;
  const fs::path chosen = ChooseBackup(cards);
  if (chosen.empty()) return;
  // Without an open file a dated copy does not tell by its name which card file it is of.
  const bool of_refused = !file_.IsOpen() && chosen.parent_path() == program_.places().backups;
  if (chosen.extension() == PathsFor(cards).journal.extension()) return TakeOverPutAside(chosen);
  OpenReport report;
  {
    LongWork work(this, program_.clock());
    report = of_refused && !cards.empty() ? file_.RestoreAs(cards, chosen, ShowStages(work))
                                          : file_.Restore(chosen, ShowStages(work));
  }
  Tell(report, of_refused ? cards : chosen);
}

}  // namespace tessaro
