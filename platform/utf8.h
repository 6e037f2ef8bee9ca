#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/side_code_page.h"

namespace tessaro {

// A character that is none, a surrogate for example, becomes U+FFFD.
void AppendUtf8(std::string& text, char32_t character);
// Bytes of a code page as UTF-8.
std::string Utf8FromCodePage(std::string_view bytes, CodePage page = {});
// The character that a text begins with and the number of its bytes; nothing when that is no UTF-8. `text` not empty.
std::optional<std::pair<char32_t, size_t>> FirstUtf8(std::string_view text);
bool IsUtf8(std::string_view text);

}  // namespace tessaro
