#pragma once

#include <string>
#include <string_view>

namespace tessaro {

// What a person reads in a text file that a card names, as UTF-8: of rich text (".rtf") the letters and paragraphs
// without pictures and looks; plain text as it is, from UTF-8, UTF-16 with its mark, or else code page 1252. Any bytes
// give some text.
std::string ReadableText(std::string_view file);
// The beginning of a file, without the letter that it was cut in.
std::string_view WholeLetters(std::string_view beginning);

}  // namespace tessaro
