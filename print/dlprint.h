#pragma once

#include <QDialog>
#include <QPageLayout>
#include <QTimer>
#include <memory>
#include <vector>

#include "platform/clock.h"
#include "print/card_choice.h"
#include "print/page_output.h"
#include "print/printed_pages.h"
#include "settings/program_settings.h"
#include "store/file/card_file.h"
#include "widgets/messages.h"

class QPrinter;

namespace Ui {
class TF_dlprint;
}

namespace tessaro {

// What the print dialog works on and whom it asks. All of it must live longer, and no card may change meanwhile.
struct PrintTies {
  const CardFile& file;
  ProgramSettings& settings;
  const Clock& clock;
  Messages& messages;
};

// Shows cards as they will stand on paper, and prints them or writes them to a PDF file.
class TF_dlprint : public QDialog {
  Q_OBJECT

 public:
  // Begins with the cards of `first` if there are any, else with those chosen the last time.
  TF_dlprint(const PrintTies& ties, CardOffer offer, CardChoice first, QWidget* parent = nullptr);
  ~TF_dlprint() override;

  void BitBtnDruckenClick();
  void BitBtnPdfClick();
  void done(int result) override;

 private:
  void FillBoxes(CardChoice first);
  void ConnectControls();
  CardChoice Choice() const;
  QPageLayout PageLayout() const;
  PrintOrder Order(const QPageLayout& page) const;
  PrintSource Source() const;
  void ChooseCards();
  void MakePages();
  void ShowControls();
  void ShowSentence();
  void ShowGrids();
  void GoTo(int page);
  void Leaf(int direction);
  void GoToEnd();
  void ShowPosition();
  void CountPages();
  void Keep();
  QString ChoosePdf();
  bool HasPrinter();
  // On the printer that was chosen.
  void Print();
  struct OutputTexts {
    QString stage;
    QString done;
    QString cancelled;
    QString failed;
  };
  using BeforePage = std::function<bool(int page)>;
  using Output = std::function<OutputEnd(PrintedPages& pages, const BeforePage& keep_going)>;
  // Does the output with a progress that can be cancelled, and tells how it ended.
  void PutOut(const QPageLayout& page, const OutputTexts& texts, const Output& output);

  PrintTies ties_;
  CardOffer offer_;
  std::unique_ptr<Ui::TF_dlprint> ui_;
  std::unique_ptr<QPrinter> printer_;
  std::vector<int> rows_;  // of the cards chosen
  QString none_;           // why there are none
  QString told_;           // what came of the output, until something else is chosen
  std::unique_ptr<PrintedPages> pages_;
  QTimer counting_;  // runs while the preview's pages are not all known
};

}  // namespace tessaro
