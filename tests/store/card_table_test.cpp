#include "store/table/card_table.h"

#include <fstream>
#include <random>

#include "store/table/table_reader.h"
#include "store/table/table_scan.h"
#include "tests/store/table_twins.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

TEST(CardTable, ReadsAnyTextUnderAnySeparatorAsThePlainModel) {
  std::mt19937 random(3);
  for (int round = 0; round < 30 * 256; ++round) {
    const char separator = static_cast<char>(round % 256);
    const std::string letters = {'\\', '\n', '\r', 'n', 'N', 'x', '\0', separator, '\n'};
    std::string text = round % 3 == 0 ? "" : std::string("A") + separator + "B\n";
    for (auto i = random() % 50; i > 0; --i) text += letters[random() % letters.size()];
    SCOPED_TRACE(separator + testing::PrintToString(text));
    TableTwins twins(separator);
    ASSERT_TRUE(twins.Load(text, 1 + random() % 20, text.size()));
    ASSERT_TRUE(twins.SameFile());
    for (int i = 0; i < 12; ++i) ASSERT_TRUE(twins.Do(8, 1 + i / 3) && twins.Do(12, 1 + i % 3));
  }
}

TEST(CardTable, RowsOfAllLengthsSurviveReadingInPieces) {
  std::string text = "A;B;C\n";
  for (const size_t length : {0U, 1U, 63U, 64U, 65U, 4095U, 4096U, 65535U, 65536U}) {
    text += std::string(length, 'x') + ";" + std::string(length / 2, 'y') + "\\n;z\n";
    text += "k;" + std::string(length, 'v') + ";" + std::string(length, 'w') + "\n";
  }
  for (const size_t piece : {7U, 4096U, 5000U, 1U << 20}) {
    TableTwins twins(';');
    // A file that tells less than it has, or more, is read to its end.
    EXPECT_TRUE(twins.Load(text, piece, piece % 2 == 0 ? 10 : text.size() * 2)) << piece;
    EXPECT_TRUE(twins.SameFile()) << piece;
  }
}

TEST(CardTable, AnswersAsThePlainModelOverRandomWork) {
  const std::string start = "A;B;C\r\n1;a;x\n2;b\\;;y\n\n4;d;z;too much\n5;e\\n;v\n";
  for (uint32_t seed = 0; seed < 100; ++seed) {
    std::mt19937 random(seed);
    TableTwins twins(';');
    ASSERT_TRUE(twins.Load(seed % 3 == 0 ? "" : start, 100, start.size()));
    for (int i = 0; i < 150; ++i) {
      const auto operation = static_cast<uint8_t>(random() % 20);
      // Small row numbers, so that rows are hit.
      const auto argument = static_cast<uint8_t>(random() % (i % 2 == 0 ? 12 : 256));
      ASSERT_TRUE(twins.Do(operation, argument)) << "seed " << seed << " step " << i << " operation " << +operation;
      ASSERT_TRUE(i % 10 != 0 || twins.SameContent()) << "seed " << seed << " step " << i;
    }
    ASSERT_TRUE(twins.SameFile()) << seed;
  }
}

TEST(CardTable, RowsThatComeWithTheirFieldsReadAndSaveLikeOthers) {
  CardTable table = TableOf("A;B;C\r\n1;a;x\r\n2;b;y\r\n", ';');
  PackedFields fields;
  fields.AddRow({{1, "7"}, {2, "c;\nd"}, {3, "\\"}});
  fields.AddRow({{3, "z"}, {1, "8"}});
  fields.AddRow({});
  ASSERT_TRUE(table.ShiftRows(RowShift({}, {2, 3, 4}), fields));
  EXPECT_EQ(FileText(table), "A;B;C\r\n1;a;x\r\n7;c\\;\\nd;\\\\\r\n8;;z\r\n;;\r\n2;b;y\r\n");
}

TEST(CardTable, HundredsOfRowsComeAndGoAtOnce) {
  std::string text = "A\n";
  std::vector<std::string> model;
  for (int i = 0; i < 3000; ++i) {
    model.push_back(std::to_string(i));
    text += model.back() + "\n";
  }
  CardTable table = TableOf(text, ';');
  std::mt19937 random(13);
  for (int round = 0; round < 5; ++round) {
    std::vector<int> removed, inserted;
    std::vector<std::string> left;
    for (int row = 1; row <= static_cast<int>(model.size()); ++row) {
      const bool goes = round % 3 == 1 && random() % 4 == 0;
      goes ? removed.push_back(row) : left.push_back(model[static_cast<size_t>(row) - 1]);
    }
    PackedFields fields;
    model.clear();
    const size_t from = random() % left.size();
    for (size_t i = 0; i < left.size(); ++i) {
      for (int more = i < from || round % 3 == 1 ? 0 : static_cast<int>(random() % 2); more > 0; --more) {
        model.push_back("new" + std::to_string(i));
        inserted.push_back(static_cast<int>(model.size()));
        fields.AddRow({{1, model.back()}});
      }
      model.push_back(left[i]);
    }
    ASSERT_TRUE(table.ShiftRows(RowShift(removed, inserted), fields));
    std::string expected = "A\n";
    for (const std::string& row : model) expected += row + "\n";
    ASSERT_TRUE(FileText(table) == expected) << round;
  }
}

// Long texts that rows have in common stand once, until some of them are replaced.
TEST(CardTable, ManyRowsWithCommonTextsAreChangedEachByItself) {
  std::mt19937 random(11);
  const std::string texts[] = {"", "short;\n", std::string(60, 'w'), std::string(58, 'f') + "\\;",
                               std::string(2000, 'x')};
  const auto any_text = [&] { return texts[random() % 5]; };
  for (int round = 0; round < 15; ++round) {
    CardTable table = TableOf("A;B;C;D\n1;" + std::string(60, 'w') + ";\\n;\n2;b;c;d\n", ';');
    std::vector<std::vector<std::string>> rows = {{"1", texts[2], "\n", ""}};
    PackedFields fields;
    std::vector<int> inserted;
    for (int row = 2; row < 60; ++row) {
      rows.push_back(row % 20 == 2 || random() % 5 == 0 ? std::vector{any_text(), any_text(), any_text(), any_text()}
                                                        : rows.back());
      rows.back()[0] = std::to_string(row);
      fields.AddRow({{1, rows.back()[0]}, {2, rows.back()[1]}, {3, rows.back()[2]}, {4, rows.back()[3]}});
      inserted.push_back(row);
    }
    rows.push_back({"2", "b", "c", "d"});
    ASSERT_TRUE(table.ShiftRows(RowShift({}, inserted), fields));
    for (int change = 0; change < 100; ++change) {
      std::vector<std::string>& row = rows[random() % rows.size()];
      std::vector<FieldView> views;
      for (int column = 1; column <= 4; ++column) {
        if (random() % 2 == 0) continue;
        row[static_cast<size_t>(column) - 1] = any_text();
        views.push_back({column, row[static_cast<size_t>(column) - 1]});
      }
      PackedFields changed;
      changed.AddRow(views);
      const int number = static_cast<int>(&row - rows.data()) + 1;
      table.PokeRows(std::span(&number, 1), changed);
    }
    std::string expected = "A;B;C;D\n";
    for (size_t row = 0; row < rows.size(); ++row) {
      for (int column = 1; column <= 4; ++column) {
        const std::string& text = rows[row][static_cast<size_t>(column) - 1];
        ASSERT_EQ(table.Peek(column, static_cast<int>(row) + 1), text) << round << " " << row;
        for (const char c : text)
          expected += c == '\n' ? "\\n" : c == ';' ? "\\;" : c == '\\' ? "\\\\" : std::string(1, c);
        expected += column < 4 ? ';' : '\n';
      }
    }
    EXPECT_EQ(FileText(table), expected);
  }
}

TEST(CardTable, ManyInsertedAndDeletedRowsKeepTheirOrder) {
  std::string text = "A\n";
  for (int i = 0; i < 4500; ++i) text += std::to_string(i) + "\n";
  TableTwins twins(';');
  ASSERT_TRUE(twins.Load(text, text.size(), text.size()));
  std::mt19937 random(7);
  for (int i = 0; i < 4000; ++i) {
    // First here and there, then all at one place.
    const bool one_place = i >= 1500;
    ASSERT_TRUE(twins.Do(8, one_place ? 4300 : 1 + static_cast<int>(random() % 4000)));
    ASSERT_TRUE(twins.Do(one_place || i % 3 != 0 ? 1 : 3, 0) && twins.Do(11, i * 5 + 1));
  }
  EXPECT_TRUE(twins.SameContent());
}

TEST(CardTable, ManyShortRowsOutgrowAnyGuess) {
  std::string text = "A;B\n";
  for (int row = 0; row < 300'000; ++row) text += row % 2 == 0 ? "\\n;\n" : ";b\n";
  CardTable table = TableOf(text, ';');
  ASSERT_EQ(table.RowCount(), 300'000);
  EXPECT_TRUE(table.Peek(1, 299'999) == "\n" && table.Peek(2, 300'000) == "b" && FileText(table) == text);
}

TEST(TableScan, FindsTheSameMarksOnEveryPath) {
  std::mt19937 random(5);
  for (int round = 0; round < 200; ++round) {
    std::string text(random() % 400, 'x');
    for (char& c : text) c = "xy;\\\n\r\x8A"[random() % 7];
    std::vector<uint32_t> expected;
    for (uint32_t i = 0; i < text.size(); ++i) {
      if (std::string_view(";\\\n").find(text[i]) != std::string_view::npos) expected.push_back(i);
    }
    EXPECT_EQ(FindFirstMark(text, ';'), expected.empty() ? text.size() : expected[0]);
    const std::string readable = text + std::string(kScanWidth, ';');
    for (const ScanPath path : {ScanPath::Best, ScanPath::Sse2, ScanPath::Plain}) {
      std::vector<uint32_t> places(text.size() + kScanWidth);
      places.resize(FindMarks(readable.data(), text.size(), ';', places.data(), path));
      ASSERT_EQ(places, expected) << testing::PrintToString(text);
    }
  }
}

// From the heap and from pages of its own, and from the one to the other.
TEST(MemoryBlock, KeepsWhatItHoldsWhenItGrows) {
  MemoryBlock block;
  std::vector<size_t> written;
  for (const size_t room : {size_t{100}, size_t{5000}, size_t{1} << 20, size_t{3} << 20, size_t{200} << 20}) {
    ASSERT_TRUE(block.Reserve(room) && block.room() >= room);
    for (const size_t place : written) EXPECT_EQ(block.data()[place], 'x') << room;
    EXPECT_EQ(block.data()[room - 1] | block.data()[room + MemoryBlock::kReadableBehind - 1], 0);
    block.data()[room - 1] = 'x';
    written.push_back(room - 1);
  }
  EXPECT_FALSE(block.Reserve(PTRDIFF_MAX));
  EXPECT_EQ(block.data()[99], 'x');
}

TEST(CardTable, LoadsAndSavesFilesAndSurvivesFailures) {
  const TemporaryFolder temporary;
  const fs::path& folder = temporary.path();
  const fs::path path = folder / "Deck.mlb";
  // Larger than what is read with help of a second thread, which the small texts of the other tests never start.
  std::string text = "ID;Text\r\n";
  for (int row = 1; row <= 4'500; ++row) text += std::to_string(row) + ";" + std::string(3990, 't') + "\\\\\r\n";
  std::ofstream(path, std::ios::binary) << text;
  CardTable table;
  ASSERT_TRUE(table.LoadFromFile(path));
  ASSERT_EQ(table.RowCount(), 4'500);
  table.GoTo(2);
  table.SetField(2, table.Peek(2, 1));
  table.GoTo(9'999);
  for (const fs::path& bad : {folder, folder / "none" / "x.mlb", fs::path("/dev/full"), fs::path("/proc/self/mem")}) {
    EXPECT_FALSE(table.LoadFromFile(bad) || table.SaveToFile(bad)) << bad;
    EXPECT_TRUE(table.Eof() && table.TableName() == "Deck");
  }
  const fs::path link = folder / "link.mlb";
  fs::create_symlink(path, link);
  constexpr fs::perms kRights = fs::perms::owner_read | fs::perms::owner_write;
  fs::permissions(path, kRights);
  ASSERT_TRUE(table.SaveToFile(link));
  EXPECT_TRUE(fs::is_symlink(link) && fs::status(path).permissions() == kRights && !table.Eof());
  EXPECT_TRUE(ReadFile(RealDisk(), path) == text);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 2) << "nothing is left beside the file";
}

struct LastPosition : Progress {
  void SetPosition(int64_t position) override { last = position; }
  int64_t last = 0;
};

// Everything that a file was read as.
std::string Reading(const std::string& text, uint64_t announced, bool splits) {
  TextFile file(text, text.size(), announced, splits);
  TableContent content;
  ContentHash hash;
  LastPosition progress;
  if (!TableReader(file, ';', content, &hash, &progress, 1).Read()) return "failed";
  std::string reading =
      std::to_string(hash.Stamp().hash) + " " + std::to_string(hash.Stamp().size) + " " + std::to_string(progress.last);
  for (int i = 0; i < content.order.size(); ++i) {
    const RowHandle row = content.order.At(i);
    reading += content.rows.AsWritten(row) ? "\n=" : "\n";
    for (int field = 0; field < content.columns.size(); ++field) {
      const RowStore::Value value = content.rows.Get(row, field);
      reading += value ? "<" + std::string(*value) + ">" : "-";
    }
  }
  return reading;
}

// Text that is rich in marks, most of them in odd places, though with stretches that have none.
std::string RandomText(std::mt19937& random, size_t size) {
  std::string text = random() % 2 == 0 ? "A;B;C\n" : "A;B\r\n";
  const std::string marks = random() % 8 == 0 ? "ab;\\\r" : "ab;;\\\\\r\n\nn";
  while (text.size() < size) {
    const bool plain = random() % 4 == 0;
    const size_t count = random() % (plain ? 5000 : 200);
    for (size_t i = 0; i < count; ++i) text += plain ? 'x' : marks[random() % marks.size()];
  }
  return text;
}

TEST(TableReader, ReadsTwoHalvesAsOneWhole) {
  constexpr int kRounds = 8;
  std::mt19937 random(1);
  for (int round = 0; round < kRounds; ++round) {
    const std::string text = RandomText(random, ContentHash::kPiece + random() % (4 * ContentHash::kPiece));
    const std::string whole = Reading(text, text.size(), false);
    // Also a file that has become longer or shorter, even so much that there is no second half.
    for (const uint64_t announced : {text.size(), text.size() + 7, 3 * text.size(), text.size() * 3 / 4})
      ASSERT_TRUE(Reading(text, announced, true) == whole) << "round " << round << ", announced " << announced;
  }
}

// A row is written from what was read as long as that is just what would be written for it, with or without escapes.
TEST(TableReader, KnowsWhichRowsStandAsTheyWouldBeWritten) {
  const std::pair<std::string, bool> rows[] = {
      {"1;2;3", true},   {"a\\nb;\\\\;\\;\\n", true}, {";;\\\\\\n", true}, {"\\N;;", false},   {"\\x;;", false},
      {";;\\\r", false}, {"a\\\nb;;", false},         {"1;2", false},      {"1;2;3;4", false}, {"1;2;3\r", false}};
  for (const auto& [row, as_written] : rows)
    EXPECT_EQ(Reading("A;B;C\n" + row + "\n", 0, false).find("\n=") != std::string::npos, as_written) << row;
}

// The middle lies at a place of its own in each of these: between backslashes, before a carriage return, ...
TEST(TableReader, FindsTheFirstLineBehindTheMiddle) {
  const size_t middle = 2 * ContentHash::kPiece;
  for (const std::string seam :
       {"\\\\\\\\\\\\\n", "\\\\\\\\\\\n", "a\\\r\n", "a\\\\\r\n", "a\\\r\r\n", ";\r\n\r\n", "\n\n\n"}) {
    for (const size_t before : {size_t{0}, seam.size() / 2, seam.size() - 1, seam.size()}) {
      std::string text = "A;B\n" + std::string(middle - 4 - before, 'x') + seam + "1;2\n3;4\n";
      text.resize(text.size() + middle - 1000, 'y');
      ASSERT_TRUE(Reading(text, text.size(), true) == Reading(text, text.size(), false)) << seam << before;
    }
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
  for (const std::string& alone : {std::string(counted), std::string("\x80\x80\x80\x80\x04")})  // nothing to repeat
    EXPECT_FALSE(PackedFields::FromBytes(alone, 1));
}

}  // namespace
}  // namespace tessaro
