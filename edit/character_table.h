#pragma once

#include <string>
#include <string_view>

#include "edit/markup_tools.h"
#include "platform/side_code_page.h"
#include "store/file/ini_file.h"

namespace tessaro {

// The cells of the table of characters, one byte each, at first the printable characters that no key of a keyboard
// shows. A blank is an empty cell.
std::string DefaultCharacters(CodePage page = {});
// As the user left them, for the font of that side, in each code page. What cannot be read gives the characters of the
// beginning.
std::string ReadCharacters(const IniFile& settings, EditSide side, CodePage page = {});
void WriteCharacters(std::string_view characters, EditSide side, IniFile& settings, CodePage page = {});

}  // namespace tessaro
