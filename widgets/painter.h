#pragma once

#include <QColor>
#include <QRect>

#include "hypertext/layout.h"

class QPainter;

namespace tessaro {

class PictureStore;
class TextCache;

// What a colour class looks like; `text` is the colour outside links.
QColor ColourOfClass(ColourClass colour, const QColor& text);

// Draws the part of a laid-out side that lies in `clip`, which is in paint-box coordinates. Computes no positions.
// False when a picture could not be read: laid out anew, the side ends before it.
bool PaintSide(QPainter& painter, const Layout& layout, const QRect& clip, const QColor& text_colour, TextCache& texts,
               PictureStore& pictures);

}  // namespace tessaro
