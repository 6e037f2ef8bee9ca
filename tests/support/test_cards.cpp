#include "tests/support/test_cards.h"

#include <sstream>

namespace tessaro {

CardTable MakeCards(const std::vector<TestCard>& cards) {
  CardTable table;
  table.SetSeparator(kFieldSeparator);
  for (const std::string_view name : kCardColumns) table.AddColumn(name);
  const auto add = [&](const std::vector<std::string_view>& fields) {
    table.AppendRow();
    for (size_t i = 0; i < fields.size(); ++i) table.Poke(static_cast<int>(i) + 1, table.RowCount(), fields[i]);
  };
  add({kStartMark});
  for (const TestCard& card : cards) {
    add({card.id, card.topic, card.question, card.answer, card.score, card.time_learned, card.yes_no_row,
         card.time_row});
  }
  add({kEndMark});
  table.First();
  return table;
}

std::string FileText(CardTable& table) {
  MemoryDisk disk;
  const std::unique_ptr<WritableFile> file = disk.Create("table");
  EXPECT_TRUE(table.SaveTo(*file));
  return disk.Content("table").value_or("");
}

std::string FileText(const std::vector<TestCard>& cards) {
  CardTable table = MakeCards(cards);
  return FileText(table);
}

std::string WithBars(std::string text) {
  std::replace(text.begin(), text.end(), kFieldSeparator, '|');
  return text;
}

std::string With(std::string text, const std::pair<std::string_view, std::string_view>& change) {
  const size_t at = text.find(change.first);
  EXPECT_NE(at, std::string::npos) << change.first;
  return text.replace(at, change.first.size(), change.second);
}

CardTable TableOf(const std::string& text, char separator) {
  MemoryDisk disk;
  disk.Put("table", text);
  CardTable table;
  table.SetSeparator(separator);
  EXPECT_TRUE(table.LoadFrom(*disk.Open("table")));
  return table;
}

void OpenTestFile(MemoryDisk& disk, CardFile& file, const std::vector<TestCard>& cards) {
  disk.Put(kTestFile, FileText(cards));
  ASSERT_EQ(file.Open(kTestFile).result, OpenResult::Opened);
}

template <typename Index>
std::vector<std::string> SortedLines(const Index& index, const CardTable& cards) {
  MemoryDisk disk;
  EXPECT_TRUE(index.SaveTo(*disk.Create("index"), cards));
  std::vector<std::string> lines;
  std::istringstream text(disk.Content("index").value_or(""));
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  std::sort(lines.begin(), lines.end());
  return lines;
}

void ExpectIndexesFit(CardFile& file) {
  const CardTable& cards = file.cards();
  const LearnIndex& learn = file.learn_index();
  LearnIndex built;
  LinkIndex links;
  ASSERT_TRUE(built.Build(cards) && links.Build(cards));
  EXPECT_EQ(SortedLines(learn, cards), SortedLines(built, cards));
  EXPECT_EQ(SortedLines(file.link_index(), cards), SortedLines(links, cards));
  for (int row = 2; row + 1 < learn.RowCount(); ++row) ASSERT_LE(learn.Score(row), learn.Score(row + 1));
  for (int row = kFirstCardRow; row <= file.CardCount() + 1; ++row) {
    ASSERT_EQ(learn.RowOfCard(row) != 0, built.RowOfCard(row) != 0);
    ASSERT_TRUE(learn.RowOfCard(row) == 0 || learn.BoxPos(learn.RowOfCard(row)) == row);
    const int64_t id = LeadingNumber(cards.Peek(1, row));
    const int found = file.link_index().RowOfId(id);
    ASSERT_EQ(found != 0, id != 0 && id <= 999999);
    ASSERT_TRUE(found == 0 || LeadingNumber(cards.Peek(1, found)) == id);
  }
}

void SetScore(CardFile& file, int row, int64_t score) {
  file.cards().Poke(file.columns().score, row, std::to_string(score));
  file.learn_index().Update(row, score);
  file.RowChanged(row, std::array{file.columns().score});
}

}  // namespace tessaro
