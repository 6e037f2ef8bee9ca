#include "edit/picture_cards.h"

#include <algorithm>

namespace tessaro {
namespace {

constexpr size_t kNowhere = std::string_view::npos;

}  // namespace

bool IsPictureTemplate(std::string_view front) {
  return front.find("<img src") != kNowhere || front.find("<img SRC") != kNowhere;
}

std::string WithPicture(std::string_view front, std::string_view file) {
  constexpr std::string_view kName = "img src=\"";
  std::string text(front);
  const size_t at = std::min(text.find(kName), text.find("img SRC=\""));
  if (at == kNowhere) return text;
  const size_t begin = at + kName.size();
  const size_t end = text.find('"', begin);
  if (end != kNowhere) text.replace(begin, end - begin, file);
  return text;
}

}  // namespace tessaro
