#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "exchange/work_observer.h"

// Cards in a text: front, separator, back, card separator, and so on. A line break directly behind a separator is none
// of the text.
namespace tessaro {

struct TextLayout {
  char separator = '\0';  // counts before the card separator where they are equal
  char card_separator = '\0';
  bool swapped = false;          // the back stands first
  bool backslash_pairs = false;  // two backslashes are one
};

// What a look through a whole text finds.
struct TextCheck {
  bool good = true;  // the separators take turns
  bool cancelled = false;
  int64_t cards = 0;             // completed by a card separator up to the end or the fault
  bool cut_card = false;         // a last card without its card separator follows
  int64_t left_over = 0;         // bytes, blanks and line breaks aside, that stand behind the last card and are none
  bool empty_first = false;      // the first card has two empty sides: it is not taken
  bool backslash_pairs = false;  // two backslashes side by side stand somewhere
  // Cards that TextCards gives.
  int64_t Given() const { return cards + (cut_card ? 1 : 0) - (empty_first ? 1 : 0); }
};
// The observer is told the bytes.
TextCheck CheckText(std::string_view text, const TextLayout& layout, const WorkObserver& observer = {});

// Gives the cards of a text that CheckText found good, one after the other. The text must outlive it.
class TextCards {
 public:
  struct Card {
    std::string front;
    std::string back;  // an empty side is "-"
  };

  TextCards(std::string_view text, const TextLayout& layout) : text_(text), rest_(text), layout_(layout) {}
  // False when there is none any more: `card` is as it was.
  bool Next(Card& card);
  // How far in the text it has come.
  int64_t Position() const { return static_cast<int64_t>(text_.size() - rest_.size()); }

 private:
  void PutSide(std::string_view side, std::string& text) const;

  std::string_view text_;
  std::string_view rest_;
  TextLayout layout_;
  bool first_ = true;
};

}  // namespace tessaro
