#include "edit/wned.h"

#include <QItemSelectionModel>
#include <QMenuBar>
#include <QSet>
#include <QTextBlock>
#include <QTextLayout>
#include <QUrl>

#include "edit/autolink.h"
#include "edit/dlnumm.h"
#include "edit/side_field.h"
#include "edit/wnlink.h"
#include "edit/wnsign.h"
#include "edit/wnsuch.h"
#include "edit/wntab.h"
#include "tests/support/test_cards.h"
#include "tests/support/window_test.h"
#include "widgets/htmlview.h"
#include "widgets/theme.h"

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
    window = std::make_unique<TF_wned>(file, settings, EditorMachine{clock, disk, messages, keep}, made);
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
  int kept = 0;
  const std::function<bool(QWidget*)> keep = [this](QWidget*) { return kept++ > 0; };  // refused the first time
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

TEST_F(CardEditor, SearchGoesFromCardToCard) {
  Open();
  Trigger(u"MCardSearch"_s);
  auto& search = Find<TF_wnsuch>(u"TF_wnsuch"_s);
  Control<QLineEdit>(search, u"EditString1"_s).setText(u"Antwort"_s);
  Press(search, u"BitBtnStart"_s);
  EXPECT_EQ(window->row(), 2);
  EXPECT_EQ(Back().Selection(), (SideRange{0, 7})) << "what was found is marked";
  Press(search, u"BitBtnWeiter"_s);
  EXPECT_EQ(window->row(), 3);
  EXPECT_EQ(Control<QLabel>(search, u"LabelErgebnis"_s).text(), u"gefunden in Zeile 1. 2 Karten durchsucht"_s);
  Press(search, u"BitBtnWeiter"_s, u"BitBtnWeiter"_s);
  EXPECT_TRUE(Status().startsWith(u"Zeichenfolge(n) nicht gefunden"_s));
}

TEST_F(CardEditor, ListsFollowEveryCommandRowByRow) {
  Open({{.id = "000001", .question = "Ofen", .score = "000000060"},
        {.id = "000002", .question = "Topf <a href=\"000001\">x</a>", .score = "000090061", .time_row = "1700000000"},
        {.id = "000003", .question = "Herd"}});
  window->ShowTable();
  auto& table = Find<TF_wntab>(u"TF_wntab"_s);
  auto& grid = Control<QTableView>(table, u"StringGridTab"_s);
  const auto fronts = [&grid] {
    QStringList texts;
    for (int row = 0; row < grid.model()->rowCount(); ++row) texts += grid.model()->index(row, 2).data().toString();
    return texts.join(u' ');
  };
  EXPECT_EQ(grid.model()->index(1, 4).data(), u"1:01:01:01"_s);
  EXPECT_EQ(grid.model()->index(0, 4).data(), QString()) << "a new card has no retention time";
  const QSignalSpy resets(grid.model(), &QAbstractItemModel::modelReset);
  grid.selectRow(2);
  Trigger(u"MCardLeer"_s);
  EXPECT_EQ(fronts(), u"Ofen - Topf x Herd"_s);
  EXPECT_EQ(grid.currentIndex().row(), 3) << "the marked row stays marked";
  grid.sortByColumn(2, Qt::DescendingOrder);
  EXPECT_EQ(fronts(), u"Topf x Ofen Herd -"_s);
  EXPECT_EQ(Stored(2), "Ofen") << "the cards keep their order";
  grid.selectRow(0);
  Press(table, u"BitBtnEditor"_s);
  EXPECT_EQ(window->row(), 4);
  Trigger(u"MCardTop"_s, u"MCardLeer"_s);
  EXPECT_EQ(fronts(), u"Topf x Ofen - Herd -"_s) << "a new card stands behind its neighbour";
  Trigger(u"MCardCut"_s);
  EXPECT_EQ(fronts(), u"Topf x Ofen Herd -"_s);
  Trigger(u"MCommandUndo"_s, u"MCommandUndo"_s, u"MCommandUndo"_s);
  EXPECT_EQ(fronts(), u"Topf x Ofen Herd"_s);
  EXPECT_EQ(resets.size(), 0);
  table.activateWindow();
  ASSERT_TRUE(QTest::qWaitFor([&table] { return QApplication::activeWindow() == &table; }));
  grid.setFocus();
  QTest::keyClick(&grid, Qt::Key_End);
  for (const size_t marked : {1U, 3U, 0U, 3U}) {
    QTest::keyClick(&grid, Qt::Key_Delete);
    EXPECT_EQ(file.deletion_marks().rows().size(), marked);
    grid.selectAll();
  }
  table.close();
  EXPECT_TRUE(window->Settle());
  EXPECT_EQ(fronts(), u"-"_s);
}

TEST_F(CardEditor, TheTableSearchesAndActsOnWhatIsTypedAndOnTheRowsThatAreMarked) {
  Open();
  window->ShowTable();
  auto& table = Find<TF_wntab>(u"TF_wntab"_s);
  auto& grid = Control<QTableView>(table, u"StringGridTab"_s);
  const QSignalSpy resets(grid.model(), &QAbstractItemModel::modelReset);
  const auto search = [&](const QString& text) {
    auto& field = Control<QLineEdit>(table, u"EditSuchen"_s);
    table.activateWindow();
    QApplication::processEvents();
    field.setFocus();
    field.setText(text);
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(window->row(), 2) << "Enter searches there";
    return Control<QLabel>(table, u"LabelErgebnis"_s).text() + QString::number(grid.currentIndex().row());
  };
  Front().setPlainText(u"Ofenrohr"_s);
  EXPECT_EQ(search(u"OFENR"_s), u"Zeichenfolge(n) nicht gefunden0"_s) << "only behind the marked row";
  EXPECT_EQ(Stored(2), "Ofenrohr");
  grid.sortByColumn(2, Qt::DescendingOrder);
  EXPECT_EQ(grid.currentIndex().row(), 1) << "the mark goes with its card";
  EXPECT_EQ(search(u"herd"_s), u"gefunden: Karte 32"_s);
  EXPECT_EQ(search({}), u"Bitte eine Zeichenfolge eingeben2"_s);
  grid.selectRow(0);
  grid.selectionModel()->select(grid.model()->index(2, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
  EXPECT_EQ(window->MarkedRows(), (std::vector{3, 4}));
  SetScore(file, 4, 700);
  Press(table, u"BitBtnStatistik"_s);
  EXPECT_EQ(file.cards().Peek(file.columns().score, 4), "700") << "the safe answer";
  messages.answers = {Answer::Yes};
  Front().setPlainText(u"Ofentuer"_s);
  Press(table, u"BitBtnStatistik"_s);
  EXPECT_EQ(file.cards().Peek(file.columns().score, 4), "000000000");
  EXPECT_EQ(Stored(2), "Ofentuer");
  grid.sortByColumn(0, Qt::AscendingOrder);
  EXPECT_EQ(window->MarkedRows(), (std::vector{3, 4}));
  Front().setPlainText(u"Ofen"_s);
  Press(table, u"BitBtnLoeschen"_s);
  EXPECT_EQ(Stored(2), "Ofen");
  EXPECT_TRUE(grid.model()->index(2, 1).data(Qt::FontRole).value<QFont>().strikeOut());
  EXPECT_TRUE(!grid.model()->index(0, 1).data(Qt::FontRole).isValid() && window->Settle());
  EXPECT_EQ(grid.model()->rowCount(), 1);
  EXPECT_EQ(resets.size(), 0) << "a run of rows goes as such";
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
  Front().moveCursor(QTextCursor::Start);
  Trigger(u"MTextSign"_s);
  const auto& signs = Find<TF_wnsign>(u"TF_wnsign"_s);
  auto& cells = Control<QTableWidget>(signs, u"ZeichenTabelle"_s);
  for (const auto& [typed, cell] : {std::pair(u"\u03A9"_s, u""_s), {u" xy"_s, u"x"_s}}) {
    cells.item(0, 1)->setText(typed);
    EXPECT_EQ(cells.item(0, 1)->text(), cell);
    cells.setCurrentCell(0, 1);
    Press(signs, u"BitBtnOK"_s);
  }
  EXPECT_TRUE(Front().Side().starts_with("x<img "));
  for (const QString& cell : {u"]"_s, u"x"_s}) {
    Press(signs, u"BitBtnVH"_s);
    EXPECT_EQ(cells.item(0, 1)->text(), cell) << "each side has its own";
  }
}

TEST_F(CardEditor, DroppedFilesAndThePictureOfTheClipboardBecomeTagsOfTheirSide) {
  Open();
  disk.Put("/deck/Medien/ton.mp3", "x");
  QMimeData files;
  files.setUrls({QUrl::fromLocalFile(u"/deck/Medien/ton.mp3"_s), QUrl(u"http://x/y.png"_s),
                 QUrl::fromLocalFile(u"/deck/a.exe"_s)});
  Drop(*Back().viewport(), files);
  EXPECT_EQ(Back().Side(), "Antwort") << "who lets go of files does not wait for questions about them";
  QApplication::processEvents();
  EXPECT_EQ(Back().Side(), "<embed src=\"Medien\\ton.mp3\" width=\"353\" height=\"289\">Antwort");
  EXPECT_EQ(Status(), u"Diese Art von Datei kann eine Karte nicht zeigen: /deck/a.exe"_s);
  auto* picture = new QMimeData;
  picture->setImageData(QImage(2, 2, QImage::Format_RGB32));
  QApplication::clipboard()->setMimeData(picture);
  Front().paste();
  EXPECT_EQ(Front().Side(), "<img src=\"Medien\\Bild_000001.png\" border=\"0\">Ofen");
  EXPECT_TRUE(disk.Content("/deck/Medien/Bild_000001.png").value_or("").starts_with("\x89PNG"));
  EXPECT_TRUE(Back().Side().starts_with("<embed"));
  disk.FailAt(1);
  Front().paste();
  EXPECT_EQ(messages.errors.size(), 1);
  EXPECT_TRUE(Front().Side().starts_with("<img src=\"Medien\\Bild_000001.png\" border=\"0\">Ofen"));
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

TEST_F(CardEditor, NumberingAsksAndOverviewsAreMadeOfOneTopicOrTwo) {
  Open({{.id = "000007", .question = "<topic=\"A\">Ofen"}, {.id = "000008", .question = "<topic=\"A\"><topic=\"B\">"}});
  DriveDialog<TF_dlnumm>([this] { window->MNummerierenClick(); },
                         [this](TF_dlnumm& dialog) {
                           for (const char16_t* number : {u"999990", u"4", u"4"}) {
                             EXPECT_EQ(file.RowOfId(7), 2) << "too high, then refused";
                             Control<QLineEdit>(dialog, u"EditStartNummer"_s).setText(QString::fromUtf16(number));
                             Press(dialog, u"BitBtnOK"_s);
                           }
                         });
  EXPECT_TRUE(file.RowOfId(5) == 3 && kept == 2 && messages.errors.size() == 1);
  EXPECT_EQ(Status(), u"Nummerierung abgeschlossen"_s);
  DriveDialog<TF_autolink>([this] { window->MHtmlAutoLink(); },
                           [this](TF_autolink& dialog) {
                             Press(dialog, u"BitBtnSymbols"_s, u"BitBtnAutoThema"_s);
                             Control<QComboBox>(dialog, u"ComboBoxHtmlMark2"_s).setCurrentIndex(2);
                             Press(dialog, u"BitBtnAutoThema"_s);
                           });
  EXPECT_TRUE(Status().startsWith(u"1 Karten bearbeitet. Keine Karte trägt <index>"_s)) << "both topics";
  EXPECT_TRUE(disk.Content("/deck/card.bmp")->starts_with("BM") && disk.Exists("/deck/cards.bmp"));
  EXPECT_EQ(window->row(), 5);
}

}  // namespace
}  // namespace tessaro
