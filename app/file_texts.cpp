#include "app/file_texts.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <limits>

#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

// The letter of the drive; systems without drives have one root.
QChar DriveOf(const std::filesystem::path& target) {
  const std::string root = target.root_name().string();
  return root.empty() ? u'/' : QChar::fromLatin1(root.front());
}

// The name of the file after the text, which may be about any.
QString Named(const QString& text, const std::filesystem::path& path) {
  return text + u"\n\n"_s + FromPath(path.filename());
}

QString InUseText(const OpenReport& report) {
  const LockHolder& holder = report.in_use_by;
  const QString by = holder == LockHolder()
                         ? QString()
                         : u"\n(Rechner %1, Prozess %2)"_s.arg(QString::fromLocal8Bit(holder.machine),
                                                               QString::fromLocal8Bit(holder.process));
  const QString twin = report.twin.empty()
                           ? QString()
                           : u"\n\nDie Kartei %1 im selben Ordner benutzt dieselben\nIndexdateien und Einstellungen: "
                             u"Nur eine der beiden\nkann geöffnet sein."_s.arg(FromPath(report.twin.filename()));
  return u"\nDie Kartei ist schon in einem\nanderen Programmfenster geöffnet%1.\nBitte schließen Sie sie dort zuerst.%2"_s
      .arg(by, twin);
}

// One message of why, without the name.
QString ReasonText(const OpenReport& report) {
  switch (report.result) {
    case OpenResult::Opened:
      return {};
    case OpenResult::WrongType:
      return u"\nDateityp ist falsch."_s;
    case OpenResult::CannotOpen:
      return u"\nDatei kann nicht\ngeöffnet werden"_s;
    case OpenResult::CannotLoad:
      return u"\nKartei kann nicht\ngeladen werden.\nSiehe Hilfeindex."_s;
    case OpenResult::Unusable:
      return u"\nDie Kartei ist unbrauchbar.\nBenutzen Sie bitte\n<Karteikasten><Restore>"_s;
    case OpenResult::InUse:
      return InUseText(report);
    case OpenResult::NoLock:
      return u"\nDie Kartei kann nicht vor anderen Programmen\ngeschützt und darum nicht zurückgeholt werden."_s;
  }
  return {};
}

QString MomentText(int64_t time) {
  return QLocale().toString(QDateTime::fromSecsSinceEpoch(time), u"dd.MM.yyyy, HH:mm 'Uhr'"_s);
}

QString ChangedText(const UnsavedChanges& unsaved) {
  const QString cards = unsaved.cards == 1 ? u"einer Karte"_s : u"%1 Karten"_s.arg(QLocale().toString(unsaved.cards));
  if (!unsaved.whole_table) return u"Änderungen an %1"_s.arg(cards);
  const QString whole = u"eine wiederhergestellte oder umgebaute Kartei"_s;
  return unsaved.cards == 0 ? whole : u"%1\nund danach Änderungen an %2"_s.arg(whole, cards);
}

}  // namespace

QString MissingText(const std::filesystem::path& cards, const std::filesystem::path& backup, int64_t saved) {
  return u"\nDie Kartei %1 fehlt.\nEs gibt noch ihre Sicherung %2\nvom %3.\n\nSoll die Sicherung geöffnet werden?\n"
         u"Antworten, die danach kamen, werden\nübernommen, soweit sie noch vorhanden sind."_s.arg(
             FromPath(cards.filename()), FromPath(backup.filename()), MomentText(saved));
}

QString UnsavedText(const UnsavedChanges& unsaved) {
  const QString first = MomentText(unsaved.first);
  const QString last = MomentText(unsaved.last);
  const QString when = first == last ? u"vom %1"_s.arg(first) : u"vom %1\nbis %2"_s.arg(first, last);
  return u"\nDas Programm wurde beendet,\nbevor die Kartei gespeichert war.\n\nEs gibt noch %1\n%2.\n\n"
         u"Sollen sie übernommen werden?"_s.arg(ChangedText(unsaved), when);
}

QString StageText(FileStage stage) {
  switch (stage) {
    case FileStage::LoadCards:
      return u"Karteikarten laden"_s;
    case FileStage::LoadLearnIndex:
      return u"Indextabelle laden"_s;
    case FileStage::LoadLinkIndex:
      return u"Linkindextabelle laden"_s;
    case FileStage::BuildLearnIndex:
      return u"Index aufbauen"_s;
    case FileStage::BuildLinkIndex:
      return u"Linkindex aufbauen"_s;
    case FileStage::SaveCards:
      return u"Kartei speichern"_s;
    case FileStage::SaveLearnIndex:
      return u"Lernindex speichern"_s;
    case FileStage::SaveLinkIndex:
      return u"Linkindex speichern"_s;
  }
  return {};
}

QString StatusText(FileStage stage) {
  const bool builds = stage == FileStage::BuildLearnIndex || stage == FileStage::BuildLinkIndex;
  return builds ? u"Speichertabelle"_s : StageText(stage);
}

QString StageSizeText(FileStage stage, uint64_t file_size) {
  switch (stage) {
    case FileStage::LoadCards:
      return u"Dateigröße: %1 Bytes"_s.arg(file_size);
    case FileStage::LoadLearnIndex:
      return u"Indexdateigröße: %1 Bytes"_s.arg(file_size);
    case FileStage::LoadLinkIndex:
      return u"LinkIndexdateigröße: %1 Bytes"_s.arg(file_size);
    default:
      return {};
  }
}

QString RefusalText(const OpenReport& report, const std::filesystem::path& path) {
  return report.result == OpenResult::Opened ? QString() : Named(ReasonText(report), path);
}

QString NoLockText(const std::filesystem::path& path) {
  return Named(
      u"\nDie Kartei kann nicht davor geschützt werden,\ndass ein zweites Programm sie zugleich ändert.\nDer Ordner "
      u"ist "
      u"vielleicht schreibgeschützt.\n\nSie ist darum nur zum Lesen geöffnet; Änderungen\nkönnen Sie unter einem "
      u"anderen "
      u"Namen speichern."_s,
      path);
}

QString TiesText(const FileTies& ties, const std::filesystem::path& path) {
  if (ties.protected_from_writing) {
    return Named(u"\nDie Datei ist schreibgeschützt.\nSoll sie trotzdem ersetzt werden?"_s, path);
  }
  if (!ties.has_other_names) return {};
  return Named(
      u"\nDie Datei hat auf der Platte noch andere Namen\n(feste Verknüpfungen). Beim Speichern entsteht eine\nneue "
      u"Datei; die anderen Namen behalten den alten Stand.\n\nSoll sie ersetzt werden?"_s,
      path);
}

QStringList RemarkTexts(const OpenReport& report) {
  QStringList remarks;
  if (report.cut_save != CutSave::None) {
    remarks
        << (report.cut_save == CutSave::Finished
                ? u"\nDas letzte Speichern wurde kurz vor seinem Ende unterbrochen.\nEs ist jetzt abgeschlossen, "
                  u"nichts "
                  u"fehlt."_s
                : u"\nDas letzte Speichern wurde unterbrochen, die Kartei hatte\nkeinen Namen mehr. Sie ist jetzt auf "
                  u"dem Stand davor."_s);
  }
  if (report.index_unfit) {
    remarks << u"\nIndexfehler,\nversuche Neuaufbau."_s;
  }
  if (report.index_defect != IndexDefect::None) remarks << DefectText(report.index_defect);
  if (report.start_missing || report.end_missing) {
    const QString part = report.end_missing ? u"Das Ende"_s : u"Der Anfang"_s;
    remarks << u"\n%1 der Kartei fehlt, die Datei ist beschädigt.\nLesbare Karten: %2.\n\n"
               u"Beim nächsten Speichern bleibt die beschädigte Datei\nunter einem anderen Namen erhalten."_s.arg(
                   part, QLocale().toString(report.cards));
  }
  if (report.settings_unreadable) {
    remarks
        << u"\nDie Einstellungen der Kartei\nkönnen nicht gelesen werden.\n\nSie bleiben, wie sie sind; gespeichert "
           u"werden\nnur die Karten."_s;
  }
  if (!report.put_aside.empty()) {
    remarks << u"\nZu dieser Kartei gibt es nicht gespeicherte Änderungen,\n"
               u"die zu einem anderen Stand der Datei gehören.\n\nSie bleiben erhalten in der Datei\n%1."_s.arg(
                   FromPath(report.put_aside.filename()));
  }
  return remarks;
}

QString DefectText(IndexDefect defect) {
  switch (defect) {
    case IndexDefect::None:
      return {};
    case IndexDefect::LearnIndex:
      return u"\nIndexaufbau Fehler,\nDefekt in Kartei.\nSiehe Hilfeindex!"_s;
    case IndexDefect::LinkIndex:
      return u"\nLinkindexaufbau Fehler,\nDefekt in Kartei.\nSiehe Hilfeindex!"_s;
  }
  return {};
}

QString FailureText(SaveResult result, const std::filesystem::path& path) {
  switch (result) {
    case SaveResult::Saved:
      return {};
    case SaveResult::ReadOnly:
      return Named(u"\nDie Kartei ist nur zum Lesen geöffnet.\nSpeichern Sie sie unter einem anderen Namen."_s, path);
    case SaveResult::CardsFailed:
      return Named(u"\nFehler Speichern Kartei.\nSiehe Hilfeindex!"_s, path);
    case SaveResult::LearnIndexFailed:
      return Named(u"\nFehler Speichern Lernindex.\nSiehe Hilfeindex!"_s, path);
    case SaveResult::LinkIndexFailed:
      return Named(u"\nFehler Speichern Linkindex.\nSiehe Hilfeindex!"_s, path);
    case SaveResult::SettingsFailed:
      return Named(u"\nDie Karten sind gespeichert,\naber nicht die Einstellungen der Kartei."_s, path);
  }
  return {};
}

QString LowSpaceText(SaveKind kind) {
  return kind == SaveKind::Plain ? u"Vorsicht, wenig Platz auf Disk!"_s : u"Vorsicht, evt. zu wenig Speicherplatz!"_s;
}

QString SpaceText(SaveKind kind, const std::filesystem::path& target, const SpaceEstimate& space) {
  const QString free = space.free ? u"%1 Bytes frei"_s.arg(*space.free) : u"freier Platz unbekannt"_s;
  const QString text = u"%1:  %2, Kartei: %3 Bytes"_s.arg(DriveOf(target)).arg(free).arg(space.needed);
  return kind == SaveKind::Plain ? u"Laufwerk "_s + text : text;
}

}  // namespace tessaro
