#include "outlook/number_texts.h"

#include <QDate>
#include <QLocale>
#include <cmath>

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

const QLocale& German() {
  static const QLocale kGerman(QLocale::German, QLocale::Germany);
  return kGerman;
}

QDate DateOf(int64_t day) {
  return QDate(1970, 1, 1).addDays(day);
}

}  // namespace

QString RoundedText(double number) {
  return NumberText(static_cast<int64_t>(std::llround(number)));
}

QString PercentText(double share, int decimals) {
  return u"%1 %"_s.arg(German().toString(share * 100, 'f', decimals));
}

QString RecallText(std::optional<double> recall) {
  return recall ? PercentText(*recall) : QString();
}

QString SpanText(double seconds) {
  if (std::round(seconds) < 60) return u"%1 Sek."_s.arg(RoundedText(seconds));
  const auto minutes = static_cast<int64_t>(std::llround(std::min(seconds, 1e15) / 60));
  if (minutes < 60) return u"%1 Min."_s.arg(minutes);
  const QString hours = u"%1 Std."_s.arg(NumberText(minutes / 60));
  return minutes % 60 == 0 ? hours : u"%1 %2 Min."_s.arg(hours).arg(minutes % 60);
}

QString AnswersText(int64_t answers) {
  return answers == 1 ? u"eine Antwort"_s : u"%1 Antworten"_s.arg(NumberText(answers));
}

QString ShortDayText(int64_t day) {
  return DateOf(day).toString(u"d.M."_s);
}

QString DayText(int64_t day) {
  return German().toString(DateOf(day), u"ddd, d.M."_s).replace(u".,"_s, u","_s);
}

QString FullDayText(int64_t day) {
  return German().toString(DateOf(day), u"ddd, d.M.yyyy"_s).replace(u".,"_s, u","_s);
}

}  // namespace tessaro
