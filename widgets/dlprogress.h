#pragma once

#include <QDialog>
#include <cstdint>
#include <memory>

namespace Ui {
class TF_dlprogress;
}

namespace tessaro {

// Shows how far long work has come. It cannot be closed by the user: what it shows ends by itself.
class TF_dlprogress : public QDialog {
  Q_OBJECT

 public:
  explicit TF_dlprogress(QWidget* parent);
  ~TF_dlprogress() override;

  // A range of 0 shows that something is done, not how far it is.
  void ShowWork(const QString& text, int64_t position, int64_t range);
  void reject() override {}

 private:
  std::unique_ptr<Ui::TF_dlprogress> ui_;
};

}  // namespace tessaro
