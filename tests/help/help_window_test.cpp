#include <QMessageBox>
#include <QPrintDialog>

#include "app/check_texts.h"
#include "app/dlopt.h"
#include "exchange/compare_texts.h"
#include "help/help_desk.h"
#include "help/side_print.h"
#include "help/wnhelp.h"
#include "learn/dllernkeys.h"
#include "learn/hot_key_edit.h"
#include "learn/lern_texts.h"
#include "tests/app/main_window_fixture.h"
#include "widgets/card_pages.h"

namespace tessaro {
namespace {

TF_wnhelp* ShownHelp() {
  return OpenWindows<TF_wnhelp>().value(0);
}

void PressF1(QWidget& place) {
  QTest::keyClick(&place, Qt::Key_F1);
}

class HelpWindow : public MainWindow {
 protected:
  HelpWindow() : MainWindow("", "/help/Hilfe.mlb") { disk.Put("/help/Hilfe.mlb", *ReadFile(RealDisk(), TESSARO_HELP)); }
  // The card shown, by the place that it is the help for.
  static bool Shows(const char* place) {
    TF_wnhelp* help = ShownHelp();
    return help != nullptr && help->shown_card() != 0 &&
           help->shown_card() == help->deck().CardOfPlace(std::vector<std::string>{place});
  }
};

TEST_F(HelpWindow, OpensForTheWindowAndTheCardFileStaysAsItIs) {
  Open(kCards);
  window().activateWindow();
  Trigger(u"HilfeExecute"_s);
  EXPECT_TRUE(Shows("TF_wnmain"));
  EXPECT_EQ(CardsPath(), kTestFile);
  EXPECT_EQ(disk.FileNames("/help"), std::vector<std::string>{"Hilfe.mlb"});
  EXPECT_TRUE(messages.errors.isEmpty());
}

TEST_F(HelpWindow, CanBeUsedBesideADialogAndOutlivesIt) {
  DriveDialog<TF_dlopt>([this] { program.ShowOptions(); },
                        [](TF_dlopt& options) {
                          PressF1(*options.findChild<QWidget*>(u"BitBtnOK"_s));
                          ASSERT_TRUE(Shows("TF_dlopt") || Shows("TabKarten"));
                          TF_wnhelp& help = *ShownHelp();
                          EXPECT_EQ(help.windowHandle()->transientParent(), options.windowHandle());
                          Press(help, u"BtHome"_s);
                          EXPECT_EQ(help.shown_card(), help.deck().StartCard());
                          options.findChild<QTabWidget*>(u"Seiten"_s)->setCurrentIndex(1);
                          PressF1(*options.findChild<QTabWidget*>(u"Seiten"_s));
                          EXPECT_TRUE(Shows("TabLernen"));
                        });
  ASSERT_NE(ShownHelp(), nullptr);
  PressF1(window());
  EXPECT_TRUE(Shows("TF_wnmain"));
  EXPECT_EQ(ShownHelp()->windowHandle()->transientParent(), nullptr);
}

TEST_F(HelpWindow, LeavesF1ToAFieldThatTakesKeys) {
  TF_dllernkeys dialog(program.settings().ini, &window());
  dialog.show();
  PressF1(*dialog.findChild<HotKeyEdit*>());
  EXPECT_EQ(ShownHelp(), nullptr);
  PressF1(dialog);
  EXPECT_TRUE(Shows("TF_dllernkeys"));
}

TEST_F(HelpWindow, ExplainsAMessageThatRefersToIt) {
  BoxMessages boxes;
  DriveDialog<QMessageBox>([&] { boxes.Error(&window(), u"\nFehler Speichern Kartei.\nSiehe Hilfeindex!\n\nx.mlb"_s); },
                           [](QMessageBox& box) {
                             for (QAbstractButton* button : box.buttons()) {
                               if (box.buttonRole(button) == QMessageBox::HelpRole) button->click();
                             }
                             EXPECT_TRUE(box.isVisible());
                             ASSERT_NE(ShownHelp(), nullptr);
                             const HelpDeck& deck = ShownHelp()->deck();
                             EXPECT_EQ(ShownHelp()->shown_card(), deck.CardOfMessage("Fehler Speichern Kartei"));
                             EXPECT_NE(ShownHelp()->shown_card(), 0);
                           });
}

TEST(HelpOfMessages, IsTheCardOfEachThatNeedsOne) {
  const std::optional<HelpDeck> deck = HelpDeck::Read(RealDisk(), TESSARO_HELP);
  ASSERT_TRUE(deck);
  const auto refused = [](OpenResult result) {
    OpenReport report;
    report.result = result;
    return RefusalText(report, "x.mlb");
  };
  const std::pair<QString, QString> kCases[] = {
      {FailureText(SaveResult::CardsFailed, "x.mlb"), u"Speichern geht nicht"_s},
      {FailureText(SaveResult::SettingsFailed, "x.mlb"), u"Speichern geht nicht"_s},
      {FailureText(SaveResult::ReadOnly, "x.mlb"), u"Nur zum Lesen geöffnet"_s},
      {NoLockText("x.mlb"), u"Nur zum Lesen geöffnet"_s},
      {DefectText(IndexDefect::LearnIndex), u"Index fehlt oder passt nicht"_s},
      {DefectText(IndexDefect::LinkIndex), u"Index fehlt oder passt nicht"_s},
      {refused(OpenResult::CannotLoad), u"Kartei lässt sich nicht laden"_s},
      {LoadText(SourceLoad::CannotLoad), u"Kartei lässt sich nicht laden"_s},
      {MissingText("x.mlb", "x.ml~", 0), u"Kartei lässt sich nicht laden"_s},
      {refused(OpenResult::Unusable), u"Alten Stand zurückholen"_s},
      {refused(OpenResult::InUse), u"Kartei ist schon geöffnet"_s},
      {UnsavedText({.cards = 1, .first = 1, .last = 2}), u"Nach einem Absturz"_s},
      {FutureAnswersText(1, u"heute"_s), u"Uhr geht falsch"_s},
      {MessageText(RunMessage::StandardExhausted, 0), u"Nichts mehr zu lernen?"_s},
      {MessageText(RunMessage::EndOfFile, 0), u"Nichts mehr zu lernen?"_s},
      {MessageText(RunMessage::BoxDone, 0), u"Nichts mehr zu lernen?"_s},
      {MessageText(RunMessage::CardTimeInFuture, 0), u"Uhr geht falsch"_s},
      {MessageText(RunMessage::IndexFault, 7), u"Index fehlt oder passt nicht"_s},
      {RefusalText(AnswerRefusal::TypingOpen), QString()},
  };
  for (const auto& [message, title] : kCases) {
    const HelpCard* card = deck->Card(deck->CardOfMessage(*ToBytes(message)));
    EXPECT_EQ(card == nullptr ? QString() : FromBytes(card->title), title) << message.toStdString();
  }
}

TEST_F(HelpWindow, SearchesGoesOnAndBackByKeys) {
  program.help().Open(window());
  TF_wnhelp& help = *ShownHelp();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&help));
  const int first = help.shown_card();
  QTest::keyClick(&help, Qt::Key_F, Qt::ControlModifier);
  auto& search = Control<QLineEdit>(help, u"EditSuche"_s);
  auto& list = Control<QListWidget>(help, u"ListKarten"_s);
  QTest::keyClicks(&search, u"leitner"_s);
  ASSERT_GT(list.count(), 1);
  const int found = help.deck().Search("leitner").front();
  ASSERT_NE(found, first);
  QTest::keyClick(&search, Qt::Key_Return);
  EXPECT_EQ(help.shown_card(), found);
  QTest::keyClick(&help, Qt::Key_Left, Qt::AltModifier);
  EXPECT_EQ(help.shown_card(), first);
  EXPECT_FALSE(Control<QToolButton>(help, u"BtBack"_s).isEnabled());
  search.setText(u"\u0416"_s);
  EXPECT_EQ(list.count(), 1);
  QTest::keyClick(&search, Qt::Key_Return);
  EXPECT_EQ(help.shown_card(), first);
  QTest::keyClick(&search, Qt::Key_Escape);
  EXPECT_EQ(ShownHelp(), nullptr);
}

TEST_F(HelpWindow, PrintsTheShownCardOrSaysThatItCannot) {
  const QTemporaryDir folder;
  program.help().Open(window());
  for (const QString& path : {folder.filePath(u"card.pdf"_s), folder.filePath(u"missing/card.pdf"_s)}) {
    const auto print = [&](QPrintDialog& dialog) {
      dialog.printer()->setOutputFileName(path);
      dialog.done(QDialog::Accepted);
    };
    DriveDialog<QPrintDialog>([] { Press(*ShownHelp(), u"BtPrint"_s); }, print);
    EXPECT_EQ(QFileInfo::exists(path), messages.errors.isEmpty()) << path.toStdString();
  }
  EXPECT_EQ(messages.errors.size(), 1);
}

TEST_F(HelpWindow, SaysWhereItShouldBeWhenItIsMissingOrDamaged) {
  disk.Put("/help/Hilfe.mlb", "x");
  PressF1(window());
  EXPECT_EQ(ShownHelp(), nullptr);
  ASSERT_EQ(messages.errors.size(), 1);
  EXPECT_TRUE(messages.errors[0].contains(u"/help/Hilfe.mlb"_s));
  // Put right it is there without a new start.
  disk.Put("/help/Hilfe.mlb", *ReadFile(RealDisk(), TESSARO_HELP));
  PressF1(window());
  EXPECT_TRUE(Shows("TF_wnmain"));
}

TEST(SidePrint, GoesOnOnFurtherSheets) {
  const QTemporaryDir folder;
  const QString path = folder.filePath(u"side.pdf"_s);
  std::string side;
  for (int line = 0; line < 200; ++line) side += "line " + std::to_string(line) + "<br>";
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFileName(path);
  ASSERT_TRUE(PrintSide(printer, side, QFont(u"DejaVu Sans"_s, 12)));
  const std::string pdf = *ReadFile(RealDisk(), ToPath(path));
  EXPECT_NE(pdf.find("/Count 5"), std::string::npos) << pdf.substr(0, 600);
}

}  // namespace
}  // namespace tessaro
