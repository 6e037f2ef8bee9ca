#include "outlook/forecast_texts.h"

#include <algorithm>
#include <cmath>

#include "outlook/evaluation_texts.h"
#include "outlook/number_texts.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

QString MinutesText(double minutes) {
  return SpanText(minutes * 60);
}

QString NameOf(const DueSpan& span) {
  switch (span.kind) {
    case DueSpan::Kind::Overdue:
      return u"überfällig"_s;
    case DueSpan::Kind::Today:
      return u"heute"_s;
    case DueSpan::Kind::Later:
      return u"später"_s;
    case DueSpan::Kind::Days:
      break;
  }
  if (span.days == 1) return DayText(span.first_day);
  return u"%1 bis %2"_s.arg(ShortDayText(span.first_day), ShortDayText(span.first_day + span.days - 1));
}

QString LabelOf(const DueSpan& span) {
  if (span.kind == DueSpan::Kind::Overdue) return u"überf."_s;
  return span.kind == DueSpan::Kind::Days ? ShortDayText(span.first_day) : NameOf(span);
}

QString DueSentence(const std::vector<DueSpan>& spans, int64_t next_due, const LocalDays& days) {
  const auto count = [&](size_t span) { return static_cast<int64_t>(spans[span].rows.size()); };
  if (count(0) + count(1) > 0) {
    QString text = u"Überfällig %1, heute noch %2"_s.arg(NumberText(count(0)), NumberText(count(1)));
    // Of a span of a week nothing can be said about tomorrow.
    if (spans[2].days > 1) return text + u"."_s;
    text += u", morgen %1"_s.arg(NumberText(count(2)));
    if (count(2) > 0) text += u" (etwa %1)"_s.arg(MinutesText(spans[2].minutes));
    return text + u"."_s;
  }
  return next_due == 0 ? u"Nichts fällig."_s
                       : u"Nichts fällig. Als Nächstes am %1."_s.arg(FullDayText(days.DayOf(next_due)));
}

// Beside a backlog many times the fullest day all days would look small: the axis ends above that day.
void CutBacklog(const std::vector<DueSpan>& spans, PlotContent& plot) {
  constexpr double kMostTimes = 5;
  double fullest = 0;
  for (const DueSpan& span : spans) {
    const bool is_day = span.kind == DueSpan::Kind::Today || span.kind == DueSpan::Kind::Days;
    if (is_day) fullest = std::max(fullest, static_cast<double>(span.rows.size()));
  }
  if (fullest == 0 || static_cast<double>(spans[0].rows.size()) <= kMostTimes * fullest) return;
  plot.y_step = RoundStep(fullest, 4, true);
  plot.y_max = (std::floor(fullest / plot.y_step) + 1) * plot.y_step;
}

// A bar with its line in the table and its cards. One that does not show its height has its number in the label: a
// backlog that is cut off, and what comes later than all days.
void AddSpan(const DueSpan& span, PageContent& page) {
  const auto count = static_cast<int64_t>(span.rows.size());
  const QString name = NameOf(span);
  const bool overdue = span.kind == DueSpan::Kind::Overdue;
  const bool later = span.kind == DueSpan::Kind::Later;
  const bool numbered = later || (overdue && page.plot.y_max > 0);
  PlotBar bar{LabelOf(span),
              {{later ? 0 : static_cast<double>(count), overdue ? PlotRole::NotKnown : PlotRole::Known}},
              count == 0 ? u"%1: keine Karten"_s.arg(name)
                         : u"%1: %2, etwa %3"_s.arg(name, CardsText(count), MinutesText(span.minutes))};
  if (numbered) bar.label += u" %1"_s.arg(NumberText(count));
  if (!numbered && count > 0) bar.mark = span.minutes;
  page.plot.bars.push_back(std::move(bar));
  page.table.rows.push_back({name, NumberText(count), MinutesText(span.minutes)});
  page.rows.push_back(span.rows);
}

// A curve with its column in the table and the cards that are weak in the end.
void AddCurve(const PlanReport& report, size_t place, int64_t today, PageContent& page) {
  constexpr Qt::PenStyle kStyles[] = {Qt::DotLine, Qt::DashLine, Qt::SolidLine, Qt::DashDotLine};
  const PlanCurve& curve = report.curves[place];
  const bool learns = place > 0;
  const QString name = learns ? u"%1 am Tag"_s.arg(MinutesText(curve.minutes)) : u"ohne Lernen"_s;
  PlotLine line;
  line.role = learns ? PlotRole::Known : PlotRole::New;
  line.style = kStyles[place];
  line.label = learns ? MinutesText(curve.minutes) : name;
  for (size_t k = 0; k < curve.known.size(); ++k) {
    line.points.emplace_back(static_cast<double>(report.days[k]), curve.known[k]);
  }
  line.text = u"%1: am %2 wissen Sie voraussichtlich %3; unter 80 %: %4"_s.arg(
      name, ShortDayText(today + report.days.back()), CardsText(std::llround(curve.known.back())),
      CardsText(static_cast<int64_t>(curve.weak_rows.size())));
  page.plot.lines.push_back(std::move(line));
  page.table.headers << name;
  page.rows.push_back(curve.weak_rows);
}

// The lines of the table, and five dates along the axis.
void AddDates(const PlanReport& report, int64_t today, PageContent& page) {
  for (size_t k = 0; k < report.days.size(); ++k) {
    QStringList row = {k == 0 ? u"jetzt"_s : DayText(today + report.days[k])};
    for (const PlanCurve& curve : report.curves) row << RoundedText(curve.known[k]);
    page.table.rows.push_back(row);
  }
  for (int tick = 0; tick <= 4; ++tick) {
    const int64_t at = report.days.back() * tick / 4;
    page.plot.x_ticks.push_back({static_cast<double>(at), at == 0 ? u"heute"_s : ShortDayText(today + at)});
  }
}

}  // namespace

PageContent DuePage(const DeckOutlook& deck, const std::vector<DueSpan>& spans, int64_t next_due,
                    const LocalDays& days) {
  PageContent page;
  page.plot.name = u"Fällige Karten"_s;
  page.plot.empty = u"Noch keine Karte beantwortet. Nach den ersten Antworten steht hier, was fällig wird."_s;
  page.note = StandText(deck);
  if (deck.answered.empty()) {
    page.sentence = page.plot.empty;
    return page;
  }
  page.sentence = DueSentence(spans, next_due, days);
  page.plot.y_title = u"Karten"_s;
  page.plot.right_title = u"◆ Min."_s;
  page.table.headers = {u"Fällig"_s, u"Karten"_s, u"etwa"_s};
  CutBacklog(spans, page.plot);
  for (const DueSpan& span : spans) AddSpan(span, page);
  return page;
}

QString CatchUpText(const PlanReport& report, int64_t today) {
  const PlanCurve& half = report.curves[0];
  const PlanCurve& all = report.curves[1];
  const PlanCurve& twice = report.curves[2];
  const auto when = [](const PlanCurve& curve) {
    if (curve.caught_up == 0) return u"mit %1 nicht"_s.arg(MinutesText(curve.minutes));
    return u"mit %1 in %2"_s.arg(MinutesText(curve.minutes),
                                 curve.caught_up == 1 ? u"einem Tag"_s : u"%1 Tagen"_s.arg(curve.caught_up));
  };
  const QString first = all.caught_up == 0 ? u"in 90 Tagen nicht aufgeholt"_s
                                           : u"aufgeholt am %1 (%2)"_s.arg(
                                                 DayText(today + all.caught_up - 1),
                                                 all.caught_up == 1 ? u"ein Tag"_s : u"%1 Tage"_s.arg(all.caught_up));
  return u"%1; %2, %3"_s.arg(first, when(half), when(twice));
}

QString PauseText(const DeckOutlook& deck) {
  constexpr int64_t kShortest = 7;
  const int64_t pause = (deck.now - deck.newest) / 86'400;
  if (deck.answered.empty() || pause < kShortest) return {};
  double known = 0;
  for (const CardTrace& trace : deck.answered) known += RecallAt(trace, deck.weights, deck.now);
  return u"Nach der Pause von %1 Tagen wissen Sie voraussichtlich noch %2."_s.arg(
      NumberText(pause), PercentText(known / static_cast<double>(deck.answered.size())));
}

PageContent PlanPage(const DeckOutlook& deck, const PlanReport& report, int64_t today) {
  PageContent page;
  page.plot.name = u"Gewusste Karten bis zur Prüfung"_s;
  page.plot.empty = u"In dieser Kartei gibt es noch keine Karten zum Lernen."_s;
  page.note = StandText(deck);
  if (report.partial) {
    page.note += u" · Gelernt werden die ersten 20 000 Karten des Lernindex, die anderen nur vergessen"_s;
  }
  if (deck.counted() == 0) {
    page.sentence = page.plot.empty;
    return page;
  }
  const int64_t last = report.days.back();
  page.plot.y_title = u"Karten"_s;
  page.plot.from_zero = false;
  page.plot.x_max = static_cast<double>(std::max<int64_t>(last, 1));
  page.table.headers = {u"Tag"_s};
  for (size_t i = 0; i < report.curves.size(); ++i) AddCurve(report, i, today, page);
  AddDates(report, today, page);
  const double known = report.curves[2].known.back();
  page.sentence = u"Am %1 wissen Sie voraussichtlich %2 von %3 (%4)."_s.arg(
      ShortDayText(today + last), RoundedText(known), NumberText(deck.counted()),
      PercentText(known / static_cast<double>(deck.counted())));
  return page;
}

}  // namespace tessaro
