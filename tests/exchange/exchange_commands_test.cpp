// The exchange commands of the main window, from the menu to the cards.

#include "edit/dlnumm.h"
#include "edit/side_field.h"
#include "edit/wned.h"
#include "exchange/dldel.h"
#include "exchange/dlexp.h"
#include "exchange/dlimp.h"
#include "exchange/dltrans.h"
#include "exchange/dlupd.h"
#include "learn/wnlern.h"
#include "tests/app/main_window_fixture.h"

namespace tessaro {
namespace {

class ExchangeCommands : public MainWindow {
 protected:
  ExchangeCommands() : MainWindow("/backups") {}
  void OpenTwo() {
    Open({{.id = "000005", .question = "Haus", .answer = "house"}, {.id = "000007", .question = "Baum"}});
  }
  void ChooseIn(QWidget& dialog, const QString& path, const QString& button = u"BitBtnDatei"_s) {
    messages.files.push_back(path);
    Control<QPushButton>(dialog, button).click();
  }
  std::string Field(int row, int column) { return std::string(program.file().cards().Peek(column, row)); }
  std::string Question(int row) { return Field(row, program.file().columns().question); }
  // The cards of the newest dated copy, as text; empty when there is none.
  std::string NewestCopy() {
    const std::vector<Generation> copies = GenerationFolder(disk, "/backups").Of(kTestFile);
    return copies.empty() ? std::string() : *disk.Content(copies.front().path);
  }
};

TEST_F(ExchangeCommands, ImportIsComeBackFromByTheDatedCopyOfWhatWasNotSaved) {
  OpenTwo();
  Change(program.file(), "not saved");
  disk.Put("/w.txt", "Hund\xA4\ndog|\n");
  Drive<TF_dlimp>(u"MImportierenClick"_s, [&](TF_dlimp& dialog) {
    ChooseIn(dialog, u"/w.txt"_s);
    Press(dialog, u"BitBtnVTrain"_s);
  });
  EXPECT_EQ(Question(4), "Hund");
  EXPECT_EQ(Field(4, program.file().columns().id), "000008");
  EXPECT_TRUE(messages.shown.last().contains(u"<Karteikasten><Restore>"_s));
  EXPECT_NE(NewestCopy().find("not saved"), std::string::npos);
  EXPECT_EQ(NewestCopy().find("Hund"), std::string::npos);
  disk.set_capacity(1);
  Drive<TF_dlimp>(u"MImportierenClick"_s, [&](TF_dlimp& dialog) {
    ChooseIn(dialog, u"/w.txt"_s);
    Press(dialog, u"BitBtnVTrain"_s);
    EXPECT_EQ(program.file().CardCount(), 3) << "nothing is done without a copy";
    messages.answers = {Answer::Yes};
    Press(dialog, u"BitBtnVTrain"_s);
  });
  EXPECT_EQ(program.file().CardCount(), 4) << "unless the user insists";
}

TEST_F(ExchangeCommands, TableTakesThePlaceOfTheCardsWithoutSavingThoseInMemory) {
  OpenTwo();
  Change(program.file(), "not saved");
  program.OpenEditor();
  program.OpenLearning();
  disk.Put("/t.txt", "000009;00;neu;new;000000060;0;wf;7 0\n");
  Drive<TF_dlimp>(u"MImportierenClick"_s, [&](TF_dlimp& dialog) {
    ChooseIn(dialog, u"/t.txt"_s);
    Press(dialog, u"ButtonErkannt"_s);
    messages.answers = {Answer::Yes, Answer::Yes};
    Press(dialog, u"BitBtnExcel"_s);
  });
  EXPECT_EQ(program.file().CardCount(), 1);
  EXPECT_EQ(Question(2), "neu");
  EXPECT_TRUE(!program.file().changed() && !program.learning());
  EXPECT_EQ(messages.errors, QStringList());
  EXPECT_EQ(program.file().learn_index().RowCount(), 3);
  EXPECT_NE(NewestCopy().find("not saved"), std::string::npos);
  EXPECT_NE(disk.Content("/deck/x.ml~")->find("house"), std::string::npos);
}

TEST_F(ExchangeCommands, ExportWritesWhatIsTypedInTheEditorAndAsksForRenumbering) {
  OpenTwo();
  program.OpenEditor();
  auto* editor = OpenWindows<TF_wned>().at(0);
  QTest::keyClicks(&Control<SideField>(*editor, u"RichEditKarteVorne"_s), u"Alt"_s);
  const auto write = [&](TF_dlexp& dialog, const QString& button) {
    DriveDialog<TF_dlnumm>([&] { Press(dialog, u"BitBtnZeile"_s); },
                           [&](TF_dlnumm& renumbering) { Press(renumbering, button); });
    return *disk.Content("/out.txt");
  };
  Drive<TF_dlexp>(u"MExportierenClick"_s, [&](TF_dlexp& dialog) {
    ChooseIn(dialog, u"/out"_s);
    EXPECT_NE(write(dialog, u"BitBtnCancel"_s).find("000005¤00¤AltHaus"_cp), std::string::npos);
    EXPECT_EQ(NewestCopy(), "") << "nothing was changed";
    EXPECT_NE(write(dialog, u"BitBtnOK"_s).find("000001\xA4"), std::string::npos);
  });
  EXPECT_NE(NewestCopy().find("000005"), std::string::npos);
}

TEST_F(ExchangeCommands, ResetLeavesTheRunGoingOn) {
  Open({{.id = "000001", .question = "eins", .score = "000000000"}, {.id = "000002", .question = "zwei"}});
  program.OpenLearning();
  Drive<TF_dldel>(u"MDelStatClick"_s, [&](TF_dldel& dialog) {
    messages.answers = {Answer::Yes};
    Press(dialog, u"BitBtnDelAll"_s);
  });
  EXPECT_TRUE(program.learning());
  EXPECT_EQ(Field(2, program.file().columns().score), "000000060");
  EXPECT_FALSE(NewestCopy().empty());
  ASSERT_TRUE(program.CloseLearning());
}

TEST_F(ExchangeCommands, DoubledCardsOfTheOpenFileAreFoundAndRemoved) {
  Open({{.id = "000001", .question = "eins"},
        {.id = "000002", .question = "zwei"},
        {.id = "000003", .question = "eins"}});
  Drive<TF_dlupd>(u"MAbgleichClick"_s, [&](TF_dlupd& dialog) {
    ChooseIn(dialog, QString::fromLatin1(kTestFile), u"BitBtnQuelle"_s);
    Control<QComboBox>(dialog, u"ComboBoxProzent"_s).setCurrentIndex(18);
    Press(dialog, u"BitBtnStart"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] {
      return Control<QLabel>(dialog, u"EditMeldung"_s).text() == u"Bearbeitung beendet.Karteiende Quellkartei."_s;
    }));
    messages.answers = {Answer::Yes};
    Press(dialog, u"BitBtnDelete"_s);
  });
  EXPECT_EQ(program.file().CardCount(), 2);
  EXPECT_EQ(Question(3), "zwei");
  EXPECT_NE(NewestCopy().find("<+++>"), std::string::npos);
}

TEST_F(ExchangeCommands, OldCardFileIsTakenOverWithNoneOpenOnceItHasAName) {
  EXPECT_FALSE(Command(u"MExportierenClick"_s).isEnabled());
  disk.Put("/alt.txt", std::string("one\ntwo\n000001¤0¤a||b¤c¤1¤0¤wf¤0\n"_cp));
  Drive<TF_dltrans>(u"MTransferClick"_s, [&](TF_dltrans& dialog) {
    Press(dialog, u"BitBtnOK"_s);
    EXPECT_EQ(messages.errors.takeFirst(), u"Eingabe Name neue Kartei fehlt"_s);
    EXPECT_EQ(Control<QStatusBar>(dialog, u"StatusBarTrans"_s).currentMessage(), u"Karteiname fehlt"_s);
    ChooseIn(dialog, u"/alt.txt"_s, u"BitBtnOpen"_s);
    auto& name = Control<QLineEdit>(dialog, u"MaskEditZiel"_s);
    name.clear();
    QTest::keyClicks(&name, u"Ne/u"_s);
    messages.answers = {Answer::Yes};
    Press(dialog, u"BitBtnOK"_s);
    EXPECT_EQ(Control<QStatusBar>(dialog, u"StatusBarTrans"_s).currentMessage(), u"1 Karten übertragen"_s);
  });
  EXPECT_EQ(CardsPath(), "/Neu.mlb");
  EXPECT_EQ(Question(2), "a\nb");
}

}  // namespace
}  // namespace tessaro
