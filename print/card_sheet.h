#pragma once

#include "hypertext/layout.h"

namespace tessaro {

// Cards to be cut out: a sheet of paper is a grid of equal cells in its middle, whose fronts are on one page and whose
// backs on the next. Lengths in pixels of the layout.
struct CardSheet {
  PixelSize paper;
  int margin = 0;  // at least, on all sides
  int columns = 1;
  int rows = 1;

  int Cells() const { return columns * rows; }
  PixelSize CellSize() const;
  // Of the n-th cell, row by row from the top left.
  PixelRect Cell(int n) const;
  // The cell on the other page that lies behind this one when the paper is turned over its long edge.
  int Behind(int n) const;
  // How many sheets so many cards take.
  int Sheets(int cards) const { return cards / Cells() + (cards % Cells() > 0 ? 1 : 0); }
};

}  // namespace tessaro
