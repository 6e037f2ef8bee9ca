#pragma once

#include <QImage>
#include <functional>
#include <memory>

class QObject;

namespace tessaro {

// Reads pictures that would keep the window waiting, beside it and one after the other.
class PictureLoader {
 public:
  using Read = std::function<QImage()>;            // called on another thread
  using Taken = std::function<void(QImage read)>;  // called on the windows' thread

  PictureLoader();
  // What is still being read is forgotten.
  ~PictureLoader();
  PictureLoader(const PictureLoader&) = delete;
  PictureLoader& operator=(const PictureLoader&) = delete;

  void Begin(Read read, Taken taken);
  // Nothing that was begun is taken any more; what has not been looked at yet is not read.
  void Forget();

 private:
  struct Inbox;
  std::shared_ptr<Inbox> inbox_;
};

}  // namespace tessaro
