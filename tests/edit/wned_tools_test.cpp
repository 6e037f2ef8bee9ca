// The tools of the editor: search, tables, pictures, characters, numbering and overviews.

#include <QItemSelectionModel>
#include <QUrl>

#include "edit/autobild.h"
#include "edit/autolink.h"
#include "edit/dlnumm.h"
#include "edit/wnsign.h"
#include "edit/wnsuch.h"
#include "edit/wntab.h"
#include "tests/edit/wned_fixture.h"

namespace tessaro {
namespace {

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
  QString orders;
  for (int column = 0; column < grid.model()->columnCount(); ++column) {
    grid.sortByColumn(column, Qt::AscendingOrder);
    for (const QString& front : fronts().split(u' ')) orders += front.front();
    orders += u' ';
  }
  EXPECT_EQ(orders, u"O-TxH OTxH- -HOTx -OTxH O-HTx O-HTx O-TxH "_s);
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
  Front().setPlainText(u"Rest"_s);
  EXPECT_TRUE(window->Settle());
  EXPECT_EQ(Stored(2), "Rest");
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

TEST_F(CardEditor, NumberingAsksAndOverviewsAreMadeOfOneTopicOrTwo) {
  Open({{.id = "000007", .question = "<topic=\"A\"><img src=\"o.bmp\">", .time_row = "1700000000", .topic = "01"},
        {.id = "000008", .question = "<topic=\"A\"><topic=\"B\">"}});
  file.settings().SetString("TOPIC", "1", "Haus");
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
                             Press(dialog, u"BitBtnSymbols"_s, u"BitBtnTransfer"_s, u"BitBtnAutoThema"_s);
                             EXPECT_FALSE(Stored(2).ends_with("\"Haus\">")) << "the box of a learned card";
                             messages.answers = {Answer::Yes};
                             Press(dialog, u"BitBtnTransfer"_s);
                             EXPECT_TRUE(Stored(2).ends_with("<topic=\"Haus\">"));
                             Control<QComboBox>(dialog, u"ComboBoxHtmlMark2"_s).setCurrentIndex(2);
                             Press(dialog, u"BitBtnAutoThema"_s);
                           });
  EXPECT_TRUE(Status().startsWith(u"1 Karten bearbeitet. Keine Karte trägt <index>"_s)) << "both topics";
  EXPECT_TRUE(disk.Content("/deck/card.bmp")->starts_with("BM") && disk.Exists("/deck/cards.bmp"));
  EXPECT_EQ(window->row(), 5);
  Trigger(u"MCardTop"_s);
  messages.files = {u"/deck/a.bmp"_s};
  Drive<TF_autobild>(u"MHtmlAutoBild"_s, [](TF_autobild& dialog) { Press(dialog, u"BitBtnBilder"_s); });
  EXPECT_TRUE(Status() == u"1 Karten erstellt"_s && Stored(6).find("<img src=\"a.bmp\">") != std::string::npos);
}

}  // namespace
}  // namespace tessaro
