#include "store/backup_generations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "store/card_text_count.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

constexpr const char* kFolder = "/backups";
constexpr LocalTime kMonday = {2026, 3, 30, 8, 0, 0};  // the day after the clocks went forward

// That many days later, over the ends of months and years.
LocalTime After(LocalTime time, int days) {
  for (; days > 0; --days) {
    const bool leap = time.year % 4 == 0;
    const int lengths[] = {31, leap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (++time.day <= lengths[time.month - 1]) continue;
    time.day = 1;
    if (++time.month > 12) time = {time.year + 1, 1, 1, time.hour, time.minute, time.second};
  }
  return time;
}

// Which saves are kept, as their days after kMonday, for saves on these days in this order.
std::multiset<int> DaysKept(const std::vector<int>& days) {
  std::vector<LocalTime> newest_first;
  for (size_t i = days.size(); i-- > 0;) newest_first.push_back(After(kMonday, days[i]));
  const std::vector<bool> keep = GenerationsToKeep(newest_first);
  std::multiset<int> kept;
  for (size_t i = 0; i < keep.size(); ++i) {
    if (keep[i]) kept.insert(days[days.size() - 1 - i]);
  }
  return kept;
}

std::vector<int> Daily(int count) {
  std::vector<int> days;
  for (int day = 0; day < count; ++day) days.push_back(day);
  return days;
}
std::vector<int> operator+(std::vector<int> days, const std::vector<int>& more) {
  days.insert(days.end(), more.begin(), more.end());
  return days;
}

TEST(GenerationsToKeep, KeepsTheLastSavesDaysAndWeeks) {
  const std::vector<int> many_on_100(30, 100);
  struct Case {
    const char* what;
    std::vector<int> saves;
    std::multiset<int> kept;
  };
  const Case cases[] = {
      {"none", {}, {}},
      {"few", {0, 0, 5}, {0, 0, 5}},
      {"many on one day", many_on_100, std::multiset<int>(many_on_100.begin(), many_on_100.begin() + 10)},
      {"daily: ten saves that are ten days, and the Sundays of the ten weeks",
       Daily(100),
       {41, 48, 55, 62, 69, 76, 83, 90, 91, 92, 93, 94, 95, 96, 97, 98, 99}},
      {"a day of many saves does not push the days before it out",
       Daily(12) + std::vector<int>(20, 12),
       {3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12}},
      {"a pause of years costs nothing", {0, 7, 14, 2000}, {0, 7, 14, 2000}},
      {"the clock was years ahead for one save",
       Daily(12) + std::vector<int>{4000} + std::vector<int>(10, 12),
       {4, 5, 6, 7, 8, 9, 10, 11, 12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 4000}},
      {"the clock was set back: the order of the saves counts",
       std::vector<int>(11, 50) + std::vector<int>(11, 2),
       {2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 50}},
  };
  for (const Case& c : cases) EXPECT_EQ(DaysKept(c.saves), c.kept) << c.what;
}

TEST(GenerationsToKeep, TheHourThatComesTwiceIsOneDay) {
  // Saved at 2:50 summer time, then at 2:10 winter time, with ten more saves behind them.
  std::vector<LocalTime> saves(10, LocalTime{2026, 10, 26, 9, 0, 0});
  saves.insert(saves.end(), {{2026, 10, 25, 2, 10, 0}, {2026, 10, 25, 2, 50, 0}});
  std::vector<bool> expected(10, true);
  expected.insert(expected.end(), {true, false});
  EXPECT_EQ(GenerationsToKeep(saves), expected);
}

TEST(GenerationName, IsReadBackAndNothingElseIs) {
  const GenerationName name = {"Nr 1 Karten 3f09c1d2a4b5", {2026, 2, 28, 7, 13, 52}, 12, 1000000};
  const std::string text = "Nr 1 Karten 3f09c1d2a4b5 2026-02-28 07.13.52 Nr 12 Karten 1000000.ml~";
  EXPECT_EQ(FileNameOf(name), text);
  EXPECT_EQ(ReadGenerationName(text), name);
  const char* foreign[] = {
      "",
      ".ml~",
      "x.ml~",
      "x 3f09c1d2a4b5.neu",
      "x 3f09c1d2a4b5 2026-02-28 07.13.52 Nr 12 Karten 3.mlb",
      "x 3f09c1d2a4b5 2026-02-28 07.13.52 Nr 12 Karten 3 (Kopie).ml~",
      "x 3f09c1d2a4b5 2026-02-28 07.13.52 Nr 012 Karten 3.ml~",
      "x 3f09c1d2a4b5 2026-02-28 07.13.52 Nr 0 Karten 3.ml~",
      "x 3f09c1d2a4b5 2026-02-28 07.13.52 Nr -2 Karten 3.ml~",
      "x 3f09c1d2a4b5 2026-02-30 07.13.52 Nr 12 Karten 3.ml~",
      "x 3f09c1d2a4b5 2026-02-28 24.13.52 Nr 12 Karten 3.ml~",
      "x 3f09c1d2a4bX 2026-02-28 07.13.52 Nr 12 Karten 3.ml~",
      "3f09c1d2a4b5 2026-02-28 07.13.52 Nr 99999999999999999999 Karten 3.ml~",
  };
  for (const char* other : foreign) EXPECT_EQ(ReadGenerationName(other), std::nullopt) << other;
}

TEST(CardTextCount, CountsTheSameHoweverTheTextIsCut) {
  const std::string cards = FileText(*std::make_unique<CardTable>(MakeCards({{.id = "000001"}, {.id = "000002"}})));
  const std::string other_order =
      "Question\x0FID\nx\x0F@@\n##\\\x0F\x0F"
      "1\n\x0F##\r\n";
  struct Case {
    std::string text;
    int64_t rows;
    bool end_row;
  };
  const Case cases[] = {
      {cards, 4, true},
      {cards.substr(0, cards.size() - 1), 3, false},
      {cards.substr(0, cards.rfind("##")), 3, false},
      {other_order, 3, true},
      {"", 0, false},
      {"ID\n", 0, false},
      {"Name\n##\n", 1, false},
  };
  for (const Case& c : cases) {
    for (const size_t piece : {size_t{1}, size_t{3}, c.text.size() + 1}) {
      CardTextCount count;
      for (size_t at = 0; at < c.text.size(); at += piece) count.Add(std::string_view(c.text).substr(at, piece));
      EXPECT_EQ(count.rows(), c.rows) << c.text;
      EXPECT_EQ(count.HasEndRow(), c.end_row) << c.text;
    }
  }
}

class Generations : public testing::Test {
 protected:
  // Writes a card file with this many cards, as a save does.
  SavedCards Save(const std::string& path, int cards) {
    CardTable table = MakeCards(std::vector<TestCard>(static_cast<size_t>(cards), {.id = "000001"}));
    disk.Put(path, FileText(table));
    return {path, *disk.State(path), *StampOf(disk, path), cards};
  }
  GenerationResult Add(const std::string& path, int cards, int day = 0) {
    return folder.Add(Save(path, cards), After(kMonday, day), settings);
  }
  // The numbers of cards in the copies of a file, the newest first; each is whole.
  std::vector<int64_t> Kept(const std::string& path) {
    std::vector<int64_t> cards;
    for (const Generation& generation : folder.Of(path)) {
      cards.push_back(generation.name.cards);
      EXPECT_EQ(CountCardsIn(disk, generation.path), generation.name.cards);
    }
    return cards;
  }

  MemoryDisk disk;
  GenerationFolder folder{disk, kFolder};
  GenerationSettings settings;
};

TEST_F(Generations, AreKeptApartByThePathAndThinnedOut) {
  for (int i = 1; i <= 14; ++i) EXPECT_EQ(Add("/a/x.mlb", i), GenerationResult::Made);
  EXPECT_EQ(Add("/b/x.mlb", 99), GenerationResult::Made);
  EXPECT_EQ(Kept("/a/x.mlb"), (std::vector<int64_t>{14, 13, 12, 11, 10, 9, 8, 7, 6, 5}));
  EXPECT_EQ(Kept("/b/x.mlb"), (std::vector<int64_t>{99}));
  EXPECT_EQ(Kept("/c/x.mlb"), (std::vector<int64_t>{}));
  EXPECT_EQ(folder.Of("/b/x.mlb").front().name.saved, kMonday);
}

TEST_F(Generations, TogetherTakeNoMoreThanTheSettingButTheNewestOfEachFileStays) {
  const std::string foreign = std::string(kFolder) + "/x 2019.ml~";
  disk.Put(foreign, std::string(3'000'000, 'x'));
  settings.most_mb = 1;
  for (int day = 0; day < 5; ++day) {
    EXPECT_EQ(Add("/a/x.mlb", 2500, day), GenerationResult::Made);  // 0.25 MB and more
    EXPECT_EQ(Add("/a/y.mlb", 100, day), GenerationResult::Made);
  }
  EXPECT_EQ(Kept("/a/x.mlb").size(), 3U);
  EXPECT_GE(Kept("/a/y.mlb").size(), 3U);
  settings.most_mb = 0;
  EXPECT_EQ(Add("/a/y.mlb", 100, 6), GenerationResult::Made);
  EXPECT_EQ(Kept("/a/x.mlb").size(), 1U);
  EXPECT_EQ(Kept("/a/y.mlb").size(), 1U);
  EXPECT_TRUE(disk.Exists(foreign)) << "what is not ours is never deleted";
}

TEST_F(Generations, CountsOnlyWhatReadsBackAsItWasSaved) {
  EXPECT_EQ(Add("/a/x.mlb", 5), GenerationResult::Made);
  SavedCards wrong_count = Save("/a/x.mlb", 6);
  wrong_count.cards = 7;
  EXPECT_EQ(folder.Add(wrong_count, kMonday, settings), GenerationResult::Failed);
  SavedCards misread = Save("/a/x.mlb", 6);
  misread.stamp.hash ^= 1U;
  EXPECT_EQ(folder.Add(misread, kMonday, settings), GenerationResult::Failed);
  const SavedCards overtaken = Save("/a/x.mlb", 6);
  Save("/a/x.mlb", 8);
  EXPECT_EQ(folder.Add(overtaken, kMonday, settings), GenerationResult::Overtaken);
  disk.set_capacity(1000);
  EXPECT_EQ(Add("/a/x.mlb", 9), GenerationResult::NoRoom);
  EXPECT_EQ(Kept("/a/x.mlb"), (std::vector<int64_t>{5}));
  EXPECT_EQ(disk.FileNames(kFolder).size(), 1U) << "nothing half-done is left";
}

// Whatever operation fails, and however: the copies that were there are there and whole, but for the one whose time
// has come, and the saved file is untouched.
TEST_F(Generations, AreNotLostByAFailingDisk) {
  using enum MemoryDisk::WriteFault;
  std::set<GenerationResult> results;
  for (const MemoryDisk::WriteFault fault : {Nothing, Half, HalfUnnoticed}) {
    for (const bool stays : {false, true}) {
      int n = 1;
      for (bool reached = true; reached; ++n) {
        disk = MemoryDisk();
        for (int i = 1; i <= 10; ++i) ASSERT_EQ(Add("/a/x.mlb", i), GenerationResult::Made);
        const SavedCards saved = Save("/a/x.mlb", 11);
        const std::optional<std::string> text = disk.Content("/a/x.mlb");
        disk.stay_broken(stays);
        disk.FailAt(n, fault);
        const GenerationResult result = folder.Add(saved, kMonday, settings);
        reached = disk.operations() >= n;
        disk.FailAt(0);
        results.insert(result);
        EXPECT_EQ(disk.Content("/a/x.mlb"), text);
        std::vector<int64_t> kept = Kept("/a/x.mlb");
        EXPECT_EQ(result == GenerationResult::Made, kept.front() == 11) << n;
        if (kept.front() == 11) kept.erase(kept.begin());
        if (kept.size() == 10) kept.pop_back();
        EXPECT_EQ(kept, (std::vector<int64_t>{10, 9, 8, 7, 6, 5, 4, 3, 2})) << n;
        EXPECT_EQ(folder.Add(saved, kMonday, settings), GenerationResult::Made) << "the next save makes up for it";
      }
      EXPECT_GT(n, 8);
    }
  }
  EXPECT_EQ(results, (std::set{GenerationResult::Made, GenerationResult::Failed}));
}

}  // namespace
}  // namespace tessaro
