#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "outlook/deck_outlook.h"
#include "store/file/ini_file.h"

namespace tessaro {

// A copy of some cards of a deck that a learner made of chance learns, session by session. It holds the histories
// only, and nothing of it reaches a disk.
class PlanSession {
 public:
  // `rows` are counted cards without answers in the future, `deck` what is known of them now.
  PlanSession(const CardFile& file, const DeckOutlook& deck, const IniFile& program_settings,
              const std::vector<int>& rows);
  ~PlanSession();
  PlanSession(const PlanSession&) = delete;
  PlanSession& operator=(const PlanSession&) = delete;

  // Begins a session of so many minutes at that time.
  void Begin(int64_t time, double minutes, int new_cards);
  // Gives an answer; false when the session is over: the time is up, or the run has no card to offer.
  bool Answer();

  // By the place in `rows`; without answers: still new.
  const std::vector<MemoryTrace>& traces() const;
  // True when every card that was overdue at the beginning was answered since.
  bool CaughtUp() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tessaro
