#include "widgets/side_selection.h"

#include <QTextLayout>
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "widgets/text_cache.h"

namespace tessaro {
namespace {

const QTextLayout& LettersOf(const Fragment& fragment, TextCache& texts) {
  return *texts.Find(fragment.text, fragment.style).letters;
}

int XOf(const Fragment& fragment, int letter, TextCache& texts) {
  return fragment.rect.left + qRound(LettersOf(fragment, texts).lineAt(0).cursorToX(letter));
}

bool IsText(const Fragment& fragment) {
  return fragment.kind == Fragment::Kind::Text && !fragment.text.empty();
}

}  // namespace

void SideSelection::SelectAll(const Layout& layout) {
  from_ = {};
  to_ = {layout.fragments.size(), 0};
}

std::vector<SideSelection::Part> SideSelection::Parts(const Layout& layout, TextCache& texts) const {
  const auto [first, last] = std::minmax(from_, to_);
  std::vector<Part> parts;
  for (size_t i = first.fragment; i < layout.fragments.size() && i <= last.fragment; ++i) {
    const Fragment& fragment = layout.fragments[i];
    if (!IsText(fragment)) continue;
    const int letters = static_cast<int>(LettersOf(fragment, texts).text().size());
    const int from = i == first.fragment ? std::min(first.letter, letters) : 0;
    const int to = i == last.fragment ? std::min(last.letter, letters) : letters;
    if (from < to) parts.push_back({&fragment, from, to});
  }
  return parts;
}

std::vector<QRect> SideSelection::Rects(const Layout& layout, TextCache& texts) const {
  std::vector<QRect> rects;
  for (const Part& part : Parts(layout, texts)) {
    const int left = XOf(*part.fragment, part.from, texts);
    const int right = XOf(*part.fragment, part.to, texts);
    rects.emplace_back(std::min(left, right), part.fragment->rect.top, std::abs(right - left),
                       part.fragment->rect.height);
  }
  return rects;
}

QString SideSelection::Text(const Layout& layout, TextCache& texts) const {
  const bool from_right = texts.page().right_to_left();
  QString text;
  int end = 0;
  int baseline = 0;
  for (const Part& part : Parts(layout, texts)) {
    const Fragment& fragment = *part.fragment;
    if (!text.isEmpty() && fragment.baseline != baseline) {
      text += u'\n';
    } else if (!text.isEmpty() && (from_right ? fragment.after_blank : fragment.rect.left > end)) {
      text += u' ';
    }
    const QTextLayout& letters = LettersOf(fragment, texts);
    text += letters.text().mid(part.from, part.to - part.from);
    baseline = fragment.baseline;
    end = XOf(fragment, static_cast<int>(letters.text().size()), texts);
  }
  return text;
}

TextPlace PlaceAt(const Layout& layout, QPoint point, TextCache& texts) {
  // The nearest line, and in it the nearest text.
  const auto away = [point](const Fragment& fragment) {
    const PixelRect& rect = fragment.rect;
    const int below = std::max({rect.top - point.y(), point.y() - (rect.top + rect.height - 1), 0});
    const int beside = std::max({rect.left - point.x(), point.x() - (rect.left + rect.width - 1), 0});
    return std::pair(below, beside);
  };
  const Fragment* nearest = nullptr;
  for (const Fragment& fragment : layout.fragments)
    if (IsText(fragment) && (nearest == nullptr || away(fragment) < away(*nearest))) nearest = &fragment;
  if (nearest == nullptr) return {};
  const int letter = LettersOf(*nearest, texts).lineAt(0).xToCursor(point.x() - nearest->rect.left);
  return {static_cast<size_t>(nearest - layout.fragments.data()), letter};
}

}  // namespace tessaro
