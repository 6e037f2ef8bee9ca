#include "answer/typed_text.h"

#include "platform/code_page.h"

namespace tessaro {

std::string TypedBytes(const QString& text) {
  std::string bytes;
  bytes.reserve(static_cast<size_t>(text.size()));
  for (const QChar unit : text) bytes += code_page::ByteOf(unit.unicode()).value_or('\0');
  return bytes;
}

}  // namespace tessaro
