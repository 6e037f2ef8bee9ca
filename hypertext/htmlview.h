#pragma once

#include <QColor>
#include <QFont>
#include <QScrollArea>
#include <functional>
#include <string>
#include <string_view>

#include "hypertext/layout.h"
#include "hypertext/media.h"

namespace tessaro {

// How a card side looks: settings of the card file, the same in a light and a dark desktop.
struct SideLook {
  QFont font;
  QColor text;
  QColor paper;
};

// The frame that shows one card side as hypertext. It scrolls vertically where the side is longer than the frame.
class TFrameHtml : public QScrollArea {
  Q_OBJECT

 public:
  explicit TFrameHtml(QWidget* parent = nullptr);

  void SetMediaFolders(const MediaFolders& folders);
  // Gives the colour class of a link's target (see ColourClass). Without it all links are blue.
  void SetLinkColours(std::function<ColourClass(int64_t card_id)> colours);
  // Shows a side from its top. The sounds of the side are asked for once here, not at repaints.
  void ShowSide(std::string_view side, const SideLook& look);
  // Draws the side again, for example after the state of link targets changed; keeps the scroll position.
  void RefreshSide();
  const Layout& layout() const;

 Q_SIGNALS:
  void LinkClicked(int card_id);           // 0: the link leads to nothing
  void SoundWanted(const QString& path);   // a sound embed of the side just shown
  void VideoClicked(const QString& path);  // the video area was clicked
  void DrawingFailed();                    // the side could not be drawn whole; what was done before stays
};

}  // namespace tessaro
