#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "hypertext/layout.h"

namespace tessaro {

// Letters half as wide as their font is high; the pictures, sounds and link colours that a test gives it.
struct FixedMeasurer : Measurer {
  std::map<std::string, PixelSize, std::less<>> pictures;
  std::set<std::string, std::less<>> unreadable;
  std::set<std::string, std::less<>> sounds;
  std::map<int64_t, ColourClass> colours;
  size_t longest_text = 0;
  CodePage page;

  CodePage Page() const override { return page; }
  TextExtent Text(std::string_view text, const TextStyle& style) override {
    longest_text = std::max(longest_text, text.size());
    return {static_cast<int>(text.size()) * style.points / 2, style.points, style.points * 3 / 4};
  }
  PictureFile Picture(std::string_view name) override {
    if (unreadable.contains(name)) return {PictureFile::State::Unreadable, {}};
    const auto picture = pictures.find(name);
    return picture == pictures.end() ? PictureFile() : PictureFile{PictureFile::State::Good, picture->second};
  }
  bool SoundExists(std::string_view name) override { return sounds.contains(name); }
  ColourClass LinkColour(int64_t card_id) override {
    const auto colour = colours.find(card_id);
    return colour == colours.end() ? ColourClass::Blue : colour->second;
  }
};

}  // namespace tessaro
