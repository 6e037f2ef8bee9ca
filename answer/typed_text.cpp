#include "answer/typed_text.h"

namespace tessaro {

std::string TypedBytes(const QString& text, CodePage page) {
  std::string bytes;
  bytes.reserve(static_cast<size_t>(text.size()));
  for (const QChar unit : text) bytes += page.ByteOf(unit.unicode()).value_or('\0');
  return bytes;
}

}  // namespace tessaro
