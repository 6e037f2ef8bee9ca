#include "widgets/painter.h"

#include <QPainter>
#include <QPainterPath>

#include "widgets/picture_store.h"
#include "widgets/side_look.h"
#include "widgets/text_cache.h"

namespace tessaro {
namespace {

constexpr int kCameraSize = 16;
constexpr int kLinkFrame = 2;

QRect ToQt(const PixelRect& rect) {
  return {rect.left, rect.top, rect.width, rect.height};
}

void PaintText(QPainter& painter, const Fragment& fragment, TextCache& texts) {
  if (fragment.text.empty()) return;
  const QTextLayout& letters = *texts.Find(fragment.text, fragment.style).letters;
  letters.lineAt(0).draw(&painter, QPointF(fragment.rect.left, fragment.baseline));
  if (!fragment.style.underline) return;
  const auto [below, thickness] = texts.UnderlineOf(fragment.style);
  painter.fillRect(fragment.rect.left, fragment.baseline + below, fragment.rect.width, thickness,
                   painter.pen().color());
}

// Four bars rather than an outline: these are sharp at every scale.
void PaintFrame(QPainter& painter, const QRect& rect, int width) {
  const QColor colour = painter.pen().color();
  const QRect outer = rect.adjusted(-width, -width, width, width);
  painter.fillRect(outer.left(), outer.top(), outer.width(), width, colour);
  painter.fillRect(outer.left(), rect.bottom() + 1, outer.width(), width, colour);
  painter.fillRect(outer.left(), rect.top(), width, rect.height(), colour);
  painter.fillRect(rect.right() + 1, rect.top(), width, rect.height(), colour);
}

bool PaintPicture(QPainter& painter, const Fragment& fragment, const QColor& paper, PictureStore& pictures) {
  const QRect rect = ToQt(fragment.rect);
  const QSize device_size = painter.deviceTransform().mapRect(QRectF(rect)).size().toSize();
  const QPixmap picture = pictures.Picture(fragment.text, device_size, fragment.transparent);
  if (picture.isNull() && pictures.IsBeingRead(fragment.text)) {
    QColor place = painter.pen().color();
    place.setAlphaF(0.06F);
    painter.fillRect(rect, place);
    return true;
  }
  if (picture.isNull()) return false;
  // What is drawn in dark lines on nothing needs light paper.
  constexpr int kHalfLight = 128;
  if (picture.hasAlphaChannel() && paper.lightness() < kHalfLight) painter.fillRect(rect, Qt::white);
  painter.drawPixmap(rect, picture);
  return true;
}

// A film camera seen from the side: two reels, a body, a lens.
void PaintCamera(QPainter& painter, QPoint centre) {
  const QColor colour = painter.pen().color();
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.translate(centre - QPoint(kCameraSize / 2, kCameraSize / 2));
  QPainterPath camera;
  camera.setFillRule(Qt::WindingFill);
  camera.addEllipse(QRectF(1, 1, 5, 5));
  camera.addEllipse(QRectF(6, 1, 5, 5));
  camera.addRoundedRect(QRectF(0, 7, 11, 8), 1.5, 1.5);
  camera.addPolygon(QPolygonF({{11.5, 10}, {16, 7.5}, {16, 14.5}, {11.5, 12}, {11.5, 10}}));
  painter.fillPath(camera, colour);
  painter.restore();
}

void PaintVideo(QPainter& painter, const Fragment& fragment) {
  const QRect rect = ToQt(fragment.rect);
  QColor screen = painter.pen().color();
  screen.setAlphaF(0.06F);
  painter.fillRect(rect, screen);
  PaintCamera(painter, rect.topLeft() + QPoint(rect.width() / 2, rect.height() / 2));
}

}  // namespace

QColor ColourOfClass(ColourClass colour, const SideLook& look) {
  switch (colour) {
    case ColourClass::Green:
      return ReadableOn(look.paper, {0, 128, 0});
    case ColourClass::Red:
      return ReadableOn(look.paper, {255, 0, 0});
    case ColourClass::Blue:
      return ReadableOn(look.paper, {0, 0, 255});
    case ColourClass::Text:
      break;
  }
  return look.text;
}

bool PaintSide(QPainter& painter, const Layout& layout, const QRect& clip, const SideLook& look, TextCache& texts,
               PictureStore& pictures) {
  bool all_read = true;
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  for (const Fragment& fragment : layout.fragments) {
    // Slanted letters and frames reach a little out of their rectangles.
    const int slack = fragment.rect.height / 2 + 1;
    if (!ToQt(fragment.rect).adjusted(-slack, -kLinkFrame, slack, kLinkFrame).intersects(clip)) continue;
    painter.setPen(ColourOfClass(fragment.colour, look));
    bool drawn = true;
    if (fragment.kind == Fragment::Kind::Text) PaintText(painter, fragment, texts);
    if (fragment.kind == Fragment::Kind::Picture) drawn = PaintPicture(painter, fragment, look.paper, pictures);
    if (fragment.kind == Fragment::Kind::Video) PaintVideo(painter, fragment);
    // The frame of a link has a meaning by its colour, so it is broad enough to show one.
    const int frame = fragment.colour == ColourClass::Text ? 1 : kLinkFrame;
    if (fragment.framed && drawn) PaintFrame(painter, ToQt(fragment.rect), frame);
    all_read = all_read && drawn;
  }
  return all_read;
}

}  // namespace tessaro
