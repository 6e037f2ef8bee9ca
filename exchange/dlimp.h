#pragma once

#include <QDialog>
#include <QTimer>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "exchange/card_import.h"
#include "exchange/exchange_ties.h"
#include "exchange/foreign_text.h"
#include "exchange/import_guess.h"
#include "platform/disk.h"

namespace Ui {
class TF_dlimp;
}

namespace tessaro {

class SeparatorField;

// Brings cards of a text file into the open card file: as new cards behind its own, or in place of them all. It shows
// what would come before anything is changed.
class TF_dlimp : public QDialog {
  Q_OBJECT

 public:
  explicit TF_dlimp(const ExchangeTies& ties, QWidget* parent = nullptr);
  ~TF_dlimp() override;

  void BitBtnDateiClick();
  void BitBtnVTrainClick();
  void BitBtnExcelClick();

 private:
  using Sides = std::pair<std::string, std::string>;

  void MakeSeparators();
  void ShowWarnings();
  void MakePreview();
  bool ReadFileAt(const std::filesystem::path& path);
  void FreeTexts();
  void ShowGuess();
  void UseGuess();

  // Brings the characters of the file into the code pages of the sides that the separators make of it.
  void ConvertSides();
  const ForeignText& TableText() const { return raw_.empty() ? text_ : table_text_; }
  // Looks at the whole text and shows what it finds.
  void Preview();
  void ShowPreview();
  QString TextSentence() const;
  QString TableSentence() const;
  std::vector<Sides> FirstTextCards() const;
  std::vector<Sides> FirstTableCards() const;
  void ShowCard(int row);

  std::optional<TextLayout> TakeTextLayout();
  std::optional<TableLayout> TakeTableLayout();
  bool Missing(SeparatorField& field);
  // False and told when the file is no longer what was looked at, or characters are to be replaced that may not be.
  bool MayImport(const ForeignText& text);
  bool LeaveOutFaults();
  void TellTextImport(const ImportResult& result);
  void Replace(const TableLayout& layout);
  void Say(const QString& text);
  void EnableWays(bool on);

  ExchangeTies ties_;
  std::unique_ptr<Ui::TF_dlimp> ui_;
  SeparatorField* field_ = nullptr;
  SeparatorField* card_ = nullptr;
  SeparatorField* quote_ = nullptr;
  QTimer preview_timer_;
  std::filesystem::path path_;
  std::optional<FileState> state_;  // of the file when it was read
  SideCodePages pages_;             // of the card file
  std::string raw_;                 // the file, where the sides are not all in 1252 and it is; else empty
  ForeignText text_;
  ForeignText table_text_;  // with `raw_`: as a table
  std::optional<LayoutGuess> guess_;
  TextCheck text_check_;
  TableCheck table_check_;
  std::vector<Sides> shown_;
};

}  // namespace tessaro
