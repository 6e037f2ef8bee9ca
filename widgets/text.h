#pragma once

#include <QString>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tessaro {

// Card text is bytes in code page 1252; windows speak QString. All 256 bytes survive the way there and back.
QString FromBytes(std::string_view bytes);
// Nothing when the text holds a character that the code page cannot hold.
std::optional<std::string> ToBytes(const QString& text);

// Text that the core has as UTF-8, such as that of text files.
QString FromUtf8(std::string_view text);

// File names are bytes, mostly UTF-8. Bytes that are none become lone surrogates, U+DC80 ... U+DCFF, which ToPath turns
// back, so that any name survives the way there and back.
QString FromPath(const std::filesystem::path& path);
std::filesystem::path ToPath(const QString& path);

}  // namespace tessaro
