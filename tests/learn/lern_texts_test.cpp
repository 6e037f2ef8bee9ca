#include "learn/lern_texts.h"

#include <gtest/gtest.h>

#include "learn/interval_plot.h"
#include "learn/shortcut_code.h"
#include "tests/support/times.h"
#include "widgets/side_look.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

TEST(LearnTexts, SpansInTheirThreeForms) {
  const std::tuple<int64_t, QString, QString, QString> cases[] = {
      {0, u"gleich wieder"_s, u"1 Min."_s, u"1 Minute"_s},
      {59, u"gleich wieder"_s, u"1 Min."_s, u"1 Minute"_s},
      {60, u"etwa 1 Minute"_s, u"1 Min."_s, u"1 Minute"_s},
      {61, u"etwa 1 Minute"_s, u"2 Min."_s, u"2 Minuten"_s},
      {kHour - 1, u"etwa 60 Minuten"_s, u"1 Std."_s, u"1 Stunde"_s},
      {3 * kHour, u"etwa 3 Stunden"_s, u"3 Std."_s, u"3 Stunden"_s},
      {kDay - 1, u"etwa 24 Stunden"_s, u"1 Tag"_s, u"1 Tag"_s},
      {kDay * 5 / 2, u"etwa 3 Tage"_s, u"3 Tagen"_s, u"2 Tagen 12 Stunden"_s},
      {61 * kHour - 61, u"etwa 3 Tage"_s, u"3 Tagen"_s, u"2 Tagen 13 Stunden"_s},
      {89 * kDay, u"etwa 89 Tage"_s, u"89 Tagen"_s, u"89 Tagen"_s},
      {90 * kDay, u"etwa 3 Monate"_s, u"90 Tagen"_s, u"90 Tagen"_s},
      {3 * 365 * kDay, u"etwa 3 Jahre"_s, u"1095 Tagen"_s, u"1095 Tagen"_s},
  };
  for (const auto& [seconds, about, next, in_words] : cases) {
    EXPECT_EQ(ForecastText(seconds).toStdString(), about.toStdString()) << seconds;
    EXPECT_EQ(ShortSpan(seconds).toStdString(), next.toStdString()) << seconds;
    EXPECT_EQ(SpanInWords(seconds).toStdString(), in_words.toStdString()) << seconds;
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
  const AnswerHistory history = ParseHistory("1700090830 1700004430 1700000830 1700000030 1700000000", "wwfww");
  const PlotContent content = IntervalContent(ForecastRetention(history, 0));
  QStringList texts;
  for (const PlotPoint& point : content.points) {
    texts += u"%1%2 %3"_s.arg(point.text.front()).arg(point.x).arg(point.text.section(u": "_s, 1));
  }
  for (const PlotLine& line : content.lines) texts += u"%1-%2"_s.arg(line.points[0].x()).arg(line.points[1].x());
  EXPECT_EQ(texts.join(u' '), u"11 30 Sek. 12 1 Tag 13 2 Tage 22 1 Tag 23 1 Tag 1-3"_s);
}

TEST(ShortcutCode, KeysThatTheProgramNeedsAreKnown) {
  for (const QKeyCombination key : {Qt::CTRL | Qt::Key_Z, Qt::CTRL | Qt::Key_0, QKeyCombination(Qt::Key_F11),
                                    QKeyCombination(Qt::Key_Space), Qt::SHIFT | Qt::Key_Backtab}) {
    EXPECT_TRUE(IsProgramKey(key)) << KeyName(key).toStdString();
  }
  for (const QKeyCombination key : {QKeyCombination(Qt::Key_Z), Qt::ALT | Qt::Key_Z, QKeyCombination(Qt::Key_Return)})
    EXPECT_FALSE(IsProgramKey(key)) << KeyName(key).toStdString();
}

TEST(ShortcutCode, MapsStoredNumbersToKeysAndBack) {
  const std::tuple<int, QKeyCombination, QString> cases[] = {
      {8, Qt::Key_Backspace, u"Rücktaste"_s},
      {13, Qt::Key_Return, u"Enter"_s},
      {46, Qt::Key_Delete, u"Entf"_s},
      {135, Qt::Key_F24, u"F24"_s},
      {105, QKeyCombination(Qt::KeypadModifier, Qt::Key_9), u"Num 9"_s},
      {187, Qt::Key_Plus, u"+"_s},
      {192, Qt::Key_Odiaeresis, u"Ö"_s},
      {0x2000 + 112, QKeyCombination(Qt::ShiftModifier, Qt::Key_F1), u"Umschalt+F1"_s},
      {0x4000 + 46, QKeyCombination(Qt::ControlModifier, Qt::Key_Delete), u"Strg+Entf"_s},
      {0xE000 + 'A', QKeyCombination(Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier, Qt::Key_A),
       u"Strg+Alt+Umschalt+A"_s},
  };
  for (const auto& [code, key, name] : cases) {
    SCOPED_TRACE(code);
    EXPECT_EQ(KeyFromShortcutCode(code), key);
    EXPECT_EQ(ShortcutCodeFromKey(key), code);
    EXPECT_EQ(KeyName(key), name);
  }
}

TEST(ShortcutCode, RefusesWhatIsNoShortcut) {
  for (const int64_t code : {INT64_MIN, INT64_C(-1), INT64_C(0), INT64_C(1), INT64_C(0x100 + 13), INT64_C(0x10000 + 13),
                             INT64_C(0x2000), INT64_MAX}) {
    EXPECT_FALSE(KeyFromShortcutCode(code)) << code;
  }
  const std::pair<QKeyCombination, int> keys[] = {
      {Qt::Key_VolumeUp, 0},
      {Qt::Key_Shift, 0},
      {QKeyCombination(Qt::KeypadModifier, Qt::Key_Enter), 13},  // of the number block, without a code of its own
  };
  for (const auto& [key, code] : keys) EXPECT_EQ(ShortcutCodeFromKey(key), code);
}

TEST(SideLook, FrontAndBackHaveTheirOwnFontsAndColours) {
  IniFile settings;
  settings.Parse(
      "[FontV]\nName=Courier\nSize=12\nColor=255\nPitch=2\n[FontH]\nName=\n[ColorV]\nColor=16777164\n"
      "[ColorH]\nColor=-16777211\n[ClText]\nH=32768\n");
  const SideLook front = ReadSideLook(settings, SideName::Front);
  EXPECT_EQ(front.font.family() + QString::number(front.font.pointSize()), u"Courier12"_s);
  EXPECT_TRUE(front.font.fixedPitch() && front.text == QColor(255, 0, 0));
  EXPECT_EQ(front.paper, QColor(0xCC, 0xFF, 0xFF));
  const SideLook back = ReadSideLook(settings, SideName::Back);
  EXPECT_EQ(back.font.family(), u"MS Sans Serif"_s);
  EXPECT_EQ(back.text, QColor(0, 128, 0));
  EXPECT_GT(back.paper.lightness(), 230) << "a system colour gives the near-white default";
}

}  // namespace
}  // namespace tessaro
