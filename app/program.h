#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "app/outlook_windows.h"
#include "learn/answer_gate.h"
#include "learn/method_choice.h"
#include "platform/clock.h"
#include "platform/disk.h"
#include "platform/random.h"
#include "settings/program_settings.h"
#include "store/file/card_file.h"
#include "widgets/background.h"
#include "widgets/messages.h"

namespace tessaro {

class AnswerModes;
class HelpDesk;
class TF_wnmain;
class TF_wned;
class TF_wnlern;
class TF_wnmedia;
struct CodePageChange;
struct SideCodePages;

// What the program asks of the machine and of its user; tests bring their own.
struct Machine {
  Disk& disk;
  const Clock& clock;
  Random& random;
  Messages& messages;
  Background* background = nullptr;  // null: what belongs there is done at once
};

struct ProgramPlaces {
  std::filesystem::path settings;   // tessaro.ini; need not exist
  std::filesystem::path samples;    // the folder with the sample card files; empty = none
  std::filesystem::path documents;  // the user's own folder for card files; need not exist
  // The folder of dated copies of card files; need not exist; empty: none are made.
  std::filesystem::path backups = {};
  std::filesystem::path help = {};  // the card file of the help; empty: there is none
};

// The places on this machine.
ProgramPlaces StandardPlaces();

// Owns what lives as long as the program runs: the one open card file, the settings, the windows. It is the only place
// where windows learn of each other.
class Program : public QObject {
  Q_OBJECT

 public:
  // Reads the settings and makes the main window, hidden. What the machine refers to must outlive the program.
  Program(const Machine& machine, ProgramPlaces places);
  ~Program() override;

  // What all windows share, alive as long as the program.
  CardFile& file() { return file_; }
  ProgramSettings& settings() { return settings_; }
  const Clock& clock() const { return machine_.clock; }
  Disk& disk() { return machine_.disk; }
  Messages& messages() { return machine_.messages; }
  const ProgramPlaces& places() const { return places_; }
  TF_wnmain& main_window() { return *main_window_; }
  OutlookWindows& outlook() { return outlook_; }
  HelpDesk& help() { return *help_; }

  // Opens the learning window over the open card file, or brings it to the front. With a choice it learns by that; else
  // by the automatic method used last, and an open window goes on as it is.
  void OpenLearning(std::optional<MethodChoice> choice = std::nullopt);
  // Lets the user choose the method, the Leitner boxes in front or not, and opens the learning window with it.
  void ChooseMethod(bool boxes);
  // Closes the learning window if it is open; it has kept its positions then. False: it cannot be closed now, because a
  // dialog of its own waits for an answer, and what was to happen after that must not.
  [[nodiscard]] bool CloseLearning();
  bool learning() const;
  // Lets the user set the options, and puts them into effect.
  void ShowOptions();
  // Opens the card editor over the open card file on this row of its table, or brings it to the front. 0: on the card
  // being learned, else on the one edited last.
  void OpenEditor(int card_row = 0);
  // The table of all cards and the renumbering belong to the editor, which may stay hidden.
  void OpenTable();
  void OpenSearch();
  void NumberCards();
  void MakeOverviews();
  // Lets the user print cards; `card_row` is the one that he looks at, 0: none.
  void PrintCards(QWidget* asker, int card_row = 0);
  // Stores what is typed in the editor; `whole_file` also removes the cards marked for deletion. False: the user wants
  // to look at it first.
  bool StoreEdited(bool whole_file);
  // Closes what stands over the open card file: evaluation, forecast, editor and learning window. False: one of them
  // has to stay, and so has the card file.
  [[nodiscard]] bool CloseWindows();
  // See Background::Run.
  void RunInBackground(QObject& receiver, BackgroundWork work);
  // Writes tessaro.ini, making its folder. A failure is of no consequence for the cards and is not told.
  void SaveSettings();

 Q_SIGNALS:
  // The learning window has come, it has gone, the editor has gone: all else about them is as it was before then.
  void LearningOpened();
  void LearningClosed();
  void EditorClosed();

 private:
  void MakeLearningWindow();
  void TieMedia(TF_wnlern& learning);
  // Asks when the next answers would wipe the statistics of cards. False: the user does not want to learn now.
  bool MayLearn();
  void EndLearning();
  // For a window that is still busy with being closed.
  void DeleteLater(std::unique_ptr<QWidget> window);
  TF_wned& Editor();
  void EndEditing();
  void ChangeCodePages(const CodePageChange& change);
  // False, and told: all is as it was.
  bool ConvertCards(const SideCodePages& to);

  Machine machine_;
  ProgramPlaces places_;
  ProgramSettings settings_;
  bool settings_readable_ = false;
  CardFile file_;
  AnswerGate answer_gate_;  // between the learning window and the answer windows
  bool input_check_on_ = true;
  std::unique_ptr<HelpDesk> help_;
  OutlookWindows outlook_{file_, settings_, machine_.clock};
  std::unique_ptr<TF_wnmain> main_window_;
  std::unique_ptr<TF_wnmedia> media_window_;
  std::vector<QPointer<QWidget>> closed_windows_;  // those that are not deleted yet
  std::unique_ptr<TF_wnlern> learning_window_;
  std::unique_ptr<TF_wned> editor_;
  int64_t cards_made_ = 0;                     // by the editor since the program began
  std::unique_ptr<AnswerModes> answer_modes_;  // beside the learning window
};

}  // namespace tessaro
