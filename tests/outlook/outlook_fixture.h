#pragma once

#include "outlook/deck_outlook.h"
#include "tests/support/clock_and_chance.h"
#include "tests/support/test_cards.h"
#include "tests/support/times.h"

namespace tessaro {

struct TestAnswer {
  int64_t time;
  char letter;
};

// The card that these answers leave, the oldest first.
inline TestCard CardWith(const std::vector<TestAnswer>& answers, int64_t score = 1, int64_t seconds = 0) {
  TestCard card;
  card.yes_no_row.clear();
  card.time_row.clear();
  for (auto answer = answers.rbegin(); answer != answers.rend(); ++answer) {
    card.yes_no_row += answer->letter;
    card.time_row += std::to_string(answer->time) + " ";
  }
  card.yes_no_row.resize(kHistoryLength, 'f');
  for (size_t i = answers.size(); i < kHistoryLength; ++i) card.time_row += "0 ";
  card.score = std::to_string(score);
  card.time_learned = std::to_string(seconds);
  return card;
}

template <typename Work>
auto Finish(Work work, int count = 7) {
  while (work.Step(count)) {
  }
  return work.Take();
}

class OutlookTest : public testing::Test {
 protected:
  void Open(const std::vector<TestCard>& cards) { OpenTestFile(disk, file, cards); }
  DeckOutlook Read(int64_t now = kNow) { return Finish(OutlookReading(file, now, days)); }

  MemoryDisk disk;
  CardFile file{disk};
  LocalDays days;
};

// A deck of random histories whose letters are drawn from these weights. The same seed gives the same deck.
inline std::vector<TestCard> DrawDeck(uint32_t seed, int cards, int answers, const RecallWeights& weights,
                                      int64_t now = kNow) {
  std::mt19937 generator(seed);
  const auto share = [&] { return static_cast<double>(generator()) / 4294967296.0; };
  std::vector<TestCard> deck;
  for (int i = 0; i < cards; ++i) {
    std::vector<TestAnswer> history;
    MemoryTrace trace;
    int64_t time = now - 400 * kDay + static_cast<int64_t>(share() * 30.0 * kDay);
    for (int k = 0; k < answers; ++k) {
      const bool known = share() < (k == 0 ? 0.8 : RecallAt(trace, weights, time));
      history.push_back({time, known ? 'w' : 'f'});
      FollowAnswer(trace, {time, known});
      time += static_cast<int64_t>(share() < 0.3 ? 600 * share() : 30.0 * kDay * share() * share()) + 1;
    }
    deck.push_back(CardWith(history));
  }
  return deck;
}

}  // namespace tessaro
