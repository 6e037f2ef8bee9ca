#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/side_code_page.h"

namespace tessaro {

struct PixelSize {
  int width = 0;
  int height = 0;
  bool operator==(const PixelSize&) const = default;
};

struct PixelRect {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  bool operator==(const PixelRect&) const = default;
};

struct TextStyle {
  int points = 0;
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool from_right = false;  // the letters run from right to left
  bool operator==(const TextStyle&) const = default;
};

// The colour of what is outside links, and of links by how their target stands: green = known and not due, red = due or
// wrong, blue = never learned, a navigation card or no card at all.
enum class ColourClass { Text, Green, Red, Blue };

// The room that a text takes: its advance, and the height of its line, of which `ascent` stands above the base line.
struct TextExtent {
  int width = 0;
  int height = 0;
  int ascent = 0;
};

struct PictureFile {
  enum class State { Missing, Unreadable, Good } state = State::Missing;
  PixelSize size;  // its own, of a good one
};

// What the layout asks of the place where it is shown. Sizes in pixels.
class Measurer {
 public:
  virtual ~Measurer() = default;
  // Of the texts. Where their letters run from right to left, so do the lines.
  virtual CodePage Page() const { return {}; }
  // Of "" the heights alone count. A long text is asked for in pieces of at most kLongestPiece bytes.
  static constexpr size_t kLongestPiece = 1000;
  virtual TextExtent Text(std::string_view text, const TextStyle& style) = 0;
  // `name` as written in the card.
  virtual PictureFile Picture(std::string_view name) = 0;
  // True when there is a sound file of this name.
  virtual bool SoundExists(std::string_view name) = 0;
  virtual ColourClass LinkColour(int64_t card_id) = 0;
};

struct Fragment {
  enum class Kind { Text, Picture, Video } kind = Kind::Text;
  PixelRect rect = {};
  std::string text;  // the text, entities replaced; of pictures and videos the name as written in the card
  TextStyle style = {};
  int baseline = 0;  // of texts: where the letters stand
  ColourClass colour = ColourClass::Text;
  bool framed = false;       // a thin frame around the rectangle, in the link colour inside a link
  bool transparent = false;  // pictures: white is transparent
  bool after_blank = false;  // of texts in lines that run from right to left: a blank stands before it
};

// Where a link is, borders included.
struct LinkArea {
  int left = 0;
  int top = 0;
  int bottom = 0;
  int right = 0;
  int32_t target = 0;  // card number; 0 leads to nothing
};

// The places of the links of one side. The first 110 links have an entry each; of all further ones only the last drawn
// is kept, in an overflow entry.
class LinkAreas {
 public:
  static constexpr size_t kEntries = 110;
  void Add(const LinkArea& area);
  // Which of areas() holds the point, borders included: the last drawn one; nothing where there is none.
  std::optional<size_t> IndexAt(int x, int y) const;
  const std::vector<LinkArea>& areas() const { return areas_; }

 private:
  std::vector<LinkArea> areas_;
};

// A side, laid out. The painter walks the fragments in order and computes no positions.
struct Layout {
  std::vector<Fragment> fragments;
  LinkAreas links;
  PixelSize size;                   // the paint box: the frame's size, grown to hold the content
  std::vector<std::string> sounds;  // sound files to be played when the side is shown, names as written in the card
  bool broken_off = false;          // an unreadable picture ended the side; what stands before it is here
};

inline constexpr int kPageMargin = 5;         // left and top
inline constexpr int kMaxMediaPixels = 4096;  // a picture that is wider or higher is scaled down
inline constexpr int kMaxExtent = 8000000;    // no side is laid out further down or to the right
inline constexpr size_t kMaxFragments = 250000;

// The size, made smaller in its proportions until no side is longer than kMaxMediaPixels; no side becomes 0.
PixelSize BoundedMedia(PixelSize size);

// Lays a side out bit by bit, so that a long one stops nobody. `start_points` is the font size that it begins with.
class LayoutWork {
 public:
  // `measurer` must live longer.
  LayoutWork(std::string_view side, PixelSize frame, int start_points, Measurer& measurer);
  ~LayoutWork();
  // Goes on for so many items of the side; false when it is whole.
  bool Continue(int items);
  // What stands already. Its size grows.
  const Layout& layout() const;
  Layout TakeLayout();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Lays a side out in a frame of the given size. `start_points` as above. Text wraps
// at the frame's width, also when a picture made the paint box wider. A side beyond the limits above is cut off there.
Layout LayOut(std::string_view side, PixelSize frame, int start_points, Measurer& measurer);

}  // namespace tessaro
