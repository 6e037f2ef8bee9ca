#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/file_texts.h"
#include "app/start_wish.h"
#include "cards/deck_check.h"
#include "exchange/exchange_ties.h"
#include "store/file/backup_generations.h"
#include "store/file/card_file.h"
#include "widgets/theme.h"

namespace Ui {
class TF_wnmain;
}

namespace tessaro {

class LongWork;
class Program;
struct BackupOffer;
struct BeginFile;

// The time on the wall of a moment in seconds since 1970.
LocalTime ToLocalTime(int64_t seconds);

// The main window: the commands around the one open card file, and the start page.
class TF_wnmain : public QMainWindow {
  Q_OBJECT

 public:
  explicit TF_wnmain(Program& program);
  ~TF_wnmain() override;

  // Opens a card file as the user's command would; asks before the open one is left. False: it is not open; with a
  // dialog open, or long work under way, it is opened after that.
  bool OpenFile(const std::filesystem::path& path);
  // Opens it as soon as the message loop runs.
  void OpenLater(const std::filesystem::path& path);
  // Does what the start of the program asks for once the window has been painted, which says until then that the file
  // is being loaded.
  void FulfilAtStart(const StartWish& wish);
  // Comes to the front for another start of the program, and does what it asks for when no dialog is open.
  void FulfilForOtherStart(const StartWish& wish);

  void FileOpenExecute();
  void FileNewExecute();
  // False when the file was not saved; the user knows why.
  bool FileSaveExecute();
  void FileSaveAsExecute();
  void MBackupClick();
  void MRestoreClick();
  void IndexAufbauExecute();
  void KarteiPruefenExecute();
  void LernStartExecute();
  void LernAuswahlExecute();
  void LernEinstellungExecute();
  void MAboutClick();
  void MExportierenClick();
  void MImportierenClick();
  void MAbgleichClick();
  void MDelStatClick();
  void MTransferClick();
  // Puts the cards as they are in memory into the folder of dated copies. False: that failed, and the user does not
  // want to go on.
  bool KeepState(QWidget* asker);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool event(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void ConnectSignals();
  void MakeStatusLine();

  // False: the user wants to stay with the open card file, or it could not be saved.
  bool FormCloseQuery();
  // Asks to save a changed card file before another takes its place, and ends a learning run. False: stay.
  bool LeaveFile();
  // Saving is also asked for by the learning window, and its questions stand over that.
  QWidget* Asker();
  bool MayOverwrite();
  // Asks before a file is replaced that is protected from writing or has other names.
  bool MayReplace(const std::filesystem::path& target);
  void FulfilStart();
  void FulfilWhenFree(const StartWish& wish);
  void FulfilWaiting();
  void Fulfil(const StartWish& wish);
  // Samples are opened as copies in the user's own folder.
  bool LoadFile(const std::filesystem::path& chosen);
  // Offers the backup of a card file that is gone, which then is open under its name. False: there is none, or the user
  // does not want it.
  bool OpenBackupOf(const std::filesystem::path& missing, OpenReport& report);
  std::optional<std::filesystem::path> OwnFile(const std::filesystem::path& chosen);
  bool IsOpenFile(const std::filesystem::path& path) const;
  // Empty when the user chose none that may be written.
  std::filesystem::path ChooseTarget(const QString& title, const std::filesystem::path& proposed);
  // A name beside the open card file for a copy of it that is not there yet.
  std::filesystem::path CopyName() const;
  // Shows the free and the needed space. The result is the warning that it may run short, or empty.
  QString TellSpace(SaveKind kind, const std::filesystem::path& target);
  // Runs one of the ways to save and says what came of it. The warning stands in the status line to the end.
  using SaveStep = std::function<SaveResult(const StageObserver& observer)>;
  SaveResult Write(const std::filesystem::path& target, const QString& warning, const SaveStep& save);
  // That a file was saved which other programs cannot be kept away from.
  void TellIfNotLocked();
  StageObserver ShowStages(LongWork& work);
  // What came of opening the card file of this name.
  void Tell(OpenReport report, const std::filesystem::path& path);
  // Asks whether a file that was opened for reading only is to be changed all the same.
  void AskToWrite(OpenReport& report);
  // Asks whether to take over what an earlier run could not save, and does so.
  void AskForUnsaved(const UnsavedChanges& unsaved);
  void TellThatChangesAreNotKept();
  void KeepBytesPerCard();

  // Checks the open card file beside the work of the user, some time after it was opened.
  void BeginCheck();
  void ContinueCheck();
  void ShowCheck(const DeckReport& report);
  DeckReport CheckNow();
  void RepairNow(const std::vector<DeckFinding>& findings);

  ExchangeTies Ties();
  // Loads the open card file anew from the disk, without saving it.
  void LoadAgain(const std::filesystem::path& path);
  template <typename Dialog>
  void RunExchange();
  // Lets the user number the cards anew.
  void Renumber(QWidget* asker);

  // Copies the card file that was just saved into the folder of dated copies.
  void KeepGeneration();
  void ShowGenerationResult(GenerationResult result);
  // The backups of a card file, that of the last save first.
  std::vector<BackupOffer> BackupsOf(const std::filesystem::path& cards);
  void TakeOverPutAside(const std::filesystem::path& changes);
  // Lets the user choose what is to be restored over the card file `cards`; empty when nothing.
  std::filesystem::path ChooseBackup(const std::filesystem::path& cards);

  void ShowState();
  void ShowTitle();
  void ShowLearningCommands();
  // How the open card file stands now.
  BeginFile LookAtFile();
  void ShowStartPage();
  // Time goes on while the window waits behind others, and cards become due.
  void RenewFigures();
  void ShowRecent();
  void ShowAfterLearning();
  void ShowStatus(const QString& text);
  void ShowStatus(const QString& text, Accent accent);
  QString LastFolder() const;

  Program& program_;
  CardFile& file_;
  std::unique_ptr<Ui::TF_wnmain> ui_;
  QTimer check_timer_;
  std::unique_ptr<DeckCheck> check_;  // the one that is under way
  std::filesystem::path checked_;     // the card file that the start page shows findings of
  int64_t figures_at_ = 0;            // when the figures of the start page were looked up
  std::filesystem::path learned_;     // the card file of the last run
  StartWish at_start_;                // to be fulfilled once the window has been painted
  StartWish waiting_;                 // to be fulfilled when no dialog is open
  QTimer waiting_timer_;
  std::filesystem::path replaced_anyway_;  // the file of which the user said so last
  std::filesystem::path refused_;          // the card file that could not be opened last; its backups are offered
  QLabel label_status_;                    // what is or was done
  QLabel label_sizes_;                     // sizes of files and drives
};

}  // namespace tessaro
