#pragma once

#include <QDialog>
#include <memory>

#include "learn/run_values.h"

namespace Ui {
class TF_frage;
}

namespace tessaro {

class IniFile;

// The question before a card that was reached by a link is left: was it known? The card stays in sight in the window
// below. Closing the dialog gives no rating.
class TF_frage : public QDialog {
  Q_OBJECT

 public:
  // `settings` gives the keys of the three commands.
  explicit TF_frage(const IniFile& settings, QWidget* parent = nullptr);
  ~TF_frage() override;

  Rating rating() const { return rating_; }

 Q_SIGNALS:
  // The other side of the card is to be shown; the question stays.
  void TurnWanted();

 private:
  void Close(Rating rating);
  void StandBelowTheCard();

  std::unique_ptr<Ui::TF_frage> ui_;
  Rating rating_ = Rating::None;
};

}  // namespace tessaro
