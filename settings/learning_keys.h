#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <utility>

namespace tessaro {

class IniFile;

// The learning commands that have a key of the user's choice.
enum class LearningCommand { Turn, Known, NotKnown, Back, Home };
inline constexpr size_t kLearningCommands = 5;

// Keys as they are stored: virtual key codes plus the bits of the modifiers (see shortcut_code.h).
using LearningKeys = std::array<int64_t, kLearningCommands>;
// Backspace, Enter, Delete, End, Home.
inline constexpr LearningKeys kStandardKeys = {8, 13, 46, 35, 36};

// Section "LShortCuts". A value below 1 means that no key is stored: the standard key holds.
LearningKeys ReadLearningKeys(const IniFile& settings);
void WriteLearningKeys(const LearningKeys& keys, IniFile& settings);
// The first two commands that have the same key; the earlier one gets it.
std::optional<std::pair<LearningCommand, LearningCommand>> FindDoubledKey(const LearningKeys& keys);

}  // namespace tessaro
