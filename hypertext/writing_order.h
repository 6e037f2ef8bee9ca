#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/side_code_page.h"

// How text runs in a line: in which order where some of it is written from right to left, and where a line may end
// within a text without blanks.
namespace tessaro {

// Parts of a text, at most so long, that run in one direction wherever they stand: never empty, and all of the text in
// its order.
std::vector<std::string_view> DirectedParts(std::string_view text, CodePage page, size_t longest);

// Where the pieces of a line stand whose paragraph runs from right to left.
struct LineOrder {
  std::vector<uint8_t> levels;  // of each piece: an odd one is written from right to left
  std::vector<int32_t> visual;  // the pieces from the left to the right
};
// Each piece is a part as above; an empty one stands for a picture.
LineOrder OrderOf(const std::vector<std::string_view>& pieces, CodePage page);

// Finds the words of texts that have no blanks between them.
class WordBreaks {
 public:
  explicit WordBreaks(CodePage page);
  ~WordBreaks();
  // Where in the text a line may end, in order, without its ends.
  std::vector<size_t> In(std::string_view text);

 private:
  struct Iterator;
  CodePage page_;
  std::unique_ptr<Iterator> iterator_;
};

}  // namespace tessaro
