#include "store/file/card_layout.h"

#include <array>
#include <random>

#include "platform/code_page.h"
#include "store/table/card_columns.h"
#include "store/table/packed_fields.h"
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

TEST(PackedFields, TextsThatComeAgainTakeNoRoom) {
  PackedFields fields;
  const std::string long_text(1000, 'x');
  for (int i = 0; i < 100; ++i) fields.AddRow({{1, std::to_string(i)}, {2, long_text}, {300, long_text}});
  fields.AddToLastRow({{2, long_text}, {2, "short"}, {2, "short"}});
  const std::string bytes = fields.bytes();
  EXPECT_LT(bytes.size(), 103'000U);  // of the column 300 each is kept
  const std::optional<PackedFields> read = PackedFields::FromBytes(bytes, 100);
  ASSERT_TRUE(read);
  PackedReader reader(*read);
  for (int i = 0; i < 100; ++i) {
    const std::string number = std::to_string(i);
    std::vector<FieldView> expected = {{1, number}, {2, long_text}, {300, long_text}};
    if (i == 99) expected.insert(expected.end(), {{2, long_text}, {2, "short"}, {2, "short"}});
    ASSERT_TRUE(reader.Next());
    EXPECT_EQ(reader.fields(), expected) << i;
  }
  EXPECT_TRUE(reader.AtEnd());
  // Joined with others, and read from the middle on.
  PackedFields many;
  for (int i = 0; i < 6; ++i) many.Append(fields);
  const PackedFields::Place middle = many.Middle();
  EXPECT_TRUE(many.rows() == 600 && middle.row == 300 && many.columns() == fields.columns());
  many.AddToLastRow({{2, long_text}});
  PackedReader rest(many, middle);
  for (size_t i = middle.row; i < 600; ++i) ASSERT_TRUE(rest.Next() && rest.fields()[1].text == long_text) << i;
  EXPECT_TRUE(rest.AtEnd() && rest.fields().back().text == long_text);
  // A row that repeats what was never there.
  const size_t second = bytes.find('\0') + 1;
  EXPECT_FALSE(PackedFields::FromBytes(bytes.substr(second), 99));
}

// Numbers in order are counted, but only where a reader can tell.
TEST(PackedFields, AnyFieldsAreReadAsTheyWereAdded) {
  std::mt19937 random(3);
  const int columns[] = {1, 2, 127, 128, 300};
  for (int round = 0; round < 300; ++round) {
    PackedFields fields;
    std::vector<std::vector<std::pair<int, std::string>>> rows;
    int64_t number = std::array{0, 95, 9995, 999'990, 99'999'990}[random() % 5];
    const int digits = std::array{1, 6, 8, 9}[random() % 4];
    while (rows.size() < 600) {
      const auto any_field = [&] {
        std::string text = std::to_string(number += static_cast<int64_t>(random() % 8 != 0));
        text.insert(0, static_cast<size_t>(std::max(0, digits - static_cast<int>(text.size()))),
                    "0#"[random() % 50 == 0]);
        return std::pair(columns[random() % 8 == 0 ? random() % 5 : 0], std::move(text));
      };
      std::vector<std::pair<int, std::string>> row;
      for (size_t i = random() % 5; i < 4; i += 1 + random() % 4) row.push_back(any_field());
      std::vector<FieldView> views(row.begin() == row.end() ? 0 : row.size());
      for (size_t i = 0; i < row.size(); ++i) views[i] = {row[i].first, row[i].second};
      PackedFields more;
      const bool apart = random() % 100 == 0;
      (apart ? more : fields).AddRow(std::span(views).first(views.size() / 2));
      (apart ? more : fields).AddToLastRow(std::span(views).subspan(views.size() / 2));
      if (apart) fields.Append(std::move(more));
      rows.push_back(std::move(row));
    }
    ASSERT_TRUE(PackedFields::FromBytes(fields.bytes(), rows.size())) << round;
    for (const PackedFields::Place from : {PackedFields::Place(), fields.Middle()}) {
      PackedReader reader(fields, from);
      for (size_t i = from.row; i < rows.size(); ++i) {
        ASSERT_TRUE(reader.Next() && reader.fields().size() == rows[i].size()) << round << " " << i;
        for (size_t k = 0; k < rows[i].size(); ++k) {
          ASSERT_EQ(reader.fields()[k], (FieldView{rows[i][k].first, rows[i][k].second})) << round << " " << i;
        }
      }
    }
  }
}

TEST(PackedFields, NumbersInOrderTakeThreeBytesAndNothingIsCountedThatIsNone) {
  PackedFields ids;
  for (int i = 1; i <= 100'000; ++i) ids.AddRow({{1, IdText(i)}});
  EXPECT_LT(ids.bytes().size(), 303'000U);
  const std::string_view counted("\x81\0\0", 3);
  for (const std::string_view first : {"", "x", "99", "#9", "123456789"}) {
    const std::string row = {'\1', static_cast<char>(first.size())};
    EXPECT_FALSE(PackedFields::FromBytes(row + std::string(first) + '\0' + std::string(counted), 2)) << first;
  }
  EXPECT_FALSE(PackedFields::FromBytes(std::string(counted), 1));
}

}  // namespace
}  // namespace tessaro
