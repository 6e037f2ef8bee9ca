#include <QTextEdit>

#include "exchange/dldel.h"
#include "exchange/dlexp.h"
#include "exchange/dlimp.h"
#include "exchange/dlupd.h"
#include "settings/side_settings.h"
#include "tests/support/test_cards.h"
#include "tests/support/window_test.h"

namespace tessaro {
namespace {

// A dialog over an open card file, without the rest of the program.
class ExchangeDialogs : public WindowTest {
 protected:
  void SetUp() override {
    OpenTestFile(disk, file,
                 {{.id = "000001", .question = "Haus", .answer = "house"},
                  {.id = "000002", .question = "Baum", .answer = "tree"}});
  }
  template <typename Dialog>
  void Show() {
    dialog = std::make_unique<Dialog>(ExchangeTies{.file = file,
                                                   .disk = disk,
                                                   .clock = clock,
                                                   .messages = messages,
                                                   .settings = settings,
                                                   .folder = "/texts",
                                                   .keep_state = [this](QWidget*) { return ++kept, may_go_on; },
                                                   .renumber = [this](QWidget*) { ++renumbered; },
                                                   .load = [this](const auto& path) { opened = path; },
                                                   .open = [this](const auto& path) { opened = path; }});
    dialog->show();
    dialog->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
  }
  QWidget& Tested() override { return *dialog; }
  QLineEdit& Line(const QString& name) { return Find<QLineEdit>(name); }
  void Type(const QString& name, const QString& text) {
    Line(name).clear();
    QTest::keyClicks(&Line(name), text);
  }
  QString Status(const QString& name) { return Find<QStatusBar>(name).currentMessage(); }
  void Choose(const QString& path, const QString& button = u"BitBtnDatei"_s) {
    messages.files.push_back(path);
    Click(button);
  }
  void Press(Qt::Key key) { QTest::keyClick(dialog.get(), key); }

  CardFile file{disk};
  IniFile settings;
  std::unique_ptr<QDialog> dialog;
  int kept = 0;
  int renumbered = 0;
  bool may_go_on = true;
  std::filesystem::path opened;
};

TEST_F(ExchangeDialogs, SeparatorShowsAsCharacterAndAsCode) {
  Show<TF_dlexp>();
  EXPECT_EQ(Line(u"EditVH"_s).text() + Line(u"EditVH10"_s).text(), u"¤-92"_s);
  EXPECT_EQ(Line(u"EditQuote"_s).text() + Line(u"EditQuote2"_s).text(), u"¦180"_s);
  Type(u"EditVH10"_s, u"59"_s);
  EXPECT_EQ(Line(u"EditVH"_s).text(), u";"_s);
  Type(u"EditVH10"_s, u"0"_s);
  EXPECT_EQ(Line(u"EditVH"_s).text(), QString());
  Type(u"EditVH"_s, u"|"_s);
  EXPECT_EQ(Line(u"EditVH10"_s).text(), u"124"_s);
  EXPECT_TRUE(Text(u"WarnungKK"_s).contains(u"dasselbe"_s) && Text(u"WarnungVH"_s).isEmpty());
  Line(u"EditVH"_s).clear();
  QTest::sendKeyEvent(QTest::Press, &Line(u"EditVH"_s), Qt::Key_unknown, u"€"_s, Qt::NoModifier);
  EXPECT_EQ(Line(u"EditVH10"_s).text(), u"-128"_s);
  Type(u"EditVH"_s, u"w"_s);
  EXPECT_TRUE(Find<QLabel>(u"WarnungVH"_s).isVisible() && !Find<QLabel>(u"WarnungKK"_s).isVisible());
}

TEST_F(ExchangeDialogs, ExportWritesTheChosenFileInEitherLayout) {
  Show<TF_dlexp>();
  EXPECT_FALSE(Find<QPushButton>(u"BitBtnZeile"_s).isEnabled());
  Choose(u"/texts/karten"_s);
  EXPECT_EQ(Line(u"EditDatei"_s).text(), u"/texts/karten.txt"_s);
  const uint64_t used = (uint64_t{1} << 40) - *disk.FreeBytes({});
  for (const uint64_t free : {2400U, 2399U}) {
    disk.set_capacity(used + free);
    Choose(u"/texts/karten"_s);
    EXPECT_EQ(Status(u"StatusBarExport"_s), u"Laufwerk /:  %1 Bytes frei, Datei: 2400 Bytes"_s.arg(free));
    EXPECT_EQ(messages.errors.size(), free < 2400 ? 1 : 0);
  }
  disk.set_capacity(uint64_t{1} << 40);
  Click(u"BitBtnNormal"_s);
  EXPECT_EQ(disk.Content("/texts/karten.txt"), "\xA4\n|\nHaus\xA4\nhouse|\nBaum\xA4\ntree|\n");
  EXPECT_EQ(Status(u"StatusBarExport"_s), u"3 Karten exportiert"_s);
  Type(u"EditVH"_s, u";"_s);
  Click(u"BitBtnZeile"_s);
  EXPECT_TRUE(disk.Content("/texts/karten.txt")->starts_with("@@;;;;;;;\n000001;00;Haus;house;"));
  EXPECT_EQ(renumbered, 2);
  Type(u"EditVH"_s, u"a"_s);
  Click(u"BitBtnZeile"_s);
  EXPECT_EQ(messages.errors.last(), u"Ungeeignetes Trennzeichen a auf Karte, Zeile 1"_s);
  Type(u"EditVH10"_s, u"0"_s);
  Click(u"BitBtnZeile"_s);
  EXPECT_EQ(Status(u"StatusBarExport"_s), u"Eingabe fehlt"_s);
  EXPECT_TRUE(Find<QPushButton>(u"BitBtnZeile"_s).isEnabled());
}

TEST_F(ExchangeDialogs, ExportNeverWritesOverTheOpenCardFile) {
  disk.Put("/deck/x.txt.mlb", FileText({{.id = "000001"}}));
  ASSERT_EQ(file.Open("/deck/x.txt.mlb").result, OpenResult::Opened);
  Show<TF_dlexp>();
  Choose(u"/deck/x.txt.mlb"_s);
  EXPECT_EQ(messages.errors.size(), 1);
  EXPECT_FALSE(Find<QPushButton>(u"BitBtnNormal"_s).isEnabled());
}

TEST_F(ExchangeDialogs, ImportShowsWhatWouldComeAndBringsItIn) {
  disk.Put("/texts/woerter.txt", "\xEF\xBB\xBFHund\tdog\r\nB\xC3\xA4r\tbear\r\n\xC5\x91\todd\r\n");
  Show<TF_dlimp>();
  Choose(u"/texts/woerter.txt"_s);
  EXPECT_TRUE(Text(u"LabelErkannt"_s).contains(u"3 von 3"_s)) << Text(u"LabelErkannt"_s).toStdString();
  Click(u"ButtonErkannt"_s);
  auto& list = Find<QTableWidget>(u"ListeKarten"_s);
  ASSERT_EQ(list.rowCount(), 3);
  EXPECT_EQ(list.item(1, 0)->text() + list.item(2, 0)->text(), u"Bäro"_s);
  EXPECT_TRUE(Text(u"LabelVorschau"_s).contains(u"UTF-8 mit Marke"_s));
  // One character cannot be kept as it is, and nobody has agreed yet.
  Click(u"BitBtnVTrain"_s);
  EXPECT_EQ(file.CardCount(), 2);
  EXPECT_EQ(kept, 0);
  Find<QCheckBox>(u"CheckBoxErsetzen"_s).setChecked(true);
  Find<QCheckBox>(u"CheckBoxTausch"_s).setChecked(true);
  Click(u"BitBtnVTrain"_s);
  EXPECT_EQ(file.CardCount(), 5);
  EXPECT_EQ(file.cards().Peek(file.columns().question, 4), "dog");
  EXPECT_EQ(kept, 1);
  EXPECT_EQ(Status(u"StatusBarImport"_s), u"3 Karten importiert"_s);
  EXPECT_FALSE(Find<QPushButton>(u"BitBtnVTrain"_s).isEnabled()) << "once is enough";
}

TEST_F(ExchangeDialogs, SidesInOtherScriptsGoOutAndComeBack) {
  const SideCodePages pages = {CodePage(), CodePage(CharacterSet::Cyrillic)};
  WriteCodePages(pages, file.settings());
  disk.Put("/texts/woerter.txt", "Straße\tулица\nBär\tмедведь ő\n");
  Show<TF_dlimp>();
  Choose(u"/texts/woerter.txt"_s);
  Click(u"ButtonErkannt"_s);
  EXPECT_EQ(Find<QTableWidget>(u"ListeKarten"_s).item(0, 1)->text(), u"улица"_s);
  EXPECT_TRUE(Find<QCheckBox>(u"CheckBoxErsetzen"_s).isVisible()) << "one letter is of neither script";
  messages.answers = {Answer::Yes};
  Click(u"BitBtnVTrain"_s);
  ASSERT_EQ(file.CardCount(), 4);
  EXPECT_EQ(file.cards().Peek(file.columns().question, 4), "Straße"_cp);
  EXPECT_EQ(file.cards().Peek(file.columns().answer, 4), "\xF3\xEB\xE8\xF6\xE0");
  Show<TF_dlexp>();
  Choose(u"/texts/karten.txt"_s);
  Find<QCheckBox>(u"CheckBoxUtf8"_s).setChecked(true);
  Click(u"BitBtnNormal"_s);
  EXPECT_NE(disk.Content("/texts/karten.txt")->find("Straße¤\nулица|\nBär¤\nмедведь o|\n"), std::string::npos);
}

TEST_F(ExchangeDialogs, TextsAreWholeInLargeLettersWithAWarningToo) {
  InLetters(1.5, [this] {
    Show<TF_dlexp>();
    Type(u"EditVH"_s, u"n"_s);
    QTest::qWait(20);
    ExpectWholeLabels(*dialog);
  });
}

TEST_F(ExchangeDialogs, ImportThatCannotBeReadSaysSoAndChangesNothing) {
  disk.Put("/texts/falsch.txt", std::string("a¤b|c|"_cp));
  Show<TF_dlimp>();
  Choose(u"/texts/fehlt.txt"_s);
  EXPECT_EQ(messages.errors.takeFirst(), u"\nDatei kann nicht\ngeöffnet werden"_s);
  Choose(u"/texts/falsch"_s);
  Click(u"BitBtnVTrain"_s);
  EXPECT_EQ(messages.errors.takeFirst(), u"Falsche(s) Trennzeichen in Karte 1"_s);
  disk.Put("/texts/falsch.txt", std::string("a¤b|"_cp));
  Click(u"BitBtnVTrain"_s);
  EXPECT_EQ(messages.errors.takeFirst(), u"Formatfehler"_s);
  Type(u"EditVH10"_s, u"0"_s);
  Click(u"BitBtnVTrain"_s);
  EXPECT_EQ(Status(u"StatusBarImport"_s), u"Eingabe fehlt"_s);
  EXPECT_EQ(file.CardCount(), 2);
}

TEST_F(ExchangeDialogs, ImportSaysBeforehandWhatAFileWouldBring) {
  const std::tuple<std::string, int, QString> cases[] = {
      {std::string("\xA4\n|\na\xA4\nb|\nc\xA4\nd\0", 15), 0,
       u"Die erste ist leer und fällt weg. Zeichensatz: Windows-1252. Nullzeichen, die wegfallen: 1."_s},
      {"a\xA4\nb|\nc\xA4\nd", 0, u"Es kämen 2 Karten, hinter die Karten der offenen Kartei. Der letzten fehlt das"_s},
      {"a\xA4\nb|\nxyz", 0,
       u"Es käme eine Karte, hinter die Karten der offenen Kartei. Hinter der letzten stehen noch 3 "_s},
      {"a\\\\b\xA4\nb|\n", 0, u"Kartei. Backslashes stehen doppelt, wie der Textexport sie schreibt. Zeichensatz"_s},
      {"a\xA4\nb|\nc|\n", 0, u"Die Prüfung hielte an: Falsche(s) Trennzeichen in Karte 1. Davor stehen"_s},
      {"000007¤0¤f¤g¤1¤0¤wf¤0\nrubbish\n", 1,
       u"Kartei. Nicht passende Zeilen: 1 von 2, die erste ist Zeile 2: nicht"_s}};
  Show<TF_dlimp>();
  for (const auto& [text, page, said] : cases) {
    disk.Put("/texts/t.txt", text);
    Choose(u"/texts/t.txt"_s);
    EXPECT_EQ(Find<QTabBar>(u"TabBarVorschau"_s).currentIndex(), page);
    EXPECT_TRUE(Text(u"LabelVorschau"_s).contains(said)) << Text(u"LabelVorschau"_s).toStdString();
  }
  disk.Put("/texts/t.txt", "a\\\\\xA4\nb|\n");
  Choose(u"/texts/t.txt"_s);
  const auto first = [this] {
    const auto& list = Find<QTableWidget>(u"ListeKarten"_s);
    return list.item(0, 0)->text() + list.item(0, 1)->text();
  };
  EXPECT_EQ(first(), u"a\\\\b"_s);
  for (const auto& [box, shown] : {std::pair(u"CheckBoxPaare"_s, u"a\\b"_s), {u"CheckBoxTausch"_s, u"ba\\"_s}}) {
    Find<QCheckBox>(box).click();
    EXPECT_EQ(first(), shown);
  }
  for (const QString& topic : {u"-1"_s, u"20"_s, u"x"_s, u""_s, u"19"_s}) {
    Find<QLineEdit>(u"EditThemaNr"_s).setText(topic);
    Click(u"BitBtnVTrain"_s);
    EXPECT_EQ(Status(u"StatusBarImport"_s).startsWith(u"Eingabe fehlt"_s), topic != u"19"_s) << topic.toStdString();
  }
  EXPECT_EQ(file.cards().Peek(file.columns().topic, 4), "19");
  EXPECT_EQ(file.cards().Peek(file.columns().answer, 4), "a\\");
}

TEST_F(ExchangeDialogs, TableReplacesTheCardFileOnTheDiskAndIsLoadedOnRequest) {
  disk.Put("/texts/t.csv", "000007;0;f;g;1;0;wf;0\nrubbish\n");
  Show<TF_dlimp>();
  Choose(u"/texts/t.csv"_s);
  EXPECT_FALSE(Find<QPushButton>(u"ButtonErkannt"_s).isVisible());
  Click(u"BitBtnExcel"_s);
  EXPECT_EQ(kept, 0);
  Type(u"EditVH"_s, u";"_s);
  messages.answers = {Answer::Yes, Answer::No};
  Click(u"BitBtnExcel"_s);
  EXPECT_TRUE(messages.asked.last().contains(u"Zeile 2: nicht acht Felder"_s));
  EXPECT_EQ(kept, 0);
  messages.answers = {Answer::Yes, Answer::Yes, Answer::Yes};
  Click(u"BitBtnExcel"_s);
  EXPECT_EQ(kept, 1);
  EXPECT_EQ(file.CardCount(), 2);
  EXPECT_TRUE(messages.shown.last().startsWith(u"Aktivieren des Importes"_s));
  EXPECT_EQ(opened, kTestFile);
  EXPECT_NE(disk.Content(kTestFile)->find("000007"), std::string::npos);
}

TEST_F(ExchangeDialogs, StatisticsAreDeletedAfterAQuestionAndACopy) {
  Show<TF_dldel>();
  EXPECT_EQ(Find<QComboBox>(u"ComboBoxLen"_s).currentText(), u"3"_s);
  Click(u"BitBtnDelAll"_s);
  EXPECT_FALSE(file.changed());
  may_go_on = false;
  messages.answers = {Answer::Yes};
  Click(u"BitBtnDelAll"_s);
  EXPECT_FALSE(file.changed());
  may_go_on = true;
  messages.answers = {Answer::Yes, Answer::Yes};
  Click(u"BitBtnDelAll"_s);
  EXPECT_EQ(Status(u"StatusBarDelStat"_s), u"2 Statistiken gelöscht"_s);
  EXPECT_EQ(file.cards().Peek(file.columns().score, 3), "000000120");
  Click(u"BitBtnDelPart"_s);
  EXPECT_EQ(Status(u"StatusBarDelStat"_s), u"2 Statistiken bereinigt"_s);
}

TEST_F(ExchangeDialogs, ComparisonIsDoneByKeysAlone) {
  disk.Put("/deck/quelle.mlb", FileText({{.id = "000001", .question = "Haus", .answer = "home"},
                                         {.id = "000002", .question = "Hund", .answer = "dog"},
                                         {.id = "000003", .question = "Baum", .answer = "a tree"}}));
  Show<TF_dlupd>();
  EXPECT_EQ(Find<QComboBox>(u"ComboBoxProzent"_s).currentText() + Find<QComboBox>(u"ComboBoxStrLen"_s).itemText(4),
            u"50> 4"_s);
  Choose(u"/deck/quelle.mlb"_s, u"BitBtnQuelle"_s);
  Press(Qt::Key_F5);
  auto& keep = Find<QPushButton>(u"BitBtnBeibehalten"_s);
  ASSERT_TRUE(QTest::qWaitFor([&] { return keep.isEnabled(); }));
  EXPECT_TRUE(Text(u"EditMeldung"_s).contains(u"unlogische Variante"_s));
  EXPECT_EQ(Status(u"StatusBarUpd"_s) + Text(u"LabelStand"_s),
            u"Position Quelle: 1, Ziel: 1"
            u"Quellkarte 1 von 3. Paare: 1, Doubletten: 0, beibehalten: 0, markiert: 0, übernommen: 0."_s);
  EXPECT_EQ(Find<QTextEdit>(u"RichEditKHQ"_s).toPlainText(), u"home"_s);
  // The answers differ, the questions do not.
  EXPECT_EQ(Find<QTextEdit>(u"RichEditKHQ"_s).extraSelections().size(), 1);
  EXPECT_EQ(Find<QTextEdit>(u"RichEditKVQ"_s).extraSelections().size(), 0);
  Press(Qt::Key_F9);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Status(u"StatusBarUpd"_s) == u"Position Quelle: 3, Ziel: 2"_s; }));
  Press(Qt::Key_F7);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Text(u"EditMeldung"_s).startsWith(u"Bearbeitung beendet"_s); }));
  EXPECT_EQ(file.cards().Peek(file.columns().question, 2), "<+++>Haus");
  EXPECT_EQ(file.cards().Peek(file.columns().answer, 3), "a tree");
  EXPECT_EQ(file.CardCount(), 4);
  messages.answers = {Answer::Yes};
  EXPECT_EQ(dialog->focusWidget()->objectName(), u"BitBtnDelete"_s) << "what comes next";
  QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
  EXPECT_EQ(file.CardCount(), 4) << "who went on with the return key presses it once too often";
  QTest::keyClick(dialog->focusWidget(), Qt::Key_Space);
  EXPECT_EQ(file.CardCount(), 3);
  EXPECT_TRUE(messages.shown.last().startsWith(u"1 Doubletten gelöscht"_s) && !dialog->isVisible());
}

TEST_F(ExchangeDialogs, ComparisonThatWasLeftGoesOnWhereItWas) {
  disk.Put("/alt/quelle.mlb",
           FileText({{.id = "000001", .question = "neu<a href=\"000009\">", .answer = "<img src=\"b.png\">"},
                     {.id = "000002", .question = "Haus", .answer = "home"}}));
  disk.Put("/alt/b.png", "x");
  Show<TF_dlupd>();
  Choose(u"/alt/quelle.mlb"_s, u"BitBtnQuelle"_s);
  Press(Qt::Key_F5);
  auto& keep = Find<QPushButton>(u"BitBtnBeibehalten"_s);
  ASSERT_TRUE(QTest::qWaitFor([&] { return keep.isEnabled(); }));
  messages.answers = {Answer::Yes};
  Press(Qt::Key_Escape);
  EXPECT_TRUE(file.CardCount() == 3 && disk.Exists("/deck/b.png") && !dialog->isVisible());
  EXPECT_EQ(messages.shown.last().section(u'\n', 0, 1),
            u"Eine Karte übernommen.\nLinks, die noch zu Nummern der Quellkartei führen: 1."_s);
  Show<TF_dlupd>();
  messages.answers = {Answer::Yes};
  QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
  EXPECT_EQ(messages.asked.last(), u"\nMit letzter Quellkartei u.\nQuell-Position fortfahren?"_s);
  QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
  ASSERT_TRUE(QTest::qWaitFor([&] { return Find<QPushButton>(u"BitBtnBeibehalten"_s).isEnabled(); }));
  EXPECT_EQ(Status(u"StatusBarUpd"_s), u"Position Quelle: 2, Ziel: 1"_s);
  EXPECT_EQ(file.CardCount(), 3);
  // Doubled cards are removed while a pair is shown, whose texts were changed.
  QTest::keyClicks(&Find<QTextEdit>(u"RichEditKHZ"_s), u"my "_s);
  messages.answers = {Answer::Yes};
  Click(u"BitBtnDelete"_s);
  EXPECT_EQ(messages.asked.last(), u"Die geänderten Texte übernehmen?"_s);
  EXPECT_EQ(messages.shown.last(), u"0 Doubletten gelöscht"_s);
  EXPECT_EQ(file.cards().Peek(file.columns().answer, 2), "my house");
  EXPECT_FALSE(dialog->isVisible());
}

}  // namespace
}  // namespace tessaro
