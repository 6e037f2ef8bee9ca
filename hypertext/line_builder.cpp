#include "hypertext/line_builder.h"

#include <algorithm>
#include <utility>

#include "hypertext/writing_order.h"

namespace tessaro {
namespace {

constexpr int kBelowBlock = 2;     // the text goes on that far below a picture
constexpr int kBottomMargin = 10;  // below content that made the paint box grow

}  // namespace

LineBuilder::LineBuilder(PixelSize frame, Layout& layout, CodePage page)
    : frame_(frame), layout_(layout), page_(page), from_right_(page.right_to_left()) {
  layout_.size = frame;
}

void LineBuilder::Add(LinePiece piece) {
  if (full_) return;
  word_width_ += piece.width;
  word_.push_back(std::move(piece));
  full_ = ++pieces_ >= kMaxFragments;
}

void LineBuilder::EndWord() {
  if (word_.empty()) return;
  if (x_ > kPageMargin && x_ + word_width_ > frame_.width) FinishLine();
  if (JoinsUnderline()) {
    LinePiece& before = line_.back();
    from_right_ ? before.fragment.style.underline = true : before.fragment.rect.width += underlined_blank_;
  }
  underlined_blank_ = 0;
  for (LinePiece& piece : word_) {
    if (x_ >= kMaxExtent) break;
    piece.fragment.rect.left = static_cast<int>(x_);
    x_ += piece.width;
    line_.push_back(std::move(piece));
  }
  word_.clear();
  word_width_ = 0;
}

bool LineBuilder::JoinsUnderline() const {
  const size_t blanks = from_right_ ? 1 : 0;
  if (underlined_blank_ == 0 || line_.size() <= blanks) return false;
  const LinePiece& before = line_[line_.size() - 1 - blanks];
  const LinePiece& after = word_.front();
  return before.fragment.style.underline && !before.target && after.fragment.style.underline && !after.target;
}

void LineBuilder::Advance(int width, bool underlined) {
  x_ = std::min<int64_t>(x_ + width, kMaxExtent);
  underlined_blank_ = underlined ? width : 0;
}

void LineBuilder::AddBlank(LinePiece blank) {
  Advance(blank.width, std::exchange(blank.fragment.style.underline, false));
  if (line_.empty()) return;
  blank.blank = true;
  line_.push_back(std::move(blank));
}

void LineBuilder::BreakLine(int empty_height) {
  EndWord();
  if (line_.empty()) y_ += empty_height;
  FinishLine();
}

void LineBuilder::PlaceBlock(Fragment fragment) {
  EndWord();
  if (!line_.empty()) FinishLine();
  x_ = kPageMargin;
  if (full_) return;
  fragment.rect.left =
      from_right_ ? std::max(kPageMargin, frame_.width - kPageMargin - fragment.rect.width) : kPageMargin;
  fragment.rect.top = static_cast<int>(y_);
  y_ += fragment.rect.height + kBelowBlock;
  Grow(fragment.rect);
  layout_.fragments.push_back(std::move(fragment));
  full_ = ++pieces_ >= kMaxFragments || y_ >= kMaxExtent;
}

void LineBuilder::Finish() {
  EndWord();
  FinishLine();
}

void LineBuilder::FinishLine() {
  int line_height = 0;
  int ascent = 0;
  int descent = 0;
  for (const LinePiece& piece : line_) {
    line_height = std::max(line_height, piece.height);
    if (piece.fragment.kind != Fragment::Kind::Text) continue;
    ascent = std::max(ascent, piece.ascent);
    descent = std::max(descent, piece.height - piece.ascent);
  }
  line_height = std::max(line_height, ascent + descent);
  if (from_right_) OrderFromRight();
  PlaceLine(ascent + descent, ascent, line_height);
  line_.clear();
  underlined_blank_ = 0;
  x_ = kPageMargin;
  y_ += line_height;
  full_ = full_ || y_ >= kMaxExtent;
}

void LineBuilder::OrderFromRight() {
  while (!line_.empty() && line_.back().blank) line_.pop_back();
  std::vector<std::string_view> texts;
  int64_t width = 0;
  for (const LinePiece& piece : line_) {
    const bool text = piece.fragment.kind == Fragment::Kind::Text;
    texts.push_back(text ? std::string_view(piece.fragment.text) : std::string_view());
    width += piece.width;
  }
  const LineOrder order = OrderOf(texts, page_);
  // A line that is too long begins at the left, where the paint box grows to hold it.
  int64_t x = std::max<int64_t>(kPageMargin, frame_.width - kPageMargin - width);
  for (const int32_t i : order.visual) {
    LinePiece& piece = line_[static_cast<size_t>(i)];
    piece.fragment.rect.left = static_cast<int>(x);
    piece.fragment.style.from_right = order.levels[static_cast<size_t>(i)] % 2 != 0;
    x += piece.width;
  }
  for (size_t i = 1; i < line_.size(); ++i) line_[i].fragment.after_blank = line_[i - 1].blank;
}

// Around all pieces of the face, whose first one this is.
void LineBuilder::AddLinkArea(size_t piece) {
  const PixelRect& first = line_[piece].fragment.rect;
  int left = first.left;
  int right = first.left + (from_right_ ? first.width : line_[piece].link_width);
  for (size_t i = piece + 1; i < line_.size() && line_[i].in_link; ++i) {
    const PixelRect& rect = line_[i].fragment.rect;
    left = std::min(left, rect.left);
    right = std::max(right, rect.left + rect.width);
  }
  layout_.links.Add({left, first.top, first.top + first.height - 1, right - 1, *line_[piece].target});
}

// Texts stand on one base line; they and the pictures are in the middle of the line's height.
void LineBuilder::PlaceLine(int text_height, int ascent, int line_height) {
  const int top = static_cast<int>(y_);
  const int baseline = top + (line_height - text_height) / 2 + ascent;
  for (size_t i = 0; i < line_.size(); ++i) {
    LinePiece& piece = line_[i];
    PixelRect& rect = piece.fragment.rect;
    const bool text = piece.fragment.kind == Fragment::Kind::Text;
    rect.top = text ? baseline - piece.ascent : top + (line_height - rect.height) / 2;
    if (text) piece.fragment.baseline = baseline;
    Grow(rect);
    // A link without a face has no place either.
    if (piece.target && piece.link_width > 0) AddLinkArea(i);
    if (!piece.blank || piece.fragment.style.underline) layout_.fragments.push_back(std::move(piece.fragment));
  }
}

void LineBuilder::Grow(const PixelRect& rect) {
  const int right = rect.left + rect.width;
  const int bottom = rect.top + rect.height;
  if (right > frame_.width)
    layout_.size.width = std::max(layout_.size.width, std::min(right + kPageMargin, kMaxExtent));
  if (bottom > frame_.height) layout_.size.height = std::max(layout_.size.height, bottom + kBottomMargin);
}

}  // namespace tessaro
