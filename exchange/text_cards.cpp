#include "exchange/text_cards.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace tessaro {
namespace {

// So many bytes at the front of a side are left out where they are line breaks.
constexpr size_t kBreakPlaces = 2;

bool IsBreak(char c) {
  return c == '\r' || c == '\n';
}

// Whether nothing of a side is left without the line breaks at its front.
bool IsEmptySide(std::string_view side) {
  return side.size() <= kBreakPlaces && std::all_of(side.begin(), side.end(), IsBreak);
}

int64_t CountVisible(std::string_view text) {
  return std::count_if(text.begin(), text.end(), [](char c) { return c != ' ' && c != '\t' && !IsBreak(c); });
}

std::string WithSingleBackslashes(std::string_view text) {
  std::string single;
  for (size_t i = 0; i < text.size(); ++i) {
    single += text[i];
    if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == '\\') ++i;
  }
  return single;
}

// Finds the separators of either kind one after the other.
class Separators {
 public:
  Separators(std::string_view text, const TextLayout& layout)
      : text_(text), marks_{layout.separator, layout.card_separator}, next_{Find(0, 0), Find(1, 0)} {}

  // Where the next one is; the size of the text when there is none.
  size_t Next() {
    const size_t at = std::min(next_[0], next_[1]);
    for (size_t kind = 0; kind < marks_.size(); ++kind) {
      if (next_[kind] == at) next_[kind] = Find(kind, at + 1);
    }
    return at;
  }

 private:
  size_t Find(size_t kind, size_t from) const { return std::min(text_.find(marks_[kind], from), text_.size()); }

  std::string_view text_;
  std::array<char, 2> marks_;
  std::array<size_t, 2> next_;
};

// A card as it stands in the text.
struct RawCard {
  std::string_view front;
  std::string_view back;
  size_t size;  // up to and with its card separator
};

// The card that a text begins with; its last one may lack the card separator.
std::optional<RawCard> FirstCard(std::string_view text, const TextLayout& layout) {
  const size_t front_end = text.find(layout.separator);
  if (front_end == std::string_view::npos) return std::nullopt;
  const size_t back_end = std::min(text.find(layout.card_separator, front_end + 1), text.size());
  const std::string_view back = text.substr(front_end + 1, back_end - front_end - 1);
  return RawCard{text.substr(0, front_end), back, std::min(back_end + 1, text.size())};
}

}  // namespace

TextCheck CheckText(std::string_view text, const TextLayout& layout, const WorkObserver& observer) {
  TextCheck check;
  WorkWatch watch(observer, kTellEveryBytes);
  bool in_back = false;
  size_t behind = 0;  // the last separator
  Separators separators(text, layout);
  for (size_t at = separators.Next(); at < text.size(); at = separators.Next()) {
    const bool ends_front = text[at] == layout.separator;
    check.good = ends_front != in_back;
    check.cancelled = !watch.GoOn(static_cast<int64_t>(at));
    if (!check.good || check.cancelled) return check;
    if (!ends_front) ++check.cards;
    in_back = ends_front;
    behind = at + 1;
  }
  check.cut_card = in_back;
  if (!in_back) check.left_over = CountVisible(text.substr(behind));
  const std::optional<RawCard> first = FirstCard(text, layout);
  check.empty_first = first && IsEmptySide(first->front) && IsEmptySide(first->back);
  check.backslash_pairs = text.find("\\\\") != std::string_view::npos;
  return check;
}

bool TextCards::Next(Card& card) {
  while (const std::optional<RawCard> raw = FirstCard(rest_, layout_)) {
    rest_.remove_prefix(raw->size);
    if (std::exchange(first_, false) && IsEmptySide(raw->front) && IsEmptySide(raw->back)) continue;
    PutSide(layout_.swapped ? raw->back : raw->front, card.front);
    PutSide(layout_.swapped ? raw->front : raw->back, card.back);
    return true;
  }
  return false;
}

void TextCards::PutSide(std::string_view side, std::string& text) const {
  text.clear();
  for (size_t i = 0; i < std::min(side.size(), kBreakPlaces); ++i) {
    if (!IsBreak(side[i])) text += side[i];
  }
  if (side.size() > kBreakPlaces) text += side.substr(kBreakPlaces);
  if (layout_.backslash_pairs) text = WithSingleBackslashes(text);
  if (text.empty()) text = '-';
}

}  // namespace tessaro
