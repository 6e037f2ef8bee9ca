#pragma once

#include <QString>
#include <string>

namespace tessaro {

// What was typed, as card text, character by character: a character that the code page lacks, and so no card has,
// becomes a zero byte, so that places are the same in both.
std::string TypedBytes(const QString& text);

}  // namespace tessaro
