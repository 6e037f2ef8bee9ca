#include "widgets/picture_store.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>
#include <algorithm>

#include "widgets/drawing.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

// Holds the largest picture that is ever read for a side, so that none is read again at every repaint.
constexpr int kCacheKibibytes = 96 * 1024;
static_assert(kCacheKibibytes > kMaxMediaPixels / 1024 * kMaxMediaPixels * 4);

// As the picture is seen: photographs may lie on their side in the file.
QSize SeenSize(const QImageReader& reader, QSize size) {
  return reader.transformation() & QImageIOHandler::TransformationRotate90 ? size.transposed() : size;
}

// Opens a picture file; a drawing without what it names outside of itself.
class PictureReader {
 public:
  explicit PictureReader(const QString& path) : reader_(path) {
    QImageReader::setAllocationLimit(kPictureMebibytes);
    reader_.setDecideFormatFromContent(true);
    reader_.setAutoTransform(true);
    if (!reader_.format().startsWith("svg")) return;
    drawing_.setData(SelfContainedDrawing(path));
    drawing_.open(QIODevice::ReadOnly);
    reader_.setDevice(&drawing_);
    reader_.setFormat("svg");
  }
  QImageReader& reader() { return reader_; }

 private:
  QBuffer drawing_;
  QImageReader reader_;
};

// Scaled down on each side that is longer than `most`.
QImage ReadWithin(const QString& path, QSize most) {
  PictureReader picture(path);
  QImageReader& reader = picture.reader();
  const QSize size = reader.size();
  const QSize seen_most = SeenSize(reader, most);
  if (size.isValid() && (size.width() > seen_most.width() || size.height() > seen_most.height()))
    reader.setScaledSize(size.boundedTo(seen_most));
  return reader.read();
}

void MakeWhiteTransparent(QImage& image) {
  image = image.convertToFormat(QImage::Format_ARGB32);
  const QRgb white = qRgb(255, 255, 255);
  for (int y = 0; y < image.height(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    std::replace(line, line + image.width(), white, qRgba(255, 255, 255, 0));
  }
}

}  // namespace

bool IsSlowToRead(PixelSize size) {
  constexpr int64_t kPixelsAtOnce = 4'000'000;
  return int64_t{size.width} * size.height > kPixelsAtOnce;
}

PictureFile MeasurePicture(const QString& path) {
  PictureReader picture(path);
  const QImageReader& reader = picture.reader();
  QSize size = reader.size();
  size = size.isValid() ? SeenSize(reader, size) : ReadWithin(path, {kMaxMediaPixels, kMaxMediaPixels}).size();
  if (size.isEmpty()) return {PictureFile::State::Unreadable, {}};
  return {PictureFile::State::Good, {size.width(), size.height()}};
}

QImage ReadPicture(const QString& path) {
  const PictureFile file = MeasurePicture(path);
  const PixelSize size = BoundedMedia(file.size);
  return file.state == PictureFile::State::Good ? ReadWithin(path, {size.width, size.height}) : QImage();
}

PictureStore::PictureStore(const Disk& disk) : disk_(disk), finder_(disk, {}), pictures_(kCacheKibibytes) {}

void PictureStore::SetFolders(const MediaFolders& folders) {
  loader_.Forget();
  finder_ = MediaFinder(disk_, folders);
  entries_.clear();
}

void PictureStore::Forget() {
  loader_.Forget();
  finder_.Forget();
  entries_.clear();
}

QString PictureStore::PathOf(std::string_view name) {
  const auto found = finder_.Find(name);
  const QString path = found ? FromPath(*found) : QString();
  return QFileInfo(path).isFile() ? path : QString();
}

PictureFile PictureStore::Find(std::string_view name) {
  return EntryOf(name).file;
}

PictureStore::Entry& PictureStore::EntryOf(std::string_view name) {
  const auto known = entries_.find(name);
  if (known != entries_.end()) return known->second;
  Entry entry;
  entry.path = PathOf(name);
  if (!entry.path.isEmpty()) {
    const FileState state = disk_.State(ToPath(entry.path)).value_or(FileState());
    entry.key = QStringLiteral("%1|%2|%3").arg(entry.path).arg(state.size).arg(state.modified_ns);
    entry.file = MeasurePicture(entry.path);
  }
  return entries_.emplace(std::string(name), std::move(entry)).first->second;
}

QPixmap PictureStore::Picture(std::string_view name, QSize size, bool white_is_transparent) {
  Entry& entry = EntryOf(name);
  if (entry.file.state != PictureFile::State::Good) return {};
  const QString key = QStringLiteral("%1|%2x%3|%4")
                          .arg(entry.key)
                          .arg(size.width())
                          .arg(size.height())
                          .arg(white_is_transparent ? 1 : 0);
  if (const QPixmap* known = pictures_.object(key)) return *known;
  if (entry.being_read) return {};
  const auto read = [path = entry.path, most = size.boundedTo({kMaxMediaPixels, kMaxMediaPixels})] {
    return ReadWithin(path, most);
  };
  const auto take = [this, key, white_is_transparent](Entry& of, QImage image) {
    of.being_read = false;
    if (image.isNull()) of.file.state = PictureFile::State::Unreadable;
    return image.isNull() ? QPixmap() : Keep(key, std::move(image), white_is_transparent);
  };
  if (!IsSlowToRead(entry.file.size)) return take(entry, read());
  entry.being_read = true;
  loader_.Begin(read, [this, take, name = std::string(name)](QImage image) {
    take(EntryOf(name), std::move(image));
    if (observer_) observer_();
  });
  return {};
}

QPixmap PictureStore::Keep(const QString& key, QImage image, bool white_is_transparent) {
  if (white_is_transparent) MakeWhiteTransparent(image);
  QPixmap picture = QPixmap::fromImage(std::move(image));
  pictures_.insert(key, new QPixmap(picture), std::max<int>(1, picture.width() * picture.height() / 256));
  return picture;
}

bool PictureStore::IsBeingRead(std::string_view name) const {
  const auto known = entries_.find(name);
  return known != entries_.end() && known->second.being_read;
}

}  // namespace tessaro
