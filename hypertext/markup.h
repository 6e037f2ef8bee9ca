#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessaro {

inline constexpr int kMinPoints = 1;
inline constexpr int kMaxPoints = 400;
inline constexpr int64_t kMaxLinkTarget = 999990;

// One item of a card side, in the order of the text.
struct MarkupItem {
  enum class Kind {
    Text,     // a run of letters; runs without Blank or WordEnd between them are one word
    Blank,    // ends the word; one blank of advance
    WordEnd,  // ends the word, no advance
    LineBreak,
    Bold,  // `on` tells whether it begins or ends
    Italic,
    Underline,
    FontSize,  // begins a font size of `points`
    FontSizeEnd,
    Picture,
    Video,  // only the first one of a side
    Sound,
    Link,  // a link whose face is text, or a picture when `picture_face`
  };
  Kind kind = Kind::Text;
  std::string text;  // letters or the link's face, entities replaced; of media the file name as written
  bool on = false;
  bool framed = false;  // pictures and picture faces
  bool picture_face = false;
  int points = 0;  // kMinPoints to kMaxPoints; 0: the size stays as it is
  int width = 0;   // of media, in pixels; 0: not given
  int height = 0;
  int32_t target = 0;  // of links: 1 to kMaxLinkTarget, 0 leads to nothing
};

// Reads a card side item by item. Any byte string is a valid side: what is no known tag is text or is left out. Reading
// a side takes time linear in its length.
class MarkupReader {
 public:
  explicit MarkupReader(std::string_view side);
  // The next item; false at the end of the side, `item` is then without meaning.
  bool Next(MarkupItem& item);

 private:
  enum class Word { Empty, Blanks, Letters };

  bool AtTag() const;
  std::string_view TagAtPosition() const;
  bool IsLeftOut(std::optional<MarkupItem::Kind> kind) const;
  bool ReadLineFeed(MarkupItem& item);
  void ReadText(MarkupItem& item);
  bool ReadTag(MarkupItem& item);
  bool EndWordBeforeTag(MarkupItem& item);
  void ReadLink(MarkupItem& item, std::string_view tag);

  std::string side_;  // without carriage returns
  size_t position_ = 0;
  size_t tags_until_ = 0;    // a "<" before this place is closed by a ">", one behind it is text
  Word word_ = Word::Empty;  // what the word being read holds so far
  bool video_seen_ = false;
};

}  // namespace tessaro
