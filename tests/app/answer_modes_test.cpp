#include <QAbstractButton>
#include <QClipboard>
#include <QDropEvent>
#include <QMimeData>
#include <QPlainTextEdit>

#include "answer/answer_window.h"
#include "app/dlopt.h"
#include "edit/wnsign.h"
#include "learn/wnlern.h"
#include "settings/keys.h"
#include "tests/app/main_window_fixture.h"
#include "tests/support/dialog_driver.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

const QString kPendingText = u"Fehler - richtige Antwort ist angezeigt - weiter n u r  mit <weiter>"_s;

TestCard Card(int number, const std::string& question, const std::string& answer) {
  return {.id = "00000" + std::to_string(number), .question = question, .answer = answer};
}

// Learns in row order, with the answer mode switched on by its key.
class AnswerModesTest : public MainWindow {
 protected:
  ~AnswerModesTest() override { (void)program.CloseLearning(); }

  void Learn(const std::vector<TestCard>& cards, Qt::Key mode) {
    keys::kRowOrder.Write(true, program.settings().ini);
    Open(cards);
    program.OpenLearning();
    lern = OpenWindows<TF_wnlern>().value(0);
    ASSERT_TRUE(QTest::qWaitForWindowActive(lern));
    QApplication::processEvents();
    Key(mode, Qt::ControlModifier);
  }
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    MainWindow::Key(key, modifiers);
    clock.milliseconds += 200;
  }
  void Type(const char* text) {
    for (const char* letter = text; *letter != '\0'; ++letter) QTest::keyClick(QApplication::focusWidget(), *letter);
    clock.milliseconds += 200;
  }
  // As a key that is held down sends it.
  static void Repeat(Qt::Key key, const QString& text = {}) {
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text, true);
    QApplication::sendEvent(QApplication::focusWidget(), &event);
  }
  QWidget& Tested() override { return *lern; }
  QString Line(const QString& name) { return Find<QLineEdit>(name).text(); }
  QString Status() { return Text(u"DisplayStatus"_s); }
  QColor Colour(const QString& name, QPalette::ColorRole role = QPalette::Base) {
    return Find<QWidget>(name).palette().color(role);
  }
  QString Focused() {
    return QApplication::focusWidget() != nullptr ? QApplication::focusWidget()->objectName() : QString();
  }
  // The newest answers of the cards, a letter each, "-" for none.
  std::string Answers() {
    CardFile& file = program.file();
    std::string letters;
    for (int row = kFirstCardRow; row < file.cards().RowCount(); ++row) {
      const bool answered = file.cards().Peek(file.columns().time_row, row)[0] != '0';
      letters += answered ? file.cards().Peek(file.columns().yes_no_row, row)[0] : '-';
    }
    return letters;
  }

  TF_wnlern* lern = nullptr;
};

TEST_F(AnswerModesTest, RightChoiceByKeyBringsTheNextCard) {
  Learn({Card(1, "A oder B?", "b"), Card(2, "1 oder 2?", "2"), Card(3, "frei", "Berlin"), Card(4, "C?", "C")},
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

TEST_F(AnswerModesTest, WrongChoiceWaitsForWeiter) {
  Learn({Card(1, "A oder B?", "b"), Card(2, "C?", "C")}, Qt::Key_1);
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
  Learn({Card(1, "A oder B?", "b"), Card(2, "C?", "C"), Card(3, "<navigation><home>Start", "7")}, Qt::Key_1);
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
  Learn({Card(1, "?", "A, C"), Card(2, "?", "B D"), Card(3, "?", "a")}, Qt::Key_1);
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
}

TEST_F(AnswerModesTest, TypedWordIsCheckedWithEveryKey) {
  Learn({Card(1, "Frage", "Das Haus"), Card(2, "Zwei", "zwei")}, Qt::Key_2);
  ASSERT_EQ(Focused(), u"RichEditVgl"_s);
  auto& input = Find<QLineEdit>(u"RichEditVgl"_s);
  Type("Ha");
  EXPECT_EQ(Line(u"StatusBarVgl"_s), u"██"_s);
  Type("x");
  EXPECT_TRUE(Line(u"StatusBarVgl"_s).startsWith(u"Buchstabenfolge vor oder um"_s));
  EXPECT_EQ(input.selectedText(), u"x"_s);
  Type("us h");
  EXPECT_EQ(input.text(), u"Haus h"_s) << "the wrong letter was replaced";
  Key(Qt::Key_Backspace);
  Type("d");
  EXPECT_EQ(Line(u"StatusBarVgl"_s), u"Groß-/Kleinschreibung unterschiedlich"_s);
  Key(Qt::Key_Home);
  Key(Qt::Key_Delete);
  EXPECT_EQ(input.text(), u"aus d"_s) << "keys of the line, not of the learning window";
  lern->resize(700, 600);
  lern->repaint();
  EXPECT_EQ(input.text(), u"aus d"_s);
  Key(Qt::Key_Right);
  Type("X");
  EXPECT_EQ(input.selectedText(), u"X"_s) << "one letter in the middle of the word";
  EXPECT_EQ(input.selectionStart(), 1);
  const auto& verdict = Find<QLineEdit>(u"StatusBarVgl"_s);
  EXPECT_LT(verdict.fontMetrics().horizontalAdvance(verdict.text()), verdict.width()) << "read in whole";
  Key(Qt::Key_Delete);
  Repeat(Qt::Key_Return);
  EXPECT_EQ(Text(u"LabelSeite"_s), u"Frageseite"_s);
  Key(Qt::Key_Return);
  EXPECT_EQ(Text(u"LabelSeite"_s), u"Antwortseite"_s);
  EXPECT_EQ(Focused(), u"BitBtnWeissIch"_s);
  EXPECT_EQ(Answers(), "--");
  Click(u"BitBtnHand"_s);
  EXPECT_EQ(Focused(), u"RichEditVgl"_s);
  Key(Qt::Key_Return);
  Key(Qt::Key_Tab);
  EXPECT_EQ(Focused(), u"BitBtnLerneIch"_s);
  Repeat(Qt::Key_Return);
  EXPECT_EQ(Answers(), "--");
  Key(Qt::Key_Return);
  EXPECT_EQ(Answers(), "f-");
  EXPECT_EQ(Focused(), u"RichEditVgl"_s);
  EXPECT_EQ(input.text(), QString());
  EXPECT_TRUE(Text(u"LabelVergleich"_s).contains(u"Getippt"_s));
  Type("z");
  EXPECT_EQ(Text(u"LabelVergleich"_s), QString()) << "until the first key";
}

TEST_F(AnswerModesTest, SpecialCharactersGoIntoTheTypedLine) {
  Learn({Card(1, "Frage", "Das Haus"), Card(2, "Zwei", "zwei")}, Qt::Key_2);
  Type("D");
  Click(u"BitBtnSign"_s);
  auto* signs = lern->findChild<TF_wnsign*>();
  ASSERT_TRUE(signs != nullptr && signs->isVisible());
  auto& cells = Control<QTableWidget>(*signs, u"ZeichenTabelle"_s);
  cells.item(0, 1)->setText(u"ä"_s);
  cells.setCurrentCell(0, 1);
  QTest::mouseClick(&Control<QAbstractButton>(*signs, u"BitBtnOK"_s), Qt::LeftButton);
  EXPECT_EQ(Find<QLineEdit>(u"RichEditVgl"_s).text(), u"Dä"_s);
  EXPECT_TRUE(Line(u"StatusBarVgl"_s).startsWith(u"Buchstabenfolge vor oder um"_s));
  // What no card can hold is shown as such beside the answer.
  Find<QLineEdit>(u"RichEditVgl"_s).setText(u"Dął"_s);
  Click(u"BitBtnWeissIch"_s);
  EXPECT_TRUE(Text(u"LabelVergleich"_s).contains(QChar(0xFFFD)));
  EXPECT_TRUE(QTest::qWaitFor([&] { return Text(u"LabelVergleich"_s).isEmpty(); }, 4000));
  Click(u"SpeedButtonWahl"_s);
  EXPECT_FALSE(signs->isVisible());
}

TEST_F(AnswerModesTest, OptionsHoldAtOnceAndAreKept) {
  Learn({Card(1, "Frage", "Das Haus")}, Qt::Key_2);
  const auto set = [&](int blanks, int mode) {
    DriveDialog<TF_dlopt>([&] { program.ShowOptions(); },
                          [&](TF_dlopt& dialog) {
                            Control<QComboBox>(dialog, u"Leerzeichen"_s).setCurrentIndex(blanks);
                            Control<QComboBox>(dialog, u"Antwortart"_s).setCurrentIndex(mode);
                            QTest::mouseClick(&Control<QPushButton>(dialog, u"BitBtnOK"_s), Qt::LeftButton);
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
  const std::string before = disk.Content("/tessaro.ini").value_or("");
  DriveDialog<TF_dlopt>([&] { program.ShowOptions(); },
                        [](TF_dlopt& dialog) { Control<QComboBox>(dialog, u"Antwortart"_s).setCurrentIndex(1); });
  EXPECT_EQ(disk.Content("/tessaro.ini").value_or(""), before) << "closed without OK";
}

TEST_F(AnswerModesTest, BlanksAtTheEndUncoverTheAnswerUnlessTheCheckIsOff) {
  Learn({Card(1, "Frage", "Das Haus"), Card(2, "Zwei", "zwei")}, Qt::Key_2);
  Type("  ");
  EXPECT_EQ(Text(u"LabelSeite"_s), u"Antwortseite"_s);
  Key(Qt::Key_Return);
  EXPECT_EQ(Text(u"LabelVergleich"_s), QString()) << "blanks are no answer";
  Click(u"BitBtnTest"_s);
  EXPECT_EQ(Line(u"StatusBarVgl"_s), u"Eingabekontrolle ausgeschaltet"_s);
  Type("xyz  ");
  EXPECT_EQ(Line(u"StatusBarVgl"_s), QString());
  EXPECT_EQ(Text(u"LabelSeite"_s), u"Frageseite"_s);
  Click(u"BitBtnTest"_s);
  Type(" ");
  EXPECT_EQ(Text(u"LabelSeite"_s), u"Antwortseite"_s);
  EXPECT_EQ(Focused(), u"BitBtnWeissIch"_s);
}

TEST_F(AnswerModesTest, CopiedTextIsJudgedAndNothingElseIs) {
  Learn(
      {Card(1, "<b>ab</b> c", "x"), Card(2, "xyz", "y"), Card(3, "slow", "z"), Card(4, "<img src=\"none.bmp\">", "z")},
      Qt::Key_3);
  ASSERT_EQ(Focused(), u"RichEditTipp"_s);
  auto& input = Find<QPlainTextEdit>(u"RichEditTipp"_s);
  EXPECT_EQ(Find<QPlainTextEdit>(u"Text"_s).toPlainText(), u"ab c"_s);
  Type("a");
  EXPECT_EQ(Line(u"EditKommentar"_s), u"Bisher ohne Fehler"_s);
  QApplication::clipboard()->setText(u"b c"_s);
  Key(Qt::Key_V, Qt::ControlModifier);
  Repeat(Qt::Key_A, u"a"_s);
  QDropEvent drop({}, Qt::CopyAction, QApplication::clipboard()->mimeData(), Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(input.viewport(), &drop);
  EXPECT_EQ(input.toPlainText(), u"a"_s) << "neither pasted nor held down nor dropped";
  Type("b");
  Type("x");
  EXPECT_EQ(Line(u"EditKommentar"_s), u"1. Fehler. Erforderliche Eingabe Leer"_s);
  EXPECT_EQ(Text(u"LabelLimit"_s), u"über dem Limit"_s) << "one error in four, though it is the first";
  EXPECT_EQ(input.toPlainText(), u"ab"_s);
  Click(u"BtWeissIch"_s);
  EXPECT_EQ(messages.shown, QStringList(u"\nBei Tastaturtraining geht das nicht."_s));
  input.setFocus();
  Type(" ");
  EXPECT_EQ(Line(u"EditKommentar"_s), u"Bisher 1 Fehler"_s);
  Type("c");
  EXPECT_EQ(Answers(), "f---") << "one error in four is too many";
  EXPECT_EQ(Line(u"EditKommentar"_s), u"25.00% Fehler > 5.00% Limit"_s);
  EXPECT_EQ(Line(u"EditSec"_s), u"A./min 240.0 >= 100 (Limit)"_s);
  Type("xyz");
  EXPECT_EQ(Answers(), "fw--");
  EXPECT_EQ(Line(u"EditKommentar"_s), u"0.00% Fehler im 5.00% Limit"_s);
  Type("slo");
  clock.milliseconds += 59'800;
  Type("w");
  EXPECT_EQ(Line(u"EditSec"_s), u"A./min 4.0  < 100 (Limit)"_s);
  EXPECT_EQ(Answers(), "fwf-");
  EXPECT_FALSE(input.isEnabled()) << "a picture cannot be copied";
  Click(u"BtWeissIch"_s);
  EXPECT_EQ(Answers(), "fwfw");
}

TEST_F(AnswerModesTest, TypingErrorsGrowWorseAndSettingsHold) {
  IniFile& settings = program.settings().ini;
  keys::kErrorLimit.Write(50, settings);
  keys::kTypingFigures.Write(false, settings);
  (void)keys::kErrorSound.Write("/nowhere/error.wav", settings);
  Learn({Card(1, "abcde", "x")}, Qt::Key_3);
  std::vector<QColor> colours = {Colour(u"EditKommentar"_s)};
  const char* const limits[] = {"im Limit", "im Limit", "über dem Limit"};
  for (int i = 0; i < 3; ++i) {
    Type("x");
    colours.push_back(Colour(u"EditKommentar"_s));
    EXPECT_EQ(Text(u"LabelLimit"_s), QString::fromUtf8(limits[i]));
    const char right[] = {static_cast<char>('a' + i), '\0'};
    Type(right);
    EXPECT_EQ(Colour(u"EditKommentar"_s), colours[0]);
    EXPECT_EQ(Text(u"LabelLimit"_s), QString());
  }
  for (size_t i = 1; i < colours.size(); ++i) {
    EXPECT_EQ(std::count(colours.begin(), colours.end(), colours[i]), 1) << "each error looks worse " << i;
  }
  EXPECT_EQ(Line(u"EditSec"_s), QString());
  EXPECT_EQ(messages.shown.size(), 1) << "a sound that is missing is told once";
}

TEST_F(AnswerModesTest, OneModeAtATimeIsOnAndRememberedWithItsPlace) {
  Learn({Card(1, "Eins", "a"), Card(2, "Zwei", "b"), Card(3, "<navigation><home>Start", "-")}, Qt::Key_1);
  Key(Qt::Key_3, Qt::ControlModifier);
  EXPECT_FALSE(Find<QWidget>(u"TF_wnwahl"_s).isVisible());
  EXPECT_EQ(Find<QPlainTextEdit>(u"Text"_s).isVisible(), true);
  Click(u"SpeedButtonInput"_s);
  EXPECT_FALSE(Find<QPlainTextEdit>(u"Text"_s).isVisible()) << "the card is hypertext again";
  const IniFile& settings = program.settings().ini;
  EXPECT_TRUE(keys::kShowInput.Read(settings));
  EXPECT_FALSE(keys::kShowTyping.Read(settings));
  EXPECT_FALSE(keys::kShowChoice.Read(settings));

  auto& line = Find<AnswerWindow>(u"TF_wnvgl"_s);
  WritePlace({.x = -50, .y = 5000, .width = 500, .height = 150}, "V", program.settings().ini);
  QTest::mouseClick(line.findChild<QAbstractButton*>(u"SpeedButtonFrei"_s), Qt::LeftButton);
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
  program.OpenLearning();
  EXPECT_TRUE(is_typed_in());
  QTest::mouseClick(line.findChild<QAbstractButton*>(u"SpeedButtonFrei"_s), Qt::LeftButton);
  EXPECT_TRUE(!line.IsFloating() && line.isVisible());
  QTest::mouseClick(line.findChild<QAbstractButton*>(u"SpeedButtonFrei"_s), Qt::LeftButton);
  EXPECT_TRUE(program.CloseLearning());
  EXPECT_EQ(ReadPlace(settings, "V", {}).width, 500);
  program.OpenLearning();
  QApplication::processEvents();
  const QList<AnswerWindow*> windows = OpenWindows<AnswerWindow>();
  EXPECT_TRUE(windows.size() == 1 && windows[0]->objectName() == u"TF_wnvgl"_s) << "it comes back as it was left";
}

}  // namespace
}  // namespace tessaro
