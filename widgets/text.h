#pragma once

#include <QString>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/side_code_page.h"

namespace tessaro {

// Text of the core is bytes in code page 1252, that of card sides in the code page of the side; windows speak QString.
// All 256 bytes survive the way there and back.
QString FromBytes(std::string_view bytes, CodePage page = {});
// Nothing when the text holds a character that the code page cannot hold.
std::optional<std::string> ToBytes(const QString& text, CodePage page = {});

// Text that the core has as UTF-8, such as that of text files.
QString FromUtf8(std::string_view text);

// File names are bytes, mostly UTF-8. Bytes that are none become lone surrogates, U+DC80 ... U+DCFF, which ToPath turns
// back, so that any name survives the way there and back.
QString FromPath(const std::filesystem::path& path);
std::filesystem::path ToPath(const QString& path);

}  // namespace tessaro
