#include <QDateTime>

#include "outlook/card_list_model.h"
#include "outlook/evaluation_texts.h"
#include "outlook/forecast_texts.h"
#include "outlook/number_texts.h"
#include "outlook/summary_texts.h"
#include "tests/outlook/outlook_fixture.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int64_t kToday = 19'675;  // Tuesday, 14.11.2023

std::vector<int> Cards(int count) {
  return std::vector<int>(static_cast<size_t>(count), kFirstCardRow);
}

// Overdue, today, these days and later.
std::vector<DueSpan> Spans(int overdue, int today, const std::vector<int>& days, int width = 1) {
  std::vector<DueSpan> spans = {{.kind = DueSpan::Kind::Overdue, .minutes = overdue / 4.0, .rows = Cards(overdue)},
                                {.kind = DueSpan::Kind::Today, .first_day = kToday, .rows = Cards(today)}};
  int64_t first = kToday + 1;
  for (const int count : days) {
    spans.push_back({.first_day = first, .days = width, .minutes = count / 4.0, .rows = Cards(count)});
    first += width;
  }
  spans.push_back({.kind = DueSpan::Kind::Later, .rows = Cards(7)});
  return spans;
}

TEST(DuePage, SaysWhatComesAndLeavesRoomForTheDays) {
  const LocalDays days;
  const int64_t next = days.HourOf(kToday + 3, 12);
  const struct {
    std::vector<DueSpan> spans;
    int64_t next_due;
    const char16_t* sentence;
    const char16_t* first_label;
    double y_max;
  } cases[] = {{Spans(12, 3, {8, 0}), next, u"Überfällig 12, heute noch 3, morgen 8 (etwa 2 Min.).", u"überf.", 0},
               {Spans(12, 3, {0, 8}), next, u"Überfällig 12, heute noch 3, morgen 0.", u"überf.", 0},
               {Spans(12, 3, {8, 9}, 7), next, u"Überfällig 12, heute noch 3.", u"überf.", 0},
               {Spans(0, 0, {0, 0, 8}), next, u"Nichts fällig. Als Nächstes am Fr, 17.11.2023.", u"überf.", 0},
               {Spans(0, 0, {0}), 0, u"Nichts fällig.", u"überf.", 0},
               {Spans(40, 0, {8}), next, u"Überfällig 40, heute noch 0, morgen 8 (etwa 2 Min.).", u"überf.", 0},
               {Spans(41, 0, {8}), next, u"Überfällig 41, heute noch 0, morgen 8 (etwa 2 Min.).", u"überf. 41", 10},
               {Spans(41, 0, {0}), next, u"Überfällig 41, heute noch 0, morgen 0.", u"überf.", 0}};
  DeckOutlook deck;
  deck.answered.emplace_back();
  for (const auto& c : cases) {
    const PageContent page = DuePage(deck, c.spans, c.next_due, days);
    EXPECT_EQ(page.sentence, QString::fromUtf16(c.sentence)) << page.sentence.toStdString();
    EXPECT_EQ(page.plot.bars.front().label, QString::fromUtf16(c.first_label));
    EXPECT_EQ(page.plot.bars.front().mark.has_value(), c.y_max == 0 && !c.spans[0].rows.empty());
    EXPECT_EQ(page.plot.y_max, c.y_max);
    EXPECT_EQ(page.plot.bars.back().label, u"später 7"_s);
    EXPECT_EQ(page.rows.back().size(), 7U);
  }
}

TEST(CatchUpText, NamesTheDayOfTheLastSession) {
  // The days that half the minutes take, all of them and twice as many.
  const std::tuple<int64_t, int64_t, int64_t, const char16_t*> cases[] = {
      {0, 9, 4, u"aufgeholt am Mi, 22.11. (9 Tage); mit 10 Min. nicht, mit 40 Min. in 4 Tagen"},
      {2, 1, 1, u"aufgeholt am Di, 14.11. (ein Tag); mit 10 Min. in 2 Tagen, mit 40 Min. in einem Tag"},
      {0, 0, 90, u"in 90 Tagen nicht aufgeholt; mit 10 Min. nicht, mit 40 Min. in 90 Tagen"}};
  for (const auto& [half, all, twice, text] : cases) {
    PlanReport report;
    for (const auto& [minutes, days] : {std::pair{10, half}, {20, all}, {40, twice}}) {
      report.curves.push_back(
          {.minutes = static_cast<double>(minutes), .known = {}, .weak_rows = {}, .caught_up = days});
    }
    EXPECT_EQ(CatchUpText(report, kToday), QString::fromUtf16(text));
  }
}

TEST(PauseText, ComesAfterAWeek) {
  DeckOutlook deck;
  deck.now = kNow;
  deck.answered.push_back({TraceOf(ReadAnswers(std::to_string(kNow - 7 * kDay) + " 0 ", "wf")), kFirstCardRow});
  deck.newest = kNow - 7 * kDay;
  // The recall of a first answer after seven days.
  EXPECT_EQ(PauseText(deck), u"Nach der Pause von 7 Tagen wissen Sie voraussichtlich noch 89 %."_s);
  deck.newest += 1;
  EXPECT_EQ(PauseText(deck), QString());
}

TEST(PredictionPage, ShowsOnlyWhatIsSureAndSaysWhenItIsWorse) {
  PredictionReport report;
  report.answers = 100;
  report.known = 99;
  report.predicted = 96;
  report.mean_error = 0.018;
  report.log_loss = 0.45;
  report.usual_loss = 0.5;
  report.classes[6] = {.answers = 19, .known = 9, .predicted = 12.35, .rows = Cards(19)};
  report.classes[8] = {.answers = 20, .known = 18, .predicted = 16.6, .rows = Cards(14)};
  PageContent page = PredictionPage(report);
  EXPECT_EQ(
      page.sentence,
      u"100 Vorhersagen: im Mittel 1,8 Punkte daneben (vorhergesagt 96,0 %, gewusst 99,0 %); 10,0 % besser als Ihr "
      u"Durchschnitt."_s);
  ASSERT_EQ(page.plot.points.size(), 1U) << "too few answers for a point";
  EXPECT_EQ(page.table.rows.size(), 2U);
  EXPECT_EQ(page.plot.x_ticks.back().label, u"100 %"_s);
  EXPECT_EQ(page.rows, std::vector<std::vector<int>>{Cards(14)});
  EXPECT_EQ(page.plot.points[0].text, u"80 bis 90 % vorhergesagt: 20 Antworten auf 14 Karten, gewusst 90,0 %"_s);
  report.usual_loss = 0.4;
  EXPECT_TRUE(PredictionPage(report).sentence.endsWith(u"; 12,5 % schlechter als Ihr Durchschnitt."_s));
  report.usual_loss.reset();
  EXPECT_TRUE(PredictionPage(report).sentence.endsWith(u"gewusst 99,0 %)."_s));
  report.answers = 99;
  EXPECT_TRUE(PredictionPage(report).plot.points.empty());
}

TEST(ActivityPage, SaysWhereOldAnswersAreLost) {
  DeckOutlook deck;
  deck.answered.emplace_back();
  const std::vector<ActivitySpan> spans(30, ActivitySpan{.first_day = kToday});
  EXPECT_FALSE(ActivityPage(deck, spans).note.contains(u"ältere Antworten"_s));
  EXPECT_EQ(ActivityPage(deck, spans).sentence, u"In den letzten 30 Tagen haben Sie keine Antwort gegeben."_s);
  deck.full_histories = 1;
  EXPECT_TRUE(ActivityPage(deck, spans).note.contains(u"ältere Antworten sind nicht mehr gespeichert"_s));
}

class OutlookTexts : public OutlookTest {};

TEST_F(OutlookTexts, ListsSayWhenCardsAreDue) {
  Open({TestCard{}, CardWith({{kNow - kDay, 'w'}}, kDay), CardWith({{kNow - kDay, 'w'}}, 3600),
        CardWith({{kNow - kDay, 'w'}}, 90'000'000'000'000)});
  const CardListModel list(file, CardLines(file, std::make_shared<const DeckOutlook>(Read()), {}, {2, 3, 4, 5}),
                           nullptr);
  const QString day = QDateTime::fromSecsSinceEpoch(kNow).toString(u"dd.MM.yyyy"_s);
  const QString texts[] = {u"neu"_s, day, u"überfällig"_s, u"später"_s};
  for (int line = 0; line < 4; ++line) EXPECT_EQ(list.index(line, CardListModel::Due).data(), texts[line]);
}

TEST_F(OutlookTexts, SayWhatCounts) {
  const int64_t today = days.StartOf(days.DayOf(kNow));
  Open({CardWith({{today - 1, 'w'}, {today, 'f'}, {today + 1, 'w'}}), CardWith({{today - 1, 'w'}}), TestCard{},
        CardWith({{today, 'w'}, {kNow + 1, 'w'}})});
  EXPECT_EQ(TodayLine(file, kNow, days), u"Heute: 2 Antworten, 50 % gewusst"_s);
  EXPECT_EQ(TodayLine(file, kNow + 2 * kDay, days), QString());
  EXPECT_EQ(RecallLine(file, 4, kStandardWeights, kNow), QString()) << "a new card";
  EXPECT_EQ(RecallLine(file, 5, kStandardWeights, kNow), QString()) << "answered later than now";
  // Known once, a first answer: the first of the worked examples.
  EXPECT_EQ(RecallLine(file, 3, kStandardWeights, today - 1 + 600),
            u"Gewusst jetzt: 96 % · in 7 Tagen 89 % · in 30 Tagen 84 %"_s);
}

TEST(NumberTexts, AreGerman) {
  EXPECT_EQ(NumberText(int64_t{1842}), u"1\u202F842"_s);
  EXPECT_EQ(PercentText(0.8614, 1), u"86,1 %"_s);
  EXPECT_EQ(SpanText(59.4), u"59 Sek."_s);
  EXPECT_EQ(SpanText(59.6), u"1 Min."_s);
  EXPECT_EQ(SpanText(3600), u"1 Std."_s);
  EXPECT_EQ(SpanText(3 * 3600 + 12 * 60), u"3 Std. 12 Min."_s);
  EXPECT_EQ(DayText(0), u"Do, 1.1."_s);
}

}  // namespace
}  // namespace tessaro
