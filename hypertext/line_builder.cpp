#include "hypertext/line_builder.h"

#include <algorithm>
#include <utility>

namespace tessaro {
namespace {

constexpr int kBelowBlock = 2;     // the text goes on that far below a picture
constexpr int kBottomMargin = 10;  // below content that made the paint box grow

}  // namespace

LineBuilder::LineBuilder(PixelSize frame, Layout& layout) : frame_(frame), layout_(layout) {
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
  if (JoinsUnderline()) line_.back().fragment.rect.width += underlined_blank_;
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
  if (underlined_blank_ == 0 || line_.empty()) return false;
  const LinePiece& before = line_.back();
  const LinePiece& after = word_.front();
  return before.fragment.style.underline && !before.target && after.fragment.style.underline && !after.target;
}

void LineBuilder::Advance(int width, bool underlined) {
  x_ = std::min<int64_t>(x_ + width, kMaxExtent);
  underlined_blank_ = underlined ? width : 0;
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
  fragment.rect.left = kPageMargin;
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
  PlaceLine(ascent + descent, ascent, line_height);
  line_.clear();
  underlined_blank_ = 0;
  x_ = kPageMargin;
  y_ += line_height;
  full_ = full_ || y_ >= kMaxExtent;
}

// Texts stand on one base line; they and the pictures are in the middle of the line's height.
void LineBuilder::PlaceLine(int text_height, int ascent, int line_height) {
  const int top = static_cast<int>(y_);
  const int baseline = top + (line_height - text_height) / 2 + ascent;
  for (LinePiece& piece : line_) {
    PixelRect& rect = piece.fragment.rect;
    const bool text = piece.fragment.kind == Fragment::Kind::Text;
    rect.top = text ? baseline - piece.ascent : top + (line_height - rect.height) / 2;
    if (text) piece.fragment.baseline = baseline;
    Grow(rect);
    // A link without a face has no place either.
    if (piece.target && piece.link_width > 0)
      layout_.links.Add(
          {rect.left, rect.top, rect.top + rect.height - 1, rect.left + piece.link_width - 1, *piece.target});
    layout_.fragments.push_back(std::move(piece.fragment));
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
