#pragma once

#include <QMainWindow>
#include <QTimer>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "learn/answer_gate.h"
#include "learn/learning_commands.h"
#include "learn/method_choice.h"
#include "learn/notice.h"
#include "learn/outlook_lines.h"
#include "settings/program_settings.h"
#include "store/file/card_file.h"
#include "store/file/card_watcher.h"
#include "widgets/htmlview.h"
#include "widgets/messages.h"

namespace Ui {
class TF_wnlern;
}

namespace tessaro {

struct RunScreen;
class TF_dldata;
class VideoScreen;

// The learning window: one run of learning over the open card file, from showing the window to closing it. It shows the
// card and takes the answers; what they mean and which card comes next is the run's business.
class TF_wnlern : public QMainWindow, public LearningCommands, private CardWatcher {
  Q_OBJECT

 public:
  // All but `parent` must outlive the window. Options are read from and kept in `settings`, in memory.
  TF_wnlern(CardFile& file, ProgramSettings& settings, const Clock& clock, Random& random, Messages& messages,
            AnswerGate& gate, QWidget* parent = nullptr);
  ~TF_wnlern() override;

  // Goes on, or when the window is not yet shown begins, with this method.
  void LearnBy(MethodChoice choice);
  // Lets the user choose the method, a Leitner box for example, and goes on with it.
  void SpeedButtonLeitnerClick();

  CardOnScreen Card() const override;
  std::string_view FirstSide() const override;
  std::string_view SecondSide() const override;
  void Known() override;
  void NotKnown() override;
  void TypingDone(bool known) override;
  void ShowAnswer() override;
  // What the status field shows of the answer windows changed.
  void ShowChoiceStatus();

  // Which switch of an answer mode is on.
  void ShowAnswerMode(AnswerMode mode);
  // Gives an answer window its place under the card.
  void DockUnderCard(QWidget& window);
  // Shows a text to be copied in place of the side on screen, up to the next side, with `length` characters marked.
  void ShowTemplate(const std::string& text);
  void MarkTemplate(int place, int length);
  // Shows the side on screen as it is, in place of such a text.
  void HideTemplate();
  // The keys of the learning commands.
  const QList<QKeySequence>& learning_keys() const { return learning_keys_; }
  // To be called after settings were changed elsewhere while the window is open.
  void SettingsChanged();

  // To be called before the window is shown.
  void SetOutlook(OutlookLines lines) { outlook_ = std::move(lines); }
  // The video that was asked for came to its end, or could not be played.
  void VideoEnded(bool played);

 Q_SIGNALS:
  // The window was closed, its settings and the positions of the run are kept in memory.
  void Closed();
  // "Known" or "not known" was said of the card in this row, which another one has followed by now.
  void AnswerGiven(int row, bool known);
  // A step came to a card, perhaps the same as before; its first side is on screen. Comes after AnswerGiven.
  void CardShown();
  // Another side, or another card, is on screen.
  void SideShown();
  // The learner switched an answer mode on, or the one that was on off.
  void AnswerModeWanted(tessaro::AnswerMode mode);
  void LearningKeysChanged();
  // The user wants to see what his answers came to.
  void EvaluationWanted();
  // The user wants the card file saved; the run goes on.
  void SaveWanted();
  // The card on screen, by its row in the card table, is to be edited; 0: there is none.
  void EditWanted(int card_row);
  // Cards are to be printed, perhaps that on screen; as above.
  void PrintWanted(int card_row);
  // A sound or video that the card names is to be played. `screen` is the video's place in this window; null where the
  // card has none.
  void SoundWanted(const QString& path);
  void VideoWanted(const QString& path, tessaro::VideoScreen* screen);
  // Another card side comes: what is being played belongs to the old one.
  void MediaStopWanted();

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  using Command = std::function<StepResult(LearningRun&)>;

  void RowsShifted(const RowShift& shift) override;
  void CardsChanged(std::span<const int> rows, std::span<const int> columns) override;
  void ShowEdited();

  void ConnectAnswers();
  void ConnectNavigation();
  void ConnectMethods();
  void ConnectView();
  void ConnectModes();
  void ConnectNotice();
  // Keys of commands that are none of the learning commands.
  void NoteOwnKeys();

  void FormShow();
  void FormClose();
  void MakeRun();
  void StartRun();
  void TimerLernTimer();

  // Everything that the user does to the run goes through here: one command at a time, faults caught. Afterwards the
  // window is brought up to date, and then what there is to say is said. `done` says what the command did where the
  // card alone would not tell.
  void Do(const Command& command, const QString& done = {});
  void Tell(const StepResult& result);
  // The answer commands: `days` for the least score of a known card, 0 = none. Refused when an answer window must have
  // the answer.
  void AnswerCard(bool known, int days = 0);
  void AnswerUnrefused(bool known, int days);
  bool RefuseAnswer();
  void BtHandClick();
  void Weiss_ichExecute();
  void Lerne_ichExecute();
  void SpeedButtonTageClick(int days);
  void SpeedButtonUndoClick();
  void MAntwortZurueckClick();
  void MAntwortWiederClick();
  void SpeedButtonHomeClick();
  void SpeedButtonBackClick();
  void SpeedButtonVisClick();
  void SpeedButtonInversClick(bool on);
  void SpeedButtonTauschClick(bool on);
  void SpeedButtonSperreClick(bool on);
  void MethodClick(Method method);
  void MReiheAnfangClick();
  void MShortCutsDefClick();
  void TbCalcClick(bool on);
  void MNeueKartenClick(bool on);
  void MKopierenClick();
  void MSpeichernClick();
  void MAnsichtClick(bool below);
  void MAnzeigenClick(bool on);
  void MFrageClick(bool on);
  void MVollbildClick(bool on);
  void LinkClick(int card_id);
  // Leaves the card by `go`, with what the user says of it where the run wants to know.
  void Leave(const std::function<StepResult(LearningRun&, Rating)>& go);
  Rating AskWhetherKnown();
  void TakeChoice(LearningRun& run, MethodChoice choice);
  void SwitchStatistics(bool on);
  void ReadOptions();
  void ReadShortcuts();
  void ReadLooks();
  // Of the side that is shown.
  const SideLook& LookOnScreen() const;

  void ShowRun(bool card_changed = false);
  void ShowCard();
  void ShowCaption(const RunScreen& screen);
  void ShowFigures(const RunScreen& screen);
  void ShowControls(const RunScreen& screen);
  void ShowOptions(const RunOptions& options);
  void ShowMethod(const RunScreen& screen);
  void ShowStatistics();
  void ShowNotice(const RunScreen& screen);
  void ShowToday();
  void FocusNextStep(const RunScreen& screen, bool card_changed);

  CardFile& file_;
  ProgramSettings& settings_;
  const Clock& clock_;
  Random& random_;
  Messages& messages_;
  AnswerGate& gate_;
  std::unique_ptr<Ui::TF_wnlern> ui_;
  std::unique_ptr<LearningRun> run_;
  std::array<SideLook, 2> looks_;  // front and back
  QList<QKeySequence> learning_keys_;
  std::vector<std::pair<QAction*, QList<QKeySequence>>> own_keys_;  // which go where a learning command has the key
  QTimer timer_{this};
  QString turn_key_;  // the name of the key that turns the card
  int64_t start_milliseconds_ = 0;
  bool in_command_ = false;
  Method automatic_ = Method::Standard;       // what goes on when no box is learned: Standard or RowOrder
  std::optional<MethodChoice> first_choice_;  // given before the window was shown
  std::unique_ptr<TF_dldata> statistics_;     // while it is switched on
  Notice notice_ = Notice::None;
  OutlookLines outlook_;
  bool edited_ = false;       // cards changed outside learning, and the window does not show it yet
  bool card_edited_ = false;  // the card on screen among them
  CardWatch watch_{file_.watchers(), *this};
  QString said_;  // of the answer that the last command gave
  QString done_;  // what the last command did, where the card alone would not tell
};

}  // namespace tessaro
