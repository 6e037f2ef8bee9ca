#include "learn/lern_texts.h"

#include <gtest/gtest.h>

#include "learn/interval_plot.h"
#include "learn/retention.h"
#include "learn/shortcut_code.h"
#include "tests/support/times.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

TEST(LearnTexts, SpansInTheirThreeForms) {
  const struct {
    int64_t seconds;
    QString about, next, in_words;
  } cases[] = {
      {0, u"gleich wieder"_s, u"1 Min."_s, u"1 Minute"_s},
      {59, u"gleich wieder"_s, u"1 Min."_s, u"1 Minute"_s},
      {60, u"etwa 1 Minute"_s, u"1 Min."_s, u"1 Minute"_s},
      {61, u"etwa 1 Minute"_s, u"2 Min."_s, u"2 Minuten"_s},
      {kHour - 1, u"etwa 60 Minuten"_s, u"1 Std."_s, u"1 Stunde"_s},
      {3 * kHour, u"etwa 3 Stunden"_s, u"3 Std."_s, u"3 Stunden"_s},
      {kDay - 1, u"etwa 24 Stunden"_s, u"1 Tag"_s, u"1 Tag"_s},
      {kDay * 5 / 2, u"etwa 3 Tage"_s, u"3 Tagen"_s, u"2 Tagen 12 Stunden"_s},
      {89 * kDay, u"etwa 89 Tage"_s, u"89 Tagen"_s, u"89 Tagen"_s},
      {90 * kDay, u"etwa 3 Monate"_s, u"90 Tagen"_s, u"90 Tagen"_s},
      {3 * 365 * kDay, u"etwa 3 Jahre"_s, u"1095 Tagen"_s, u"1095 Tagen"_s},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ForecastText(c.seconds).toStdString(), c.about.toStdString()) << c.seconds;
    EXPECT_EQ(ShortSpan(c.seconds).toStdString(), c.next.toStdString()) << c.seconds;
    EXPECT_EQ(SpanInWords(c.seconds).toStdString(), c.in_words.toStdString()) << c.seconds;
  }
  EXPECT_EQ(ForecastText(std::nullopt), QString());
}

TEST(LearnTexts, WhatAnAnswerCameTo) {
  const std::pair<GivenAnswer, QString> cases[] = {
      {{.rating = Rating::Known, .logged = true, .due_in = 3 * kDay}, u"gewusst, wieder in 3 Tagen"_s},
      {{.rating = Rating::Known, .logged = true, .due_in = 1}, u"gewusst, gleich wieder"_s},
      {{.rating = Rating::Known, .logged = true, .due_in = {}}, u"gewusst"_s},
      {{.rating = Rating::Known, .logged = false, .due_in = {}}, u"gewusst, vorzeitig und daher nicht gezählt"_s},
      {{.rating = Rating::NotKnown, .logged = true, .due_in = {}}, u"nicht gewusst, kommt bald wieder"_s},
  };
  for (const auto& [answer, text] : cases) {
    EXPECT_EQ(AnswerText(answer, "<b>la mesa</b><br>"), u"la mesa: "_s + text) << text.toStdString();
    EXPECT_EQ(AnswerText(answer, "<img src=\"x.png\">"), text) << text.toStdString();
  }
  EXPECT_EQ(AnswerText(cases[0].first, std::string(36, 'a')).section(u':', 0, 0), QString(34, u'a') + u'…');
}

TEST(IntervalPlot, ShowsBothSeriesWithTheirForecasts) {
  EXPECT_TRUE(IntervalContent(std::nullopt).points.empty());
  const AnswerHistory history = ParseHistory("1700090830 1700004430 1700000830 1700000030 1700000000", "wwfww");
  const PlotContent content = IntervalContent(ForecastRetention(history, 0));
  QStringList texts;
  for (const PlotPoint& point : content.points) texts += point.text.section(u": "_s, 1);
  EXPECT_EQ(texts.join(u' '), u"30 Sek. 1 Tag 2 Tage 1 Tag 1 Tag"_s);
}

TEST(ShortcutCode, KeysThatTheProgramNeedsAreKnown) {
  for (const QKeyCombination key : {Qt::CTRL | Qt::Key_Z, Qt::CTRL | Qt::Key_0, QKeyCombination(Qt::Key_F11),
                                    QKeyCombination(Qt::Key_Space), Qt::SHIFT | Qt::Key_Backtab}) {
    EXPECT_TRUE(IsProgramKey(key)) << KeyName(key).toStdString();
  }
  for (const QKeyCombination key : {QKeyCombination(Qt::Key_Z), Qt::ALT | Qt::Key_Z, QKeyCombination(Qt::Key_Return)}) {
    EXPECT_FALSE(IsProgramKey(key)) << KeyName(key).toStdString();
  }
}

}  // namespace
}  // namespace tessaro
