#include "store/card_table.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "platform/progress.h"
#include "tests/store/table_twins.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

// Rows in brackets, fields parted by a bar, "-" for a null field: "[1|a][2|-]".
std::string Dump(CardTable& table) {
  std::string text;
  for (int row = 1; row <= table.RowCount(); ++row) {
    table.GoTo(row);
    text += '[';
    for (int column = 1; column <= table.ColumnCount(); ++column) {
      if (column > 1) text += '|';
      text += table.Field(column).value_or("-");
    }
    text += ']';
  }
  return text;
}

CardTable Load(std::string_view text, char separator = ';') {
  CardTable table;
  table.SetSeparator(separator);
  TextFile file(text, text.size() + 1, text.size());
  EXPECT_TRUE(table.LoadFrom(file));
  return table;
}

std::string Saved(CardTable& table) {
  StringFile file;
  EXPECT_TRUE(table.SaveTo(file));
  return file.text;
}

std::string FileText(const fs::path& path) {
  return ReadFile(RealDisk(), path).value_or("(missing)");
}

class CardTableFile : public testing::Test {
 protected:
  void SetUp() override { fs::create_directory(folder_); }
  void TearDown() override { fs::remove_all(folder_); }

  const fs::path folder_ = fs::path(testing::TempDir()) / "card_table_test";
};

class CountingBar : public ProgressBar {
 public:
  void SetPosition(int64_t position) override { positions.push_back(position); }
  std::vector<int64_t> positions;
};

TEST(CardTable, ReadsAndWritesLines) {
  struct Case {
    std::string text;
    std::string rows;
    std::string written;  // "" when the same
  };
  const std::vector<Case> cases = {
      {"", "", ""},
      {"A;B\n", "", ""},
      {"A;B\n1;2\n3;4\n", "[1|2][3|4]", ""},
      {"A;B\na\\;b;x\\\\y\nl\\nm;l\\Nm\n", "[a;b|x\\y][l\nm|l\nm]", "A;B\na\\;b;x\\\\y\nl\\nm;l\\nm\n"},
      {"A;B\n1\n\n1;2;3;4\n", "[1|-][|-][1|2]", "A;B\n1;\n;\n1;2\n"},
      {"A;B\n1;2\n3;4", "[1|2][3|-]", "A;B\n1;2\n3;\n"},
      {"A\n\\", "[-]", "A\n\n"},
      {"A;B\nx\\\ny;\\q\n", "[x\ny|q]", "A;B\nx\\ny;q\n"},
      // The line ending of the header is that of the file.
      {"A;B\r\n1;2\r\n\\;;\r\n", "[1|2][;|]", ""},
      {"A;B\r\n1;2\n3;4\r\r\n", "[1|2][3|4\r]", "A;B\r\n1;2\r\n3;4\r\r\n"},
      {"A;B\n1;2\r\n\r\n\r", "[1|2][|-][-|-]", "A;B\n1;2\n;\n;\n"},
      {"A\nx\\\r\ny\\\rz\n", "[x\ny\rz]", "A\nx\\ny\rz\n"},
      // Zero bytes and the end mark of old systems are bytes like others.
      {std::string("A;B\n\0;\x1A\n", 8), std::string("[\0|\x1A]", 5), ""},
  };
  for (const Case& c : cases) {
    CardTable table = Load(c.text);
    EXPECT_EQ(Dump(table), c.rows) << c.text;
    EXPECT_EQ(Saved(table), c.written.empty() ? c.text : c.written) << c.text;
  }
}

TEST(CardTable, HeaderNamesLoseEscapesAfterSplitting) {
  CardTable table = Load("a\\nb;c\\\\d;e\\xf;g\\;id\nrest");
  EXPECT_EQ(table.ColumnName(1), "a\nb");
  EXPECT_EQ(table.ColumnName(2), "c\\d");
  EXPECT_EQ(table.ColumnName(3), "e\\xf");
  EXPECT_EQ(table.ColumnName(4), "g\\");
  EXPECT_EQ(table.ColumnIndex("ID"), 0);
  EXPECT_EQ(table.ColumnIndex("id"), 5);
  EXPECT_EQ(Load("A;B").ColumnCount(), 1);
}

TEST(CardTable, KeepsItsWholeContentUnderAnySeparator) {
  const std::string fields[] = {"n", "\\", ";", "N;\\n", "\n", "\x0F\n\\", "", "x\ry"};
  for (int byte = 0; byte < 256; ++byte) {
    const char separator = static_cast<char>(byte);
    // What reads a backslash or a line feed before it, or loses a carriage return at the end, cannot be read back.
    if (separator == '\\' || separator == '\n' || separator == 'n' || separator == 'N' || separator == '\r') continue;
    CardTable table;
    table.SetSeparator(separator);
    const std::string name(1, separator == 'a' ? 'b' : 'a');
    table.AddColumn(name);
    table.AddColumn(name);
    for (const std::string& field : fields) {
      table.AppendRow();
      table.Last();
      table.SetField(1, field);
      table.SetField(2, field);
    }
    const std::string before = Dump(table);
    CardTable again = Load(Saved(table), separator);
    EXPECT_EQ(Dump(again), before) << byte;
  }
}

TEST(CardTable, RowsOfAllLengthsSurviveReadingInPieces) {
  std::string text = "A;B;C\n";
  for (const size_t length : {0, 1, 63, 64, 65, 4095, 4096, 65535, 65536}) {
    text += std::string(length, 'x') + ";" + std::string(length / 2, 'y') + "\\n;z\n";
    text += "k;" + std::string(length, 'v') + ";" + std::string(length, 'w') + "\n";
  }
  for (const size_t piece : {7, 4096, 5000, 1 << 20}) {
    TableTwins twins(';');
    // A file that tells less than it has, or more, is read to its end.
    EXPECT_TRUE(twins.Load(text, piece, piece % 2 == 0 ? 10 : text.size() * 2)) << piece;
    EXPECT_TRUE(twins.SameFile()) << piece;
  }
}

TEST(CardTable, AnswersAsThePlainModelOverRandomWork) {
  const std::string start = "A;B;C\n1;a;x\n2;b\\;;y\n\n4;d;z;too much\n5;e\\n;v\n";
  for (uint32_t seed = 0; seed < 100; ++seed) {
    std::mt19937 random(seed);
    TableTwins twins(';');
    ASSERT_TRUE(twins.Load(seed % 3 == 0 ? "" : start, 100, start.size()));
    for (int i = 0; i < 150; ++i) {
      const auto operation = static_cast<uint8_t>(random() % 18);
      // Small row numbers, so that rows are hit.
      const auto argument = static_cast<uint8_t>(random() % (i % 2 == 0 ? 12 : 256));
      ASSERT_TRUE(twins.Do(operation, argument)) << "seed " << seed << " step " << i << " operation " << +operation;
      ASSERT_TRUE(i % 10 != 0 || twins.SameContent()) << "seed " << seed << " step " << i;
    }
    ASSERT_TRUE(twins.SameFile()) << seed;
  }
}

TEST(CardTable, ManyInsertedAndDeletedRowsKeepTheirOrder) {
  std::string text = "A\n";
  std::vector<int> expected;
  for (int i = 0; i < 5000; ++i) {
    text += std::to_string(i) + "\n";
    expected.push_back(i);
  }
  CardTable table = Load(text);
  std::mt19937 random(7);
  for (int i = 0; i < 8000; ++i) {
    const int row = 1 + static_cast<int>(random() % static_cast<uint32_t>(table.RowCount()));
    table.GoTo(row);
    if (i % 3 == 0) {
      table.DeleteRow();
      expected.erase(expected.begin() + row - 1);
    } else {
      // Now here and there, now all at one place.
      table.GoTo(i < 4000 ? row : 3000);
      expected.insert(expected.begin() + table.CurrentRow() - 1, -i);
      table.InsertRow(false);
      table.SetField(1, std::to_string(-i));
    }
  }
  ASSERT_EQ(table.RowCount(), static_cast<int>(expected.size()));
  for (int row = 1; row <= table.RowCount(); ++row) {
    ASSERT_EQ(table.Peek(1, row), std::to_string(expected[static_cast<size_t>(row) - 1]));
  }
}

TEST(CardTable, UnchangedRowsAreRewrittenWhenTheFormChanges) {
  CardTable table = Load("A;B\n1;x,y\n2;z\n");
  table.SetSeparator(',');
  EXPECT_EQ(Saved(table), "A,B\n1,x\\,y\n2,z\n");
  table.SetSeparator(';');
  table.AddColumn("C");
  table.Poke(3, 2, "c");
  EXPECT_EQ(Saved(table), "A;B;C\n1;x,y;\n2;z;c\n");
}

TEST(CardTable, CountsCharactersReadAndFieldsWritten) {
  CountingBar bar;
  Progress() = {.counter = 0, .display = true, .bar = &bar};
  CardTable table = Load("A;B\r\n1;2\r\nx\\\r\ny;z\r\nq");
  EXPECT_EQ(bar.positions, (std::vector<int64_t>{4, 8, 15, 16}));
  bar.positions.clear();
  Progress().counter = 0;
  Progress().display = false;
  (void)Saved(table);
  EXPECT_EQ(bar.positions, (std::vector<int64_t>{2, 4, 6, 8}));
  (void)Load("A;B\n1;2\n");
  EXPECT_EQ(bar.positions.size(), 4U);
  EXPECT_EQ(Progress().counter, 16);
  Progress() = {};
}

TEST(CardTable, TakesItsNameFromThePath) {
  const std::pair<const char*, const char*> cases[] = {{"C:\\decks\\Latein.mlb", "Latein"},
                                                       {"/home/x/Latein.mlb", "Latein"},
                                                       {"C:Latein.a.mlb", "Latein.a"},
                                                       {"Latein", "Latein"},
                                                       {"C:\\my.decks\\Latein", "my"},
                                                       {"/a/.mlb", ""},
                                                       {"", ""},
                                                       {"D:\\decks\\Latein", "Latein"}};
  for (const auto& [path, name] : cases) {
    CardTable table;
    table.SetNameFromPath(path);
    EXPECT_EQ(table.TableName(), name) << path;
  }
}

TEST(CardTable, ClearKeepsSeparatorNameAndSpareRows) {
  CardTable table = Load("A|B\r\n1|2\r\n", '|');
  table.SetNameFromPath("x.mlb");
  table.SaveRow(0);
  table.Clear();
  EXPECT_TRUE(table.Bof() && table.Eof());
  EXPECT_EQ(table.CurrentRow(), 0);
  EXPECT_EQ(table.TableName(), "x");
  EXPECT_FALSE(table.InsertRow(true));
  EXPECT_FALSE(table.DeleteRow());
  table.AddColumn("C");
  EXPECT_TRUE(table.SetColumnType("C", "LONG"));
  EXPECT_FALSE(table.SetColumnType("A", "LONG"));
  table.AppendRow();
  EXPECT_FALSE(table.SetField(1, "no cursor row"));
  table.Last();
  EXPECT_TRUE(table.RestoreRow(0));
  EXPECT_EQ(table.Field(2), "2");
  EXPECT_EQ(Saved(table), "C\n1\n");
}

TEST_F(CardTableFile, LoadsAndSavesFilesAndSurvivesFailures) {
  const fs::path path = folder_ / "Deck.mlb";
  std::ofstream(path, std::ios::binary) << "A;B\r\n1;2\r\n";
  CardTable table;
  ASSERT_TRUE(table.LoadFromFile(path));
  EXPECT_EQ(table.TableName(), "Deck");
  for (const fs::path& bad : {folder_ / "none.mlb", folder_, fs::path("/proc/self/mem")}) {
    EXPECT_FALSE(table.LoadFromFile(bad)) << bad;
    EXPECT_EQ(table.TableName(), "Deck");
    EXPECT_EQ(Dump(table), "[1|2]");
  }
  table.SetField(2, "new");
  table.GoTo(7);
  for (const fs::path& bad : {folder_, folder_ / "none" / "x.mlb", fs::path("/dev/full")}) {
    EXPECT_FALSE(table.SaveToFile(bad)) << bad;
    EXPECT_TRUE(table.Eof());
  }
  ASSERT_TRUE(table.SaveToFile(path));
  EXPECT_FALSE(table.Eof());
  EXPECT_EQ(FileText(path), "A;B\r\n1;new\r\n");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 1) << "nothing is left beside the file";
}

TEST_F(CardTableFile, ASaveKeepsLinkAndRights) {
  const fs::path path = folder_ / "deck.mlb";
  const fs::path link = folder_ / "link.mlb";
  std::ofstream(path) << "old";
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink(path, link);
  CardTable table = Load("A\n1\n");
  ASSERT_TRUE(table.SaveToFile(link));
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(FileText(path), "A\n1\n");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

// Larger than what is read with help of a second thread, which the small files of the other tests never start.
TEST_F(CardTableFile, ReadsALargeFileWhole) {
  const fs::path path = folder_ / "large.mlb";
  std::string text = "ID;Text\n";
  const std::string line = ";" + std::string(3990, 't') + "\\\\\n";
  constexpr int kRows = 4'500;
  for (int i = 1; i <= kRows; ++i) text += std::to_string(100'000 + i) + line;
  std::ofstream(path, std::ios::binary) << text;
  CardTable table;
  ASSERT_TRUE(table.LoadFromFile(path));
  ASSERT_EQ(table.RowCount(), kRows);
  for (int row = 1; row <= kRows; ++row) ASSERT_EQ(table.Peek(1, row), std::to_string(100'000 + row));
  table.Poke(2, kRows / 2, table.Peek(2, 1));
  ASSERT_TRUE(table.SaveToFile(path));
  EXPECT_TRUE(FileText(path) == text);
}

}  // namespace
}  // namespace tessaro
