#include "widgets/qt_measurer.h"

#include <QSize>
#include <algorithm>

#include "widgets/picture_store.h"
#include "widgets/text_cache.h"

namespace tessaro {

CodePage QtMeasurer::Page() const {
  return texts_.page();
}

TextExtent QtMeasurer::Text(std::string_view text, const TextStyle& style) {
  return texts_.Measure(text, style);
}

PictureFile QtMeasurer::Picture(std::string_view name) {
  PictureFile file = pictures_.Find(name);
  file.size = FittedInto(card_, file.size);
  return file;
}

bool QtMeasurer::SoundExists(std::string_view name) {
  return !pictures_.PathOf(name).isEmpty();
}

ColourClass QtMeasurer::LinkColour(int64_t card_id) {
  return colours_ ? colours_(card_id) : ColourClass::Blue;
}

PixelSize FittedInto(PixelSize room, PixelSize size) {
  if (size.width <= room.width && size.height <= room.height) return size;
  const QSize fitted = QSize(size.width, size.height).scaled(room.width, room.height, Qt::KeepAspectRatio);
  return {std::max(fitted.width(), 1), std::max(fitted.height(), 1)};
}

}  // namespace tessaro
