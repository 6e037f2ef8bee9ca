#include "edit/link_making.h"

#include <algorithm>

namespace tessaro {
namespace {

size_t Distance(size_t a, size_t b) {
  return a > b ? a - b : b - a;
}

// The marker nearest to a place; npos when there is none.
size_t NearestMarker(std::string_view text, size_t place) {
  size_t nearest = std::string_view::npos;
  for (size_t at = text.find(kLinkMarker); at != std::string_view::npos; at = text.find(kLinkMarker, at + 1)) {
    if (nearest == std::string_view::npos || Distance(at, place) < Distance(nearest, place)) nearest = at;
  }
  return nearest;
}

}  // namespace

std::string LinkText(std::string_view target_id, std::string_view face) {
  return Joined({"<a href=\"", target_id, "\">", face, "</a>"});
}

PendingLink::PendingLink(std::string_view side, SideRange selection)
    : side_(side), begin_(std::min(selection.begin, side.size())) {
  selected_ = side_.substr(begin_, selection.length);
}

std::string PendingLink::Shown() const {
  if (lost_) return side_;
  return std::string(side_).replace(begin_, selected_.size(), kLinkMarker);
}

void PendingLink::TakeShown(std::string_view shown) {
  side_ = shown;
  if (lost_) return;
  const size_t marker = NearestMarker(shown, begin_);
  lost_ = marker == std::string_view::npos;
  if (lost_) return;
  begin_ = marker;
  side_.replace(begin_, kLinkMarker.size(), selected_);
}

std::optional<std::string> PendingLink::Finish(std::string_view side_now, std::string_view target_id,
                                               std::string_view face) const {
  if (lost_ || side_now != side_) return std::nullopt;
  return std::string(side_).replace(begin_, selected_.size(), LinkText(target_id, face));
}

}  // namespace tessaro
