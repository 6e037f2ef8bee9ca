#pragma once

#include <QColor>
#include <QIcon>
#include <string_view>

namespace tessaro {

// The program's own icons, in one line weight, in the text colour of the palette of the moment. `name` is that of a
// file in widgets/icons, without its ending. An unknown name gives an empty icon.
QIcon Icon(std::string_view name);
// The same in a fixed colour; greyed like any other while its control is disabled.
QIcon Icon(std::string_view name, const QColor& colour);

}  // namespace tessaro
