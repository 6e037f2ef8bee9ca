#include "print/card_sheet.h"

#include <algorithm>

namespace tessaro {

PixelSize CardSheet::CellSize() const {
  return {std::max((paper.width - 2 * margin) / columns, 1), std::max((paper.height - 2 * margin) / rows, 1)};
}

PixelRect CardSheet::Cell(int n) const {
  const PixelSize size = CellSize();
  const int left = (paper.width - columns * size.width) / 2;
  const int top = (paper.height - rows * size.height) / 2;
  return {left + n % columns * size.width, top + n / columns * size.height, size.width, size.height};
}

int CardSheet::Behind(int n) const {
  const int column = n % columns;
  const int row = n / columns;
  // Upright paper turns over its side, broad paper over its head.
  return paper.width <= paper.height ? row * columns + columns - 1 - column : (rows - 1 - row) * columns + column;
}

}  // namespace tessaro
