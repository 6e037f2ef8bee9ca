#pragma once

#include <QCache>
#include <QImage>
#include <QPixmap>
#include <QSize>
#include <QString>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "hypertext/layout.h"
#include "hypertext/media.h"
#include "platform/disk.h"
#include "widgets/picture_loader.h"

namespace tessaro {

// The largest picture, in bytes of memory, that is read at all.
inline constexpr int kPictureMebibytes = 256;

struct MeasuredPicture {
  PictureFile file;
  int64_t cost = 0;  // of reading it, in pixels of a photograph
};

// Whether reading pictures of this cost would keep the window waiting.
bool IsSlowToRead(int64_t cost);
// Whether there is a picture in this file, and its own size, as it is seen.
MeasuredPicture MeasurePicture(const QString& path);
// Reads a picture in its own size; one wider or higher than kMaxMediaPixels is made smaller in its proportions. A null
// image when it cannot be read.
QImage ReadPicture(const QString& path);

// The pictures that card sides name: found, measured and read once.
class PictureStore {
 public:
  // `disk` must live longer.
  explicit PictureStore(const Disk& disk = RealDisk());
  // Where to look from now on; what was found elsewhere is forgotten.
  void SetFolders(const MediaFolders& folders);
  // Looks for files and their sizes anew. Read pictures stay as long as their files do.
  void Forget();
  // The path of any media file; empty when there is none.
  QString PathOf(std::string_view name);
  // Whether there is a picture of this name, and its own size, as it is seen.
  PictureFile Find(std::string_view name);
  // The picture for a place of `size` device pixels, to be stretched there where it is large. Null when it cannot be
  // read, which Find knows from then on, or is still being read; the observer is called when that is over.
  QPixmap Picture(std::string_view name, QSize size, bool white_is_transparent);
  bool IsBeingRead(std::string_view name) const;
  void SetObserver(std::function<void()> read) { observer_ = std::move(read); }
  // Whether the caller waits for every picture, however long it takes to read.
  void SetReadsAtOnce(bool on) { reads_at_once_ = on; }

 private:
  struct Entry {
    QString path;
    QString key;  // path and state of the file
    MeasuredPicture picture;
    bool being_read = false;
  };
  Entry& EntryOf(std::string_view name);
  QPixmap Keep(Entry& entry, const QString& key, QImage image);

  const Disk& disk_;
  MediaFinder finder_;
  std::map<std::string, Entry, std::less<>> entries_;
  QCache<QString, QPixmap> pictures_;
  std::function<void()> observer_;
  PictureLoader loader_;
  bool reads_at_once_ = false;
  int64_t cost_at_once_ = 0;  // read for the side on screen while the window waited
};

}  // namespace tessaro
