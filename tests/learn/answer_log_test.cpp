#include "learn/answer_log.h"

#include "cards/figures.h"
#include "tests/learn/learn_fixture.h"

namespace tessaro {
namespace {

class AnswerLogTest : public LearnTest {
 protected:
  void OpenCards(const std::vector<TestCard>& cards) {
    Open(cards);
    writer = std::make_unique<CardWriter>(file);
    state = {};
    log = std::make_unique<AnswerLog>(file, *writer, state);
    log->RecountUnknown();
  }
  LogReport Answer(int row, Rating rating, CardMarks marks = {}) { return log->Log(row, rating, marks, clock.now); }

  // What an answer has done to the card in row 2 and to the count.
  std::string After(const LogReport& report) const {
    return (report.logged ? "logged " : "nothing ") + Score(2) + " " + YesNoRow(2).substr(0, 3) + ", " +
           std::to_string(log->unknown_count()) + " unknown" + (report.wiped ? ", wiped" : "") +
           (report.times_out_of_order ? ", out of order" : "");
  }

  std::unique_ptr<CardWriter> writer;
  AnswerLogState state;
  std::unique_ptr<AnswerLog> log;
};

TEST_F(AnswerLogTest, ACardExchangedForItselfIsNoChange) {
  OpenCards({KnownCard(1, 50, 500)});
  const CardChange own = writer->Exchange(2, {});
  EXPECT_EQ(own.score, Score(2));
  (void)writer->Exchange(2, own);
  EXPECT_FALSE(file.changed());
}

TEST_F(AnswerLogTest, OneAnswerByCardAndMarks) {
  constexpr Rating known = Rating::Known;
  constexpr Rating wrong = Rating::NotKnown;
  constexpr CardMarks none;
  constexpr CardMarks early = {.early = true};
  constexpr CardMarks kept = {.no_history = true};
  const TestCard marked = With(NewCard(1), &TestCard::id, "#00001");
  const TestCard broken_times = With(KnownCard(1, 50, 500), &TestCard::time_row, "5 9 ");
  const struct {
    const char* what;
    TestCard card;
    Rating rating;
    CardMarks marks;
    std::string after;  // the unknown cards: one is another card
  } cases[] = {
      {"first known answer", NewCard(1), known, none, "logged 000000001 wff, 1 unknown"},
      {"first answer wrong", NewCard(1), wrong, none, "logged 000000000 fff, 2 unknown"},
      {"wrong after known", KnownCard(1, 50, 500), wrong, none, "logged 000000000 fwf, 2 unknown"},
      {"wrong again", WrongCard(1), wrong, none, "logged 000000000 fff, 2 unknown"},
      {"known after wrong", WrongCard(1), known, none, "logged 000000001 wff, 1 unknown"},
      {"known again", KnownCard(1, 50, 500), known, none, "logged 000000500 wwf, 1 unknown"},
      {"known too early", KnownCard(1, 50, 5), known, early, "nothing 50 wff, 1 unknown"},
      {"wrong too early", KnownCard(1, 50, 5), wrong, early, "logged 000000000 fwf, 2 unknown"},
      {"known too early, score 0", WrongCard(1, 5), known, early, "logged 000000001 wff, 1 unknown"},
      {"known, kept history", KnownCard(1, 50, 500), known, kept, "logged 000000001 wff, 1 unknown"},
      {"wrong, kept history", KnownCard(1, 50, 500), wrong, kept, "logged 000000000 wff, 2 unknown"},
      {"kept history out of order", broken_times, known, kept, "logged 50 wff, 1 unknown, out of order"},
      {"answered in the future", KnownCard(1, 50, -10), known, none, "logged 000000001 wff, 1 unknown, wiped"},
      {"wrong in the future: counted down twice", WrongCard(1, -10), known, none,
       "logged 000000001 wff, 0 unknown, wiped"},
      {"superfluous variant", With(WrongCard(1), &TestCard::question, "<+++>"), known, none,
       "logged 000000001 wff, 1 unknown"},
      {"navigation card", NavigationCard(1), known, none, "nothing 000000000 fff, 1 unknown"},
      {"marked ID", marked, known, none, "nothing 000000001 fff, 1 unknown"},
      {"no rating", NewCard(1), Rating::None, none, "nothing 000000001 fff, 1 unknown"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    OpenCards({c.card, WrongCard(2)});
    const LogReport report = Answer(2, c.rating, c.marks);
    EXPECT_EQ(After(report), c.after);
    EXPECT_EQ(file.changed(), report.logged);
    EXPECT_EQ(log->answered(), report.logged ? 1 : 0);
    EXPECT_EQ(writer->UnknownCount(), CountUnknown(file));
    ExpectIndexesFit(file);
  }
}

TEST_F(AnswerLogTest, CountsTheTimeSpentOnACard) {
  OpenCards({NewCard(1), NewCard(2), NavigationCard(3)});
  const std::tuple<int, Rating, int64_t, const char*> steps[] = {
      {2, Rating::Known, 50, "0"},    {2, Rating::Known, 180, "180"}, {2, Rating::Known, 181, "200"},
      {4, Rating::Known, 100, "200"},  // a navigation card does not stop the watch
      {2, Rating::Known, 30, "330"},  {2, Rating::None, 100, "330"},  {2, Rating::NotKnown, 7, "337"},
  };
  for (const auto& [row, rating, pause, learned] : steps) {
    clock.now += pause;
    (void)Answer(row, rating);
    EXPECT_EQ(Field(2, file.columns().time_learned), learned);
  }
}

TEST_F(AnswerLogTest, UndoByLevelAndHistory) {
  TestCard card = KnownCard(1, 50, 500);
  card.yes_no_row = Letters("wwf");
  card.time_row = "1699999500 1699999400 1699999300 ";
  const std::string full = card.time_row + "0 ";
  const struct {
    const char *topic, *topic_after;
    std::string times;
    CardMarks marks = {};
  } cases[] = {
      {"2", "1", full},
      {"1", "2", "1699999500 1699999400 0 0 "},  // cut behind the streak
      {"0", "0", full},
      {"Erdkunde", "0", full},
      {"1", "1", full, {.no_history = true}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.topic);
    card.topic = c.topic;
    OpenCards({card, WrongCard(2)});
    EXPECT_FALSE(log->CanUndo());
    EXPECT_EQ(log->Undo(), 0);
    (void)Answer(2, Rating::NotKnown, c.marks);
    ExpectIndexesFit(file);
    EXPECT_EQ(log->Undo(), 2);
    EXPECT_EQ(Topic(2), c.topic_after);
    const std::string times = TimeRow(2);
    EXPECT_EQ(times.substr(0, c.times.size()), c.times);
    EXPECT_EQ(std::count(times.begin(), times.end(), ' '), c.marks.no_history ? 64 : 63);
    EXPECT_EQ(YesNoRow(2), card.yes_no_row);
    EXPECT_EQ(Score(2), "1");
    EXPECT_EQ(log->unknown_count(), 1);
    EXPECT_EQ(log->answered(), 0);
    EXPECT_FALSE(log->CanUndo());
    EXPECT_EQ(writer->UnknownCount(), CountUnknown(file));
  }
}

TEST_F(AnswerLogTest, AMissingIndexRowIsReportedAndMended) {
  OpenCards({NewCard(1), NavigationCard(2), {.id = "000003", .score = "9999999999"}});
  EXPECT_FALSE(Answer(3, Rating::Known).index_fault);
  EXPECT_TRUE(Answer(4, Rating::Known).index_fault) << "it had no row in the index";
  ExpectIndexesFit(file);
  (void)Answer(2, Rating::NotKnown);
  (void)log->Undo();
  (void)Answer(2, Rating::Known);
  ASSERT_TRUE(file.cards().GoTo(2) && file.cards().DeleteRow());
  EXPECT_FALSE(log->CanUndo()) << "another card stands there now";
}

}  // namespace
}  // namespace tessaro
