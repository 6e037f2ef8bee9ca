#pragma once

#include <QString>
#include <cstdint>
#include <optional>

#include "learn/answer_gate.h"
#include "learn/run_presenter.h"
#include "platform/side_code_page.h"

// All that the learning window says, in one place.
namespace tessaro {

// A span in words for people, rounded up to its largest two units: "3 Tagen 2 Stunden", "1 Minute". At least a minute.
QString SpanInWords(int64_t seconds);

// The same short, rounded up: "5 Min.", "3 Std.", "2 Tagen".
QString ShortSpan(int64_t seconds);

// What the window's caption says of the card on screen. `position` is its 1-based place in the card file.
QString CaptionText(CardSide side, bool inverse, bool navigation, int position);
// The same for the line above the card, shorter.
QString SideText(CardSide side, bool inverse, bool navigation);
// Empty for CardStatus::None.
QString StatusText(CardStatus status, int64_t check_count);
// What stands there instead while multiple choice is on; empty for ChoiceStatus::None.
QString ChoiceStatusText(ChoiceStatus status);
// How the card on screen was chosen. `box` is that of the box method, 0 = none.
QString StageText(RunStage stage, int box);
QString MethodText(Method method);
QString TimeLockText(bool on);

// The text of a message box, as it stands.
QString MessageText(RunMessage message, int number);
// Why the learner's own answer is refused, for a message box; empty for AnswerRefusal::None.
QString RefusalText(AnswerRefusal refusal);
// True for what is a fault, false for what the user should just know.
bool IsFault(RunMessage message);

// For the strip above the card, or in its place where there is none, with what one can do now. `next_due`, for
// NothingDue: seconds until a card is due, nothing when none waits for its time.
QString NoticeText(Notice notice, std::optional<int64_t> next_due);

// In place of how the card was chosen, until the next command: what was said of the card whose question this is, and
// what it came to.
QString AnswerText(const GivenAnswer& answer, std::string_view question, CodePage page = {});
QString AnswerTakenBackText();
QString AnswerRestoredText();

// What "known" would come to, for its button: "etwa 3 Tage", "gleich wieder" below a minute; empty for nothing.
QString ForecastText(std::optional<int64_t> due_in);

// Why controls are greyed.
QString NothingToUndoHint();
QString RunEndedHint();

// Faults of the window itself.
QString AnswerFailedText();
QString PictureFailedText();
QString DrawingFailedText();

}  // namespace tessaro
