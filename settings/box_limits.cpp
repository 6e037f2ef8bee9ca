#include "settings/box_limits.h"

#include "settings/keys.h"

namespace tessaro {

BoxLimits ReadBoxLimits(const IniFile& settings) {
  BoxLimits limits;
  for (size_t i = 0; i < limits.cards.size(); ++i) limits.cards[i] = keys::kBoxLimits[i].Read(settings);
  return limits;
}

void WriteBoxLimits(const BoxLimits& limits, IniFile& settings) {
  for (size_t i = 0; i < limits.cards.size(); ++i) keys::kBoxLimits[i].Write(limits.cards[i], settings);
}

}  // namespace tessaro
