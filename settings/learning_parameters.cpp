#include "settings/learning_parameters.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/saturating.h"
#include "settings/decimal_text.h"
#include "store/file/ini_file.h"

namespace tessaro {
namespace {

constexpr double kLeastWeight = 1.0;

}  // namespace

double ReadWeight(std::string text) {
  return std::max(kLeastWeight, LeadingDecimal(std::move(text)).value_or(kLeastWeight));
}

LearningParameters ReadParameters(const IniFile& settings) {
  LearningParameters parameters;
  const auto read = [&](std::string_view section, std::string_view key, int64_t& value) {
    value = settings.GetInt(section, key, value);
  };
  read("RNG", "min", parameters.min_width);
  read("RNG", "max", parameters.max_width);
  read("RNG", "chn", parameters.switch_count);
  read("CHK", "n", parameters.check_every);
  read("CHK", "wi", parameters.check_run);
  parameters.retention_weight = ReadWeight(settings.GetString("CHK", "nt", "1.0"));
  const int64_t days = settings.GetInt("CHK", "max", parameters.max_time / kSecondsPerDay);
  parameters.max_time = SaturatingMultiply(days, kSecondsPerDay);
  return parameters;
}

void WriteParameters(const LearningParameters& parameters, IniFile& settings) {
  settings.SetInt("RNG", "min", parameters.min_width);
  settings.SetInt("RNG", "max", parameters.max_width);
  settings.SetInt("RNG", "chn", parameters.switch_count);
  settings.SetInt("CHK", "n", parameters.check_every);
  settings.SetInt("CHK", "wi", parameters.check_run);
  settings.SetString("CHK", "nt", DecimalText(parameters.retention_weight));
  settings.SetInt("CHK", "max", parameters.max_time / kSecondsPerDay);
}

}  // namespace tessaro
