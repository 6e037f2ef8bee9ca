#pragma once

#include <cstdint>
#include <optional>

#include "platform/clock.h"

namespace tessaro {

// The way in which the learner answers: by the learning window's buttons, or in one of the answer windows.
enum class AnswerMode { None, Choice, Input, Typing };

// Whether the learning window waits for what an answer window makes of the card, and what that was.
enum class AnswerModeResult {
  None = 0,     // it does not wait: the card is answered by the learning window's own buttons
  Awaited = 1,  // the card was reached by a link beside an open answer window, and is left by an answer
  Known = 2,
  NotKnown = 3,
};

// What the choice bar has to say of the card on screen, for the status field.
enum class ChoiceStatus { None, Choice, NewChoice, NoChoice };

// Why an answer command of the learner is refused.
enum class AnswerRefusal { None, ChoicePending, TypingOpen };

// What the learning window and the answer windows (choice bar, line for a typed answer, typing training) have to agree
// on: all that they know of each other.
class AnswerGate {
 public:
  // `clock` must outlive the gate.
  explicit AnswerGate(const Clock& clock) : clock_(clock) {}

  // Every judging action takes the lock, and the choice bar ignores clicks while it holds: one click is handled once.
  // It falls off by itself after 100 ms.
  void LockInput() { locked_at_ = clock_.Milliseconds(); }
  bool InputLocked() const { return locked_at_ && clock_.Milliseconds() - *locked_at_ < kLockMilliseconds; }

  // A wrong choice was made and the learner has not gone on yet.
  bool SelectError() const { return select_error_; }
  void SetSelectError(bool on) { select_error_ = on; }

  AnswerModeResult Result() const { return result_; }
  void SetResult(AnswerModeResult result) { result_ = result; }

  // Told by the answer windows when they open and close. With the choice bar goes what was pending in it.
  void SetChoiceVisible(bool on) {
    choice_visible_ = on;
    if (!on) select_error_ = false;
    if (!on) choice_status_ = ChoiceStatus::None;
  }
  void SetTypingVisible(bool on) { typing_visible_ = on; }
  bool ChoiceVisible() const { return choice_visible_; }
  bool TypingVisible() const { return typing_visible_; }
  // What decides, when a link is followed, whether an answer leads back to where it came from.
  bool AnswerWindowVisible() const { return choice_visible_ || typing_visible_; }

  ChoiceStatus Status() const { return choice_status_; }
  void SetStatus(ChoiceStatus status) { choice_status_ = status; }

  // Whether the learner may answer the card on screen himself.
  AnswerRefusal RefusalFor(bool navigation_card) const {
    if (select_error_) return AnswerRefusal::ChoicePending;
    return typing_visible_ && !navigation_card ? AnswerRefusal::TypingOpen : AnswerRefusal::None;
  }

 private:
  static constexpr int64_t kLockMilliseconds = 100;

  const Clock& clock_;
  std::optional<int64_t> locked_at_;
  bool select_error_ = false;
  bool choice_visible_ = false;
  bool typing_visible_ = false;
  AnswerModeResult result_ = AnswerModeResult::None;
  ChoiceStatus choice_status_ = ChoiceStatus::None;
};

}  // namespace tessaro
