#pragma once

#include <memory>

#include "outlook/outlook_window.h"
#include "outlook/plan.h"

namespace Ui {
class TF_wnprog;
}

namespace tessaro {

// "Prognose": what comes due with how much work, and what the learner will know on the day of an exam.
class TF_wnprog : public OutlookWindow {
  Q_OBJECT

 public:
  // The three wishes of the plan are kept in the settings of the card file; nothing else of it is changed.
  TF_wnprog(CardFile& file, ProgramSettings& settings, const Clock& clock);
  ~TF_wnprog() override;

 Q_SIGNALS:
  void LearnWanted();

 protected:
  OutlookPage& CurrentPage() override;
  void DeckRead() override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void ReadWishes();
  void KeepWishes();
  void ShowCurrent();
  void ShowDue();
  void ShowBacklog(double overdue_minutes);
  void ShowPlan();
  // The wish holds for both pages.
  void SetMinutes(int minutes);
  int64_t ExamDay() const;

  std::unique_ptr<Ui::TF_wnprog> ui_;
  bool due_shown_ = false;
  bool plan_shown_ = false;
};

}  // namespace tessaro
