#pragma once

#include <QDialog>
#include <filesystem>
#include <memory>

#include "platform/side_code_page.h"

namespace Ui {
class TF_dlneu;
}

namespace tessaro {

class Messages;

// Asks for the name, the folder and the character sets of a new card file. A file that exists is only taken after a
// question.
class TF_dlneu : public QDialog {
  Q_OBJECT

 public:
  TF_dlneu(Messages& messages, const std::filesystem::path& folder, QWidget* parent);
  ~TF_dlneu() override;

  // The card file to be made; its folder exists. Of value after accept.
  std::filesystem::path path() const;
  // Those of its sides.
  SideCodePages code_pages() const;
  void accept() override;

 private:
  void ButtonFolderClick();
  void EditChange();
  // What is wrong with the name; empty when nothing is.
  QString Mistake() const;

  Messages& messages_;
  std::unique_ptr<Ui::TF_dlneu> ui_;
};

}  // namespace tessaro
