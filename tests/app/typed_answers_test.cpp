
#include "app/dlopt.h"
#include "edit/wnsign.h"
#include "tests/app/answer_modes_fixture.h"

namespace tessaro {
namespace {

TEST_F(AnswerModesTest, TypedWordIsCheckedWithEveryKey) {
  Learn({AskedCard(1, "Frage", "Das Haus"), AskedCard(2, "Zwei", "zwei")}, Qt::Key_2);
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
  EXPECT_EQ(Find<QLineEdit>(u"StatusBarVgl"_s).font(), input.font()) << "as large as it can be";
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
}

TEST_F(AnswerModesTest, KeysThatWriteNothingJudgeOnceTheAnswerWasSeen) {
  Learn({AskedCard(1, "Frage", "Das Haus"), AskedCard(2, "Zwei", "zwei")}, Qt::Key_2);
  auto& input = Find<QLineEdit>(u"RichEditVgl"_s);
  Type("Haus d");
  Key(Qt::Key_Home);
  Key(Qt::Key_Delete);
  Click(u"BitBtnHand"_s);
  EXPECT_EQ(Focused(), u"RichEditVgl"_s);
  for (const QString& side : {u"Frageseite"_s, u"Antwortseite"_s}) {
    Key(Qt::Key_Backspace);
    EXPECT_EQ(Text(u"LabelSeite"_s), side) << "there is nothing more to write";
  }
  Key(Qt::Key_Home);
  Type("z");
  Key(Qt::Key_Backspace);
  Key(Qt::Key_Delete);
  EXPECT_EQ(input.text(), u"us d"_s) << "whoever goes on writing keeps the keys";
  Key(Qt::Key_Return);
  Key(Qt::Key_Tab);
  EXPECT_EQ(Focused(), u"BitBtnLerneIch"_s);
  Repeat(Qt::Key_Return);
  EXPECT_EQ(Answers(), "--");
  Key(Qt::Key_Return);
  EXPECT_EQ(Answers(), "f-");
  EXPECT_EQ(Focused(), u"RichEditVgl"_s);
  EXPECT_EQ(input.text(), QString());
  EXPECT_TRUE(Text(u"LabelVergleich"_s).contains(u"Vorige Karte"_s));
  Type("z");
  EXPECT_EQ(Text(u"LabelVergleich"_s), QString()) << "until the first key";
  Key(Qt::Key_Backspace);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Answers(), "f-") << "the answer was not seen";
  Click(u"BitBtnHand"_s);
  Key(Qt::Key_Delete);
  EXPECT_EQ(Answers(), "ff");
}

TEST_F(AnswerModesTest, SpecialCharactersGoIntoTheTypedLine) {
  Learn({AskedCard(1, "Frage", "Das Haus"), AskedCard(2, "Zwei", "zwei")}, Qt::Key_2);
  Type("D");
  Click(u"BitBtnSign"_s);
  auto* signs = lern->findChild<TF_wnsign*>();
  ASSERT_TRUE(signs != nullptr && signs->isVisible());
  auto& cells = Control<QTableWidget>(*signs, u"ZeichenTabelle"_s);
  cells.item(0, 1)->setText(u"ä"_s);
  cells.setCurrentCell(0, 1);
  Press(*signs, u"BitBtnOK"_s);
  EXPECT_EQ(Find<QLineEdit>(u"RichEditVgl"_s).text(), u"Dä"_s);
  EXPECT_TRUE(Line(u"StatusBarVgl"_s).startsWith(u"Buchstabenfolge vor oder um"_s));
  // What no card can hold is shown as such beside the answer.
  Find<QLineEdit>(u"RichEditVgl"_s).setText(u"Dął"_s);
  Click(u"BitBtnWeissIch"_s);
  EXPECT_TRUE(Text(u"LabelVergleich"_s).contains(QChar(0xFFFD)));
  EXPECT_TRUE(QTest::qWaitFor([&] { return Text(u"LabelVergleich"_s).isEmpty(); }, 8000));
  Click(u"SpeedButtonWahl"_s);
  EXPECT_FALSE(signs->isVisible());
}

TEST_F(AnswerModesTest, BlanksAtTheEndUncoverTheAnswerUnlessTheCheckIsOff) {
  Learn({AskedCard(1, "Frage", "Das Haus"), AskedCard(2, "Zwei", "zwei")}, Qt::Key_2);
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

TEST_F(AnswerModesTest, WhatTheOptionsAllowIsRightAndStillShown) {
  Learn({AskedCard(1, "Frage", "die Kolleg(inn)\xEBn."), AskedCard(2, "Zwei", "zwei")}, Qt::Key_2);
  auto& input = Find<QLineEdit>(u"RichEditVgl"_s);
  const std::array boxes = {u"AndereSchreibung"_s, u"OhneAkzente"_s, u"OhneSatzzeichen"_s, u"OhneKlammern"_s};
  const std::array words = {u"KOLLEG"_s, u")en"_s, u"innën"_s, u"Kollegën"_s};
  const QString bar = u"█"_s;
  input.setText(u"die Kolleg(inn)ën."_s);
  EXPECT_TRUE(Line(u"StatusBarVgl"_s).startsWith(bar));
  for (size_t i = 0; i < boxes.size(); ++i) {
    const auto is_right = [&] {
      input.clear();
      input.setText(words[i]);
      return Line(u"StatusBarVgl"_s).startsWith(bar);
    };
    EXPECT_FALSE(is_right()) << i;
    DriveDialog<TF_dlopt>([&] { program.ShowOptions(); },
                          [&](TF_dlopt& dialog) {
                            Control<QCheckBox>(dialog, boxes[i]).setChecked(true);
                            Press(dialog, u"BitBtnOK"_s);
                          });
    EXPECT_TRUE(is_right()) << i;
  }
  input.setText(u"Die kollegen"_s);
  Click(u"BitBtnWeissIch"_s);
  EXPECT_TRUE(Text(u"LabelVergleich"_s).contains(u"gilt als richtig"_s));
  EXPECT_EQ(Answers(), "w-");
}

TEST_F(AnswerModesTest, CopiedTextIsJudgedAndNothingElseIs) {
  Learn({AskedCard(1, "<b>ab</b> c", "x"), AskedCard(2, "xyz", "y"), AskedCard(3, "slow", "z"),
         AskedCard(4, "<img src=\"none.bmp\">", "z")},
        Qt::Key_3);
  ASSERT_EQ(Focused(), u"RichEditTipp"_s);
  auto& input = Find<QPlainTextEdit>(u"RichEditTipp"_s);
  EXPECT_EQ(Find<QPlainTextEdit>(u"Text"_s).toPlainText(), u"ab c"_s);
  Type("a");
  EXPECT_EQ(Marked(), u"1 b"_s);
  EXPECT_EQ(Line(u"EditKommentar"_s), u"Bisher ohne Fehler"_s);
  QApplication::clipboard()->setText(u"b c"_s);
  Key(Qt::Key_V, Qt::ControlModifier);
  Repeat(Qt::Key_A, u"a"_s);
  Drop(*input.viewport(), *QApplication::clipboard()->mimeData());
  EXPECT_EQ(input.toPlainText(), u"a"_s) << "neither pasted nor held down nor dropped";
  Type("b");
  Type("x");
  EXPECT_EQ(Line(u"EditKommentar"_s), u"1. Fehler. Erforderliche Eingabe Leer"_s);
  EXPECT_EQ(Text(u"LabelLimit"_s), u"über dem Limit"_s) << "one error in four, though it is the first";
  EXPECT_EQ(input.toPlainText(), u"ab"_s);
  EXPECT_EQ(Marked(), u"2  "_s);
  Click(u"BtWeissIch"_s);
  EXPECT_EQ(messages.shown, QStringList(u"\nBei Tastaturtraining geht das nicht."_s));
  input.setFocus();
  Type(" ");
  EXPECT_EQ(Line(u"EditKommentar"_s), u"Bisher 1 Fehler"_s);
  EXPECT_TRUE(QTest::qWaitFor([&] { return Line(u"EditSec"_s) == u"Anschl.:3 Sek:1.00 A/min:180.0"_s; }));
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
  keys::kTypingMark.Write(1, settings);
  Learn({AskedCard(1, "abc<br>e", "x")}, Qt::Key_3);
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
  for (size_t i = 1; i < colours.size(); ++i)
    EXPECT_EQ(std::count(colours.begin(), colours.end(), colours[i]), 1) << "each error looks worse " << i;
  EXPECT_EQ(Line(u"EditSec"_s), QString());
  Click(u"BtHand"_s, u"BtHand"_s);
  EXPECT_EQ(Marked(), QString(u"3 "_s + QChar::ParagraphSeparator)) << "where it was left";
  Find<QPlainTextEdit>(u"RichEditTipp"_s).setFocus();
  Key(Qt::Key_Enter, Qt::KeypadModifier);
  Type("e");
  EXPECT_EQ(Answers(), "f");
  EXPECT_EQ(messages.shown.size(), 2) << "a sound that is missing is told once";
}

}  // namespace
}  // namespace tessaro
