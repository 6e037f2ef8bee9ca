#include "widgets/text.h"

#include <QFile>
#include <algorithm>

#include "platform/code_page.h"

namespace tessaro {

QString FromBytes(std::string_view bytes) {
  QString text(static_cast<qsizetype>(bytes.size()), Qt::Uninitialized);
  std::transform(bytes.begin(), bytes.end(), text.begin(),
                 [](char byte) { return QChar(code_page::CharacterOf(byte)); });
  return text;
}

std::optional<std::string> ToBytes(const QString& text) {
  std::string bytes;
  bytes.reserve(static_cast<size_t>(text.size()));
  for (const QChar letter : text) {
    const std::optional<char> byte = code_page::ByteOf(letter.unicode());
    if (!byte) return std::nullopt;
    bytes.push_back(*byte);
  }
  return bytes;
}

QString FromUtf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString FromPath(const std::filesystem::path& path) {
  return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

std::filesystem::path ToPath(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

}  // namespace tessaro
