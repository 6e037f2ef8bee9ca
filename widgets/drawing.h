#pragma once

#include <QByteArray>
#include <QString>

namespace tessaro {

// The drawing (SVG) of a file without what it names outside of itself: other files are never read for it, pictures in
// it stay. Empty when there is no such file, when it is no drawing, is compressed, or is larger than 4 MiB.
QByteArray SelfContainedDrawing(const QString& path);
// The same with nothing drawn, to be asked for its size. Of a drawing that does not say its size it is the whole, and
// empty from 1 MiB on.
QByteArray DrawingForSize(const QString& path);

}  // namespace tessaro
