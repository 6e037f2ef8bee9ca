#pragma once

#include <string>
#include <string_view>

namespace tessaro {

// Adds a frame row of a card file: the mark and empty fields, without a line feed.
void AppendFrameRow(std::string& text, std::string_view mark);
// The names of the columns and the start row, as a card file begins.
std::string CardFileHead();

}  // namespace tessaro
