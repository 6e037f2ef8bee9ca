#include "exchange/compare_texts.h"

#include <algorithm>

#include "widgets/count_texts.h"

namespace tessaro {

using namespace Qt::Literals::StringLiterals;

QString LoadText(SourceLoad load) {
  switch (load) {
    case SourceLoad::Loaded:
    case SourceLoad::Internal:
      return {};
    case SourceLoad::CannotOpen:
      return u"\nDatei kann nicht\ngeöffnet werden"_s;
    case SourceLoad::WrongType:
      return u"\nDateityp ist falsch."_s;
    case SourceLoad::CannotLoad:
      return u"\nKartei kann nicht\ngeladen werden.\nSiehe Hilfeindex."_s;
    case SourceLoad::NoCards:
      return u"\nQuellkartei enthält keine Daten\nVorgang abgebrochen."_s;
    case SourceLoad::TargetChanged:
      return u"\nInterner Vergleich nicht möglich.\nWeil Zieldatei verändert wurde.\n Zielkartei vor Vergleich "
             u"speichern."_s;
    case SourceLoad::NotIdentical:
      return u"\nInterner Vergleich nicht möglich.\nWeil Ziel- u. Quellkartei nicht\nidentisch sind.\n Zielkartei vor "
             u"Vergleich speichern."_s;
    case SourceLoad::OtherCharacters:
      return u"\nDie Karten der Quelle haben Zeichen, die\nder Zeichensatz der Zielkartei nicht hat."_s;
  }
  return {};
}

QString VerdictText(const CompareStop& stop) {
  if (stop.result == kSameCard) {
    return u"Zielkarte ist Doublette einer in der Zielkartei\nnach der Position davorliegenden Karte."_s;
  }
  if (stop.result == kSameFront) {
    return stop.earlier ? u"Zielkarte vorne ident. mit Quellkarte.\nUnd vorne zusätzl. identisch mit Vorderseite "
                          u"vorhergehender Zielkarte."_s
                        : u"Zielkarte vorne identisch mit Quellkarte -> unlogische Variante.\nGleiche Frage - versch. "
                          u"Antworten."_s;
  }
  const QString text = stop.earlier
                           ? u"Ähnlichkeit Zielkarte zu %1 Proz. mit der Quellkarte.\nAuch ähnlich zu einer in der "
                             u"Position vorhergehenden Zielkarte."_s
                           : u"Ähnlichkeit Zielkarte zu %1 Proz. mit Quellkarte. Quellkarte ist vielleicht\neine "
                             u"Variante der Zielkarte"_s;
  return text.arg(stop.result);
}

QString StandText(const CompareScan& scan) {
  const CompareCounts& counts = scan.counts();
  const int done = scan.source_row() - kFirstCardRow;
  const int all = scan.source_end() - kFirstCardRow;
  QString text = u"Quellkarte %1 von %2. Paare: %3, Doubletten: %4, beibehalten: %5, markiert: %6"_s.arg(
      NumberText(std::min(done + 1, all)), NumberText(all), NumberText(counts.pairs), NumberText(counts.duplicates),
      NumberText(counts.kept), NumberText(counts.marked));
  if (!scan.internal()) text += u", übernommen: %1"_s.arg(NumberText(counts.taken));
  return text + u'.';
}

}  // namespace tessaro
