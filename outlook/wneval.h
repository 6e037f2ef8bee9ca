#pragma once

#include <array>
#include <memory>
#include <optional>

#include "outlook/card_lines.h"
#include "outlook/knowledge.h"
#include "outlook/outlook_page.h"
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

  OutlookPage& PageOf(View view) const;
  // Works out what the page in front lacks; what was under way for another one is begun anew when that comes to the
  // front again.
  void ShowCurrent();
  void Show(View view, PageContent content);
  void ShowKnowledge();
  void ShowActivity();
  void ShowPredictions();
  void ShowCosts();
  CardLines CostLines() const;

  std::unique_ptr<Ui::TF_wneval> ui_;
  std::optional<Knowledge> knowledge_;  // once it is counted
  std::array<bool, 4> shown_{};
};

}  // namespace tessaro
