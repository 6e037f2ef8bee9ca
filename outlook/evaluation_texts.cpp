#include "outlook/evaluation_texts.h"

#include <QDateTime>

#include "outlook/number_texts.h"
#include "platform/saturating.h"
#include "settings/side_settings.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

const QStringList& RecallLabels() {
  static const QStringList kLabels = {u"<50"_s,   u"50-60"_s, u"60-70"_s,   u"70-80"_s,
                                      u"80-90"_s, u"90-95"_s, u"95-100 %"_s};
  return kLabels;
}

const QStringList& RecallNames() {
  static const QStringList kNames = {u"unter 50 %"_s,  u"50 bis 60 %"_s, u"60 bis 70 %"_s, u"70 bis 80 %"_s,
                                     u"80 bis 90 %"_s, u"90 bis 95 %"_s, u"95 bis 100 %"_s};
  return kNames;
}

const QStringList& RetentionLabels() {
  static const QStringList kLabels = {u"unbek."_s, u"1 Std."_s, u"1 Tag"_s, u"3"_s,   u"7"_s,   u"14"_s,
                                      u"30"_s,     u"60"_s,     u"100"_s,   u"365"_s, u"mehr"_s};
  return kLabels;
}

const QStringList& RetentionNames() {
  static const QStringList kNames = {u"unbekannt"_s,    u"bis 1 Stunde"_s, u"bis 1 Tag"_s,    u"bis 3 Tage"_s,
                                     u"bis 7 Tage"_s,   u"bis 14 Tage"_s,  u"bis 30 Tage"_s,  u"bis 60 Tage"_s,
                                     u"bis 100 Tage"_s, u"bis 365 Tage"_s, u"über 365 Tage"_s};
  return kNames;
}

// A bar of cards, its line in the table and the cards themselves.
void AddCards(const QString& label, const QString& name, const std::vector<int>& rows, PlotRole role, int64_t all,
              PageContent& page) {
  const auto count = static_cast<int64_t>(rows.size());
  const QString share = all > 0 ? PercentText(static_cast<double>(count) / static_cast<double>(all)) : QString();
  PlotBar bar{label, {{static_cast<double>(count), role}}, u"%1: %2"_s.arg(name, CardsText(count))};
  if (!share.isEmpty()) bar.text += u", "_s + share;
  page.plot.bars.push_back(std::move(bar));
  page.table.rows.push_back({name, NumberText(count), share});
  page.rows.push_back(rows);
}

template <typename Classes>
void AddClasses(const Classes& classes, const QStringList& labels, const QStringList& names, int64_t all,
                PageContent& page) {
  for (size_t i = 0; i < classes.size(); ++i) {
    const auto at = static_cast<qsizetype>(i);
    AddCards(labels[at], names[at], classes[i], i == 0 ? PlotRole::NotKnown : PlotRole::Known, all, page);
  }
}

QString KnowledgeSentence(const DeckOutlook& deck, const Knowledge& knowledge) {
  const auto all = static_cast<int64_t>(deck.answered.size());
  QString text = u"Sie wissen jetzt etwa %1 von %2 Karten (%3, ± %4)."_s.arg(
      RoundedText(knowledge.known), NumberText(all), PercentText(knowledge.known / static_cast<double>(all)),
      RoundedText(knowledge.spread));
  if (deck.new_rows.size() == 1) text += u" Eine ist neu."_s;
  if (deck.new_rows.size() > 1) text += u" %1 sind neu."_s.arg(NumberText(static_cast<int64_t>(deck.new_rows.size())));
  return text;
}

QString SpanName(const ActivitySpan& span) {
  if (span.days == 1) return DayText(span.first_day);
  return u"%1 bis %2"_s.arg(ShortDayText(span.first_day), ShortDayText(span.first_day + span.days - 1));
}

QString ShareKnown(int64_t known, int64_t answers) {
  return answers == 0 ? QString() : PercentText(static_cast<double>(known) / static_cast<double>(answers));
}

QString PeriodName(const std::vector<ActivitySpan>& spans) {
  const auto days = static_cast<int64_t>(spans.size());
  return spans.front().days == 1 ? u"den letzten %1 Tagen"_s.arg(days) : u"den letzten %1 Wochen"_s.arg(days);
}

QString ActivitySentence(const DeckOutlook& deck, const std::vector<ActivitySpan>& spans) {
  int64_t answers = 0;
  int64_t known = 0;
  for (const ActivitySpan& span : spans) {
    answers += span.answers();
    known += span.known;
  }
  const QString given = answers == 0 ? u"keine Antwort"_s : AnswersText(answers);
  QString text = u"In %1 haben Sie %2 gegeben"_s.arg(PeriodName(spans), given);
  if (answers > 0) {
    const double seconds = static_cast<double>(answers) * deck.seconds_per_answer;
    text += u", %1 gewusst, in etwa %2"_s.arg(ShareKnown(known, answers), SpanText(seconds));
  }
  if (!text.endsWith(u'.')) text += u'.';
  if (deck.seconds_learned == 0) return text;
  return text + u" Insgesamt haben Sie %1 gelernt."_s.arg(SpanText(static_cast<double>(deck.seconds_learned)));
}

// A bar of a day or a week with its line in the table and its cards.
void AddSpan(const ActivitySpan& span, double seconds_per_answer, PageContent& page) {
  const QString name = SpanName(span);
  const QString share = ShareKnown(span.known, span.answers());
  const QString time = SpanText(static_cast<double>(span.answers()) * seconds_per_answer);
  const auto cards = static_cast<int64_t>(span.rows.size());
  const QString text = span.answers() == 0 ? u"%1: keine Antworten"_s.arg(name)
                                           : u"%1: %2 auf %3, %4 gewusst, etwa %5"_s.arg(
                                                 name, AnswersText(span.answers()), CardsText(cards), share, time);
  page.plot.bars.push_back(
      {ShortDayText(span.first_day),
       {{static_cast<double>(span.known), PlotRole::Known}, {static_cast<double>(span.missed), PlotRole::NotKnown}},
       text});
  page.table.rows.push_back({name, NumberText(span.answers()), share, NumberText(cards), time});
  page.rows.push_back(span.rows);
}

// A share that may be far below one percent.
QString SmallShareText(double share) {
  return PercentText(share, share < 0.01 ? 2 : 0);
}

QString PointsText(double share) {
  return PercentText(share, 1).remove(u" %"_s);
}

QString ClassName(size_t place) {
  const int from = kRecallBounds[place];
  return u"%1 bis %2 %"_s.arg(from).arg(place + 1 < kRecallClasses ? kRecallBounds[place + 1] : 100);
}

QString ComparedText(const PredictionReport& report) {
  if (!report.usual_loss || *report.usual_loss <= 0) return {};
  const double better = 1 - report.log_loss / *report.usual_loss;
  return better >= 0 ? u"; %1 besser als Ihr Durchschnitt"_s.arg(PercentText(better, 1))
                     : u"; %1 schlechter als Ihr Durchschnitt"_s.arg(PercentText(-better, 1));
}

QString PredictionSentence(const PredictionReport& report) {
  const auto all = static_cast<double>(report.answers);
  return u"%1 Vorhersagen: im Mittel %2 Punkte daneben (vorhergesagt %3, gewusst %4)%5."_s.arg(
      NumberText(report.answers), PointsText(report.mean_error), PercentText(report.predicted / all, 1),
      PercentText(static_cast<double>(report.known) / all, 1), ComparedText(report));
}

void AddPoint(const PredictionClass& found, size_t place, int64_t most, PageContent& page) {
  constexpr int64_t kEnoughForAPoint = 20;
  const QString name = ClassName(place);
  const Share interval = WilsonInterval(found.known, found.answers);
  page.table.rows.push_back({name, NumberText(found.answers), PercentText(found.MeanPredicted(), 1),
                             PercentText(found.ShareKnown(), 1),
                             u"%1 bis %2"_s.arg(PercentText(interval.low), PercentText(interval.high))});
  if (found.answers < kEnoughForAPoint) return;
  page.plot.points.push_back({.x = found.MeanPredicted(),
                              .y = found.ShareKnown(),
                              .low = interval.low,
                              .high = interval.high,
                              .weight = static_cast<double>(found.answers) / static_cast<double>(most),
                              .text = u"%1 vorhergesagt: %2 auf %3, gewusst %4"_s.arg(
                                  name, AnswersText(found.answers), CardsText(static_cast<int64_t>(found.rows.size())),
                                  PercentText(found.ShareKnown(), 1))});
  page.rows.push_back(found.rows);
}

}  // namespace

QString StandText(const DeckOutlook& deck) {
  QString text = u"Stand %1"_s.arg(QDateTime::fromSecsSinceEpoch(deck.now).toString(u"HH:mm"_s));
  const auto future = static_cast<int64_t>(deck.future_rows.size());
  if (future == 1) text += u" · Eine Karte mit Zeit in der Zukunft ist nicht gezählt"_s;
  if (future > 1) text += u" · %1 Karten mit Zeit in der Zukunft sind nicht gezählt"_s.arg(NumberText(future));
  return text;
}

PageContent KnowledgePage(const DeckOutlook& deck, const Knowledge& knowledge, bool by_retention) {
  PageContent page;
  page.plot.name =
      by_retention ? u"Karten nach Behaltenszeit"_s : u"Karten nach der Wahrscheinlichkeit, dass Sie sie wissen"_s;
  page.plot.empty = u"Noch keine Karte beantwortet. Nach den ersten Antworten steht hier, was Sie wissen."_s;
  page.note = StandText(deck);
  if (deck.answered.empty()) {
    page.sentence = page.plot.empty;
    return page;
  }
  page.sentence = KnowledgeSentence(deck, knowledge);
  page.note += u" · Summe %1 gelernt, %2 Sek. je Antwort"_s.arg(SpanText(static_cast<double>(deck.seconds_learned)),
                                                                PointsText(deck.seconds_per_answer / 100));
  page.plot.y_title = u"Karten"_s;
  page.table.headers = {by_retention ? u"Behaltenszeit"_s : u"Gewusst mit"_s, u"Karten"_s, u"Anteil"_s};
  if (by_retention) {
    AddClasses(knowledge.by_retention, RetentionLabels(), RetentionNames(), deck.counted(), page);
  } else {
    AddClasses(knowledge.by_recall, RecallLabels(), RecallNames(), deck.counted(), page);
  }
  AddCards(u"neu"_s, u"neu"_s, deck.new_rows, PlotRole::New, deck.counted(), page);
  if (!deck.future_rows.empty())
    AddCards(u"Zukunft"_s, u"Zeit in der Zukunft"_s, deck.future_rows, PlotRole::New, 0, page);
  return page;
}

PageContent ActivityPage(const DeckOutlook& deck, const std::vector<ActivitySpan>& spans) {
  PageContent page;
  const bool by_day = spans.front().days == 1;
  page.plot.name = by_day ? u"Antworten je Tag"_s : u"Antworten je Woche"_s;
  page.plot.empty = u"Noch keine Karte beantwortet. Nach den ersten Antworten steht hier, was Sie getan haben."_s;
  page.note = StandText(deck);
  if (deck.answered.empty()) {
    page.sentence = page.plot.empty;
    return page;
  }
  page.sentence = ActivitySentence(deck, spans);
  page.plot.y_title = u"Antworten"_s;
  page.plot.legend = {{u"gewusst"_s, PlotRole::Known}, {u"nicht gewusst"_s, PlotRole::NotKnown}};
  page.table.headers = {by_day ? u"Tag"_s : u"Woche"_s, u"Antworten"_s, u"gewusst"_s, u"Karten"_s, u"etwa"_s};
  for (const ActivitySpan& span : spans) AddSpan(span, deck.seconds_per_answer, page);
  if (deck.full_histories > 0) page.note += u" · ältere Antworten sind nicht mehr gespeichert"_s;
  return page;
}

PageContent PredictionPage(const PredictionReport& report) {
  PageContent page;
  page.plot.name = u"Gewusster Anteil nach der Vorhersage"_s;
  if (report.answers < PredictionReport::kEnough) {
    page.sentence = u"Noch zu wenige Antworten (%1 von %2). Bis dahin gelten die Vorgabewerte."_s.arg(report.answers)
                        .arg(PredictionReport::kEnough);
    page.plot.empty = page.sentence;
    return page;
  }
  page.sentence = PredictionSentence(report);
  page.note =
      u"Vorhergesagt mit Werten, die nur aus anderen Antworten stammen; die Linien reichen über 95 % Sicherheit"_s;
  page.table.headers = {u"Vorhergesagt"_s, u"Antworten"_s, u"im Mittel"_s, u"gewusst"_s, u"mit 95 % Sicherheit"_s};
  page.plot.y_title = u"↑ gewusst, → vorhergesagt"_s;
  page.plot.y_max = 1;
  page.plot.y_step = 0.2;
  page.plot.y_text = [](double share) { return PercentText(share); };
  for (int tick = 0; tick <= 10; tick += 2) page.plot.x_ticks.push_back({tick / 10.0, PercentText(tick / 10.0)});
  page.plot.lines.push_back({{{0, 0}, {1, 1}}, PlotRole::New, Qt::SolidLine, {}, {}});
  int64_t most = 1;
  for (const PredictionClass& found : report.classes) most = std::max(most, found.answers);
  for (size_t i = 0; i < report.classes.size(); ++i) {
    if (report.classes[i].answers > 0) AddPoint(report.classes[i], i, most, page);
  }
  return page;
}

PageContent CostPage(const CardFile& file, const DeckOutlook& deck, const CardLines& lines) {
  PageContent page;
  page.plot.name = u"Lernzeit der teuersten Karten"_s;
  page.plot.empty = u"Noch keine Lernzeit gemessen. Hier stehen einmal die Karten, die am meisten Zeit kosten."_s;
  page.note = StandText(deck);
  if (lines.Count() == 0) {
    page.sentence = page.plot.empty;
    return page;
  }
  page.all_title = u"Die Karten mit der meisten Lernzeit"_s;
  page.plot.lying = true;
  page.table.headers = {u"Frage"_s, u"Lernzeit"_s, u"Fehler"_s, u"gewusst jetzt"_s};
  double seconds = 0;
  for (int place = 0; place < lines.Count(); ++place) {
    const auto spent = static_cast<double>(lines.Seconds(place));
    seconds += spent;
    const QString question = FromBytes(QuestionStart(file, lines.Row(place)), ReadCodePages(file.settings()).front);
    const QString misses = NumberText(int64_t{lines.Misses(place)});
    const QString recall = RecallText(lines.Recall(place));
    const QString note = u"%1, %2 Fehler, %3 gewusst"_s.arg(SpanText(spent), misses, recall);
    page.plot.bars.push_back({.label = question,
                              .parts = {{spent, PlotRole::Known}},
                              .text = u"%1: %2 jetzt"_s.arg(question, note),
                              .note = note});
    page.table.rows.push_back({question, SpanText(spent), misses, recall});
    page.rows.push_back({lines.Row(place)});
    page.all_rows.push_back(lines.Row(place));
  }
  const auto shown = int64_t{lines.Count()};
  page.sentence = u"Diese %1 (%2) kosten %3 Ihrer Lernzeit."_s.arg(
      CardsText(shown), SmallShareText(static_cast<double>(shown) / static_cast<double>(deck.counted())),
      SmallShareText(seconds / static_cast<double>(deck.seconds_learned)));
  if (shown == 1) page.sentence = u"Nur eine Karte hat bisher gemessene Lernzeit."_s;
  return page;
}

}  // namespace tessaro
