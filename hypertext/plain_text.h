#pragma once

#include <string>
#include <string_view>

namespace tessaro {

// What a person reads on a card side: letters and the faces of links, with blanks and line ends, without markup and
// media. No blanks or line ends at its ends.
std::string PlainText(std::string_view side);
// That of its first bytes, enough for a line or a title however long the side is.
std::string PlainBeginning(std::string_view side);

}  // namespace tessaro
