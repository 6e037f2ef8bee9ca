#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "outlook/copied_deck.h"
#include "outlook/deck_outlook.h"
#include "store/file/ini_file.h"

namespace tessaro {

// The cards that a plan learns, as they are at its beginning, in the order of their rows.
struct PlanStart {
  std::vector<int> rows;            // of the deck's table
  std::vector<MemoryTrace> traces;  // without answers: still new
  std::vector<size_t> overdue;      // places in the two above
  std::string text;                 // their copy, see HistoriesText
};

// A copy of some cards of a deck that a learner made of chance learns, session by session. It holds the histories
// only, and nothing of it reaches a disk.
class PlanSession {
 public:
  // `copy` is that of the start; the others must live longer.
  PlanSession(const PlanStart& start, std::unique_ptr<CopiedDeck> copy, const DeckOutlook& deck,
              const IniFile& program_settings);
  ~PlanSession();
  PlanSession(const PlanSession&) = delete;
  PlanSession& operator=(const PlanSession&) = delete;

  // Begins a session of so many minutes at that time.
  void Begin(int64_t time, double minutes, int new_cards);
  // Gives an answer; false when the session is over: the time is up, or the run has no card to offer.
  bool Answer();

  // Those of the start as they are by now.
  const std::vector<MemoryTrace>& traces() const;
  // True when every card that was overdue at the beginning was answered since.
  bool CaughtUp() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tessaro
