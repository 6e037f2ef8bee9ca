#include "app/check_texts.h"

#include <QLocale>
#include <QStringList>

#include "store/table/card_columns.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

QString InWords(int64_t count, const QString& one, const QString& many) {
  return count == 1 ? one : many.arg(QLocale().toString(static_cast<qlonglong>(count)));
}

}  // namespace

QString SummaryText(const DeckReport& report) {
  struct Words {
    DeckFault fault;
    QString one;
    QString many;  // "%1": how many
  };
  const Words all_words[] = {
      {DeckFault::FutureAnswer, u"eine Antwort in der Zukunft"_s, u"%1 Antworten in der Zukunft"_s},
      {DeckFault::MissingId, u"eine Karte ohne Nummer"_s, u"%1 Karten ohne Nummer"_s},
      {DeckFault::DoubleId, u"eine doppelte Nummer"_s, u"%1 doppelte Nummern"_s},
      {DeckFault::DeadLink, u"ein Verweis ins Leere"_s, u"%1 Verweise ins Leere"_s},
      {DeckFault::EmptySide, u"eine Karte mit leerer Seite"_s, u"%1 Karten mit leerer Seite"_s},
      {DeckFault::MissingMedia, u"eine fehlende Mediendatei"_s, u"%1 fehlende Mediendateien"_s},
  };
  QStringList parts;
  for (const Words& words : all_words) {
    const int64_t count = report.Count(words.fault);
    if (count > 0) parts << InWords(count, words.one, words.many);
  }
  int64_t histories = 0;
  for (const DeckFault fault :
       {DeckFault::TimeOrder, DeckFault::Letters, DeckFault::Times, DeckFault::Score, DeckFault::TimeLearned}) {
    histories += report.Count(fault);
  }
  if (histories > 0) parts << InWords(histories, u"ein Fehler in der Statistik"_s, u"%1 Fehler in der Statistik"_s);
  return parts.join(u", "_s);
}

QString PutAsideText(const std::vector<ChangesPutAside>& put_aside) {
  if (put_aside.empty()) return {};
  QString text = u"\n\nBeiseite gelegte Antworten:"_s;
  for (const ChangesPutAside& changes : put_aside) text += u'\n' + FromPath(changes.path.filename());
  return text;
}

QString FaultText(const DeckFinding& finding) {
  switch (finding.fault) {
    case DeckFault::MissingId:
      return u"Karte ohne Nummer."_s;
    case DeckFault::DoubleId:
      return u"Nummer %1 hat schon eine Karte davor."_s.arg(FromBytes(IdText(finding.number)));
    case DeckFault::DeadLink:
      return finding.number == 0 ? u"Verweis ohne gültige Kartennummer."_s
                                 : u"Verweis auf Karte %1, die es nicht gibt."_s.arg(FromBytes(IdText(finding.number)));
    case DeckFault::FutureAnswer:
      return u"Letzte Antwort in der Zukunft. Die nächste löscht die Statistik der Karte."_s;
    case DeckFault::TimeOrder:
      return u"Zeiten der Antworten nicht in ihrer Reihenfolge."_s;
    case DeckFault::Letters:
      return u"Antworten sind nicht 64 Buchstaben „w“ oder „f“."_s;
    case DeckFault::Times:
      return u"Zeiten der Antworten sind nicht 64 Zahlen."_s;
    case DeckFault::Score:
      return u"Behaltenszeit ist keine gültige Zahl."_s;
    case DeckFault::TimeLearned:
      return u"Lernzeit ist keine gültige Zahl."_s;
    case DeckFault::EmptySide:
      return u"Eine Seite der Karte ist leer."_s;
    case DeckFault::MissingMedia:
      return u"Datei „%1“ fehlt."_s.arg(FromBytes(finding.name));
  }
  return {};
}

QString RepairText(const DeckFinding& finding) {
  switch (finding.fault) {
    case DeckFault::MissingId:
    case DeckFault::DoubleId:
      if (finding.links_lead_to) return u"Bitte selbst ändern: Verweise führen zu dieser Nummer."_s;
      return finding.can_repair ? u"Eine neue Nummer geben."_s : u"Es ist keine Nummer mehr frei."_s;
    case DeckFault::DeadLink:
    case DeckFault::EmptySide:
      return u"Bitte selbst ändern."_s;
    case DeckFault::MissingMedia:
      return u"Bitte in den Ordner der Kartei oder in ihren Medienordner legen."_s;
    case DeckFault::FutureAnswer:
      return u"Zeit auf jetzt setzen. Nur richtig, wenn die Uhr des PCs jetzt stimmt. Die Antworten bleiben."_s;
    case DeckFault::TimeOrder:
      return u"Bleibt unverändert."_s;
    case DeckFault::Letters:
      return u"Auf 64 Buchstaben bringen. Fehlende und unlesbare werden „f“, überzählige entfallen."_s;
    case DeckFault::Times:
      return u"Auf 64 Zahlen bringen. Fehlende und unlesbare werden 0, überzählige entfallen."_s;
    case DeckFault::Score:
    case DeckFault::TimeLearned:
      return u"Als die Zahl schreiben, als die sie gelesen wird."_s;
  }
  return {};
}

QString FutureAnswersText(int64_t cards, const QString& now) {
  const QString first = InWords(cards, u"\nBei einer Karte liegt die letzte Antwort in der Zukunft."_s,
                                u"\nBei %1 Karten liegt die letzte Antwort in der Zukunft."_s);
  return first +
         u"\nDie Uhr des PCs geht falsch, oder sie ging einmal falsch.\nJetzt zeigt sie den %1 Uhr.\n\n"
         u"Bitte prüfen Sie zuerst Datum und Uhrzeit. Wenn Sie trotzdem\n"
         u"lernen, löscht die nächste Antwort die Statistik einer solchen Karte.\n"
         u"Mit <Extras><Kartei prüfen> lassen sich die Zeiten berichtigen."_s.arg(now);
}

}  // namespace tessaro
