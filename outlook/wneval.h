#pragma once

#include <array>
#include <memory>

#include "outlook/card_lines.h"
#include "outlook/knowledge.h"
#include "outlook/outlook_window.h"

namespace Ui {
class TF_wneval;
}

namespace tessaro {

// "Auswertung": what the learner knows now, what he did, whether the predictions came true, what costs him most.
class TF_wneval : public OutlookWindow {
  Q_OBJECT

 public:
  TF_wneval(CardFile& file, ProgramSettings& settings, const Clock& clock);
  ~TF_wneval() override;

 protected:
  OutlookPage& CurrentPage() override;
  void DeckRead() override;

 private:
  enum View { Knows, Did, Predicted, Costs };

  // Works out what the page in front lacks.
  void ShowCurrent();
  void ShowKnowledge();
  void ShowActivity();
  void ShowPredictions();
  void ShowCosts();
  std::vector<CardLine> CostLines() const;

  std::unique_ptr<Ui::TF_wneval> ui_;
  Knowledge knowledge_;
  std::array<bool, 4> shown_{};
};

}  // namespace tessaro
