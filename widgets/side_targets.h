#pragma once

#include <QRect>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "hypertext/layout.h"

namespace tessaro {

// Something on a side that answers to the mouse and to Enter, in paint-box coordinates.
struct SideTarget {
  enum class Kind { Link, Picture, Video } kind = Kind::Link;
  QRect rect;
  int32_t card = 0;  // of links; 0 leads to nothing
  std::string text;  // of links the face, of pictures and videos the name as written in the card
};

// The link areas of the layout in their order, then the pictures outside of links that `can_be_whole`, then the video
// area.
std::vector<SideTarget> TargetsOf(const Layout& layout, const std::function<bool(const Fragment&)>& can_be_whole);

}  // namespace tessaro
