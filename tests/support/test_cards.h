#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <utility>
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
CardTable MakeCards(const std::vector<TestCard>& cards);

// What a table looks like on disk.
std::string FileText(CardTable& table);
std::string FileText(const std::vector<TestCard>& cards);

// The text with "|" for the separator of fields.
std::string WithBars(std::string text);

// The text with the first part of the pair replaced by the second.
std::string With(std::string text, const std::pair<std::string_view, std::string_view>& change);

// Reads a table file.
CardTable TableOf(const std::string& text, char separator = kFieldSeparator);

inline constexpr const char* kTestFile = "/deck/x.mlb";

// Puts the cards on the disk under kTestFile and opens them.
void OpenTestFile(MemoryDisk& disk, CardFile& file, const std::vector<TestCard>& cards);

// Both indexes are what a rebuild would make of the cards, the order among equal scores aside, and find each card.
void ExpectIndexesFit(CardFile& file);

// Gives a card a score, as an answer does.
void SetScore(CardFile& file, int row, int64_t score);

}  // namespace tessaro
