#include <cstdio>
#include <cstdlib>

#include "bench/generated_cards.h"

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: generate_cards FILE CARDS [SEED [LINE_FEEDS]]\n");
    return 2;
  }
  const int count = std::atoi(argv[2]);
  const int seed = argc > 3 ? std::atoi(argv[3]) : 1;
  const int line_feeds = argc > 4 ? std::atoi(argv[4]) : tessaro::kFewLineFeeds;
  if (count < 1 || count > tessaro::kMostCards) {
    std::fprintf(stderr, "a card file holds 1 to %d cards\n", tessaro::kMostCards);
    return 2;
  }
  return tessaro::GenerateCards(argv[1], count, static_cast<uint32_t>(seed), line_feeds) ? 0 : 1;
}
