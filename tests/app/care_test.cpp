// What the main window does for the safety of a card file: dated copies, and the check of its cards.

#include <QDialogButtonBox>
#include <QTreeView>
#include <QTreeWidget>

#include "app/check_model.h"
#include "app/dlcheck.h"
#include "app/dlrestore.h"
#include "tests/app/main_window_fixture.h"

namespace tessaro {
namespace {

TestCard Card(const std::string& id, int64_t answered = kNow - 100) {
  std::string times = std::to_string(answered);
  for (int i = 1; i < kHistoryLength; ++i) times += " 0";
  return {.id = id, .question = "<b>Wer</b> ist " + id + "?", .time_row = times};
}

constexpr const char* kBackups = "/backups";

class Care : public MainWindow {
 protected:
  Care() : MainWindow(kBackups) {}
  void SaveAnswer(const std::string& answer) {
    Change(program.file(), answer);
    clock.now += 60;
    EXPECT_TRUE(window().FileSaveExecute());
  }
  QString Status() { return Text(u"LabelStatus"_s); }
  std::string FirstAnswer() {
    return std::string(program.file().cards().Peek(program.file().columns().answer, kFirstCardRow));
  }
  // What the start page says about the check once it is done; empty when it is silent.
  QString CheckLine() {
    QTest::qWait(450);
    return Find<QWidget>(u"PanelCheck"_s).isVisible() ? Text(u"LabelCheck"_s) : QString();
  }
};

TEST_F(Care, EverySaveIsOfferedForRestoring) {
  Open({Card("000001"), Card("000002")});
  for (const char* answer : {"eins", "zwei", "drei"}) SaveAnswer(answer);
  EXPECT_TRUE(Status().startsWith(u"Gespeichert um"_s));
  Drive<TF_dlrestore>(u"MRestoreClick"_s, [](TF_dlrestore& dialog) {
    auto& list = Control<QTreeWidget>(dialog, u"ListBackups"_s);
    ASSERT_EQ(list.topLevelItemCount(), 4);
    EXPECT_EQ(list.topLevelItem(0)->text(3), u"Stand vor dem letzten Speichern"_s);
    EXPECT_EQ(list.topLevelItem(3)->text(1), u"2"_s);
    list.clearSelection();
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible()) << "nothing is chosen";
    list.setCurrentItem(list.topLevelItem(3));
    QTest::keyClick(&list, Qt::Key_Return);
  });
  EXPECT_EQ(FirstAnswer(), "eins");
  EXPECT_EQ(CardsPath(), kTestFile);
  EXPECT_TRUE(program.file().changed());
  EXPECT_EQ(program.file().learn_index().RowCount(), 4);
}

TEST_F(Care, AnswersThatWerePutAsideAreNamedAndCanStillBeTakenOver) {
  PutCrashed({Card("000001"), Card("000002")});
  messages.answers = {Answer::No};
  ASSERT_TRUE(window().OpenFile(kTestFile));
  ASSERT_NE(FirstAnswer(), "anders");
  Trigger(u"KarteiPruefenExecute"_s);
  EXPECT_TRUE(messages.shown.last().endsWith(u"\n\nBeiseite gelegte Antworten:\nx-Antworten-1.mlj"_s));
  const auto take = [](TF_dlrestore& dialog) {
    auto& list = Control<QTreeWidget>(dialog, u"ListBackups"_s);
    EXPECT_EQ(list.topLevelItem(1)->text(1), u"1 geändert"_s);
    list.setCurrentItem(list.topLevelItem(1));
    dialog.accept();
  };
  Drive<TF_dlrestore>(u"MRestoreClick"_s, take);
  EXPECT_EQ(FirstAnswer(), "anders");
  EXPECT_TRUE(window().isWindowModified() && disk.Exists("/deck/x.mlj") && disk.Exists("/deck/x-Antworten-1.mlj"));
  EXPECT_TRUE(window().FileSaveExecute());
  // The cards are no longer those that the answers were given to.
  Drive<TF_dlrestore>(u"MRestoreClick"_s, [](TF_dlrestore& dialog) {
    EXPECT_TRUE(Control<QTreeWidget>(dialog, u"ListBackups"_s).topLevelItem(1)->isDisabled());
  });
}

TEST_F(Care, ACardFileThatIsGoneComesBackUnderItsName) {
  Open({Card("000001")});
  SaveAnswer("eins");
  program.file().Close();
  disk.Put(kTestFile, "rubbish");
  ASSERT_TRUE(disk.Remove("/deck/x.ml~"));
  EXPECT_FALSE(window().OpenFile(kTestFile));
  Drive<TF_dlrestore>(u"MRestoreClick"_s, [](TF_dlrestore& dialog) { dialog.accept(); });
  EXPECT_EQ(FirstAnswer(), "eins");
  EXPECT_EQ(CardsPath(), kTestFile);
  EXPECT_TRUE(window().FileSaveExecute());
}

// Whether the file was taken away or a save was cut short without a trace of the new one: the state before, and with
// the journal every answer.
TEST_F(Care, TheBackupOfAMissingCardFileIsOfferedWhenThatIsOpened) {
  for (const bool with_journal : {false, true}) {
    program.file().Close();
    Open({Card("000001")});
    SaveAnswer("eins");
    SaveAnswer("zwei");
    if (with_journal) Change(program.file(), "drei");
    const std::optional<std::string> journal = disk.Content("/deck/x.mlj");
    program.file().Close();
    if (with_journal) {
      disk.Put("/deck/x.mlj", *journal);
      disk.Put("/deck/x.ml~", *disk.Content(kTestFile));
    }
    ASSERT_TRUE(disk.Remove(kTestFile));
    messages.asked.clear();
    messages.errors.clear();
    messages.answers = {Answer::No};
    EXPECT_FALSE(window().OpenFile(kTestFile));
    EXPECT_EQ(messages.errors, QStringList{u"\nDatei kann nicht\ngeöffnet werden\n\nx.mlb"_s});
    messages.answers = {Answer::Yes, Answer::Yes};
    EXPECT_TRUE(window().OpenFile(kTestFile));
    EXPECT_TRUE(messages.asked.at(1).startsWith(u"\nDie Kartei x.mlb fehlt.\nEs gibt noch ihre Sicherung x.ml~"_s));
    EXPECT_EQ(CardsPath(), kTestFile);
    EXPECT_EQ(FirstAnswer(), with_journal ? "drei" : "eins") << with_journal;
    EXPECT_TRUE(window().FileSaveExecute() && disk.Exists(kTestFile));
  }
}

TEST_F(Care, AFailedCopyIsToldInTheStatusLineAndCostsNothing) {
  Open({Card("000001")});
  QSet<QString> failures;
  int told = 0;
  int incomplete = 0;
  for (int n = 1; n < 60; ++n) {
    Change(program.file(), std::to_string(n));
    disk.FailAt(n);
    const bool saved = window().FileSaveExecute();
    disk.FailAt(0);
    if (saved && Status().startsWith(u"Gespeichert, aber"_s)) ++told;
    ASSERT_EQ(messages.errors.size(), saved ? 0 : 1) << "a failed copy brings up no box";
    if (saved) continue;
    const QString failure = messages.errors.takeFirst();
    failures += failure.section(u'\n', 1, 1);
    if (failure == u"\nFehler Speichern Kartei.\nSiehe Hilfeindex!\n\nx.mlb"_s) continue;
    ++incomplete;
    const std::vector<Generation> copies = GenerationFolder(disk, kBackups).Of(kTestFile);
    EXPECT_TRUE(!copies.empty() && disk.Content(copies[0].path) == disk.Content(kTestFile)) << "the cards are whole";
  }
  EXPECT_GT(incomplete, 4);
  EXPECT_GT(told, 4);
  EXPECT_EQ(failures, QSet<QString>({u"Fehler Speichern Kartei."_s, u"Fehler Speichern Lernindex."_s,
                                     u"Fehler Speichern Linkindex."_s}));
  EXPECT_TRUE(messages.asked.isEmpty());
}

TEST_F(Care, AGoodFileIsNotTalkedAboutAndNoCopiesAreMadeWhenSwitchedOff) {
  Open({Card("000001")});
  EXPECT_EQ(CheckLine(), QString());
  Trigger(u"KarteiPruefenExecute"_s);
  EXPECT_EQ(messages.shown, QStringList{u"\nDie Kartei ist in Ordnung.\nEine Karte geprüft."_s});
  program.settings().ini.SetInt("Sicherungen", "Aktiv", 0);
  SaveAnswer("eins");
  EXPECT_TRUE(disk.FileNames(kBackups).empty());
}

TEST_F(Care, TheCheckIsQuietAndLeadsToItsFindings) {
  TestCard link = Card("000003");
  link.answer = "<a href=\"9\">x</a>";
  Open({Card("000001"), Card("000001"), link, Card("000004", kNow + 500)});
  EXPECT_EQ(CheckLine(),
            u"Bei der Prüfung der Kartei aufgefallen: eine Antwort in der Zukunft, eine doppelte Nummer, ein Verweis "
            "ins Leere."_s);
  EXPECT_FALSE(program.file().changed());
  EXPECT_TRUE(messages.errors.isEmpty() && messages.shown.isEmpty() && messages.asked.isEmpty());

  DriveDialog<TF_dlcheck>(
      [this] { Click(u"ButtonCheck"_s); },
      [](TF_dlcheck& dialog) {
        auto& list = Control<QTreeView>(dialog, u"ListFindings"_s);
        ASSERT_EQ(list.model()->rowCount(), 3);
        EXPECT_EQ(list.model()->index(1, CheckModel::CardId).data().toString(), u"000003"_s);
        EXPECT_EQ(list.model()->index(1, CheckModel::Question).data().toString(), u"Wer ist 000003?"_s);
        EXPECT_EQ(dialog.Chosen().size(), 1U) << "what depends on the clock is not chosen";
        Control<QPushButton>(dialog, u"ButtonAll"_s).click();
        EXPECT_EQ(dialog.Chosen().size(), 2U) << "no repair leads a link to its card";
        Control<QPushButton>(dialog, u"ButtonNone"_s).click();
        EXPECT_TRUE(dialog.Chosen().empty());
        auto& repair = *Control<QDialogButtonBox>(dialog, u"ButtonBox"_s).button(QDialogButtonBox::Ok);
        EXPECT_FALSE(repair.isEnabled());
        list.setCurrentIndex(list.model()->index(0, 0));
        QTest::keyClick(&list, Qt::Key_Space);
        repair.click();
      });
  EXPECT_EQ(program.file().RowOfId(5), 3);
  EXPECT_TRUE(program.file().changed());
  EXPECT_EQ(Status(), u"Eine Reparatur ausgeführt, noch nicht gespeichert"_s);
  EXPECT_EQ(CheckLine(),
            u"Bei der Prüfung der Kartei aufgefallen: eine Antwort in der Zukunft, ein Verweis ins Leere."_s);
}

TEST_F(Care, NothingIsRepairedUnaskedAndLearningAsksBeforeTheClockCostsStatistics) {
  Open({Card("000001"), Card("000002", kNow + 500)});
  Drive<TF_dlcheck>(u"KarteiPruefenExecute"_s, [](TF_dlcheck& dialog) {
    Press(dialog, u"ButtonAll"_s);
    dialog.reject();
  });
  EXPECT_FALSE(program.file().changed()) << "nothing is repaired without being asked";
  EXPECT_TRUE(Text(u"LabelCheck"_s).contains(u"eine Antwort in der Zukunft"_s)) << "said at once";
  Trigger(u"LernStartExecute"_s);
  ASSERT_EQ(messages.asked.size(), 1);
  EXPECT_TRUE(messages.asked.first().startsWith(u"\nBei einer Karte liegt die letzte Antwort in der Zukunft."_s));
  EXPECT_FALSE(program.learning()) << "the safe answer is not to learn";
  messages.answers = {Answer::Yes};
  Trigger(u"LernStartExecute"_s);
  EXPECT_TRUE(program.learning());
  Trigger(u"LernStartExecute"_s);
  EXPECT_EQ(messages.asked.size(), 2) << "not while a run is under way";
}

}  // namespace
}  // namespace tessaro
