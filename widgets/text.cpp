#include "widgets/text.h"

#include <QFile>
#include <algorithm>

#include "platform/utf8.h"

namespace tessaro {
namespace {

// Stands, added to the byte, for a byte that is no text.
constexpr char16_t kNoText = 0xDC00;

}  // namespace

QString FromBytes(std::string_view bytes, CodePage page) {
  QString text(static_cast<qsizetype>(bytes.size()), Qt::Uninitialized);
  std::transform(bytes.begin(), bytes.end(), text.begin(), [page](char byte) { return QChar(page.CharacterOf(byte)); });
  return text;
}

std::optional<std::string> ToBytes(const QString& text, CodePage page) {
  std::string bytes;
  bytes.reserve(static_cast<size_t>(text.size()));
  for (const QChar letter : text) {
    const std::optional<char> byte = page.ByteOf(letter.unicode());
    if (!byte) return std::nullopt;
    bytes.push_back(*byte);
  }
  return bytes;
}

QString FromUtf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString FromPath(const std::filesystem::path& path) {
  const std::string bytes = path.string();
  if (IsUtf8(bytes)) return QFile::decodeName(QByteArray::fromStdString(bytes));
  QString text;
  for (std::string_view rest = bytes; !rest.empty();) {
    const auto first = FirstUtf8(rest);
    const size_t size = first ? first->second : 1;
    const auto byte = static_cast<char16_t>(static_cast<unsigned char>(rest.front()));
    text += first ? FromUtf8(rest.substr(0, size)) : QString(QChar(static_cast<char16_t>(kNoText + byte)));
    rest.remove_prefix(size);
  }
  return text;
}

std::filesystem::path ToPath(const QString& path) {
  std::string bytes;
  qsizetype start = 0;
  for (qsizetype i = 0; i <= path.size(); ++i) {
    const bool at_end = i == path.size();
    const bool is_byte = !at_end && path[i] >= QChar(kNoText + 0x80) && path[i] <= QChar(kNoText + 0xFF) &&
                         (i == 0 || !path[i - 1].isHighSurrogate());
    if (!at_end && !is_byte) continue;
    bytes += QFile::encodeName(path.mid(start, i - start)).toStdString();
    if (is_byte) bytes += static_cast<char>(path[i].unicode() - kNoText);
    start = i + 1;
  }
  return bytes;
}

}  // namespace tessaro
