#include "store/file/card_layout.h"

#include "platform/code_page.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

static_assert("Menü"_cp == "Men\xFC");
static_assert("–€…„“ŸŽž"_cp == "\x96\x80\x85\x84\x93\x9F\x8E\x9E");

TEST(CodePage, KnowsTheCaseOfLetters) {
  EXPECT_TRUE(EqualIgnoringCase("azäöüÿšœžþß÷µƒ[1]"_cp, "AZÄÖÜŸŠŒŽÞß÷µƒ[1]"_cp));
  for (int i = 0; i < 256; ++i) {
    const char c = static_cast<char>(i);
    EXPECT_EQ(ToUpper(ToUpper(c)), ToUpper(c)) << i;
    EXPECT_TRUE(ToLower(c) == c || ToUpper(ToLower(c)) == c) << i;
  }
}

TEST(CardColumns, ReadNumbersAsTheyStandInOldFiles) {
  const std::pair<std::string_view, int64_t> numbers[] = {{"000012", 12},
                                                          {" \t\v-7x", -7},
                                                          {"+5", 5},
                                                          {"-12345678", -12345678},
                                                          {"1234567/9", 1234567},
                                                          {"1234567:9", 1234567},
                                                          {"12\xB9 456789", 12},
                                                          {"1234567890123456 ", 1234567890123456},
                                                          {"9223372036854775808", INT64_MAX},
                                                          {"-9999999999999999999", INT64_MIN}};
  for (const auto& [text, number] : numbers) {
    EXPECT_EQ(LeadingNumber(text), number) << text;
    EXPECT_TRUE(HasDigits(text)) << text;
  }
  for (const std::string_view text : {"", "--5", "x5"})
    EXPECT_FALSE(HasDigits(text) || LeadingNumber(text) != 0) << text;
}

TEST(CardColumns, KnowNavigationCards) {
  const std::pair<std::string_view, bool> cases[] = {
      {"<navigation>", true},  {"<b<<navigation>", true}, {"a <NAVIGATION>", true}, {"", false},
      {"<Navigation>", false}, {"navigation>", false},    {"<navigation", false},   {"<NAVIGATION >", false}};
  for (const auto& [text, yes] : cases) EXPECT_EQ(IsNavigation(text), yes) << text;
}

TEST(CompleteCards, AddsWhatIsMissingAndKeepsWhatIsThere) {
  const std::string header = "Answer;ID;Question;Fremd\n";
  using enum CardTableState;
  // What is odd about a text, the text, what it is, and the IDs after it was completed.
  const std::tuple<const char*, std::string, CardTableState, std::string> cases[] = {
      {"whole", header + ";@@\nA;1;F;x\n;##\n", Whole, "@@ 1 ## "},
      {"empty lines at the end", header + ";@@\nA;1;F;x\n;##\n\n;;\n", Whole, "@@ 1 ## "},
      {"no end", header + ";@@\nA;1;F;x\n\n", EndMissing, "@@ 1 ## "},
      {"no start", header + "A;1;F;x\n;##\n", StartMissing, "@@ 1 ## "},
      {"neither", header + "A;1;F;x\n", EndMissing, "@@ 1 ## "},
      {"a second end inside", header + ";@@\n;##;;mitten\nA;1;F;x\n;##\n", Whole, "@@ ## 1 ## "},
      {"no cards", header + ";@@\n;##\n", Unusable, ""},
      {"only an end", header + ";##\n", Unusable, ""},
      {"no rows", header, Unusable, ""},
      {"no answers", "ID;Question;\n@@\n1\n##\n", Unusable, ""},
      {"nothing", "", Unusable, ""},
  };
  for (const auto& [what, text, state, expected_ids] : cases) {
    CardTable table = TableOf(text, ';');
    EXPECT_EQ(CompleteCards(table), state) << what;
    if (state == Unusable) continue;
    std::string ids;
    for (int row = 1; row <= table.RowCount(); ++row) ids += std::string(table.Peek(2, row)) + ' ';
    EXPECT_EQ(ids, expected_ids) << what;
    EXPECT_EQ(table.ColumnName(4), "Fremd");
    for (const std::string_view name : kCardColumns) EXPECT_GT(table.ColumnIndex(name), 0) << name;
  }
}

}  // namespace
}  // namespace tessaro
