#include "store/file/backup_generations.h"

#include <chrono>
#include <set>

#include "store/file/card_text_count.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

constexpr const char* kFolder = "/backups";
constexpr LocalTime kMonday = {2026, 3, 30, 8, 0, 0};  // the day after the clocks went forward

// That many days after kMonday.
LocalTime Day(int days) {
  const auto monday = std::chrono::sys_days(std::chrono::March / kMonday.day / kMonday.year);
  const std::chrono::year_month_day date(monday + std::chrono::days(days));
  return {int{date.year()}, static_cast<int>(unsigned{date.month()}), static_cast<int>(unsigned{date.day()}), 8, 0, 0};
}

TEST(GenerationsToKeep, KeepsTheLastSavesDaysAndWeeks) {
  using Days = std::vector<int>;
  const auto daily = [](Days days, int count) {
    while (count-- > 0) days.push_back(count);
    return days;
  };
  // Saves as days after kMonday, the newest first, and those kept.
  const std::tuple<const char*, Days, Days> cases[] = {
      {"daily: ten saves that are ten days, and the Sundays of the ten weeks",
       daily({}, 100),
       {99, 98, 97, 96, 95, 94, 93, 92, 91, 90, 83, 76, 69, 62, 55, 48, 41}},
      {"a day of many saves does not push the days before it out",
       daily(Days(20, 12), 12),
       {12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3}},
      {"the clock was years ahead for one save",
       daily({12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 4000}, 12),
       {12, 12, 12, 12, 12, 12, 12, 12, 12, 12, 4000, 11, 10, 9, 8, 7, 6, 5, 4}},
      {"the clock was set back: the order of the saves counts",
       {2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 50, 50},
       {2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 50}},
  };
  for (const auto& [what, days, expected] : cases) {
    std::vector<LocalTime> saves;
    for (const int day : days) saves.push_back(Day(day));
    const std::vector<bool> keep = GenerationsToKeep(saves);
    Days kept;
    for (size_t i = 0; i < keep.size(); ++i) {
      if (keep[i]) kept.push_back(days[i]);
    }
    EXPECT_EQ(kept, expected) << what;
  }
}

TEST(GenerationName, IsReadBackAndNothingElseIs) {
  const GenerationName name = {"Nr 1 Karten 3f09c1d2a4b5", {2026, 2, 28, 7, 13, 52}, 12, 1000000};
  const std::string text = "Nr 1 Karten 3f09c1d2a4b5 2026-02-28 07.13.52 Nr 12 Karten 1000000.ml~";
  EXPECT_EQ(FileNameOf(name), text);
  EXPECT_EQ(ReadGenerationName(text), name);
  const std::pair<std::string_view, std::string_view> changes[] = {
      {text, ""},    {text, ".ml~"},     {text, "x.ml~"},  {".ml~", ".mlb"}, {".ml~", " (Kopie).ml~"}, {" 12", " 012"},
      {" 12", " 0"}, {"02-28", "02-30"}, {" 07.", " 24."}, {"a4b5", "a4bX"}, {"Nr 1 Karten 3", "3"}};
  for (const auto& change : changes) EXPECT_EQ(ReadGenerationName(With(text, change)), std::nullopt) << change.second;
}

TEST(CardTextCount, CountsTheSameHoweverTheTextIsCut) {
  const std::string cards = FileText({{.id = "000001"}, {.id = "000002"}});
  // A text, its rows, and whether the last one is the end row.
  const std::tuple<std::string, int64_t, bool> cases[] = {
      {cards, 4, true},
      {cards.substr(0, cards.size() - 1), 3, false},
      {"Question\x0FID\nx\x0F@@\n##\\\x0F\x0F\nx\\\x0F\x0F##\r\n", 3, true},
      {"Name\n##\n", 1, false},
  };
  for (const auto& [text, rows, end_row] : cases) {
    for (const size_t piece : {size_t{1}, size_t{3}, text.size()}) {
      CardTextCount count;
      for (size_t at = 0; at < text.size(); at += piece) count.Add(std::string_view(text).substr(at, piece));
      EXPECT_TRUE(count.rows() == rows && count.HasEndRow() == end_row) << text;
    }
  }
}

class Generations : public testing::Test {
 protected:
  // Writes a card file with this many cards, as a save does.
  SavedCards Save(const std::string& path, int cards) {
    disk.Put(path, FileText(std::vector<TestCard>(static_cast<size_t>(cards))));
    return {path, *disk.State(path), *StampOf(disk, path), cards};
  }
  GenerationResult Add(const std::string& path, int cards, int day = 0) {
    return folder.Add(Save(path, cards), Day(day), settings);
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
  EXPECT_TRUE(Kept("/a/x.mlb").size() == 1 && Kept("/a/y.mlb").size() == 1);
  EXPECT_TRUE(disk.Exists(foreign)) << "what is not ours is never deleted";
}

TEST_F(Generations, CountsOnlyWhatReadsBackAsItWasSaved) {
  EXPECT_EQ(Add("/a/x.mlb", 5), GenerationResult::Made);
  const SavedCards saved = Save("/a/x.mlb", 6);
  for (const SavedCards& bad : {SavedCards{saved.path, saved.state, saved.stamp, 7},
                                SavedCards{saved.path, saved.state, {saved.stamp.size, saved.stamp.hash ^ 1U}, 6}}) {
    EXPECT_EQ(folder.Add(bad, kMonday, settings), GenerationResult::Failed);
  }
  Save("/a/x.mlb", 8);
  EXPECT_EQ(folder.Add(saved, kMonday, settings), GenerationResult::Overtaken);
  disk.set_capacity(1000);
  EXPECT_EQ(Add("/a/x.mlb", 9), GenerationResult::NoRoom);
  EXPECT_EQ(Kept("/a/x.mlb"), (std::vector<int64_t>{5}));
  EXPECT_EQ(disk.FileNames(kFolder).size(), 1U) << "nothing half-done is left";
}

TEST_F(Generations, OfCardsInMemoryHoldWhatIsNotSaved) {
  EXPECT_EQ(Add("/a/x.mlb", 5), GenerationResult::Made);
  CardTable cards = MakeCards({{.id = "000001"}, {.id = "000002", .answer = "not saved"}});
  cards.GoTo(2);
  EXPECT_EQ(folder.AddCards("/a/x.mlb", cards, kMonday, settings), GenerationResult::Made);
  EXPECT_EQ(cards.CurrentRow(), 2);
  EXPECT_EQ(Kept("/a/x.mlb"), (std::vector<int64_t>{2, 5}));
  EXPECT_EQ(disk.Content(folder.Of("/a/x.mlb").front().path), FileText(cards));
  disk.set_capacity(1000);
  EXPECT_EQ(folder.AddCards("/a/x.mlb", cards, kMonday, settings), GenerationResult::Failed);
  EXPECT_EQ(disk.FileNames(kFolder).size(), 2U) << "nothing half-done is left";
}

// Whatever operation fails, and however: the copies that were there are there and whole, but for the one whose time
// has come, and the saved file is untouched.
TEST_F(Generations, AreNotLostByAFailingDisk) {
  using enum MemoryDisk::WriteFault;
  const std::pair<MemoryDisk::WriteFault, bool> faults[] = {
      {Nothing, false}, {Nothing, true}, {Half, false}, {Half, true}, {HalfUnnoticed, false}, {HalfUnnoticed, true}};
  std::set<GenerationResult> results;
  for (const bool from_memory : {false, true}) {
    for (const auto& [fault, stays] : faults) {
      int n = 1;
      for (bool reached = true; reached; ++n) {
        disk = MemoryDisk();
        for (int i = 1; i <= 10; ++i) ASSERT_EQ(Add("/a/x.mlb", i), GenerationResult::Made);
        const SavedCards saved = Save("/a/x.mlb", 11);
        CardTable cards = MakeCards(std::vector<TestCard>(11));
        const auto add = [&] {
          return from_memory ? folder.AddCards("/a/x.mlb", cards, kMonday, settings)
                             : folder.Add(saved, kMonday, settings);
        };
        const std::optional<std::string> text = disk.Content("/a/x.mlb");
        disk.FailAt(n, fault, stays);
        const GenerationResult result = add();
        reached = disk.operations() >= n;
        disk.FailAt(0);
        results.insert(result);
        EXPECT_EQ(disk.Content("/a/x.mlb"), text);
        std::vector<int64_t> kept = Kept("/a/x.mlb");
        ASSERT_FALSE(kept.empty());
        EXPECT_EQ(result == GenerationResult::Made, kept.front() == 11) << n;
        if (kept.front() == 11) kept.erase(kept.begin());
        if (kept.size() == 10) kept.pop_back();
        EXPECT_EQ(kept, (std::vector<int64_t>{10, 9, 8, 7, 6, 5, 4, 3, 2})) << n;
        EXPECT_EQ(add(), GenerationResult::Made) << "the next one makes up for it";
      }
      EXPECT_GT(n, 8);
    }
  }
  EXPECT_EQ(results, (std::set{GenerationResult::Made, GenerationResult::Failed}));
}

}  // namespace
}  // namespace tessaro
