#pragma once

#include <QDialog>
#include <cstdint>
#include <memory>

namespace Ui {
class TF_dlprogress;
}

namespace tessaro {

// Shows how far long work has come. It cannot be closed by the user: what it shows ends by itself, or by a button where
// the work allows it.
class TF_dlprogress : public QDialog {
  Q_OBJECT

 public:
  explicit TF_dlprogress(QWidget* parent);
  ~TF_dlprogress() override;

  // A range of 0 shows that something is done, not how far it is.
  void ShowWork(const QString& text, int64_t position, int64_t range);
  // Shows a button that asks for the end of the work; Esc asks, too.
  void AllowCancel();
  bool cancelled() const { return cancelled_; }
  void reject() override;

 private:
  std::unique_ptr<Ui::TF_dlprogress> ui_;
  bool cancelled_ = false;
};

}  // namespace tessaro
