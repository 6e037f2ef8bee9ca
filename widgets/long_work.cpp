#include "widgets/long_work.h"

#include <QCoreApplication>
#include <QCursor>
#include <QEventLoop>
#include <QGuiApplication>

#include "platform/clock.h"
#include "widgets/dlprogress.h"

namespace tessaro {
namespace {

constexpr int64_t kCursorAfter = 200;  // milliseconds
constexpr int64_t kDialogAfter = 1000;
constexpr int64_t kRepaintEvery = 60;
constexpr int64_t kLooks = 500;  // in the range of a stage

int running = 0;

}  // namespace

LongWork::LongWork(QWidget* window, const Clock& clock)
    : window_(window), clock_(clock), started_(clock.Milliseconds()) {
  ++running;
}

LongWork::~LongWork() {
  --running;
  if (waiting_cursor_) QGuiApplication::restoreOverrideCursor();
}

bool LongWork::Running() {
  return running > 0;
}

bool LongWork::Cancelled() const {
  return dialog_ != nullptr && dialog_->cancelled();
}

void LongWork::NextStage(const QString& text, int64_t range) {
  text_ = text;
  range_ = range;
  next_look_ = 0;
  shown_at_ = 0;
  SetPosition(0);
}

void LongWork::SetPosition(int64_t position) {
  if (position < next_look_) return;
  next_look_ = position + range_ / kLooks;
  const int64_t now = clock_.Milliseconds();
  if (!waiting_cursor_ && now - started_ >= kCursorAfter) {
    waiting_cursor_ = true;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  }
  if (now - started_ < kDialogAfter || now - shown_at_ < kRepaintEvery) return;
  shown_at_ = now;
  Show(position);
}

void LongWork::Show(int64_t position) {
  if (dialog_ == nullptr) {
    dialog_ = std::make_unique<TF_dlprogress>(window_);
    if (can_cancel_) {
      dialog_->AllowCancel();
      QGuiApplication::changeOverrideCursor(Qt::BusyCursor);
    }
    dialog_->show();
  }
  dialog_->ShowWork(text_, position, range_);
  QCoreApplication::processEvents(can_cancel_ ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents);
}

}  // namespace tessaro
