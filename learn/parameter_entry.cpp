#include "learn/parameter_entry.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "settings/decimal_text.h"
#include "settings/keys.h"
#include "store/file/ini_file.h"

namespace tessaro {
namespace {

constexpr int64_t kMostCards = 999990;
constexpr double kMostWeight = 4.0;

struct Range {
  int64_t least;
  int64_t most;
};

constexpr size_t Place(ParameterField field) {
  return static_cast<size_t>(field);
}

std::string Trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::optional<int64_t> WholeNumber(const std::string& text) {
  const std::string digits = Trimmed(text);
  int64_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return number;
}

std::optional<double> DecimalNumber(const std::string& text) {
  std::string digits = Trimmed(text);
  std::replace(digits.begin(), digits.end(), ',', '.');
  double number = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return number;
}

int64_t NumberIn(const ParameterTexts& texts, ParameterField field, int64_t fallback) {
  return WholeNumber(texts[Place(field)]).value_or(fallback);
}

// The weight has decimals and is not in this list.
Range RangeOf(const ParameterTexts& texts, ParameterField field) {
  switch (field) {
    case ParameterField::MinWidth:
      return {2, kMostCards};
    case ParameterField::MaxWidth:
      return {NumberIn(texts, ParameterField::MinWidth, 2), kMostCards};
    case ParameterField::SwitchCount:
      return {5, 50};
    case ParameterField::CheckEvery:
      return {2, 20};
    case ParameterField::CheckRun:
      return {10, 2000};
    case ParameterField::MaxDays:
      return {14, 500};
    default:
      return {1, kMostCards + 1};
  }
}

}  // namespace

ParameterEntry ReadParameterEntry(const IniFile& program, const IniFile& card_file) {
  return {ReadParameters(program), keys::kCheckPosition.Read(card_file)};
}

void WriteParameterEntry(const ParameterEntry& entry, IniFile& program, IniFile& card_file) {
  WriteParameters(entry.parameters, program);
  keys::kCheckPosition.Write(entry.check_position, card_file);
}

ParameterTexts ParameterTextsOf(const ParameterEntry& entry) {
  const LearningParameters& p = entry.parameters;
  return {std::to_string(p.min_width),
          std::to_string(p.max_width),
          std::to_string(p.switch_count),
          std::to_string(p.check_every),
          std::to_string(p.check_run),
          WithComma(DecimalText(p.retention_weight)),
          std::to_string(p.max_time / kSecondsPerDay),
          std::to_string(entry.check_position)};
}

bool IsGood(const ParameterTexts& texts, ParameterField field) {
  if (field == ParameterField::RetentionWeight) {
    const std::optional<double> weight = DecimalNumber(texts[Place(field)]);
    return weight && *weight >= 1.0 && *weight <= kMostWeight;
  }
  const std::optional<int64_t> number = WholeNumber(texts[Place(field)]);
  const Range range = RangeOf(texts, field);
  return number && *number >= range.least && *number <= range.most;
}

std::optional<ParameterField> FindWrong(const ParameterTexts& texts) {
  for (size_t i = 0; i < kParameterFields; ++i) {
    const auto field = static_cast<ParameterField>(i);
    if (!IsGood(texts, field)) return field;
  }
  return std::nullopt;
}

ParameterEntry EntryOf(const ParameterTexts& texts) {
  const auto number = [&](ParameterField field) { return NumberIn(texts, field, 0); };
  ParameterEntry entry;
  LearningParameters& p = entry.parameters;
  p.min_width = number(ParameterField::MinWidth);
  p.max_width = number(ParameterField::MaxWidth);
  p.switch_count = number(ParameterField::SwitchCount);
  p.check_every = number(ParameterField::CheckEvery);
  p.check_run = number(ParameterField::CheckRun);
  p.retention_weight = DecimalNumber(texts[Place(ParameterField::RetentionWeight)]).value_or(1.0);
  p.max_time = number(ParameterField::MaxDays) * kSecondsPerDay;
  entry.check_position = NumberIn(texts, ParameterField::CheckPosition, 1);
  return entry;
}

LearningParameters SuggestParameters(Memory short_term, Memory long_term, CardKind kind) {
  struct ShortTerm {
    int64_t max_width;
    int64_t switch_count;
  };
  struct LongTerm {
    double weight;
    int64_t max_days;
  };
  // In the order weak, middling, strong.
  constexpr std::array<ShortTerm, 3> kShortTerm = {{{30, 5}, {50, 7}, {80, 10}}};
  constexpr std::array<LongTerm, 3> kLongTerm = {{{1.0, 180}, {1.2, 365}, {1.5, 500}}};

  const ShortTerm& now = kShortTerm[static_cast<size_t>(short_term)];
  const LongTerm& later = kLongTerm[static_cast<size_t>(long_term)];
  LearningParameters p;
  p.max_width = now.max_width;
  p.switch_count = now.switch_count;
  p.check_run = 500;
  p.retention_weight = later.weight;
  p.max_time = later.max_days * kSecondsPerDay;
  if (kind == CardKind::ShortFacts) {
    p.max_width = p.max_width * 3 / 2;
    p.check_every = 4;
  }
  if (kind == CardKind::Difficult) {
    p.max_width /= 2;
    p.switch_count = 5;
    p.check_every = 6;
  }
  return p;
}

}  // namespace tessaro
