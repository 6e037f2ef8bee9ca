#pragma once

#include <array>
#include <cstdint>

namespace tessaro {

class IniFile;

inline constexpr int kLimitedBoxes = 5;  // of the Leitner boxes; box 6 has no limit

// How many cards a Leitner box should hold at most. Element k - 1 belongs to box k.
struct BoxLimits {
  std::array<int64_t, kLimitedBoxes> cards = {25, 50, 100, 250, 500};
};
// "Leitner"/"Fach1" ... "Fach5" of the program's settings, at most what the fields of the dialog hold: 3, 3, 4, 4 and 5
// digits.
BoxLimits ReadBoxLimits(const IniFile& settings);
void WriteBoxLimits(const BoxLimits& limits, IniFile& settings);

}  // namespace tessaro
