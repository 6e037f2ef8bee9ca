#include "cards/answer_history.h"

#include <algorithm>
#include <charconv>

#include "platform/eight_digits.h"

namespace tessaro {
namespace {

constexpr uint32_t kLongestGap = 63'072'000;  // 730 days in seconds
constexpr size_t kLongestStreak = kHistoryLength - 1;

// Deliberate: the gap is taken as an unsigned number of 32 bits, so an oldest time that lies after its successor makes
// a huge gap and is dropped the same way.
bool DropMisfitOldest(AnswerTimes& times) {
  size_t oldest = 1;
  while (oldest + 1 < times.size() && times[oldest + 1] != 0) ++oldest;
  const auto gap =
      static_cast<uint32_t>(static_cast<uint64_t>(times[oldest - 1]) - static_cast<uint64_t>(times[oldest]));
  if (oldest <= 1 || gap <= kLongestGap) return false;
  times[oldest] = 0;
  return true;
}

void AppendNumbers(const AnswerTimes& times, size_t count, std::string& text) {
  char digits[24];
  for (size_t i = 0; i < count; ++i) {
    const auto end = std::to_chars(digits, digits + sizeof digits, times[i]);
    text.append(digits, end.ptr);
    text += ' ';
  }
}

// Takes a time of ten digits, as all have been since 2001, without looking for its end first. False, and the text as it
// was, when it begins with anything else.
bool TakeUsualTime(std::string_view& text, int64_t& time) {
  constexpr size_t kDigits = 10;
  uint64_t eight = 0;
  if (text.size() <= kDigits || text[kDigits] != ' ' || !ReadEightDigits(text.data(), eight)) return false;
  const auto ninth = static_cast<unsigned char>(text[8] - '0');
  const auto tenth = static_cast<unsigned char>(text[9] - '0');
  if (ninth > 9 || tenth > 9 || eight == 0) return false;
  time = static_cast<int64_t>(eight * 100 + uint64_t{ninth} * 10 + tenth);
  text.remove_prefix(kDigits + 1);
  return true;
}

enum class Until { Last, FirstEmpty };

AnswerHistory Parse(std::string_view time_row, std::string_view yes_no_row, Until until) {
  AnswerHistory history;
  for (size_t slot = 0; slot < history.times.size(); ++slot) {
    if (TakeUsualTime(time_row, history.times[slot])) continue;
    const size_t blank = time_row.find(' ');
    history.times[slot] = LeadingNumber(time_row.substr(0, blank));
    if (blank == std::string_view::npos || (until == Until::FirstEmpty && history.times[slot] == 0)) break;
    time_row.remove_prefix(blank + 1);
  }
  history.corrected = DropMisfitOldest(history.times);
  yes_no_row = yes_no_row.substr(0, history.letters.size());
  std::copy(yes_no_row.begin(), yes_no_row.end(), history.letters.begin());
  return history;
}

}  // namespace

AnswerHistory ParseHistory(std::string_view time_row, std::string_view yes_no_row) {
  return Parse(time_row, yes_no_row, Until::Last);
}

AnswerHistory ParseAnswers(std::string_view time_row, std::string_view yes_no_row) {
  return Parse(time_row, yes_no_row, Until::FirstEmpty);
}

AnswerHistory EmptyHistory() {
  return ParseHistory(BlankTimeRow(), BlankYesNoRow());
}

void PushAnswer(AnswerHistory& history, char letter, int64_t time) {
  AnswerTimes& times = history.times;
  std::copy_backward(times.begin(), times.end() - 1, times.end());
  times[0] = time;

  AnswerLetters& letters = history.letters;
  std::copy_backward(letters.begin(), letters.end() - 1, letters.end());
  letters[0] = letter;
  const auto is_answer = [](char c) { return c == kKnownLetter || c == kNotKnownLetter; };
  std::fill(std::find_if_not(letters.begin(), letters.end(), is_answer), letters.end(), kNotKnownLetter);
}

int64_t NewestTime(std::string_view time_row) {
  return LeadingNumber(time_row.substr(0, time_row.find(' ')));
}

char NewestLetter(std::string_view yes_no_row) {
  return yes_no_row.empty() ? '\0' : yes_no_row.front();
}

int Streak(std::string_view yes_no_row) {
  yes_no_row = yes_no_row.substr(0, kLongestStreak);
  return static_cast<int>(std::min(yes_no_row.find(kNotKnownLetter), yes_no_row.size()));
}

void DropNewestAnswer(AnswerHistory& history) {
  std::copy(history.times.begin() + 1, history.times.end(), history.times.begin());
  std::copy(history.letters.begin() + 1, history.letters.end(), history.letters.begin());
  history.letters.back() = kNotKnownLetter;
}

std::string LettersText(const AnswerLetters& letters) {
  return {letters.begin(), std::find(letters.begin(), letters.end(), '\0')};
}

std::string TimesAfterAnswer(const AnswerTimes& times) {
  std::string text;
  text.reserve(times.size() * 11);
  AppendNumbers(times, times.size(), text);
  return text;
}

std::string TimesAfterUndo(const AnswerTimes& times) {
  std::string text;
  text.reserve(times.size() * 11);
  AppendNumbers(times, times.size() - 1, text);
  return text;
}

}  // namespace tessaro
