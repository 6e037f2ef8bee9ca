#include "edit/card_search.h"

#include <gtest/gtest.h>

#include "platform/code_page.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

TEST(CardSearch, CombinesTwoTextsOverTheChosenSides) {
  using enum SearchMode;
  using enum SearchSides;
  struct {
    SearchQuery query;
    std::optional<int> line;  // of the card "rot\nblau" / "gelb\n\nrot"
  } const cases[] = {{{"rot", "", Or, Both}, 1},
                     {{"rot", "", Or, Back}, 3},
                     {{"blau", "gelb", And, Both}, 2},
                     {{"blau", "gelb", And, Front}, std::nullopt},
                     {{"blau", "gelb", AndNot, Both}, std::nullopt},
                     {{"blau", "gelb", AndNot, Front}, 2},
                     {{"rot", "rot", AndNot, Both}, std::nullopt},
                     {{"grau", "gelb", Or, Both}, 1},
                     {{"", "blau", Or, Both}, 2},
                     {{"", "blau", And, Both}, std::nullopt},
                     {{"", "grau", AndNot, Both}, std::nullopt},
                     {{"", "", Or, Both}, std::nullopt},
                     {{"rot", "", AndNot, Both}, 1},
                     {{"Rot", "", Or, Both}, std::nullopt},
                     {{"ROT", "", Or, Back, true}, 3},
                     {{"t\nbl", "", Or, Both}, 1},
                     {{"rot\nblau!", "", Or, Both}, std::nullopt}};
  int number = 0;
  for (const auto& [query, line] : cases) {
    const auto found = CardSearch(query).Match("rot\nblau", "gelb\n\nrot");
    EXPECT_EQ(found ? std::optional(found->line) : std::nullopt, line) << "case " << number;
    ++number;
  }
  EXPECT_FALSE(CardSearch({"", "x", And}).Possible());
}

TEST(CardSearch, CaseIsThatOfTheCodePage) {
  EXPECT_NE(TextFinder("ÄRGER"_cp, true).Find("der Ärger"_cp), std::string_view::npos);
  EXPECT_NE(TextFinder("straße"_cp, true).Find("STRAßE"_cp), std::string_view::npos);
  EXPECT_EQ(TextFinder("ärger"_cp, false).Find("Ärger"_cp), std::string_view::npos);
}

TEST(CardSearch, FindsWhereverTheTextStands) {
  // The byte that is looked for first may stand anywhere in the text, and before a place where the text fits.
  for (const std::string text : {"xee", "exe", "eex", "e", "xx"}) {
    for (size_t before = 0; before < 6; ++before) {
      const std::string in = std::string(before, 'e') + text + "eex";
      EXPECT_EQ(TextFinder(text, false).Find(in), in.find(text)) << text << " in " << in;
      EXPECT_EQ(TextFinder(text, true).Find(in), in.find(text)) << text << " in " << in;
    }
  }
}

TEST(CardSearch, GoesOnBehindTheCardFoundLast) {
  MemoryDisk disk;
  CardFile file(disk);
  OpenTestFile(disk, file,
               {{.id = "000001", .question = "Ofen"},
                {.id = "000002", .question = "x", .answer = "Ofen"},
                {.id = "000003", .question = "Ofen"}});
  const CardSearch search({.first = "Ofen", .second = ""});
  EXPECT_EQ(SearchCards(file, search, 0).row, 2);
  const SearchResult second = SearchCards(file, search, 3);
  EXPECT_EQ(second.row, 3);
  EXPECT_EQ(second.examined, 1);
  EXPECT_EQ(SearchCards(file, search, 5).row, 0);
  // In the order of a view that begins with the last card.
  const auto backwards = [](int place) { return 6 - place; };
  EXPECT_EQ(SearchCards(file, search, 2, {}, backwards).row, 4);
  EXPECT_EQ(SearchCards(file, search, 4, {}, backwards).row, 2);
  EXPECT_EQ(SearchCards(file, search, 5, {}, backwards).row, 0);
  file.deletion_marks().Exchange({3});
  const SearchResult passed = SearchCards(file, search, 3);
  EXPECT_EQ(passed.row, 4);
  EXPECT_EQ(passed.examined, 1);
  EXPECT_EQ(SearchCards(file, CardSearch({.first = "@@", .second = ""}), 0).examined, 2)
      << "the rows of the frame are no cards";
}

}  // namespace
}  // namespace tessaro
