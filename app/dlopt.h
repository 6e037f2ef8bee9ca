#pragma once

#include <QDialog>
#include <array>
#include <filesystem>
#include <memory>
#include <optional>

#include "app/option_fields.h"
#include "platform/side_code_page.h"
#include "settings/side_settings.h"

class QComboBox;
class QFontComboBox;
class QPushButton;

namespace Ui {
class TF_dlopt;
}

namespace tessaro {

class CardFile;
class Clock;
class Messages;
class TFrameHtml;

// What the dialog of options works on.
struct OptionPlaces {
  IniFile& program;                 // tessaro.ini
  IniFile* card_file = nullptr;     // X.ini of the open card file, or null
  std::filesystem::path folder;     // of the open card file; empty without one
  std::filesystem::path backups;    // the folder of dated copies; empty: none are made
  const CardFile* cards = nullptr;  // the open card file itself, whose character sets can be changed, and for that
  const Clock* clock = nullptr;     // a clock; both or none
};

// Other character sets for the sides of the card file.
struct CodePageChange {
  SideCodePages to;
  bool convert = false;  // the texts are to be brought into them; false: read anew
};

// All that a person may want to set, on a page each. Nothing is taken over before OK, and then only when every value is
// good; a wrong one is told beside its field.
class TF_dlopt : public QDialog {
  Q_OBJECT

 public:
  // What `places` refers to and `messages` must outlive the dialog.
  TF_dlopt(OptionPlaces places, Messages& messages, QWidget* parent = nullptr);
  ~TF_dlopt() override;

  // After OK: other character sets that the user wants; for the caller to put into effect.
  const std::optional<CodePageChange>& code_page_change() const { return code_page_change_; }

 Q_SIGNALS:
  // The sound of errors is to be heard.
  void SoundWanted(const QString& path);
  // The dialogs of the learning parameters and of the learning keys are to be opened.
  void ParametersWanted();
  void KeysWanted();

 private:
  // The fields of a card side.
  struct Side {
    SideName name;
    QFontComboBox* font;
    QLineEdit* points;
    QLabel* note;
    QPushButton* text;
    QPushButton* paper;
    QComboBox* character_set;
    TFrameHtml* sample;
    SideSettings look;
  };

  void TieSide(Side& side);
  void TieCharacterSets();
  // Asks what is to become of the texts where a character set is another; false: back to the options.
  bool AskForTexts();
  void TieLearning();
  void TieAnswers();
  void TieFolders();
  void ShowSample(Side& side);
  void ChooseColour(Side& side, int64_t SideSettings::*colour);
  void TakeSide(Side& side, const SideSettings& look);
  void BitBtnOKClick();
  void BitBtnDefaultClick();
  void TonTestClick();
  void ShowFolder();

  std::unique_ptr<Ui::TF_dlopt> ui_;
  OptionPlaces places_;
  Messages& messages_;
  std::optional<CodePageChange> code_page_change_;
  OptionFields fields_;       // of tessaro.ini
  OptionFields file_fields_;  // of X.ini
  std::array<Side, 2> sides_;
};

}  // namespace tessaro
