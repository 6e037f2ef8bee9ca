#pragma once

#include <QDialog>
#include <functional>
#include <memory>

#include "outlook/card_lines.h"

namespace Ui {
class TF_dlkarten;
}

namespace tessaro {

class CardListModel;

// The cards behind a figure. Stays beside the window of the figure; Enter opens a card in the editor where there is
// one.
class TF_dlkarten : public QDialog {
  Q_OBJECT

 public:
  using EditCard = std::function<void(int row)>;

  // `file` must live longer.
  TF_dlkarten(CardFile& file, QWidget* parent);
  ~TF_dlkarten() override;

  // `edit` may be empty.
  void Show(const QString& title, CardLines lines, EditCard edit);

 private:
  void SetColumns();
  void ShowCount();
  void EditCurrent();

  std::unique_ptr<Ui::TF_dlkarten> ui_;
  CardFile& file_;
  CardListModel* model_ = nullptr;
  EditCard edit_;
};

}  // namespace tessaro
