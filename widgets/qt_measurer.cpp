#include "widgets/qt_measurer.h"

#include "widgets/picture_store.h"
#include "widgets/text_cache.h"

namespace tessaro {

TextExtent QtMeasurer::Text(std::string_view text, const TextStyle& style) {
  return texts_.Measure(text, style);
}

PictureFile QtMeasurer::Picture(std::string_view name) {
  return pictures_.Find(name);
}

bool QtMeasurer::SoundExists(std::string_view name) {
  return !pictures_.PathOf(name).isEmpty();
}

ColourClass QtMeasurer::LinkColour(int64_t card_id) {
  return colours_ ? colours_(card_id) : ColourClass::Blue;
}

}  // namespace tessaro
