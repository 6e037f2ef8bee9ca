#pragma once

#include <cstdint>
#include <string>

namespace tessaro {

class IniFile;

inline constexpr int64_t kSecondsPerDay = 86400;

// The parameters of the automatic standard method, as they stand in the program's settings.
struct LearningParameters {
  int64_t min_width = 2;          // RNG/min: narrowest choice among the worst-known cards
  int64_t max_width = 50;         // RNG/max: widest one
  int64_t switch_count = 5;       // RNG/chn: this many unknown cards make the choice narrow
  int64_t check_every = 5;        // CHK/n: every n-th card comes from the checking pass
  int64_t check_run = 100;        // CHK/wi: cards looked at in one checking pass
  double retention_weight = 1.0;  // CHK/nt: factor on the predicted retention time, at least 1.0
  // CHK/max, there in days: seconds after which a card is repeated in any case
  int64_t max_time = 365 * kSecondsPerDay;
};

// A retention weight as it is typed and stored: with "." or "," as decimal sign; what is below 1.0 or no number is 1.0.
double ReadWeight(std::string text);

// Missing keys give the defaults.
LearningParameters ReadParameters(const IniFile& settings);
void WriteParameters(const LearningParameters& parameters, IniFile& settings);

}  // namespace tessaro
