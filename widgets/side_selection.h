#pragma once

#include <QPoint>
#include <QRect>
#include <QString>
#include <cstddef>
#include <vector>

#include "hypertext/layout.h"

namespace tessaro {

class TextCache;

// A place before a letter of a laid-out side.
struct TextPlace {
  size_t fragment = 0;
  int letter = 0;
  // Written out, for clang-tidy 14 takes the "= default" of it for a 0 that should be a nullptr.
  bool operator==(const TextPlace& other) const { return fragment == other.fragment && letter == other.letter; }
  bool operator<(const TextPlace& other) const {
    return fragment != other.fragment ? fragment < other.fragment : letter < other.letter;
  }
};

// The text that is marked on a side, from where the mouse was pressed to where it is.
class SideSelection {
 public:
  // Nothing is marked; then from here; up to there, before or behind the beginning.
  void Clear() { from_ = to_ = {}; }
  void Begin(TextPlace place) { from_ = to_ = place; }
  void ExtendTo(TextPlace place) { to_ = place; }
  // All text of this layout.
  void SelectAll(const Layout& layout);
  bool empty() const { return from_ == to_; }
  // What is marked, in paint-box coordinates.
  std::vector<QRect> Rects(const Layout& layout, TextCache& texts) const;
  // Lines end where they end on the side.
  QString Text(const Layout& layout, TextCache& texts) const;

 private:
  struct Part {
    const Fragment* fragment;
    int from;
    int to;
  };
  std::vector<Part> Parts(const Layout& layout, TextCache& texts) const;

  TextPlace from_;
  TextPlace to_;
};

// The place nearest to a point, in paint-box coordinates.
TextPlace PlaceAt(const Layout& layout, QPoint point, TextCache& texts);

}  // namespace tessaro
