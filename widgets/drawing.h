#pragma once

#include <QByteArray>
#include <QString>

namespace tessaro {

// The drawing (SVG) of a file without what it names outside of itself: other files are never read for it, pictures in
// it stay. Empty when there is no such file, when it is no drawing, is compressed, or is larger than 16 MiB.
QByteArray SelfContainedDrawing(const QString& path);

}  // namespace tessaro
