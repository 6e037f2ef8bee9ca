#include <random>

#include "exchange/card_export.h"
#include "exchange/first_version.h"
#include "exchange/foreign_text.h"
#include "exchange/separators.h"
#include "exchange/table_import.h"
#include "exchange/text_cards.h"
#include "platform/memory_file.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

using namespace std::literals;

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
  EXPECT_TRUE(check.left_over == 2 && check.backslash_pairs);
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
      {Row("000063"), LineFault::DoubleId},
  };
  for (const auto& [line, fault] : cases) {
    const TableCheck check = CheckTable(Row("000063") + line + Row("000064"), kSemicolons);
    EXPECT_EQ(check.cards, 2) << line;
    ASSERT_EQ(check.faults.size(), 1U) << line;
    EXPECT_EQ(check.faults[0].line, 2) << line;
    EXPECT_EQ(check.faults[0].fault, fault) << line;
  }
  // A line that is left out takes no number away.
  EXPECT_EQ(CheckTable(Row("000063", "0;f;g;x;0;wf;0") + Row("000063"), kSemicolons).cards, 1);
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

TEST(TableImport, TwoHalvesAreLookedAtLikeOneTable) {
  std::mt19937 random(3);
  const std::string rests[] = {"0;f;g;1;0;wf;0 0", "0;\"f\";\\;;1;0;wf;0 0", "0;f;g;x;0;wf;0", "0;f\n;",
                               "0;f;g;1;0;wx;0 "};
  for (int round = 0; round < 300; ++round) {
    std::string text = random() % 4 == 0 ? "@@;;;;;;;\n" : "";
    for (size_t lines = random() % 12; lines > 0; --lines) {
      text += Row("00000" + std::to_string(random() % 10), rests[random() % 2 == 0 ? 0 : random() % std::size(rests)]);
    }
    if (!text.empty() && random() % 2 == 0) text.pop_back();
    const TableCheck whole = CheckTable(text, kSemicolons, {}, SIZE_MAX);
    const TableCheck halves = CheckTable(text, kSemicolons, {}, 0);
    const auto told = [](const TableCheck& check) {
      std::string faults;
      for (const auto& [line, fault] : check.faults) faults += Row(std::to_string(line), std::to_string(int(fault)));
      return std::tuple(check.lines, check.cards, check.fault_count, faults, check.start_row);
    };
    EXPECT_EQ(told(halves), told(whole)) << text;
  }
}

TEST(TableImport, LongTableIsReadWholeAndItsCheckCanBeEnded) {
  std::string text;
  constexpr int kLines = 5000;
  for (int number = 1; number <= kLines; ++number) {
    text += Row(std::to_string(1'000'000 + number).substr(1), "0;" + std::string(100, 'f') + ";g;1;0;wf;" + Zeros(64));
  }
  const std::string table = "@@;;;;;;;\n" + text.substr(0, text.size() - 1);
  const TableCheck check = CheckTable(table, kSemicolons);
  EXPECT_EQ(check.cards, kLines);
  MemoryWriter file;
  ASSERT_TRUE(WriteTable(table, kSemicolons, check, file));
  const std::string written = file.TakeText();
  std::replace(text.begin(), text.end(), ';', kFieldSeparator);
  EXPECT_EQ(written.substr(written.find("000001"), text.size()), text);
  int64_t furthest = 0;
  const auto goes_on = [&](int64_t done) { return (furthest = done) >= 0; };
  EXPECT_FALSE(CheckTable(text, kSemicolons, goes_on, 0).cancelled);
  EXPECT_GT(furthest, static_cast<int64_t>(text.size()) / 2);
  const auto ends = [](int64_t) { return false; };
  EXPECT_TRUE(CheckTable(text, kSemicolons, ends, 0).cancelled);
  EXPECT_FALSE(WriteTable(table, kSemicolons, check, file, ends));
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

using first_version::ReadTopics;
using first_version::Topics;
using first_version::WriteCards;

constexpr std::string_view kHead = "ID|Topic|Question|Answer|Score|TimeLearned|YesNoRow|TimeRow\n@@|||||||\n";
constexpr std::string_view kEnd = "##|||||||\n";

std::string Converted(const std::string& lines) {
  MemoryWriter file;
  EXPECT_TRUE(WriteCards("one\ntwo\n" + lines, ';', file).good);
  const std::string text = WithBars(file.TakeText());
  EXPECT_TRUE(text.starts_with(kHead) && text.ends_with(kEnd)) << text;
  return text.substr(kHead.size(), text.size() - kHead.size() - kEnd.size());
}

TEST(FirstVersion, LinesAreConverted) {
  EXPECT_EQ(Converted("1;a||b\\;|||\x0F\n"), "1|a\\nb\\\\|\\n||\n");
  EXPECT_EQ(Converted("1;a"), "1|a\n");
  EXPECT_EQ(Converted(""), "");
  MemoryWriter file;
  EXPECT_EQ(WriteCards("only one line", ';', file).lines, 0);
}

TEST(FirstVersion, LongLineComesInPieces) {
  const std::string front(first_version::kPiece - 1, 'a');
  EXPECT_EQ(Converted(front + "||b\n"), front + "||b\n");  // a break that is cut is none
  EXPECT_EQ(Converted(front + "a999999 * x* y\nlast\n"), front + "alast\n");
}

TEST(FirstVersion, TopicsStandBetweenMarks) {
  const Topics topics =
      ReadTopics("999999;  ** Tiere* " + std::string(20, 'b') + "* " + std::string(21, 'c') + "**x*", ';');
  // The mark in column 9 is none, and a mark may stand directly behind a mark.
  const std::string names[] = {"Tiere", std::string(20, 'b'), "...", "..."};
  EXPECT_TRUE(std::equal(std::begin(names), std::end(names), topics.names.begin()) && topics.names[5] == "...");
  std::string line = "9999990000";
  for (int i = 0; i < 30; ++i) line += "* " + std::to_string(i);
  EXPECT_EQ(ReadTopics(line, ';').names[19], "19");
  EXPECT_EQ(ReadTopics(line, ';').name, "20");
  EXPECT_EQ(ReadTopics(line.insert(40, ";"), ';').name, "...");
  EXPECT_EQ(ReadTopics("9999990000* a* b" + std::string(490, ' ') + "* c* d", ';').names[1], "...");
}

TEST(ForeignText, EncodingIsRecognisedAndConverted) {
  const struct {
    std::string raw;
    Encoding encoding;
    std::string bytes;
    int replaced;
  } cases[] = {
      {"abc", Encoding::CodePage, "abc", 0},
      {"gr\xFC\xDF", Encoding::CodePage, "gr\xFC\xDF", 0},
      {"grüß €", Encoding::Utf8, "gr\xFC\xDF \x80", 0},
      {"\xEF\xBB\xBFgrün", Encoding::Utf8WithMark, "gr\xFCn", 0},
      {"\xEF\xBB\xBFgr\xFCn", Encoding::Utf8WithMark, "gr\xFCn", 0},
      {"\xFF\xFE"s + "g\0\xFC\0\x51\x01"s, Encoding::Utf16Little, "g\xFCo", 1},
      {"\xFE\xFF"s + "\0g\0\xFC\0\r\0\n"s, Encoding::Utf16Big, "g\xFC\n", 0},
      {"\xFF\xFE\x3D\xD8\x00\xDE\x3D"s, Encoding::Utf16Little, "??", 2},  // a pair and half a unit
      {"\xFF\xFE\x00\xDE\x61\x00"s, Encoding::Utf16Little, "?a", 1},      // half a pair
      {"a\xCC\x88 s\xCC\x88 \xCC\x88", Encoding::Utf8, "\xE4 s ", 2},     // accents of their own
      {"ő ﬁ → ☃\xE2\x80\x8B", Encoding::Utf8, "o fi -> ?", 5},
      {"ấ Ł", Encoding::Utf8, "a L", 2},
  };
  for (const auto& [raw, encoding, bytes, replaced] : cases) {
    const ForeignText text = ReadForeignText(raw);
    EXPECT_EQ(std::tie(text.encoding, text.bytes, text.replaced), std::tie(encoding, bytes, replaced)) << raw;
  }
}

TEST(ForeignText, LineEndsBecomeLineFeedsAndZerosAreLeftOutAndCounted) {
  const ForeignText text = ReadForeignText("a\r\nb\rc\0\r\r\n\r\0\n"s);
  EXPECT_EQ(text.bytes, "a\nb\rc\r\n\r\n");
  EXPECT_EQ(text.zeros, 2);
}

TEST(ForeignText, ExamplesNameEachReplacementOnce) {
  const ForeignText text = ReadForeignText("ő ő ☃");
  ASSERT_EQ(text.examples.size(), 2U);
  EXPECT_TRUE(text.examples[0].by == "o" && text.examples[1].character == U'☃');
  EXPECT_EQ(text.replaced, 3);
}

TEST(Separators, CodeIsTheByteAsSignedNumber) {
  EXPECT_EQ(CodeText('\xA4'), "-92");
  EXPECT_EQ(CodeText('|'), "124");
  EXPECT_EQ(CodeText(std::nullopt), "0");
  const std::pair<const char*, int> codes[] = {{"180", 180}, {"-92", 164}, {" 9x", 9}, {"265", 9},
                                               {"-256", 0},  {"0", 0},     {"", 0},    {"x", 0}};
  for (const auto& [code, byte] : codes)
    EXPECT_EQ(static_cast<unsigned char>(CharacterOfCode(code).value_or('\0')), byte) << code;
}

TEST(Separators, ThoseThatCannotBeReadBackAreToldApart) {
  const std::pair<char, SeparatorFault> faults[] = {{'\xA4', SeparatorFault::None},    {'\t', SeparatorFault::None},
                                                    {'\\', SeparatorFault::Backslash}, {'n', SeparatorFault::LetterN},
                                                    {'5', SeparatorFault::InColumns},  {'w', SeparatorFault::InColumns},
                                                    {'"', SeparatorFault::Quote},      {'\r', SeparatorFault::LineEnd}};
  for (const auto& [separator, fault] : faults) {
    EXPECT_EQ(FaultOf(separator), fault) << separator;
    EXPECT_EQ(FaultOf(';', separator), fault) << separator;
  }
  EXPECT_EQ(FaultOf(';', ';'), SeparatorFault::Same);
}

}  // namespace
}  // namespace tessaro
