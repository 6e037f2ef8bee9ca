#include "outlook/plan_session.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <utility>

#include "cards/card_reader.h"
#include "learn/learning_run.h"
#include "learn/run_values.h"

namespace tessaro {
namespace {

class SessionClock : public Clock {
 public:
  int64_t Now() const override { return static_cast<int64_t>(std::floor(now)); }
  int64_t Milliseconds() const override { return Now() * 1000; }
  double now = 0;
};

// A well-mixed number of 64 bits (splitmix64).
uint64_t Mix(uint64_t number) {
  number += 0x9E3779B97F4A7C15U;
  number = (number ^ (number >> 30U)) * 0xBF58476D1CE4E5B9U;
  number = (number ^ (number >> 27U)) * 0x94D049BB133111EBU;
  return number ^ (number >> 31U);
}

class SeededRandom : public Random {
 public:
  uint32_t Next() override { return static_cast<uint32_t>(Mix(++drawn_) >> 33U); }

 private:
  uint64_t drawn_ = 0;
};

// The luck of the n-th answer to a card, 0 ... 1.
double LuckOf(int row, int n) {
  const uint64_t mixed = Mix((static_cast<uint64_t>(row) << 32U) + static_cast<uint64_t>(n));
  return static_cast<double>(mixed >> 11U) / 9007199254740992.0;
}

bool IsOver(const StepResult& result) {
  return result.run_ended || !result.events.empty();
}

}  // namespace

struct PlanSession::State {
  State(const PlanStart& start_in, std::unique_ptr<CopiedDeck> copy_in, const DeckOutlook& deck_in,
        const IniFile& program_settings)
      : start(start_in),
        deck(deck_in),
        settings(program_settings),
        copy(std::move(copy_in)),
        traces(start.traces),
        given(start.rows.size()) {}

  bool IsKnown(size_t card) {
    const MemoryTrace& trace = traces[card];
    const double recall = trace.answers > 0 ? RecallAt(trace, deck.weights, clock.Now()) : deck.FirstSight();
    return LuckOf(RowOf(card), given[card]++) < recall;
  }

  int RowOf(size_t place) const {
    const size_t old = start.rows.size();
    return place < old ? start.rows[place] : start.new_rows[place - old];
  }

  // So many new cards can be chosen then, with those of the days before that were not.
  void AdmitNew(int count) {
    const size_t old = start.rows.size();
    for (size_t place = old; place < traces.size(); ++place) count -= traces[place].answers == 0 ? 1 : 0;
    count = std::clamp(count, 0, static_cast<int>(old + start.new_rows.size() - traces.size()));
    copy->AddNew(count);
    traces.resize(traces.size() + static_cast<size_t>(count));
    given.resize(traces.size());
  }

  const PlanStart& start;
  const DeckOutlook& deck;
  const IniFile& settings;
  std::unique_ptr<CopiedDeck> copy;
  SessionClock clock;
  SeededRandom random;
  std::unique_ptr<LearningRun> run;
  bool over = false;  // the run has come to an end, or something is wrong
  double end = 0;
  std::vector<MemoryTrace> traces;
  std::vector<int> given;  // answers of the plan, by card
};

PlanSession::PlanSession(const PlanStart& start, std::unique_ptr<CopiedDeck> copy, const DeckOutlook& deck,
                         const IniFile& program_settings)
    : state_(std::make_unique<State>(start, std::move(copy), deck, program_settings)) {}

PlanSession::~PlanSession() = default;

// Others that are new are not there yet: in front of the index they would take the place of those that are due.
void PlanSession::Begin(int64_t time, double minutes, int new_cards) {
  State& s = *state_;
  s.clock.now = static_cast<double>(time);
  s.end = s.clock.now + minutes * 60;
  s.AdmitNew(new_cards);
  s.run = std::make_unique<LearningRun>(s.copy->file(), s.settings, s.clock, s.random);
  s.over = IsOver(s.run->Start());
}

bool PlanSession::Answer() {
  State& s = *state_;
  const int row = s.run->card().row;
  if (s.over || row < CopiedDeck::kFirstRow || s.clock.now >= s.end) {
    s.run->KeepPositions();
    s.run.reset();
    return false;
  }
  s.clock.now += s.deck.seconds_per_answer;
  const auto card = static_cast<size_t>(row - CopiedDeck::kFirstRow);
  s.over = IsOver(s.IsKnown(card) ? s.run->Known() : s.run->NotKnown());
  const CardReader cards(s.copy->file());
  s.traces[card] = TraceOf(ReadAnswers(cards.TimeRow(row), cards.YesNoRow(row)));
  return true;
}

const std::vector<MemoryTrace>& PlanSession::traces() const {
  return state_->traces;
}

int PlanSession::RowOf(size_t place) const {
  return state_->RowOf(place);
}

bool PlanSession::CaughtUp() const {
  const State& s = *state_;
  return std::all_of(s.start.overdue.begin(), s.start.overdue.end(), [&](size_t card) { return s.given[card] > 0; });
}

}  // namespace tessaro
