#include "widgets/picture_loader.h"

#include <QCoreApplication>
#include <QMutex>
#include <QMutexLocker>
#include <QObject>
#include <QThreadPool>
#include <atomic>
#include <utility>

namespace tessaro {

// Shared with the threads that read, which may outlast the loader.
struct PictureLoader::Inbox {
  QMutex mutex;
  std::unique_ptr<QObject> receiver;  // null when the loader is gone
  std::atomic<int> number = 0;        // of what is wanted now
};

PictureLoader::PictureLoader() : inbox_(std::make_shared<Inbox>()) {
  inbox_->receiver = std::make_unique<QObject>();
}

PictureLoader::~PictureLoader() {
  Forget();
  const QMutexLocker lock(&inbox_->mutex);
  inbox_->receiver.reset();
}

void PictureLoader::Begin(Read read, Taken taken) {
  // Large pictures take much memory while they are read.
  static QMutex one_at_a_time;
  QThreadPool::globalInstance()->start(
      [inbox = inbox_, number = inbox_->number.load(), read = std::move(read), taken = std::move(taken)] {
        const QMutexLocker alone(&one_at_a_time);
        if (inbox->number != number) return;
        QImage image = read();
        const QMutexLocker lock(&inbox->mutex);
        if (inbox->receiver == nullptr) return;
        const auto take = [inbox, number, taken, image = std::move(image)] {
          if (inbox->number == number) taken(image);
        };
        QMetaObject::invokeMethod(inbox->receiver.get(), take, Qt::QueuedConnection);
      });
}

void PictureLoader::Forget() {
  ++inbox_->number;
}

}  // namespace tessaro
