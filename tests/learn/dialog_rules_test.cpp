#include <gtest/gtest.h>

#include "learn/learning_keys.h"
#include "learn/parameter_entry.h"
#include "learn/statistics_texts.h"
#include "store/ini_file.h"

namespace tessaro {
namespace {

TEST(ParameterEntry, EveryFieldRefusesWhatIsOutsideItsRange) {
  struct Case {
    ParameterField field;
    const char* text;
    bool good;
  };
  const Case cases[] = {
      {ParameterField::MinWidth, "1", false},
      {ParameterField::MinWidth, "2", true},
      {ParameterField::MinWidth, "zwei", false},
      {ParameterField::MinWidth, "", false},
      {ParameterField::MaxWidth, "1", false},
      {ParameterField::MaxWidth, "2", true},
      {ParameterField::SwitchCount, "4", false},
      {ParameterField::SwitchCount, "5", true},
      {ParameterField::SwitchCount, "50", true},
      {ParameterField::SwitchCount, "51", false},
      {ParameterField::CheckEvery, "1", false},
      {ParameterField::CheckEvery, " 20 ", true},
      {ParameterField::CheckRun, "9", false},
      {ParameterField::CheckRun, "2000", true},
      {ParameterField::RetentionWeight, "0.99", false},
      {ParameterField::RetentionWeight, "1,25", true},
      {ParameterField::RetentionWeight, "4.0", true},
      {ParameterField::RetentionWeight, "4.01", false},
      {ParameterField::RetentionWeight, "nan", false},
      {ParameterField::RetentionWeight, "1.5x", false},
      {ParameterField::MaxDays, "13", false},
      {ParameterField::MaxDays, "500", true},
      {ParameterField::CheckPosition, "0", false},
      {ParameterField::CheckPosition, "1", true},
      {ParameterField::CheckRun, "99999999999999999999", false},
  };
  for (const Case& c : cases) {
    ParameterTexts texts = ParameterTextsOf({});
    texts[static_cast<size_t>(c.field)] = c.text;
    EXPECT_EQ(IsGood(texts, c.field), c.good) << static_cast<int>(c.field) << " '" << c.text << "'";
    EXPECT_EQ(FindWrong(texts).has_value(), !c.good) << "'" << c.text << "'";
  }
}

TEST(ParameterEntry, MaximumWidthMayNotLieBelowTheMinimum) {
  ParameterTexts texts = ParameterTextsOf({});
  texts[0] = "60";
  EXPECT_EQ(FindWrong(texts), ParameterField::MaxWidth);
}

TEST(ParameterEntry, TextsAndParametersAreTheSameThing) {
  ParameterEntry entry;
  entry.parameters = {3, 70, 8, 4, 250, 1.25, 100 * 86400};
  entry.check_position = 17;
  const ParameterTexts texts = ParameterTextsOf(entry);
  EXPECT_EQ(ParameterTextsOf(EntryOf(texts)), texts);
  EXPECT_EQ(EntryOf(texts).parameters.max_time, 100 * 86400);
}

TEST(ParameterEntry, EverySuggestionIsAGoodEntry) {
  for (int answers = 0; answers < 27; ++answers) {
    const LearningParameters p = SuggestParameters(
        static_cast<Memory>(answers % 3), static_cast<Memory>(answers / 3 % 3), static_cast<CardKind>(answers / 9));
    EXPECT_FALSE(FindWrong(ParameterTextsOf({p, 1}))) << answers;
  }
  EXPECT_LT(SuggestParameters(Memory::Weak, Memory::Weak, CardKind::Difficult).max_width,
            SuggestParameters(Memory::Strong, Memory::Weak, CardKind::Difficult).max_width);
}

TEST(LearningKeys, StoredKeysBelowOneLeaveTheStandardOnes) {
  IniFile settings;
  settings.Parse("[LShortCuts]\nturn=0\nknow=-3\nlearn=16430\nback=x\n");
  EXPECT_EQ(ReadLearningKeys(settings), (LearningKeys{8, 13, 16430, 35, 36}));
  WriteLearningKeys(kStandardKeys, settings);
  EXPECT_EQ(settings.GetInt("LShortCuts", "home", 0), 36);
  EXPECT_EQ(ReadLearningKeys(settings), kStandardKeys);
}

TEST(LearningKeys, TheFirstTwoCommandsWithOneKeyAreFound) {
  EXPECT_FALSE(FindDoubledKey(kStandardKeys));
  EXPECT_EQ(FindDoubledKey({8, 13, 46, 13, 8}), std::pair(LearningCommand::Turn, LearningCommand::Home));
}

TEST(StatisticsTexts, FiguresHaveTheirFixedForms) {
  AnswerStatistics statistics;
  statistics.history = ParseHistory("1700000700 1700000300 1700000100 1700000000", "wwww" + std::string(60, 'f'));
  statistics.forecast = ForecastRetention(statistics.history, 0);
  statistics.score = statistics.forecast->score;
  const StatisticsTexts texts = TextsOf(statistics);
  ASSERT_EQ(texts.history.size(), 64U);
  EXPECT_EQ(texts.history[0].number, " 1");
  EXPECT_EQ(texts.history[0].time, "1700000700");
  EXPECT_EQ(texts.history[2].interval, "       100");
  EXPECT_EQ(texts.history[3].interval, "         0") << "the oldest answer has no older one";
  ASSERT_EQ(texts.trends[0].rows.size(), 3U);
  EXPECT_EQ(texts.trends[0].rows[0].x, " 3");
  EXPECT_EQ(texts.trends[0].rows[0].interval, "       400");
  EXPECT_EQ(texts.trends[0].line, " y = -66.67 + 150.00 x");
  EXPECT_EQ(texts.trends[0].prediction, " x = 4;     533.33");
  EXPECT_EQ(texts.score, "533;   0:00:08:53");
}

TEST(StatisticsTexts, TitleShowsBothSidesWithoutMarkup) {
  EXPECT_EQ(StatisticsTitle("<b>Frage</b><br>weiter", std::string(50, 'a')),
            "Karte: Frage weiter | " + std::string(35, 'a'));
}

}  // namespace
}  // namespace tessaro
