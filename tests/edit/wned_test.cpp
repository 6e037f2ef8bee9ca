#include <QMenuBar>
#include <QSet>
#include <QTextBlock>
#include <QTextLayout>

#include "edit/wnlink.h"
#include "tests/edit/wned_fixture.h"

namespace tessaro {
namespace {

TEST_F(CardEditor, TypedTextIsPreviewedAndStoredOnLeavingTheCard) {
  Open();
  Key(Qt::Key_End);
  Type(u" heizt"_s);
  QTest::qWait(60);
  EXPECT_NE(Find<TFrameHtml>(u"TFrameHtmlV"_s).layout().fragments.back().text.find("heizt"), std::string::npos);
  Key(Qt::Key_B, Qt::ControlModifier);
  Type(u"gut"_s);
  EXPECT_EQ(Front().Side(), "Ofen heizt<b>gut</b>");
  EXPECT_EQ(Stored(2), "Ofen");
  Key(Qt::Key_F2);
  EXPECT_EQ(Stored(2), "Ofen heizt<b>gut</b>");
  EXPECT_EQ(window->row(), 3);
  Key(Qt::Key_Home, Qt::ControlModifier);
  EXPECT_EQ(window->row(), 2) << "the key belongs to the cards, not to the text";
  Key(Qt::Key_Z, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(Front().Side(), "Ofen");
  Front().selectAll();
  Key(Qt::Key_Delete);
  Trigger(u"MCardSave"_s);
  EXPECT_EQ(Status(), u"Änderung in Karte 000001 gespeichert. Hinweis: leere Vorderseite an Pos. 1"_s);
  Trigger(u"MCardUndo"_s);
  EXPECT_EQ(Front().Side(), "Ofen");
}

TEST_F(CardEditor, CardCommandsSayWhatTheyDid) {
  Open();
  Key(Qt::Key_N, Qt::AltModifier);
  EXPECT_EQ(Status(), u"Karte ID: 000004 (Leerkarte) an Pos. 2 eingefügt"_s);
  Key(Qt::Key_F4);
  Key(Qt::Key_F2);
  Type(u"neu"_s);
  Key(Qt::Key_Tab);
  Key(Qt::Key_B, Qt::ControlModifier);
  Type(u"hinten"_s);
  Key(Qt::Key_B, Qt::ControlModifier);
  Type(u"!"_s);
  EXPECT_FALSE(Command(u"MCardPaste"_s).isEnabled());
  Trigger(u"MCardCopy"_s, u"MCardPaste"_s);
  EXPECT_EQ(Status(), u"Karte ID: 000005 an Pos. 3 eingefügt"_s);
  EXPECT_EQ(Stored(4), "neu") << "what was typed is copied";
  EXPECT_EQ(Stored(4, false), "<b>hinten</b>!");
  EXPECT_TRUE(Command(u"MCommandUndo"_s).text().startsWith(u"&Zurücknehmen: "_s));
  Trigger(u"MCardDelete"_s);
  EXPECT_EQ(Status(), u"Karte 000005 gelöscht"_s);
  EXPECT_TRUE(Find<QLabel>(u"LabelGeloescht"_s).isVisible() && Front().font().strikeOut());
  Trigger(u"MCardDelete"_s);
  EXPECT_EQ(Status(), u"Karte 000005 wiederhergestellt"_s);
  EXPECT_FALSE(Find<QLabel>(u"LabelGeloescht"_s).isVisible() || Back().font().strikeOut());
  Trigger(u"MCardDelete"_s);
  EXPECT_EQ(file.CardCount(), 5);
  window->close();
  EXPECT_EQ(file.CardCount(), 4);
}

TEST_F(CardEditor, LastCardIsReplacedByAnEmptyOneThatIsExplained) {
  Open({{.id = "000001", .question = "Ofen"}});
  Trigger(u"MCardCut"_s);
  EXPECT_TRUE(Status().startsWith(u"Sie sehen hier die erste leere Karte"_s));
  Trigger(u"MCardDelete"_s);
  EXPECT_TRUE(window->Settle() && Status().startsWith(u"Sie sehen hier die erste leere Karte"_s));
  EXPECT_EQ(Front().Side(), "-");
}

TEST_F(CardEditor, LetterOfAMenuRunsOneCommand) {
  Open();
  Key(Qt::Key_N, Qt::AltModifier);
  for (const QMenu* menu : window->menuBar()->findChildren<QMenu*>()) {
    QSet<QString> letters;
    for (const QAction* action : menu->actions()) {
      const QString key = QKeySequence::mnemonic(action->text()).toString();
      EXPECT_TRUE(key.isEmpty() || !letters.contains(key)) << action->text().toStdString();
      letters += key;
    }
  }
}

TEST_F(CardEditor, StaleLinkIndexIsRebuiltWhereTheUserWantsIt) {
  Open();
  messages.answers = {Answer::Yes};
  file.cards().GoTo(3);
  file.cards().DeleteRow();
  file.TableChanged();
  Find<QLineEdit>(u"EditGoto"_s).setText(u"#3"_s);
  Click(u"SpeedButtonGoto"_s);
  EXPECT_EQ(messages.asked.value(0), u"\nLinkindex nicht mehr aktuell.\nJetzt neu aufbauen?"_s);
  EXPECT_EQ(window->row(), 3);
  EXPECT_EQ(file.link_index().RowOfId(3), 3);
  EXPECT_TRUE(Front().hasFocus());
}

TEST_F(CardEditor, LinkIsMadeByGoingToItsTarget) {
  Open();
  Front().selectAll();
  Key(Qt::Key_L, Qt::ControlModifier);
  EXPECT_EQ(Front().Side(), "<+>");
  EXPECT_EQ(Stored(2), "Ofen");
  auto& dialog = Find<TF_wnlink>(u"TF_wnlink"_s);
  const auto line = [&dialog](const QString& name) -> QLineEdit& { return Control<QLineEdit>(dialog, name); };
  Trigger(u"MHtmlLink"_s);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  for (const Qt::Key key : {Qt::Key_F2, Qt::Key_F2, Qt::Key_F4, Qt::Key_F2}) Key(key);
  EXPECT_EQ(line(u"EditQuelleIdent"_s).text() + line(u"EditZielIdent"_s).text(), u"000001000003"_s);
  EXPECT_EQ(line(u"EditLinkText"_s).text(), u"Ofen"_s);
  for (const QString& face : {u"О"_s, u"Ofen"_s}) {
    EXPECT_TRUE(dialog.isVisible());
    line(u"EditLinkText"_s).setText(face);
    Press(dialog, u"BitBtnLink"_s);
  }
  EXPECT_EQ(window->row(), 2);
  EXPECT_EQ(Stored(2), "<a href=\"000003\">Ofen</a>");
  EXPECT_EQ(Front().Side(), Stored(2));
  // Given up, the text is what it was.
  window->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  Back().setFocus();
  Back().selectAll();
  Key(Qt::Key_L, Qt::ControlModifier);
  EXPECT_EQ(Back().Side(), "<+>");
  QApplication::processEvents();
  ASSERT_EQ(OpenWindows<TF_wnlink>().size(), 1);
  OpenWindows<TF_wnlink>()[0]->close();
  EXPECT_EQ(Back().Side(), "Antwort");
  EXPECT_EQ(Stored(2, false), "Antwort");
}

TEST_F(CardEditor, TextThatCardsCannotHoldStaysOut) {
  Open();
  Front().selectAll();
  QApplication::clipboard()->setText(u"aΩb\u00A0c 😀"_s);
  Front().paste();
  EXPECT_EQ(Front().Side(),
            "ab\xA0"
            "c ");
  EXPECT_TRUE(Status().startsWith(u"Weggelassen"_s)) << Status().toStdString();
  Front().undo();
  EXPECT_EQ(Front().Side(), "Ofen");
  for (const char* odd : {"<", "<<<>", "a<b>c\n<a href=\"\n1\">", "\x01\x00\x0F", "<a href=\"000001\">"}) {
    Front().SetSide(odd);
    EXPECT_EQ(Front().Side(), odd);
  }
}

TEST_F(CardEditor, OddSidesUpsetNeitherColoursNorPreview) {
  Open();
  const std::array parts = {"<",    ">",           "<b",      "\"",   "<a href=\"00000",
                            "1\">", "</a>",        "<#SHOW:", "\n",   "\xC4",
                            "&lt;", "<img src=\"", "<+>",     "\x7F", "font size=\"99999\">"};
  std::mt19937 chance(1);
  for (int i = 0; i < 60; ++i) {
    std::string side;
    for (size_t part = chance() % 20; part > 0; --part) side += parts[chance() % parts.size()];
    Front().SetSide(side);
    ASSERT_EQ(Front().Side(), side);
    const SideRange marked = {chance() % (side.size() + 1), 0};
    Front().Select(marked);
    Front().Enclose("<i>", "</i>");
    EXPECT_EQ(Front().Side(), ApplyEdit(side, EncloseInTags(side, marked, "<i>", "</i>")));
    QTest::keyClicks(&Front(), u"x<"_s);
    Front().TransferBreaks();
    QTest::qWait(1);
    while (Front().document()->isUndoAvailable()) Front().undo();
    ASSERT_EQ(Front().Side(), side);
  }
}

TEST_F(CardEditor, FileForReadingOnlyIsLookedAtAndLeftAlone) {
  disk.set_has_locks(false);
  Open();
  ASSERT_TRUE(file.read_only());
  Front().setFocus();
  Front().selectAll();
  Type(u"anders"_s);
  EXPECT_EQ(Front().Side(), "Ofen");
  const QStringList changing = {u"MCardLeer"_s,    u"MCardCut"_s,     u"MCardDelete"_s,
                                u"MCardDelStat"_s, u"MTextClear"_s,   u"MHtmlBold"_s,
                                u"MHtmlHome"_s,    u"MHtmlNoLearn"_s, u"MHtmlTransferAll"_s};
  for (const QString& name : changing) {
    messages.shown.clear();
    Trigger(name);
    EXPECT_EQ(messages.shown.size(), 1) << name.toStdString();
  }
  window->MNummerierenClick();
  window->MHtmlAutoLink();
  Trigger(u"MCardGoNext"_s);
  EXPECT_EQ(window->row(), 3);
  EXPECT_EQ(Stored(2), "Ofen");
  EXPECT_FALSE(file.changed());
}

TEST_F(CardEditor, LinksOfThePreviewLeadOnAndBack) {
  Open();
  const auto underlined = [this] {
    const QList<QTextLayout::FormatRange> formats = Front().document()->firstBlock().layout()->formats();
    return std::any_of(formats.begin(), formats.end(), [](const auto& range) { return range.format.fontUnderline(); });
  };
  Front().SetSide("<a href=\"000009\">x</a>");
  EXPECT_TRUE(underlined()) << "it leads nowhere";
  Trigger(u"MCardGoNext"_s);
  EXPECT_FALSE(underlined());
  auto& frame = Find<TFrameHtml>(u"TFrameHtmlV"_s);
  const LinkArea area = frame.layout().links.areas().front();
  QTest::mouseClick(frame.findChild<QWidget*>(u"PaintBox"_s), Qt::LeftButton, {}, QPoint(area.left + 2, area.top + 2));
  EXPECT_EQ(window->row(), 2);
  Trigger(u"MCardGoLastLink"_s);
  EXPECT_EQ(window->row(), 3);
}

// Both sides, or the one that is written; the list of cards where there is room beside them.
TEST_F(CardEditor, ANarrowWindowShowsTheSideThatIsWritten) {
  Open();
  const auto parts = [this] {
    QApplication::processEvents();
    QString shown;
    for (const auto& name : {u"KartenListe"_s, u"PageControlKarte"_s, u"TitelVorne"_s, u"Vorne"_s, u"Hinten"_s}) {
      if (Find<QWidget>(name).isVisible()) shown += name.front();
    }
    return shown;
  };
  for (const auto& [width, shown] : {std::pair(1300, u"KTVH"_s), {900, u"KPV"_s}, {899, u"TVH"_s}, {760, u"TVH"_s}}) {
    window->resize(width, 800);
    EXPECT_EQ(parts(), shown) << width;
  }
  window->resize(759, 800);
  Key(Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(parts(), u"PH"_s);
  EXPECT_TRUE(Back().hasFocus() && Text(u"LabelLaenge"_s).contains(u" 7 "_s));
  Find<QTabBar>(u"PageControlKarte"_s).setCurrentIndex(0);
  EXPECT_EQ(parts(), u"PV"_s);
  EXPECT_TRUE(Find<QLabel>(u"TitelVorne"_s).font().bold() && !Find<QLabel>(u"TitelHinten"_s).font().bold());
  auto& preview = Find<TFrameHtml>(u"TFrameHtmlV"_s);
  window->setPalette(ThemePalette(Theme::Dark));
  EXPECT_LT(preview.grab().toImage().pixelColor(preview.rect().center()).lightness(), 128);
}

TEST_F(CardEditor, HomeCardAndOverviewAreAskedAboutAndSaidWhereTheyStay) {
  Open({{.id = "000001", .question = "<home>"}, {.id = "000002"}, {.id = "000003", .question = "<index>"}});
  Trigger(u"MCardGoNext"_s);
  for (const QString& command : {u"MHtmlHome"_s, u"MHtmlVis"_s}) Trigger(command);
  EXPECT_EQ(Front().Side() + file.settings().Text(), "Frage");
  messages.answers = {Answer::Yes, Answer::Yes};
  Trigger(u"MHtmlHome"_s);
  EXPECT_EQ(Stored(3), "<navigation><home><br>Frage");
  EXPECT_EQ(Status(), u"Startkarte bleibt die Karte an Pos. 1: Die erste Karte mit <home> gilt"_s);
  Trigger(u"MHtmlVis"_s);
  EXPECT_TRUE(Status().startsWith(u"Karte 000002 ist die Startkarte der Auswahl"_s) && disk.Exists("/deck/x.ini"));
  Trigger(u"MCardGoHome"_s);
  EXPECT_EQ(window->row(), 2);
  Trigger(u"MCardGoAuto"_s);
  EXPECT_EQ(window->row(), 3);
  Find<QWidget>(u"KartenListe"_s).setFocus();
  Key(Qt::Key_L, Qt::ControlModifier);
  EXPECT_EQ(Status(), u"Linkindex neu aufgebaut: 3 Karten"_s) << "outside a side the key makes no link";
}

}  // namespace
}  // namespace tessaro
