// How the learning window looks and where its parts go.

#include "learn/answer_button.h"
#include "tests/learn/window_fixture.h"

namespace tessaro {
namespace {

// It wakes once a second, and not while nobody sees the watch.
TEST_F(LearningWindow, WatchShowsFullSecondsAndSleepsInAMinimisedWindow) {
  Open();
  auto& timer = *window->findChild<QTimer*>();
  clock.milliseconds += 65 * 1000 + 900;
  ASSERT_TRUE(QTest::qWaitFor([&] { return Text(u"DisplayUebungszeit"_s) == u"01:05"_s; }, 3000));
  EXPECT_EQ(timer.interval(), 100) << "until the next full second";
  window->setWindowState(Qt::WindowMinimized);
  QApplication::processEvents();
  EXPECT_FALSE(timer.isActive());
  clock.milliseconds += 10'000;
  window->setWindowState(Qt::WindowNoState);
  QApplication::processEvents();
  EXPECT_TRUE(timer.isActive());
  EXPECT_EQ(Text(u"DisplayUebungszeit"_s), u"01:15"_s);
}

TEST_F(LearningWindow, TabReachesEverythingAndComesRound) {
  Open();
  QWidget* const first = QApplication::focusWidget();
  QStringList reached;
  do {
    ASSERT_LT(reached.size(), 60) << "it never comes round: " << reached.join(u' ').toStdString();
    Key(Qt::Key_Tab);
    reached += QApplication::focusWidget()->objectName();
    EXPECT_TRUE(QApplication::focusWidget()->isVisible());
  } while (QApplication::focusWidget() != first);
  for (const auto& name : {u"BtWeissIch"_s, u"BtLerneIch"_s, u"SpeedButtonHome"_s, u"SpeedButtonSperre"_s})
    EXPECT_TRUE(reached.contains(name)) << name.toStdString() << " of " << reached.join(u' ').toStdString();
}

TEST_F(LearningWindow, TheQuestionIsRepeatedAboveTheAnswerUnlessSwitchedOff) {
  Open();
  auto& line = Find<QLabel>(u"LabelFrage"_s);
  EXPECT_FALSE(line.isVisible());
  Key(Qt::Key_Space);
  EXPECT_TRUE(line.isVisible());
  EXPECT_EQ(line.text(), u"Eins"_s);
  Trigger(u"MFrage"_s);
  EXPECT_TRUE(!line.isVisible() && !keys::kRepeatQuestion.Read(settings.ini));
  Show();
  Key(Qt::Key_Space);
  EXPECT_FALSE(Find<QLabel>(u"LabelFrage"_s).isVisible()) << "it is kept";
}

TEST_F(LearningWindow, PageKeysScrollALongSide) {
  std::string side;
  for (int i = 0; i < 80; ++i) side += "Zeile<br>";
  Open({{.id = "000001", .question = side}});
  const auto place = [this] { return Find<TFrameHtml>(u"FrameHtml"_s).verticalScrollBar()->value(); };
  Key(Qt::Key_PageDown);
  const int page = place();
  EXPECT_GT(page, 100);
  Key(Qt::Key_PageDown);
  EXPECT_GT(place(), page);
  for (int i = 0; i < 2; ++i) Key(Qt::Key_PageUp);
  EXPECT_EQ(place(), 0);
  EXPECT_EQ(Logged(), 0);
}

TEST_F(LearningWindow, LockAndFullScreenGoBothWays) {
  Open();
  for (const bool on : {false, true}) {
    Click(u"SpeedButtonSperre"_s);
    EXPECT_EQ(Command(u"MZeitsperre"_s).isChecked(), on);
    EXPECT_EQ(Text(u"EditZeitsperre"_s), on ? u"Zeitsperre ein"_s : u"Zeitsperre aus"_s);
    EXPECT_EQ(Find<QWidget>(u"SpeedButtonSperre"_s).accessibleName(), Text(u"EditZeitsperre"_s));
  }
  Key(Qt::Key_F11);
  EXPECT_TRUE(window->isFullScreen() && Command(u"MVollbild"_s).isChecked());
  window->showNormal();
  QApplication::processEvents();
  EXPECT_FALSE(Command(u"MVollbild"_s).isChecked());
}

// The figures beside the card go first, then the words of the buttons.
TEST_F(LearningWindow, ANarrowWindowKeepsTheCardAndTheAnswers) {
  Open();
  const auto shown = [this](int width) {
    window->resize(width, 700);
    QApplication::processEvents();
    const bool figures = Find<QWidget>(u"Anzeigen"_s).isVisible();
    EXPECT_NE(Find<QWidget>(u"Edit1"_s).isVisible(), figures);
    const bool words = Find<QToolButton>(u"SpeedButtonHome"_s).toolButtonStyle() == Qt::ToolButtonTextBesideIcon;
    return std::pair(figures, words);
  };
  EXPECT_EQ(shown(1800), std::pair(true, true));
  for (const auto* button : Find<QWidget>(u"Steuerleiste"_s).findChildren<QToolButton*>())
    EXPECT_FALSE(button->icon().isNull()) << button->objectName().toStdString();
  const int wide = Find<QWidget>(u"BtWeissIch"_s).sizeHint().width();
  EXPECT_EQ(shown(900), std::pair(true, false));
  EXPECT_EQ(shown(899), std::pair(false, false));
  EXPECT_EQ(shown(window->minimumWidth()), std::pair(false, false));
  EXPECT_LT(Find<QWidget>(u"BtWeissIch"_s).sizeHint().width(), wide) << "no room for its note";
  Trigger(u"MAnzeigen"_s);
  EXPECT_EQ(shown(1800), std::pair(false, true)) << "switched off";
  EXPECT_EQ(Find<QWidget>(u"BtWeissIch"_s).sizeHint().width(), wide);
}

// The picture of a button whose key, or note, has no room is that of a button without one.
TEST(AnswerButton, NoteGoesFirstThenTheKeyAndTheNameStays) {
  AnswerButton button;
  button.setText(u"Weiß ich"_s);
  button.SetMeaning(Accent::Known, "known");
  button.KeepRoomForNote(false);
  const int name = button.sizeHint().width();
  button.KeepRoomFor(u"etwa 3 Tage"_s, u"Enter"_s);
  const int key = button.sizeHint().width();
  button.KeepRoomForNote(true);
  const int note = button.sizeHint().width();
  ASSERT_TRUE(button.minimumSizeHint().width() < name && name < key && key < note);
  const auto picture = [&button](int width, const QString& key_text, const QString& note_text) {
    button.resize(width, button.sizeHint().height());
    button.SetKeyText(key_text);
    button.SetNote(note_text);
    return button.grab().toImage();
  };
  for (const int width : {name, key - 1, key, note - 1, note}) {
    EXPECT_EQ(picture(width, u"Enter"_s, {}) != picture(width, {}, {}), width >= key) << width;
    EXPECT_EQ(picture(width, u"Enter"_s, u"etwa 3 Tage"_s) != picture(width, u"Enter"_s, {}), width >= note) << width;
  }
  std::vector<QImage> looks;
  for (const auto& [prominent, enabled] : {std::pair(false, true), {true, true}, {true, false}, {false, false}}) {
    button.SetProminent(prominent);
    button.setEnabled(enabled);
    looks.push_back(picture(note, {}, {}));
  }
  EXPECT_TRUE(looks[0] != looks[1] && looks[1] != looks[2] && looks[2] == looks[3]) << "off, it asks for nothing";
}

TEST_F(LearningWindow, AChangeOfThemeReachesTheQuietLabels) {
  Open();
  const auto caption = [this] { return Find<QWidget>(u"LabelTage"_s).palette().color(QPalette::WindowText); };
  EXPECT_LT(caption().lightness(), 128);
  window->setPalette(ThemePalette(Theme::Dark));
  EXPECT_GT(caption().lightness(), 128);
}

TEST_F(LearningWindow, ButtonsStayWhereTheyAreAndNavigationCardsOfferOne) {
  Open();
  auto& known = Find<QAbstractButton>(u"BtWeissIch"_s);
  const QRect before = known.geometry();
  EXPECT_EQ(known.accessibleName(), u"Weiß ich, gleich wieder"_s);
  Key(Qt::Key_Space);
  QApplication::processEvents();
  EXPECT_EQ(known.geometry(), before);
  Key(Qt::Key_Home);
  EXPECT_EQ(known.accessibleName(), u"Weiter"_s);
  EXPECT_EQ(known.text(), u"Weiter"_s);
  for (const auto& name : {u"BtHand"_s, u"BtLerneIch"_s, u"Tageszeile"_s})
    EXPECT_FALSE(Find<QWidget>(name).isVisible()) << name.toStdString();
  Key(Qt::Key_Return);
  EXPECT_EQ(known.text(), u"Weiß ich"_s);
  EXPECT_TRUE(Find<QWidget>(u"BtLerneIch"_s).isVisible());
}

}  // namespace
}  // namespace tessaro
