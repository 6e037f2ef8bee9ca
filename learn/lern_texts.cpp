#include "learn/lern_texts.h"

#include <algorithm>
#include <array>

#include "hypertext/plain_text.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int64_t kMinute = 60;

QString Counted(int64_t count, QStringView one, QStringView many) {
  return QString::number(count) + QLatin1Char(' ') + (count == 1 ? one : many).toString();
}

enum class Case { Nominative, Dative };

// A span of at least a minute by its largest unit alone, rounded: "3 Tage" or, after "in", "3 Tagen".
QString RoundedSpan(int64_t seconds, Case grammar) {
  const struct {
    int64_t length;
    QStringView one, many, many_dative;
  } units[] = {{365 * kSecondsPerDay, u"Jahr", u"Jahre", u"Jahren"},
               {30 * kSecondsPerDay, u"Monat", u"Monate", u"Monaten"},
               {kSecondsPerDay, u"Tag", u"Tage", u"Tagen"},
               {3600, u"Stunde", u"Stunden", u"Stunden"},
               {kMinute, u"Minute", u"Minuten", u"Minuten"}};
  for (const auto& unit : units) {
    // Three months are said as 90 days: what is short enough to be counted is counted.
    const int64_t least = unit.length >= 30 * kSecondsPerDay ? 3 * unit.length : unit.length;
    if (seconds < least && unit.length > kMinute) continue;
    return Counted((seconds + unit.length / 2) / unit.length, unit.one,
                   grammar == Case::Dative ? unit.many_dative : unit.many);
  }
  return {};
}

// The product's captions end in a blank, so two of them stand before the dash.
QStringView CaptionStart(CardSide side, bool inverse) {
  if (side == CardSide::Question) {
    return inverse ? u"Frageseite Übungskarte (invers) Pos. " : u"Frageseite Übungskarte Pos. ";
  }
  return inverse ? u"Antwortseite Übungskarte (invers) Pos. " : u"Antwortseite Übungskarte Pos. ";
}

QString IndexFaultText(int number) {
  constexpr std::array kInBrackets = {3, 4, 7, 8};
  const bool brackets = std::ranges::find(kInBrackets, number) != kInBrackets.end();
  return (brackets ? u"Fehler (Nr.%1) in Indextabelle -> Indexneuaufbau empfohlen"_s
                   : u"Fehler Nr. %1 in Indextabelle -> Indexneuaufbau empfohlen"_s)
      .arg(number);
}

}  // namespace

QString SpanInWords(int64_t seconds) {
  const int64_t minutes = std::max<int64_t>((seconds + kMinute - 1) / kMinute, 1);
  if (minutes < 60) return Counted(minutes, u"Minute", u"Minuten");
  const auto joined = [](const QString& large, int64_t rest, QStringView one, QStringView many) {
    return rest == 0 ? large : large + QLatin1Char(' ') + Counted(rest, one, many);
  };
  if (minutes < int64_t{24} * 60) {
    return joined(Counted(minutes / 60, u"Stunde", u"Stunden"), minutes % 60, u"Minute", u"Minuten");
  }
  const int64_t hours = (minutes + 59) / 60;
  return joined(Counted(hours / 24, u"Tag", u"Tagen"), hours % 24, u"Stunde", u"Stunden");
}

QString ShortSpan(int64_t seconds) {
  const auto units = [seconds](int64_t unit) { return std::max<int64_t>((seconds + unit - 1) / unit, 1); };
  constexpr int64_t kHour = 60 * kMinute;
  if (units(kMinute) < 60) return Counted(units(kMinute), u"Min.", u"Min.");
  if (units(kHour) < 24) return Counted(units(kHour), u"Std.", u"Std.");
  return Counted(units(kSecondsPerDay), u"Tag", u"Tagen");
}

QString CaptionText(CardSide side, bool inverse, bool navigation, int position) {
  const QStringView start = navigation ? QStringView(u"Linkmap Pos. ") : CaptionStart(side, inverse);
  return u"%1 - %2"_s.arg(start).arg(position);
}

QString SideText(CardSide side, bool inverse, bool navigation) {
  if (navigation) return u"Linkmap"_s;
  const QString name = side == CardSide::Question ? u"Frageseite"_s : u"Antwortseite"_s;
  return inverse ? name + u" (invers)"_s : name;
}

QString StatusText(CardStatus status, int64_t check_count) {
  switch (status) {
    case CardStatus::None:
      return {};
    case CardStatus::Tested:
      return u"Getestet"_s;
    case CardStatus::CheckPosition:
      return u"Check Pos. %1"_s.arg(check_count);
    case CardStatus::Overlearning:
      return u"Overlearning"_s;
    case CardStatus::NeverShown:
      return u"Unbearbeitete Karte"_s;
    case CardStatus::RepeatAfterError:
      return u"Wiederholung nach Fehler"_s;
    case CardStatus::RepeatMaximumTime:
      return u"Wiederholung Maximalzeit"_s;
    case CardStatus::RetentionUpdate:
      return u"Behaltenszeit Update"_s;
    case CardStatus::Navigation:
      return u"Navigationskarte"_s;
    case CardStatus::RandomChoice:
      return u"Zufalls-Auswahl"_s;
  }
  return {};
}

QString ChoiceStatusText(ChoiceStatus status) {
  switch (status) {
    case ChoiceStatus::None:
      return {};
    case ChoiceStatus::Choice:
      return u"Multiple Choice"_s;
    case ChoiceStatus::NewChoice:
      return u"Neue Auswahl"_s;
    case ChoiceStatus::NoChoice:
      return u"Multiple Choice - keine Auswahl möglich"_s;
  }
  return {};
}

QString StageText(RunStage stage, int box) {
  switch (stage) {
    case RunStage::None:
      return u"Lernsteuerung"_s;
    case RunStage::BoxSearch:
      return u"Automatische Lernsteuerung Karteifach-Auswahl"_s;
    case RunStage::Checking:
      return u"Automatische Lernsteuerung - Checking"_s;
    case RunStage::NewCheckingPass:
      return u"Automatische Lernsteuerung Checkdurchlauf"_s;
    case RunStage::RowOrder:
      return u"Lernsteuerung nach Reihenfolge"_s;
    case RunStage::LeitnerBox:
      // The box that has just been worked through is none any more.
      return box == 0 ? u"Lernsteuerung"_s : u"Lernsteuerung manuell - in Karteifach %1 -"_s.arg(box);
    case RunStage::Navigation:
      return u"Visuelle Lernsteuerung mit Hyperlinks"_s;
  }
  return {};
}

QString MethodText(Method method) {
  switch (method) {
    case Method::Standard:
      return u"Standardmethode"_s;
    case Method::RowOrder:
      return u"Reihenfolge"_s;
    case Method::Leitner:
      return u"Leitnerverfahren"_s;
  }
  return {};
}

QString TimeLockText(bool on) {
  return on ? u"Zeitsperre ein"_s : u"Zeitsperre aus"_s;
}

QString MessageText(RunMessage message, int number) {
  switch (message) {
    case RunMessage::CardTimeInFuture:
      return u"Zeitfehler in der Kartenstatistik.\nPC-Zeit ist oder war vermutl. verstellt\nBitte prüfen Sie sofort "
             "Datum und\nUhrzeit. Statistik der Karte\nwurde gelöscht!"_s;
    case RunMessage::StandardExhausted:
      return u"\nLernen mit der autom. Standardmethode\nzur Zeit nicht mehr sinnvoll."_s;
    case RunMessage::EndOfFile:
      return u"\nKarteiende erreicht. \nLerndurchlauf beendet."_s;
    case RunMessage::BoxDone:
      return u"\nKarteifach abgearbeitet.\nWeiter mit neuer Auswahl."_s;
    case RunMessage::IndexFault:
      return IndexFaultText(number);
    case RunMessage::IndexUpdateFailed:
      return u"Fehler Index-Update"_s;
    case RunMessage::LoggingFailed:
      return AnswerFailedText();
    case RunMessage::BoxSearchFailed:
      return u"Exceptionfehler beim Kartensuche in Karteifach"_s;
    case RunMessage::CheckingFailed:
      return u"Exceptionfehler beim Kartenchecking"_s;
    case RunMessage::RowOrderFailed:
      return u"Exceptionfehler bei Suche nach Reihenfolge"_s;
  }
  return {};
}

QString RefusalText(AnswerRefusal refusal) {
  switch (refusal) {
    case AnswerRefusal::None:
      return {};
    case AnswerRefusal::ChoicePending:
      return u"\nBitte benutzen Sie\nden Button <Lerne ich>\ndes Auswahlantwortfensters"_s;
    case AnswerRefusal::TypingOpen:
      return u"\nBei Tastaturtraining geht das nicht."_s;
  }
  return {};
}

bool IsFault(RunMessage message) {
  constexpr std::array kFaults = {RunMessage::IndexFault, RunMessage::LoggingFailed, RunMessage::BoxSearchFailed,
                                  RunMessage::CheckingFailed, RunMessage::RowOrderFailed};
  return std::ranges::find(kFaults, message) != kFaults.end();
}

QString NoticeText(Notice notice, std::optional<int64_t> next_due) {
  switch (notice) {
    case Notice::None:
      return {};
    case Notice::ClockWentBack:
      return u"Der Lauf ist beendet: Die Uhr des Rechners wurde zurückgestellt. Alle Antworten davor sind vermerkt. "
             "Bitte Datum und Uhrzeit prüfen und dann neu beginnen."_s;
    case Notice::NothingDue:
      return u"Zur Zeit ist keine Karte fällig. "_s +
             (next_due ? u"Die nächste ist in %1 an der Reihe."_s.arg(SpanInWords(*next_due))
                       : u"Ohne Zeitsperre werden Karten auch vorzeitig vorgelegt."_s);
    case Notice::NewCardsHeldBack:
      return u"Gerade findet die Standardmethode keine Karte. Neue Karten legt sie erst wieder vor, wenn im Menü "
             "Methode „wenig neue Karten“ ausgeschaltet ist."_s;
    case Notice::EndOfFile:
      return u"Das Ende der Kartei ist erreicht. Nach der nächsten Antwort beginnt die Reihenfolge wieder vorn."_s;
    case Notice::EndWithoutCard:
      return u"Von hier bis zum Ende der Kartei ist keine Karte an der Reihe. Wer neu beginnt, fängt wieder bei der "
             "ersten Karte an."_s;
    case Notice::NoCards:
      return u"Diese Kartei enthält keine Karten, die gelernt werden können."_s;
    case Notice::RowOrderRestarted:
      return u"Die Reihenfolge geht mit der nächsten Karte am Anfang der Kartei weiter."_s;
  }
  return {};
}

QString AnswerText(const GivenAnswer& answer, std::string_view question, CodePage page) {
  constexpr int kTitleLetters = 35;
  QString title = FromBytes(PlainBeginning(question), page).simplified();
  if (title.size() > kTitleLetters) title = title.left(kTitleLetters - 1) + u'…';
  const auto said = [&](const QString& what) { return title.isEmpty() ? what : title + u": "_s + what; };
  if (answer.rating == Rating::NotKnown) return said(u"nicht gewusst, kommt bald wieder"_s);
  if (!answer.logged) return said(u"gewusst, vorzeitig und daher nicht gezählt"_s);
  if (!answer.due_in) return said(u"gewusst"_s);
  if (*answer.due_in < kMinute) return said(u"gewusst, gleich wieder"_s);
  return said(u"gewusst, wieder in %1"_s.arg(RoundedSpan(*answer.due_in, Case::Dative)));
}

QString ForecastText(std::optional<int64_t> due_in) {
  if (!due_in) return {};
  return *due_in < kMinute ? u"gleich wieder"_s : u"etwa %1"_s.arg(RoundedSpan(*due_in, Case::Nominative));
}

QString AnswerTakenBackText() {
  return u"Antwort zurückgenommen"_s;
}

QString AnswerRestoredText() {
  return u"Antwort wiederhergestellt"_s;
}

QString NothingToUndoHint() {
  return u"In diesem Lauf gibt es keine Entscheidung mehr, die zurückzunehmen ist."_s;
}

QString RunEndedHint() {
  return u"Der Lauf ist beendet."_s;
}

QString AnswerFailedText() {
  return u"Exceptionfehler bei Auswertung"_s;
}

QString PictureFailedText() {
  return u"\nFehler beim Laden Grafik.\nSpeichern u. Neustart empfohlen."_s;
}

QString DrawingFailedText() {
  return u"Ausnahmefehler im HTML-Viewer.\nFehler auf der Karteikarte,\nz.B. durch ungültige Mediendatei."_s;
}

}  // namespace tessaro
