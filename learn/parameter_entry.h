#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "settings/learning_parameters.h"

namespace tessaro {

// The entries of the parameter dialog, in its order.
enum class ParameterField {
  MinWidth,
  MaxWidth,
  SwitchCount,
  CheckEvery,
  CheckRun,
  RetentionWeight,
  MaxDays,
  CheckPosition,  // of the open card file, 1 = start
};
inline constexpr size_t kParameterFields = 8;

// What stands in the fields. The weight takes "." and "," as decimal sign, all others are whole decimal numbers.
using ParameterTexts = std::array<std::string, kParameterFields>;

struct ParameterEntry {
  LearningParameters parameters;
  int64_t check_position = 1;
};

// The parameters of the program's settings, the position of the card file's ("CHK"/"rpos").
ParameterEntry ReadParameterEntry(const IniFile& program, const IniFile& card_file);
void WriteParameterEntry(const ParameterEntry& entry, IniFile& program, IniFile& card_file);

ParameterTexts ParameterTextsOf(const ParameterEntry& entry);
// The first field, in their order, whose text is no number or out of its range; nothing when all are good.
std::optional<ParameterField> FindWrong(const ParameterTexts& texts);
// True when this one field holds a number in its range; the maximum width is compared with the minimum width beside it.
bool IsGood(const ParameterTexts& texts, ParameterField field);
// The parameters that good texts stand for.
ParameterEntry EntryOf(const ParameterTexts& texts);

// Answers to the assistant's questions.
enum class Memory { Weak, Middling, Strong };
enum class CardKind { ShortFacts, Mixed, Difficult };

// Parameter values that suit such a learner and such cards, all within the ranges of the fields: who forgets quickly
// repeats among fewer cards and earlier, who keeps for long is asked later, difficult cards come in smaller portions.
LearningParameters SuggestParameters(Memory short_term, Memory long_term, CardKind kind);

}  // namespace tessaro
