#pragma once

#include <QString>
#include <string>

#include "platform/side_code_page.h"

namespace tessaro {

// What was typed, as card text of that code page, character by character: a character that the code page lacks, and so
// no card has, becomes a zero byte, so that places are the same in both.
std::string TypedBytes(const QString& text, CodePage page);

}  // namespace tessaro
