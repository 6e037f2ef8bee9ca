#pragma once

#include <functional>

#include "hypertext/layout.h"

namespace tessaro {

class PictureStore;
class TextCache;

// Answers the layout's questions from the machine's fonts and the card file's folders.
class QtMeasurer : public Measurer {
 public:
  // All three must live longer. Without a function of colours every link is blue. A picture larger than `card` is
  // measured as it fits into it.
  QtMeasurer(TextCache& texts, PictureStore& pictures, const std::function<ColourClass(int64_t)>& colours,
             PixelSize card)
      : texts_(texts), pictures_(pictures), colours_(colours), card_(card) {}
  CodePage Page() const override;
  TextExtent Text(std::string_view text, const TextStyle& style) override;
  PictureFile Picture(std::string_view name) override;
  bool SoundExists(std::string_view name) override;
  ColourClass LinkColour(int64_t card_id) override;

 private:
  TextCache& texts_;
  PictureStore& pictures_;
  const std::function<ColourClass(int64_t)>& colours_;
  PixelSize card_;
};

// The size, made smaller in its proportions until it fits into the room; no side becomes 0.
PixelSize FittedInto(PixelSize room, PixelSize size);

}  // namespace tessaro
