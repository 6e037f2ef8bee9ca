#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "store/table/card_columns.h"

// A card's answers as its columns TimeRow and YesNoRow keep them: 64 times and 64 letters, the newest first.
//
// TimeRow is written in three forms, and all of them are read: after an answer 64 numbers, each followed by a blank,
// blank (BlankTimeRow) 64 numbers with blanks between them, after an undo 63 numbers, each followed by a blank.
namespace tessaro {

inline constexpr char kKnownLetter = 'w';
inline constexpr char kNotKnownLetter = 'f';  // also stands in an empty slot

using AnswerTimes = std::array<int64_t, kHistoryLength>;
using AnswerLetters = std::array<char, kHistoryLength>;

struct AnswerHistory {
  AnswerTimes times{};      // seconds since 1970; 0 is an empty slot
  AnswerLetters letters{};  // as they stand in the file, so perhaps no letters at all; '\0' past a row's end
  bool corrected = false;   // the oldest time did not fit and was dropped
};

// Reads both columns. An oldest time more than 730 days before its successor, or after it, is dropped.
AnswerHistory ParseHistory(std::string_view time_row, std::string_view yes_no_row);
// The same up to the first time 0, behind which all are 0: the answers that a card has, in less time.
AnswerHistory ParseAnswers(std::string_view time_row, std::string_view yes_no_row);
// 64 times 0 and "f".
AnswerHistory EmptyHistory();

// Puts an answer in front and drops the oldest one. From the first letter on that is neither "w" nor "f" all become
// "f".
void PushAnswer(AnswerHistory& history, char letter, int64_t time);
// The same as ParseHistory(...).times[0], but cheap: a misfit is never dropped from the newest two.
int64_t NewestTime(std::string_view time_row);
// '\0' for an empty row.
char NewestLetter(std::string_view yes_no_row);
// How many answers in a row were "known" up to the newest: the leading letters that are not "f", 63 at most.
int Streak(std::string_view yes_no_row);

// Takes the newest answer out: everything moves up by one slot. The last letter becomes "f", the last time stays.
void DropNewestAnswer(AnswerHistory& history);

std::string LettersText(const AnswerLetters& letters);
std::string TimesAfterAnswer(const AnswerTimes& times);
std::string TimesAfterUndo(const AnswerTimes& times);

}  // namespace tessaro
