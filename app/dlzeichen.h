#pragma once

#include <QDialog>
#include <memory>

#include "cards/code_page_change.h"

namespace Ui {
class TF_dlzeichen;
}

namespace tessaro {

class CardFile;

// The names of the character sets, in their order.
QStringList CharacterSetNames();

// Asks what is to become of the texts when the character sets of a card file change: brought into the new ones, or
// read anew. Shows the first cards as they are and as they would be, and what the new sets cannot hold.
class TF_dlzeichen : public QDialog {
  Q_OBJECT

 public:
  // `lacking`: of the cards in these code pages. `file` must outlive it.
  TF_dlzeichen(const CardFile& file, const SideCodePages& to, const LackingText& lacking, QWidget* parent);
  ~TF_dlzeichen() override;

  // Whether the texts are to be converted; false: read anew.
  bool convert() const;

 private:
  void ShowCards();
  void ShowLacking(const LackingText& lacking);

  const CardFile& file_;
  SideCodePages from_;
  SideCodePages to_;
  std::vector<ChangingSide> samples_;
  std::unique_ptr<Ui::TF_dlzeichen> ui_;
};

}  // namespace tessaro
