// The commands that bring cards out of the program and into it.

#include <QDateTime>

#include "app/program.h"
#include "app/wnmain.h"
#include "edit/command_stack.h"
#include "edit/dlnumm.h"
#include "exchange/dldel.h"
#include "exchange/dlexp.h"
#include "exchange/dlimp.h"
#include "exchange/dltrans.h"
#include "exchange/dlupd.h"
#include "settings/backup_settings.h"
#include "widgets/long_work.h"
#include "widgets/messages.h"
#include "widgets/text.h"

namespace tessaro {
using namespace Qt::Literals::StringLiterals;

ExchangeTies TF_wnmain::Ties() {
  return {.file = file_,
          .disk = program_.disk(),
          .clock = program_.clock(),
          .messages = program_.messages(),
          .settings = program_.settings().ini,
          .folder = ToPath(LastFolder()),
          .keep_state = [this](QWidget* asker) { return KeepState(asker); },
          .renumber = [this](QWidget* asker) { Renumber(asker); },
          .load = [this](const std::filesystem::path& path) { LoadAgain(path); },
          .open = [this](const std::filesystem::path& path) { OpenFile(path); }};
}

void TF_wnmain::LoadAgain(const std::filesystem::path& path) {
  if (program_.CloseWindows()) LoadFile(path);
}

bool TF_wnmain::KeepState(QWidget* asker) {
  const std::filesystem::path& folder = program_.places().backups;
  if (folder.empty()) return true;
  GenerationResult result = GenerationResult::Failed;
  {
    LongWork work(asker, program_.clock());
    const CardTable& cards = file_.cards();
    work.NextStage(u"Stand sichern"_s, int64_t{cards.RowCount()} * cards.ColumnCount());
    result = GenerationFolder(program_.disk(), folder)
                 .AddCards(file_.paths().cards, file_.cards(), ToLocalTime(program_.clock().Now()),
                           ReadGenerationSettings(program_.settings().ini), &work);
  }
  if (result == GenerationResult::Made) return true;
  return program_.messages().Question(asker,
                                      u"Der jetzige Stand konnte nicht zu den Sicherungen gelegt werden.\nTrotzdem "
                                      u"weitermachen?"_s,
                                      u"Weitermachen"_s, u"Abbrechen"_s, {}, Answer::No) == Answer::Yes;
}

void TF_wnmain::Renumber(QWidget* asker) {
  constexpr size_t kNothingKept = 0;  // the dated copy leads back
  CommandStack commands(file_, kNothingKept);
  TF_dlnumm(file_, commands, program_.messages(), program_.clock(), kFirstCardRow, asker, [this](QWidget* dialog) {
    return KeepState(dialog);
  }).exec();
}

template <typename Dialog>
void TF_wnmain::RunExchange() {
  // What is typed in the editor belongs to the cards that the dialog works on.
  if (LongWork::Running() || (file_.IsOpen() && !program_.StoreEdited(true))) return;
  {
    Dialog dialog(Ties(), this);
    dialog.exec();
  }
  program_.SaveSettings();
  ShowState();
}

void TF_wnmain::MExportierenClick() {
  if (file_.IsOpen()) RunExchange<TF_dlexp>();
}
void TF_wnmain::MImportierenClick() {
  if (file_.IsOpen()) RunExchange<TF_dlimp>();
}
void TF_wnmain::MAbgleichClick() {
  if (file_.IsOpen()) RunExchange<TF_dlupd>();
}
void TF_wnmain::MDelStatClick() {
  if (file_.IsOpen()) RunExchange<TF_dldel>();
}
void TF_wnmain::MTransferClick() {
  RunExchange<TF_dltrans>();
}

}  // namespace tessaro
