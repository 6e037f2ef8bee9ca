#include "app/wnmain.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDateTime>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>

#include "learn/dlausw.h"
#include "learn/dlparam.h"
#include "learn/wnlern.h"
#include "tests/app/main_window_fixture.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr const char* kOther = "/deck/other.mlb";

// One card of every kind that the start page counts, and a navigation card.
const std::vector<TestCard> kCards = {NewCard(1), WrongCard(2, 500), KnownCard(3, 100, 500), KnownCard(4, 900000, 500),
                                      NavigationCard(5, "<navigation><home>Start")};

class MainWindowFiles : public MainWindow {
 protected:
  MainWindowFiles() { PutDeck({{.id = "000007"}, {.id = "000008"}}, kOther); }

  // The file is open, one card of it was changed since.
  void OpenAndChange() {
    Open(kCards);
    Change(program.file(), "anders");
    messages.asked.clear();
  }
  void TriggerWithFile(const QString& command, const QString& file) {
    messages.files = {file};
    Trigger(command);
  }
  void BreakDisk() { disk.FailAt(1, MemoryDisk::WriteFault::Nothing, true); }
  static QWidgetList LearningWindows() {
    QWidgetList windows = QApplication::topLevelWidgets();
    windows.removeIf([](const QWidget* w) { return !w->isVisible() || qobject_cast<const TF_wnlern*>(w) == nullptr; });
    return windows;
  }
  bool SavedOnDisk() { return disk.Content(kTestFile)->find("anders") != std::string::npos; }
};

TEST_F(MainWindowFiles, StartPageOffersWhatCanBeDone) {
  const QStringList need_file = {u"FileSaveExecute"_s,    u"FileSaveAsExecute"_s,     u"MBackupClick"_s,
                                 u"IndexAufbauExecute"_s, u"KarteiPruefenExecute"_s,  u"LernStartExecute"_s,
                                 u"LernAuswahlExecute"_s, u"LernEinstellungExecute"_s};
  for (const bool open : {false, true}) {
    if (open) Open(kCards);
    for (const QString& name : need_file) EXPECT_EQ(Command(name).isEnabled(), open) << name.toStdString();
    EXPECT_EQ(Find<QWidget>(u"PanelEmpty"_s).isVisible(), !open);
  }
  EXPECT_EQ(window().windowTitle(), u"x.mlb[*] - Tessaro Hypertext-Lernprogramm 3.0"_s);
  const QStringList figures = {Text(u"FigureCards"_s), Text(u"FigureNew"_s), Text(u"FigureKnown"_s),
                               Text(u"FigureUnknown"_s), Text(u"FigureDue"_s)};
  EXPECT_EQ(figures.join(u' '), u"4 1 2 1 2"_s);
  EXPECT_EQ(Text(u"LabelNavigation"_s), u"dazu eine Navigationskarte"_s);
  EXPECT_EQ(messages.errors, QStringList());
}

TEST_F(MainWindowFiles, AdviceSaysWhatIsToDoNow) {
  const TestCard later = kCards[3];
  const std::pair<std::vector<TestCard>, QString> cases[] = {
      {kCards, u"2 Karten warten auf Wiederholung."_s},
      {{kCards[1], later}, u"Eine Karte wartet auf Wiederholung."_s},
      {{kCards[0], later}, u"Eine neue Karte wartet auf Sie."_s},
      {{later}, u"Zurzeit ist nichts zu wiederholen. Die nächste Karte ist in 10 Tagen 10 Stunden fällig."_s},
      {{kCards[4]}, u"In dieser Kartei gibt es noch keine Karten zum Lernen."_s},
  };
  for (const auto& [cards, advice] : cases) {
    Open(cards);
    EXPECT_EQ(Text(u"LabelAdvice"_s), advice);
  }
}

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
      u"\nDas Ende der Kartei fehlt, die Datei ist beschädigt.\n5 Karten konnten gelesen werden.\n\n"
      u"Beim nächsten Speichern bleibt die beschädigte Datei\nunter einem anderen Namen erhalten."_s;
  QString beheaded = cut;
  beheaded.replace(u"Das Ende"_s, u"Der Anfang"_s).replace(u"5 K"_s, u"6 K"_s);
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
  EXPECT_FALSE(window().FileSaveExecute());
  EXPECT_TRUE(messages.asked.size() == 2 && messages.asked[0] != messages.asked[1]);
  const std::optional<std::string> other = disk.Content(kOther);
  TriggerWithFile(u"MBackupClick"_s, QString::fromUtf8(kOther));
  EXPECT_TRUE(messages.asked.size() == 3 && disk.Content(kOther) == other && !SavedOnDisk());
  messages.answers = {Answer::Yes};
  EXPECT_TRUE(window().FileSaveExecute() && SavedOnDisk() && window().FileSaveExecute());
  EXPECT_EQ(messages.asked.size(), 4);
}

// What another start of the program hands over, and what the first one shows while its file is loaded.
TEST_F(MainWindowFiles, AFileOfAnotherStartWaitsUntilNoDialogIsOpen) {
  PutDeck(kCards);
  window().OpenAtStart(kTestFile);
  EXPECT_EQ(Text(u"LabelName"_s) + Text(u"FigureCards"_s), u"x…"_s);
  EXPECT_FALSE(Find<QPushButton>(u"ButtonLearn"_s).isEnabled());
  ASSERT_TRUE(QTest::qWaitFor([this] { return program.file().IsOpen(); }));
  EXPECT_TRUE(Find<QPushButton>(u"ButtonLearn"_s).isEnabled());
  DriveDialog<TF_dlparam>([&] { Trigger(u"LernEinstellungExecute"_s); },
                          [&](TF_dlparam&) {
                            window().OpenForOtherStart(kOther);
                            QTest::qWait(300);
                            EXPECT_EQ(CardsPath(), kTestFile);
                          });
  EXPECT_TRUE(QTest::qWaitFor([this] { return CardsPath() == kOther; }));
  window().OpenForOtherStart({});
  window().OpenAtStart("/deck/missing.mlb");
  EXPECT_TRUE(QTest::qWaitFor([this] { return messages.errors.size() == 1; }));
  EXPECT_EQ(Text(u"LabelName"_s), u"other"_s);
}

TEST_F(MainWindowFiles, NoWindowEndsWhileADialogOfItsOwnIsOnTheStack) {
  PutDeck(kCards, kOther);
  Open(kCards);
  program.OpenLearning();
  program.OpenEditor();
  program.outlook().OpenEvaluation();
  int windows = 0;
  for (QWidget* opened : QApplication::topLevelWidgets()) {
    if (!opened->isVisible() || opened == &window()) continue;
    SCOPED_TRACE(opened->metaObject()->className());
    ++windows;
    QDialog dialog(opened);
    QTimer::singleShot(0, &dialog, [&] {
      EXPECT_FALSE(opened->close() || window().OpenFile(kOther));
      dialog.accept();
      EXPECT_FALSE(opened->close());
    });
    EXPECT_EQ(dialog.exec(), QDialog::Accepted);
    EXPECT_TRUE(opened->isVisible());
  }
  EXPECT_EQ(windows, 3);
  EXPECT_TRUE(QTest::qWaitFor([this] { return CardsPath() == kOther; }));
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
  const struct {
    std::function<bool()> leave;
    QString question;
    Answer answer;
    bool saved, left;
  } cases[] = {
      {open, first, Answer::Yes, true, true},      {open, first, Answer::No, false, true},
      {open, first, Answer::Cancel, false, false}, {restore, first, Answer::Cancel, false, false},
      {close, last, Answer::Yes, true, true},      {close, last, Answer::No, false, true},
      {close, last, Answer::Cancel, false, false},
  };
  for (const auto& c : cases) {
    window().show();
    OpenAndChange();
    messages.answers = {c.answer};
    EXPECT_EQ(c.leave(), c.left);
    EXPECT_EQ(messages.asked, QStringList{c.question});
    EXPECT_EQ(SavedOnDisk(), c.saved) << c.question.toStdString() << " answer " << static_cast<int>(c.answer);
  }
  BreakDisk();
  messages.answers = {Answer::Yes};
  EXPECT_FALSE(window().close()) << "it could not be saved";
  EXPECT_EQ(messages.errors, QStringList{u"\nFehler Speichern Kartei.\nSiehe Hilfeindex!\n\nx.mlb"_s});
  EXPECT_TRUE(window().isWindowModified());
}

TEST_F(MainWindowFiles, WhatACrashLeftIsAskedFor) {
  for (const Answer answer : {Answer::Yes, Answer::No}) {
    PutDeck(kCards);
    {
      CardFile crashed(disk, clock);
      ASSERT_EQ(crashed.Open(kTestFile).result, OpenResult::Opened);
      Change(crashed, "anders");
    }
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
  const struct {
    QString command;
    uint64_t free;
    QString sizes, status;
  } cases[] = {
      {u"FileSaveExecute"_s, 1800, u"Laufwerk /:  1800 Bytes frei, Kartei: 1800 Bytes"_s, u"Gespeichert um "_s},
      {u"FileSaveExecute"_s, 1799, u"Laufwerk /:  1799 Bytes frei, Kartei: 1800 Bytes"_s, low},
      {u"MBackupClick"_s, 1799, u"/:  1799 Bytes frei, Kartei: 1800 Bytes"_s, perhaps_low},
  };
  const uint64_t all = *disk.FreeBytes({});
  for (const auto& c : cases) {
    disk.set_capacity(all);
    OpenAndChange();
    EXPECT_EQ(Text(u"LabelSizes"_s), QString()) << "sizes tell of loading, not of what is loaded";
    disk.set_capacity(all - *disk.FreeBytes({}) + c.free);
    TriggerWithFile(c.command, u"/deck/another.mlb"_s);
    EXPECT_EQ(Text(u"LabelSizes"_s), c.sizes);
    EXPECT_EQ(Text(u"LabelStatus"_s).chopped(5), c.status) << c.command.toStdString() << " " << c.free;
  }
  EXPECT_EQ(messages.shown,
            QStringList{u"Backup nach Datei\n/deck/another.mlb\nEventuell zu wenig\nPlatz auf Disk."_s});
}

// From no room at all to room for everything: somewhere on the way each of the three files is the one that fails.
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
  TriggerWithFile(u"MBackupClick"_s, u"/deck/copy.mlb"_s);
  EXPECT_EQ(messages.shown, QStringList{u"Backup nach Datei\n/deck/copy.mlb\nerfolgreich."_s});
  EXPECT_EQ(CardsPath(), kTestFile);
  EXPECT_TRUE(program.file().changed());
  TriggerWithFile(u"MBackupClick"_s, QString::fromUtf8(kTestFile));
  EXPECT_EQ(messages.errors.size(), 1) << "a backup over the open file is none";

  TriggerWithFile(u"FileSaveAsExecute"_s, u"/deck/moved.mlb"_s);
  EXPECT_EQ(CardsPath(), "/deck/moved.mlb");
  EXPECT_FALSE(program.file().changed());
  EXPECT_EQ(disk.Content("/deck/moved.mlb"), disk.Content("/deck/copy.mlb"));
  EXPECT_FALSE(SavedOnDisk());

  disk.set_capacity(0);
  TriggerWithFile(u"MBackupClick"_s, u"/deck/full.mlb"_s);
  EXPECT_EQ(Text(u"LabelStatus"_s), u"Nicht vollständig gespeichert"_s);
}

TEST_F(MainWindowFiles, LearningLastsUntilAnotherFileIsOpened) {
  Open(kCards);
  Click(u"ButtonLearn"_s);
  EXPECT_TRUE(program.learning());
  Trigger(u"LernStartExecute"_s);
  const QWidgetList windows = LearningWindows();
  ASSERT_EQ(windows.size(), 1) << "no second window for the same run";
  EXPECT_TRUE(windows[0]->screen()->availableGeometry().contains(windows[0]->pos()));
  EXPECT_TRUE(window().OpenFile(kOther));
  EXPECT_FALSE(program.learning());
}

TEST_F(MainWindowFiles, AfterARunItSaysWhenTheNextCardComes) {
  Open({kCards[3]});
  program.OpenLearning();
  EXPECT_TRUE(program.CloseLearning());
  EXPECT_EQ(Text(u"LabelAdvice"_s), u"Für jetzt fertig, nächste Karte in 11 Tagen."_s);
  ASSERT_TRUE(window().OpenFile(kOther));
  ASSERT_TRUE(window().OpenFile(kTestFile));
  EXPECT_EQ(Text(u"LabelAdvice"_s).section(u'.', 0, 0), u"Zurzeit ist nichts zu wiederholen"_s);
}

TEST_F(MainWindowFiles, FiguresAreThoseOfTheMomentTheWindowComesToTheFront) {
  Open({kCards[3]});
  QWidget other;
  const auto come_back_after = [&](int64_t seconds) {
    other.show();
    other.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
    clock.now += seconds;
    window().activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window()));
    return Text(u"FigureDue"_s);
  };
  EXPECT_EQ(come_back_after(kDay), u"0"_s);
  EXPECT_EQ(come_back_after(30 * kDay), u"1"_s);
}

TEST_F(MainWindowFiles, EnterPressesTheButtonWithTheFocus) {
  Open(kCards);
  auto& button = Find<QPushButton>(u"ButtonReihe"_s);
  button.setFocus();
  QTest::keyClick(&button, Qt::Key_Return);
  QApplication::processEvents();
  EXPECT_EQ(Control<QLabel>(*LearningWindows().at(0), u"LabelSteuerung"_s).text(), u"Lernsteuerung nach Reihenfolge"_s);
}

TEST_F(MainWindowFiles, OtherWaysToLearnStartFromTheStartPageAndInTheRunningWindow) {
  Open(kCards);
  const auto count_and_press = [](const QString& button) {
    return [button](TF_dlausw& dialog) {
      for (const QString& name : {u"BitBtnSort"_s, button}) Control<QPushButton>(dialog, name).click();
    };
  };
  DriveDialog<TF_dlausw>([&] { Click(u"ButtonLeitner"_s); }, count_and_press(u"BitBtnCancel"_s));
  EXPECT_FALSE(program.learning());
  Click(u"ButtonReihe"_s);
  QApplication::processEvents();
  const auto stage = [] { return Control<QLabel>(*LearningWindows().at(0), u"LabelSteuerung"_s).text(); };
  EXPECT_EQ(stage(), u"Lernsteuerung nach Reihenfolge"_s);
  DriveDialog<TF_dlausw>([&] { Trigger(u"LernAuswahlExecute"_s); }, count_and_press(u"BitBtnLern1"_s));
  EXPECT_EQ(stage(), u"Lernsteuerung manuell - in Karteifach 1 -"_s);
}

TEST_F(MainWindowFiles, ParametersAreKeptInBothSettingsAndWaitForTheEndOfARun) {
  Open(kCards);
  const auto set = [&](const QString& days) {
    DriveDialog<TF_dlparam>([&] { Trigger(u"LernEinstellungExecute"_s); },
                            [&](TF_dlparam& dialog) {
                              Control<QLineEdit>(dialog, u"EdCheckImmer"_s).setText(days);
                              Control<QLineEdit>(dialog, u"EdCheckPosition"_s).setText(u"3"_s);
                              Control<QPushButton>(dialog, u"BitBtnOK"_s).click();
                            });
  };
  set(u"7"_s);
  EXPECT_FALSE(program.settings().ini.Has("CHK", "max")) << "refused, then closed";
  set(u"20"_s);
  EXPECT_NE(disk.Content("/tessaro.ini")->find("max=20"), std::string::npos);
  EXPECT_EQ(disk.Content("/tessaro.ini")->find("rpos"), std::string::npos);
  EXPECT_NE(disk.Content("/deck/x.ini")->find("rpos=3"), std::string::npos);
  program.OpenLearning();
  EXPECT_FALSE(Command(u"LernEinstellungExecute"_s).isEnabled());
}

}  // namespace
}  // namespace tessaro
