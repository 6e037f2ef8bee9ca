#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "hypertext/layout.h"
#include "hypertext/media.h"
#include "hypertext/plain_text.h"
#include "hypertext/text_file.h"

using namespace tessaro;

namespace {

// Pictures, sounds and colours by the length of the name: any side meets all of them.
struct NameMeasurer : Measurer {
  TextExtent Text(std::string_view text, const TextStyle& style) override {
    return {static_cast<int>(text.size()) * style.points / 2, style.points, style.points * 3 / 4};
  }
  PictureFile Picture(std::string_view name) override {
    const auto size = static_cast<int>(name.size() % 7) * 5000;
    if (name.size() % 11 == 10) return {PictureFile::State::Unreadable, {}};
    return {size > 0 ? PictureFile::State::Good : PictureFile::State::Missing, {size + 1, size / 3 + 1}};
  }
  bool SoundExists(std::string_view name) override { return name.size() % 2 == 1; }
  ColourClass LinkColour(int64_t card_id) override { return static_cast<ColourClass>(card_id % 3 + 1); }
};

void Require(bool holds) {
  if (!holds) std::abort();
}

void CheckLayout(std::string_view side, PixelSize frame) {
  NameMeasurer measurer;
  const Layout layout = LayOut(side, frame, 12, measurer);
  Require(layout.size.width >= frame.width && layout.size.height >= frame.height);
  Require(layout.fragments.size() <= kMaxFragments && layout.links.areas().size() <= LinkAreas::kEntries + 1);
  for (const Fragment& fragment : layout.fragments) {
    Require(fragment.rect.left >= kPageMargin && fragment.rect.top >= kPageMargin);
    Require(fragment.rect.top + fragment.rect.height <= layout.size.height);
    Require(fragment.text.size() <= side.size());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view side(reinterpret_cast<const char*>(data), size);
  CheckLayout(side, {300, 200});
  CheckLayout(side, {1, 1});
  PlainText(side);
  ReadableText(side);
  for (const MediaKind kind : {MediaKind::Picture, MediaKind::Video, MediaKind::Sound, MediaKind::Text})
    FindDirective(side, kind);
  return 0;
}
