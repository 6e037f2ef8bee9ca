#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <QPrinterInfo>
#include <QStandardItemModel>

#include "edit/wned.h"
#include "edit/wnsuch.h"
#include "edit/wntab.h"
#include "print/dlprint.h"
#include "print/page_view.h"
#include "tests/app/main_window_fixture.h"
#include "tests/support/temporary_folder.h"

namespace tessaro {
namespace {

using Cards = std::vector<std::array<std::string, 2>>;

constexpr PixelSize kPaper = {794, 1123};

PrintSource SourceOf(const Cards& cards, const QColor& ink = Qt::black) {
  const SideLook look = {QFont(u"DejaVu Sans"_s, 12), ink, Qt::white};
  return {.cards = static_cast<int>(cards.size()),
          .side = [cards](int card, SideName side) -> std::string_view {
            return cards[static_cast<size_t>(card)][side == SideName::Front ? 0 : 1];
          },
          .front = look,
          .back = look};
}

PrintOrder OrderOf(PrintForm form, PrintSides sides = PrintSides::Both) {
  return {.form = form, .sides = sides, .columns = 2, .rows = 5, .paper = kPaper, .margin = 30};
}

// The part of a page that letters, pictures and marks stand on.
QRect Ink(PrintedPages& pages, int page) {
  QImage image(kPaper.width, kPaper.height, QImage::Format_RGB32);
  image.fill(Qt::white);
  {
    QPainter painter(&image);
    pages.Paint(painter, page);
  }
  QRect ink;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (qGray(image.pixel(x, y)) < 100) ink |= QRect(x, y, 1, 1);
    }
  }
  return ink;
}

QRect CellOf(int n) {
  const PixelRect cell = CardSheet{kPaper, 30, 2, 5}.Cell(n);
  return {cell.left, cell.top, cell.width, cell.height};
}

std::string Lines(int count) {
  std::string lines;
  for (int n = 0; n < count; ++n) lines += "Zeile<br>";
  return lines;
}

TEST(PrintedPages, HaveTheBackOfACardBehindItsFront) {
  Cards cards(14);
  cards[13] = {"<b>front</b>", "<b>back</b>"};
  PrintedPages pages(SourceOf(cards, Qt::yellow), OrderOf(PrintForm::Cards));
  ASSERT_EQ(pages.Count(), 4);
  EXPECT_TRUE(Ink(pages, 1).isEmpty());
  const QRect front = Ink(pages, 2);
  const QRect back = Ink(pages, 3);
  EXPECT_TRUE(!front.isEmpty() && CellOf(3).contains(front) && !back.isEmpty() && CellOf(2).contains(back));
  PrintedPages backs(SourceOf(cards), OrderOf(PrintForm::Cards, PrintSides::Backs));
  EXPECT_EQ(backs.Count(), 2);
  EXPECT_TRUE(CellOf(2).contains(Ink(backs, 1)));
}

TEST(PrintedPages, ReadEachSideInItsCodePage) {
  PrintSource source = SourceOf({{"\xEC\xEC\xEC", "\xEC\xEC\xEC"}});
  source.front.page = CodePage(CharacterSet::Cyrillic);
  PrintedPages pages(source, OrderOf(PrintForm::Cards));
  EXPECT_GT(Ink(pages, 0).width(), 2 * Ink(pages, 1).width());  // that letter is wide there
}

TEST(PrintedPages, MarkACardThatDoesNotHoldItsSide) {
  const QRect corner(CellOf(0).bottomRight() - QPoint(14, 14), QSize(16, 16));
  const std::pair<std::string, bool> kCases[] = {
      {Lines(4), false}, {Lines(12), false}, {Lines(100), true}, {std::string(5000, 'x'), true}};
  for (const auto& [side, marked] : kCases) {
    PrintedPages pages(SourceOf({{side, ""}}), OrderOf(PrintForm::Cards));
    const QRect ink = Ink(pages, 0);
    EXPECT_TRUE(CellOf(0).contains(ink)) << side.size();
    EXPECT_EQ(corner.contains(ink.bottomRight()), marked) << side.size();
  }
}

TEST(PrintedPages, ShowPicturesWholeHoweverLargeTheyAre) {
  const TemporaryFolder folder;
  QImage picture(600, 400, QImage::Format_RGB32);
  picture.fill(Qt::black);
  ASSERT_TRUE(picture.save(FromPath(folder.path() / "p.png")));
  for (const char* side : {"<img src=\"p.png\">", "Text <img src=\"p.png\"> Text",
                           "Text <img src=\"p.png\" width=\"3000\" height=\"2000\"> Text"}) {
    for (const PrintForm form : {PrintForm::List, PrintForm::Cards, PrintForm::Large}) {
      PrintSource source = SourceOf({{side, ""}});
      source.folders = {folder.path(), {}};
      PrintedPages pages(source, OrderOf(form));
      const QRect ink = Ink(pages, 0);
      const bool card = form == PrintForm::Cards;
      EXPECT_GT(ink.width(), card ? 100 : 300) << side;
      EXPECT_TRUE((card ? CellOf(0) : QRect(30, 30, 794 - 60, 1123 - 60)).adjusted(3, 3, -3, -3).contains(ink)) << side;
    }
  }
  PictureStore pictures;
  pictures.SetFolders({folder.path(), {}});
  SidePrinter printer({QFont(u"DejaVu Sans"_s, 12), Qt::black, Qt::white}, pictures);
  const FittedSide small = printer.Fit(Lines(6) + "<img src=\"p.png\">", {200, 200}, {.least = 50});
  EXPECT_TRUE(small.percent < 100 && small.layout.fragments.back().rect.width == 190) << "no wider than the room";
}

TEST(PrintedPages, LoseNothingOfALongSide) {
  const std::tuple<PrintForm, std::string, int> kCases[] = {{PrintForm::List, Lines(10), 1},
                                                            {PrintForm::List, Lines(100), 3},
                                                            {PrintForm::Large, Lines(10), 2},
                                                            {PrintForm::Large, Lines(100), 4}};
  for (const auto& [form, front, count] : kCases) {
    PrintedPages pages(SourceOf({{front, "x"}}), OrderOf(form));
    while (pages.FindPage()) EXPECT_FALSE(Ink(pages, pages.Count() - 1).isEmpty());
    EXPECT_EQ(pages.Count(), count) << static_cast<int>(form) << " " << front.size();
  }
}

TEST(PrintedPages, LayOutNoMoreThanIsLookedAt) {
  int asked = 0;
  PrintSource source = SourceOf({});
  source.cards = 999'990;
  source.side = [&asked](int, SideName) {
    ++asked;
    return std::string_view("Wort");
  };
  PrintedPages list(source, OrderOf(PrintForm::List));
  (void)Ink(list, 0);
  EXPECT_LT(asked, 200);
  EXPECT_TRUE(!list.AllKnown() && list.FindPage());
  EXPECT_GT(list.CardsBefore(1), 10);
  asked = 0;
  PrintedPages cut(source, OrderOf(PrintForm::Cards));
  EXPECT_EQ(cut.Count(), 2 * 99'999);
  (void)Ink(cut, cut.Count() - 1);
  EXPECT_EQ(asked, 10);
}

TEST(Pdf, TakesTheOldFilesPlaceOnlyWhenItIsWhole) {
  const TemporaryFolder folder;
  const QString path = FromPath(folder.path() / "karten.pdf");
  PrintedPages pages(SourceOf(Cards(25, {"a", "b"})), OrderOf(PrintForm::Cards));
  const auto write = [&](const QString& to, int most) {
    return WritePdf(to, QPageLayout(), pages, u"x"_s, [most](int page) { return page < most; });
  };
  const auto content = [&] { return ReadFile(RealDisk(), ToPath(path)).value_or(""); };
  EXPECT_EQ(write(path, 3), OutputEnd::Cancelled);
  EXPECT_EQ(content(), "");
  EXPECT_EQ(write(path, 99), OutputEnd::Done);
  const std::string whole = content();
  EXPECT_NE(whole.find("/Count 6"), std::string::npos);
  EXPECT_EQ(write(path, 3), OutputEnd::Cancelled);
  EXPECT_EQ(content(), whole);
  EXPECT_EQ(write(FromPath(folder.path() / "missing" / "karten.pdf"), 99), OutputEnd::Failed);
  EXPECT_EQ(write(FromPath(folder.path()), 99), OutputEnd::Failed);
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST(Pdf, HasThePagesThatWereAskedFor) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&buffer);
    PrintedPages pages(SourceOf(Cards(25, {"a", "b"})), OrderOf(PrintForm::Cards));
    std::vector<int> asked;
    EXPECT_EQ(
        PrintPages(writer, pages, QPageRanges::fromString(u"2-3,5"_s), [&](int n) { return asked.push_back(n), true; }),
        OutputEnd::Done);
    EXPECT_EQ(asked, (std::vector{0, 1, 2, 3, 4}));
  }
  EXPECT_TRUE(buffer.data().contains("/Count 3"));
}

class PrintDialog : public MainWindow {
 protected:
  static QComboBox& Box(TF_dlprint& dialog, const char16_t* name) {
    return Control<QComboBox>(dialog, QString::fromUtf16(name));
  }
  static QString State(TF_dlprint& dialog) {
    QTest::qWait(20);
    return Control<QLabel>(dialog, u"LabelStand"_s).text();
  }
};

TEST_F(PrintDialog, OffersTheCardsThatThereAre) {
  Open(kCards);
  const auto choose = [](TF_dlprint& dialog, CardChoice choice) {
    Box(dialog, u"ComboBoxKarten").setCurrentIndex(static_cast<int>(choice));
    return State(dialog);
  };
  const auto offers = [](TF_dlprint& dialog, CardChoice choice) {
    const auto* model = qobject_cast<QStandardItemModel*>(Box(dialog, u"ComboBoxKarten").model());
    const auto* item = model->item(static_cast<int>(choice));
    return item->isEnabled() || item->toolTip().isEmpty();  // which says why not
  };
  Drive<TF_dlprint>(u"DruckenExecute"_s, [&](TF_dlprint& dialog) {
    EXPECT_EQ(State(dialog), u"4 Karten auf eine Seite"_s);
    Control<QCheckBox>(dialog, u"CheckBoxNavigation"_s).setChecked(true);
    EXPECT_EQ(State(dialog), u"5 Karten auf eine Seite"_s);
    EXPECT_EQ(choose(dialog, CardChoice::Due), u"eine Karte auf eine Seite"_s);
    EXPECT_FALSE(offers(dialog, CardChoice::Found) || offers(dialog, CardChoice::Marked) ||
                 offers(dialog, CardChoice::Shown));
  });
  clock.now = 0;
  // It begins with what was chosen the last time.
  Drive<TF_dlprint>(u"DruckenExecute"_s, [&](TF_dlprint& dialog) {
    EXPECT_EQ(State(dialog), u"0 Karten"_s);
    QTest::keyClick(&Box(dialog, u"ComboBoxForm"), Qt::Key_End, Qt::ControlModifier);  // to the last page of none
    EXPECT_FALSE(Control<QPushButton>(dialog, u"BitBtnDrucken"_s).isEnabled());
    EXPECT_EQ(choose(dialog, CardChoice::All), u"5 Karten auf eine Seite"_s);
  });
  program.OpenSearch();
  TF_wned& editor = *OpenWindows<TF_wned>().at(0);
  TF_wnsuch& search = *OpenWindows<TF_wnsuch>().at(0);
  Control<QLineEdit>(search, u"EditString1"_s).setText(u"Start"_s);
  Press(search, u"BitBtnStart"_s);
  search.close();
  program.OpenTable();
  TF_wntab& table = *OpenWindows<TF_wntab>().at(0);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&table));
  Control<QTableView>(table, u"StringGridTab"_s).selectRow(0);
  QTest::keyClick(&Control<QTableView>(table, u"StringGridTab"_s), Qt::Key_Down, Qt::ShiftModifier);
  DriveDialog<TF_dlprint>([&] { QTest::keyClick(&table, Qt::Key_P, Qt::ControlModifier); },
                          [&](TF_dlprint& dialog) {
                            EXPECT_EQ(dialog.parentWidget(), &table);
                            EXPECT_EQ(Box(dialog, u"ComboBoxKarten").currentText(), u"Markierte Karten"_s);
                            EXPECT_EQ(State(dialog), u"2 Karten auf eine Seite"_s);
                            EXPECT_EQ(choose(dialog, CardChoice::Found), u"eine Karte auf eine Seite"_s);
                            EXPECT_EQ(choose(dialog, CardChoice::Shown), u"eine Karte auf eine Seite"_s);
                          });
  table.close();
  // Those marked for deletion are not printed, and stay all the same.
  (void)program.file().deletion_marks().Exchange({2, 3});
  Drive<TF_dlprint>(u"DruckenExecute"_s, [&](TF_dlprint& dialog) {
    // Chosen last was what there is not now.
    EXPECT_EQ(State(dialog), u"3 Karten auf eine Seite"_s);
    EXPECT_EQ(program.file().CardCount(), 5);
  });
  editor.close();
}

TEST_F(PrintDialog, LeafsByKeysWhereverTheFocusIs) {
  Open(Numbered(60, NewCard));
  InLetters(1.5, [&] {
    Drive<TF_dlprint>(u"DruckenExecute"_s, [&](TF_dlprint& dialog) {
      Box(dialog, u"ComboBoxForm").setCurrentIndex(1);
      EXPECT_EQ(State(dialog), u"60 Karten auf 16 Seiten"_s);
      ExpectWholeLabels(dialog);
      EXPECT_LE(dialog.minimumSizeHint().width(), 1024);
      EXPECT_LE(dialog.minimumSizeHint().height(), 660);
      auto& page = Control<PageView>(dialog, u"Blatt"_s);
      const std::tuple<Qt::Key, Qt::KeyboardModifiers, int> kKeys[] = {{Qt::Key_PageDown, Qt::NoModifier, 1},
                                                                       {Qt::Key_PageUp, Qt::NoModifier, 0},
                                                                       {Qt::Key_PageUp, Qt::NoModifier, 0},
                                                                       {Qt::Key_End, Qt::ControlModifier, 15},
                                                                       {Qt::Key_Home, Qt::ControlModifier, 0}};
      auto& size = Control<QSpinBox>(dialog, u"SpinBoxSchrift"_s);
      for (QWidget* focus : std::initializer_list<QWidget*>{&Box(dialog, u"ComboBoxForm"), &size}) {
        focus->setFocus();
        for (const auto& [key, with, shown] : kKeys) {
          // A field to type in has its own use for the ends.
          if (with != Qt::NoModifier && qobject_cast<QSpinBox*>(focus) != nullptr) continue;
          QTest::keyClick(focus, key, with);
          EXPECT_EQ(page.page(), shown) << key;
          EXPECT_EQ(Control<QLabel>(dialog, u"LabelSeite"_s).text().endsWith(u"Rückseiten"_s), shown % 2 == 1);
        }
      }
      EXPECT_EQ(Box(dialog, u"ComboBoxForm").currentIndex(), 1);
      // A page as wide as the window is read to its end first.
      Control<QCheckBox>(dialog, u"CheckBoxBreit"_s).setChecked(true);
      QApplication::processEvents();
      const QScrollBar& bar = *Control<QScrollArea>(dialog, u"Rahmen"_s).verticalScrollBar();
      ASSERT_GT(bar.maximum(), 0);
      for (const auto& [key, until] : {std::pair(Qt::Key_PageDown, 1), {Qt::Key_PageUp, 0}}) {
        for (int i = 0; i < 30 && page.page() != until; ++i) QTest::keyClick(&size, key);
        EXPECT_EQ(bar.value(), until == 1 ? 0 : bar.maximum());
      }
      QTest::keyClick(&size, Qt::Key_PageUp);
      EXPECT_LT(bar.value(), bar.maximum());
    });
  });
}

TEST_F(PrintDialog, OffersAPdfWhereThereIsNoPrinter) {
  if (!QPrinterInfo::availablePrinterNames().isEmpty()) GTEST_SKIP() << "there is a printer";
  const TemporaryFolder folder;
  Open(kCards);
  const auto print = [](TF_dlprint& dialog) {
    Press(dialog, u"BitBtnDrucken"_s);
    return State(dialog);
  };
  Drive<TF_dlprint>(u"DruckenExecute"_s, [&](TF_dlprint& dialog) {
    messages.answers = {Answer::Yes, Answer::No};
    messages.files = {FromPath(folder.path() / "a")};
    EXPECT_EQ(print(dialog), u"Gespeichert: a.pdf"_s);
    EXPECT_EQ(messages.asked.size(), 1);
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "a.pdf"));
    // The name is asked about when its ending made it that of another file.
    messages.asked.clear();
    messages.files = {FromPath(folder.path() / "a")};
    QTest::keyClick(&dialog, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(messages.asked.size(), 1);
    messages.files = {FromPath(folder.path() / "missing" / "b.pdf")};
    QTest::keyClick(&dialog, Qt::Key_S, Qt::ControlModifier);
    ASSERT_EQ(messages.errors.size(), 1);
    EXPECT_EQ(State(dialog), u"4 Karten auf eine Seite"_s);
  });
}

}  // namespace
}  // namespace tessaro
