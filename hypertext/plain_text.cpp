#include "hypertext/plain_text.h"

#include "hypertext/markup.h"

namespace tessaro {

std::string PlainText(std::string_view side) {
  std::string text;
  MarkupReader reader(side);
  MarkupItem item;
  bool blank_wanted = false;
  const auto add = [&](const std::string& letters) {
    if (blank_wanted && !text.empty() && text.back() != '\n') text += ' ';
    blank_wanted = false;
    text += letters;
  };
  while (reader.Next(item)) {
    switch (item.kind) {
      case MarkupItem::Kind::Text:
        add(item.text);
        break;
      case MarkupItem::Kind::Link:
        if (!item.picture_face) add(item.text);
        break;
      case MarkupItem::Kind::Blank:
      case MarkupItem::Kind::WordEnd:
      case MarkupItem::Kind::Picture:
        blank_wanted = true;
        break;
      case MarkupItem::Kind::LineBreak:
        if (!text.empty()) text += '\n';
        blank_wanted = false;
        break;
      default:
        break;
    }
  }
  const size_t last = text.find_last_not_of(" \n");
  text.resize(last == std::string::npos ? 0 : last + 1);
  return text;
}

std::string PlainBeginning(std::string_view side) {
  constexpr size_t kMost = 4000;
  return PlainText(side.substr(0, kMost));
}

}  // namespace tessaro
