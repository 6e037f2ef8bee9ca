#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Typing training: the text of a card is to be copied on the keyboard, without more errors and not more slowly than is
// allowed.
namespace tessaro {

// The text to copy: a card side without its tags and media, with the two entities replaced. "<br>" and line feeds are
// line feeds, one of each in a row a single one; carriage returns and blanks at the beginning are left out. Empty when
// there is nothing to type but blanks and line feeds.
std::string TypingText(std::string_view side);

struct TypingLimits {
  double error_percent = 5.0;  // of the characters of the text
  int64_t speed = 100;         // characters a minute
  int64_t percent = 100;       // of that speed is enough
  int64_t RequiredSpeed() const { return speed * percent / 100; }
};

enum class TypingVerdict {
  Nothing,  // the change means nothing
  Right,
  Wrong,
  Finished,
};

enum class TypingMood {
  Normal,
  FirstError,
  WithinLimit,  // further errors
  BeyondLimit,
};

// How a text was typed in the end.
struct TypingResult {
  double speed = 0;          // characters a minute
  double error_percent = 0;  // of the characters
  int64_t required_speed = 0;
  double error_limit = 0;
  bool fast_enough = false;
  bool right_enough = false;
  bool Known() const { return fast_enough && right_enough; }
};

// What a change of the input led to.
struct TypingStep {
  TypingVerdict verdict = TypingVerdict::Nothing;
  // What the input has to hold instead of what was typed.
  std::optional<std::string> rewritten = std::nullopt;
  size_t mark = 0;  // the place of the character that is to come, in the text to copy
  int errors = 0;   // so far
  TypingMood mood = TypingMood::Normal;
  bool within_limit = true;  // Wrong: so many errors are allowed, be it the first one or not
  char expected = 0;         // Wrong: the character that should have come
  std::optional<TypingResult> result = std::nullopt;
};

struct TypingFigures {
  int letters = 0;
  double seconds = 0;
  double speed = 0;  // characters a minute
};

// The typing of one card after the other. Times are milliseconds of any clock that does not go back.
class TypingTraining {
 public:
  // A card comes. `required` must not be empty.
  void Begin(std::string required, const TypingLimits& limits);
  const std::string& required() const { return required_; }

  // The input was changed by the learner and holds `typed` now. When the text is finished the training waits for the
  // next card.
  TypingStep Change(std::string_view typed, int64_t now);

  // While a text is being typed; nothing before its first character, behind its last one and once nobody has typed for
  // five seconds.
  std::optional<TypingFigures> Figures(int64_t now) const;

 private:
  TypingStep Wrong(std::string typed);
  TypingStep Finish(size_t letters, int64_t now);
  double ErrorPercent() const;

  std::string required_;
  int64_t last_change_ = 0;
  TypingLimits limits_;
  int errors_ = 0;
  TypingMood mood_ = TypingMood::Normal;
  size_t letters_ = 0;
  std::optional<int64_t> start_;
};

enum class TypingMark { Character = 0, Word = 1, Nothing = 2 };

// How many characters of the text to copy are marked from `place` on.
size_t MarkLength(std::string_view required, size_t place, TypingMark mark);

}  // namespace tessaro
