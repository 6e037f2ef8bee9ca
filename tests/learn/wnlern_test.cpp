
#include "cards/card_edit.h"
#include "tests/learn/window_fixture.h"

namespace tessaro {
namespace {

TEST_F(LearningWindow, AnswerIsLoggedAndTheNextCardShown) {
  Open();
  EXPECT_EQ(window->windowTitle(), u"Frageseite Übungskarte Pos.  - 1"_s);
  EXPECT_EQ(Text(u"DisplayStatus"_s), u"Unbearbeitete Karte"_s);
  Click(u"SpeedButtonInversAus"_s);
  EXPECT_EQ(window->windowTitle(), u"Frageseite Übungskarte (invers) Pos.  - 1"_s);
  EXPECT_EQ(OnScreen(), "One") << "the back comes first";
  Click(u"BtHand"_s);
  EXPECT_EQ(OnScreen(), "Eins");
  Click(u"BtHand"_s, u"SpeedButtonTausch"_s);
  EXPECT_EQ(OnScreen(), "Eins") << "swapped and inverse";
  Click(u"SpeedButtonTausch"_s);
  Trigger(u"MKopieren"_s);
  EXPECT_EQ(QApplication::clipboard()->text(), u"One"_s);
  for (const bool inverse : {false, true}) {
    Trigger(u"MInvers"_s);
    EXPECT_EQ(OnScreen() == "One", inverse);
    for (const auto& button : {u"SpeedButtonInversEin"_s, u"SpeedButtonInversAus"_s})
      EXPECT_EQ(Find<QWidget>(button).isVisible(), inverse == button.endsWith(u"Ein"_s)) << button.toStdString();
  }
  Click(u"SpeedButtonInversEin"_s, u"BtHand"_s, u"BtWeissIch"_s);
  EXPECT_EQ(window->windowTitle(), u"Frageseite Übungskarte Pos.  - 2"_s);
  EXPECT_EQ(Text(u"Edit1"_s), u"1"_s);
  EXPECT_EQ(Text(u"DisplayJetztGeuebt"_s), u"2"_s);
  EXPECT_EQ(Find<QWidget>(u"DisplayJetztGeuebt"_s).accessibleName(), u"vorgelegt: 2"_s);
  EXPECT_EQ(Text(u"LabelAntwort"_s), u"Eins: gewusst, gleich wieder"_s);
  EXPECT_TRUE(QApplication::focusWidget()->accessibleDescription().contains(u"Zwei"_s)) << "a screen reader reads it";
}

TEST_F(LearningWindow, EnterAndSpaceGoToTheButtonReachedWithTabUntilTheNextCard) {
  settings.ini.SetInt("rowlearn", "checked", 1);
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
    Open(Numbered(4, NewCard));
    EXPECT_EQ(QApplication::focusWidget()->objectName(), u"BtHand"_s);
    Key(Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget()->objectName(), u"BtLerneIch"_s);
    Key(key);
    EXPECT_EQ(Field(kYesNoRow, 2).front(), 'f');
    EXPECT_EQ(Field(kTimeRow, 2).front(), '1') << "answered: not known";
    Find<QWidget>(u"BtLerneIch"_s).setFocus();
    Key(Qt::Key_Return);
    EXPECT_EQ(Field(kYesNoRow, 3).front(), 'w') << "the focus alone takes nothing away from Enter";
  }
}

// Nothing falls back to the method of the program, and what was chosen at the start goes before the home card.
TEST_F(LearningWindow, ACardFileMayBeginWithItsHomeCardInRowOrder) {
  OpenTestFile(disk, file, kThreeCards);
  file.settings().Parse("[START]\nMethode=2\nStartkarte=1\n");
  Show();
  EXPECT_EQ(window->windowTitle(), u"Linkmap Pos.  - 3"_s);
  Key(Qt::Key_Return);
  EXPECT_EQ(window->windowTitle(), u"Frageseite Übungskarte Pos.  - 1"_s);
  EXPECT_EQ(Text(u"LabelSteuerung"_s), u"Lernsteuerung nach Reihenfolge"_s);
  window->close();
  EXPECT_EQ(settings.ini.Text().find("rowlearn"), std::string::npos);
  window = std::make_unique<TF_wnlern>(file, settings, clock, random, messages, gate);
  window->LearnBy({.method = Method::Standard});
  window->show();
  QApplication::processEvents();
  EXPECT_TRUE(window->windowTitle().startsWith(u"Frageseite"_s) && Command(u"MAutoStandard"_s).isChecked());
}

TEST_F(LearningWindow, DoubleClickAnswersOneCardOnly) {
  for (const QString& name : {u"BtLerneIch"_s, u"SpeedButtonTage30"_s}) {
    random.numbers = {0, 1};
    Open();
    auto& button = Find<QAbstractButton>(name);
    QTest::mouseClick(&button, Qt::LeftButton);
    QTest::mouseDClick(&button, Qt::LeftButton);
    QTest::mouseRelease(&button, Qt::LeftButton);
    EXPECT_EQ(Logged(), 1) << name.toStdString();
  }
}

TEST_F(LearningWindow, ALinkToNoCardAndAFilmThatFailsAreToldAndLeaveTheCard) {
  Open({{.id = "000001", .question = "Frage <a href=\"77\">Link</a>", .answer = "Antwort"}});
  FollowFirstLink();
  window->VideoEnded(true);
  EXPECT_TRUE(messages.errors.isEmpty());
  window->VideoEnded(false);
  EXPECT_EQ(messages.errors.size(), 1);
  EXPECT_EQ(messages.shown, QStringList{u"\nZielkarte nicht gefunden.\nNummer nicht (mehr) gültig"_s});
  EXPECT_EQ(OnScreen(), "Frage");
  EXPECT_EQ(Logged(), 0);
}

TEST_F(LearningWindow, KeysWorkWhateverHasTheFocus) {
  const std::tuple<Qt::Key, Qt::KeyboardModifiers, char> cases[] = {
      {Qt::Key_Return, {}, 'w'}, {Qt::Key_Enter, Qt::KeypadModifier, 'w'}, {Qt::Key_Delete, {}, 'f'}};
  for (const QString& focus : {u"BtLerneIch"_s, u"SpeedButtonVis"_s, u"FrameHtml"_s}) {
    for (const auto& [key, modifiers, letter] : cases) {
      SCOPED_TRACE(focus.toStdString() + " key " + std::to_string(key));
      Open();
      Find<QWidget>(focus).setFocus();
      Key(Qt::Key_Backspace);
      EXPECT_EQ(window->windowTitle(), u"Antwortseite Übungskarte Pos.  - 1"_s);
      Find<QWidget>(focus).setFocus();
      Key(key, modifiers);
      EXPECT_EQ(Logged(), 1);
      EXPECT_EQ(Field(kYesNoRow, 2).front(), letter);
      Key(Qt::Key_Home);
      EXPECT_EQ(window->windowTitle(), u"Linkmap Pos.  - 3"_s);
    }
  }
}

TEST_F(LearningWindow, AnswerWindowsHoldBackTheLearnersOwnAnswer) {
  Open();
  QStringList heard;
  QObject::connect(window.get(), &TF_wnlern::AnswerGiven, window.get(),
                   [&heard](int row, bool known) { heard += u"answer %1 %2"_s.arg(row).arg(known); });
  QObject::connect(window.get(), &TF_wnlern::CardShown, window.get(), [&heard] { heard += u"card"_s; });
  QObject::connect(window.get(), &TF_wnlern::SideShown, window.get(), [&heard] { heard += u"side"_s; });
  gate.SetChoiceVisible(true);
  gate.SetSelectError(true);
  for (const QString& button : {u"BtWeissIch"_s, u"BtLerneIch"_s, u"SpeedButtonTage7"_s}) Click(button);
  gate.SetChoiceVisible(false);
  gate.SetTypingVisible(true);
  Click(u"BtWeissIch"_s);
  EXPECT_EQ(Logged(), 0);
  EXPECT_EQ(messages.shown,
            QStringList({3, u"\nBitte benutzen Sie\nden Button <Lerne ich>\ndes Auswahlantwortfensters"_s}) +
                QStringList(u"\nBei Tastaturtraining geht das nicht."_s));
  LearningCommands& commands = *window;
  EXPECT_FALSE(gate.InputLocked());
  commands.TypingDone(true);
  EXPECT_TRUE(gate.InputLocked());
  EXPECT_EQ(commands.Card().row, 3);
  commands.ShowAnswer();
  commands.ShowAnswer();
  EXPECT_EQ(heard, QStringList({u"answer 2 1"_s, u"card"_s, u"side"_s, u"side"_s}));
  EXPECT_EQ(commands.SecondSide(), "Two <a href=\"000003\">weiter</a>");
  Click(u"SpeedButtonTausch"_s);
  EXPECT_EQ(commands.SecondSide(), "Zwei");
  clock.milliseconds += 100;
  EXPECT_FALSE(gate.InputLocked());
}

TEST_F(LearningWindow, CardReachedByALinkBesideAnAnswerWindowIsLeftByItsAnswer) {
  Open({With(NewCard(1), &TestCard::question, "<a href=\"000002\">zwei</a>"), NewCard(2), NewCard(3)});
  gate.SetChoiceVisible(true);
  FollowFirstLink();
  EXPECT_EQ(gate.Result(), AnswerModeResult::Awaited);
  gate.SetResult(AnswerModeResult::Known);
  window->Known();
  EXPECT_EQ(window->Card().row, 2) << "back where the link stands";
  EXPECT_EQ(gate.Result(), AnswerModeResult::None);
  EXPECT_EQ(Field(kYesNoRow, 3).front(), 'w');
}

TEST_F(LearningWindow, EditsOfCardsAreShownAtOnceAndACardThatGoesGivesWay) {
  Open();
  CardCommand command;
  command.Replace(2, {{file.columns().question, "Neu"}});
  ASSERT_TRUE(CardEdit(file).Apply(std::move(command)).has_value());
  QApplication::processEvents();
  EXPECT_EQ(OnScreen(), "Neu");
  command = {};
  command.Remove(2);
  ASSERT_TRUE(CardEdit(file).Apply(std::move(command)).has_value());
  QApplication::processEvents();
  EXPECT_EQ(OnScreen(), "Zwei");
  EXPECT_EQ(window->windowTitle(), u"Frageseite Übungskarte Pos.  - 1"_s);
  command = {};
  command.Remove(2);
  ASSERT_TRUE(CardEdit(file).Apply(std::move(command)).has_value());
  QApplication::processEvents();
  EXPECT_EQ(Text(u"DisplayStatus"_s) + Text(u"DisplayBeh"_s) + Text(u"DisplayZuletzt"_s), u"0–"_s);
  EXPECT_FALSE(Find<QWidget>(u"PageControlAnz"_s).isVisible());
}

TEST_F(LearningWindow, TheEditorIsAskedForTheCardOnScreen) {
  Open();
  const QSignalSpy wanted(window.get(), &TF_wnlern::EditWanted);
  const QSignalSpy print(window.get(), &TF_wnlern::PrintWanted);
  Trigger(u"MEditor"_s, u"MDrucken"_s);
  EXPECT_EQ(print, QList<QVariantList>({{2}}));
  Click(u"BtWeissIch"_s, u"TbEdit"_s);
  EXPECT_EQ(wanted, QList<QVariantList>({{2}, {3}}));
}

TEST_F(LearningWindow, DayButtonsSetTheLeastScore) {
  for (const int days : {1, 3, 7, 14, 30, 60, 100, 365}) {
    Open();
    Click((days == 100 ? u"SpeedButton%1"_s : u"SpeedButtonTage%1"_s).arg(days));
    EXPECT_EQ(LeadingNumber(Field(kScore, 2)), days * kDay);
  }
}

TEST_F(LearningWindow, KeysTakeAnswersBackExactlyAndRestoreThem) {
  Open();
  const auto can = [this] {
    return std::pair(Command(u"MAntwortZurueck"_s).isEnabled(), Command(u"MAntwortWieder"_s).isEnabled());
  };
  Key(Qt::Key_Backspace);
  Key(Qt::Key_Return);
  Key(Qt::Key_Delete);
  EXPECT_EQ(can(), std::pair(true, false));
  for (int i = 0; i < 2; ++i) Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(Text(u"LabelSteuerung"_s), u"Antwort zurückgenommen"_s);
  EXPECT_EQ(window->windowTitle(), u"Antwortseite Übungskarte Pos.  - 1"_s) << "the side that was on screen";
  EXPECT_EQ(can(), std::pair(false, true));
  Key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Text(u"LabelSteuerung"_s), u"Antwort wiederhergestellt"_s);
  EXPECT_EQ(Field(kYesNoRow, 2), Letters("w"));
  Key(Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(can(), std::pair(true, false));
  // The button shows the second card again; from there it goes on to the first one.
  Click(u"SpeedButtonUndo"_s);
  EXPECT_EQ(window->Card().row, 3);
  Key(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(window->Card().row, 2);
  EXPECT_EQ(Logged(), 0);
}

TEST_F(LearningWindow, ClockThatWentBackEndsTheRun) {
  Open();
  Click(u"BtWeissIch"_s);
  clock.now -= 3600;
  Click(u"BtLerneIch"_s);
  for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Return, Qt::Key_Home}) Key(key);
  EXPECT_TRUE(Find<QWidget>(u"Hinweis"_s).isVisible()) << "no key closes the window or hides why nothing goes on";
  EXPECT_EQ(Logged(), 1);
  Click(u"ButtonNeuerLauf"_s);
  EXPECT_TRUE(Find<QAbstractButton>(u"BtWeissIch"_s).isEnabled() && !Find<QWidget>(u"Hinweis"_s).isVisible());
}

TEST_F(LearningWindow, NothingDueSaysWhenAndOffersToGoOn) {
  Open({With(KnownCard(1, 8200, 1000), &TestCard::question, "<a href=\"000001\">diese</a>")});
  EXPECT_EQ(messages.shown, QStringList(u"\nLernen mit der autom. Standardmethode\nzur Zeit nicht mehr sinnvoll."_s));
  EXPECT_TRUE(Text(u"LabelHinweis"_s).contains(u"in 2 Stunden 1 Minute"_s)) << Text(u"LabelHinweis"_s).toStdString();
  Key(Qt::Key_Delete);
  EXPECT_TRUE(Find<QWidget>(u"Hinweis"_s).isVisible());
  Click(u"ButtonOhneSperre"_s);
  EXPECT_EQ(Text(u"EditZeitsperre"_s), u"Zeitsperre aus"_s);
  EXPECT_EQ(Find<TFrameHtml>(u"FrameHtml"_s).layout().fragments.at(0).colour, ColourClass::Green);
  EXPECT_EQ(Text(u"DisplayZuletzt"_s), u"0:00:16:40"_s);
}

TEST_F(LearningWindow, RowOrderThatFindsNothingBeforeTheEndBeginsAnew) {
  settings.ini.SetInt("rowlearn", "checked", 1);
  OpenTestFile(disk, file, kThreeCards);
  file.settings().SetInt("ROW", "Pos", 3);
  Show();
  EXPECT_EQ(OnScreen(), "Zwei");
  window->close();
  EXPECT_EQ(file.settings().GetInt("ROW", "Pos", 0), 4);
  Show();
  EXPECT_EQ(messages.shown, QStringList(u"\nKarteiende erreicht. \nLerndurchlauf beendet."_s));
  Click(u"ButtonNeuerLauf"_s);
  EXPECT_EQ(OnScreen(), "Eins");
}

TEST_F(LearningWindow, StoredKeysGoBeforeAnyOtherAndTheFirstOfTwoEqualOnesWins) {
  const std::pair<const char*, int> keys[] = {
      {"turn", 'R'}, {"know", 118}, {"learn", 118}, {"back", 0x4000 + 'Y'}, {"home", -5}};
  for (const auto& [key, code] : keys) settings.ini.SetInt("LShortCuts", key, code);
  Open();
  Key(Qt::Key_R);
  EXPECT_EQ(Text(u"LabelSeite"_s), u"Antwortseite"_s);
  EXPECT_TRUE(Command(u"TonNochEinmal"_s).shortcuts().isEmpty());
  Key(Qt::Key_F7);
  EXPECT_EQ(Field(kYesNoRow, 2).front(), 'w');
  Key(Qt::Key_Z, Qt::ControlModifier);
  Key(Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(window->windowTitle(), u"Linkmap Pos.  - 3"_s);
  EXPECT_EQ(Logged(), 0);
  Key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(Logged(), 1) << "the other key for it is left";
  for (const QString& side : {u"Antwortseite"_s, u"Frageseite"_s}) {
    Key(Qt::Key_Space);
    EXPECT_EQ(Text(u"LabelSeite"_s), side);
  }
  EXPECT_EQ(Field(kYesNoRow, 3).front(), 'w') << "space answers the second time";
  EXPECT_EQ(Command(u"MHome"_s).shortcut(), QKeySequence(Qt::Key_Home));
}

TEST_F(LearningWindow, DeckWithoutCardsSaysSo) {
  OpenTestFile(disk, file, {kThreeCards[2]});
  ASSERT_TRUE(file.cards().GoTo(kFirstCardRow) && file.cards().DeleteRow() && file.RebuildIndexes());
  Show();
  EXPECT_TRUE(Text(u"LabelHinweis"_s).contains(u"keine Karten"_s));
  Key(Qt::Key_Return);
  EXPECT_TRUE(messages.errors.isEmpty());
}

}  // namespace
}  // namespace tessaro
