#pragma once

#include <QDialog>
#include <QTimer>
#include <array>
#include <filesystem>
#include <memory>

#include "exchange/compare_scan.h"
#include "exchange/compare_source.h"
#include "exchange/exchange_ties.h"
#include "platform/side_code_page.h"

class QTextEdit;

namespace Ui {
class TF_dlupd;
}

namespace tessaro {

// Compares the cards of another card file with those of the open one, or the open one with itself, and lets the user
// decide about each pair that is alike. The comparison runs in small steps, on while the user looks.
class TF_dlupd : public QDialog {
  Q_OBJECT

 public:
  explicit TF_dlupd(const ExchangeTies& ties, QWidget* parent = nullptr);
  ~TF_dlupd() override;

  void BitBtnQuelleClick();
  void BitBtnStartClick();
  void BitBtnBeibehaltenClick();
  void BitBtnUpdatenClick();
  void BitBtnMarkierenClick();
  void BitBtnZielMarkierenClick();
  void BitBtnDeleteClick();
  void reject() override;

 private:
  std::array<QTextEdit*, 4> Texts() const;
  void FillChoices();
  void DressTexts();
  bool IsFront(const QTextEdit& edit) const;
  CodePage PageOf(const QTextEdit& edit) const;
  void ConnectControls();
  CompareRule Rule() const;
  void ChangeRule();

  // The remembered source and place in it, when the user wants to go on there.
  bool ContinueLast();
  bool OpenSource(const std::filesystem::path& path);
  void Work();
  void ShowStep(CompareScan::Step step);
  void ShowStop();
  void ShowEnd();
  void ShowFailure();
  void ShowCounts();
  void MarkDifferences();
  void Run(bool on);
  void EnableActions(bool on);
  CompareEdits Edits() const;
  // False and told when a text holds what a card cannot.
  bool MayTakeEdits();
  void Decide(bool done);
  // Asks what to do with texts that were changed and not brought in. False: the user wants to look at them.
  bool SettleEdits();
  // Ends the comparison: links and media of the cards taken over, and where it stood.
  void Finish();
  void TellResult();
  void OfferMedia();
  void Remember();

  ExchangeTies ties_;
  std::unique_ptr<Ui::TF_dlupd> ui_;
  QTimer timer_;
  std::filesystem::path source_path_;
  CardTable source_;
  bool internal_ = false;
  int first_row_ = kFirstCardRow;
  std::unique_ptr<CompareScan> scan_;
  int64_t told_comparisons_ = 0;
  int64_t told_taken_ = 0;
  bool running_ = false;
};

// The text as it was typed, no-break spaces included.
QString SideText(const QTextEdit& edit);

}  // namespace tessaro
