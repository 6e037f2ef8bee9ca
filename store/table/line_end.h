#pragma once

namespace tessaro {

// What ends the lines of a table file.
enum class LineEnd { LineFeed, CrLf };

}  // namespace tessaro
