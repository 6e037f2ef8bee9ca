
#include "learn/dlausw.h"
#include "learn/dllernkeys.h"
#include "learn/dlparam.h"
#include "learn/frage.h"
#include "learn/hot_key_edit.h"
#include "tests/learn/window_fixture.h"

namespace tessaro {
namespace {

class LearningDialogs : public LearningWindow {
 protected:
  static bool Enabled(const QWidget& dialog, const QString& name) { return Control<QWidget>(dialog, name).isEnabled(); }
  static QString Line(const QWidget& dialog, const QString& edit) { return Control<QLineEdit>(dialog, edit).text(); }
  static QString StatusLine(const QWidget& dialog) { return Control<QLabel>(dialog, u"StatusZeile"_s).text(); }
  template <typename Dialog>
  void Drive(const std::function<void()>& open, const std::function<void(Dialog&)>& act) {
    DriveDialog<Dialog>(open, act);
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
  }
  // Opens the selection of the method with `open` and does `act` there.
  void Choose(const std::function<void(TF_dlausw&)>& act) {
    Drive<TF_dlausw>([&] { Trigger(u"MLeitner"_s); }, act);
  }
  // The last digit of the number of the card on screen.
  QString Shown() { return window->windowTitle().last(1); }
  bool Checked(const QString& action) { return Command(action).isChecked(); }
};

// Two cards of box 1, the second answered longer ago; two new ones; one of box 2; one raised to it by its streak.
std::vector<TestCard> BoxCards() {
  const auto in = [](const char* box, const TestCard& card) { return With(card, &TestCard::topic, box); };
  const TestCard raised = With(KnownCard(6, 1, 700), &TestCard::yes_no_row, Letters("ww"));
  return {in("01", WrongCard(1, 500)),
          in("1", WrongCard(2, 900)),
          NewCard(3),
          NewCard(4),
          in("2", WrongCard(5, 100)),
          in("1", raised)};
}

TEST_F(LearningDialogs, ABoxIsCountedLearnedToItsEndAndChosenAnew) {
  Open(BoxCards());
  Choose([&](TF_dlausw& dialog) {
    EXPECT_EQ(dialog.focusWidget()->objectName(), u"BitBtnSort"_s);
    EXPECT_FALSE(Enabled(dialog, u"BitBtnLern1"_s) || Enabled(dialog, u"BtLern"_s));
    Press(dialog, u"BitBtnSort"_s);
    EXPECT_EQ(Line(dialog, u"EditAnzNeu"_s) + Line(dialog, u"EditAnzFach1"_s) + Line(dialog, u"EditAnzFach2"_s),
              u"222"_s);
    EXPECT_EQ(Field(kTopic, 7), "2") << "raised to the streak";
    EXPECT_EQ(Control<QWidget>(dialog, u"BitBtnLern%1"_s.arg(kBoxes)).toolTip(), u"Fach %1 ist leer"_s.arg(kBoxes));
    auto& limit = Control<QLineEdit>(dialog, u"MaskEditMax2"_s);
    EXPECT_EQ(limit.text(), u"50"_s);
    limit.selectAll();
    QTest::keyClicks(&limit, u"2"_s);
    EXPECT_FALSE(Enabled(dialog, u"BitBtnLern1"_s)) << "box 2 is full";
    QTest::keyClicks(&limit, u"0"_s);
    Press(dialog, u"BitBtnNeuNach1"_s);
    EXPECT_EQ(Line(dialog, u"EditAnzNeu"_s) + Line(dialog, u"EditAnzFach1"_s), u"04"_s);
    Press(dialog, u"CheckBoxKompatibel"_s, u"BitBtnLern1"_s);
  });
  EXPECT_EQ(settings.ini.GetInt("Leitner", "Fach2", 0), 20);
  EXPECT_EQ(Text(u"LabelSteuerung"_s), u"Lernsteuerung manuell - in Karteifach 1 -"_s);
  QString order;
  const auto answer = [&] {
    order += Shown();
    Click(u"BtWeissIch"_s);
  };
  for (int card = 0; card < 3; ++card) answer();
  Drive<TF_dlausw>(answer, [&](TF_dlausw& dialog) {
    EXPECT_FALSE(Control<QCheckBox>(dialog, u"CheckBoxKompatibel"_s).isChecked()) << "kept for the run";
    EXPECT_FALSE(Enabled(dialog, u"BitBtnLern2"_s)) << "not yet counted anew";
    Press(dialog, u"BitBtnCancel"_s);
  });
  EXPECT_EQ(order, u"3421"_s) << "new cards first, then the one answered longest ago";
  EXPECT_EQ(messages.shown, QStringList(u"\nKarteifach abgearbeitet.\nWeiter mit neuer Auswahl."_s));
  EXPECT_FALSE(Find<QWidget>(u"SpeedButtonLeitnerOff"_s).isVisible()) << "an ended box cannot be taken up again";
}

TEST_F(LearningDialogs, ABoxIsLeftAndTakenUpByItsButtons) {
  Open(BoxCards());
  const auto words = [this] {
    return Find<QToolButton>(u"SpeedButtonHome"_s).toolButtonStyle() == Qt::ToolButtonTextBesideIcon;
  };
  window->resize(2000, 700);
  while (words() && window->width() > 520) window->resize(window->width() - 5, 700);
  window->resize(window->width() + 5, 700);
  ASSERT_TRUE(words());
  Choose([](TF_dlausw& dialog) { Press(dialog, u"BitBtnSort"_s, u"BitBtnLern2"_s); });
  EXPECT_FALSE(words()) << "a button more stands there";
  EXPECT_NE(Find<QToolButton>(u"ButtonMethode"_s).toolButtonStyle(), Qt::ToolButtonIconOnly) << "one by one";
  EXPECT_EQ(Shown(), u"6"_s);
  Click(u"SpeedButtonLeitnerOn"_s);
  EXPECT_TRUE(Checked(u"MAutoStandard"_s));
  Choose([](TF_dlausw& dialog) { Press(dialog, u"BitBtnCancel"_s); });
  EXPECT_TRUE(Checked(u"MAutoStandard"_s)) << "cancelled";
  Click(u"SpeedButtonLeitnerOff"_s);
  EXPECT_TRUE(Checked(u"MLeitner"_s));
  Click(u"BtWeissIch"_s);
  EXPECT_EQ(Shown(), u"5"_s) << "where the box was left";
}

TEST_F(LearningDialogs, ACancelledSelectionGoesOnWithACardThatCameDueMeanwhile) {
  Open({KnownCard(1, 8200, 1000)});
  clock.now += 9000;
  Choose([](TF_dlausw& dialog) { Press(dialog, u"BitBtnCancel"_s); });
  EXPECT_EQ(OnScreen(), "Frage");
}

TEST_F(LearningDialogs, AWrongParameterKeepsTheFocusAndChangesNothing) {
  const std::tuple<QString, QString, QString> cases[] = {
      {u"EdMinBreite"_s, u"1"_s, u"<< Minimale Breite mindestens 2 ! >>"_s},
      {u"EdMaxBreite"_s, u"1"_s, u"<< Breite zu klein >>"_s},
      {u"EdCheckZeitFaktor"_s, u"4,1"_s, u"<< Zahl von 1.0 bis 4.0 >>"_s},
      {u"EdCheckImmer"_s, u""_s, u"<< Zahl 14 bis 500 >>"_s}};
  TF_dlparam dialog({{.max_width = 70}, 9});
  dialog.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  for (const auto& [field, text, message] : cases) {
    auto& edit = Control<QLineEdit>(dialog, field);
    const QString before = edit.text();
    edit.setFocus();
    edit.setText(text);
    QTest::keyClick(&edit, Qt::Key_Tab);
    QApplication::processEvents();
    EXPECT_EQ(QApplication::focusWidget(), &edit);
    EXPECT_EQ(StatusLine(dialog), message);
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_TRUE(dialog.isVisible()) << message.toStdString();
    edit.setText(before);
  }
  Press(dialog, u"RadioKurzSchwach"_s, u"RadioKartenSchwer"_s, u"BitBtnUebernehmen"_s);
  EXPECT_EQ(StatusLine(dialog), u"Eingaben im Assistenten fehlen"_s);
  Press(dialog, u"RadioLangGut"_s, u"BitBtnUebernehmen"_s);
  const int64_t most = SuggestParameters(Memory::Weak, Memory::Strong, CardKind::Difficult).max_width;
  EXPECT_EQ(Line(dialog, u"EdMaxBreite"_s), QString::number(most));
  EXPECT_TRUE(Control<QLabel>(dialog, u"LabelVorschlag"_s).text().contains(u"right>%1<"_s.arg(most)));
  Control<QLineEdit>(dialog, u"EdMinBreite"_s).setText(u"3"_s);
  Press(dialog, u"BitBtnCancel"_s);
  EXPECT_EQ(ParameterTextsOf(dialog.entry()), ParameterTextsOf({{.max_width = 70}, 9}));
}

// Labels that break their lines have the height for it, and the dialog a place on the screen.
TEST_F(LearningDialogs, ParametersAreWholeWithLargeLetters) {
  const auto look = [] {
    TF_dlparam dialog({});
    dialog.show();
    QApplication::processEvents();
    EXPECT_LE(dialog.height(), dialog.screen()->availableGeometry().height());
    ExpectWholeLabels(dialog);
    // A field that is scrolled out of sight comes into sight with the focus.
    auto& last = Control<QLineEdit>(dialog, u"EdCheckPosition"_s);
    last.setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    EXPECT_FALSE(last.visibleRegion().isEmpty());
  };
  for (const double scale : {1.0, 1.5}) InLetters(scale, look);
}

TEST_F(LearningDialogs, AKeyOfOnesOwnWorksInTheWindowAndOnTheQuestion) {
  settings.ini.SetInt("LShortCuts", "learn", 300);  // no key: the standard key holds
  Open({{.id = "000001", .question = "<a href=\"000002\">weiter</a>"}, {.id = "000002"}});
  const auto set = [](TF_dllernkeys& dialog, const QString& field, Qt::Key key) {
    QTest::keyClick(&Control<HotKeyEdit>(dialog, field), key);
  };
  Drive<TF_dllernkeys>([&] { Trigger(u"MShortCutsDef"_s); },
                       [&](TF_dllernkeys& dialog) {
                         EXPECT_EQ(Line(dialog, u"HotKeyLerne"_s), u"Entf"_s);
                         set(dialog, u"HotKeyLerne"_s, Qt::Key_Return);
                         EXPECT_TRUE(StatusLine(dialog).contains(u"„Weiß ich“ und „Lerne ich“"_s));
                         set(dialog, u"HotKeyLerne"_s, Qt::Key_F7);
                         EXPECT_TRUE(StatusLine(dialog).isEmpty());
                         set(dialog, u"HotKeyHome"_s, Qt::Key_F8);
                         Press(dialog, u"BitBtnOK"_s);
                       });
  EXPECT_EQ(settings.ini.GetInt("LShortCuts", "learn", 0), 118);
  FollowFirstLink();
  Drive<TF_frage>([&] { Key(Qt::Key_F8); }, [](TF_frage& dialog) { QTest::keyClick(&dialog, Qt::Key_F7); });
  EXPECT_EQ(Field(kYesNoRow, 3), Letters("")) << "not known";
  Key(Qt::Key_Delete);
  EXPECT_EQ(Logged(), 1) << "the old key is free";
  Key(Qt::Key_F7);
  EXPECT_EQ(Logged(), 2);
}

TEST_F(LearningDialogs, LeavingALinkedCardAsksWhetherItWasKnown) {
  const std::function<void()> ways[] = {[&] { FollowFirstLink(); }, [&] { Click(u"SpeedButtonHome"_s); },
                                        [&] { Click(u"SpeedButtonBack"_s); }};
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Backspace}) {
    for (const std::function<void()>& leave : ways) {
      Open({{.id = "000001", .question = "<home><a href=\"000002\">weiter</a>"},
            {.id = "000002", .question = "<a href=\"000001\">zurueck</a>"}});
      FollowFirstLink();
      ASSERT_EQ(Shown(), u"2"_s);
      Drive<TF_frage>(leave, [&](TF_frage& dialog) {
        QTest::keyClick(&dialog, key);
        if (key != Qt::Key_Backspace) return;
        EXPECT_EQ(Text(u"LabelSeite"_s), u"Antwortseite"_s);
        EXPECT_TRUE(dialog.isVisible()) << "it asks on";
        Press(dialog, u"BtWeissIch"_s);
      });
      EXPECT_EQ(Shown(), u"1"_s);
      EXPECT_EQ(Field(kYesNoRow, 3), Letters(key == Qt::Key_Escape ? "" : "w"));
      EXPECT_EQ(Logged(), key == Qt::Key_Escape ? 0 : 1);
    }
  }
}

}  // namespace
}  // namespace tessaro
