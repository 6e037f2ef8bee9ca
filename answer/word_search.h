#pragma once

#include <cstddef>
#include <string_view>

#include "answer/tolerance.h"

namespace tessaro {

// Of a longer word only the beginning is looked at.
inline constexpr size_t kMostWord = 100;

// A character between two words.
bool PartsWords(char c);

// Whether a word, of kMostWord characters at most, stands anywhere in the key, but for what is allowed. Takes time in
// proportion to the key, whatever brackets it has.
bool HoldsWord(std::string_view key, std::string_view word, const Tolerance& tolerance, CodePage page);

}  // namespace tessaro
