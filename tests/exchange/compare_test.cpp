#include <gtest/gtest.h>

#include <random>

#include "exchange/compare_scan.h"
#include "exchange/compare_source.h"
#include "exchange/taken_cards.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

using Step = CompareScan::Step;

TestCard Card(const std::string& id, const std::string& question, const std::string& answer) {
  return {.id = id, .question = question, .answer = answer};
}

bool Always() {
  return true;
}

// An open target and a source beside it.
class Compare : public testing::Test {
 protected:
  void Begin(const std::vector<TestCard>& target, const std::vector<TestCard>& source, const CompareRule& rule = {}) {
    OpenTestFile(disk, file, target);
    cards = MakeCards(source);
    scan = std::make_unique<CompareScan>(file, &cards, rule);
  }
  void BeginInternal(const std::vector<TestCard>& target, const CompareRule& rule = {}) {
    OpenTestFile(disk, file, target);
    scan = std::make_unique<CompareScan>(file, nullptr, rule);
  }
  Step Go() { return scan->Advance(Always); }
  std::string Target() {
    std::string shown;
    for (int row = kFirstCardRow; row <= file.CardCount() + 1; ++row) {
      const CardTexts texts = TextsOf(file.cards(), row);
      shown += texts[kIdAt] + ":" + texts[kQuestionAt] + "/" + texts[kAnswerAt] + " ";
    }
    return shown;
  }

  MemoryDisk disk;
  CardFile file{disk};
  CardTable cards;
  std::unique_ptr<CompareScan> scan;
};

TEST_F(Compare, CardsWithoutAnEqualOneAreTakenOverWithNewNumbers) {
  Begin({Card("000007", "eins", "one")},
        {Card("000001", "eins", "one"), Card("000002", "zwei", "two"), Card("000003", "zwei", "two"),
         Card("000004", "<automap>", "x"), Card("000005", "<+++>drei", "three")});
  EXPECT_EQ(Go(), Step::Ended);
  // The second "zwei" meets the one that was just taken over.
  EXPECT_EQ(Target(), "000007:eins/one 000008:zwei/two ");
  EXPECT_EQ(scan->counts().taken, 1);
  EXPECT_EQ(scan->counts().duplicates, 2);
  EXPECT_EQ(TextsOf(file.cards(), 3)[kScoreAt], "000000060");
  EXPECT_EQ(file.learn_index().RowCount(), 4);
}

TEST_F(Compare, StatisticsComeAlongOnlyWhenWanted) {
  Begin({Card("000001", "eins", "one")}, {{.id = "000001", .question = "zwei", .score = "000000777", .topic = "03"}});
  scan->set_with_statistics(true);
  EXPECT_EQ(Go(), Step::Ended);
  EXPECT_EQ(TextsOf(file.cards(), 3)[kScoreAt], "000000777");
  EXPECT_EQ(TextsOf(file.cards(), 3)[kTopicAt], "03");
}

TEST_F(Compare, SecondEqualCardIsMarkedInsideOneFileTheFirst) {
  const std::vector<TestCard> target = {Card("000001", "a", "b"), Card("000002", "a", "b"), Card("000003", "a", "b")};
  Begin(target, {Card("000001", "a", "b")});
  EXPECT_EQ(Go(), Step::Ended);
  EXPECT_TRUE(scan->TakeDuplicateNote());
  EXPECT_EQ(Target(), "000001:a/b 000002:<+++>a/b 000003:<+++>a/b ");
  EXPECT_EQ(RemoveMarked(file), 2);
  EXPECT_EQ(Target(), "000001:a/b ");
}

TEST_F(Compare, InternalWalkBeginsBehindItsCardAndAppendsNothing) {
  BeginInternal({Card("000001", "a", "b"), Card("000002", "x", "y"), Card("000003", "a", "b")});
  EXPECT_EQ(Go(), Step::Ended);
  EXPECT_EQ(Target(), "000001:a/b 000002:x/y 000003:<+++>a/b ");
  // The marked third card is neither compared with the second nor has a turn of its own.
  EXPECT_EQ(scan->counts().comparisons, 2);
}

TEST_F(Compare, DecisionsChangeTheCardsAndTheWalkGoesOn) {
  const std::vector<TestCard> target = {Card("000001", "a", "b"), Card("000002", "a", "c")};
  const std::vector<TestCard> source = {Card("000009", "a", "z")};
  const struct {
    const char* what;
    std::function<bool(CompareScan&)> decide;
    const char* result;
  } cases[] = {
      {"keep", [](CompareScan& s) { return s.KeepBoth({}); }, "000001:a/b 000002:a/c 000003:a/z "},
      {"keep with edits",
       [](CompareScan& s) {
         return s.KeepBoth({{}, "B", {}, "Z"});
       },
       "000001:a/B 000002:a/c 000003:a/Z "},
      {"replace", [](CompareScan& s) { return s.ReplaceTarget({}, false); }, "000001:a/z 000002:a/c "},
      {"reject", [](CompareScan& s) { return s.RejectSource({}); }, "000001:a/b 000002:a/c "},
      {"mark the target", [](CompareScan& s) { return s.MarkTarget({}); }, "000001:<+++>a/b 000002:a/c 000003:a/z "},
  };
  for (const auto& [what, decide, result] : cases) {
    SCOPED_TRACE(what);
    Begin(target, source);
    ASSERT_EQ(Go(), Step::Stopped);
    EXPECT_EQ(*scan->stop(), (CompareStop{2, 2, kSameFront, false}));
    ASSERT_TRUE(decide(*scan));
    while (Go() == Step::Stopped) {
      EXPECT_EQ(*scan->stop(), (CompareStop{2, 3, kSameFront, true}));
      ASSERT_TRUE(scan->KeepBoth({}));
    }
    EXPECT_EQ(Target(), result);
  }
}

TEST_F(Compare, NumbersThatRunOutLeaveCardsBehind) {
  Begin({Card("999989", "a", "b")}, {Card("000001", "c", "d"), Card("000002", "e", "f")});
  EXPECT_EQ(Go(), Step::Ended);
  EXPECT_EQ(scan->counts().taken, 1);
  EXPECT_EQ(scan->counts().no_number, 1);
}

std::string AnySide(std::mt19937& random) {
  static constexpr const char* kWords[] = {"ab", "abc", "bc", "rot", "Hund", "und", "<+++>"};
  std::string side;
  for (size_t count = random() % 3; count > 0; --count) {
    side += kWords[random() % (random() % 8 == 0 ? 7 : 6)] + std::string(" ");
  }
  return side;
}

std::vector<TestCard> AnyDeck(std::mt19937& random) {
  std::vector<TestCard> deck(random() % 6 + 1);
  for (size_t i = 0; i < deck.size(); ++i) {
    deck[i] = Card("00000" + std::to_string(i + 1), AnySide(random), AnySide(random));
    if (random() % 20 == 0) deck[i].id = "#";
  }
  return deck;
}

// What the walk gives is what comparing each pair in turn gives, whatever was looked at in advance.
TEST_F(Compare, WalksLikeComparingEachPairInTurn) {
  std::mt19937 random(4);
  for (int round = 0; round < 400; ++round) {
    const CompareRule rule = {.threshold = static_cast<int>(random() % 19 + 1) * 5, .either_side = random() % 3 == 0};
    std::vector<TestCard> target = AnyDeck(random);
    const std::vector<TestCard> source = AnyDeck(random);
    Begin(target, source, rule);
    const auto ends = [](const TestCard& card) { return card.id.starts_with('#'); };
    const bool grows = std::none_of(target.begin(), target.end(), ends);
    for (size_t s = 0; s < source.size() && !ends(source[s]); ++s) {
      if (IsDuplicateMarked(source[s].question)) continue;
      int equal = 0;
      for (size_t t = 0; t < target.size() && !ends(target[t]); ++t) {
        if (IsDuplicateMarked(target[t].question)) continue;
        const int result =
            Similarity({target[t].question, target[t].answer}, {source[s].question, source[s].answer}, rule);
        if (result == kSameCard && ++equal > 1) target[t].question.insert(0, kDuplicateMark);
        if (result == kNoMatch || result == kSameCard) continue;
        ASSERT_EQ(Go(), Step::Stopped);
        EXPECT_EQ(scan->stop()->source_row, static_cast<int>(s) + kFirstCardRow);
        EXPECT_EQ(scan->stop()->target_row, static_cast<int>(t) + kFirstCardRow);
        EXPECT_EQ(scan->stop()->result, result);
        (void)scan->LookAhead(Always);
        if (random() % 2 == 0) {
          ASSERT_TRUE(scan->KeepBoth({}));
        } else {
          target[t].question = AnySide(random);
          ASSERT_TRUE(scan->KeepBoth({target[t].question, {}, {}, {}}));
        }
      }
      if (equal == 0) {
        TestCard taken = Card("", source[s].question, source[s].answer);
        taken.id = grows ? "new" : "#";
        target.push_back(taken);
      }
    }
    ASSERT_EQ(Go(), Step::Ended);
    ASSERT_EQ(file.CardCount(), static_cast<int>(target.size()));
    for (size_t t = 0; t < target.size(); ++t) {
      EXPECT_EQ(TextsOf(file.cards(), static_cast<int>(t) + kFirstCardRow)[kQuestionAt], target[t].question);
    }
  }
}

TEST_F(Compare, LinksOfTakenCardsLeadToTheirNewNumbers) {
  Begin({Card("000005", "a", "b")},
        {Card("000001", "<a HREF=\"000002\">zwei</a>", "<a href=\"000009\">fort</a> href=\"x\""),
         Card("000002", "c", "d")});
  ASSERT_EQ(Go(), Step::Ended);
  const TakenLinks links = RewriteTakenLinks(file, scan->taken());
  EXPECT_EQ(Target(),
            "000005:a/b 000006:<a HREF=\"000007\">zwei</a>/<a href=\"000009\">fort</a> href=\"x\" 000007:c/d ");
  EXPECT_EQ(links.rewritten, 1);
  EXPECT_EQ(links.left, 1);
}

TEST_F(Compare, MediaBesideTheSourceAreCopied) {
  Begin({Card("000005", "a", "b")}, {Card("000001", "<img src=\"Bild.bmp\">", "#SHOW:da.bmp+")});
  disk.Put("/src/bild.bmp", "picture");
  disk.Put("/src/da.bmp", "other");
  disk.Put("/deck/da.bmp", "own");
  ASSERT_EQ(Go(), Step::Ended);
  const std::vector<MediaCopy> copies =
      MissingMedia(disk, file, scan->taken(), {"/src", "/src/Medien"}, {"/deck", "/deck/Medien"});
  ASSERT_EQ(copies.size(), 1U);
  EXPECT_EQ(CopyMedia(disk, copies), 1);
  EXPECT_EQ(disk.Content("/deck/bild.bmp"), "picture");
}

TEST_F(Compare, SourceIsReadOrRefused) {
  OpenTestFile(disk, file, {Card("000001", "a", "b")});
  disk.Put("/deck/y.mlb", FileText({Card("000001", "c", "d")}));
  disk.Put("/deck/y.Mlb", "");
  disk.Put("/deck/none.mlb",
           "ID\x0FQuestion\x0F"
           "Answer\n@@\x0F\x0F\n##\x0F\x0F\n");
  disk.Put("/deck/text.mlb", "no card file");
  const std::pair<const char*, SourceLoad> cases[] = {
      {"/deck/y.mlb", SourceLoad::Loaded},        {"/deck/y.Mlb", SourceLoad::WrongType},
      {"/deck/z.mlb", SourceLoad::CannotOpen},    {"/deck/none.mlb", SourceLoad::NoCards},
      {"/deck/text.mlb", SourceLoad::CannotLoad}, {kTestFile, SourceLoad::Internal}};
  for (const auto& [path, load] : cases) EXPECT_EQ(LoadSource(disk, file, path, cards), load) << path;
  file.RowChanged(kFirstCardRow);
  EXPECT_EQ(LoadSource(disk, file, kTestFile, cards), SourceLoad::TargetChanged);
}

}  // namespace
}  // namespace tessaro
