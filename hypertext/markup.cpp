#include "hypertext/markup.h"

#include <algorithm>
#include <optional>

namespace tessaro {
namespace {

using Kind = MarkupItem::Kind;

constexpr int kMaxPixels = 1000000;  // what a width or height attribute can say
constexpr size_t kTargetLength = 7;  // a longer link target leads to nothing

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return lower;
}

// The number that the text begins with, between 0 and `most`.
int BoundedNumber(std::string_view text, int most) {
  const size_t first = text.find_first_not_of(" \t\n");
  if (first == std::string_view::npos) return 0;
  text.remove_prefix(first + (text[first] == '+' ? 1 : 0));
  int64_t number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') break;
    number = std::min<int64_t>(number * 10 + (c - '0'), most);
  }
  return static_cast<int>(number);
}

// All digits of a font tag in a row are its size: <font size="1" x="4"> is size 14. Without one, or with 0: 0.
int FontPoints(std::string_view tag) {
  int64_t points = 0;
  for (const char c : tag)
    if (c >= '0' && c <= '9') points = std::min<int64_t>(points * 10 + (c - '0'), kMaxPoints);
  return static_cast<int>(points);
}

// What stands between the next two double quotes behind `name`, wherever in the tag the name is found.
std::optional<std::string_view> Attribute(std::string_view tag, std::string_view lower_tag, std::string_view name) {
  const size_t at = lower_tag.find(name);
  if (at == std::string_view::npos) return std::nullopt;
  const size_t open = tag.find('"', at + name.size());
  if (open == std::string_view::npos) return std::nullopt;
  const size_t close = tag.find('"', open + 1);
  if (close == std::string_view::npos) return std::nullopt;
  return tag.substr(open + 1, close - open - 1);
}

int NumberAttribute(std::string_view tag, std::string_view lower_tag, std::string_view name) {
  return BoundedNumber(Attribute(tag, lower_tag, name).value_or(""), kMaxPixels);
}

// A border is any number but 0, a negative one too.
bool HasBorder(std::string_view tag, std::string_view lower_tag) {
  std::string_view value = Attribute(tag, lower_tag, "border").value_or("1");
  value.remove_prefix(std::min(value.find_first_not_of(" \t\n"), value.size()));
  if (value.starts_with('-')) value.remove_prefix(1);
  return BoundedNumber(value, kMaxPixels) != 0;
}

// `tag` is the text behind "<", with the ">". The order of the questions decides what a tag is that fits several.
std::optional<Kind> KindOfTag(std::string_view tag) {
  if (tag == "br>") return Kind::LineBreak;
  if (tag == "b>" || tag == "/b>") return Kind::Bold;
  if (tag == "i>" || tag == "/i>") return Kind::Italic;
  if (tag == "u>" || tag == "/u>") return Kind::Underline;
  const bool embed = Contains(tag, "embed");
  const bool video = Contains(tag, ".avi") || Contains(tag, ".mpg");
  // Deliberate: ".mpeg" is no sound, and no video either.
  if (embed && !video && !Contains(tag, ".mpeg")) return Kind::Sound;
  if (Contains(tag, "img src")) return Kind::Picture;
  if (embed && video) return Kind::Video;
  if (Contains(tag, "href=\"")) return Kind::Link;
  if (Contains(tag, "font") && Contains(tag, "size")) return Kind::FontSize;
  if (Contains(tag, "/font>")) return Kind::FontSizeEnd;
  return std::nullopt;
}

void ReadMedia(MarkupItem& item, std::string_view tag, std::string_view lower_tag) {
  item.text = Attribute(tag, lower_tag, "src").value_or("");
  item.width = NumberAttribute(tag, lower_tag, "width");
  item.height = NumberAttribute(tag, lower_tag, "height");
  item.framed = HasBorder(tag, lower_tag);
}

void ReplaceEntities(std::string& text) {
  if (text.find('&') == std::string::npos) return;
  size_t to = 0;
  for (size_t from = 0; from < text.size(); ++from, ++to) {
    const std::string_view four = std::string_view(text).substr(from, 4);
    const bool entity = four == "&lt;" || four == "&gt;";
    text[to] = entity ? (four[1] == 'l' ? '<' : '>') : text[from];
    if (entity) from += 3;
  }
  text.resize(to);
}

int32_t LinkTarget(std::string_view tag, std::string_view lower_tag) {
  const std::string_view value = Attribute(tag, lower_tag, "href=").value_or("");
  if (value.size() > kTargetLength) return 0;
  const int number = BoundedNumber(value, static_cast<int>(kMaxLinkTarget) + 1);
  return number > kMaxLinkTarget ? 0 : number;
}

// Where the face that begins at `from` ends: at the next "</a" or "</A", else at the end of the side.
size_t FaceEnd(std::string_view side, size_t from) {
  for (size_t at = side.find("</", from); at != std::string_view::npos; at = side.find("</", at + 2)) {
    if (at + 2 < side.size() && (side[at + 2] == 'a' || side[at + 2] == 'A')) return at;
  }
  return side.size();
}

// The letters of a text face: its tags are left out, and a line feed is a blank directly behind a letter.
void ReadTextFace(std::string& text, std::string_view face) {
  const size_t last_close = face.rfind('>');
  for (size_t at = 0; at < face.size(); ++at) {
    if (face[at] == '<' && last_close != std::string_view::npos && at < last_close) {
      at = face.find('>', at);
    } else if (face[at] != '\n') {
      text += face[at];
    } else if (!text.empty() && text.back() != ' ') {
      text += ' ';
    }
  }
  ReplaceEntities(text);
}

// The tag of a picture face, from behind its "<".
std::string_view PictureTag(std::string_view face, size_t img_src) {
  const size_t open = face.rfind('<', img_src);
  const size_t begin = open == std::string_view::npos ? 0 : open + 1;
  return face.substr(begin, face.find('>', img_src) - begin);
}

}  // namespace

MarkupReader::MarkupReader(std::string_view side) : side_(side) {
  std::erase(side_, '\r');
  const size_t last_close = side_.rfind('>');
  tags_until_ = last_close == std::string::npos ? 0 : last_close;
}

bool MarkupReader::Next(MarkupItem& item) {
  item.text.clear();
  item = MarkupItem{.text = std::move(item.text)};
  while (position_ < side_.size()) {
    if (side_[position_] == '\n') {
      if (ReadLineFeed(item)) return true;
    } else if (side_[position_] == ' ' && word_ == Word::Letters) {
      ++position_;
      word_ = Word::Empty;
      item.kind = Kind::Blank;
      return true;
    } else if (AtTag()) {
      if (ReadTag(item)) return true;
    } else {
      ReadText(item);
      return true;
    }
  }
  return false;
}

bool MarkupReader::AtTag() const {
  return side_[position_] == '<' && position_ < tags_until_;
}

std::string_view MarkupReader::TagAtPosition() const {
  return std::string_view(side_).substr(position_ + 1, side_.find('>', position_) - position_);
}

bool MarkupReader::IsLeftOut(std::optional<Kind> kind) const {
  return !kind || (*kind == Kind::Video && video_seen_);
}

// A line feed ends the word, but is a blank only directly behind letters.
bool MarkupReader::ReadLineFeed(MarkupItem& item) {
  ++position_;
  if (word_ == Word::Empty) return false;
  item.kind = word_ == Word::Letters ? Kind::Blank : Kind::WordEnd;
  word_ = Word::Empty;
  return true;
}

void MarkupReader::ReadText(MarkupItem& item) {
  item.kind = Kind::Text;
  while (position_ < side_.size()) {
    const char c = side_[position_];
    if (c == '\n' || (c == ' ' && word_ == Word::Letters)) break;
    if (AtTag()) {
      const std::string_view tag = TagAtPosition();
      if (!IsLeftOut(KindOfTag(LowerCase(tag)))) break;
      position_ += tag.size() + 1;
      continue;
    }
    item.text += c;
    if (c != ' ') word_ = Word::Letters;
    if (word_ == Word::Empty) word_ = Word::Blanks;
    ++position_;
  }
  ReplaceEntities(item.text);
}

// A picture, sound or link written in one of the usual ways ends the word before it. Deliberate: other ways do not.
bool MarkupReader::EndWordBeforeTag(MarkupItem& item) {
  if (word_ == Word::Empty) return false;
  const std::string_view rest = std::string_view(side_).substr(position_);
  const bool picture = rest.starts_with("<img") || rest.starts_with("<IMG");
  if (!picture && !rest.starts_with("<a h") && !rest.starts_with("<A H")) return false;
  item.kind = picture && word_ == Word::Letters ? Kind::Blank : Kind::WordEnd;
  word_ = Word::Empty;
  return true;
}

// Reads the tag at the position. False: it is left out. When it ends a word first, it is still to be read.
bool MarkupReader::ReadTag(MarkupItem& item) {
  const std::string_view tag = TagAtPosition();
  const std::string lower_tag = LowerCase(tag);
  const auto kind = KindOfTag(lower_tag);
  if (IsLeftOut(kind)) {
    position_ += tag.size() + 1;
    return false;
  }
  const bool may_end_word = *kind == Kind::Picture || *kind == Kind::Sound || *kind == Kind::Link;
  if (may_end_word && EndWordBeforeTag(item)) return true;
  item.kind = *kind;
  item.on = tag.front() != '/';
  position_ += tag.size() + 1;
  if (*kind == Kind::FontSize) item.points = FontPoints(tag);
  if (*kind == Kind::Link) ReadLink(item, tag);
  if (*kind == Kind::Picture || *kind == Kind::Video || *kind == Kind::Sound) ReadMedia(item, tag, lower_tag);
  if (*kind == Kind::LineBreak || *kind == Kind::Video) word_ = Word::Empty;
  video_seen_ = video_seen_ || *kind == Kind::Video;
  return true;
}

void MarkupReader::ReadLink(MarkupItem& item, std::string_view tag) {
  item.target = LinkTarget(tag, LowerCase(tag));
  const size_t end = FaceEnd(side_, position_);
  const std::string_view face = std::string_view(side_).substr(position_, end - position_);
  const std::string lower_face = LowerCase(face);
  const size_t img_src = lower_face.find("img src");
  if (img_src == std::string::npos) {
    ReadTextFace(item.text, face);
  } else {
    item.picture_face = true;
    ReadMedia(item, PictureTag(face, img_src), PictureTag(lower_face, img_src));
  }
  position_ = end;
  word_ = Word::Letters;
}

}  // namespace tessaro
