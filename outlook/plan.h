#pragma once

#include <array>
#include <cstdint>
#include <future>
#include <memory>
#include <vector>

#include "outlook/copied_deck.h"
#include "outlook/deck_outlook.h"
#include "outlook/plan_session.h"
#include "settings/learning_parameters.h"
#include "store/file/ini_file.h"

namespace tessaro {

// What a learner intends: so many minutes a day up to a day, with at most so many new cards a day.
struct PlanWish {
  int64_t last_day = 0;  // see LocalDays; the day of the exam, on which nothing is learned any more
  double minutes = 0;
  int new_cards = 0;
};

// One way to go on.
struct PlanCurve {
  double minutes = 0;          // a day
  std::vector<double> known;   // expected number of known cards, by Plan's dates
  std::vector<int> weak_rows;  // answered cards known with less than kWeak on the last day
  int64_t caught_up = 0;       // sessions after which all that is overdue now was asked again; 0 = never
};

struct PlanReport {
  static constexpr double kWeak = 0.8;
  std::vector<int64_t> days;      // the dates, in days from today: 0 is now, the last one the last day
  std::vector<PlanCurve> curves;  // nothing, half, all and twice of the minutes
  bool partial = false;           // only the first index rows are learned, the others forget
};

// Plays the days to come on a copy of the deck: one session a day at the usual hour, the cards chosen by a real
// learning run, the answers drawn with their recall. The same deck, wish and time give the same curves; the n-th answer
// to a card has the same luck in all of them. The deck itself is never touched.
class Plan {
 public:
  // `file`, `deck` and `days` must live longer. `program_settings` gives the parameters of the run.
  Plan(const CardFile& file, const DeckOutlook& deck, const IniFile& program_settings, const LocalDays& days,
       const PlanWish& wish);
  // The same without new cards, for half, all and twice of the minutes, only to find out when all that is overdue now
  // was asked again.
  static Plan CatchUp(const CardFile& file, const DeckOutlook& deck, const IniFile& program_settings,
                      const LocalDays& days, double minutes);
  Plan(Plan&&) noexcept;
  ~Plan();

  // Looks at so many cards, or gives so many answers; false when all curves are there.
  bool Step(int count);
  PlanReport Take();

 private:
  enum class Stage { Copying, Parting, Forgetting, Evaluating, Learning, Done };
  bool CopySome(int count);
  void CopyCard(int row);
  void EndCopy();
  bool PartSome(int count);
  void EndParting();
  bool ForgetSome(int count);
  bool EvaluateSome(int count);
  bool LearnSome(int count);
  void ReadNextDeck();
  void BeginCurve();
  void BeginDay();
  void EndDay();
  void EndDate();
  void GoToDate(size_t date);
  void EndCurve();
  int64_t TimeOf(int64_t day) const;

  const CardFile& file_;
  const DeckOutlook& deck_;
  const IniFile& settings_;
  const LocalDays& days_;
  PlanWish wish_;
  bool only_catching_up_ = false;
  int64_t today_;
  LearningParameters parameters_;
  std::vector<int> chosen_rows_;  // of the first index rows, by row; some may be no cards to be learned
  HistoriesText copy_;
  std::unique_ptr<PlanStart> start_ = std::make_unique<PlanStart>();
  std::future<std::unique_ptr<CopiedDeck>> next_deck_;  // for the next curve; it is read on another thread
  std::vector<const CardTrace*> others_;                // those that only forget
  std::vector<double> others_known_;                    // by date
  std::vector<int> others_weak_;
  std::vector<double> minutes_;
  PlanReport report_;

  Stage stage_ = Stage::Copying;
  size_t date_ = 0;    // of report_.days
  int64_t time_ = 0;   // of that date
  size_t passed_ = 0;  // of the learned cards, by the one looked at
  size_t next_ = 0;    // card that is looked at next
  double sum_ = 0;     // over those before it
  int64_t day_ = 0;    // of the session, from today
  std::unique_ptr<PlanSession> session_;
};

}  // namespace tessaro
