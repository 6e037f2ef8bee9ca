#pragma once

#include <bitset>
#include <optional>
#include <string>
#include <string_view>

#include "platform/side_code_page.h"

// Multiple choice: the card's author writes options with numbers or letters on one side, and on the other the key: the
// number or letter of what is right, or several of them.
namespace tessaro {

enum class ChoicePage { Numbers = 0, Letters = 1 };

inline constexpr size_t kChoices = 19;  // 0 to 18, A to S
// Element i stands for the number i, or the i-th letter.
using Ticks = std::bitset<kChoices>;

// "0" ... "18", "A" ... "S".
std::string ChoiceName(ChoicePage page, size_t choice);

// Whether the key is that choice and nothing else; a letter in either case.
bool IsRightChoice(std::string_view key, ChoicePage page, size_t choice);

// The choices that the key names: those that have to be ticked, no fewer and no more. Nothing when no ticks can be
// right: the key names none, or what is no choice, or one twice, or all of them.
std::optional<Ticks> RightTicks(std::string_view key, ChoicePage page, CodePage code_page = {});

// Whether anything that can be chosen on the page is right.
bool CanBeRight(std::string_view key, ChoicePage page, CodePage code_page = {});
// The page on which something can be right, when there is one only.
std::optional<ChoicePage> PageOf(std::string_view key, CodePage code_page = {});

// Whether a text that a person reads is such a key and nothing else, so that no author can have meant an answer in
// words: choices of one page, without a letter beside numbers or a digit beside letters.
bool IsBareKey(std::string_view text, CodePage code_page = {});

}  // namespace tessaro
