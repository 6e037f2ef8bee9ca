#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

namespace tessaro {

// The most cards that a card file can hold.
inline constexpr int kMostCards = 999990;

// Writes a card file such as years of learning leave behind: texts with markup, umlauts and line feeds, histories of
// all lengths, 6 % of the cards not known (score 0) and 18 % known once (score 1). About 320 bytes a card. The same
// count and seed always give the same bytes. `line_feeds`: the percentage of sides that go on in another line;
// with many of them some go on in a third.
inline constexpr int kFewLineFeeds = 5;
inline constexpr int kManyLineFeeds = 50;
[[nodiscard]] bool GenerateCards(const std::filesystem::path& path, int count, uint32_t seed,
                                 int line_feeds = kFewLineFeeds);

// Measures a copy of the card file `given`, or when that is null generated files of 10,000, 100,000 and `most` cards.
// Each lies in a new folder, which goes when the measuring is done: nothing is left beside anybody's own files.
void MeasureCardFiles(
    const char* given,
    const std::function<void(const std::filesystem::path& path, const std::filesystem::path& folder)>& measure,
    int most = kMostCards);

}  // namespace tessaro
