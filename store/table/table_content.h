#pragma once

#include "store/table/column_list.h"
#include "store/table/line_end.h"
#include "store/table/row_order.h"
#include "store/table/row_store.h"

namespace tessaro {

// What a table holds, as its reader makes it and its writer takes it.
//
// The file: a line of column names, then a line a row, fields parted by the separator. A row's line feeds are written
// "\n", its backslashes "\\", its separators with a backslash before them:
//     ID;Text
//     1;one\; two\nnext line
// Names are not escaped when written, though a name that was read loses its escapes.
struct TableContent {
  ColumnList columns;
  RowStore rows;
  RowOrder order;
  LineEnd line_end = LineEnd::LineFeed;
  // The separator that the rows were read with.
  char loaded_separator = '\0';
};

}  // namespace tessaro
