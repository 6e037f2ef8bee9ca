#include "app/start_wish.h"

namespace tessaro {
namespace {

constexpr std::string_view kDeeds = "-ln";  // in the order of StartWish::Deed

}  // namespace

std::string ToBytes(const StartWish& wish) {
  std::string bytes = wish.card_file.string();
  bytes += kDeeds[static_cast<size_t>(wish.deed)];
  bytes += '\0';
  return bytes;
}

std::optional<StartWish> ToStartWish(std::string_view bytes) {
  const size_t end = bytes.find('\0');
  if (end == std::string_view::npos || end == 0) return std::nullopt;
  const size_t deed = kDeeds.find(bytes[end - 1]);
  if (deed == std::string_view::npos) return std::nullopt;
  return StartWish{.card_file = bytes.substr(0, end - 1), .deed = static_cast<StartWish::Deed>(deed)};
}

}  // namespace tessaro
