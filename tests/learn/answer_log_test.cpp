#include "learn/answer_log.h"

#include <limits>

#include "cards/figures.h"
#include "learn/parameter_entry.h"
#include "learn/statistics_texts.h"
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
    EXPECT_TRUE(file.changed() == report.logged && log->answered() == (report.logged ? 1 : 0));
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
    EXPECT_TRUE(log->unknown_count() == 1 && log->answered() == 0 && !log->CanUndo());
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

// Letters, newest first, and the times of the answers as distances from one moment.
AnswerHistory History(const std::string& letters, const std::vector<int64_t>& ago) {
  AnswerHistory history = EmptyHistory();
  for (size_t i = 0; i < letters.size(); ++i) history.letters[i] = letters[i];
  for (size_t i = 0; i < ago.size(); ++i) history.times[i] = 1'700'000'000 - ago[i];
  return history;
}

TEST(Retention, WorkedExamples) {
  const std::tuple<const char*, std::string, std::vector<int64_t>, int64_t, int64_t> cases[] = {
      {"first answer", "w", {0}, 0, 1},
      {"first answer with a day button", "w", {0}, 604800, 604800},
      {"one interval", "ww", {0, 1000}, 0, 1000},
      {"one interval, ended by an empty slot", "www", {0, 1000}, 0, 1000},
      {"growing intervals", "wwww", {0, 400, 600, 700}, 0, 533},
      {"shrinking intervals give their mean", "wwww", {0, 100, 300, 700}, 0, 233},
      {"the floor stands above the forecast", "wwww", {0, 400, 600, 700}, 86400, 86400},
      {"the floor stands below it", "wwww", {0, 400, 600, 700}, 500, 533},
      {"after a wrong answer", "wf", {0, 50}, 0, 1},
      {"one interval since a wrong answer, older ones count", "wwfwww", {0, 300, 400, 500, 600, 900}, 0, 233},
      {"both lines differ", "wwwfwww", {0, 300, 400, 500, 600, 700, 1000}, 0, 350},
      {"two answers in one second", "www", {0, 0, 50}, 0, 50},
      {"only in one second", "www", {0, 0, 0}, 0, 1},
      {"a clock set back gives a negative interval", "ww", {0, -80}, 0, 1},
      {"the score is bounded", "ww", {0, 1'600'000'000}, 0, kMaxScore},
      {"times beyond all numbers", "ww", {0, std::numeric_limits<int64_t>::max()}, 0, kMaxScore},
      {"no history kept: newest is wrong", "fww", {0, 1000, 2000}, 86400, 1},
      {"no history kept: a broken row", "xww", {0, 1000, 2000}, 0, 1},
      {"no history kept: the streak line reads over broken letters", "wwxww", {0, 300, 400, 500, 520}, 0, 420},
  };
  for (const auto& [what, letters, ago, min_retention, score] : cases)
    EXPECT_EQ(ForecastRetention(History(letters, ago), min_retention).score, score) << what;
}

TEST(Retention, TakesInAFullHistory) {
  AnswerHistory full = ParseHistory("", std::string(64, 'w'));
  for (size_t i = 0; i < full.times.size(); ++i) full.times[i] = 9000 - static_cast<int64_t>(i) * 60;
  const RetentionForecast of_full = ForecastRetention(full, 0);
  EXPECT_EQ(std::tuple(of_full.all.count, of_full.streak.count, of_full.score), std::tuple(63, 63, 60));
}

TEST(Retention, BrokenHistoriesDoNoHarm) {
  std::mt19937_64 random(3);
  for (int i = 0; i < 2000; ++i) {
    AnswerHistory history;
    for (auto& letter : history.letters) letter = "wwwf\0x"[random() % 6];
    for (auto& time : history.times) time = static_cast<int64_t>(random() >> (random() % 64));
    const int64_t score = ForecastRetention(history, static_cast<int64_t>(random())).score;
    EXPECT_TRUE(score >= 1 && score <= kMaxScore);
  }
}

TEST(ParameterEntry, EveryFieldRefusesWhatIsOutsideItsRange) {
  // Good and bad texts of each field in the dialog's order, beside a minimum width of 5.
  const std::pair<std::vector<std::string>, std::vector<std::string>> fields[] = {
      {{"2", "50"}, {"1", "zwei", ""}},
      {{"5"}, {"1", "4"}},
      {{"5", "50"}, {"4", "51"}},
      {{"2", " 20 "}, {"1", "21"}},
      {{"10", "2000"}, {"9", "2001", "99999999999999999999"}},
      {{"1.0", "1,0", "1,25", "4.0"}, {"0.99", "4.01", "nan", "1.5x"}},
      {{"14", "500"}, {"13", "501"}},
      {{"1"}, {"0"}},
  };
  for (size_t field = 0; field < kParameterFields; ++field) {
    ParameterTexts texts = ParameterTextsOf({{.min_width = 5, .max_width = 50}, 1});
    for (const std::string& text : fields[field].first) {
      texts[field] = text;
      EXPECT_FALSE(FindWrong(texts)) << field << " '" << text << "'";
    }
    for (const std::string& text : fields[field].second) {
      texts[field] = text;
      EXPECT_EQ(FindWrong(texts), static_cast<ParameterField>(field)) << text;
    }
  }
}

TEST(ParameterEntry, EverySuggestionIsAGoodEntry) {
  for (int answers = 0; answers < 27; ++answers) {
    const LearningParameters p = SuggestParameters(
        static_cast<Memory>(answers % 3), static_cast<Memory>(answers / 3 % 3), static_cast<CardKind>(answers / 9));
    EXPECT_FALSE(FindWrong(ParameterTextsOf({p, 1}))) << answers;
  }
  const LearningParameters difficult = SuggestParameters(Memory::Weak, Memory::Weak, CardKind::Difficult);
  EXPECT_LT(difficult.max_width, SuggestParameters(Memory::Strong, Memory::Weak, CardKind::Difficult).max_width);
  const LearningParameters facts = SuggestParameters(Memory::Weak, Memory::Weak, CardKind::ShortFacts);
  EXPECT_GT(facts.max_width, 2 * difficult.max_width);
  EXPECT_LT(facts.check_every, difficult.check_every) << "they are checked more often";
}

TEST(StatisticsTexts, FiguresAndTitleHaveTheirFixedForms) {
  AnswerStatistics statistics;
  statistics.history = ParseHistory("1700000700 1700000300 1700000100 1700000000", "wwww" + std::string(60, 'f'));
  statistics.forecast = ForecastRetention(statistics.history, 0);
  statistics.score = statistics.forecast->score;
  const StatisticsTexts texts = TextsOf(statistics);
  const auto& newest = texts.history.at(0);
  EXPECT_EQ(newest.number + newest.time + newest.interval, " 11700000700       400");
  EXPECT_EQ(texts.history.at(3).interval, "         0") << "the oldest answer has no older one";
  EXPECT_TRUE(!texts.history.at(3).empty && texts.history.at(4).empty);
  ASSERT_EQ(texts.trends[0].rows.size(), 3U);
  const auto& trend = texts.trends[0];
  EXPECT_EQ(trend.rows[0].x + trend.rows[0].interval, " 3       400");
  EXPECT_EQ(trend.line + trend.prediction, " y = -66.67 + 150.00 x x = 4;     533.33");
  EXPECT_EQ(SideTitle("<b>Frage</b><br>" + std::string(50, 'a')), "Frage " + std::string(29, 'a'));
}

TEST(StatisticsTexts, IntervalsAreSaidInDaysForPeople) {
  const std::pair<int64_t, const char*> cases[] = {
      {0, ""}, {400, "< 0,01"}, {432, "0,01"}, {86400 * 5 / 2, "2,50"}, {86400 * 365, "365"}, {-86400, "-1,00"}};
  for (const auto& [interval, days] : cases) {
    AnswerStatistics statistics;
    statistics.history.times[0] = 1'700'000'000;
    statistics.history.times[1] = 1'700'000'000 - interval;
    EXPECT_EQ(TextsOf(statistics).history.at(0).days, days) << interval;
  }
}

}  // namespace
}  // namespace tessaro
