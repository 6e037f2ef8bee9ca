#pragma once

#include <QFont>
#include <QTextLayout>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "hypertext/layout.h"
#include "platform/side_code_page.h"

namespace tessaro {

// The words of card sides, shaped once for measuring and drawing. Shaping costs some microseconds a word, and cards
// repeat themselves.
class TextCache {
 public:
  struct Word {
    int width = 0;
    std::unique_ptr<QTextLayout> letters;  // one line, with its base line at 0, without an underline
  };
  struct Underline {
    int below = 0;  // the base line
    int thickness = 0;
  };

  // Forgets everything when one of them is another. The zoom enlarges all sizes; `page` is that of the texts.
  void SetFont(const QFont& font, double zoom = 1, CodePage page = {});
  CodePage page() const { return page_; }
  TextExtent Measure(std::string_view text, const TextStyle& style);
  // Valid until the next call of a member.
  const Word& Find(std::string_view text, const TextStyle& style);
  Underline UnderlineOf(const TextStyle& style) { return FontOf(style).underline; }

 private:
  struct StringHash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };
  struct StyledFont {
    QFont font;
    int height = 0;
    int ascent = 0;
    Underline underline;
    std::unordered_map<std::string, Word, StringHash, std::equal_to<>> words;
  };

  StyledFont& FontOf(const TextStyle& style);

  QFont base_;
  double zoom_ = 1;
  CodePage page_;
  std::unordered_map<uint32_t, StyledFont> fonts_;
  size_t bytes_ = 0;  // that the words take, about
};

}  // namespace tessaro
