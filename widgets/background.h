#pragma once

#include <QThreadPool>
#include <functional>

class QObject;

namespace tessaro {

// Work beside the windows, one piece after the other. It returns what is then to be done on the thread of the windows.
using BackgroundWork = std::function<std::function<void()>()>;

class Background {
 public:
  virtual ~Background() = default;
  // Starts the work, or queues it after what is under way. `receiver` must live until the work is done; what is to be
  // done then is not done when it is gone by that time.
  virtual void Run(QObject& receiver, BackgroundWork work) = 0;
  // Returns when all work is done.
  virtual void Wait() = 0;
};

// One thread of its own.
class ThreadBackground : public Background {
 public:
  ThreadBackground();
  ~ThreadBackground() override;
  void Run(QObject& receiver, BackgroundWork work) override;
  void Wait() override;

 private:
  QThreadPool pool_;
};

}  // namespace tessaro
