#pragma once

#include <QDialog>
#include <memory>

#include "exchange/exchange_ties.h"
#include "exchange/statistics_reset.h"

namespace Ui {
class TF_dldel;
}

namespace tessaro {

// Makes the program forget what was learned of all cards, or of those that are not known well.
class TF_dldel : public QDialog {
  Q_OBJECT

 public:
  explicit TF_dldel(const ExchangeTies& ties, QWidget* parent = nullptr);
  ~TF_dldel() override;

  void BitBtnDelAllClick();
  void BitBtnDelPartClick();

 private:
  // `progress`: what the status line says of so many cards.
  void Reset(ResetScope scope, const QString& question, const QString& progress);

  ExchangeTies ties_;
  std::unique_ptr<Ui::TF_dldel> ui_;
};

}  // namespace tessaro
