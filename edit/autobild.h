#pragma once

#include <QDialog>
#include <functional>
#include <memory>
#include <string>

#include "edit/command_stack.h"
#include "widgets/messages.h"

namespace Ui {
class TF_autobild;
}

namespace tessaro {

// Makes a card for each of many picture files.
class TF_autobild : public QDialog {
  Q_OBJECT

 public:
  // The card `row` is the template; `name_of` says how cards name a file, or nothing when they cannot.
  TF_autobild(CardFile& file, CommandStack& commands, Messages& messages, int row,
              std::function<std::string(const QString& path)> name_of, QWidget* parent);
  ~TF_autobild() override;

  // What the user was told last; empty: nothing was done.
  QString told() const;

 private:
  void BitBtnBilderClick();

  CardFile& file_;
  CommandStack& commands_;
  Messages& messages_;
  int row_;
  std::function<std::string(const QString& path)> name_of_;
  std::unique_ptr<Ui::TF_autobild> ui_;
};

}  // namespace tessaro
