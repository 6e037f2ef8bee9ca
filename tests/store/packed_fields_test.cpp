#include "store/table/packed_fields.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "store/table/card_columns.h"

namespace tessaro {
namespace {

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
