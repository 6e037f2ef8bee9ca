#pragma once

#include <array>
#include <concepts>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "cards/keep_going.h"
#include "edit/markup_tools.h"
#include "platform/side_code_page.h"
#include "store/file/card_file.h"

namespace tessaro {

enum class SearchMode { Or, And, AndNot };
enum class SearchSides { Front, Back, Both };

// A text as each side would write it; empty for one whose code page lacks a character of it.
struct SoughtText {
  std::string front;
  std::string back;

  SoughtText() = default;
  // The same on both sides.
  template <typename Text>
  requires std::convertible_to<Text, std::string_view> SoughtText(const Text& text)
      : front(text), back(text) {}  // NOLINT(google-explicit-constructor)
  bool empty() const { return front.empty() && back.empty(); }
};

struct SearchQuery {
  SoughtText first;
  SoughtText second;
  SearchMode mode = SearchMode::Or;
  SearchSides sides = SearchSides::Both;
  bool ignore_case = false;  // of all letters of the code pages
  SideCodePages pages = {};
};

// Finds one text in many others, quickly where it is absent.
class TextFinder {
 public:
  // The text is copied. Case is that of the code page.
  TextFinder(std::string_view text, bool ignore_case, CodePage page = {});
  // Of the text, in bytes.
  bool empty() const { return text_.empty(); }
  size_t size() const { return text_.size(); }
  // Where the text begins; npos when it is not there, and for an empty one.
  size_t Find(std::string_view in) const;

 private:
  size_t FindIgnoringCase(std::string_view in) const;

  std::string text_;  // in lower case where case is ignored
  CodePage page_;
  bool ignore_case_;
  size_t rarest_ = 0;  // the byte of the text that is looked for first
};

// The text for which a card was found: of the first chosen side that holds the first text, or when none does, the
// second.
struct FoundText {
  EditSide side = EditSide::Front;
  SideRange text;
  int line = 0;  // of the side, counted from 1
  bool operator==(const FoundText&) const = default;
};

// A query, ready to be put to cards.
class CardSearch {
 public:
  // The texts are copied.
  explicit CardSearch(const SearchQuery& query);
  // False: with these texts nothing is to be searched for. Without a first text only "or" can search, for the second.
  bool Possible() const { return !first_.empty(); }
  // Whether the chosen sides together match; nothing when not.
  std::optional<FoundText> Match(std::string_view front, std::string_view back) const;

 private:
  using Sides = std::array<std::string_view, 2>;
  // The same text on the front and on the back.
  class Finders {
   public:
    Finders(const SoughtText& text, const SearchQuery& query)
        : finders_{TextFinder(text.front, query.ignore_case, query.pages.front),
                   TextFinder(text.back, query.ignore_case, query.pages.back)} {}
    bool empty() const { return finders_[0].empty() && finders_[1].empty(); }
    std::optional<FoundText> Find(const Sides& sides) const;

   private:
    std::array<TextFinder, 2> finders_;
  };

  Finders first_;
  Finders second_;
  SearchMode mode_;
  SearchSides sides_;
};

struct SearchResult {
  int row = 0;   // of the card table; 0 = nothing more was found
  int line = 0;  // see FoundText
  int examined = 0;
  bool cancelled = false;
};

// Searches the cards that stand in the places from `first` on, one after the other, up to the last card's. Cards marked
// for deletion are passed over and not counted. `row_at`: the row of the card table in a place, where it is another.
SearchResult SearchCards(const CardFile& file, const CardSearch& search, int first, const KeepGoing& keep_going = {},
                         const std::function<int(int place)>& row_at = {});

}  // namespace tessaro
