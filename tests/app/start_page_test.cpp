// The start page, and how learning and the evaluation begin from it.

#include <QScreen>

#include "app/dlneu.h"
#include "edit/wned.h"
#include "learn/dlausw.h"
#include "learn/dlparam.h"
#include "learn/wnlern.h"
#include "outlook/dlkarten.h"
#include "outlook/wneval.h"
#include "tests/app/main_window_fixture.h"

namespace tessaro {
namespace {

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

TEST_F(MainWindowFiles, AdviceSaysWhatIsToDoNowAndAfterARun) {
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
  Open({later});
  program.OpenLearning();
  EXPECT_TRUE(program.CloseLearning());
  EXPECT_EQ(Text(u"LabelAdvice"_s), u"Für jetzt fertig, nächste Karte in 11 Tagen."_s);
  ASSERT_TRUE(window().OpenFile(kOther));
  ASSERT_TRUE(window().OpenFile(kTestFile));
  EXPECT_EQ(Text(u"LabelAdvice"_s).section(u'.', 0, 0), u"Zurzeit ist nichts zu wiederholen"_s);
}

TEST_F(MainWindowFiles, LearningLastsUntilAnotherFileIsOpened) {
  Open(kCards);
  Click(u"ButtonLearn"_s);
  EXPECT_TRUE(program.learning());
  Trigger(u"LernStartExecute"_s);
  const QList<TF_wnlern*> windows = OpenWindows<TF_wnlern>();
  ASSERT_EQ(windows.size(), 1) << "no second window for the same run";
  EXPECT_TRUE(windows[0]->screen()->availableGeometry().contains(windows[0]->pos()) && window().OpenFile(kOther));
  EXPECT_FALSE(program.learning());
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

TEST_F(MainWindowFiles, RecentRowsShowTheFocusAndAreOpenedByTheKeyboard) {
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
    Open(kCards);
    ASSERT_TRUE(window().OpenFile(kOther));
    window().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
    QApplication::processEvents();
    Find<QWidget>(u"ButtonLearn"_s).setFocus();
    const auto path = [] { return QApplication::focusWidget()->property("path").toString(); };
    for (int i = 0; i < 20 && path() != QString::fromUtf8(kTestFile); ++i)
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    ASSERT_EQ(path().toStdString(), kTestFile);
    QWidget& row = *QApplication::focusWidget();
    EXPECT_EQ(row.grab().toImage().pixelColor(1, row.height() / 2), row.palette().color(QPalette::Highlight));
    QTest::keyClick(&row, key);
    EXPECT_TRUE(QTest::qWaitFor([this] { return CardsPath() == kTestFile; })) << key;
  }
  // A card file that is let go over the window is opened.
  QMimeData dragged;
  dragged.setUrls({QUrl::fromLocalFile(QString::fromUtf8(kOther))});
  Drop(window(), dragged);
  QApplication::processEvents();
  // A file that is gone is left out once that is found.
  ASSERT_TRUE(CardsPath() == kOther && disk.Remove(kTestFile) && disk.Remove("/deck/x.ml~"));
  EXPECT_EQ(Find<QMenu>(u"MenuRecent"_s).actions().size(), 1);
  EXPECT_TRUE(!window().OpenFile(kTestFile) && Find<QMenu>(u"MenuRecent"_s).actions().isEmpty());
  EXPECT_FALSE(Find<QWidget>(u"PanelRecent"_s).isVisible());
}

TEST_F(MainWindowFiles, WithoutAFileThereIsNothingToAskAndANewOneIsOpenAtOnce) {
  EXPECT_TRUE(window().close() && messages.asked.isEmpty());
  window().show();
  const QTemporaryDir folder;
  Drive<TF_dlneu>(u"FileNewExecute"_s, [&](TF_dlneu& dialog) {
    Control<QLineEdit>(dialog, u"EditFolder"_s).setText(folder.path());
    Control<QLineEdit>(dialog, u"EditName"_s).setText(u"Neu"_s);
    Control<QComboBox>(dialog, u"ZeichensatzH"_s).setCurrentText(u"Kyrillisch"_s);
    dialog.accept();
  });
  EXPECT_EQ(ReadCodePages(program.file().settings()), (SideCodePages{{}, CodePage(CharacterSet::Cyrillic)}));
  EXPECT_EQ(CardsPath(), folder.filePath(u"Neu.mlb"_s).toStdString());
  EXPECT_EQ(Text(u"LabelStatus"_s), u"Neue Kartei angelegt"_s);
  EXPECT_EQ(Find<QPushButton>(u"ButtonLearn"_s).text(), u" Karten anlegen"_s);
  EXPECT_TRUE(window().close() && messages.asked.isEmpty()) << "it is saved";
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
  auto& in_row_order = Find<QPushButton>(u"ButtonReihe"_s);
  in_row_order.setFocus();
  QTest::keyClick(&in_row_order, Qt::Key_Return);
  QApplication::processEvents();
  const auto stage = [] { return Control<QLabel>(*OpenWindows<TF_wnlern>().at(0), u"LabelSteuerung"_s).text(); };
  EXPECT_EQ(stage(), u"Lernsteuerung nach Reihenfolge"_s);
  Drive<TF_dlausw>(u"LernAuswahlExecute"_s, count_and_press(u"BitBtnLern1"_s));
  EXPECT_EQ(stage(), u"Lernsteuerung manuell - in Karteifach 1 -"_s);
}

TEST_F(MainWindowFiles, ParametersAreKeptInBothSettingsAndWaitForTheEndOfARun) {
  Open(kCards);
  const auto set = [&](const QString& days) {
    Drive<TF_dlparam>(u"LernEinstellungExecute"_s, [&](TF_dlparam& dialog) {
      Control<QLineEdit>(dialog, u"EdCheckImmer"_s).setText(days);
      Control<QLineEdit>(dialog, u"EdCheckPosition"_s).setText(u"3"_s);
      Press(dialog, u"BitBtnOK"_s);
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

class OutlookCommands : public MainWindow {
 protected:
  // Whose answers took so long.
  static TestCard Answered(int number, int64_t seconds) {
    return With(KnownCard(number, 1, 600), &TestCard::time_learned, std::to_string(seconds));
  }
  static TF_wneval* Evaluated() {
    auto* window = OpenWindows<TF_wneval>().value(0);
    return window != nullptr && QTest::qWaitFor([&] { return !window->Working(); }) ? window : nullptr;
  }
};

TEST_F(OutlookCommands, StartPageSaysWhatIsKnownNow) {
  Open({KnownCard(1, 1, 600), TestCard{}});
  const QLabel& line = Find<QLabel>(u"LabelKnownNow"_s);
  const auto is_blank = [&] { return line.text().trimmed().isEmpty(); };
  EXPECT_TRUE(is_blank() && QTest::qWaitFor([&] { return !is_blank(); }));
  EXPECT_EQ(line.text(), u"Sie wissen jetzt etwa 1 von 1 Karten."_s);
  PutDeck({TestCard{}}, "/deck/other.mlb");
  ASSERT_TRUE(window().OpenFile("/deck/other.mlb"));
  EXPECT_TRUE(QTest::qWaitFor(is_blank));
}

TEST_F(OutlookCommands, CountedCardsAreOpenedInTheEditorAndFollowWhatItDoes) {
  Open({Answered(1, 20), Answered(2, 50), TestCard{.id = "000003"}});
  Trigger(u"AuswertungExecute"_s);
  TF_wneval* evaluation = Evaluated();
  ASSERT_NE(evaluation, nullptr);
  Control<QTabWidget>(*evaluation, u"Views"_s).setCurrentIndex(3);
  auto& costs = Control<OutlookPage>(*evaluation, u"PageKosten"_s);
  costs.plot().Select(0);
  QTest::keyClick(&costs.plot(), Qt::Key_Return);
  auto* editor = OpenWindows<TF_wned>().at(0);
  EXPECT_EQ(editor->row(), 3) << "the costliest card";
  QTest::keyClick(evaluation, Qt::Key_T, Qt::ControlModifier);
  auto& table = Control<QTableView>(costs, u"Tabelle"_s);
  table.setCurrentIndex(table.model()->index(1, 0));
  QTest::keyClick(&table, Qt::Key_Return);
  EXPECT_EQ(editor->row(), 2);
  Press(costs, u"ButtonKarten"_s);
  auto* list = evaluation->findChild<TF_dlkarten*>();
  ASSERT_NE(list, nullptr) << "of all that are shown";
  auto& cards = Control<QTableView>(*list, u"ListCards"_s);
  EXPECT_EQ(cards.model()->rowCount(), 2);

  // The first card goes and two come before the others: the list still opens the right one.
  CardCommand command;
  command.Remove(kFirstCardRow);
  for (int i = 0; i < 2; ++i) command.InsertBehind(1, {});
  ASSERT_TRUE(CardEdit(program.file()).Apply(command));
  EXPECT_EQ(Control<QLabel>(*list, u"LabelCount"_s).text(), u"eine Karte"_s);
  EXPECT_FALSE(Control<QPushButton>(costs, u"ButtonKarten"_s).isEnabled()) << "rows of the past are not offered";
  cards.setCurrentIndex(cards.model()->index(0, 0));
  QTest::keyClick(&cards, Qt::Key_Return);
  EXPECT_EQ(editor->row(), 4);
  EXPECT_TRUE(QTest::qWaitFor([&] { return costs.plot().Count() == 1; })) << "the figures follow by themselves";
  EXPECT_TRUE(list->isVisible());
}

TEST_F(OutlookCommands, EndOfARunLeadsToTheEvaluation) {
  keys::kRowOrder.Write(true, program.settings().ini);
  Open({TestCard{}});
  program.OpenLearning();
  auto* learning = OpenWindows<TF_wnlern>().at(0);
  ASSERT_TRUE(QTest::qWaitForWindowActive(learning));
  QApplication::processEvents();
  EXPECT_FALSE(Control<QPushButton>(*learning, u"ButtonAuswertung"_s).isVisible());
  Control<QAction>(*learning, u"Weiss_ich"_s).trigger();
  EXPECT_EQ(Control<QLabel>(*learning, u"LabelHeute"_s).text(), u"Heute: eine Antwort, 100 % gewusst"_s);
  auto& button = Control<QPushButton>(*learning, u"ButtonAuswertung"_s);
  ASSERT_TRUE(button.isVisible());
  button.click();
  EXPECT_NE(Evaluated(), nullptr);
}

}  // namespace
}  // namespace tessaro
