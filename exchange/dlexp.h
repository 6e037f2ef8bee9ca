#pragma once

#include <QDialog>
#include <filesystem>
#include <memory>

#include "exchange/card_export.h"
#include "exchange/exchange_ties.h"

class QStatusBar;

namespace Ui {
class TF_dlexp;
}

namespace tessaro {

class SeparatorField;

// Writes the cards of the open file to a text file, as a table or as a text of questions and answers.
class TF_dlexp : public QDialog {
  Q_OBJECT

 public:
  explicit TF_dlexp(const ExchangeTies& ties, QWidget* parent = nullptr);
  ~TF_dlexp() override;

  void BitBtnDateiClick();
  void BitBtnZeileClick();
  void BitBtnNormalClick();

 private:
  void ShowWarnings();
  void ShowSentence();
  bool IsOwnFile(const std::filesystem::path& path) const;
  void ShowSpace();
  // The characters of both fields; false and told when one is missing.
  bool TakeSeparators(SeparatorField& one, SeparatorField& other, char& first, char& second);
  void Renumber();
  using Layout = ExportResult (*)(const CardTable&, char, char, TextFileForm, WritableFile&, const WorkObserver&);
  ExportResult Write(Layout write, char first, char second);
  // `unfit`: what is said of a separator that stands in a card.
  void Tell(const ExportResult& result, const QString& unfit);
  void EnableWays(bool on);

  ExchangeTies ties_;
  std::unique_ptr<Ui::TF_dlexp> ui_;
  SeparatorField* field_;
  SeparatorField* card_;
  SeparatorField* quote_;
  std::filesystem::path path_;
};

}  // namespace tessaro
