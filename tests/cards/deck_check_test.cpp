#include "cards/deck_check.h"

#include "cards/figures.h"
#include "tests/learn/learn_fixture.h"

namespace tessaro {
namespace {

// `count` times, from `newest` on each 1000 seconds older; what is missing are empty slots.
std::string Times(int64_t newest, int count, int slots = kHistoryLength) {
  std::string text;
  for (int i = 0; i < slots; ++i) text += (i < count ? std::to_string(newest - i * 1000) : "0") + " ";
  return text;
}

TestCard Card(const std::string& id, const std::string& question = "Frage", const std::string& answer = "Antwort") {
  return {.id = id,
          .question = question,
          .answer = answer,
          .yes_no_row = Letters("wf"),
          .time_row = Times(kNow - 5, 2),
          .time_learned = "12"};
}

class DeckCheckTest : public LearnTest {
 protected:
  // A letter for each fault, "+" for one that can be repaired and "!" for links to it, row and number: "D+4/7".
  std::string Found(const std::vector<TestCard>& cards, int step = 1'000'000) {
    file.Close();
    OpenTestFile(disk, file, cards);
    return FoundInOpenFile(step);
  }
  std::string FoundInOpenFile(int step) {
    DeckCheck check(file, kNow);
    check.LookForMedia(disk, FoldersOf(kTestFile, "Medien"));
    while (check.Step(step)) EXPECT_LT(check.Position(), check.Range());
    report = check.TakeReport();
    std::string text;
    for (const DeckFinding& finding : report.findings) {
      text += (text.empty() ? "" : " ") + std::string(1, "IDLFOYTSZEM"[static_cast<int>(finding.fault)]) +
              (finding.can_repair ? "+" : "") + (finding.links_lead_to ? "!" : "") + std::to_string(finding.row);
      if (finding.number != 0) text += "/" + std::to_string(finding.number);
      if (!finding.name.empty()) text += "/" + finding.name;
    }
    return text;
  }

  DeckReport report;
};

TEST_F(DeckCheckTest, FindsWhatIsWrongWithNumbersAndLinks) {
  const std::pair<std::vector<TestCard>, std::string> cases[] = {
      {{Card("000001"), Card("000002")}, ""},
      {{Card("000001"), Card("000002"), Card("000001"), Card("1")}, "D+4/1 D+5/1"},
      {{Card("abc"), Card("#1"), Card("#1"), Card("2#")}, "I+2"},
      {{Card("999989"), Card("999989"), Card("x")}, "D+3/999989 I+4"},  // 999990 is the last that links can lead to
      {{Card("999990", "<a href=\"999990\">x"), Card("x")}, "I3"},
      {{Card("999990", "<a href=\"999990\">x"), Card("999990")}, "D!3/999990"},
      {{Card("0", "<a href=\"0\">x"), Card("0")}, "L2 D!3"},
      {{Card("1234567"), Card("1234567")}, "D3/1234567"},
      {{Card("000001", "<a href=\"2\">x</a>", "<A HREF=\"000003\">y"), Card("000002")}, "L2/3"},
      {{Card("000001", "<a href=\"12345678\">x</a><a href=3>y</a>", "href=\"7\"")}, "L2"},
      {{Card("000001", "<navigation><a href=\"2\">x</a>", ""), Card("000002"), Card("000002")}, "D!4/2"},
      {{Card("000001", "<a href=\"9\"><img src=\"a.bmp\"></a>", "<b>no link</b> = \"")}, "L2/9 M2/a.bmp"},
  };
  for (const auto& [cards, found] : cases) {
    for (const int step : {1'000'000, 1}) EXPECT_EQ(Found(cards, step), found) << cards[0].question << ", " << step;
    EXPECT_FALSE(file.changed());
  }
}

TEST_F(DeckCheckTest, FindsEmptySidesAndMissingMedia) {
  disk.Put("/deck/da.bmp", "x");
  disk.Put("/deck/Medien/da.wav", "x");
  const std::pair<std::string, std::string> cases[] = {
      {"", "E2"},
      {" \r\n", "E2"},
      {"<b> </b><br><topic=\"x\">", "E2"},
      {"<a href=\"1\"></a>", "E2"},
      {"<b>x</b>", ""},
      {"<a href=\"1\">x</a>", ""},
      {"<navigation>", ""},
      {"<img src=\"DA.BMP\"><embed src=\"da.wav\">", ""},
      {"<img src=\"fort.bmp\"><EMBED SRC=\"fort.avi\">", "M2/fort.bmp M2/fort.avi"},
      {"<#SHOW:da.bmp+><#WAVE:fort.wav>", "M2/fort.wav"},
      {"<#TEXT:fort.txt!>", "M2/fort.txt"},
  };
  for (const auto& [side, found] : cases) {
    EXPECT_EQ(Found({Card("000001", side)}), found) << side;
    if (side == "<navigation>") continue;
    EXPECT_EQ(Found({Card("000001", "Frage", side)}), found) << side;
  }
}

TEST_F(DeckCheckTest, FindsWhatIsWrongWithHistories) {
  const std::string good = Letters("wf");
  const std::string two = Times(kNow, 2);
  const std::string after_wipe = Times(kNow, 2).substr(0, Times(kNow, 2).size() - 1);
  const std::tuple<const char*, std::string, std::string, std::string, std::string, std::string> cases[] = {
      {"a full history", std::string(64, 'w'), Times(kNow, 64), "999999900", "5", ""},
      {"as undo writes it", good, Times(kNow, 2, 63), "1", "5", ""},
      {"as the wipe writes it", good, after_wipe, "000000000", "0", ""},
      {"a gap that undo leaves", good, "900 0 700 " + Times(0, 0, 61), "1", "0", ""},
      {"too few of each", "wf", "1 0 0", "000000001", "0", "Y+2 T+2"},
      {"other letters", Letters("wW"), two, "000000001", "0", "Y+2"},
      {"two blanks", good, "5  3 " + Times(0, 0, 61), "000000001", "0", "T+2"},
      {"no numbers", good, "5 -3 " + Times(0, 0, 62), "", "x", "T+2 S+2 Z+2"},
      {"score beyond its range", good, two, "999999901", "0", "S+2"},
      {"older answer later", good, "500 600 " + Times(0, 0, 62), "000000001", "0", "O2"},
      {"now is not the future", good, Times(kNow, 1), "000000001", "0", ""},
      {"newest in the future", good, Times(kNow + 1, 3), "000000001", "0", "F+2"},
  };
  for (const auto& [what, letters, times, score, learned, found] : cases) {
    TestCard card = {.id = "000001", .score = score, .yes_no_row = letters, .time_row = times};
    card.time_learned = learned;
    EXPECT_EQ(Found({card}), found) << what;
    EXPECT_EQ(CountFutureAnswers(file, kNow), report.Count(DeckFault::FutureAnswer));
    card.question = "<navigation>";
    EXPECT_EQ(Found({card}), "") << "a navigation card is never learned: " << what;
  }
}

TEST_F(DeckCheckTest, RepairsKeepAllThatCanBeRead) {
  TestCard broken = {.id = "000001", .score = "12x", .yes_no_row = "wWwf", .time_row = "900 x 700  500"};
  broken.time_learned = "-3";
  TestCard future = Card("000005");
  future.time_row = Times(kNow + 1500, 3);
  EXPECT_EQ(
      Found({Card("000001"), broken, future, Card("000005", "<a href=\"1\">x"), Card("no"), Card("#"), Card("000040")}),
      "D!3/1 Y+3 T+3 S+3 Z+3 F+4 D+5/5 I+6");
  EXPECT_EQ(RepairDeck(file, report.findings, kNow), 7);
  EXPECT_TRUE(file.changed());
  EXPECT_EQ(YesNoRow(3), Letters("wfwf"));
  EXPECT_EQ(TimeRow(3), "900 0 700 0 500 " + Times(0, 0, 59));
  EXPECT_EQ(Score(3) + Field(3, file.columns().time_learned), "0000000120");
  EXPECT_EQ(TimeRow(4), Times(kNow, 1, 1) + Times(kNow, 1, 1) + Times(kNow - 500, 1, 62));
  EXPECT_EQ(Field(5, file.columns().id), "000041");
  EXPECT_EQ(file.RowOfId(42), 6) << "the indexes fit again";
  EXPECT_EQ(file.IssueId(), "000043");
  EXPECT_EQ(FoundInOpenFile(100), "D!3/1") << "which card the link means only a person can tell";
}

constexpr int64_t kMoment = 1'000'000;

TEST(CardFigures, CountCardsByTheirHistory) {
  const auto known = [](const std::string& score, const std::string& times) {
    return TestCard{.score = score, .yes_no_row = Letters("w"), .time_row = times};
  };
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
      {"known, no score", known("", "900"), "learnable unknown", 1},
      {"known for long", known("000500000", "900000 1"), "learnable known in 900001"},
      {"due just now", known("000050001", "899998"), "learnable known in 1"},
      {"due a second ago", known("000050001", "899997"), "learnable known due"},
      {"beyond the maximum", known("000999999", "599999"), "learnable known due in 1599998"},
      {"broken numbers", known(nines, nines), "learnable known in 9223372036853775808"},
      {"navigation", {.question = "<navigation>", .score = "0"}, ""},
      {"superfluous variant", {.answer = "x<+++>", .score = "0"}, ""},
      {"marked ID", {.id = "00#001", .score = "0"}, ""},
  };
  for (const auto& c : cases) {
    MemoryDisk disk;
    CardFile file(disk);
    OpenTestFile(disk, file, {c.card});
    const CardFigures got = FiguresOf(file, {.retention_weight = 2.0, .max_time = 400000}, kMoment);
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
  const CardFigures got = FiguresOf(file, {.retention_weight = 2.0}, kMoment);
  EXPECT_EQ(
      std::vector({got.cards, got.navigation, got.learnable, got.never_answered, got.known, got.unknown, got.due}),
      std::vector<int64_t>({kCards, 1, kCards - 1, 1, kCards - 3, 1, 1}));
  EXPECT_EQ(got.next_due_in, 899'001);
}

}  // namespace
}  // namespace tessaro
