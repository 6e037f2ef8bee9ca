#pragma once

#include <cstdint>

#include "settings/learning_parameters.h"

// When a card whose newest answer was "known" is to be shown again. Selection, classification and the colours of links
// all ask here. Times in seconds since 1970.
namespace tessaro {

struct DueState {
  bool expired = false;         // its retention time has run out: due before now; due at this second is not yet due
  bool beyond_maximum = false;  // not shown for longer than the maximum time

  bool IsDue() const { return expired || beyond_maximum; }
};

// newest + score x weight, the product without its fraction.
int64_t DueTime(int64_t newest, int64_t score, const LearningParameters& parameters);
DueState DueStateAt(int64_t newest, int64_t score, const LearningParameters& parameters, int64_t now);

}  // namespace tessaro
