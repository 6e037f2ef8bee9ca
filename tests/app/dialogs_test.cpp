#include <QDialogButtonBox>
#include <QFileDialog>

#include "app/dlneu.h"
#include "app/dlopt.h"
#include "app/dlzeichen.h"
#include "edit/side_field.h"
#include "edit/wned.h"
#include "tests/app/main_window_fixture.h"
#include "tests/support/temporary_folder.h"

namespace tessaro {
namespace {

class Options : public testing::Test {
 protected:
  // Changes fields by their names and presses OK. True: the dialog took it.
  bool Set(const std::vector<std::pair<QString, QString>>& texts) {
    TF_dlopt dialog({program, &card_file, "/deck", {}}, messages);
    dialog.show();
    for (const auto& [name, text] : texts) Control<QLineEdit>(dialog, name).setText(text);
    Press(dialog, u"BitBtnOK"_s);
    wrong_page = Control<QTabWidget>(dialog, u"Seiten"_s).currentIndex();
    if (auto* note = dialog.findChild<QLabel*>(u"Hinweis"_s + texts[0].first)) wrong_note = note->text();
    return dialog.result() == QDialog::Accepted;
  }

  IniFile program;
  IniFile card_file;
  RecordedMessages messages;
  int wrong_page = 0;
  QString wrong_note;
};

TEST_F(Options, GoodValuesAreKeptAndUntouchedOnesAreNotWritten) {
  ASSERT_TRUE(Set({{u"Fehler"_s, u"2,5"_s}, {u"Anschlaege"_s, u" 180 "_s}, {u"GroesseV"_s, u"20"_s}}));
  EXPECT_EQ(program.Text(), "[ttrain]\nFehler=2.5\nAnschlaege=180\n");
  EXPECT_EQ(ReadSideSettings(card_file, SideName::Front).points, 20);
  EXPECT_EQ(ReadSideSettings(card_file, SideName::Back), SideSettings());
  ASSERT_TRUE(Set({{u"GroesseV"_s, u"14"_s}}));
  EXPECT_EQ(ReadSideSettings(card_file, SideName::Front), SideSettings());
}

TEST_F(Options, ACardFileMayBeginInAWayOfItsOwn) {
  TF_dlopt dialog({program, &card_file, "/deck", {}}, messages);
  Control<QComboBox>(dialog, u"KarteiMethode"_s).setCurrentIndex(2);
  Press(dialog, u"BitBtnOK"_s);
  EXPECT_EQ(card_file.Text(), "[START]\nMethode=2\n");
  EXPECT_EQ(program.Text(), "");
}

TEST_F(Options, WrongValueIsToldBesideItsFieldAndNothingIsTaken) {
  const std::tuple<QString, QString, int> cases[] = {
      {u"Fehler"_s, u"100,1"_s, 2},     {u"Fehler"_s, u"viel"_s, 2},
      {u"Anschlaege"_s, u"0"_s, 2},     {u"Anschlaege"_s, u"12.5"_s, 2},
      {u"Prozent"_s, u""_s, 2},         {u"Megabyte"_s, u"-1"_s, 4},
      {u"Textgroesse"_s, u"9999"_s, 5}, {u"Fach1"_s, u"1000"_s, 1},
      {u"GroesseH"_s, u"0"_s, 0},       {u"Megabyte"_s, u"99999999999999999999"_s, 4}};
  for (const auto& [field, text, page] : cases) {
    EXPECT_FALSE(Set({{field, text}, {u"Ordner"_s, u"Bilder"_s}})) << field.toStdString();
    EXPECT_EQ(wrong_page, page) << field.toStdString();
    EXPECT_TRUE(wrong_note.contains(u" bis "_s)) << wrong_note.toStdString();
  }
  EXPECT_EQ(program.Text() + card_file.Text(), "");
}

TEST_F(Options, PageGoesBackToItsStandardAndTheOthersStay) {
  program.Parse("[ttrain]\nFehler=50\nCursor=2\n[MEDIA]\nFolder=Bilder\n");
  keys::kBarBelow.Write(true, program);
  keys::kShowChoice.Write(true, program);
  TF_dlopt dialog({program, nullptr, {}, {}}, messages);
  dialog.show();
  EXPECT_EQ(Control<QComboBox>(dialog, u"Marke"_s).currentIndex(), 2);
  EXPECT_EQ(Control<QComboBox>(dialog, u"Leiste"_s).currentIndex(), 1);
  Control<QTabWidget>(dialog, u"Seiten"_s).setCurrentIndex(2);
  Press(dialog, u"BitBtnDefault"_s);
  EXPECT_EQ(Control<QLineEdit>(dialog, u"Fehler"_s).text(), u"5,0"_s);
  EXPECT_EQ(Control<QComboBox>(dialog, u"Marke"_s).currentIndex(), 0);
  EXPECT_EQ(Control<QLineEdit>(dialog, u"Ordner"_s).text(), u"Bilder"_s);
  EXPECT_FALSE(Control<QWidget>(dialog, u"GruppeV"_s).isEnabled()) << "no card file is open";
  EXPECT_FALSE(Control<QPushButton>(dialog, u"OrdnerOeffnen"_s).isEnabled());
  Control<QComboBox>(dialog, u"Antwortart"_s).setCurrentIndex(3);
  Press(dialog, u"BitBtnOK"_s);
  EXPECT_TRUE(keys::kShowTyping.Read(program) && !keys::kShowChoice.Read(program));
  EXPECT_EQ(keys::kErrorLimit.Read(program), 5.0);
}

TEST_F(Options, SoundOfErrorsCanBeHeardWhereItIs) {
  const TemporaryFolder folder;
  const QString sound = FromPath(folder.path() / "ton.wav");
  TF_dlopt dialog({program, &card_file, "/deck", folder.path()}, messages);
  EXPECT_TRUE(Control<QPushButton>(dialog, u"OrdnerOeffnen"_s).isEnabled()) << "of the dated copies";
  dialog.show();
  QSignalSpy heard(&dialog, &TF_dlopt::SoundWanted);
  auto& test = Control<QPushButton>(dialog, u"TonTest"_s);
  EXPECT_FALSE(test.isEnabled()) << "there is none";
  Control<QTabWidget>(dialog, u"Seiten"_s).setCurrentIndex(2);
  Control<QLineEdit>(dialog, u"Ton"_s).setText(sound);
  EXPECT_FALSE(test.isEnabled());
  EXPECT_EQ(Control<QLabel>(dialog, u"HinweisTon"_s).text(), u"Diese Datei gibt es nicht."_s);
  std::ofstream(folder.path() / "ton.wav") << "x";
  messages.files = {sound};
  Control<QLineEdit>(dialog, u"Ton"_s).clear();
  Press(dialog, u"TonWaehlen"_s);
  EXPECT_EQ(Control<QLabel>(dialog, u"HinweisTon"_s).text(), QString());
  QTest::mouseClick(&test, Qt::LeftButton);
  ASSERT_EQ(heard.count(), 1);
  EXPECT_EQ(heard[0][0].toString(), sound);
}

TEST_F(Options, SampleCardFollowsTheFields) {
  TF_dlopt dialog({program, &card_file, "/deck", {}}, messages);
  dialog.show();
  const auto height = [&] { return Control<TFrameHtml>(dialog, u"MusterV"_s).layout().fragments.at(0).rect.height; };
  Control<QLineEdit>(dialog, u"GroesseV"_s).setText(u"10"_s);
  const int small = height();
  Control<QLineEdit>(dialog, u"GroesseV"_s).setText(u"40"_s);
  EXPECT_GT(height(), 2 * small);
  Control<QLineEdit>(dialog, u"GroesseV"_s).setText(u"x"_s);
  EXPECT_GT(height(), 2 * small) << "a wrong value is not taken";
}

class NewFileDialog : public testing::Test {
 protected:
  void Name(const QString& name) { Control<QLineEdit>(dialog, u"EditName"_s).setText(name); }
  bool CanAccept() {
    return Control<QDialogButtonBox>(dialog, u"ButtonBox"_s).button(QDialogButtonBox::Ok)->isEnabled();
  }

  QTemporaryDir folder;
  std::filesystem::path decks = ToPath(folder.path()) / "new folder";
  RecordedMessages messages;
  TF_dlneu dialog{messages, decks, nullptr};
};

TEST_F(NewFileDialog, TakesOnlyNamesThatEverySystemCanHold) {
  for (const QString& name : {u""_s, u"  "_s, u"a/b"_s, u"a\\b"_s, u"wer?"_s, u".mlb"_s, QString(84, u'€')}) {
    Name(name);
    EXPECT_FALSE(CanAccept()) << name.toStdString();
  }
  for (const auto& [name, file] : {std::pair(u"Französisch 1.2"_s, "Französisch 1.2.mlb"),
                                   {u" Englisch.mlb "_s, "Englisch.mlb"},
                                   {u"ALT.MLB"_s, "ALT.MLB"},
                                   {u"Alt.Mlb"_s, "Alt.Mlb.mlb"}}) {
    Name(name);
    EXPECT_TRUE(CanAccept()) << file;
    EXPECT_EQ(dialog.path(), decks / file);
  }
  Name(u"Deck"_s);
  Control<QLineEdit>(dialog, u"EditFolder"_s).setText(u"relative"_s);
  EXPECT_FALSE(CanAccept());
}

TEST_F(NewFileDialog, AsksBeforeItReplacesAFile) {
  Name(u"Deck"_s);
  dialog.accept();
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_TRUE(std::filesystem::is_directory(decks)) << "the folder is made";

  std::ofstream(decks / "Deck.mlb") << "cards";
  dialog.setResult(QDialog::Rejected);
  dialog.accept();
  EXPECT_EQ(dialog.result(), QDialog::Rejected) << "the safe answer is another name";
  messages.answers = {Answer::Yes};
  dialog.accept();
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
  EXPECT_EQ(messages.asked.size(), 2);
}

TEST(FileChooser, BeginsInTheNearestFolderThatIsThere) {
  const QTemporaryDir home;
  for (const QString& missing : {u"/Tessaro"_s, u"/Stick/Karteien/"_s, u""_s}) {
    const auto open = [&] { BoxMessages().ChooseFileToOpen(nullptr, {}, home.path() + missing, {}); };
    DriveDialog<QFileDialog>(open, [&](const QFileDialog& dialog) {
      EXPECT_EQ(dialog.directory().path(), home.path()) << missing.toStdString();
      EXPECT_EQ(Control<QLineEdit>(dialog, u"fileNameEdit"_s).text(), QString());
    });
  }
}

class CharacterSets : public MainWindow {
 protected:
  // Chooses a set for the backs in the options, and answers the question about the texts, if there is one.
  void Choose(CharacterSet set, const std::function<void(TF_dlzeichen&)>& answer = {}) {
    DriveDialog<TF_dlopt>([this] { program.ShowOptions(); },
                          [&](TF_dlopt& options) {
                            Control<QComboBox>(options, u"ZeichensatzH"_s).setCurrentIndex(static_cast<int>(set));
                            if (!answer) return Press(options, u"BitBtnOK"_s);
                            DriveDialog<TF_dlzeichen>([&] { Press(options, u"BitBtnOK"_s); }, answer);
                          });
  }
  static QString Cell(TF_dlzeichen& dialog, int column) {
    return Control<QTableWidget>(dialog, u"ListeKarten"_s).item(0, column)->text();
  }
  std::string Back() { return std::string(program.file().cards().Peek(program.file().columns().answer, 2)); }
  CharacterSet Set() { return ReadCharacterSet(program.file().settings(), SideName::Back); }
  static constexpr const char* kIni = "/deck/x.ini";
};

TEST_F(CharacterSets, TextsReadAnewKeepTheirBytes) {
  Open({{.answer = "\xCF\xF0\xE8\xE2\xE5\xF2"}});
  const std::string before = *disk.Content(kTestFile);
  Choose(CharacterSet::Greek, [](TF_dlzeichen& dialog) { dialog.reject(); });
  EXPECT_EQ(Set(), CharacterSet::Western);
  EXPECT_FALSE(program.file().changed());
  Choose(CharacterSet::Cyrillic, [](TF_dlzeichen& dialog) {
    EXPECT_FALSE(Control<QRadioButton>(dialog, u"Umwandeln"_s).isEnabled());
    EXPECT_EQ(Control<QListWidget>(dialog, u"ListeFehlt"_s).item(0)->text(), u"Karte 1, Rückseite: Ï ð è â å ò"_s);
    EXPECT_EQ(Cell(dialog, 1), u"Ïðèâåò"_s);
    EXPECT_EQ(Cell(dialog, 2), u"Привет"_s);
    Press(dialog, u"BitBtnOK"_s);
  });
  EXPECT_EQ(Set(), CharacterSet::Cyrillic);
  EXPECT_EQ(disk.Content(kTestFile), before);
  EXPECT_NE(disk.Content(kIni)->find("Charset=204"), std::string::npos);
}

TEST_F(CharacterSets, NothingIsAskedWhereNoTextWouldLookOtherwise) {
  Open({{.question = "\xFC", .answer = "a\xA0<img src=\"\xFC.png\">"}});
  Choose(CharacterSet::Cyrillic);
  EXPECT_EQ(Set(), CharacterSet::Cyrillic);
  EXPECT_FALSE(program.file().changed());
}

TEST_F(CharacterSets, ConvertedTextsAreSavedWithTheirSetAndShownInTheEditor) {
  Open({{.question = "\xFC", .answer = "100 \x80"}});
  program.OpenEditor();
  auto* editor = OpenWindows<TF_wned>().at(0);
  auto& back = Control<SideField>(*editor, u"RichEditKarteHinten"_s);
  Choose(CharacterSet::Cyrillic, [](TF_dlzeichen& dialog) {
    EXPECT_TRUE(Control<QRadioButton>(dialog, u"Umwandeln"_s).isChecked());
    EXPECT_EQ(Cell(dialog, 2), u"100 €"_s);
    Press(dialog, u"BitBtnOK"_s);
  });
  EXPECT_EQ(Back(), "100 \x88");
  EXPECT_NE(disk.Content(kTestFile)->find("100 \x88"), std::string::npos);
  EXPECT_EQ(disk.Content(kIni)->find("Summe"), std::string::npos);
  EXPECT_EQ(back.toPlainText(), u"100 €"_s);
  back.selectAll();
  back.insertPlainText(u"Да, ä"_s);
  EXPECT_EQ(back.Side(), "\xC4\xE0, ") << "what the code page lacks is left out";
  const auto named = [editor](const QString& letters) {
    return Control<QLabel>(*editor, u"LabelStatus"_s).text().contains(u": %1 ("_s.arg(letters));
  };
  EXPECT_TRUE(named(u"ä"_s));
  back.insertPlainText(u"ñДä"_s);
  EXPECT_TRUE(named(u"ä ñ"_s)) << "all of the card, each once";
  EXPECT_TRUE(editor->StoreSide() && named(u"ä ñ"_s));
  back.insertPlainText(u"ß"_s);
  EXPECT_TRUE(named(u"ß"_s)) << "since it was stored";
}

}  // namespace
}  // namespace tessaro
