
#include "app/dlopt.h"
#include "app/dlzeichen.h"
#include "edit/side_field.h"
#include "edit/wned.h"
#include "tests/app/main_window_fixture.h"

namespace tessaro {
namespace {

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
