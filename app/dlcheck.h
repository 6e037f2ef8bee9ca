#pragma once

#include <QDialog>
#include <memory>
#include <vector>

#include "cards/deck_check.h"

namespace Ui {
class TF_dlcheck;
}

namespace tessaro {

class CheckModel;

// Shows what the check of a card file found and lets the user choose repairs. It changes nothing.
class TF_dlcheck : public QDialog {
  Q_OBJECT

 public:
  // `file` must live longer and not change while the dialog is open.
  TF_dlcheck(const CardFile& file, const DeckReport& report, QWidget* parent);
  ~TF_dlcheck() override;

  // The findings whose repair was chosen. Of value after accept.
  std::vector<DeckFinding> Chosen() const;

 private:
  void SetColumns();
  void ShowChoice();
  // What is too long for the columns stands in full below them.
  void ShowDetail(const QModelIndex& row);
  void ToggleRow();

  std::unique_ptr<Ui::TF_dlcheck> ui_;
  CheckModel* model_;
};

}  // namespace tessaro
