#pragma once

#include <QDialog>
#include <array>
#include <memory>
#include <vector>

#include "edit/card_desk.h"
#include "platform/clock.h"
#include "settings/program_settings.h"
#include "widgets/htmlview.h"
#include "widgets/messages.h"

namespace Ui {
class TF_wntab;
}

namespace tessaro {

class CardModel;

// The table of all cards.
class TF_wntab : public QDialog {
  Q_OBJECT

 public:
  // All must live longer; `looks` may change meanwhile.
  TF_wntab(CardFile& file, CardDesk& desk, ProgramSettings& settings, const Clock& clock, Messages& messages,
           const std::array<SideLook, 2>& looks, QWidget* parent);
  ~TF_wntab() override;

  // Comes to the front with this card in sight.
  void Open(int card_row);
  // The cards marked there, ascending.
  std::vector<int> MarkedRows() const;

 Q_SIGNALS:
  // This card is to be shown in the editor.
  void EditorWanted(int card_row);
  // What is typed in the editor is to be stored first.
  void StoreWanted();
  // Cards were marked or their statistics changed.
  void CardsTouched();
  void PrintWanted();

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void MakeKeys();
  void FitColumns();
  int CurrentRow() const;
  void ShowRow(int card_row);
  void BitBtnStartClick();
  void BitBtnEditorClick();
  void BitBtnLoeschenClick();
  void BitBtnStatistikClick();
  void SetSideFont(const SideLook& look);

  CardFile& file_;
  CardDesk& desk_;
  ProgramSettings& settings_;
  const Clock& clock_;
  Messages& messages_;
  const std::array<SideLook, 2>& looks_;
  std::unique_ptr<Ui::TF_wntab> ui_;
  CardModel* model_ = nullptr;
};

}  // namespace tessaro
