#pragma once

#include <QDialog>
#include <filesystem>
#include <memory>

#include "exchange/exchange_ties.h"

namespace Ui {
class TF_dltrans;
}

namespace tessaro {

class SeparatorField;

// Makes a card file of what the program's first version has exported.
class TF_dltrans : public QDialog {
  Q_OBJECT

 public:
  explicit TF_dltrans(const ExchangeTies& ties, QWidget* parent = nullptr);
  ~TF_dltrans() override;

  void BitBtnOpenClick();
  void BitBtnOKClick();

 private:
  // Empty as long as source or name are missing.
  std::filesystem::path Target() const;
  void ShowTarget();
  bool MayWrite(const std::filesystem::path& target);
  void Convert(const std::filesystem::path& target, char separator);
  void Offer(const std::filesystem::path& target);

  ExchangeTies ties_;
  std::unique_ptr<Ui::TF_dltrans> ui_;
  SeparatorField* separator_;
  std::filesystem::path source_;
};

}  // namespace tessaro
