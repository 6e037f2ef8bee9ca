#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "cards/card_writer.h"
#include "learn/answer_rules.h"
#include "learn/run_values.h"

namespace tessaro {

// What the choice of a card notes about it.
struct CardMarks {
  bool early = false;       // known, and shown before it is due: a known answer leaves no trace
  bool no_history = false;  // not shown for longer than the maximum time: an answer changes the score alone
  bool expired = false;     // its retention time has run out
};

struct LogReport {
  bool logged = false;              // the card's history was written
  bool wiped = false;               // the card's newest answer lay in the future
  bool times_out_of_order = false;  // logging ended after the history
  bool index_fault = false;         // the card had no row in the learning index
};

// The last answer as the single-card statistics show it. Without forecast: the answer was "not known".
struct AnswerStatistics {
  int row = 0;
  AnswerHistory history;
  std::optional<RetentionForecast> forecast;
  int64_t score = 0;
};

// What a run of answers comes to, and what taking one of them back has to know.
struct AnswerLogState {
  struct LoggedAnswer {
    int row;
    std::string id;
    bool kept_history;
    int64_t unknown_count;  // before the answer
  };

  std::optional<int64_t> previous_answer;  // seconds since 1970
  int64_t unknown_count = 0;
  int answered = 0;
  std::optional<LoggedAnswer> last;
  std::optional<AnswerStatistics> statistics;
};

// Logs the answers of one run into the cards and the learning index, keeps the figures that belong to it, and takes the
// last answer back.
class AnswerLog {
 public:
  // `state` is where it keeps all but the clock of the last step: going back to an earlier state turns no clock back,
  // so a clock that went back is noticed all the same.
  AnswerLog(CardFile& file, CardWriter& writer, AnswerLogState& state) : file_(file), writer_(writer), state_(state) {}

  // Takes note of a step at the time `now`. False when that is earlier than the step before: the run is over.
  bool BeginStep(int64_t now);
  // Logs `rating` for the card in `row` (0: no card yet) at the time `now`, if the card and its marks let it.
  LogReport Log(int row, Rating rating, CardMarks& marks, int64_t now);

  // The score that Log would give the card for "known"; nothing where it would log nothing.
  std::optional<int64_t> ScoreIfKnown(int row, const CardMarks& marks, int64_t now) const;

  // The least score of the next known answers, in seconds; 0 = none.
  void SetMinRetention(int64_t seconds) { min_retention_ = seconds; }
  // The row of the card whose answer Undo takes back; 0 when there is nothing to undo.
  int UndoRow() const;
  bool CanUndo() const { return UndoRow() != 0; }
  // Takes the last logged answer back and returns UndoRow.
  int Undo();

  // Cards whose score is 0, by the steps of this run. It can differ from the true number until the next recount.
  int64_t unknown_count() const { return state_.unknown_count; }
  void RecountUnknown() { state_.unknown_count = writer_.UnknownCount(); }
  int answered() const { return state_.answered; }

 private:
  int64_t TimeSpent(int64_t now);
  static bool LeavesNoTrace(const CardReader& cards, int row, Rating rating, const CardMarks& marks);
  AnswerContext ContextOf(int row, bool known, bool keep_history, int64_t now) const;
  void WriteAnswer(int row, const AnswerContext& context, LogReport& report);
  void UpdateIndex(int row, int64_t score, LogReport& report);

  CardFile& file_;
  CardWriter& writer_;
  AnswerLogState& state_;
  std::optional<int64_t> previous_step_;
  int64_t min_retention_ = 0;
};

}  // namespace tessaro
