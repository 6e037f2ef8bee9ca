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

QString InUseText(const LockHolder& holder) {
  const QString by = holder == LockHolder()
                         ? QString()
                         : u"\n(Rechner %1, Prozess %2)"_s.arg(QString::fromLocal8Bit(holder.machine),
                                                               QString::fromLocal8Bit(holder.process));
  return u"\nDie Kartei ist schon in einem\nanderen Programmfenster geöffnet%1.\nBitte schließen Sie sie dort zuerst."_s
      .arg(by);
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

QString RefusalText(OpenResult result, const LockHolder& in_use_by) {
  switch (result) {
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
      return InUseText(in_use_by);
  }
  return {};
}

QStringList RemarkTexts(const OpenReport& report) {
  QStringList remarks;
  if (report.learn_index_rebuilt || report.link_index_rebuilt) {
    remarks << u"\nIndexfehler,\nversuche Neuaufbau."_s;
  }
  if (report.index_defect != IndexDefect::None) remarks << DefectText(report.index_defect);
  if (report.start_missing || report.end_missing) {
    const QString part = report.end_missing ? u"Das Ende"_s : u"Der Anfang"_s;
    remarks << u"\n%1 der Kartei fehlt, die Datei ist beschädigt.\n%2 Karten konnten gelesen werden.\n\n"
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

QString FailureText(SaveResult result) {
  switch (result) {
    case SaveResult::Saved:
      return {};
    case SaveResult::CardsFailed:
      return u"\nFehler Speichern Kartei.\nSiehe Hilfeindex!"_s;
    case SaveResult::LearnIndexFailed:
      return u"\nFehler Speichern Lernindex.\nSiehe Hilfeindex!"_s;
    case SaveResult::LinkIndexFailed:
      return u"\nFehler Speichern Linkindex.\nSiehe Hilfeindex!"_s;
    case SaveResult::SettingsFailed:
      return u"\nDie Karten sind gespeichert,\naber nicht die Einstellungen der Kartei."_s;
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
