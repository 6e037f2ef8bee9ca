#include "hypertext/layout.h"

#include <algorithm>
#include <utility>

#include "hypertext/line_builder.h"
#include "hypertext/markup.h"
#include "hypertext/writing_order.h"

namespace tessaro {
namespace {

using Kind = MarkupItem::Kind;

constexpr size_t kFontStackEntries = 20;  // the first one is the size that the side begins with
constexpr PixelSize kVideoSize = {353, 289};

char LowerLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsBitmapName(std::string_view name) {
  constexpr std::string_view kEnding = ".bmp";
  return name.size() >= kEnding.size() && std::equal(kEnding.begin(), kEnding.end(), name.end() - kEnding.size(),
                                                     [](char a, char b) { return a == LowerLetter(b); });
}

// `other` * `given` / `own`, at least 1.
int InProportion(int given, int own, int other) {
  const int64_t scaled = (static_cast<int64_t>(given) * other + own / 2) / own;
  return static_cast<int>(std::clamp<int64_t>(scaled, 1, INT32_MAX));
}

PixelSize PictureSize(PixelSize own, int width, int height) {
  if (width == 0 && height == 0) return BoundedMedia(own);
  if (height == 0) height = InProportion(width, own.width, own.height);
  if (width == 0) width = InProportion(height, own.height, own.width);
  return BoundedMedia({width, height});
}

class SideLayout {
 public:
  SideLayout(std::string_view side, PixelSize frame, int start_points, Measurer& measurer, Layout& layout)
      : reader_(side),
        measurer_(measurer),
        layout_(layout),
        page_(measurer.Page()),
        lines_(frame, layout, page_),
        breaks_(page_) {
    fonts_.push_back(std::clamp(start_points, kMinPoints, kMaxPoints));
    style_.points = fonts_.back();
  }

  // False when the side is whole.
  bool Continue(int items) {
    for (; items > 0; --items) {
      if (lines_.full() || layout_.broken_off || !reader_.Next(item_)) return lines_.Finish(), false;
      Take(item_);
    }
    return true;
  }

 private:
  void Take(MarkupItem& item) {
    switch (item.kind) {
      case Kind::Text:
        return without_blanks_ ? AddWords(item.text) : AddText(item.text, style_, ColourClass::Text, std::nullopt);
      case Kind::Blank:
        lines_.EndWord();
        if (from_right_) return lines_.AddBlank(MakePiece(" ", style_, ColourClass::Text));
        return lines_.Advance(measurer_.Text(" ", style_).width, style_.underline);
      case Kind::WordEnd:
        return lines_.EndWord();
      case Kind::LineBreak:
        return lines_.BreakLine(measurer_.Text("", style_).height);
      case Kind::Bold:
        style_.bold = item.on;
        return;
      case Kind::Italic:
        style_.italic = item.on;
        return;
      case Kind::Underline:
        style_.underline = item.on;
        return;
      case Kind::FontSize:
        return PushFont(item.points);
      case Kind::FontSizeEnd:
        return PopFont();
      case Kind::Picture:
        return PlacePicture(item);
      case Kind::Video:
        return PlaceVideo(item);
      case Kind::Sound:
        return KeepSound(item);
      case Kind::Link:
        return item.picture_face ? AddPictureLink(item) : AddTextLink(item);
    }
  }

  void PushFont(int points) {
    if (fonts_.size() == kFontStackEntries) return;
    fonts_.push_back(points == 0 ? fonts_.back() : points);
    style_.points = fonts_.back();
  }

  void PopFont() {
    if (fonts_.size() > 1) fonts_.pop_back();
    style_.points = fonts_.back();
  }

  LinePiece MakePiece(std::string_view text, const TextStyle& style, ColourClass colour) {
    LinePiece piece;
    FillPiece(piece, text, style, colour);
    return piece;
  }

  void FillPiece(LinePiece& piece, std::string_view text, const TextStyle& style, ColourClass colour) {
    const TextExtent extent = measurer_.Text(text, style);
    piece.fragment = {.rect = {0, 0, extent.width, extent.height}, .text = std::string(text), .style = style};
    piece.fragment.colour = colour;
    piece.width = extent.width;
    piece.height = extent.height;
    piece.ascent = extent.ascent;
  }

  // A text within a word of a script that has no blanks between words: a line may end behind each of them.
  void AddWords(std::string_view text) {
    size_t from = 0;
    for (const size_t at : breaks_.In(text)) {
      AddText(text.substr(from, at - from), style_, ColourClass::Text, std::nullopt);
      lines_.EndWord();
      from = at;
    }
    AddText(text.substr(from), style_, ColourClass::Text, std::nullopt);
  }

  // A text whose letters do not all run in one direction, in parts that do.
  void AddDirectedParts(std::string_view text, const TextStyle& style, ColourClass colour,
                        std::optional<int32_t> target) {
    for (const std::string_view part : DirectedParts(text, page_, Measurer::kLongestPiece)) {
      LinePiece piece = MakePiece(part, style, colour);
      piece.in_link = target && part.data() != text.data();
      if (target && !piece.in_link) piece.target = target;
      piece.link_width = piece.width;
      lines_.Add(std::move(piece));
    }
  }

  // A text of any length goes to the measurer, and later to the painter, in pieces that they can handle.
  void AddText(std::string_view text, const TextStyle& style, ColourClass colour, std::optional<int32_t> target) {
    if (from_right_) return AddDirectedParts(text, style, colour, target);
    int width = 0;
    pieces_.clear();
    do {
      const std::string_view part = text.substr(0, Measurer::kLongestPiece);
      text.remove_prefix(part.size());
      LinePiece& piece = pieces_.emplace_back();
      FillPiece(piece, part, style, colour);
      width = std::min(width + piece.width, kMaxExtent);
    } while (!text.empty());
    pieces_.front().target = target;
    pieces_.front().link_width = width;
    for (LinePiece& piece : pieces_) lines_.Add(std::move(piece));
  }

  void AddTextLink(const MarkupItem& item) {
    TextStyle style = style_;
    style.underline = true;
    AddText(item.text, style, ColourOf(item.target), item.target);
  }

  void AddPictureLink(const MarkupItem& item) {
    std::optional<Fragment> picture = ReadPicture(item);
    if (!picture) return;
    picture->colour = ColourOf(item.target);
    LinePiece piece;
    piece.width = picture->rect.width + 2;
    piece.height = picture->rect.height + 2;
    piece.target = item.target;
    piece.link_width = picture->rect.width;
    piece.fragment = std::move(*picture);
    lines_.Add(std::move(piece));
  }

  void PlacePicture(const MarkupItem& item) {
    if (std::optional<Fragment> picture = ReadPicture(item)) lines_.PlaceBlock(std::move(*picture));
  }

  // The picture in its size, without a place. Nothing when there is no such file.
  std::optional<Fragment> ReadPicture(const MarkupItem& item) {
    const PictureFile file = measurer_.Picture(item.text);
    layout_.broken_off = file.state == PictureFile::State::Unreadable;
    if (file.state != PictureFile::State::Good || file.size.width < 1 || file.size.height < 1) return std::nullopt;
    const PixelSize size = PictureSize(file.size, item.width, item.height);
    Fragment picture = {.kind = Fragment::Kind::Picture, .rect = {0, 0, size.width, size.height}, .text = item.text};
    picture.framed = item.framed;
    picture.transparent = size == file.size && IsBitmapName(item.text);
    return picture;
  }

  void PlaceVideo(const MarkupItem& item) {
    const PixelSize size = BoundedMedia(
        {item.width > 0 ? item.width : kVideoSize.width, item.height > 0 ? item.height : kVideoSize.height});
    Fragment video = {.kind = Fragment::Kind::Video, .rect = {0, 0, size.width, size.height}, .text = item.text};
    video.framed = true;
    lines_.PlaceBlock(std::move(video));
  }

  void KeepSound(const MarkupItem& item) {
    if (measurer_.SoundExists(item.text)) layout_.sounds.push_back(item.text);
  }

  ColourClass ColourOf(int32_t target) { return target == 0 ? ColourClass::Blue : measurer_.LinkColour(target); }

  MarkupReader reader_;
  MarkupItem item_;
  Measurer& measurer_;
  Layout& layout_;
  CodePage page_;
  const bool from_right_ = page_.right_to_left();
  const bool without_blanks_ = page_.set() == CharacterSet::Thai;
  LineBuilder lines_;
  WordBreaks breaks_;
  std::vector<int> fonts_;
  TextStyle style_;
  std::vector<LinePiece> pieces_;  // of the text at hand
};

}  // namespace

PixelSize BoundedMedia(PixelSize size) {
  const int longer = std::max(size.width, size.height);
  if (longer <= kMaxMediaPixels) return size;
  return {InProportion(kMaxMediaPixels, longer, size.width), InProportion(kMaxMediaPixels, longer, size.height)};
}

void LinkAreas::Add(const LinkArea& area) {
  if (areas_.size() <= kEntries) {
    areas_.push_back(area);
  } else {
    areas_.back() = area;
  }
}

std::optional<size_t> LinkAreas::IndexAt(int x, int y) const {
  const auto hit = std::find_if(areas_.rbegin(), areas_.rend(), [x, y](const LinkArea& area) {
    return area.left <= x && x <= area.right && area.top <= y && y <= area.bottom;
  });
  return hit == areas_.rend() ? std::nullopt : std::optional<size_t>(areas_.rend() - hit - 1);
}

struct LayoutWork::State {
  State(std::string_view side, PixelSize frame, int start_points, Measurer& measurer)
      : work(side, frame, start_points, measurer, layout) {}
  Layout layout;
  SideLayout work;
};

LayoutWork::LayoutWork(std::string_view side, PixelSize frame, int start_points, Measurer& measurer)
    : state_(std::make_unique<State>(side, frame, start_points, measurer)) {}

LayoutWork::~LayoutWork() = default;

bool LayoutWork::Continue(int items) {
  return state_->work.Continue(items);
}

const Layout& LayoutWork::layout() const {
  return state_->layout;
}

Layout LayoutWork::TakeLayout() {
  return std::move(state_->layout);
}

Layout LayOut(std::string_view side, PixelSize frame, int start_points, Measurer& measurer) {
  LayoutWork work(side, frame, start_points, measurer);
  while (work.Continue(INT32_MAX)) continue;
  return work.TakeLayout();
}

}  // namespace tessaro
