#include "answer/typing_training.h"

#include <algorithm>
#include <utility>

namespace tessaro {
namespace {

constexpr double kSecondsPerMinute = 60;
constexpr int64_t kPause = 5'000;  // milliseconds after which nobody seems to type any more

// What the learner sees himself: a line end in the form of any system is one line feed, and blanks at the beginning do
// not count.
std::string Cleaned(std::string_view typed) {
  std::string text(typed);
  if (text.size() >= 2 && text[text.size() - 2] == '\r') {
    text.pop_back();
    text.back() = '\n';
  }
  std::erase(text, '\r');
  text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
  return text;
}

double SecondsSince(int64_t start, int64_t now) {
  const double seconds = static_cast<double>(now - start) * 0.001;
  return seconds > 0 ? seconds : 1;
}

}  // namespace

void TypingTraining::Begin(std::string required, const TypingLimits& limits) {
  *this = {};
  required_ = std::move(required);
  limits_ = limits;
}

TypingStep TypingTraining::Change(std::string_view typed, int64_t now) {
  last_change_ = now;
  if (typed.empty()) letters_ = 0;
  if (typed.empty() || required_.empty()) return {.errors = errors_, .mood = mood_};
  std::string text = Cleaned(typed);
  if (text.size() < 2) start_ = now;
  if (text.size() >= required_.size()) return Finish(text.size(), now);
  if (!required_.starts_with(text)) return Wrong(std::move(text));
  mood_ = TypingMood::Normal;
  letters_ = text.size();
  return {.verdict = TypingVerdict::Right, .mark = text.size(), .errors = errors_};
}

// Wrong keys at the same place count once, until a right one has been typed. A wrong last character is none: that one
// is not looked at.
TypingStep TypingTraining::Wrong(std::string typed) {
  typed.pop_back();
  letters_ = typed.size();
  if (mood_ == TypingMood::Normal) ++errors_;
  const bool within_limit = ErrorPercent() <= limits_.error_percent;
  mood_ = errors_ == 1 ? TypingMood::FirstError : within_limit ? TypingMood::WithinLimit : TypingMood::BeyondLimit;
  TypingStep step = {.verdict = TypingVerdict::Wrong, .mark = typed.size(), .errors = errors_, .mood = mood_};
  step.within_limit = within_limit;
  step.expected = required_[typed.size()];
  step.rewritten = std::move(typed);
  return step;
}

TypingStep TypingTraining::Finish(size_t letters, int64_t now) {
  const double seconds = SecondsSince(start_.value_or(now), now);
  TypingResult result = {.speed = static_cast<double>(letters) * kSecondsPerMinute / seconds,
                         .error_percent = ErrorPercent(),
                         .required_speed = limits_.RequiredSpeed(),
                         .error_limit = limits_.error_percent};
  result.fast_enough = result.speed >= static_cast<double>(result.required_speed);
  result.right_enough = result.error_percent <= limits_.error_percent;
  TypingStep step = {.verdict = TypingVerdict::Finished, .rewritten = std::string(), .errors = errors_};
  step.result = result;
  Begin({}, limits_);
  return step;
}

std::optional<TypingFigures> TypingTraining::Figures(int64_t now) const {
  if (!start_ || now - last_change_ > kPause) return std::nullopt;
  const double seconds = static_cast<double>(now - *start_) * 0.001;
  const auto letters = static_cast<double>(letters_);
  return TypingFigures{.letters = static_cast<int>(letters_),
                       .seconds = seconds,
                       .speed = letters * kSecondsPerMinute / SecondsSince(*start_, now)};
}

double TypingTraining::ErrorPercent() const {
  return static_cast<double>(errors_) * 100 / static_cast<double>(required_.size());
}

size_t MarkLength(std::string_view required, size_t place, TypingMark mark) {
  if (place >= required.size() || mark == TypingMark::Nothing) return 0;
  if (mark == TypingMark::Character) return 1;
  const size_t end = std::min(required.find_first_of(" \n", place), required.size());
  return std::max<size_t>(end - place, 1);
}

}  // namespace tessaro
