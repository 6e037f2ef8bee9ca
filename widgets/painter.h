#pragma once

#include <QColor>
#include <QRect>

#include "hypertext/layout.h"

class QPainter;

namespace tessaro {

class PictureStore;
class TextCache;

struct SideLook;

// What a colour class looks like on the paper of a side.
QColor ColourOfClass(ColourClass colour, const SideLook& look);

// Draws the part of a laid-out side that lies in `clip`, which is in paint-box coordinates. Computes no positions.
// False when a picture could not be read: laid out anew, the side ends before it.
bool PaintSide(QPainter& painter, const Layout& layout, const QRect& clip, const SideLook& look, TextCache& texts,
               PictureStore& pictures);

}  // namespace tessaro
