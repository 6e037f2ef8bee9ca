#include "settings/learning_parameters.h"

#include <charconv>
#include <cmath>
#include <string>

#include "platform/saturating.h"
#include "store/file/ini_file.h"

namespace tessaro {
namespace {

constexpr double kLeastWeight = 1.0;

}  // namespace

double ReadWeight(std::string text) {
  const size_t comma = text.find(',');
  if (comma != std::string::npos) text[comma] = '.';
  const size_t begin = text.find_first_not_of(" \t+");
  if (begin == std::string::npos) return kLeastWeight;
  double weight = 0;
  std::from_chars(text.data() + begin, text.data() + text.size(), weight);
  return std::isfinite(weight) && weight > kLeastWeight ? weight : kLeastWeight;
}

std::string WeightText(double weight) {
  char digits[400];
  const auto end = std::to_chars(digits, digits + sizeof digits, weight, std::chars_format::fixed);
  std::string text(digits, end.ptr);
  return text.find('.') == std::string::npos ? text + ".0" : text;
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
  settings.SetString("CHK", "nt", WeightText(parameters.retention_weight));
  settings.SetInt("CHK", "max", parameters.max_time / kSecondsPerDay);
}

}  // namespace tessaro
