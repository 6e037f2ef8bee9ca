#include <gtest/gtest.h>

#include <QClipboard>
#include <QSignalSpy>

#include "hypertext/htmlview.h"
#include "tests/learn/window_fixture.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

TEST_F(LearningWindow, AnswerIsLoggedAndTheNextCardShown) {
  Open();
  EXPECT_EQ(window->windowTitle(), u"Frageseite Übungskarte Pos.  - 1"_s);
  EXPECT_EQ(Text(u"DisplayStatus"_s), u"Unbearbeitete Karte"_s);
  EXPECT_EQ(Text(u"Edit1"_s), u"2"_s);
  Click(u"SpeedButtonInversAus"_s);
  EXPECT_EQ(window->windowTitle(), u"Frageseite Übungskarte (invers) Pos.  - 1"_s);
  Trigger(u"MKopieren"_s);
  EXPECT_EQ(QApplication::clipboard()->text(), u"One"_s) << "the back comes first";
  Click(u"SpeedButtonInversEin"_s);
  Click(u"BtHand"_s);
  Click(u"BtWeissIch"_s);
  EXPECT_EQ(Field(kYesNoRow, 2), Letters("w"));
  EXPECT_EQ(window->windowTitle(), u"Frageseite Übungskarte Pos.  - 2"_s);
  EXPECT_EQ(Text(u"Edit1"_s), u"1"_s);
  EXPECT_EQ(Text(u"DisplayJetztGeuebt"_s), u"2"_s);
  clock.milliseconds += 65 * 1000 + 900;
  QTest::qWait(150);
  EXPECT_EQ(Text(u"DisplayUebungszeit"_s), u"01:05"_s);
}

TEST_F(LearningWindow, DoubleClickAnswersOneCardOnly) {
  random.numbers = {0, 1};
  Open();
  auto& button = Find<QAbstractButton>(u"BtLerneIch"_s);
  QTest::mouseClick(&button, Qt::LeftButton);
  QTest::mouseDClick(&button, Qt::LeftButton);
  QTest::mouseRelease(&button, Qt::LeftButton);
  EXPECT_EQ(Logged(), 1);
}

TEST_F(LearningWindow, KeysWorkWhateverHasTheFocus) {
  const struct {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    char letter;
  } cases[] = {{Qt::Key_Return, {}, 'w'}, {Qt::Key_Enter, Qt::KeypadModifier, 'w'}, {Qt::Key_Delete, {}, 'f'}};
  for (const QString& focus : {u"BtLerneIch"_s, u"SpeedButtonVis"_s, u"FrameHtml"_s}) {
    for (const auto& given : cases) {
      SCOPED_TRACE(focus.toStdString() + " key " + std::to_string(given.key));
      file.Close();
      Open();
      Find<QWidget>(focus).setFocus();
      Key(Qt::Key_Backspace);
      EXPECT_EQ(window->windowTitle(), u"Antwortseite Übungskarte Pos.  - 1"_s);
      Find<QWidget>(focus).setFocus();
      Key(given.key, given.modifiers);
      EXPECT_EQ(Logged(), 1);
      EXPECT_EQ(Field(kYesNoRow, 2).front(), given.letter);
      Key(Qt::Key_Home);
      EXPECT_EQ(window->windowTitle(), u"Linkmap Pos.  - 3"_s);
    }
  }
}

TEST_F(LearningWindow, SpaceTurnsAndThenAnswers) {
  Open();
  Key(Qt::Key_Space);
  EXPECT_EQ(Text(u"LabelSeite"_s), u"Antwortseite"_s);
  Key(Qt::Key_Space);
  EXPECT_EQ(Field(kYesNoRow, 2).front(), 'w');
  EXPECT_EQ(Text(u"LabelSeite"_s), u"Frageseite"_s);
}

TEST_F(LearningWindow, DayButtonsSetTheLeastScore) {
  const std::pair<QString, int64_t> cases[] = {{u"SpeedButtonTage1"_s, 86400},    {u"SpeedButtonTage3"_s, 259200},
                                               {u"SpeedButtonTage7"_s, 604800},   {u"SpeedButtonTage14"_s, 1209600},
                                               {u"SpeedButtonTage30"_s, 2592000}, {u"SpeedButtonTage60"_s, 5184000},
                                               {u"SpeedButton100"_s, 8640000},    {u"SpeedButtonTage365"_s, 31536000}};
  for (const auto& [button, score] : cases) {
    SCOPED_TRACE(button.toStdString());
    file.Close();
    Open();
    Click(button);
    EXPECT_EQ(LeadingNumber(Field(kScore, 2)), score);
    Click(u"BtWeissIch"_s);
    EXPECT_EQ(LeadingNumber(Field(kScore, 3)), 1) << "it acts once";
  }
}

TEST_F(LearningWindow, KeysTakeAnswersBackExactlyAndRestoreThem) {
  Open();
  const auto can = [this] {
    return std::pair(Find<QAction>(u"MAntwortZurueck"_s).isEnabled(), Find<QAction>(u"MAntwortWieder"_s).isEnabled());
  };
  Key(Qt::Key_Backspace);
  Key(Qt::Key_Return);
  Key(Qt::Key_Delete);
  EXPECT_EQ(can(), std::pair(true, false));
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Text(u"LabelSteuerung"_s), u"Antwort zurückgenommen"_s);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(window->windowTitle(), u"Antwortseite Übungskarte Pos.  - 1"_s) << "the side that was on screen";
  EXPECT_EQ(Field(kScore, 2), "000000000");
  EXPECT_EQ(can(), std::pair(false, true));
  Key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Text(u"LabelSteuerung"_s), u"Antwort wiederhergestellt"_s);
  EXPECT_EQ(Field(kYesNoRow, 2), Letters("w"));
}

TEST_F(LearningWindow, ClockThatWentBackEndsTheRun) {
  Open();
  Click(u"BtWeissIch"_s);
  clock.now -= 3600;
  Click(u"BtLerneIch"_s);
  EXPECT_EQ(Logged(), 1);
  EXPECT_TRUE(Find<QWidget>(u"Hinweis"_s).isVisible());
  Key(Qt::Key_Delete);
  EXPECT_EQ(Logged(), 1);
  Click(u"ButtonNeuerLauf"_s);
  EXPECT_TRUE(Find<QAbstractButton>(u"BtWeissIch"_s).isEnabled());
  EXPECT_FALSE(Find<QWidget>(u"Hinweis"_s).isVisible());
}

TEST_F(LearningWindow, NothingDueSaysWhenAndOffersToGoOn) {
  TestCard card = KnownUntil("000001", clock.now - 1000, 8200);
  card.question = "<a href=\"000001\">diese</a>";
  Open({card});
  EXPECT_EQ(messages.shown, QStringList(u"\nLernen mit der autom. Standardmethode\nzur Zeit nicht mehr sinnvoll."_s));
  EXPECT_TRUE(Text(u"LabelHinweis"_s).contains(u"in 2 Stunden 1 Minute"_s)) << Text(u"LabelHinweis"_s).toStdString();
  Key(Qt::Key_Delete);
  EXPECT_TRUE(Find<QWidget>(u"Hinweis"_s).isVisible());
  Click(u"ButtonOhneSperre"_s);
  EXPECT_EQ(Text(u"EditZeitsperre"_s), u"Zeitsperre aus"_s);
  EXPECT_EQ(Find<TFrameHtml>(u"FrameHtml"_s).layout().fragments.at(0).colour, 1) << "known and not due";
  EXPECT_EQ(window->windowTitle(), u"Frageseite Übungskarte Pos.  - 1"_s);
  EXPECT_EQ(Text(u"DisplayZuletzt"_s), u"0:00:16:40"_s);
}

TEST_F(LearningWindow, StoredKeysHoldAndTheFirstOfTwoEqualOnesWins) {
  settings.ini.SetInt("LShortCuts", "turn", 0x4000 + 'T');
  settings.ini.SetInt("LShortCuts", "know", 118);
  settings.ini.SetInt("LShortCuts", "learn", 118);
  settings.ini.SetInt("LShortCuts", "home", -5);
  Open();
  Key(Qt::Key_T, Qt::ControlModifier);
  EXPECT_EQ(Text(u"LabelSeite"_s), u"Antwortseite"_s);
  Key(Qt::Key_F7);
  EXPECT_EQ(Field(kYesNoRow, 2).front(), 'w');
  EXPECT_EQ(Find<QAction>(u"MHome"_s).shortcut(), QKeySequence(Qt::Key_Home));
}

TEST_F(LearningWindow, OptionsAndPlaceAreReadAndKept) {
  for (const auto& [key, value] : {std::pair("xL", 40), {"yL", 50}, {"cxL", 640}, {"cyL", 480}}) {
    settings.ini.SetInt("POS", key, value);
  }
  settings.ini.SetInt("newcards", "checked", 1);
  Open();
  EXPECT_EQ(window->size(), QSize(640, 480));
  EXPECT_TRUE(Find<QAction>(u"MNeueKarten"_s).isChecked());
  window->resize(900, 500);
  EXPECT_TRUE(Find<QWidget>(u"Anzeigen"_s).isVisible());
  Trigger(u"MAutoReihe"_s);
  Trigger(u"MNeueKarten"_s);
  Trigger(u"MAnsichtUnten"_s);
  const QSignalSpy closed(window.get(), &TF_wnlern::Closed);
  Trigger(u"MClose"_s);
  EXPECT_EQ(closed.count(), 1);
  EXPECT_EQ(settings.ini.GetInt("POS", "cxL", 0), 900);
  EXPECT_EQ(settings.ini.GetInt("rowlearn", "checked", 0), 1);
  EXPECT_EQ(settings.ini.GetInt("newcards", "checked", 1), 0);
  EXPECT_TRUE(file.settings().Has("CHK", "rpos"));
  Show();
  EXPECT_TRUE(Find<QAction>(u"MAutoReihe"_s).isChecked());
  EXPECT_GT(Find<QWidget>(u"Steuerleiste"_s).y(), Find<QWidget>(u"Inhalt"_s).y());
}

TEST_F(LearningWindow, DeckWithoutCardsSaysSo) {
  OpenTestFile(disk, file, kThreeCards);
  while (file.CardCount() > 0) {
    file.cards().GoTo(kFirstCardRow);
    ASSERT_TRUE(file.cards().DeleteRow());
  }
  ASSERT_TRUE(file.RebuildIndexes());
  Show();
  EXPECT_TRUE(Text(u"LabelHinweis"_s).contains(u"keine Karten"_s));
  Key(Qt::Key_Return);
  EXPECT_TRUE(messages.errors.isEmpty());
}

}  // namespace
}  // namespace tessaro
