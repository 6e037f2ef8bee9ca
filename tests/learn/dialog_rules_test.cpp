#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "learn/parameter_entry.h"
#include "learn/statistics_texts.h"

namespace tessaro {
namespace {

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
  EXPECT_EQ(texts.history.at(0).number, " 1");
  EXPECT_EQ(texts.history.at(0).time, "1700000700");
  EXPECT_EQ(texts.history.at(3).interval, "         0") << "the oldest answer has no older one";
  EXPECT_TRUE(!texts.history.at(3).empty && texts.history.at(4).empty);
  ASSERT_EQ(texts.trends[0].rows.size(), 3U);
  EXPECT_EQ(texts.trends[0].rows[0].x, " 3");
  EXPECT_EQ(texts.trends[0].rows[0].interval, "       400");
  EXPECT_EQ(texts.trends[0].line, " y = -66.67 + 150.00 x");
  EXPECT_EQ(texts.trends[0].prediction, " x = 4;     533.33");
  EXPECT_EQ(StatisticsTitle("<b>Frage</b><br>weiter", std::string(50, 'a')), "Frage weiter | " + std::string(35, 'a'));
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
