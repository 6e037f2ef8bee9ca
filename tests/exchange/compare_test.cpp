#include <random>

#include "exchange/compare_source.h"
#include "exchange/taken_cards.h"
#include "settings/side_settings.h"
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
  EXPECT_TRUE(scan->counts().taken == 1 && scan->counts().duplicates == 2);
  EXPECT_EQ(TextsOf(file.cards(), 3)[kScoreAt], "000000060");
  EXPECT_EQ(file.learn_index().RowCount(), 4);
}

TEST_F(Compare, StatisticsComeAlongOnlyWhenWanted) {
  Begin({Card("000001", "eins", "one")}, {{.id = "000001", .question = "zwei", .score = "000000777", .topic = "03"}});
  scan->set_with_statistics(true);
  EXPECT_EQ(Go(), Step::Ended);
  EXPECT_EQ(TextsOf(file.cards(), 3)[kScoreAt] + TextsOf(file.cards(), 3)[kTopicAt], "00000077703");
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

TEST_F(Compare, NumbersThatRunOutLeaveCardsBehind) {
  Begin({Card("999989", "a", "b")}, {Card("000001", "c", "d"), Card("000002", "e", "f")});
  EXPECT_EQ(Go(), Step::Ended);
  EXPECT_TRUE(scan->counts().taken == 1 && scan->counts().no_number == 1);
}

TEST(Similarity, WordsOfTheTargetAreLookedForInTheSource) {
  const std::string longest(99, 'x');
  const struct {
    const char* what;
    CardSides target, source;
    CompareRule rule;
    int result;
  } cases[] = {
      {"two of three words", {"Der rote Hund", ""}, {"Der Hund", ""}, {.threshold = 5}, 66},
      {"a shorter target loses", {"Der Hund", ""}, {"Der rote Hund", ""}, {.threshold = 5}, 61},
      {"not without lengths", {"Der Hund", ""}, {"Der rote Hund", ""}, {.threshold = 5, .ignore_length = true}, 100},
      {"below the threshold", {"Der rote Hund", ""}, {"Der Hund", ""}, {.threshold = 70}, kNoMatch},
      {"equal", {"a", "b"}, {"a", "b"}, {.threshold = 95}, kSameCard},
      {"equal fronts", {"a", "b"}, {"a", "c"}, {.threshold = 95}, kSameFront},
      {"crosswise", {"a", "b"}, {"b", "a"}, {.threshold = 95}, kNoMatch},
      {"crosswise on either side", {"a", "b"}, {"b", "a"}, {.threshold = 95, .either_side = true}, kSameCard},
      {"on the other side", {"Hund", ""}, {"", "Hund"}, {.threshold = 5}, kNoMatch},
      {"on either side", {"Hund", "x"}, {"", "Hund"}, {.threshold = 5, .either_side = true}, 100},
      {"within a word", {"und", "-"}, {"Hund", "-"}, {.threshold = 5, .ignore_length = true}, 100},
      {"too short words", {"ab cd", ""}, {"x ab cd", ""}, {.threshold = 5, .min_word_length = 2}, kNoMatch},
      {"a word that stands twice", {"ab ab cd", ""}, {"ab", ""}, {.threshold = 5}, 66},
      {"one letter case only", {"hund", ""}, {"Hund", ""}, {.threshold = 5}, kNoMatch},
      {"nothing to look for", {"", ""}, {"a", ""}, {.threshold = 5}, kNoMatch},
      {"fractions are lost one after the other", {"ab cd ef", ""}, {"ab cd xxxx", ""}, {.threshold = 5}, 53},
  };
  for (const auto& [what, target, source, rule, result] : cases)
    EXPECT_EQ(Similarity(target, source, rule), result) << what;
}

TEST(Similarity, WordsEndAtStopsAndAfter99Bytes) {
  std::string words;
  ForEachWord("ab.cd,ef\\gh:i" + std::string(200, 'x') + "\nk!", 0,
              [&](std::string_view word) { words += std::to_string(word.size()) + " "; });
  EXPECT_EQ(words, "2 2 2 2 99 99 3 1 ");
}

std::string AnySide(std::mt19937& random, size_t most_words = 2) {
  static constexpr const char* kWords[] = {"a", "ab", "abc", "bc", "rot", "Hund", "und", "<+++>"};
  std::string side;
  for (size_t count = random() % (most_words + 1); count > 0; --count) {
    side += kWords[random() % (random() % 8 == 0 ? 8 : 7)];
    side += most_words == 2 ? ' ' : " .\\"[random() % 3];
  }
  return side;
}

// What the finder gives is what comparing with every card gives, while cards come, change and are left out.
TEST(MatchFinder, FindsWhatComparingWithAllFinds) {
  std::mt19937 random(3);
  for (int round = 0; round < 1500; ++round) {
    const CompareRule rule = {.threshold = static_cast<int>(random() % 19 + 1) * 5,
                              .min_word_length = random() % 3 + 1,
                              .ignore_length = random() % 2 == 0,
                              .either_side = random() % 2 == 0};
    std::vector<std::pair<std::string, std::string>> cards(random() % 10 + 1);
    for (auto& [front, back] : cards) front = AnySide(random, 4), back = AnySide(random, 4);
    const auto sides = [&](int row) {
      const auto& [front, back] = cards[static_cast<size_t>(row)];
      return CardSides{front, back};
    };
    MatchFinder finder(rule, sides);
    const int count = static_cast<int>(cards.size());
    for (int row = 0; row < count; ++row) finder.Count(row);
    for (int row = 0; row < count; ++row) finder.MakeFindable(row);
    const int left_out = static_cast<int>(random() % cards.size());
    finder.LeaveOut(left_out);
    const int changed = static_cast<int>(random() % cards.size());
    cards[static_cast<size_t>(changed)] = {AnySide(random, 4), AnySide(random, 4)};
    finder.Put(changed);
    const std::string front = random() % 2 == 0 ? cards[0].first : AnySide(random, 4);
    const std::string back = random() % 2 == 0 ? cards[0].second : AnySide(random, 4);
    const int first = static_cast<int>(random() % 3);
    std::vector<Match> expected;
    for (int row = first; row < count; ++row) {
      const int result = row == left_out && row != changed ? kNoMatch : Similarity(sides(row), {front, back}, rule);
      if (result != kNoMatch) expected.push_back({row, result});
    }
    EXPECT_EQ(finder.Find({front, back}, first), expected);
  }
}

std::vector<TestCard> AnyDeck(std::mt19937& random) {
  std::vector<TestCard> deck(random() % 6 + 1);
  for (size_t i = 0; i < deck.size(); ++i) {
    deck[i] = Card("00000" + std::to_string(i + 1), AnySide(random), AnySide(random));
    if (random() % 20 == 0) deck[i].id = "#";
  }
  return deck;
}

// The comparison pair by pair, each in its turn, of a scan that it is held against.
class PairByPair {
 public:
  PairByPair(CompareScan& scan, const CompareRule& rule, std::mt19937& random)
      : scan_(scan), rule_(rule), random_(random) {}
  std::vector<TestCard> target;
  std::vector<TestCard> source;  // none: the target itself
  CompareCounts counts;

  void Run() {
    const auto ends = [](const TestCard& card) { return card.id.starts_with('#'); };
    const bool internal = source.empty();
    const bool grows = std::none_of(target.begin(), target.end(), ends);
    const size_t sources = internal ? target.size() : source.size();
    for (s_ = 0; s_ < sources && !ends(Source()); ++s_) {
      if (IsDuplicateMarked(Source().question)) continue;
      equal_ = 0;
      matched_ = front_matched_ = over_ = replaced_ = wanted_ = false;
      for (size_t t = internal ? s_ + 1 : 0; t < target.size() && !ends(target[t]) && !over_; ++t) {
        if (IsDuplicateMarked(target[t].question)) continue;
        ASSERT_NO_FATAL_FAILURE(Compare(t));
      }
      if (internal || (equal_ > 0 && !wanted_) || over_ || replaced_) continue;
      target.push_back(Card(grows ? "new" : "#", Source().question, Source().answer));
      ++counts.taken;
    }
  }

 private:
  TestCard& Source() { return source.empty() ? target[s_] : source[s_]; }
  static CardSides Sides(const TestCard& card) { return {card.question, card.answer}; }
  void Mark(TestCard& card) {
    card.question.insert(0, kDuplicateMark);
    ++counts.marked;
  }

  void Compare(size_t t) {
    ++counts.comparisons;
    const int result = Similarity(Sides(target[t]), Sides(Source()), rule_);
    if (result == kNoMatch) return;
    if (result == kSameCard) {
      ++counts.duplicates;
      if (++equal_ > (source.empty() ? 0 : 1)) Mark(target[t]);
    } else {
      ASSERT_EQ(scan_.Advance(Always), Step::Stopped);
      const bool earlier = result == kSameFront ? front_matched_ : matched_;
      EXPECT_EQ(*scan_.stop(), (CompareStop{static_cast<int>(s_) + kFirstCardRow, static_cast<int>(t) + kFirstCardRow,
                                            result, earlier}));
      if (random_() % 2 == 0) (void)scan_.LookAhead(Always);
      Decide(t);
    }
    matched_ = true;
    front_matched_ = front_matched_ || result == kSameFront || result == kSameCard;
  }

  void Decide(size_t t) {
    CompareEdits edits;
    const auto edit = [&](std::optional<std::string>& made, std::string& text) {
      if (random_() % 4 == 0) text = *(made = AnySide(random_));
    };
    const TestCard before = target[t];
    edit(edits.target_front, target[t].question);
    edit(edits.target_back, target[t].answer);
    const auto decision = random_() % 4;
    const bool rejects_foreign = decision == 2 && !source.empty();
    TestCard unused;
    edit(edits.source_front, rejects_foreign ? unused.question : Source().question);
    edit(edits.source_back, rejects_foreign ? unused.answer : Source().answer);
    switch (decision) {
      case 0:
        ++counts.kept;
        ASSERT_TRUE(scan_.KeepBoth(edits));
        break;
      case 1:
        target[t].question = Source().question;
        target[t].answer = Source().answer;
        replaced_ = true;
        ASSERT_TRUE(scan_.ReplaceTarget(edits, false));
        break;
      case 2:
        if (source.empty()) Mark(Source());
        over_ = true;
        ASSERT_TRUE(scan_.RejectSource(edits));
        break;
      default:
        Mark(target[t]);
        wanted_ = true;
        ASSERT_TRUE(scan_.MarkTarget(edits));
    }
  }

  CompareScan& scan_;
  CompareRule rule_;
  std::mt19937& random_;
  size_t s_ = 0;
  int equal_ = 0;
  bool matched_ = false, front_matched_ = false, over_ = false, replaced_ = false, wanted_ = false;
};

// What the walk gives is what comparing each pair in turn gives, whatever was decided and looked at in advance.
TEST_F(Compare, WalksLikeComparingEachPairInTurn) {
  std::mt19937 random(4);
  for (int round = 0; round < 600; ++round) {
    SCOPED_TRACE(round);
    const CompareRule rule = {.threshold = static_cast<int>(random() % 19 + 1) * 5, .either_side = random() % 3 == 0};
    const std::vector<TestCard> target = AnyDeck(random);
    const std::vector<TestCard> source = random() % 3 == 0 ? std::vector<TestCard>() : AnyDeck(random);
    source.empty() ? BeginInternal(target, rule) : Begin(target, source, rule);
    PairByPair model(*scan, rule, random);
    model.target = target;
    model.source = source;
    ASSERT_NO_FATAL_FAILURE(model.Run());
    ASSERT_EQ(Go(), Step::Ended);
    ASSERT_EQ(file.CardCount(), static_cast<int>(model.target.size()));
    for (size_t t = 0; t < model.target.size(); ++t) {
      const CardTexts texts = TextsOf(file.cards(), static_cast<int>(t) + kFirstCardRow);
      EXPECT_EQ(texts[kQuestionAt] + "/" + texts[kAnswerAt], model.target[t].question + "/" + model.target[t].answer);
    }
    const CompareCounts& counts = scan->counts();
    EXPECT_EQ(counts.comparisons, model.counts.comparisons);
    EXPECT_EQ(counts.duplicates, model.counts.duplicates);
    EXPECT_EQ(counts.kept, model.counts.kept);
    EXPECT_EQ(counts.marked, model.counts.marked);
    EXPECT_EQ(counts.taken, model.counts.taken);
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
  EXPECT_EQ(BytesOf(disk, copies), 7);
  const CopiedMedia ended = CopyMedia(disk, copies, [](int64_t done) { return done < 7; });
  EXPECT_TRUE(ended.cancelled && ended.copied == 0 && ended.failed == 0);
  EXPECT_FALSE(disk.Exists("/deck/bild.bmp"));
  EXPECT_EQ(CopyMedia(disk, copies).copied, 1);
  EXPECT_EQ(disk.Content("/deck/bild.bmp"), "picture");
  EXPECT_EQ(CopyMedia(disk, {{"/src/missing.bmp", "/deck/missing.bmp"}}).failed, 1);
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

TEST(CompareSource, ItsTextsComeInTheCodePagesOfTheTarget) {
  MemoryDisk disk;
  CardFile file(disk);
  OpenTestFile(disk, file, {{}});
  WriteCharacterSet(CharacterSet::Cyrillic, SideName::Back, file.settings());
  CardTable cards;
  disk.Put("/deck/y.mlb", FileText(std::vector<TestCard>{{.question = "\xE4", .answer = "\x80 <b>"}}));
  ASSERT_EQ(LoadSource(disk, file, "/deck/y.mlb", cards), SourceLoad::Loaded);
  EXPECT_EQ(cards.Peek(cards.ColumnIndex(kQuestion), 2), "\xE4");
  EXPECT_EQ(cards.Peek(cards.ColumnIndex(kAnswer), 2), "\x88 <b>");
  disk.Put("/deck/y.ini", "[FontH]\nCharset=161\n");
  disk.Put("/deck/y.mlb", FileText(std::vector<TestCard>{{.answer = "\xE1"}}));
  EXPECT_EQ(LoadSource(disk, file, "/deck/y.mlb", cards), SourceLoad::OtherCharacters);
  EXPECT_EQ(cards.Peek(cards.ColumnIndex(kAnswer), 2), "\x88 <b>");
}

}  // namespace
}  // namespace tessaro
