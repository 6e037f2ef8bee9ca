#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "hypertext/layout.h"

namespace tessaro {

// Something that stands in a line: a run of text or a picture link.
struct LinePiece {
  Fragment fragment;              // without its place
  int width = 0;                  // how far it moves what follows
  int height = 0;                 // what it asks of its line
  int ascent = 0;                 // of texts
  std::optional<int32_t> target;  // of the first piece of a link's face
  bool in_link = false;           // of the further ones, where text runs from right to left
  bool blank = false;             // so runs the blank between two words
  int link_width = 0;             // of the whole face, with `target`
};

// Puts words into lines and blocks below one another, and keeps the layout's fragments, link areas and size.
class LineBuilder {
 public:
  // `page` is that of the texts.
  LineBuilder(PixelSize frame, Layout& layout, CodePage page);
  // Takes a piece of the word being gathered.
  void Add(LinePiece piece);
  // Puts the gathered word into the line, or into the next one when it does not fit.
  void EndWord();
  // Moves what follows in the line; never wraps. An underlined blank draws on the underline of the text before it when
  // an underlined text follows in the same line.
  void Advance(int width, bool underlined);
  // The same in lines that run from right to left, where blanks have their places among the words.
  void AddBlank(LinePiece blank);
  // Ends the word and the line. A line that holds nothing is `empty_height` high.
  void BreakLine(int empty_height);
  // Puts a picture or video area (its size in `fragment.rect`) on a line of its own.
  void PlaceBlock(Fragment fragment);
  // Ends the last line and settles the size of the paint box.
  void Finish();
  // True when a limit of the layout is reached: nothing more is placed.
  bool full() const { return full_; }

 private:
  bool JoinsUnderline() const;
  void FinishLine();
  // Puts the pieces of a line that runs from right to left into their places.
  void OrderFromRight();
  void AddLinkArea(size_t piece);
  void PlaceLine(int text_height, int ascent, int line_height);
  void Grow(const PixelRect& rect);

  PixelSize frame_;
  Layout& layout_;
  CodePage page_;
  bool from_right_;
  std::vector<LinePiece> word_;
  int64_t word_width_ = 0;
  std::vector<LinePiece> line_;  // placed from left to right; their vertical place follows when the line is whole
  int underlined_blank_ = 0;     // the width of the blank at the end of the line, when it is underlined
  int64_t x_ = kPageMargin;
  int64_t y_ = kPageMargin;
  size_t pieces_ = 0;
  bool full_ = false;
};

}  // namespace tessaro
