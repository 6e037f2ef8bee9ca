#pragma once

#include <QFont>
#include <QPrinter>
#include <string_view>

namespace tessaro {

// Prints a card side without media from its top, on as many sheets as it takes, in black on white with coloured links.
// False when the printer refuses.
bool PrintSide(QPrinter& printer, std::string_view side, const QFont& font);

}  // namespace tessaro
