#include "exchange/exchange_texts.h"

#include <QStringList>

#include "widgets/count_texts.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

}  // namespace

QString CharacterName(char character) {
  if (character == '\t') return u"Tab"_s;
  if (character == '\n') return u"Zeilenende"_s;
  if (static_cast<unsigned char>(character) < ' ') return QString::number(character);
  return FromBytes({&character, 1});
}

QString WarningText(SeparatorFault fault) {
  const QString lost = u"%1 So geschriebene Karten lassen sich nicht wieder einlesen."_s;
  switch (fault) {
    case SeparatorFault::None:
      return {};
    case SeparatorFault::Backslash:
      return lost.arg(u"Der Backslash leitet selbst Zeichen ein."_s);
    case SeparatorFault::LetterN:
      return lost.arg(u"Das „n“ steht hinter einem Backslash für ein Zeilenende."_s);
    case SeparatorFault::InColumns:
      return lost.arg(u"Dieses Zeichen kommt in den Spalten der Statistik vor."_s);
    case SeparatorFault::Quote:
      return lost.arg(u"Das Anführungszeichen fällt beim Einlesen weg."_s);
    case SeparatorFault::LineEnd:
      return lost.arg(u"Das Zeilenende kommt in den Karten vor."_s);
    case SeparatorFault::Same:
      return u"Es ist dasselbe wie das Trennzeichen der Seiten. Eines der beiden muss ein anderes sein."_s;
  }
  return {};
}

QString EncodingText(Encoding encoding) {
  switch (encoding) {
    case Encoding::CodePage:
      return u"Windows-1252"_s;
    case Encoding::Utf8:
      return u"UTF-8"_s;
    case Encoding::Utf8WithMark:
      return u"UTF-8 mit Marke"_s;
    case Encoding::Utf16Little:
    case Encoding::Utf16Big:
      return u"UTF-16"_s;
  }
  return {};
}

QString ReplacementText(const ForeignText& text) {
  QStringList parts;
  for (const ForeignText::Replacement& example : text.examples) {
    parts << u"%1 → %2"_s.arg(QString::fromUcs4(&example.character, 1),
                              example.by.empty() ? u"nichts"_s : FromBytes(example.by));
  }
  if (parts.isEmpty()) return {};
  return u"Nicht im Zeichensatz der Kartei: %1 Zeichen. Ersetzt würden sie so: %2. Einen anderen Zeichensatz wählen "
         u"Sie "
         u"zuerst im Hauptfenster unter Extras, Optionen, Karten."_s.arg(NumberText(text.replaced),
                                                                         parts.join(u", "_s));
}

QString FaultText(LineFault fault) {
  switch (fault) {
    case LineFault::FieldCount:
      return u"nicht acht Felder"_s;
    case LineFault::CutEscape:
      return u"endet mit einem Backslash"_s;
    case LineFault::Id:
      return u"Kartennummer nicht 000001 bis 999990"_s;
    case LineFault::DoubleId:
      return u"Kartennummer doppelt"_s;
    case LineFault::Score:
      return u"„Score“ nicht 1 bis 9 Ziffern"_s;
    case LineFault::TimeLearned:
      return u"„TimeLearned“ keine Zahl"_s;
    case LineFault::YesNoRow:
      return u"„YesNoRow“ nicht höchstens 64-mal „w“ oder „f“"_s;
    case LineFault::TimeRow:
      return u"„TimeRow“ nicht höchstens 64 Zahlen"_s;
  }
  return {};
}

QString ExportSpaceText(const std::filesystem::path& target, std::optional<uint64_t> free, int64_t needed) {
  const QString root = FromPath(target.root_path());
  const QString room = free ? u"%1 Bytes frei"_s.arg(*free) : u"freier Platz unbekannt"_s;
  return u"Laufwerk %1:  %2, Datei: %3 Bytes"_s.arg(root.isEmpty() ? u"."_s : root, room).arg(needed);
}

QString BackAgainText() {
  return u"Der Stand davor liegt bei den Sicherungen: <Karteikasten><Restore> holt ihn zurück."_s;
}

}  // namespace tessaro
