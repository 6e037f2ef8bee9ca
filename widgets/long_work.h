#pragma once

#include <QString>
#include <cstdint>
#include <memory>

#include "platform/progress.h"

class QWidget;

namespace tessaro {

class Clock;
class TF_dlprogress;

// Stands on the stack while work keeps the user waiting. After 0.2 s the cursor says so, after 1 s the progress dialog
// shows what is done and how far it is; windows go on being painted. Keys and clicks wait until the work is done, all
// but those on the dialog's button, where the work allows to be ended.
class LongWork : public Progress {
 public:
  // `window` may be null: then the dialog stands alone. Both must live longer.
  LongWork(QWidget* window, const Clock& clock);
  ~LongWork() override;
  LongWork(const LongWork&) = delete;
  LongWork& operator=(const LongWork&) = delete;

  // What is done now; `range` is the position at its end.
  void NextStage(const QString& text, int64_t range);
  void SetPosition(int64_t position) override;

  // Gives the progress dialog a button to end the work early; to be called before it begins.
  void AllowCancel() { can_cancel_ = true; }
  // The user has asked for the end; it is for the work to end then.
  bool Cancelled() const;
  // SetPosition; false: cancelled.
  bool GoesOn(int64_t position) {
    SetPosition(position);
    return !Cancelled();
  }

  // True while some work is under way: a command that came by another way than keys and clicks must wait.
  static bool Running();

 private:
  void Show(int64_t position);

  QWidget* window_;
  const Clock& clock_;
  std::unique_ptr<TF_dlprogress> dialog_;
  QString text_;
  int64_t started_;
  int64_t shown_at_ = 0;
  int64_t range_ = 0;
  int64_t next_look_ = 0;  // below this position the clock is not even asked
  bool waiting_cursor_ = false;
  bool can_cancel_ = false;
};

}  // namespace tessaro
