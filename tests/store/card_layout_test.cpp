#include "store/card_layout.h"

#include <gtest/gtest.h>

#include "store/card_figures.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

TEST(CardColumns, ReadNumbersAsTheyStandInOldFiles) {
  const struct {
    std::string_view text;
    int64_t number;
    bool digits;
  } cases[] = {{"", 0, false},
               {"000012", 12, true},
               {" \t\v-7x", -7, true},
               {"+5", 5, true},
               {"--5", 0, false},
               {"x5", 0, false},
               {"-12345678", -12345678, true},
               {"1234567/9", 1234567, true},
               {"1234567:9", 1234567, true},
               {"12\xB9"
                "456789",
                12, true},
               {"1234567890123456 ", 1234567890123456, true},
               {"9223372036854775807", INT64_MAX, true},
               {"9223372036854775808", INT64_MAX, true},
               {"-9999999999999999999", INT64_MIN, true}};
  for (const auto& c : cases) {
    EXPECT_EQ(LeadingNumber(c.text), c.number) << c.text;
    EXPECT_EQ(HasDigits(c.text), c.digits) << c.text;
  }
}

TEST(CardColumns, KnowNavigationCards) {
  for (const std::string_view text : {"<navigation>", "<b<<navigation>", "a <NAVIGATION>"}) {
    EXPECT_TRUE(IsNavigation(text)) << text;
  }
  for (const std::string_view text : {"", "<Navigation>", "navigation>", "<navigation", "<NAVIGATION >"}) {
    EXPECT_FALSE(IsNavigation(text)) << text;
  }
}

// Columns by name, fields of one row.
using Row = std::vector<std::string_view>;

CardTable TableWith(const Row& columns, const std::vector<Row>& rows) {
  CardTable table;
  for (const std::string_view name : columns) table.AddColumn(name);
  for (const Row& row : rows) {
    table.AppendRow();
    for (size_t i = 0; i < row.size(); ++i) table.Poke(static_cast<int>(i) + 1, table.RowCount(), row[i]);
  }
  return table;
}

TEST(CompleteCards, AddsWhatIsMissingAndKeepsWhatIsThere) {
  const Row columns = {"Answer", "ID", "Question", "Fremd"};
  const Row start = {"", "@@"};
  const Row card = {"A", "000001", "F", "x"};
  const Row end = {"", "##"};
  const Row stray_end = {"", "##", "", "mitten"};
  const struct {
    const char* what;
    Row columns;
    std::vector<Row> rows;
    CardTableState state;
    std::vector<std::string> ids;
  } cases[] = {
      {"whole", columns, {start, card, end}, CardTableState::Whole, {"@@", "000001", "##"}},
      {"empty lines at the end", columns, {start, card, end, {""}, {}}, CardTableState::Whole, {"@@", "000001", "##"}},
      {"no end", columns, {start, card, {}}, CardTableState::Completed, {"@@", "000001", "##"}},
      {"no start", columns, {card, end}, CardTableState::Completed, {"@@", "000001", "##"}},
      {"no frame", columns, {card}, CardTableState::Completed, {"@@", "000001", "##"}},
      {"a second end inside",
       columns,
       {start, stray_end, card, end},
       CardTableState::Whole,
       {"@@", "##", "000001", "##"}},
      {"no cards", columns, {start, end}, CardTableState::Unusable, {}},
      {"only an end", columns, {end}, CardTableState::Unusable, {}},
      {"no rows", columns, {}, CardTableState::Unusable, {}},
      {"no answers", {"ID", "Question"}, {{"@@"}, {"000001"}, {"##"}}, CardTableState::Unusable, {}},
      {"nothing", {}, {}, CardTableState::Unusable, {}},
  };
  for (const auto& c : cases) {
    CardTable table = TableWith(c.columns, c.rows);
    EXPECT_EQ(CompleteCards(table), c.state) << c.what;
    if (c.state == CardTableState::Unusable) continue;
    ASSERT_EQ(table.RowCount(), static_cast<int>(c.ids.size())) << c.what;
    for (int row = 1; row <= table.RowCount(); ++row) {
      EXPECT_EQ(table.Peek(2, row), c.ids[static_cast<size_t>(row) - 1]) << c.what;
    }
    EXPECT_EQ(table.ColumnName(4), "Fremd");
    for (const std::string_view name : kCardColumns) EXPECT_GT(table.ColumnIndex(name), 0) << name;
  }
}

TEST(CardFigures, CountCardsByTheirHistory) {
  constexpr int64_t kNow = 1000000;
  const std::string known = "w" + std::string(kHistoryLength - 1, 'f');
  const std::string nines(20, '9');
  const struct {
    const char* what;
    TestCard card;
    std::string figures;  // what this card is counted as
  } cases[] = {
      {"never answered", {.time_row = "0 0"}, "learnable new"},
      {"no history at all", {.yes_no_row = "", .time_row = ""}, "learnable new"},
      {"not known", {.score = "000000000", .time_row = "900 800"}, "learnable unknown"},
      {"not known, taken back", {.score = "1", .time_row = "900"}, "learnable unknown"},
      {"known, score 0", {.score = "000000000", .yes_no_row = known, .time_row = "900"}, "learnable unknown"},
      {"known for long", {.score = "000500000", .yes_no_row = known, .time_row = "900000 1"}, "learnable known"},
      {"due just now", {.score = "000050001", .yes_no_row = known, .time_row = "899998"}, "learnable known"},
      {"due a second ago", {.score = "000050001", .yes_no_row = known, .time_row = "899997"}, "learnable known due"},
      {"beyond the maximum", {.score = "000999999", .yes_no_row = known, .time_row = "599999"}, "learnable known due"},
      {"broken numbers", {.score = nines, .yes_no_row = known, .time_row = nines}, "learnable known"},
      {"navigation", {.question = "<navigation>", .score = "0"}, ""},
      {"marked ID", {.id = "00#001", .score = "0"}, ""},
  };
  for (const auto& c : cases) {
    const CardTable cards = MakeCards({c.card});
    const CardFigures got = FiguresOf(cards, ColumnsOf(cards), {kNow, 2.0, 400000});
    EXPECT_EQ(got.cards, 1) << c.what;
    std::string figures = got.learnable == 1 ? "learnable" : "";
    if (got.never_answered == 1) figures += " new";
    if (got.known == 1) figures += " known";
    if (got.unknown == 1) figures += " unknown";
    if (got.due == 1) figures += " due";
    EXPECT_EQ(figures, c.figures) << c.what;
  }
}

TEST(CardFigures, CountUnknownCardsByScoreAlone) {
  const CardTable cards = MakeCards({{.id = "000001", .score = "000000000"},
                                     {.id = "000002", .score = ""},
                                     {.id = "000003", .score = "000000001"},
                                     {.id = "000004", .question = "x<NAVIGATION>", .score = "000000000"},
                                     {.id = "##", .score = ""}});
  EXPECT_EQ(CountUnknown(cards, ColumnsOf(cards)), 2);
}

}  // namespace
}  // namespace tessaro
