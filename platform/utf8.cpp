#include "platform/utf8.h"

namespace tessaro {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsCharacter(char32_t character) {
  return character < 0xD800 || (character > 0xDFFF && character < 0x110000);
}

// The smallest character that takes so many bytes; a longer form of a smaller one is no UTF-8.
constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};

}  // namespace

void AppendUtf8(std::string& text, char32_t character) {
  if (!IsCharacter(character)) character = kReplacement;
  const int following = character < 0x80 ? 0 : character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  constexpr char32_t kLead[] = {0, 0xC0, 0xE0, 0xF0};
  text += static_cast<char>(kLead[following] | character >> (6 * following));
  for (int i = following - 1; i >= 0; --i) text += static_cast<char>(0x80U | (character >> (6 * i) & 0x3FU));
}

std::string Utf8FromCodePage(std::string_view bytes, CodePage page) {
  std::string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) AppendUtf8(text, page.CharacterOf(byte));
  return text;
}

std::optional<std::pair<char32_t, size_t>> FirstUtf8(std::string_view text) {
  const auto lead = static_cast<uint8_t>(text[0]);
  if (lead < 0x80) return std::pair(char32_t{lead}, size_t{1});
  const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC0 || lead > 0xF7 || text.size() < length) return std::nullopt;
  char32_t character = lead & (0xFFU >> (length + 1));
  for (size_t i = 1; i < length; ++i) {
    const auto byte = static_cast<uint8_t>(text[i]);
    if ((byte & 0xC0U) != 0x80U) return std::nullopt;
    character = character << 6U | (byte & 0x3FU);
  }
  if (!IsCharacter(character) || character < kSmallest[length]) return std::nullopt;
  return std::pair(character, length);
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const auto first = FirstUtf8(text);
    if (!first) return false;
    text.remove_prefix(first->second);
  }
  return true;
}

}  // namespace tessaro
