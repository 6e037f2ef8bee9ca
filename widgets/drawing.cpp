#include "widgets/drawing.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <algorithm>
#include <array>
#include <utility>

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr qint64 kMostBytes = 4 << 20;
constexpr qint64 kMostBytesWithoutSize = 1 << 20;

// A place in the drawing itself, or a picture of dots that stands in it. Another drawing in it could name files again.
bool StandsInside(QStringView reference) {
  reference = reference.trimmed();
  if (reference.startsWith(u'#')) return true;
  const qsizetype begin = reference.indexOf(u";base64,");
  if (!reference.startsWith(u"data:") || begin < 0) return false;
  const QByteArray bytes = QByteArray::fromBase64(reference.sliced(begin + 8).toLatin1());
  constexpr std::array<const char*, 4> kBeginnings = {"\x89PNG", "\xFF\xD8\xFF", "GIF8", "BM"};
  return std::any_of(kBeginnings.begin(), kBeginnings.end(), [&](const char* text) { return bytes.startsWith(text); });
}

void CopyElement(const QXmlStreamReader& from, QXmlStreamWriter& to) {
  to.writeStartElement(from.qualifiedName().toString());
  for (const QXmlStreamNamespaceDeclaration& name : from.namespaceDeclarations()) {
    const QString prefix = name.prefix().toString();
    to.writeAttribute(prefix.isEmpty() ? u"xmlns"_s : u"xmlns:"_s + prefix, name.namespaceUri().toString());
  }
  for (const QXmlStreamAttribute& attribute : from.attributes()) {
    if (attribute.name().compare(u"href", Qt::CaseInsensitive) == 0 && !StandsInside(attribute.value())) continue;
    to.writeAttribute(attribute.qualifiedName().toString(), attribute.value().toString());
  }
}

bool SaysItsSize(const QXmlStreamAttributes& attributes) {
  return attributes.hasAttribute("viewBox"_L1) ||
         (attributes.hasAttribute("width"_L1) && attributes.hasAttribute("height"_L1));
}

// With `size_alone` up to the outermost element, if that is enough.
QByteArray Copy(const QString& path, bool size_alone) {
  QFile file(path);
  if (!QFileInfo(path).isFile() || file.size() > kMostBytes || !file.open(QIODevice::ReadOnly)) return {};
  QXmlStreamReader from(&file);
  QByteArray drawing;
  QXmlStreamWriter to(&drawing);
  while (!from.atEnd()) {
    from.readNext();
    if (from.isStartElement()) CopyElement(from, to);
    if (from.isStartElement() && std::exchange(size_alone, false)) {
      if (!SaysItsSize(from.attributes()))
        return file.size() > kMostBytesWithoutSize ? QByteArray() : Copy(path, false);
      to.writeEndElement();
      return drawing;
    }
    if (from.isEndElement()) to.writeEndElement();
    if (from.isCharacters()) to.writeCharacters(from.text().toString());
  }
  return from.hasError() ? QByteArray() : drawing;
}

}  // namespace

QByteArray SelfContainedDrawing(const QString& path) {
  return Copy(path, false);
}

QByteArray DrawingForSize(const QString& path) {
  return Copy(path, true);
}

}  // namespace tessaro
