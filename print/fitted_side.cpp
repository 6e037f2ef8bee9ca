#include "print/fitted_side.h"

#include <algorithm>
#include <array>

namespace tessaro {
namespace {

constexpr std::array kSizes = {400, 350, 300, 250, 200, 175, 150, 125, 110, 100, 90, 80, 70, 60, 50, 40, 30};

// The sizes to be tried, the largest first.
std::vector<int> SizesOf(const SideFit& fit) {
  std::vector<int> sizes = {fit.most};
  for (const int size : kSizes) {
    if (size < fit.most && size > fit.least) sizes.push_back(size);
  }
  if (fit.least < fit.most) sizes.push_back(fit.least);
  return sizes;
}

PixelSize ContentOf(const Layout& layout) {
  PixelSize content;
  for (const Fragment& fragment : layout.fragments) {
    content.width = std::max(content.width, fragment.rect.left + fragment.rect.width);
    content.height = std::max(content.height, fragment.rect.top + fragment.rect.height);
  }
  return content;
}

PixelSize Shrunk(PixelSize size, PixelSize room) {
  const auto part = [](int length, int of, int whole) {
    return std::max(static_cast<int>(int64_t{length} * of / whole), 1);
  };
  if (int64_t{size.width} * room.height > int64_t{size.height} * room.width) {
    return {room.width, part(size.height, room.width, size.width)};
  }
  return {part(size.width, room.height, size.height), room.height};
}

// The lines from the top down: what stands beside each other belongs together.
std::vector<Strip> LinesOf(const Layout& layout) {
  std::vector<Strip> lines;
  for (const Fragment& fragment : layout.fragments) {
    Strip line = {fragment.rect.top, fragment.rect.top + fragment.rect.height};
    while (!lines.empty() && line.top < lines.back().bottom) {
      line = {std::min(line.top, lines.back().top), std::max(line.bottom, lines.back().bottom)};
      lines.pop_back();
    }
    lines.push_back(line);
  }
  return lines;
}

}  // namespace

int LengthOnPaper(int length, int percent) {
  return static_cast<int>((int64_t{length} * percent + 99) / 100);
}

FittedSide FitSide(const SideLayer& lay_out, PixelSize room, const SideFit& fit) {
  FittedSide side;
  const auto fits = [&](int percent) {
    const auto enlarged = [percent](int length) { return static_cast<int>(int64_t{length} * 100 / percent); };
    const PixelSize frame = {enlarged(room.width), enlarged(room.height)};
    side.layout = lay_out(frame, fit.in_height);
    side.content = ContentOf(side.layout);
    side.percent = percent;
    side.cut = side.content.width > frame.width || (fit.in_height && side.content.height > frame.height);
    return !side.cut;
  };
  const std::vector<int> sizes = SizesOf(fit);
  if (fits(sizes.front())) return side;
  // The smaller, the rather it fits.
  const auto found = std::partition_point(sizes.begin() + 1, sizes.end(), [&](int percent) { return !fits(percent); });
  const int otherwise = fit.in_height ? sizes.back() : sizes.front();
  const int best = found == sizes.end() ? otherwise : *found;
  if (side.percent != best) fits(best);
  return side;
}

Layout LayOutWithin(std::string_view side, PixelSize frame, int start_points, Measurer& measurer) {
  constexpr int kItemsAtOnce = 64;
  LayoutWork work(side, frame, start_points, measurer);
  const Layout& layout = work.layout();
  int pictures = 0;  // their height
  size_t seen = 0;
  while (layout.size.height - pictures <= frame.height && work.Continue(kItemsAtOnce)) {
    for (; seen < layout.fragments.size(); ++seen) {
      const Fragment& fragment = layout.fragments[seen];
      if (fragment.kind != Fragment::Kind::Text) pictures += fragment.rect.height;
    }
  }
  return work.TakeLayout();
}

void FitPictures(Layout& layout, PixelSize room) {
  int up = 0;
  int line_bottom = 0;
  for (size_t n = 0; n < layout.fragments.size(); ++n) {
    Fragment& fragment = layout.fragments[n];
    const PixelRect before = fragment.rect;
    const int bottom = before.top + before.height;
    const bool ends_line = n + 1 == layout.fragments.size() || layout.fragments[n + 1].rect.top >= bottom;
    const bool alone = before.top >= line_bottom && ends_line;
    line_bottom = std::max(line_bottom, bottom);
    fragment.rect.top -= up;
    fragment.baseline -= up;
    const bool fits = before.width <= room.width && before.height <= room.height;
    if (fragment.kind == Fragment::Kind::Text || fits) continue;
    const PixelSize size = Shrunk({before.width, before.height}, room);
    fragment.rect.width = size.width;
    fragment.rect.height = size.height;
    // In a line with others it stays in the middle.
    alone ? up += before.height - size.height : fragment.rect.top += (before.height - size.height) / 2;
  }
}

std::vector<Strip> CutIntoStrips(const Layout& layout, int height) {
  std::vector<Strip> strips = {{}};
  for (const Strip& line : LinesOf(layout)) {
    if (line.bottom - strips.back().top > height) {
      if (strips.back().bottom > strips.back().top) strips.push_back({});
      strips.back() = {line.top, line.top};
    }
    while (line.bottom - strips.back().top > height) {
      strips.back().bottom = strips.back().top + height;
      strips.push_back({strips.back().bottom, strips.back().bottom});
    }
    strips.back().bottom = line.bottom;
  }
  return strips;
}

}  // namespace tessaro
