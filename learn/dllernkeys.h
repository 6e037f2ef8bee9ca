#pragma once

#include <QDialog>
#include <array>
#include <memory>

#include "settings/learning_keys.h"

namespace Ui {
class TF_dllernkeys;
}

namespace tessaro {

class HotKeyEdit;
class IniFile;

// The dialog of the learning keys. When it closes, by whatever way, the keys in force are written to the settings; they
// are those that it opened with until OK or the button for the standard keys is pressed.
class TF_dllernkeys : public QDialog {
  Q_OBJECT

 public:
  explicit TF_dllernkeys(IniFile& settings, QWidget* parent = nullptr);
  ~TF_dllernkeys() override;

  void done(int result) override;

 private:
  void BitBtnOKClick();
  void BitBtnDefaultClick();
  void ShowConflict();
  LearningKeys FieldKeys() const;
  void SetFields(const LearningKeys& keys);

  std::unique_ptr<Ui::TF_dllernkeys> ui_;
  std::array<HotKeyEdit*, kLearningCommands> fields_;
  IniFile& settings_;
  LearningKeys keys_;
};

}  // namespace tessaro
