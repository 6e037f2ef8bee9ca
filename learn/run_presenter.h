#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "learn/learning_run.h"
#include "learn/notice.h"

namespace tessaro {

enum class CardSide { Question, Answer };

// All that the learning window shows of a run, but for the sentences: what stands in the fields, what can be pressed,
// where the focus belongs.
struct RunScreen {
  // The next thing for the learner to do; its control has the focus, so that the space bar does it too.
  enum class Next {
    Turn,
    Answer,
    GoOn,      // a navigation card asks nothing
    BeginRun,  // the run has ended
    Close,     // there is no card
  };

  // The card.
  bool has_card = false;
  CardSide side = CardSide::Question;  // whether the first or the second side is on screen
  bool navigation = false;
  int position = 0;         // its 1-based place in the card file
  std::string side_before;  // while the second side is on screen: the first one in a line, without tags

  // The fields beside it.
  CardStatus status = CardStatus::None;
  std::string retention;                  // as DurationText; "0" when the newest answer was not "known"
  std::optional<std::string> last_shown;  // how long ago; nothing for a card that was never answered
  RunFigures figures;
  RunStage stage = RunStage::None;
  int box = 0;

  std::optional<int64_t> due_in_if_known;  // what "known" would come to, in seconds; nothing where it leaves no trace

  // The commands.
  bool open = false;  // the card can be turned and answered
  bool can_undo = false;
  bool can_take_back = false;
  bool can_restore = false;
  RunOptions options;
  Method method = Method::Standard;
  bool box_waits = false;  // a box that was left can be taken up again
  Next next = Next::Turn;

  // What is told of the absence of a card.
  Notice notice = Notice::None;
  std::optional<int64_t> next_due_in;  // for NothingDue: seconds until a card is due; nothing when none waits
  bool offers_new_run = false;
  bool offers_no_lock = false;
};

// `now` in seconds since 1970.
RunScreen ScreenOf(const LearningRun& run, const CardFile& file, Notice notice, int64_t now);

// Days, hours, minutes and seconds, as "3:02:11:40". Negative times give "0:00:00:00".
std::string DurationText(int64_t seconds);
// Minutes and seconds, as "04:12"; the minutes go on beyond an hour.
std::string StopwatchText(int64_t seconds);

}  // namespace tessaro
