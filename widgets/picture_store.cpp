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

enum class Part { Whole, Size };

// Opens a picture file; a drawing without what it names outside of itself.
class PictureReader {
 public:
  explicit PictureReader(const QString& path, Part part = Part::Whole) : reader_(path) {
    QImageReader::setAllocationLimit(kPictureMebibytes);
    reader_.setDecideFormatFromContent(true);
    reader_.setAutoTransform(true);
    if (!reader_.format().startsWith("svg")) return;
    is_drawing_ = true;
    drawing_.setData(part == Part::Size ? DrawingForSize(path) : SelfContainedDrawing(path));
    drawing_.open(QIODevice::ReadOnly);
    reader_.setDevice(&drawing_);
    reader_.setFormat("svg");
  }
  QImageReader& reader() { return reader_; }
  bool is_drawing() const { return is_drawing_; }

 private:
  QBuffer drawing_;
  QImageReader reader_;
  bool is_drawing_ = false;
};

// Scaled down on each side that is longer than `most`, and in the form that is painted.
QImage ReadWithin(const QString& path, QSize most) {
  PictureReader picture(path);
  QImageReader& reader = picture.reader();
  const QSize size = reader.size();
  const QSize seen_most = SeenSize(reader, most);
  if (size.isValid() && (size.width() > seen_most.width() || size.height() > seen_most.height()))
    reader.setScaledSize(size.boundedTo(seen_most));
  QImage image = reader.read();
  if (image.isNull()) return image;
  return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
}

void MakeWhiteTransparent(QImage& image) {
  image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  for (int y = 0; y < image.height(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    std::replace(line, line + image.width(), qRgb(255, 255, 255), qRgba(0, 0, 0, 0));
  }
}

}  // namespace

bool IsSlowToRead(int64_t cost) {
  constexpr int64_t kAtOnce = 2'000'000;
  return cost > kAtOnce;
}

MeasuredPicture MeasurePicture(const QString& path) {
  constexpr int64_t kPerByteOfDrawing = 64;  // a shape of some thirty bytes is painted in about 50 us
  PictureReader picture(path, Part::Size);
  const QImageReader& reader = picture.reader();
  QSize size = SeenSize(reader, reader.size());
  if (size.isEmpty() && !picture.is_drawing()) size = ReadWithin(path, {kMaxMediaPixels, kMaxMediaPixels}).size();
  if (size.isEmpty()) return {{PictureFile::State::Unreadable, {}}};
  const PixelSize own = {size.width(), size.height()};
  const PixelSize read = picture.is_drawing() ? BoundedMedia(own) : own;
  const int64_t bytes = picture.is_drawing() ? QFileInfo(path).size() : 0;
  return {{PictureFile::State::Good, own}, int64_t{read.width} * read.height + kPerByteOfDrawing * bytes};
}

QImage ReadPicture(const QString& path) {
  const PictureFile file = MeasurePicture(path).file;
  const PixelSize size = BoundedMedia(file.size);
  return file.state == PictureFile::State::Good ? ReadWithin(path, {size.width, size.height}) : QImage();
}

PictureStore::PictureStore(const Disk& disk) : disk_(disk), finder_(disk, {}), pictures_(kCacheKibibytes) {}

void PictureStore::SetFolders(const MediaFolders& folders) {
  cost_at_once_ = 0;
  loader_.Forget();
  finder_ = MediaFinder(disk_, folders);
  entries_.clear();
}

void PictureStore::Forget() {
  cost_at_once_ = 0;
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
  return EntryOf(name).picture.file;
}

PictureStore::Entry& PictureStore::EntryOf(std::string_view name) {
  const auto known = entries_.find(name);
  if (known != entries_.end()) return known->second;
  Entry entry;
  entry.path = PathOf(name);
  if (!entry.path.isEmpty()) {
    const FileState state = disk_.State(ToPath(entry.path)).value_or(FileState());
    entry.key = QStringLiteral("%1|%2|%3").arg(entry.path).arg(state.size).arg(state.modified_ns);
    entry.picture = MeasurePicture(entry.path);
  }
  return entries_.emplace(std::string(name), std::move(entry)).first->second;
}

QPixmap PictureStore::Picture(std::string_view name, QSize size, bool white_is_transparent) {
  Entry& entry = EntryOf(name);
  if (entry.picture.file.state != PictureFile::State::Good) return {};
  const QString key = QStringLiteral("%1|%2x%3|%4")
                          .arg(entry.key)
                          .arg(size.width())
                          .arg(size.height())
                          .arg(white_is_transparent ? 1 : 0);
  if (const QPixmap* known = pictures_.object(key)) return *known;
  if (entry.being_read && !reads_at_once_) return {};
  const auto read = [path = entry.path, most = size.boundedTo({kMaxMediaPixels, kMaxMediaPixels}),
                     white_is_transparent] {
    QImage image = ReadWithin(path, most);
    if (white_is_transparent && !image.isNull()) MakeWhiteTransparent(image);
    return image;
  };
  if (reads_at_once_ || !IsSlowToRead(cost_at_once_ + entry.picture.cost)) {
    cost_at_once_ += entry.picture.cost;
    return Keep(entry, key, read());
  }
  entry.being_read = true;
  loader_.Begin(read, [this, key, name = std::string(name)](QImage image) {
    Keep(EntryOf(name), key, std::move(image));
    if (observer_) observer_();
  });
  return {};
}

QPixmap PictureStore::Keep(Entry& entry, const QString& key, QImage image) {
  entry.being_read = false;
  if (image.isNull()) {
    entry.picture.file.state = PictureFile::State::Unreadable;
    return {};
  }
  QPixmap picture = QPixmap::fromImage(std::move(image));
  pictures_.insert(key, new QPixmap(picture), std::max<int>(1, picture.width() * picture.height() / 256));
  return picture;
}

bool PictureStore::IsBeingRead(std::string_view name) const {
  const auto known = entries_.find(name);
  return known != entries_.end() && known->second.being_read;
}

}  // namespace tessaro
