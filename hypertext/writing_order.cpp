#include "hypertext/writing_order.h"

#include <unicode/ubidi.h>
#include <unicode/ubrk.h>
#include <unicode/uchar.h>

#include <string>

namespace tessaro {
namespace {

constexpr char16_t kPicture = 0xFFFC;

// Letters of one direction stay together; all else is ordered by what stands beside it.
bool GoOn(UCharDirection before, UCharDirection next) {
  if (next == U_DIR_NON_SPACING_MARK || next == U_BOUNDARY_NEUTRAL) return true;
  const auto from_right = [](UCharDirection direction) {
    return direction == U_RIGHT_TO_LEFT || direction == U_RIGHT_TO_LEFT_ARABIC;
  };
  return (before == U_LEFT_TO_RIGHT && next == U_LEFT_TO_RIGHT) || (from_right(before) && from_right(next));
}

}  // namespace

std::vector<std::string_view> DirectedParts(std::string_view text, CodePage page, size_t longest) {
  std::vector<std::string_view> parts;
  UCharDirection before = U_LEFT_TO_RIGHT;
  size_t begin = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const UCharDirection next = u_charDirection(page.CharacterOf(text[i]));
    if (i - begin == longest || (i > begin && !GoOn(before, next))) {
      parts.push_back(text.substr(begin, i - begin));
      begin = i;
    }
    if (i == begin || (next != U_DIR_NON_SPACING_MARK && next != U_BOUNDARY_NEUTRAL)) before = next;
  }
  if (begin < text.size()) parts.push_back(text.substr(begin));
  return parts;
}

LineOrder OrderOf(const std::vector<std::string_view>& pieces, CodePage page) {
  constexpr UBiDiLevel kFromRight = 1;
  std::u16string line;
  std::vector<int32_t> begins;
  for (const std::string_view piece : pieces) {
    begins.push_back(static_cast<int32_t>(line.size()));
    piece.empty() ? line += kPicture : line += page.Characters(piece);
  }
  LineOrder order = {std::vector<uint8_t>(pieces.size(), kFromRight), std::vector<int32_t>(pieces.size())};
  UErrorCode error = U_ZERO_ERROR;
  UBiDi* paragraph = ubidi_openSized(static_cast<int32_t>(line.size()), 0, &error);
  ubidi_setPara(paragraph, line.data(), static_cast<int32_t>(line.size()), kFromRight, nullptr, &error);
  if (error <= U_ZERO_ERROR) {
    for (size_t i = 0; i < pieces.size(); ++i) order.levels[i] = ubidi_getLevelAt(paragraph, begins[i]);
  }
  ubidi_close(paragraph);
  ubidi_reorderVisual(order.levels.data(), static_cast<int32_t>(pieces.size()), order.visual.data());
  return order;
}

struct WordBreaks::Iterator {
  Iterator() {
    UErrorCode error = U_ZERO_ERROR;
    breaks = ubrk_open(UBRK_LINE, "th", nullptr, 0, &error);
  }
  ~Iterator() { ubrk_close(breaks); }
  Iterator(const Iterator&) = delete;
  Iterator& operator=(const Iterator&) = delete;

  UBreakIterator* breaks = nullptr;
};

WordBreaks::WordBreaks(CodePage page) : page_(page) {}
WordBreaks::~WordBreaks() = default;

std::vector<size_t> WordBreaks::In(std::string_view text) {
  std::vector<size_t> places;
  if (iterator_ == nullptr) iterator_ = std::make_unique<Iterator>();
  if (iterator_->breaks == nullptr) return places;
  const std::u16string characters = page_.Characters(text);
  UErrorCode error = U_ZERO_ERROR;
  ubrk_setText(iterator_->breaks, characters.data(), static_cast<int32_t>(characters.size()), &error);
  if (error > U_ZERO_ERROR) return places;
  for (int32_t at = ubrk_next(iterator_->breaks); at != UBRK_DONE; at = ubrk_next(iterator_->breaks)) {
    if (at < static_cast<int32_t>(text.size())) places.push_back(static_cast<size_t>(at));
  }
  return places;
}

}  // namespace tessaro
