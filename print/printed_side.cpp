#include "print/printed_side.h"

#include <QFontInfo>
#include <QPainter>
#include <algorithm>

#include "hypertext/markup.h"
#include "widgets/painter.h"
#include "widgets/picture_store.h"
#include "widgets/qt_measurer.h"
#include "widgets/shown_side.h"
#include "widgets/side_look.h"

namespace tessaro {
namespace {

// Chosen for coloured paper, the letters may be too light for white.
SideLook ForPaper(SideLook look) {
  constexpr double kReadable = 4.5;
  if (Contrast(look.text, Qt::white) < kReadable) look.text = Qt::black;
  look.paper = Qt::white;
  // Places that fit the dots of a screen would be seen on paper.
  look.font.setHintingPreference(QFont::PreferNoHinting);
  return look;
}

}  // namespace

SidePrinter::SidePrinter(const SideLook& look, PictureStore& pictures)
    : look_(ForPaper(look)), points_(std::max(QFontInfo(look.font).pointSize(), kMinPoints)), pictures_(pictures) {
  texts_.SetFont(look_.font, 1, look_.page);
}

int SidePrinter::LeastPercent(int most) const {
  return std::min((kReadablePoints * 100 + points_ - 1) / points_, most);
}

FittedSide SidePrinter::Fit(std::string_view side, PixelSize room, const SideFit& fit) {
  const std::string shown = ShownSide(side);
  const auto lay_out = [&](PixelSize frame, bool in_height) {
    static const std::function<ColourClass(int64_t)> kAllBlue;
    // In a frame that grows, pictures do not: they become smaller with the letters.
    const PixelSize most = {std::max(std::min(frame.width, room.width) - 2 * kPageMargin, 1),
                            std::max(std::min(frame.height, room.height) - 2 * kPageMargin, 1)};
    QtMeasurer measurer(texts_, pictures_, kAllBlue, most);
    Layout layout = in_height ? LayOutWithin(shown, frame, points_, measurer) : LayOut(shown, frame, points_, measurer);
    FitPictures(layout, most);
    return layout;
  };
  return FitSide(lay_out, room, fit);
}

void SidePrinter::Paint(QPainter& painter, const FittedSide& side, const Strip& strip, QPoint place,
                        const QRect& room) {
  const int height = strip.bottom - strip.top;
  if (height <= 0) return;
  painter.save();
  painter.setClipRect(room, Qt::IntersectClip);
  painter.translate(place);
  painter.scale(side.percent / 100.0, side.percent / 100.0);
  painter.translate(0, -strip.top);
  const QRect shown(0, strip.top, side.layout.size.width, height);
  // Frames reach a dot out of what they are around.
  painter.setClipRect(shown.adjusted(0, -1, 0, 1), Qt::IntersectClip);
  PaintSide(painter, side.layout, shown, look_, texts_, pictures_);
  painter.restore();
}

}  // namespace tessaro
