#pragma once

#include <QKeySequence>
#include <QStringList>
#include <QTabWidget>
#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "hypertext/media.h"
#include "widgets/htmlview.h"
#include "widgets/picture_loader.h"

class QAction;
class QPushButton;
class QToolButton;

namespace tessaro {

class IniFile;
class PaperPage;
class PictureView;
class TextPage;
class VideoScreen;

// The card side on screen: as hypertext on its paper, and on further pages what the side names to be shown with it: a
// picture, a text file, a video, a sound; then also the bare text of the side. Pages that the side has no use for are
// left out, and with them the tabs.
class CardPages : public QTabWidget {
  Q_OBJECT

 public:
  explicit CardPages(QWidget* parent = nullptr);

  // Where media are looked for and how links are coloured, from the next side on (see TFrameHtml).
  void SetMediaFolders(const MediaFolders& folders);
  void SetLinkColours(std::function<ColourClass(int64_t card_id)> colours);
  // Shows a side from its top, on the page that is to be seen first, and asks for its sounds.
  void ShowSide(std::string_view side, const SideLook& look);
  // Shows a text to be copied in place of the side, up to the next one.
  void ShowTemplate(const QString& text);
  // Marks characters of that text and brings them into view.
  void MarkTemplate(int place, int length);
  // Reads from there how large the letters are and whether the paper stays light in a dark desktop, and keeps there
  // what the user changes of it. `settings` must live longer.
  void KeepViewIn(IniFile& settings);
  // Enlarges the letters on all pages, in percent of their own size.
  void SetZoom(int percent);
  // Asks for all sounds of the side once more.
  void PlaySoundsAgain();
  // Takes away the screen that stands in the card.
  void CloseVideo();
  // What is marked on the page in front; empty when nothing is.
  QString SelectedText() const;
  // Scrolls the page in front by so many heights of it.
  void ScrollBy(int heights);
  // How wide the pages need to be for lines of about 75 letters.
  static int PaperWidth(const QFont& font);

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 Q_SIGNALS:
  void LinkClicked(int card_id);
  void SoundWanted(const QString& path);
  // `screen` is where it is to be seen; null: in a window of its own. Asked again for the same, it pauses or goes on.
  void VideoWanted(const QString& path, tessaro::VideoScreen* screen);
  void PictureFailed();
  void DrawingFailed();  // also: the video that was clicked is not there

 private:
  enum Page { kText, kPicture, kTextFile, kVideo, kSound, kHypertext, kPageCount };

  void AddPage(const QString& title, QWidget* content);
  void AddCommands();
  QAction* AddCommand(const QString& text, const QString& name, const QList<QKeySequence>& keys,
                      const std::function<void()>& command);
  void AddSound(const QString& path);
  void ShowSpeaker();
  void FillText();
  // How the side looks on this desktop.
  SideLook LookNow() const;
  void ChangeLook();
  void ConnectFrame();
  // The file that a directive of the side names; `first` becomes true when it wants to be seen before the card's text.
  std::optional<std::filesystem::path> NamedFile(std::string_view side, MediaKind kind, bool& first) const;
  bool ShowPicture(const std::filesystem::path& path);
  QWidget* MakeVideoPage();
  QWidget* MakeSoundPage();
  QPushButton* MakeButton(const QString& text, const QString& name, const std::function<void()>& command);
  void PlayVideo();
  void EnlargeVideo(const QString& path);
  void ShowPages(std::string_view side);
  void Dress(const SideLook& look);

  MediaFolders folders_;
  IniFile* settings_ = nullptr;
  SideLook look_ = {font(), Qt::black, Qt::white};  // as the card file has it
  bool white_paper_ = false;
  int zoom_ = 100;
  std::string side_;
  bool text_filled_ = false;
  QStringList sounds_;  // of the side, in its order
  PictureLoader loader_;
  std::array<PaperPage*, kPageCount> pages_{};
  TFrameHtml* frame_ = nullptr;
  QToolButton* speaker_ = nullptr;
  QAction* sound_again_ = nullptr;
  QAction* stays_white_ = nullptr;
  TextPage* text_ = nullptr;
  PictureView* picture_ = nullptr;
  TextPage* text_file_ = nullptr;
  VideoScreen* video_ = nullptr;
  QString video_path_;
  QString sound_path_;
};

}  // namespace tessaro
