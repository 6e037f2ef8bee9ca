#pragma once

#include <functional>

#include "learn/learning_run.h"
#include "tests/support/clock_and_chance.h"
#include "tests/support/test_cards.h"
#include "tests/support/times.h"

namespace tessaro {

// The first letters, the rest "f".
inline std::string Letters(std::string first) {
  return first.append(kHistoryLength - first.size(), 'f');
}

// A card that was never answered, one last answered wrong, and one known `ago` seconds before kNow.
inline TestCard NewCard(int number) {
  return {.id = IdText(number)};
}
inline TestCard WrongCard(int number, int64_t ago = 100) {
  return {.id = IdText(number), .score = "000000000", .time_row = std::to_string(kNow - ago) + " "};
}
inline TestCard KnownCard(int number, int64_t score, int64_t ago) {
  return {.id = IdText(number),
          .score = std::to_string(score),
          .yes_no_row = Letters("w"),
          .time_row = std::to_string(kNow - ago) + " "};
}
inline TestCard NavigationCard(int number, const std::string& question = "<navigation>") {
  return {.id = IdText(number), .question = question, .score = "000000000"};
}

// That many such cards, numbered from 1 on.
inline std::vector<TestCard> Numbered(int count, const std::function<TestCard(int)>& card) {
  std::vector<TestCard> cards;
  for (int number = 1; number <= count; ++number) cards.push_back(card(number));
  return cards;
}
inline TestCard With(TestCard card, std::string TestCard::*field, const std::string& value) {
  card.*field = value;
  return card;
}

// What commands to a run came to, one after the other.
struct Told {
  void operator+=(const StepResult& result) {
    events.insert(events.end(), result.events.begin(), result.events.end());
    boxes_done += result.box_done ? 1 : 0;
    ends += result.run_ended ? 1 : 0;
  }

  std::vector<RunEvent> events;
  int boxes_done = 0;
  int ends = 0;
};

// A card file in memory, and a run over it with a scripted clock and scripted chance.
class LearnTest : public ::testing::Test {
 protected:
  void Open(const std::vector<TestCard>& cards) {
    OpenTestFile(disk, file, cards);
    ASSERT_TRUE(file.RebuildIndexes());
    run = std::make_unique<LearningRun>(file, settings, clock, random);
  }
  std::string Field(int row, int column) const { return std::string(file.cards().Peek(column, row)); }
  std::string Score(int row) const { return Field(row, file.columns().score); }
  std::string YesNoRow(int row) const { return Field(row, file.columns().yes_no_row); }
  std::string TimeRow(int row) const { return Field(row, file.columns().time_row); }
  std::string Topic(int row) const { return Field(row, file.columns().topic); }

  MemoryDisk disk;
  CardFile file{disk};
  IniFile settings;
  FixedClock clock;
  ScriptedRandom random;
  Told told;
  std::unique_ptr<LearningRun> run;
};

}  // namespace tessaro
