#include "settings/box_limits.h"

#include <algorithm>
#include <string>

#include "settings/setting.h"

namespace tessaro {
namespace {

constexpr std::array<int64_t, kLimitedBoxes> kHighestLimits = {999, 999, 9999, 9999, 99999};

template <typename Use>
void ForEachLimit(const Use& use) {
  for (size_t i = 0; i < kHighestLimits.size(); ++i) {
    const std::string key = "Fach" + std::to_string(i + 1);
    use(i, NumberSetting{"Leitner", key, BoxLimits().cards[i], 0, kHighestLimits[i]});
  }
}

}  // namespace

BoxLimits ReadBoxLimits(const IniFile& settings) {
  BoxLimits limits;
  ForEachLimit([&](size_t i, const NumberSetting& limit) { limits.cards[i] = limit.Read(settings); });
  return limits;
}

void WriteBoxLimits(const BoxLimits& limits, IniFile& settings) {
  ForEachLimit([&](size_t i, const NumberSetting& limit) { limit.Write(limits.cards[i], settings); });
}

}  // namespace tessaro
