#include <gtest/gtest.h>

#include <random>

#include "exchange/card_export.h"
#include "exchange/table_import.h"
#include "exchange/text_cards.h"
#include "platform/memory_file.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

constexpr TextLayout kBars = {.separator = ';', .card_separator = '|'};
constexpr TableLayout kSemicolons = {.separator = ';', .quote = '\''};

std::string Cards(std::string_view text, const TextLayout& layout = kBars) {
  std::string shown;
  TextCards cards(text, layout);
  for (TextCards::Card card; cards.Next(card);) shown += "[" + card.front + "/" + card.back + "]";
  return shown;
}

TEST(TextCards, SidesAreParted) {
  const std::pair<std::string_view, const char*> cases[] = {
      {"Haus;\nhouse|\nBaum;\ntree|\n", "[Haus/house][Baum/tree]"},
      {"\n\r\na;\n\n\nb\n|", "[\na/\nb\n]"},  // only the first two places
      {"a;\nb\nc|\n", "[a/b\nc]"},
      {"a;|;b|", "[a/-][-/b]"},
      {";\n|\na;b|", "[a/b]"},  // an empty first card is none
      {"a;b|;|", "[a/b][-/-]"},
      {"\n\n\n;|", "[\n/-]"},
      {"a;b|c;d", "[a/b][c/d]"},  // the last separator is missing
      {"a;b|rest", "[a/b]"},
      {"", ""},
  };
  for (const auto& [text, cards] : cases) {
    EXPECT_EQ(Cards(text), cards) << text;
    const TextCheck check = CheckText(text, kBars);
    EXPECT_TRUE(check.good) << text;
    const std::string_view shown = cards;
    EXPECT_EQ(check.Given(), std::count(shown.begin(), shown.end(), '[')) << text;
  }
}

TEST(TextCards, LayoutSwapsSidesAndTakesBackslashPairsAsOne) {
  EXPECT_EQ(Cards("a;b|", {.separator = ';', .card_separator = '|', .swapped = true}), "[b/a]");
  EXPECT_EQ(Cards(R"(a\\\\\b;\|)", {.separator = ';', .card_separator = '|', .backslash_pairs = true}), R"([a\\\b/\])");
  EXPECT_EQ(Cards("Haus\thouse\nBaum\ttree\n", {.separator = '\t', .card_separator = '\n'}), "[Haus/house][Baum/tree]");
}

TEST(TextCards, CheckStopsWhereSeparatorsDoNotTakeTurns) {
  const std::pair<std::string_view, int> cases[] = {{"|a;b|", 0}, {"a;b|c;d;e|", 1}, {"a;b|c;d||", 2}, {"a|b;", 0}};
  for (const auto& [text, cards] : cases) {
    const TextCheck check = CheckText(text, kBars);
    EXPECT_FALSE(check.good) << text;
    EXPECT_EQ(check.cards, cards) << text;
  }
  const TextCheck check = CheckText("a;b\\\\|\n \nxy", kBars);
  EXPECT_EQ(check.left_over, 2);
  EXPECT_TRUE(check.backslash_pairs);
}

std::string Row(const std::string& id, const std::string& rest = "0;f;g;1;0;wf;0 0") {
  return id + ";" + rest + "\n";
}

std::string Zeros(int count) {
  std::string times;
  for (int i = 0; i < count; ++i) times += "0 ";
  return times;
}

TEST(TableImport, LinesThatAreNoCardsAreListed) {
  const std::pair<std::string, LineFault> cases[] = {
      {Row("000001", "0;f;g;1;0;wf"), LineFault::FieldCount},
      {Row("000001", "0;f;g;1;0;wf;0;"), LineFault::FieldCount},
      {Row("000001", "0;f\x0Fx;g;1;0;wf;0"), LineFault::FieldCount},
      {"\n", LineFault::FieldCount},
      {Row("000001", "0;f;g;1;0;wf;0\\"), LineFault::CutEscape},
      {Row("00001"), LineFault::Id},
      {Row("000000"), LineFault::Id},
      {Row("999991"), LineFault::Id},
      {Row("##"), LineFault::Id},
      {Row("000001", "0;f;g;;0;wf;0"), LineFault::Score},
      {Row("000001", "0;f;g;1234567890;0;wf;0"), LineFault::Score},
      {Row("000001", "0;f;g;-1;0;wf;0"), LineFault::Score},
      {Row("000001", "0;f;g;1;x;wf;0"), LineFault::TimeLearned},
      {Row("000001", "0;f;g;1;0;wx;0"), LineFault::YesNoRow},
      {Row("000001", "0;f;g;1;0;" + std::string(65, 'w') + ";0"), LineFault::YesNoRow},
      {Row("000001", "0;f;g;1;0;w;-1"), LineFault::TimeRow},
      {Row("000001", "0;f;g;1;0;w;" + Zeros(65)), LineFault::TimeRow},
      {Row("000009"), LineFault::DoubleId},
  };
  for (const auto& [line, fault] : cases) {
    const TableCheck check = CheckTable(Row("000009") + line + Row("000010"), kSemicolons);
    EXPECT_EQ(check.cards, 2) << line;
    ASSERT_EQ(check.faults.size(), 1U) << line;
    EXPECT_EQ(check.faults[0].line, 2) << line;
    EXPECT_EQ(check.faults[0].fault, fault) << line;
  }
  // A line that is left out takes no number away.
  EXPECT_EQ(CheckTable(Row("000009", "0;f;g;x;0;wf;0") + Row("000009"), kSemicolons).cards, 1);
}

TEST(TableImport, FileIsFramedAndHoldsTheLinesThatFit) {
  const std::string text = "@@;;;;;;;\n\"000001\";0;'a\\;b';\\n;000000001;;wf;0\nrubbish\n" + Row("000002");
  const TableCheck check = CheckTable(text, kSemicolons);
  EXPECT_TRUE(check.start_row);
  MemoryWriter file;
  ASSERT_TRUE(WriteTable(text, kSemicolons, check, file));
  EXPECT_EQ(WithBars(file.TakeText()),
            "ID|Topic|Question|Answer|Score|TimeLearned|YesNoRow|TimeRow\n@@|||||||\n"
            "000001|0|\"a\\|b\"|\\n|000000001||wf|0\n000002|0|f|g|1|0|wf|0 0\n##|||||||");
}

TEST(TableImport, LineWithoutAnEndCountsAndTheSeparatorComesFirst) {
  EXPECT_EQ(CheckTable("000001;0;f;g;1;0;wf;0", kSemicolons).cards, 1);
  // Where all three are equal the double quote is the separator.
  EXPECT_EQ(CheckTable("000001\"0\"f\"g\"1\"0\"wf\"0\n", {.separator = '"', .quote = '"'}).cards, 1);
}

// Random sides, rich in what the layouts have to escape.
std::string AnySide(std::mt19937& random, std::string_view letters) {
  std::string side;
  for (size_t length = random() % 8; length > 0; --length) side += letters[random() % letters.size()];
  return side;
}

TEST(RoundTrip, TableComesBackByteForByteButForDoubleQuotesThatWereSubstitutes) {
  std::mt19937 random(1);
  for (int round = 0; round < 300; ++round) {
    std::vector<TestCard> cards(random() % 4 + 1);
    for (size_t i = 0; i < cards.size(); ++i) {
      cards[i].id = "00000" + std::to_string(i + 1);
      cards[i].question = AnySide(random, "aN\"\\\nn\r|\xFC");
      cards[i].answer = AnySide(random, "aN\"\\\nn\r|\xFC");
    }
    const CardTable table = MakeCards(cards);
    MemoryWriter exported;
    ASSERT_EQ(WriteTableExport(table, ';', '\'', {}, exported).end, ExportEnd::Done);
    const std::string text = exported.TakeText();
    const TableCheck check = CheckTable(text, kSemicolons);
    MemoryWriter file;
    ASSERT_TRUE(WriteTable(text, kSemicolons, check, file));
    EXPECT_EQ(file.TakeText() + "\n", FileText(cards));
  }
}

TEST(RoundTrip, TextComesBackButForLineBreaksAtTheFrontEmptySidesAndDoubledBackslashes) {
  std::mt19937 random(2);
  for (int round = 0; round < 300; ++round) {
    std::vector<TestCard> cards(random() % 4 + 1);
    std::string expected;
    for (TestCard& card : cards) {
      card.question = "x" + AnySide(random, "a\"\\\nn\r");
      card.answer = "yy" + AnySide(random, "a\"\\\nn\r");
      expected += "[" + card.question + "/" + card.answer + "]";
    }
    MemoryWriter exported;
    ASSERT_EQ(WriteTextExport(MakeCards(cards), ';', '|', {}, exported).end, ExportEnd::Done);
    const TextLayout layout = {.separator = ';', .card_separator = '|', .backslash_pairs = true};
    EXPECT_EQ(Cards(exported.TakeText(), layout), expected);
  }
}

}  // namespace
}  // namespace tessaro
