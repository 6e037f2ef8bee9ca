#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "widgets/htmlview.h"
#include "widgets/picture_store.h"
#include "widgets/qt_measurer.h"
#include "widgets/side_selection.h"
#include "widgets/text_cache.h"

namespace tessaro {

inline constexpr int kNoTarget = -1;
inline constexpr int kSheetMargin = 16;  // paper around the paint box

// What the frame holds; seen by its own sources alone.
struct TFrameHtml::State {
  std::string side;
  SideLook look;
  std::function<ColourClass(int64_t)> colours;
  TextCache texts;
  PictureStore pictures;
  double zoom = 1;
  PixelSize card;               // the room for a picture
  bool whole_pictures = false;  // in their own size, however large
  std::unique_ptr<QtMeasurer> measurer;
  std::unique_ptr<LayoutWork> work;  // holds the layout
  QTimer continuation;               // runs while the layout is not whole
  size_t told_sounds = 0;
  std::vector<SideTarget> targets;
  int selected = kNoTarget;
  SideSelection marked;
  bool failure_told = false;
  QWidget* paper = nullptr;
  QWidget* paint_box = nullptr;
  VideoScreen* panel_video = nullptr;
};

}  // namespace tessaro
