#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "hypertext/layout.h"

namespace tessaro {

// How a side may be enlarged or made smaller until its room holds it, in percent of the size that it is laid out in.
struct SideFit {
  int most = 100;
  int least = 100;
  // Whether the side has to end within the height of its room; else only its words have to be within the width.
  bool in_height = true;
};

// A side as it stands on paper: laid out in a frame, then drawn in `percent` of that size.
struct FittedSide {
  Layout layout;
  PixelSize content;  // how far the fragments reach, in pixels of the layout
  int percent = 100;
  bool cut = false;  // even so it does not fit
};

// A length of the layout on paper, rounded up.
int LengthOnPaper(int length, int percent);

// Lays a side out in a frame of this size. What it comes to below the frame need not be whole when `in_height`.
using SideLayer = std::function<Layout(PixelSize frame, bool in_height)>;

// Lays the side out for a room on paper in the largest of the usual sizes between the bounds in which it fits, else in
// the smallest; without `in_height` then in the largest, since no size would show all of it.
FittedSide FitSide(const SideLayer& lay_out, PixelSize room, const SideFit& fit);

// Makes the pictures and videos that are larger than the room smaller in their proportions; what is below them moves
// up.
void FitPictures(Layout& layout, PixelSize room);

// LayOut, left off once it is known that the side is higher than its frame even without its pictures.
Layout LayOutWithin(std::string_view side, PixelSize frame, int start_points, Measurer& measurer);

// A part of a layout, from `top` down to `bottom`.
struct Strip {
  int top = 0;
  int bottom = 0;
  bool operator==(const Strip&) const = default;
};

// Cuts a layout between its lines into strips that are at most so high. What is higher by itself is cut through. A side
// that shows nothing is one strip without height.
std::vector<Strip> CutIntoStrips(const Layout& layout, int height);

}  // namespace tessaro
