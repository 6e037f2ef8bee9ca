#include "app/crdlogo.h"

#include <QScreen>

#include "ui_crdlogo.h"
#include "widgets/icons.h"

namespace tessaro {
namespace {

constexpr int kShownFor = 1200;  // milliseconds
constexpr int kIconSize = 64;

}  // namespace

void TF_Crdlogo::ShowOver(QWidget& window) {
  auto* form = new TF_Crdlogo(window);
  // The window has no place yet: the desktop chooses it while the form is shown already.
  form->move(window.screen()->availableGeometry().center() - form->rect().center());
  form->show();
}

TF_Crdlogo::TF_Crdlogo(QWidget& window)
    : QWidget(&window, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                           Qt::WindowDoesNotAcceptFocus),
      ui_(std::make_unique<Ui::TF_Crdlogo>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setAttribute(Qt::WA_ShowWithoutActivating);
  ui_->LabelIcon->setPixmap(Icon("cards").pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));
  adjustSize();
  timer_.setObjectName(QStringLiteral("TimerSplashTimer"));
  timer_.setSingleShot(true);
  connect(&timer_, &QTimer::timeout, this, &QWidget::close);
  timer_.start(kShownFor);
}

TF_Crdlogo::~TF_Crdlogo() = default;

}  // namespace tessaro
