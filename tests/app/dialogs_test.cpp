#include <gtest/gtest.h>

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <fstream>

#include "app/dlneu.h"
#include "tests/support/dialog_driver.h"
#include "tests/support/recorded_messages.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::StringLiterals;

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

}  // namespace
}  // namespace tessaro
