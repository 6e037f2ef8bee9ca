#pragma once

#include <functional>

#include "hypertext/layout.h"

namespace tessaro {

class PictureStore;
class TextCache;

// Answers the layout's questions from the machine's fonts and the card file's folders.
class QtMeasurer : public Measurer {
 public:
  // All three must live longer. Without a function of colours every link is blue.
  QtMeasurer(TextCache& texts, PictureStore& pictures, const std::function<ColourClass(int64_t)>& colours)
      : texts_(texts), pictures_(pictures), colours_(colours) {}
  TextExtent Text(std::string_view text, const TextStyle& style) override;
  PictureFile Picture(std::string_view name) override;
  bool SoundExists(std::string_view name) override;
  ColourClass LinkColour(int64_t card_id) override;

 private:
  TextCache& texts_;
  PictureStore& pictures_;
  const std::function<ColourClass(int64_t)>& colours_;
};

}  // namespace tessaro
