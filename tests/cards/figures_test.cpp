#include "cards/figures.h"

#include <gtest/gtest.h>

#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

constexpr int64_t kNow = 1'000'000;

TEST(CardFigures, CountCardsByTheirHistory) {
  const std::string known = "w" + std::string(kHistoryLength - 1, 'f');
  const std::string nines(20, '9');
  const struct {
    const char* what;
    TestCard card;
    std::string figures;  // what this card is counted as
    int score_zero = 0;   // and whether it is unknown by its score alone
  } cases[] = {
      {"never answered", {.time_row = "0 0"}, "learnable new"},
      {"no history at all", {.yes_no_row = "", .time_row = ""}, "learnable new"},
      {"not known", {.score = "000000000", .time_row = "900 800"}, "learnable unknown", 1},
      {"not known, taken back", {.score = "1", .time_row = "900"}, "learnable unknown"},
      {"known, no score", {.score = "", .yes_no_row = known, .time_row = "900"}, "learnable unknown", 1},
      {"known for long",
       {.score = "000500000", .yes_no_row = known, .time_row = "900000 1"},
       "learnable known in 900001"},
      {"due just now", {.score = "000050001", .yes_no_row = known, .time_row = "899998"}, "learnable known in 1"},
      {"due a second ago", {.score = "000050001", .yes_no_row = known, .time_row = "899997"}, "learnable known due"},
      {"beyond the maximum",
       {.score = "000999999", .yes_no_row = known, .time_row = "599999"},
       "learnable known due in 1599998"},
      {"broken numbers",
       {.score = nines, .yes_no_row = known, .time_row = nines},
       "learnable known in 9223372036853775808"},
      {"navigation", {.question = "<navigation>", .score = "0"}, ""},
      {"superfluous variant", {.answer = "x<+++>", .score = "0"}, ""},
      {"marked ID", {.id = "00#001", .score = "0"}, ""},
  };
  for (const auto& c : cases) {
    MemoryDisk disk;
    CardFile file(disk);
    OpenTestFile(disk, file, {c.card});
    const CardFigures got = FiguresOf(file, {.retention_weight = 2.0, .max_time = 400000}, kNow);
    EXPECT_EQ(got.cards, 1) << c.what;
    std::string figures = got.learnable == 1 ? "learnable" : "";
    if (got.never_answered == 1) figures += " new";
    if (got.known == 1) figures += " known";
    if (got.unknown == 1) figures += " unknown";
    if (got.due == 1) figures += " due";
    if (got.next_due_in) figures += " in " + std::to_string(*got.next_due_in);
    EXPECT_EQ(figures, c.figures) << c.what;
    EXPECT_EQ(CountUnknown(file), c.score_zero) << c.what;
  }
}

// Large files are counted by two threads.
TEST(CardFigures, AddUpOverALargeFile) {
  constexpr int kCards = 60'000;
  std::vector<TestCard> cards(kCards, {.score = "000500000", .yes_no_row = "wff", .time_row = "900000 1"});
  cards.front().time_row = "899000 1";
  cards[kCards / 3] = {.question = "<navigation>"};
  cards[kCards / 2].score = "000000000";
  cards[kCards - 2] = {};
  cards.back().score = "000000001";
  MemoryDisk disk;
  CardFile file(disk);
  OpenTestFile(disk, file, cards);
  const LearningParameters parameters = {.retention_weight = 2.0};
  const CardFigures got = FiguresOf(file, parameters, kNow);
  EXPECT_EQ(
      std::vector({got.cards, got.navigation, got.learnable, got.never_answered, got.known, got.unknown, got.due}),
      std::vector<int64_t>({kCards, 1, kCards - 1, 1, kCards - 3, 1, 1}));
  EXPECT_EQ(got.next_due_in, 899'001);
}

}  // namespace
}  // namespace tessaro
