#pragma once

#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <array>
#include <functional>
#include <memory>
#include <span>

#include "edit/card_desk.h"
#include "hypertext/media.h"
#include "platform/clock.h"
#include "platform/disk.h"
#include "settings/program_settings.h"
#include "widgets/htmlview.h"
#include "widgets/messages.h"

class QComboBox;
class QImage;
class QToolBar;

namespace Ui {
class TF_wned;
}

namespace tessaro {

class CardModel;
class SideField;
class TF_wnlink;
class TF_wnsign;
class TF_wnsuch;
class TF_wntab;

// What the editor asks of the machine and of its user. All of it must outlive the window.
struct EditorMachine {
  const Clock& clock;
  Disk& disk;
  Messages& messages;
  // Keeps the cards as they are before all of them change; false: they are to stay so. May be empty.
  std::function<bool(QWidget* asker)> keep_state = {};
};

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
  // Opens the table of all cards, the search, the renumbering and the overviews; the editor itself may stay hidden.
  void ShowTable();
  void ShowSearch();
  void MNummerierenClick();
  void MHtmlAutoLink();
  // Whether anything of it is on screen.
  bool IsInUse() const;

 Q_SIGNALS:
  // The window and all that belongs to it are closed.
  void Closed();
  void SaveWanted();
  // Back to learning.
  void LearnWanted();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  friend struct EditorCommands;

  void MakeCommands();
  void MakeBoxes(QToolBar& bar);
  void MakeStatusLine();
  void ConnectSides();
  void ConnectNavigation();
  void DressWindow();
  void ReadLooks();
  void ShowLooks();
  // Whether there is a card that may be changed; says so when the file may not.
  bool MayChange();

  // Stores the open side, does something to the cards, shows what is then there.
  void Do(const std::function<void()>& command);
  void Go(bool moved, const QString& otherwise);
  void ShowCard();
  void ShowSides();
  void ShowPosition();
  void ShowCommands();
  void ShowPreview();
  void ShowLength();
  void ShowStatus(const QString& text);
  void TellStored(StoreOutcome outcome);
  void TellMade(const DeskResult& result, bool empty_card);
  void KeepTyped();
  void Activate(EditSide side);
  void FitSides();

  void MCardSaveToFile();
  void MCardSave();
  void MCardBuildLinkIndex();
  void MCardLeer();
  void MCardCopy();
  void MCardCut();
  void MCardPaste();
  void MCardDelete();
  void MCardDelStat();
  void MCommandUndo();
  void MCommandRedo();
  void MCardGoHome();
  void MCardGoAuto();
  void MCardGoLastLink();
  void MCardTop();
  void MCardGoNext();
  void MCardGoBack();
  void MCardBottom();
  void MCardSearchMore();
  void Search(const std::function<SearchResult(const KeepGoing& keep_going)>& search);
  void SpeedButtonGoto();
  void SpeedButtonMarke(size_t mark);
  void SpeedButtonGoMarke(size_t mark);
  void FollowLink(int card_id);

  void MTextUndo();
  void MTextRedo();
  void MCardUndo();
  void MTextClear();
  void CutText();
  void CopyText();
  void PasteText();
  void MTextSign();
  void MTextRegister();
  void LinkOrIndex();

  void InsertTagText(std::string_view tag);
  void Enclose(std::string_view open, std::string_view close);
  void MarkCard(std::string_view tag);
  void HtmlFontSize(int index);
  void HtmlThema();
  void HtmlHome();
  void HtmlAuto();
  void MHtmlInfo();
  void MHtmlTrans();
  void MHtmlTransferAll();
  void MHtmlLink();
  void FinishLink(const QString& face);
  void EndLink();
  void MHtmlAutoBild();
  void ReadTopics();

  enum class MediaUse { Picture, Media, TextFile, PictureFile, VideoFile };
  void InsertMedia(MediaUse use);
  void InsertFile(MediaUse use, const QString& path);
  void DropFiles(EditSide side, const QStringList& paths);
  void PastePicture(EditSide side, const QImage& picture);
  MediaFolders Folders() const;
  std::filesystem::path MediaFolder() const;
  // The name by which a card names the file, copied where the user wants it so. Empty: not at all.
  std::string NameFor(MediaUse use, const QString& path);
  std::string CopyToMedia(const std::filesystem::path& file);

  SideField& TextOf(EditSide side);
  SideField& ActiveText() { return TextOf(active_); }
  void RowsShifted(const RowShift& shift) override;
  void CardsChanged(std::span<const int> rows, std::span<const int> columns) override;

  CardFile& file_;
  ProgramSettings& settings_;
  EditorMachine machine_;
  std::unique_ptr<Ui::TF_wned> ui_;
  CardDesk desk_;
  CardModel* model_;  // hears of shifts before the window, which shows it
  CardWatch watch_;
  std::array<SideLook, 2> looks_;
  EditSide active_ = EditSide::Front;
  QTimer preview_timer_;
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
  bool ready_ = false;  // all of the window is made
  bool busy_ = false;   // a command of the editor itself changes the cards
};

}  // namespace tessaro
