#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaro {

class Disk;

// One card of the help. All texts are in the code page of cards.
struct HelpCard {
  std::string title;    // its first line
  std::string chapter;  // what its topic tag says
  std::string side;     // as it is shown
  std::string text;     // what a person reads on the side, title included
  std::string words;    // its entries in the index, one a line
};

// Cards that name the same chapter, by their numbers.
struct HelpChapter {
  std::string name;  // empty for cards that name none
  std::vector<int> cards;
};

// The help: a card file of navigation cards, read as a table and never opened as one. The front of a card is what is
// shown, with tags that say what it is the help for: <place="NAME NAME"> names windows and controls, <message="TEXT">
// the beginning of a line in messages of the program. Its back has the entries of the index. Cards are numbered from 1
// on, as links name them.
class HelpDeck {
 public:
  // Nothing when there is no such file, it cannot be read, or the numbers of its cards are not those of their order.
  static std::optional<HelpDeck> Read(Disk& disk, const std::filesystem::path& path);

  int Count() const { return static_cast<int>(cards_.size()); }
  // Null for numbers that no card has.
  const HelpCard* Card(int64_t number) const;
  // The card that the help begins with, marked <home>; else the first.
  int StartCard() const { return start_; }
  // The card with the entries in alphabetical order, marked <index>; else the first.
  int IndexCard() const { return index_; }

  // In the order in which the first card of each stands.
  std::vector<HelpChapter> Chapters() const;

  // The card of the innermost place that has one; 0 when none has. `places` are names from a control outward to its
  // window and those around it.
  int CardOfPlace(std::span<const std::string> places) const;
  // The card of a message; 0 when it has none.
  int CardOfMessage(std::string_view text) const;
  // The cards in which all words of `wanted` stand, upper and lower case being the same: first those whose titles begin
  // with `wanted`, then those whose titles have the words, those whose entries do, and the others; each in their order.
  // None when nothing is wanted.
  std::vector<int> Search(std::string_view wanted) const;

 private:
  struct Name {
    std::string name;
    int card = 0;
  };
  // Of a card, in upper case, each with what is before it. Links are not counted as text: they name other cards.
  struct Searched {
    std::string title;
    std::string words;
    std::string text;
  };

  HelpDeck() = default;
  void Add(std::string_view front, std::string_view back);

  std::vector<HelpCard> cards_;
  std::vector<Searched> searched_;
  std::vector<Name> places_;
  std::vector<Name> messages_;
  int start_ = 1;
  int index_ = 1;
};

}  // namespace tessaro
