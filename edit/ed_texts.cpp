#include "edit/ed_texts.h"

using namespace Qt::StringLiterals;

namespace tessaro {

QString FirstCardText() {
  return u"Sie sehen hier die erste leere Karte, weitere Leerkarten erhalten Sie durch Anklicken des "
         u"Leerkartensymbols (links über dem Symbol \"Ausschneiden\")"_s;
}

QString EmptySideHint(bool front_empty, bool back_empty, int position) {
  if (front_empty && back_empty) return u"Hinweis: leere Karte an Pos. %1"_s.arg(position);
  if (front_empty) return u"Hinweis: leere Vorderseite an Pos. %1"_s.arg(position);
  if (back_empty) return u"Hinweis: leere Rückseite an Pos. %1"_s.arg(position);
  return {};
}

QString EmptySidesHint(int position) {
  return u"Hinweis: leere Seite(n) bei Karte an Pos. %1"_s.arg(position);
}

QString ForgottenText(CommandStack::Forgotten forgotten) {
  switch (forgotten) {
    case CommandStack::Forgotten::Nothing:
      break;
    case CommandStack::Forgotten::Oldest:
      return u"Die ältesten Kartenbefehle lassen sich nicht mehr zurücknehmen: Der Speicher dafür ist voll"_s;
    case CommandStack::Forgotten::All:
      return u"Dieser Kartenbefehl und die älteren lassen sich nicht zurücknehmen: Der Speicher dafür reicht nicht"_s;
  }
  return {};
}

QString NoNumberLeftText() {
  return u"\nEs ist keine Kartennummer mehr frei: Verweise\nreichen nur bis zur Karte 999990.\n"
         u"Nummerieren Sie die Karten bitte neu\n(Menü Werkzeuge)."_s;
}

QString LeftOutText(const QString& characters) {
  constexpr qsizetype kMostNamed = 40;
  QString shown;
  for (const QChar letter : characters.left(kMostNamed)) {
    if (letter.isSurrogate() || !letter.isPrint()) {
      shown += u" U+"_s + QString::number(letter.unicode(), 16).toUpper();
    } else {
      shown += u' ' + QString(letter);
    }
  }
  if (characters.size() > kMostNamed) shown += u" …"_s;
  return u"Weggelassen, da nicht im Zeichensatz der Seite:%1 (zu ändern im Hauptfenster: Extras, Optionen, Karten)"_s
      .arg(shown);
}

QString TargetMissingText() {
  return u"\nZielkarte nicht gefunden.\nNummer nicht (mehr) gültig"_s;
}

QString ReadOnlyText() {
  return u"\nDie Kartei ist nur zum Lesen geöffnet.\nSpeichern Sie sie unter einem anderen Namen,\n"
         u"um ihre Karten zu ändern."_s;
}

QString PictureFilter() {
  return u"Bilder (*.bmp *.jpg *.jpeg *.png *.gif *.BMP *.JPG *.JPEG *.PNG *.GIF)"_s;
}

QString FormatsText() {
  return u"Hypertextformate der Karten\n\n"
         u"<br>  neue Zeile\n"
         u"<b>fett</b>  <i>kursiv</i>  <u>unterstrichen</u>\n"
         u"<font size=\"14\">größer</font>\n"
         u"<a href=\"000012\">Verweis</a>  führt zur Karte 000012\n"
         u"<img src=\"bild.bmp\" border=\"0\">  Bild im Text\n"
         u"<embed src=\"film.avi\" width=\"353\" height=\"289\">  Film oder Ton\n"
         u"<topic=\"Thema\">  Thema der Karte\n"
         u"<navigation>  Karte wird nicht gelernt\n"
         u"<home>  Startkarte,  <index>  Indexkarte\n"
         u"&lt; und &gt;  stehen für die Zeichen < und >\n\n"
         u"Ein Zeilenende im Text ist auf der Karte nur ein Leerzeichen."_s;
}

}  // namespace tessaro
