#pragma once

#include <QColor>
#include <QFont>
#include <QScrollArea>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "hypertext/layout.h"
#include "hypertext/media.h"
#include "platform/side_code_page.h"
#include "widgets/side_targets.h"

namespace tessaro {

class VideoScreen;

// How a card side looks, and the code page of its text.
struct SideLook {
  QFont font;
  QColor text;
  QColor paper;
  CodePage page = {};
};

// The frame that shows one card side as hypertext. It scrolls vertically where the side is longer than the frame, and
// to the side only for what is wider than the column of text. Links answer to the mouse, and to Tab and Enter.
class TFrameHtml : public QScrollArea {
  Q_OBJECT

 public:
  explicit TFrameHtml(QWidget* parent = nullptr);
  ~TFrameHtml() override;

  // Where media are looked for, from the next side on.
  void SetMediaFolders(const MediaFolders& folders);
  // Gives the colour class of a link's target (see ColourClass). Without it all links are blue.
  void SetLinkColours(std::function<ColourClass(int64_t card_id)> colours);
  // Shows a side from its top. The sounds of the side are asked for once here, not at repaints. A long side is laid out
  // bit by bit; of one of more than a megabyte the beginning is shown.
  void ShowSide(std::string_view side, const SideLook& look);
  // The side that is shown, in other colours.
  void ChangeLook(const SideLook& look);
  // Enlarges the letters of all sides; 1 is their own size.
  void SetZoom(double zoom);
  const Layout& layout() const;
  CodePage page() const;
  // What answers to the mouse and to Enter, and which of it has the ring; -1: none.
  const std::vector<SideTarget>& targets() const;
  int selected_target() const;
  // Does what a click on it does.
  void Follow(int target);
  // Where a target stands in the frame.
  QRect PlaceOf(int target) const;

  // The text that was marked with the mouse; empty when none is.
  QString MarkedText() const;
  void MarkAll();

  // Opens the screen in the place of the side's video area, until the next side is shown or the panel is closed. Null
  // when the side has no video area.
  VideoScreen* OpenVideoPanel();
  void CloseVideoPanel();

 Q_SIGNALS:
  void LinkClicked(int card_id);                 // 0: the link leads to nothing
  void SoundWanted(const QString& path);         // a sound embed of the side just shown
  void VideoClicked(const QString& path);        // the video area was clicked; empty: there is no such file
  void VideoDoubleClicked(const QString& path);  // to be seen larger; a click came before
  void DrawingFailed();                          // the side could not be drawn whole; what was done before stays

 protected:
  bool event(QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  class PaintBox;

  void LayOutSide();
  void LayOutParts();
  void BeginLayout(PixelSize room, PixelSize card);
  void LayOutFor(int milliseconds);
  void LayOutMore();
  void TellSounds();
  void DressPaper();
  // Does a part of the drawing. When it throws, the side is given up and the failure told.
  void Guard(const std::function<void()>& work);
  void PlacePaintBox();
  void CollectTargets();
  bool HasVideo() const;
  void SelectTarget(int index);
  void Enlarge(int index);
  bool IsA(SideTarget::Kind kind, int index) const;
  bool CanBeWhole(const Fragment& picture) const;
  QString HintOf(int index) const;
  QString VideoPath();
  int TargetIndexAt(QPoint point) const;
  void TellDrawingFailed();

  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tessaro
