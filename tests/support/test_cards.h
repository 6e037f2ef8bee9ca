#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "store/file/card_file.h"
#include "store/table/card_columns.h"
#include "store/table/card_table.h"
#include "tests/support/memory_disk.h"

namespace tessaro {

// A card of a test; what it does not say is that of a new card.
struct TestCard {
  std::string id = "000001";
  std::string question = "Frage";
  std::string answer = "Antwort";
  std::string score = "000000001";
  std::string yes_no_row = std::string(kHistoryLength, 'f');
  std::string time_row = "0";
  std::string topic = "00";
  std::string time_learned = "0";
};

// A card table of these cards in their frame.
inline CardTable MakeCards(const std::vector<TestCard>& cards) {
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

// What a table looks like on disk.
inline std::string FileText(CardTable& table) {
  MemoryDisk disk;
  const std::unique_ptr<WritableFile> file = disk.Create("table");
  EXPECT_TRUE(table.SaveTo(*file));
  return disk.Content("table").value_or("");
}

inline std::string FileText(const std::vector<TestCard>& cards) {
  CardTable table = MakeCards(cards);
  return FileText(table);
}

// The text with "|" for the separator of fields.
inline std::string WithBars(std::string text) {
  std::replace(text.begin(), text.end(), kFieldSeparator, '|');
  return text;
}

// The text with the first part of the pair replaced by the second.
inline std::string With(std::string text, const std::pair<std::string_view, std::string_view>& change) {
  const size_t at = text.find(change.first);
  EXPECT_NE(at, std::string::npos) << change.first;
  return text.replace(at, change.first.size(), change.second);
}

// Reads a table file.
inline CardTable TableOf(const std::string& text, char separator = kFieldSeparator) {
  MemoryDisk disk;
  disk.Put("table", text);
  CardTable table;
  table.SetSeparator(separator);
  EXPECT_TRUE(table.LoadFrom(*disk.Open("table")));
  return table;
}

inline constexpr const char* kTestFile = "/deck/x.mlb";

// Puts the cards on the disk under kTestFile and opens them.
inline void OpenTestFile(MemoryDisk& disk, CardFile& file, const std::vector<TestCard>& cards) {
  disk.Put(kTestFile, FileText(cards));
  ASSERT_EQ(file.Open(kTestFile).result, OpenResult::Opened);
}

// Gives a card a score, as an answer does.
inline void SetScore(CardFile& file, int row, int64_t score) {
  file.cards().Poke(file.columns().score, row, std::to_string(score));
  file.learn_index().Update(row, score);
  file.RowChanged(row, std::array{file.columns().score});
}

}  // namespace tessaro
