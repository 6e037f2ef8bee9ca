#include "app/wnmain.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDateTime>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QUrl>
#include <functional>
#include <string>
#include <vector>

#include "app/program.h"
#include "learn/dlausw.h"
#include "learn/dlparam.h"
#include "learn/wnlern.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/fixed_clock.h"
#include "tests/support/recorded_messages.h"
#include "tests/support/scripted_random.h"
#include "tests/support/test_cards.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int64_t kNow = 1'700'000'000;
constexpr const char* kOther = "/deck/other.mlb";

std::string Newest(char letter) {
  return letter + std::string(kHistoryLength - 1, 'f');
}

// One card of every kind that the start page counts, and a navigation card.
const std::vector<TestCard> kCards = {
    {.id = "000001", .score = "000000001"},
    {.id = "000002", .score = "000000000", .time_row = std::to_string(kNow - 500)},
    {.id = "000003", .score = "000000100", .yes_no_row = Newest('w'), .time_row = std::to_string(kNow - 500)},
    {.id = "000004", .score = "000900000", .yes_no_row = Newest('w'), .time_row = std::to_string(kNow - 500)},
    {.id = "000005", .question = "<navigation><home>Start"},
};

class MainWindow : public testing::Test {
 protected:
  MainWindow() {
    PutDeck(kTestFile, kCards);
    PutDeck(kOther, {{.id = "000007"}, {.id = "000008"}});
    window().show();
  }

  // A card file with the indexes that fit it.
  void PutDeck(const char* path, const std::vector<TestCard>& cards) {
    CardTable table = MakeCards(cards);
    disk.Put(path, FileText(table));
    CardFile deck(disk);
    EXPECT_EQ(deck.Open(path).result, OpenResult::Opened);
    EXPECT_EQ(deck.Save(), SaveResult::Saved);
  }
  // The file is open, one card of it was changed since.
  void OpenAndChange() {
    ASSERT_TRUE(window().OpenFile(kTestFile));
    program.file().cards().Poke(program.file().columns().answer, 2, "anders");
    program.file().RowChanged(2);
  }
  static std::vector<const QWidget*> LearningWindows() {
    std::vector<const QWidget*> windows;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->isVisible() && qobject_cast<const TF_wnlern*>(widget) != nullptr) windows.push_back(widget);
    }
    return windows;
  }
  bool SavedOnDisk() { return disk.Content(kTestFile)->find("anders") != std::string::npos; }

  TF_wnmain& window() { return program.main_window(); }
  void Trigger(const QString& command) { Find<QAction>(command).trigger(); }
  QString Text(const QString& label) { return Find<QLabel>(label).text(); }
  template <typename Kind>
  Kind& Find(const QString& name) {
    auto* found = window().findChild<Kind*>(name);
    if (found == nullptr) throw std::runtime_error("no " + name.toStdString());
    return *found;
  }

  MemoryDisk disk;
  FixedClock clock{kNow};
  ScriptedRandom random;
  RecordedMessages messages;
  Program program{{disk, clock, random, messages}, {"/tessaro.ini", {}, "/documents"}};
};

TEST_F(MainWindow, StartPageOffersWhatCanBeDone) {
  const QStringList need_file = {u"FileSaveExecute"_s,    u"FileSaveAsExecute"_s,     u"MBackupClick"_s,
                                 u"IndexAufbauExecute"_s, u"KarteiPruefenExecute"_s,  u"LernStartExecute"_s,
                                 u"LernAuswahlExecute"_s, u"LernEinstellungExecute"_s};
  for (const QString& command : need_file) EXPECT_FALSE(Find<QAction>(command).isEnabled()) << command.toStdString();
  EXPECT_TRUE(Find<QWidget>(u"PanelEmpty"_s).isVisible());
  ASSERT_TRUE(window().OpenFile(kTestFile));
  for (const QString& command : need_file) EXPECT_TRUE(Find<QAction>(command).isEnabled()) << command.toStdString();
  EXPECT_FALSE(Find<QWidget>(u"PanelEmpty"_s).isVisible());
  EXPECT_EQ(window().windowTitle(), u"x.mlb[*] - Tessaro Hypertext-Lernprogramm 3.0"_s);
  const QStringList figures = {Text(u"FigureCards"_s), Text(u"FigureNew"_s), Text(u"FigureKnown"_s),
                               Text(u"FigureUnknown"_s), Text(u"FigureDue"_s)};
  EXPECT_EQ(figures.join(u' '), u"5 1 2 1 2"_s);
  EXPECT_EQ(messages.errors, QStringList());
}

TEST_F(MainWindow, AdviceSaysWhatIsToDoNow) {
  const TestCard later = kCards[3];
  const struct {
    std::vector<TestCard> cards;
    QString advice;
  } cases[] = {
      {kCards, u"2 Karten warten auf Wiederholung."_s},
      {{kCards[1], later}, u"Eine Karte wartet auf Wiederholung."_s},
      {{kCards[0], later}, u"Eine neue Karte wartet auf Sie."_s},
      {{later}, u"Zurzeit ist nichts zu wiederholen. Die nächste Karte ist in 10 Tagen 10 Stunden fällig."_s},
      {{kCards[4]}, u"In dieser Kartei gibt es noch keine Karten zum Lernen."_s},
  };
  for (const auto& c : cases) {
    PutDeck("/deck/advice.mlb", c.cards);
    ASSERT_TRUE(window().OpenFile("/deck/advice.mlb"));
    EXPECT_EQ(Text(u"LabelAdvice"_s), c.advice);
    program.file().Close();
  }
}

TEST_F(MainWindow, RefusedFilesLeaveTheOpenOneOpen) {
  disk.Put("/deck/rubbish.mlb", "no cards\n");
  disk.Put("/deck/x.Mlb", "");
  disk.HoldLock("/deck/.other.mlb.lock", "rechner, Prozess 123");
  const struct {
    QString path;
    QString message;
  } cases[] = {
      {u"/deck/x.Mlb"_s, u"\nDateityp ist falsch."_s},
      {u"/deck/missing.mlb"_s, u"\nDatei kann nicht\ngeöffnet werden"_s},
      {u"/deck/rubbish.mlb"_s, u"\nDie Kartei ist unbrauchbar.\nBenutzen Sie bitte\n<Karteikasten><Restore>"_s},
      {u"/deck/other.mlb"_s,
       u"\nDie Kartei ist schon in einem\nanderen Programmfenster geöffnet\n(rechner, Prozess "
       u"123).\nBitte schließen Sie sie dort zuerst."_s},
  };
  ASSERT_TRUE(window().OpenFile(kTestFile));
  for (const auto& c : cases) {
    messages.errors.clear();
    messages.files = {c.path};
    Trigger(u"FileOpenExecute"_s);
    EXPECT_EQ(messages.errors, QStringList{c.message});
    EXPECT_EQ(program.file().paths().cards, kTestFile) << c.path.toStdString();
  }
}

TEST_F(MainWindow, OpeningTellsOfDefectsOnce) {
  const QString index = u"\nIndexfehler,\nversuche Neuaufbau."_s;
  const QString cut =
      u"\nDas Ende der Kartei fehlt, die Datei ist beschädigt.\n5 Karten konnten gelesen werden.\n\n"
      u"Beim nächsten Speichern bleibt die beschädigte Datei\nunter einem anderen Namen erhalten."_s;
  const struct {
    std::function<void()> damage;
    QStringList remarks;
  } cases[] = {
      {[] {}, {}},
      {[&] { EXPECT_TRUE(disk.Remove("/deck/x.row")); }, {index}},
      {[&] { EXPECT_TRUE(disk.Remove("/deck/x.row") && disk.Remove("/deck/x.idt")); }, {index}},
      {[&] { disk.Put(kTestFile, disk.Content(kTestFile)->substr(0, disk.Content(kTestFile)->rfind("##"))); }, {cut}},
  };
  for (const auto& c : cases) {
    PutDeck(kTestFile, kCards);
    c.damage();
    messages.errors.clear();
    EXPECT_TRUE(window().OpenFile(kTestFile));
    EXPECT_EQ(messages.errors, c.remarks);
    program.file().Close();
  }
}

// What a changed card file asks before it is left, and what each answer does.
TEST_F(MainWindow, LeavingAChangedFileAsksFirst) {
  const auto close = [this] { return window().close(); };
  const auto open = [this] {
    messages.files = {QString::fromUtf8(kOther)};
    Trigger(u"FileOpenExecute"_s);
    return program.file().paths().cards == kOther;
  };
  // Without a choice among the backups of the open file; as the user stays, it does not come to that.
  const auto restore = [this] {
    messages.files = {u"/deck/other.ml~"_s};
    Trigger(u"MRestoreClick"_s);
    return program.file().CardCount() == 2;
  };
  const QString first = u"\nAktuelle Kartei\nzuerst speichern?"_s;
  const struct {
    std::function<bool()> leave;
    QString question;
    Answer answer;
    bool saved;
    bool left;
  } cases[] = {
      {open, first, Answer::Yes, true, true},
      {open, first, Answer::No, false, true},
      {open, first, Answer::Cancel, false, false},
      {restore, first, Answer::Cancel, false, false},
      {close, u"\nAktuelle Kartei\nspeichern?"_s, Answer::Yes, true, true},
      {close, u"\nAktuelle Kartei\nspeichern?"_s, Answer::No, false, true},
      {close, u"\nAktuelle Kartei\nspeichern?"_s, Answer::Cancel, false, false},
  };
  for (const auto& c : cases) {
    program.file().Close();
    PutDeck(kTestFile, kCards);
    window().show();
    OpenAndChange();
    messages.asked.clear();
    messages.answers = {c.answer};
    EXPECT_EQ(c.leave(), c.left);
    EXPECT_EQ(messages.asked, QStringList{c.question});
    EXPECT_EQ(SavedOnDisk(), c.saved) << c.question.toStdString() << " answer " << static_cast<int>(c.answer);
  }
}

TEST_F(MainWindow, WhatACrashLeftIsAskedFor) {
  for (const Answer answer : {Answer::Yes, Answer::No}) {
    PutDeck(kTestFile, kCards);
    {
      CardFile crashed(disk, clock);
      ASSERT_EQ(crashed.Open(kTestFile).result, OpenResult::Opened);
      crashed.cards().Poke(crashed.columns().answer, 2, "anders");
      crashed.RowChanged(2);
    }
    messages.asked.clear();
    messages.answers = {answer};
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

TEST_F(MainWindow, ADiskThatTakesNoAnswersIsToldOfOnce) {
  ASSERT_TRUE(window().OpenFile(kTestFile));
  disk.stay_broken(true);
  disk.FailAt(1);
  for (int i = 0; i < 3; ++i) program.file().RowChanged(2);
  EXPECT_EQ(messages.errors.size(), 0) << "not in the middle of an answer";
  QApplication::processEvents();
  EXPECT_EQ(messages.errors.size(), 1);
}

TEST_F(MainWindow, AFileWithoutCardsIsNotSavedUnasked) {
  PutDeck(kTestFile, {{.id = "000001"}});
  ASSERT_TRUE(window().OpenFile(kTestFile));
  ASSERT_TRUE(program.file().cards().GoTo(kFirstCardRow));
  ASSERT_TRUE(program.file().cards().DeleteRow());
  const std::optional<std::string> before = disk.Content(kTestFile);
  EXPECT_FALSE(window().close()) << "the safe answer is to stay";
  messages.answers = {Answer::No};
  EXPECT_TRUE(window().close());
  EXPECT_EQ(messages.asked.first(), u"\nKartei wirklich speichern?.\nSie enthält keine Karten\noder ist defekt."_s);
  EXPECT_EQ(disk.Content(kTestFile), before);
}

TEST_F(MainWindow, AFailedSaveIsToldAndKeepsTheWindowOpen) {
  OpenAndChange();
  disk.stay_broken(true);
  disk.FailAt(1);
  messages.answers = {Answer::Yes};
  EXPECT_FALSE(window().close());
  EXPECT_EQ(messages.errors, QStringList{u"\nFehler Speichern Kartei.\nSiehe Hilfeindex!"_s});
  EXPECT_TRUE(window().isWindowModified());
}

// The estimate is at least 300 bytes a card and a fifth more: 1800 bytes for five cards, which need less in truth.
TEST_F(MainWindow, SavingTellsTheSpaceAndTheWarningOutlastsIt) {
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
    program.file().Close();
    PutDeck(kTestFile, kCards);
    OpenAndChange();
    EXPECT_EQ(Text(u"LabelSizes"_s), QString()) << "sizes tell of loading, not of what is loaded";
    messages.files = {u"/deck/another.mlb"_s};
    disk.set_capacity(all - *disk.FreeBytes({}) + c.free);
    Trigger(c.command);
    EXPECT_EQ(Text(u"LabelSizes"_s), c.sizes);
    EXPECT_EQ(Text(u"LabelStatus"_s).chopped(5), c.status) << c.command.toStdString() << " " << c.free;
  }
  EXPECT_EQ(messages.shown,
            QStringList{u"Backup nach Datei\n/deck/another.mlb\nEventuell zu wenig\nPlatz auf Disk."_s});
}

TEST_F(MainWindow, AFileChangedByAnotherProgramIsAskedAboutBeforeItIsOverwritten) {
  for (const Answer answer : {Answer::No, Answer::Yes}) {
    program.file().Close();
    PutDeck(kTestFile, kCards);
    OpenAndChange();
    disk.Put(kTestFile, "written by someone else");
    messages.asked.clear();
    messages.answers = {answer};
    EXPECT_EQ(window().FileSaveExecute(), answer == Answer::Yes);
    EXPECT_EQ(messages.asked.size(), 1);
    EXPECT_EQ(SavedOnDisk(), answer == Answer::Yes);
  }
}

TEST_F(MainWindow, SavingUnderAnotherNameMovesThereABackupDoesNot) {
  OpenAndChange();
  messages.files = {u"/deck/copy.mlb"_s};
  Trigger(u"MBackupClick"_s);
  EXPECT_EQ(messages.shown, QStringList{u"Backup nach Datei\n/deck/copy.mlb\nerfolgreich."_s});
  EXPECT_EQ(program.file().paths().cards, kTestFile);
  EXPECT_TRUE(program.file().changed());

  messages.files = {QString::fromUtf8(kTestFile)};
  Trigger(u"MBackupClick"_s);
  EXPECT_EQ(messages.errors.size(), 1) << "a backup over the open file is none";

  messages.files = {u"/deck/moved.mlb"_s};
  Trigger(u"FileSaveAsExecute"_s);
  EXPECT_EQ(program.file().paths().cards, "/deck/moved.mlb");
  EXPECT_FALSE(program.file().changed());
  EXPECT_EQ(disk.Content("/deck/moved.mlb"), disk.Content("/deck/copy.mlb"));
  EXPECT_FALSE(SavedOnDisk());

  disk.set_capacity(0);
  messages.files = {u"/deck/full.mlb"_s};
  Trigger(u"MBackupClick"_s);
  EXPECT_EQ(Text(u"LabelStatus"_s), u"Nicht vollständig gespeichert"_s);
  EXPECT_EQ(messages.errors.last(), u"\nFehler Speichern Kartei.\nSiehe Hilfeindex!"_s);
}

TEST_F(MainWindow, RecentFilesAreKeptNewestFirstAndOfferedAgain) {
  EXPECT_TRUE(window().OpenFile(kTestFile));
  EXPECT_TRUE(window().OpenFile(kOther));
  const std::string settings = disk.Content("/tessaro.ini").value_or("");
  EXPECT_LT(settings.find(kOther), settings.find(kTestFile)) << settings;

  const QList<QAction*> recent = Find<QMenu>(u"MenuRecent"_s).actions();
  ASSERT_EQ(recent.size(), 1) << "the open file is not offered";
  EXPECT_TRUE(disk.Remove(kTestFile));
  recent.first()->trigger();
  QApplication::processEvents();
  EXPECT_EQ(messages.errors.size(), 1);
  EXPECT_EQ(Find<QMenu>(u"MenuRecent"_s).actions().size(), 0) << "a file that is gone leaves the list";
}

// Dropped on what fills the window, as with a real mouse.
TEST_F(MainWindow, ACardFileDroppedOnTheWindowIsOpened) {
  const QUrl other = QUrl::fromLocalFile(QString::fromUtf8(kOther));
  const struct {
    QList<QUrl> urls;
    bool taken;
  } cases[] = {
      {{QUrl::fromLocalFile(u"/deck/notes.txt"_s)}, false},
      {{QUrl(u"https://example.org/other.mlb"_s)}, false},
      {{other, other}, false},
      {{other}, true},
  };
  ASSERT_TRUE(window().OpenFile(kTestFile));
  QWidget& page = Find<QWidget>(u"FrameBegin"_s);
  for (const auto& c : cases) {
    QMimeData data;
    data.setUrls(c.urls);
    QDragEnterEvent enter(QPoint(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&page, &enter);
    EXPECT_EQ(enter.isAccepted(), c.taken) << c.urls.size();
    QDropEvent drop(QPointF(20, 20), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&page, &drop);
    EXPECT_EQ(program.file().paths().cards, kTestFile) << "the program it came from still waits";
    QApplication::processEvents();
    EXPECT_EQ(program.file().paths().cards, c.taken ? kOther : kTestFile);
  }
}

TEST_F(MainWindow, LearningLastsUntilAnotherFileIsOpened) {
  ASSERT_TRUE(window().OpenFile(kTestFile));
  QTest::mouseClick(&Find<QPushButton>(u"ButtonLearn"_s), Qt::LeftButton);
  EXPECT_TRUE(program.learning());
  Trigger(u"LernStartExecute"_s);
  const std::vector<const QWidget*> windows = LearningWindows();
  ASSERT_EQ(windows.size(), 1U) << "no second window for the same run";
  EXPECT_TRUE(windows[0]->screen()->availableGeometry().contains(windows[0]->pos()));
  EXPECT_TRUE(window().OpenFile(kOther));
  EXPECT_FALSE(program.learning());
}

TEST_F(MainWindow, OtherWaysToLearnStartFromTheStartPageAndInTheRunningWindow) {
  ASSERT_TRUE(window().OpenFile(kTestFile));
  const auto count_and_press = [](const QString& button) {
    return [button](TF_dlausw& dialog) {
      QTest::mouseClick(&Control<QPushButton>(dialog, u"BitBtnSort"_s), Qt::LeftButton);
      QTest::mouseClick(&Control<QPushButton>(dialog, button), Qt::LeftButton);
    };
  };
  DriveDialog<TF_dlausw>([&] { QTest::mouseClick(&Find<QPushButton>(u"ButtonLeitner"_s), Qt::LeftButton); },
                         count_and_press(u"BitBtnCancel"_s));
  EXPECT_FALSE(program.learning());
  QTest::mouseClick(&Find<QPushButton>(u"ButtonReihe"_s), Qt::LeftButton);
  QApplication::processEvents();
  const auto stage = [] { return Control<QLabel>(*LearningWindows().at(0), u"LabelSteuerung"_s).text(); };
  EXPECT_EQ(stage(), u"Lernsteuerung nach Reihenfolge"_s);
  DriveDialog<TF_dlausw>([&] { Trigger(u"LernAuswahlExecute"_s); }, count_and_press(u"BitBtnLern1"_s));
  EXPECT_EQ(stage(), u"Lernsteuerung manuell - in Karteifach 1 -"_s);
}

TEST_F(MainWindow, ParametersAreKeptInBothSettingsAndWaitForTheEndOfARun) {
  ASSERT_TRUE(window().OpenFile(kTestFile));
  const auto set = [&](const QString& days) {
    DriveDialog<TF_dlparam>([&] { Trigger(u"LernEinstellungExecute"_s); },
                            [&](TF_dlparam& dialog) {
                              Control<QLineEdit>(dialog, u"EdCheckImmer"_s).setText(days);
                              Control<QLineEdit>(dialog, u"EdCheckPosition"_s).setText(u"3"_s);
                              QTest::mouseClick(&Control<QPushButton>(dialog, u"BitBtnOK"_s), Qt::LeftButton);
                            });
  };
  set(u"7"_s);
  EXPECT_FALSE(program.settings().ini.Has("CHK", "max")) << "refused, then closed";
  set(u"20"_s);
  EXPECT_NE(disk.Content("/tessaro.ini")->find("max=20"), std::string::npos);
  EXPECT_EQ(disk.Content("/tessaro.ini")->find("rpos"), std::string::npos);
  EXPECT_NE(disk.Content("/deck/x.ini")->find("rpos=3"), std::string::npos);
  program.OpenLearning();
  EXPECT_FALSE(Find<QAction>(u"LernEinstellungExecute"_s).isEnabled());
}

}  // namespace
}  // namespace tessaro
