
#include "answer/answer_window.h"
#include "app/dlopt.h"
#include "tests/app/answer_modes_fixture.h"

namespace tessaro {
namespace {

const QString kPendingText = u"Fehler - richtige Antwort ist angezeigt - weiter n u r  mit <weiter>"_s;

TEST_F(AnswerModesTest, RightChoiceByKeyBringsTheNextCard) {
  Learn({AskedCard(1, "A oder B?", "b"), AskedCard(2, "1 oder 2?", "2"), AskedCard(3, "frei", "Berlin"),
         AskedCard(4, "C?", "C")},
        Qt::Key_1);
  EXPECT_EQ(Status(), u"Multiple Choice"_s);
  EXPECT_EQ(Find<QTabWidget>(u"PageControlSelect"_s).currentIndex(), 1) << "the key is a letter";
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_B);
  EXPECT_EQ(Answers(), "w---");
  EXPECT_EQ(Line(u"StatusBarSelect"_s), u"Antwort war richtig, nächste Karte ist angezeigt"_s);
  EXPECT_EQ(Status(), u"Neue Auswahl"_s);
  EXPECT_EQ(Find<QTabWidget>(u"PageControlSelect"_s).currentIndex(), 0) << "now a number";
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_2);
  EXPECT_EQ(Answers(), "w---") << "within the lock";
  clock.milliseconds += 100;
  Repeat(Qt::Key_2, u"2"_s);
  EXPECT_EQ(Answers(), "w---") << "held down";
  Key(Qt::Key_2);
  EXPECT_EQ(Answers(), "ww--");
  EXPECT_EQ(Status(), u"Multiple Choice - keine Auswahl möglich"_s);
  Click(u"BtWeissIch"_s);
  EXPECT_EQ(Answers(), "www-");
  EXPECT_TRUE(messages.shown.isEmpty());
}

TEST_F(AnswerModesTest, NothingIsAskedWhileThereIsNoCard) {
  for (const auto& [mode, part] : {std::pair(Qt::Key_1, u"PanelCheck"_s), {Qt::Key_2, u"RichEditVgl"_s}}) {
    Learn({With(KnownCard(1, 900000, 500), &TestCard::answer, "b")}, mode);
    EXPECT_FALSE(Find<QWidget>(part).isEnabled());
    const qsizetype told = messages.shown.size();
    Key(Qt::Key_B);
    EXPECT_EQ(messages.shown.size(), told);
    Click(u"ButtonOhneSperre"_s);
    EXPECT_TRUE(Find<QWidget>(part).isEnabled() && program.CloseLearning());
  }
}

TEST_F(AnswerModesTest, WrongChoiceWaitsForWeiter) {
  Learn({AskedCard(1, "A oder B?", "b"), AskedCard(2, "C?", "C")}, Qt::Key_1);
  const auto looks = [&] {
    return std::array{Colour(u"SpeedButtonA"_s, QPalette::ButtonText), Colour(u"PanelLerneIch"_s, QPalette::Window),
                      Colour(u"BitBtnLerneIch"_s, QPalette::ButtonText), Colour(u"StatusBarSelect"_s)};
  };
  const auto before = looks();
  Key(Qt::Key_A);
  const auto pending = looks();
  for (size_t i = 0; i < before.size(); ++i) EXPECT_NE(before[i], pending[i]) << i;
  EXPECT_EQ(Line(u"StatusBarSelect"_s), kPendingText);
  EXPECT_EQ(Text(u"LabelSeite"_s), u"Antwortseite"_s);
  EXPECT_EQ(Focused(), u"BitBtnLerneIch"_s);
  EXPECT_EQ(Answers(), "--");
  Key(Qt::Key_B);
  for (const Qt::Key key : {Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_Home, Qt::Key_End}) Key(key);
  Repeat(Qt::Key_Return);
  EXPECT_EQ(Answers(), "--") << "nothing but weiter acts, and no learning key";
  EXPECT_TRUE(messages.shown.isEmpty());
  Click(u"SpeedButtonTage7"_s);
  EXPECT_EQ(messages.shown, QStringList(u"\nBitte benutzen Sie\nden Button <Lerne ich>\ndes Auswahlantwortfensters"_s));
  Find<QWidget>(u"BitBtnLerneIch"_s).setFocus();
  Key(Qt::Key_Return);
  EXPECT_EQ(Answers(), "f-");
  EXPECT_EQ(looks(), before);
  EXPECT_EQ(Line(u"StatusBarSelect"_s), QString());
  EXPECT_FALSE(Find<QWidget>(u"BitBtnLerneIch"_s).isEnabled());
}

TEST_F(AnswerModesTest, PendingChoiceIsDroppedByAnotherCardAndRegisteredBySwitchingOff) {
  Learn({AskedCard(1, "A oder B?", "b"), AskedCard(2, "C?", "C"), AskedCard(3, "<navigation><home>Start", "7")},
        Qt::Key_1);
  Key(Qt::Key_A);
  Click(u"SpeedButtonHome"_s);
  EXPECT_EQ(Answers(), "---");
  EXPECT_EQ(Status(), u"Navigationskarte"_s);
  EXPECT_EQ(Find<QTabWidget>(u"PageControlSelect"_s).currentIndex(), 1) << "the page stays";
  Key(Qt::Key_A);
  EXPECT_EQ(Line(u"StatusBarSelect"_s), QString()) << "on a navigation card nothing is judged";
  Key(Qt::Key_Return);
  EXPECT_EQ(Status(), u"Multiple Choice"_s) << "the learning keys act there";
  Key(Qt::Key_A);
  EXPECT_EQ(Line(u"StatusBarSelect"_s), kPendingText);
  Key(Qt::Key_1, Qt::ControlModifier);
  const std::string answers = Answers();
  EXPECT_EQ(std::count(answers.begin(), answers.end(), 'f'), 1);
  EXPECT_FALSE(keys::kShowChoice.Read(program.settings().ini));
  EXPECT_NE(Status(), u"Multiple Choice"_s);
  EXPECT_TRUE(program.CloseLearning());
  EXPECT_EQ(keys::kChoicePage.Read(program.settings().ini), 1);
}

TEST_F(AnswerModesTest, BoxesAreTickedBySpaceAndJudgedByEnter) {
  Learn({AskedCard(1, "?", "A, C"), AskedCard(2, "?", "B D"), AskedCard(3, "?", "a")}, Qt::Key_1);
  Key(Qt::Key_Return);
  EXPECT_EQ(Answers(), "---") << "no box is ticked";
  Key(Qt::Key_Right);
  EXPECT_EQ(Focused(), u"CheckBox0"_s);
  Key(Qt::Key_Space);
  EXPECT_EQ(Focused(), u"BitBtnMehrfach"_s);
  Key(Qt::Key_Space);
  EXPECT_FALSE(Find<QWidget>(u"BitBtnMehrfach"_s).isEnabled()) << "unticked again";
  Click(u"CheckBox0"_s);
  Key(Qt::Key_C);
  EXPECT_EQ(Answers(), "---") << "who ticks boxes chooses no single letter";
  Key(Qt::Key_Right);
  Key(Qt::Key_Right);
  EXPECT_EQ(Focused(), u"CheckBox2"_s);
  Key(Qt::Key_Space);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_A);
  EXPECT_EQ(Answers(), "w--");
  clock.milliseconds += 200;
  EXPECT_EQ(Line(u"StatusBarSelect"_s), u"Antwort war richtig"_s);
  EXPECT_FALSE(Find<QCheckBox>(u"CheckBox0"_s).isChecked());
  Click(u"CheckBox1"_s);
  Key(Qt::Key_Return);
  EXPECT_EQ(Line(u"StatusBarSelect"_s), kPendingText);
  EXPECT_TRUE(Find<QCheckBox>(u"CheckBox1"_s).isChecked()) << "to be compared with the answer";
  Key(Qt::Key_Return);
  EXPECT_EQ(Answers(), "wf-");
  Click(u"CheckBox0"_s, u"SpeedButtonBack"_s);
  EXPECT_FALSE(Find<QWidget>(u"BitBtnMehrfach"_s).isEnabled()) << "what was ticked belonged to the other card";
}

TEST_F(AnswerModesTest, AnswersAmongVeryManyCardsAreOfferedAsSoonAsTheyAreFound) {
  keys::kOfferAnswers.Write(true, program.settings().ini);
  std::vector<TestCard> cards(10'001, TestCard{.question = "?", .answer = "Haus"});
  cards[0].question = "!";
  cards[5].answer = "Baum";
  Learn(cards, Qt::Key_1);
  EXPECT_TRUE(Find<QLineEdit>(u"StatusBarSelect"_s).placeholderText().endsWith(u"gesucht …"_s));
  EXPECT_TRUE(QTest::qWaitFor([this] { return Find<QWidget>(u"PanelAntworten"_s).isVisible(); }));
  EXPECT_EQ(Find<QWidget>(u"ButtonAntwortA"_s).accessibleName().left(3), u"A: "_s);
}

TEST_F(AnswerModesTest, AnswersOfOtherCardsAreOfferedAndJudgedAsAKey) {
  keys::kOfferAnswers.Write(true, program.settings().ini);
  Learn({AskedCard(1, "house", "Haus & Hof"), AskedCard(2, "tree", "Baum"), AskedCard(3, "A oder B?", "b"),
         AskedCard(4, "sun", "Sonne"), AskedCard(5, "<navigation><home>Start", "-")},
        Qt::Key_1);
  EXPECT_EQ(Status(), u"Multiple Choice"_s);
  auto& list = Find<QWidget>(u"PanelAntworten"_s);
  EXPECT_TRUE(list.isVisible());
  EXPECT_FALSE(Find<QWidget>(u"PageControlSelect"_s).isVisible() || Find<QWidget>(u"PanelCheck"_s).isVisible());
  EXPECT_EQ(Find<QWidget>(u"ButtonAntwortA"_s).accessibleName(), u"A: Haus & Hof"_s);
  EXPECT_FALSE(Find<QWidget>(u"ButtonAntwortD"_s).isVisible()) << "three cards have answers in words";
  lern->resize(640, 300);
  QApplication::processEvents();
  EXPECT_GE(list.height(), list.minimumSizeHint().height()) << "nothing is squashed in a small window";
  Key(Qt::Key_D);
  Repeat(Qt::Key_A, u"a"_s);
  Key(Qt::Key_Return);
  EXPECT_EQ(Answers(), "-----");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_A);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_A);
  EXPECT_EQ(Answers(), "w----") << "and not the next one within the lock";
  EXPECT_EQ(Line(u"StatusBarSelect"_s), u"Antwort war richtig, nächste Karte ist angezeigt"_s);
  EXPECT_EQ(Status(), u"Neue Auswahl"_s);
  clock.milliseconds += 200;

  Key(Qt::Key_2);
  EXPECT_EQ(Line(u"StatusBarSelect"_s), kPendingText);
  Key(Qt::Key_1);
  EXPECT_EQ(Answers(), "w----") << "only weiter acts";
  Find<QWidget>(u"BitBtnLerneIch"_s).setFocus();
  Key(Qt::Key_Return);
  EXPECT_EQ(Answers(), "wf---");

  EXPECT_TRUE(Find<QWidget>(u"PageControlSelect"_s).isVisible() && !list.isVisible()) << "the card has a key";
  Key(Qt::Key_B);
  EXPECT_EQ(Answers(), "wfw--");
  Key(Qt::Key_Down);
  Key(Qt::Key_Up);
  Key(Qt::Key_Down);
  EXPECT_EQ(Focused(), u"ButtonAntwortA"_s);
  Key(Qt::Key_Up);
  EXPECT_EQ(Focused(), u"ButtonAntwortC"_s);
  Key(Qt::Key_Return);
  EXPECT_EQ(Line(u"StatusBarSelect"_s), kPendingText);
  Click(u"SpeedButtonHome"_s);
  EXPECT_FALSE(list.isVisible()) << "a navigation card asks nothing";
  EXPECT_EQ(Answers(), "wfw--");
}

TEST_F(AnswerModesTest, OptionsHoldAtOnceAndAreKept) {
  Learn({AskedCard(1, "Frage", "Das Haus")}, Qt::Key_2);
  const auto set = [&](int blanks, int mode) {
    DriveDialog<TF_dlopt>([&] { program.ShowOptions(); },
                          [&](TF_dlopt& dialog) {
                            Control<QComboBox>(dialog, u"Leerzeichen"_s).setCurrentIndex(blanks);
                            Control<QComboBox>(dialog, u"Antwortart"_s).setCurrentIndex(mode);
                            Press(dialog, u"BitBtnOK"_s);
                          });
  };
  set(1, 2);
  lern->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(lern));
  Find<QWidget>(u"RichEditVgl"_s).setFocus();
  Type("Das  ");
  EXPECT_EQ(Text(u"LabelSeite"_s), u"Frageseite"_s) << "two blanks are too few now";
  Type(" ");
  EXPECT_EQ(Text(u"LabelSeite"_s), u"Antwortseite"_s);
  EXPECT_TRUE(disk.Content("/tessaro.ini").value_or("").find("Space=1") != std::string::npos);
  set(1, 0);
  EXPECT_FALSE(Find<QWidget>(u"TF_wnvgl"_s).isVisible());
  EXPECT_EQ(lern->focusWidget()->objectName(), u"BtWeissIch"_s) << "what comes next";
  const std::string before = disk.Content("/tessaro.ini").value_or("");
  DriveDialog<TF_dlopt>([&] { program.ShowOptions(); },
                        [](TF_dlopt& dialog) { Control<QComboBox>(dialog, u"Antwortart"_s).setCurrentIndex(1); });
  EXPECT_EQ(disk.Content("/tessaro.ini").value_or(""), before) << "closed without OK";
}

TEST_F(AnswerModesTest, OneModeAtATimeIsOnAndRememberedWithItsPlace) {
  Learn({AskedCard(1, "Eins", "a"), AskedCard(2, "Zwei", "b"), AskedCard(3, "<navigation><home>Start", "-")},
        Qt::Key_1);
  Key(Qt::Key_3, Qt::ControlModifier);
  EXPECT_FALSE(Find<QWidget>(u"TF_wnwahl"_s).isVisible());
  EXPECT_EQ(Find<QPlainTextEdit>(u"Text"_s).isVisible(), true);
  Click(u"SpeedButtonInput"_s);
  EXPECT_FALSE(Find<QPlainTextEdit>(u"Text"_s).isVisible()) << "the card is hypertext again";
  const IniFile& settings = program.settings().ini;
  EXPECT_TRUE(keys::kShowInput.Read(settings) && !keys::kShowTyping.Read(settings));
  EXPECT_FALSE(keys::kShowChoice.Read(settings));

  auto& line = Find<AnswerWindow>(u"TF_wnvgl"_s);
  WritePlace({.x = -50, .y = 5000, .width = 500, .height = 150}, "V", program.settings().ini);
  Press(line, u"SpeedButtonFrei"_s);
  EXPECT_TRUE(line.screen()->availableGeometry().contains(line.frameGeometry()));
  ASSERT_TRUE(line.IsFloating());
  const auto is_typed_in = [&] {
    return QTest::qWaitForWindowActive(&line) && QTest::qWaitFor([&] { return Focused() == u"RichEditVgl"_s; }, 1000);
  };
  ASSERT_TRUE(is_typed_in());
  Type("a");
  EXPECT_EQ(Line(u"StatusBarVgl"_s), u"█"_s);
  Click(u"SpeedButtonHome"_s);
  EXPECT_TRUE(QTest::qWaitForWindowActive(lern)) << "there is nothing to type on a navigation card";
  program.main_window().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&program.main_window()));
  Click(u"BtWeissIch"_s);
  EXPECT_FALSE(line.isActiveWindow()) << "whoever works elsewhere is not disturbed by a card";
  {
    QWidget passing;
    passing.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&passing));
  }
  ASSERT_EQ(QApplication::activeWindow(), nullptr);
  Click(u"BtWeissIch"_s);
  QApplication::processEvents();
  EXPECT_EQ(QApplication::activeWindow(), nullptr) << "nor when his dialog has just closed";
  program.OpenLearning();
  EXPECT_TRUE(is_typed_in());
  Press(line, u"SpeedButtonFrei"_s);
  EXPECT_TRUE(!line.IsFloating() && line.isVisible());
  Press(line, u"SpeedButtonFrei"_s);
  EXPECT_TRUE(program.CloseLearning());
  EXPECT_EQ(ReadPlace(settings, "V", {}).width, 500);
  program.OpenLearning();
  QApplication::processEvents();
  const QList<AnswerWindow*> windows = OpenWindows<AnswerWindow>();
  EXPECT_TRUE(windows.size() == 1 && windows[0]->objectName() == u"TF_wnvgl"_s) << "it comes back as it was left";
}

}  // namespace
}  // namespace tessaro
