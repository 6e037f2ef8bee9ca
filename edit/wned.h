#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <functional>
#include <memory>
#include <span>

#include "edit/card_desk.h"
#include "edit/card_media.h"
#include "edit/edited_sides.h"
#include "edit/editor_machine.h"

class QComboBox;
class QToolBar;

namespace tessaro {

class CardModel;
class TF_wnlink;
class TF_wnsign;
class TF_wnsuch;
class TF_wntab;

// The card editor: the window in which the user writes and arranges the cards of the open card file.
class TF_wned : public QMainWindow, private CardWatcher {
  Q_OBJECT

 public:
  // `made` counts the cards made since the program began.
  TF_wned(CardFile& file, ProgramSettings& settings, const EditorMachine& machine, int64_t& made,
          QWidget* parent = nullptr);
  ~TF_wned() override;

  // Shows a card of the card table; what was typed before is stored. 0: the one shown last.
  void ShowRow(int row);
  int row() const { return desk_.row(); }
  // Writes what was typed into the card. False: the user wants to look at it first.
  bool StoreSide();
  // The same, and removes the cards marked for deletion: before the whole file is changed, written or left.
  bool Settle();
  // Open the table of all cards, the search, the renumbering and the overviews; the editor itself may stay hidden.
  void ShowTable();
  void ShowSearch();
  void MNummerierenClick();
  void MHtmlAutoLink();
  // Fonts, colours or character sets of the card file are others.
  void SettingsChanged();
  // Whether anything of it is on screen.
  bool IsInUse() const;
  // What the search made last looks for; nothing when none was made.
  const std::optional<SearchQuery>& query() const { return desk_.query(); }
  // The cards marked in the table of all cards; none while that is closed.
  std::vector<int> MarkedRows() const;

 Q_SIGNALS:
  // The window and all that belongs to it are closed.
  void Closed();
  void SaveWanted();
  // Back to learning.
  void LearnWanted();
  // Cards are to be printed, asked for in this window: the editor or its table.
  void PrintWanted(QWidget* asker);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  friend struct EditorCommands;

  void MakeCommands();
  void MakeBoxes(QToolBar& cards, QToolBar& tags);
  void MakeStatusLine();
  void ConnectSides();
  void ConnectNavigation();
  void DressWindow();
  // Whether there is a card that may be changed; says so when the file may not.
  bool MayChange();

  // Stores the open side, does something to the cards, shows what is then there.
  void Do(const std::function<void()>& command);
  // The same for going to another card; says `otherwise` where there is none.
  void Go(const std::function<bool()>& go, const QString& otherwise = {});
  void GoBy(bool (CardDesk::*step)(), const QString& otherwise = {});
  void ShowCard();
  void ShowSides();
  void ShowPosition();
  void ShowCommands();
  void ShowLength();
  void ShowStatus(const QString& text);
  void TellStored(StoreOutcome outcome, const QString& hint);
  void TellMade(const DeskResult& result, bool empty_card);
  void KeepTyped();
  void FitSides();

  void MCardSaveToFile();
  void MCardBuildLinkIndex();
  void CheckLinkIndex(int64_t card_id);
  void MCardLeer();
  void MCardCopy();
  void MCardCut();
  void MCardPaste();
  void MCardDelete();
  void MCardDelStat();
  void TakeCommand(bool back);
  void MCardSearchMore();
  void Search(const std::function<SearchResult(const KeepGoing& keep_going)>& search);
  void SpeedButtonGoto();
  void SpeedButtonMarke(size_t mark);
  void FollowLink(int card_id);

  void MCardUndo();
  void MTextSign();
  void LinkOrIndex();
  void MarkCard(std::string_view tag);
  void HtmlThema();
  void HtmlHome();
  void HtmlAuto();
  void InsertMedia(const std::string& tag);
  void DropFiles(const QStringList& paths);
  void MHtmlTransferAll();
  void MHtmlLink();
  void FinishLink(const QString& face);
  void EndLink();
  void MHtmlAutoBild();
  void ReadTopics();

  SideField& ActiveText() { return sides_.active_field(); }
  void RowsShifted(const RowShift& shift) override;
  void CardsChanged(std::span<const int> rows, std::span<const int> columns) override;

  CardFile& file_;
  ProgramSettings& settings_;
  EditorMachine machine_;
  std::unique_ptr<Ui::TF_wned> ui_;
  CardDesk desk_;
  CardModel* model_;  // hears of shifts before the window, which shows it
  CardWatch watch_;
  EditedSides sides_;
  CardMedia media_;
  QTimer store_timer_;
  QLabel label_status_;
  QLabel label_length_;
  QComboBox* font_size_ = nullptr;
  QComboBox* topics_ = nullptr;
  std::unique_ptr<TF_wnlink> link_window_;
  std::unique_ptr<TF_wnsuch> search_window_;
  std::unique_ptr<TF_wntab> table_window_;
  std::unique_ptr<TF_wnsign> sign_window_;
  std::string shown_;   // ID of the card whose texts are shown
  QString left_out_;    // each character that did not come into its sides since they were stored
  bool ready_ = false;  // all of the window is made
  bool busy_ = false;   // a command of the editor itself changes the cards
};

}  // namespace tessaro
