#include "edit/tag_spans.h"

#include <string>

#include "hypertext/markup.h"

namespace tessaro {

std::vector<TagSpan> FindTags(std::string_view side) {
  std::vector<TagSpan> tags;
  for (size_t open = side.find('<'); open != std::string_view::npos;) {
    const size_t close = side.find('>', open);
    if (close == std::string_view::npos) break;
    TagSpan tag{open, close + 1 - open};
    MarkupItem item;
    MarkupReader reader(side.substr(tag.begin, tag.length));
    tag.link = reader.Next(item) && item.kind == MarkupItem::Kind::Link;
    if (tag.link) tag.target = item.target;
    tags.push_back(tag);
    open = side.find('<', close);
  }
  return tags;
}

}  // namespace tessaro
