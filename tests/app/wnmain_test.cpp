#include "app/wnmain.h"

#include <QDateTime>

#include "app/dlneu.h"
#include "learn/dlparam.h"
#include "settings/recent_files.h"
#include "tests/app/main_window_fixture.h"
#include "widgets/long_work.h"

namespace tessaro {
namespace {

TEST_F(MainWindowFiles, RefusedFilesLeaveTheOpenOneOpen) {
  disk.Put("/deck/rubbish.mlb", "no cards\n");
  disk.Put("/deck/x.Mlb", "");
  disk.HoldLock("/deck/.other.mlb.lock", {"pc", "123"});
  const std::pair<QString, QString> cases[] = {
      {u"/deck/x.Mlb"_s, u"\nDateityp ist falsch.\n\nx.Mlb"_s},
      {u"/deck/missing.mlb"_s, u"\nDatei kann nicht\ngeöffnet werden\n\nmissing.mlb"_s},
      {u"/deck/rubbish.mlb"_s,
       u"\nDie Kartei ist unbrauchbar.\nBenutzen Sie bitte\n<Karteikasten><Restore>\n\nrubbish.mlb"_s},
      {u"/deck/other.mlb"_s,
       u"\nDie Kartei ist schon in einem\nanderen Programmfenster geöffnet\n"
       u"(Rechner pc, Prozess 123).\nBitte schließen Sie sie dort zuerst.\n\nother.mlb"_s},
  };
  Open(kCards);
  for (const auto& [path, message] : cases) {
    TriggerWithFile(u"FileOpenExecute"_s, path);
    EXPECT_EQ(messages.errors.last(), message);
    EXPECT_EQ(CardsPath(), kTestFile) << path.toStdString();
  }
  EXPECT_EQ(messages.errors.size(), 4);
}

TEST_F(MainWindowFiles, OpeningTellsOfDefectsOnce) {
  const QString index = u"\nIndexfehler,\nversuche Neuaufbau."_s;
  const QString cut =
      u"\nDas Ende der Kartei fehlt, die Datei ist beschädigt.\nLesbare Karten: 5.\n\n"
      u"Beim nächsten Speichern bleibt die beschädigte Datei\nunter einem anderen Namen erhalten."_s;
  QString beheaded = cut;
  beheaded.replace(u"Das Ende"_s, u"Der Anfang"_s).replace(u'5', u'6');
  const std::pair<std::function<void()>, QStringList> cases[] = {
      {[] {}, {}},
      {[&] {
         disk.Put(kTestFile, With(*disk.Content(kTestFile), {"@@", "000009"}));
       },
       {index, beheaded}},
      {[&] { EXPECT_TRUE(disk.Remove("/deck/x.row")); }, {}},
      {[&] { EXPECT_TRUE(disk.Remove("/deck/x.row") && disk.Remove("/deck/x.idt")); }, {}},
      {[&] { disk.Put("/deck/x.idt", "unfit"); }, {index}},
      {[&] { disk.Put(kTestFile, disk.Content(kTestFile)->substr(0, disk.Content(kTestFile)->rfind("##"))); }, {cut}},
  };
  for (const auto& [damage, remarks] : cases) {
    program.file().Close();
    PutDeck(kCards);
    damage();
    messages.errors.clear();
    EXPECT_TRUE(window().OpenFile(kTestFile));
    EXPECT_EQ(messages.errors, remarks);
    EXPECT_EQ(Text(u"LabelStatus"_s).endsWith(u", Indextabellen aufgebaut"_s), !disk.Exists("/deck/x.row"));
  }
}

TEST_F(MainWindowFiles, AFileThatCannotBeLockedIsReadUnlessTheUserInsists) {
  PutDeck(kCards);
  disk.set_has_locks(false);
  ASSERT_TRUE(window().OpenFile(kTestFile)) << "the safe answer is to read";
  EXPECT_EQ(messages.asked.size(), 1);
  EXPECT_TRUE(window().windowTitle().startsWith(u"x.mlb (nur lesen)[*]"_s));
  Change(program.file(), "anders");
  EXPECT_FALSE(window().FileSaveExecute());
  EXPECT_EQ(messages.errors, QStringList{u"\nDie Kartei ist nur zum Lesen geöffnet.\n"
                                         u"Speichern Sie sie unter einem anderen Namen.\n\nx.mlb"_s});
  TriggerWithFile(u"FileSaveAsExecute"_s, u"/deck/moved.mlb"_s);
  EXPECT_TRUE(window().windowTitle().startsWith(u"moved.mlb[*]"_s));
  EXPECT_TRUE(Text(u"LabelStatus"_s).contains(u"nicht davor geschützt"_s)) << "never silently";
  program.file().Close();
  messages.answers = {Answer::No};
  ASSERT_TRUE(window().OpenFile(kTestFile));
  Change(program.file(), "anders");
  EXPECT_TRUE(window().FileSaveExecute() && SavedOnDisk());
}

TEST_F(MainWindowFiles, AFileThatIsProtectedOrHasOtherNamesIsAskedAboutOnce) {
  OpenAndChange();
  disk.set_ties({.protected_from_writing = true, .has_other_names = false});
  EXPECT_FALSE(window().FileSaveExecute()) << "the safe answer is not to replace it";
  disk.set_ties({.protected_from_writing = false, .has_other_names = true});
  EXPECT_TRUE(!window().FileSaveExecute() && messages.asked.size() == 2 && messages.asked[0] != messages.asked[1]);
  const std::optional<std::string> other = disk.Content(kOther);
  TriggerWithFile(u"MBackupClick"_s, QString::fromUtf8(kOther));
  EXPECT_TRUE(messages.asked.size() == 3 && disk.Content(kOther) == other && !SavedOnDisk());
  messages.answers = {Answer::Yes};
  EXPECT_TRUE(window().FileSaveExecute() && SavedOnDisk() && window().FileSaveExecute());
  EXPECT_EQ(messages.asked.size(), 4);
  EXPECT_FALSE((LongWork(&window(), clock), window().FileSaveExecute()));
  program.file().Close();
  EXPECT_TRUE(!window().FileSaveExecute() && messages.errors.isEmpty());
}

// What another start of the program hands over, and what the first one shows while its file is loaded.
TEST_F(MainWindowFiles, AFileOfAnotherStartWaitsUntilNoDialogIsOpen) {
  PutDeck(kCards);
  window().FulfilAtStart({.card_file = kTestFile});
  EXPECT_EQ(Text(u"LabelName"_s) + Text(u"FigureCards"_s), u"x…"_s);
  EXPECT_EQ(Text(u"LabelAdvice"_s), u"Die Kartei wird geladen."_s);
  EXPECT_FALSE(Find<QPushButton>(u"ButtonLearn"_s).isEnabled());
  ASSERT_TRUE(QTest::qWaitFor([this] { return program.file().IsOpen(); }));
  EXPECT_TRUE(Find<QPushButton>(u"ButtonLearn"_s).isEnabled());
  Drive<TF_dlparam>(u"LernEinstellungExecute"_s, [&](TF_dlparam&) {
    window().FulfilForOtherStart({.card_file = kOther});
    QTest::qWait(300);
    EXPECT_EQ(CardsPath(), kTestFile);
  });
  EXPECT_TRUE(QTest::qWaitFor([this] { return CardsPath() == kOther; }));
  window().FulfilForOtherStart({});
  window().FulfilAtStart({.card_file = "/deck/missing.mlb"});
  EXPECT_TRUE(QTest::qWaitFor([this] { return messages.errors.size() == 1; }));
  EXPECT_EQ(Text(u"LabelName"_s), u"other"_s);
}

TEST_F(MainWindowFiles, AStartMayAskToLearnOrForANewCardFile) {
  const StartWish learn = {.deed = StartWish::Deed::Learn};
  window().FulfilForOtherStart(learn);
  EXPECT_TRUE(QTest::qWaitFor([this] { return Text(u"LabelStatus"_s).startsWith(u"Zum Lernen"_s); }));
  AddRecentFile(program.settings().ini, kOther);
  window().FulfilForOtherStart(learn);
  EXPECT_TRUE(QTest::qWaitFor([this] { return program.learning(); }));
  EXPECT_EQ(CardsPath(), kOther);
  disk.PutSymbolicLink("/deck/link.mlb", kOther);
  AddRecentFile(program.settings().ini, kTestFile);
  Change(program.file(), "anders");
  for (const StartWish& of_the_open_file : {learn, StartWish{"/deck/link.mlb"}}) {
    window().FulfilForOtherStart(of_the_open_file);
    QTest::qWait(20);
  }
  EXPECT_TRUE(program.file().changed() && program.learning() && window().FileSaveExecute());
  window().FulfilForOtherStart({.card_file = kTestFile, .deed = StartWish::Deed::Learn});
  EXPECT_TRUE(QTest::qWaitFor([this] { return messages.errors.size() == 1; })) << "there is no such file";
  EXPECT_FALSE(program.learning());
  DriveDialog<TF_dlneu>(
      [&] {
        window().FulfilAtStart({.deed = StartWish::Deed::NewFile});
        QTest::qWait(50);
      },
      [](TF_dlneu& dialog) { dialog.reject(); });
}

TEST_F(MainWindowFiles, NoWindowEndsWhileADialogOfItsOwnIsOnTheStack) {
  PutDeck(kCards, kOther);
  Open(kCards);
  program.OpenLearning();
  program.OpenEditor();
  for (const auto& command : {u"AuswertungExecute"_s, u"PrognoseExecute"_s, u"PrognoseExecute"_s}) Trigger(command);
  int windows = 0;
  for (QWidget* opened : QApplication::topLevelWidgets()) {
    if (!opened->isVisible() || opened == &window()) continue;
    SCOPED_TRACE(opened->metaObject()->className());
    ++windows;
    QDialog dialog(opened);
    QTimer::singleShot(0, &dialog, [&] {
      EXPECT_FALSE(opened->close() || window().OpenFile(kOther));
      dialog.accept();
      EXPECT_FALSE(opened->close()) << "its loop has not ended yet";
    });
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    EXPECT_TRUE(opened->isVisible());
    (new QDialog(opened))->show();  // one that stands beside it hinders nobody
  }
  EXPECT_EQ(windows, 4) << "one of each kind";
  EXPECT_TRUE(QTest::qWaitFor([this] { return CardsPath() == kOther; }));
  EXPECT_EQ(OpenWindows<QWidget>(), QList<QWidget*>{&window()}) << "they go with their card file";
}

// What a changed card file asks before it is left, and what each answer does.
TEST_F(MainWindowFiles, LeavingAChangedFileAsksFirst) {
  const auto close = [this] { return window().close(); };
  const auto open = [this] {
    TriggerWithFile(u"FileOpenExecute"_s, QString::fromUtf8(kOther));
    return CardsPath() == kOther;
  };
  // Without a choice among the backups of the open file; as the user stays, it does not come to that.
  const auto restore = [this] {
    TriggerWithFile(u"MRestoreClick"_s, u"/deck/other.ml~"_s);
    return program.file().CardCount() == 2;
  };
  const QString first = u"\nAktuelle Kartei\nzuerst speichern?"_s;
  const QString last = u"\nAktuelle Kartei\nspeichern?"_s;
  // How the file is left, the question and its answer, whether the file is saved then, and whether it is left.
  const std::tuple<std::function<bool()>, QString, Answer, bool, bool> cases[] = {
      {open, first, Answer::Yes, true, true},      {open, first, Answer::No, false, true},
      {open, first, Answer::Cancel, false, false}, {restore, first, Answer::Cancel, false, false},
      {close, last, Answer::Yes, true, true},      {close, last, Answer::No, false, true},
      {close, last, Answer::Cancel, false, false},
  };
  for (const auto& [leave, question, answer, saved, left] : cases) {
    window().show();
    OpenAndChange();
    messages.answers = {answer};
    EXPECT_EQ(leave(), left);
    EXPECT_EQ(messages.asked, QStringList{question});
    EXPECT_EQ(SavedOnDisk(), saved) << question.toStdString() << " answer " << static_cast<int>(answer);
  }
  BreakDisk();
  messages.answers = {Answer::Yes};
  EXPECT_FALSE(window().close()) << "it could not be saved";
  EXPECT_EQ(messages.errors, QStringList{u"\nFehler Speichern Kartei.\nSiehe Hilfeindex!\n\nx.mlb"_s});
  EXPECT_TRUE(window().isWindowModified());
}

TEST_F(MainWindowFiles, WhatACrashLeftIsAskedFor) {
  for (const Answer answer : {Answer::Yes, Answer::No}) {
    PutCrashed(kCards);
    messages.answers = {Answer::Cancel, answer};
    EXPECT_FALSE(window().OpenFile(kTestFile)) << "the next opening asks again";
    EXPECT_FALSE(program.file().IsOpen());
    messages.asked.clear();
    ASSERT_TRUE(window().OpenFile(kTestFile));
    const QString when = QDateTime::fromSecsSinceEpoch(kNow).toString(u"dd.MM.yyyy, HH:mm"_s);
    EXPECT_EQ(messages.asked, QStringList{u"\nDas Programm wurde beendet,\nbevor die Kartei gespeichert war.\n\n"
                                          u"Es gibt noch Änderungen an einer Karte\nvom %1 Uhr.\n\n"
                                          u"Sollen sie übernommen werden?"_s.arg(when)});
    EXPECT_EQ(window().isWindowModified(), answer == Answer::Yes);
    EXPECT_EQ(disk.Exists("/deck/x-Antworten-1.mlj"), answer == Answer::No);
    messages.answers = {Answer::Yes};
    EXPECT_TRUE(window().close());
    EXPECT_EQ(SavedOnDisk(), answer == Answer::Yes);
  }
}

TEST_F(MainWindowFiles, ADiskThatTakesNoAnswersIsToldOfOnce) {
  Open(kCards);
  BreakDisk();
  for (int i = 0; i < 3; ++i) program.file().RowChanged(2);
  EXPECT_EQ(messages.errors.size(), 0) << "not in the middle of an answer";
  QApplication::processEvents();
  EXPECT_EQ(messages.errors.size(), 1);
}

TEST_F(MainWindowFiles, AFileWithoutCardsIsNotSavedUnasked) {
  Open({{.id = "000001"}});
  ASSERT_TRUE(program.file().cards().GoTo(kFirstCardRow) && program.file().cards().DeleteRow());
  const std::optional<std::string> before = disk.Content(kTestFile);
  EXPECT_FALSE(window().close()) << "the safe answer is to stay";
  messages.answers = {Answer::No};
  EXPECT_TRUE(window().close());
  EXPECT_EQ(messages.asked.first(), u"\nKartei wirklich speichern?.\nSie enthält keine Karten\noder ist defekt."_s);
  EXPECT_EQ(disk.Content(kTestFile), before);
}

// The estimate is at least 300 bytes a card and a fifth more: 1800 bytes for five cards, which need less in truth.
TEST_F(MainWindowFiles, SavingTellsTheSpaceAndTheWarningOutlastsIt) {
  const QString low = u"Vorsicht, wenig Platz auf Disk! Gespeichert um "_s;
  const QString perhaps_low = u"Vorsicht, evt. zu wenig Speicherplatz! Gespeichert um "_s;
  const std::tuple<QString, uint64_t, QString, QString> cases[] = {
      {u"FileSaveExecute"_s, 1800, u"Laufwerk /:  1800 Bytes frei, Kartei: 1800 Bytes"_s, u"Gespeichert um "_s},
      {u"FileSaveExecute"_s, 1799, u"Laufwerk /:  1799 Bytes frei, Kartei: 1800 Bytes"_s, low},
      {u"MBackupClick"_s, 1799, u"/:  1799 Bytes frei, Kartei: 1800 Bytes"_s, perhaps_low},
  };
  const uint64_t all = *disk.FreeBytes({});
  for (const auto& [command, free, sizes, status] : cases) {
    disk.set_capacity(all);
    OpenAndChange();
    EXPECT_EQ(Text(u"LabelSizes"_s), QString()) << "sizes tell of loading, not of what is loaded";
    disk.set_capacity(all - *disk.FreeBytes({}) + free);
    TriggerWithFile(command, u"/deck/another.mlb"_s);
    EXPECT_EQ(Text(u"LabelSizes"_s), sizes);
    EXPECT_EQ(Text(u"LabelStatus"_s).chopped(5), status) << command.toStdString() << " " << free;
  }
  EXPECT_EQ(messages.shown,
            QStringList{u"Backup nach Datei\n/deck/another.mlb\nEventuell zu wenig\nPlatz auf Disk."_s});
}

TEST_F(MainWindowFiles, AFileChangedByAnotherProgramIsAskedAboutBeforeItIsOverwritten) {
  for (const Answer answer : {Answer::No, Answer::Yes}) {
    OpenAndChange();
    disk.Put(kTestFile, "written by someone else");
    messages.answers = {answer};
    EXPECT_EQ(window().FileSaveExecute(), answer == Answer::Yes);
    EXPECT_EQ(messages.asked.size(), 1);
    EXPECT_EQ(SavedOnDisk(), answer == Answer::Yes);
  }
}

TEST_F(MainWindowFiles, SavingUnderAnotherNameMovesThereABackupDoesNot) {
  OpenAndChange();
  for (const QString& cancelled : {u"FileSaveAsExecute"_s, u"MBackupClick"_s}) Trigger(cancelled);
  EXPECT_TRUE(messages.errors.isEmpty() && CardsPath() == kTestFile && !SavedOnDisk());
  TriggerWithFile(u"MBackupClick"_s, u"/deck/copy.mlb"_s);
  EXPECT_EQ(messages.shown, QStringList{u"Backup nach Datei\n/deck/copy.mlb\nerfolgreich."_s});
  EXPECT_EQ(CardsPath(), kTestFile);
  EXPECT_TRUE(program.file().changed());
  TriggerWithFile(u"MBackupClick"_s, QString::fromUtf8(kTestFile));
  EXPECT_EQ(messages.errors.size(), 1) << "a backup over the open file is none";

  TriggerWithFile(u"FileSaveAsExecute"_s, u"/deck/moved.mlb"_s);
  EXPECT_EQ(CardsPath(), "/deck/moved.mlb");
  EXPECT_EQ(RecentFiles(program.settings().ini).front(), "/deck/moved.mlb");
  EXPECT_FALSE(program.file().changed());
  EXPECT_EQ(disk.Content("/deck/moved.mlb"), disk.Content("/deck/copy.mlb"));
  EXPECT_FALSE(SavedOnDisk());

  disk.set_capacity(0);
  TriggerWithFile(u"MBackupClick"_s, u"/deck/full.mlb"_s);
  EXPECT_EQ(Text(u"LabelStatus"_s), u"Nicht vollständig gespeichert"_s);
}

}  // namespace
}  // namespace tessaro
