#pragma once

#include <QTimer>
#include <QWidget>
#include <memory>

namespace Ui {
class TF_Crdlogo;
}

namespace tessaro {

// The splash form: name and version for a moment over the main window. It takes no input and holds nothing up.
class TF_Crdlogo : public QWidget {
  Q_OBJECT

 public:
  // The form deletes itself when TimerSplashTimer ends it.
  static void ShowOver(QWidget& window);
  ~TF_Crdlogo() override;

 private:
  explicit TF_Crdlogo(QWidget& window);

  std::unique_ptr<Ui::TF_Crdlogo> ui_;
  QTimer timer_;
};

}  // namespace tessaro
