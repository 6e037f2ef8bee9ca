#include "platform/qt/text.h"

#include <QFile>
#include <algorithm>
#include <array>

namespace tessaro {
namespace {

// What bytes 0x80 ... 0x9F stand for. The five that the code page leaves open stay the control characters of the same
// number, so that no byte is lost.
constexpr std::array<char16_t, 32> kUpperHalf = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

char16_t ToUnicode(unsigned char byte) {
  return byte >= 0x80 && byte < 0xA0 ? kUpperHalf[byte - 0x80] : static_cast<char16_t>(byte);
}

std::optional<char> ToByte(char16_t unicode) {
  if (unicode < 0x80 || (unicode >= 0xA0 && unicode <= 0xFF)) return static_cast<char>(unicode);
  const auto* found = std::find(kUpperHalf.begin(), kUpperHalf.end(), unicode);
  if (found == kUpperHalf.end()) return std::nullopt;
  return static_cast<char>(0x80 + (found - kUpperHalf.begin()));
}

}  // namespace

QString FromBytes(std::string_view bytes) {
  QString text(static_cast<qsizetype>(bytes.size()), Qt::Uninitialized);
  std::transform(bytes.begin(), bytes.end(), text.begin(),
                 [](char byte) { return QChar(ToUnicode(static_cast<unsigned char>(byte))); });
  return text;
}

std::optional<std::string> ToBytes(const QString& text) {
  std::string bytes;
  bytes.reserve(static_cast<size_t>(text.size()));
  for (const QChar letter : text) {
    const std::optional<char> byte = ToByte(letter.unicode());
    if (!byte) return std::nullopt;
    bytes.push_back(*byte);
  }
  return bytes;
}

QString FromPath(const std::filesystem::path& path) {
  return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

std::filesystem::path ToPath(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

}  // namespace tessaro
