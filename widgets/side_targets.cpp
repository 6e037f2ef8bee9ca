#include "widgets/side_targets.h"

#include <algorithm>

namespace tessaro {
namespace {

QRect ToQt(const PixelRect& rect) {
  return {rect.left, rect.top, rect.width, rect.height};
}

// What stands in the area of a link.
std::string FaceIn(const Layout& layout, const QRect& area) {
  std::string face;
  for (const Fragment& fragment : layout.fragments) {
    const bool inside = fragment.colour != ColourClass::Text && area.contains(ToQt(fragment.rect).center());
    if (inside) face += fragment.text;
  }
  return face;
}

}  // namespace

std::vector<SideTarget> TargetsOf(const Layout& layout, const std::function<bool(const Fragment&)>& can_be_whole) {
  using Kind = SideTarget::Kind;
  std::vector<SideTarget> targets;
  for (const LinkArea& area : layout.links.areas()) {
    const QRect rect(QPoint(area.left, area.top), QPoint(area.right, area.bottom));
    targets.push_back({Kind::Link, rect, area.target, FaceIn(layout, rect)});
  }
  for (const Fragment& fragment : layout.fragments) {
    const bool picture = fragment.kind == Fragment::Kind::Picture && fragment.colour == ColourClass::Text;
    if (picture && can_be_whole(fragment)) targets.push_back({Kind::Picture, ToQt(fragment.rect), 0, fragment.text});
  }
  for (const Fragment& fragment : layout.fragments)
    if (fragment.kind == Fragment::Kind::Video) targets.push_back({Kind::Video, ToQt(fragment.rect), 0, fragment.text});
  return targets;
}

}  // namespace tessaro
