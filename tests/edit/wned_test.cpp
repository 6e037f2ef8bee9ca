#include "edit/wned.h"

#include <QClipboard>
#include <QDropEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QSet>
#include <QTextBlock>
#include <QTextLayout>
#include <random>

#include "edit/side_field.h"
#include "edit/wnlink.h"
#include "edit/wnsign.h"
#include "edit/wnsuch.h"
#include "edit/wntab.h"
#include "tests/support/test_cards.h"
#include "tests/support/window_test.h"
#include "widgets/htmlview.h"

namespace tessaro {
namespace {

class CardEditor : public WindowTest {
 protected:
  void Open(const std::vector<TestCard>& cards = {{.id = "000001", .question = "Ofen"},
                                                  {.id = "000002", .question = "Topf <a href=\"000001\">x</a>"},
                                                  {.id = "000003", .question = "Herd"}}) {
    window.reset();
    file.Close();
    OpenTestFile(disk, file, cards);
    window = std::make_unique<TF_wned>(file, settings, EditorMachine{clock, disk, messages}, made);
    window->resize(1300, 800);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    Front().setFocus();
  }
  QWidget& Tested() override { return *window; }
  SideField& Front() { return Find<SideField>(u"RichEditKarteVorne"_s); }
  SideField& Back() { return Find<SideField>(u"RichEditKarteHinten"_s); }
  void Type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
  std::string Stored(int row, bool front = true) {
    const CardColumns& columns = file.columns();
    return std::string(file.cards().Peek(front ? columns.question : columns.answer, row));
  }
  QString Status() { return Text(u"LabelStatus"_s); }

  CardFile file{disk};
  ProgramSettings settings;
  int64_t made = 0;
  std::unique_ptr<TF_wned> window;
};

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
  Trigger(u"MCardCopy"_s);
  Trigger(u"MCardPaste"_s);
  EXPECT_EQ(Status(), u"Karte ID: 000005 an Pos. 3 eingefügt"_s);
  EXPECT_EQ(Stored(4), "neu") << "what was typed is copied";
  EXPECT_EQ(Stored(4, false), "<b>hinten</b>!");
  EXPECT_TRUE(Command(u"MCommandUndo"_s).text().startsWith(u"&Zurücknehmen: "_s));
  Trigger(u"MCardDelete"_s);
  EXPECT_EQ(Status(), u"Karte 000005 gelöscht"_s);
  EXPECT_TRUE(Find<QLabel>(u"LabelGeloescht"_s).isVisible());
  Trigger(u"MCardDelete"_s);
  EXPECT_EQ(Status(), u"Karte 000005 wiederhergestellt"_s);
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
  EXPECT_TRUE(window->Settle());
  EXPECT_TRUE(Status().startsWith(u"Sie sehen hier die erste leere Karte"_s));
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
  auto* dialog = window->findChild<TF_wnlink*>();
  ASSERT_NE(dialog, nullptr);
  Trigger(u"MCardBottom"_s);
  EXPECT_EQ(Control<QLineEdit>(*dialog, u"EditZielIdent"_s).text(), u"000003"_s);
  for (const QString& face : {u"О"_s, u"Ofen"_s}) {
    EXPECT_TRUE(dialog->isVisible());
    Control<QLineEdit>(*dialog, u"EditLinkText"_s).setText(face);
    QTest::mouseClick(&Control<QAbstractButton>(*dialog, u"BitBtnLink"_s), Qt::LeftButton);
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
  for (TF_wnlink* open : window->findChildren<TF_wnlink*>()) open->close();
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

TEST_F(CardEditor, SearchGoesFromCardToCard) {
  Open();
  Trigger(u"MCardSearch"_s);
  auto* search = window->findChild<TF_wnsuch*>();
  ASSERT_NE(search, nullptr);
  Control<QLineEdit>(*search, u"EditString1"_s).setText(u"Antwort"_s);
  const auto press = [search](const QString& name) {
    QTest::mouseClick(&Control<QAbstractButton>(*search, name), Qt::LeftButton);
  };
  press(u"BitBtnStart"_s);
  EXPECT_EQ(window->row(), 2);
  EXPECT_EQ(Back().Selection(), (SideRange{0, 7})) << "what was found is marked";
  press(u"BitBtnWeiter"_s);
  EXPECT_EQ(window->row(), 3);
  EXPECT_EQ(Control<QLabel>(*search, u"LabelErgebnis"_s).text(), u"gefunden in Zeile 1. 2 Karten durchsucht"_s);
  press(u"BitBtnWeiter"_s);
  press(u"BitBtnWeiter"_s);
  EXPECT_TRUE(Status().startsWith(u"Zeichenfolge(n) nicht gefunden"_s));
}

TEST_F(CardEditor, ListsFollowEveryCommandRowByRow) {
  Open({{.id = "000001", .question = "Ofen", .score = "000000060"},
        {.id = "000002", .question = "Topf <a href=\"000001\">x</a>", .score = "000090061", .time_row = "1700000000"},
        {.id = "000003", .question = "Herd"}});
  window->ShowTable();
  auto* table = window->findChild<TF_wntab*>();
  auto& grid = Control<QTableView>(*table, u"StringGridTab"_s);
  const auto fronts = [&grid] {
    QStringList texts;
    for (int row = 0; row < grid.model()->rowCount(); ++row) texts += grid.model()->index(row, 2).data().toString();
    return texts.join(u' ');
  };
  EXPECT_EQ(grid.model()->index(1, 4).data(), u"1:01:01:01"_s);
  EXPECT_EQ(grid.model()->index(0, 4).data(), QString()) << "a new card has no retention time";
  int resets = 0;
  QObject::connect(grid.model(), &QAbstractItemModel::modelReset, &grid, [&resets] { ++resets; });
  grid.selectRow(2);
  Trigger(u"MCardLeer"_s);
  EXPECT_EQ(fronts(), u"Ofen - Topf x Herd"_s);
  EXPECT_EQ(grid.currentIndex().row(), 3) << "the marked row stays marked";
  grid.sortByColumn(2, Qt::DescendingOrder);
  EXPECT_EQ(fronts(), u"Topf x Ofen Herd -"_s);
  EXPECT_EQ(Stored(2), "Ofen") << "the cards keep their order";
  grid.selectRow(0);
  QTest::mouseClick(&Control<QAbstractButton>(*table, u"BitBtnEditor"_s), Qt::LeftButton);
  EXPECT_EQ(window->row(), 4);
  Trigger(u"MCardTop"_s);
  Trigger(u"MCardLeer"_s);
  EXPECT_EQ(fronts(), u"Topf x Ofen - Herd -"_s) << "a new card stands behind its neighbour";
  Trigger(u"MCardCut"_s);
  EXPECT_EQ(fronts(), u"Topf x Ofen Herd -"_s);
  Trigger(u"MCommandUndo"_s);
  Trigger(u"MCommandUndo"_s);
  Trigger(u"MCommandUndo"_s);
  EXPECT_EQ(fronts(), u"Topf x Ofen Herd"_s);
  EXPECT_EQ(resets, 0);
  table->activateWindow();
  ASSERT_TRUE(QTest::qWaitFor([table] { return QApplication::activeWindow() == table; }));
  grid.setFocus();
  QTest::keyClick(&grid, Qt::Key_End);
  for (const size_t marked : {1U, 3U, 0U, 3U}) {
    QTest::keyClick(&grid, Qt::Key_Delete);
    EXPECT_EQ(file.deletion_marks().rows().size(), marked);
    grid.selectAll();
  }
  table->close();
  EXPECT_TRUE(window->Settle());
  EXPECT_EQ(fronts(), u"-"_s);
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

TEST_F(CardEditor, ChosenPicturesAndCharactersAreInserted) {
  Open();
  disk.Put("/deck/Medien/bild.bmp", "BM");
  disk.Put("/anderswo/bild.bmp", "BM2");
  messages.files = {u"/deck/Medien/bild.bmp"_s, u"/anderswo/bild.bmp"_s};
  messages.answers = {Answer::Yes};
  Front().selectAll();
  Trigger(u"MHtmlImage"_s);
  EXPECT_EQ(Front().Side(), "<img src=\"Medien\\bild.bmp\" border=\"0\">");
  Front().selectAll();
  Trigger(u"MHtmlImage"_s);
  EXPECT_EQ(Front().Side(), "<img src=\"Medien\\bild_2.bmp\" border=\"0\">");
  EXPECT_EQ(disk.Content("/deck/Medien/bild_2.bmp"), "BM2");
  EXPECT_EQ(disk.Content("/deck/Medien/bild.bmp"), "BM");
  QMimeData dropped;
  dropped.setUrls({QUrl::fromLocalFile(u"/deck/Medien/bild.bmp"_s)});
  QDragEnterEvent enter({}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(Back().viewport(), &enter);
  QDropEvent drop({}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(Back().viewport(), &drop);
  EXPECT_EQ(Back().Side(), "Antwort") << "who lets go of a file does not wait for questions about it";
  QApplication::processEvents();
  EXPECT_EQ(Back().Side(), "<img src=\"Medien\\bild.bmp\" border=\"0\">Antwort");
  Front().setFocus();
  Front().moveCursor(QTextCursor::Start);
  Trigger(u"MTextSign"_s);
  auto* signs = window->findChild<TF_wnsign*>();
  ASSERT_NE(signs, nullptr);
  Control<QTableWidget>(*signs, u"ZeichenTabelle"_s).setCurrentCell(0, 1);
  QTest::mouseClick(&Control<QAbstractButton>(*signs, u"BitBtnOK"_s), Qt::LeftButton);
  EXPECT_TRUE(Front().Side().starts_with("]<img "));
}

}  // namespace
}  // namespace tessaro
