#include "widgets/background.h"

#include <QMetaObject>
#include <QObject>
#include <utility>

namespace tessaro {

ThreadBackground::ThreadBackground() {
  pool_.setMaxThreadCount(1);
}

ThreadBackground::~ThreadBackground() {
  pool_.waitForDone();
}

void ThreadBackground::Run(QObject& receiver, BackgroundWork work) {
  pool_.start(
      [&receiver, work = std::move(work)] { QMetaObject::invokeMethod(&receiver, work(), Qt::QueuedConnection); });
}

void ThreadBackground::Wait() {
  pool_.waitForDone();
}

}  // namespace tessaro
