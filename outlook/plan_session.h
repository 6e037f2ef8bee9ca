#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "outlook/copied_deck.h"
#include "outlook/deck_outlook.h"
#include "store/file/ini_file.h"

namespace tessaro {

// The cards that a plan learns, as they are at its beginning, each kind in the order of its rows in the deck's table.
struct PlanStart {
  std::vector<int> rows;            // of answered cards
  std::vector<int> new_rows;        // of the others
  std::vector<MemoryTrace> traces;  // of the answered ones
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

  // Those of the start as they are by now, and behind them those of cards that were new and had their turn since;
  // without answers where they were not chosen yet.
  const std::vector<MemoryTrace>& traces() const;
  // The row of such a card in the deck's table.
  int RowOf(size_t place) const;
  // True when every card that was overdue at the beginning was answered since.
  bool CaughtUp() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tessaro
