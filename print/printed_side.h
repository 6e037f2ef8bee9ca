#pragma once

#include <QPoint>
#include <string_view>

#include "print/fitted_side.h"
#include "widgets/htmlview.h"
#include "widgets/text_cache.h"

class QPainter;

namespace tessaro {

class PictureStore;

// The smallest letters that are printed, in points, where a side is made smaller to fit.
inline constexpr int kReadablePoints = 6;

// Lays out and draws the sides of one look for paper: white, with letters that can be read on it.
class SidePrinter {
 public:
  // `pictures` must live longer.
  SidePrinter(const SideLook& look, PictureStore& pictures);

  int points() const { return points_; }
  // The least percentage, at most `most`, in which the letters of the side can still be read.
  int LeastPercent(int most) const;
  FittedSide Fit(std::string_view side, PixelSize room, const SideFit& fit);
  // Draws a strip of the side with its upper left corner in `place`, and nothing of it outside of the room.
  void Paint(QPainter& painter, const FittedSide& side, const Strip& strip, QPoint place, const QRect& room);

 private:
  SideLook look_;
  int points_;
  TextCache texts_;
  PictureStore& pictures_;
};

}  // namespace tessaro
