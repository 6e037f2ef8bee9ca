#pragma once

#include <QDialog>
#include <array>
#include <memory>

#include "edit/character_table.h"
#include "settings/program_settings.h"
#include "widgets/htmlview.h"

namespace Ui {
class TF_wnsign;
}
class QTableWidgetItem;

namespace tessaro {

// The table of characters that keyboards hide, in the font of the front or the back.
class TF_wnsign : public QDialog {
  Q_OBJECT

 public:
  // `settings`, where the tables and the place are kept, must live longer. `looks`: of front and back.
  TF_wnsign(ProgramSettings& settings, const std::array<SideLook, 2>& looks, QWidget* parent);
  ~TF_wnsign() override;

  // Comes to the front with the table for this side.
  void Open(EditSide side);

 Q_SIGNALS:
  // One character of the code page, to be put where the user writes.
  void CharacterChosen(const QString& character);

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  CodePage Page() const;
  void Load(EditSide side);
  void Keep();
  void Choose();
  void CellChanged(QTableWidgetItem* item);

  ProgramSettings& settings_;
  std::array<SideLook, 2> looks_;
  std::unique_ptr<Ui::TF_wnsign> ui_;
  EditSide side_ = EditSide::Front;
  bool loading_ = false;
};

}  // namespace tessaro
