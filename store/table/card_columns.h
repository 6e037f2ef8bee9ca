#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The columns of a card file and the texts of their empty state. A card file is a table of these columns whose first
// row has the ID "@@" and whose last row has the ID "##"; the rows between are the cards.
namespace tessaro {

inline constexpr char kFieldSeparator = '\x0F';
inline constexpr std::string_view kStartMark = "@@";
inline constexpr std::string_view kEndMark = "##";
inline constexpr int kFirstCardRow = 2;

inline constexpr std::string_view kId = "ID";
inline constexpr std::string_view kTopic = "Topic";
inline constexpr std::string_view kQuestion = "Question";
inline constexpr std::string_view kAnswer = "Answer";
inline constexpr std::string_view kScore = "Score";
inline constexpr std::string_view kTimeLearned = "TimeLearned";
inline constexpr std::string_view kYesNoRow = "YesNoRow";
inline constexpr std::string_view kTimeRow = "TimeRow";
inline constexpr std::array kCardColumns = {kId, kTopic, kQuestion, kAnswer, kScore, kTimeLearned, kYesNoRow, kTimeRow};

inline constexpr int kHistoryLength = 64;
inline constexpr int64_t kMaxScore = 999999900;

// The column numbers of one card table, resolved once; 0 for a column that it lacks.
struct CardColumns {
  int id = 0, topic = 0, question = 0, answer = 0, score = 0, time_learned = 0, yes_no_row = 0, time_row = 0;
};

class CardTable;
CardColumns ColumnsOf(const CardTable& cards);

// A card that is shown but never learned: its question holds "<navigation>" or "<NAVIGATION>", in exactly these forms.
bool IsNavigation(std::string_view question);
// The mark of a superfluous variant, "<+++>". A card with it on either side is left out by the selection methods.
bool IsDuplicateMarked(std::string_view text);
// An ID with "#" is that of the end row, or of a card that is neither learned nor chosen.
inline bool HasEndMark(std::string_view id) {
  return id.find('#') != std::string_view::npos;
}
// A card that learning leaves out, whatever the method: a navigation card, or one with one of these marks.
bool IsLeftOut(std::string_view id, std::string_view question, std::string_view answer);

// The history of a card that was never answered: the texts of TimeRow and YesNoRow.
std::string BlankTimeRow();
std::string BlankYesNoRow();

// A card number as IDs and links hold it: at least six digits.
std::string IdText(int64_t number);
// Reads a decimal number as the C library's strtoll does: blanks, a sign, digits; 0 without digits. Saturates.
int64_t LeadingNumber(std::string_view text);
// The number that a text of one to nine digits and nothing else is; nothing for any other text.
inline std::optional<uint32_t> DigitsOnly(std::string_view text) {
  constexpr size_t kMostDigits = 9;
  if (text.empty() || text.size() > kMostDigits) return std::nullopt;
  uint32_t number = 0;
  bool only_digits = true;
  // Goes on after a wrong byte: nearly all texts are right, and a loop without a way out is faster.
  for (const char c : text) {
    const auto digit = static_cast<uint32_t>(static_cast<unsigned char>(c)) - '0';
    only_digits &= digit <= 9;
    number = number * 10 + digit;
  }
  if (!only_digits) return std::nullopt;
  return number;
}
// True when LeadingNumber finds digits to read.
bool HasDigits(std::string_view text);

}  // namespace tessaro
