// What the print dialog does with its pages: printing them, and writing them to a PDF file.

#include <QFileInfo>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>

#include "print/dlprint.h"
#include "print/page_view.h"
#include "ui_dlprint.h"
#include "widgets/long_work.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

QString WithPdfEnding(const QString& path) {
  return path.endsWith(u".pdf"_s, Qt::CaseInsensitive) ? path : path + u".pdf"_s;
}

}  // namespace

QString TF_dlprint::ChoosePdf() {
  const std::filesystem::path proposed = ties_.file.paths().cards.parent_path() / ties_.file.paths().cards.stem();
  const QString chosen = ties_.messages.ChooseFileToSave(this, u"Als PDF speichern"_s,
                                                         WithPdfEnding(FromPath(proposed)), u"PDF (*.pdf)"_s);
  if (chosen.isEmpty()) return {};
  QString path = WithPdfEnding(chosen);
  if (path == chosen || !QFileInfo::exists(path)) return path;
  // The one that was asked about had another name.
  const bool replace =
      ties_.messages.Question(this, u"Die Datei\n%1\ngibt es schon. Soll sie ersetzt werden?"_s.arg(path),
                              u"Ersetzen"_s, u"Nicht ersetzen"_s, {}, Answer::No) == Answer::Yes;
  return replace ? path : QString();
}

void TF_dlprint::PutOut(const QPageLayout& page, const OutputTexts& texts, const Output& output) {
  PrintedPages pages(Source(), Order(page));
  OutputEnd end = OutputEnd::Failed;
  {
    LongWork work(this, ties_.clock);
    work.AllowCancel();
    work.NextStage(texts.stage, static_cast<int64_t>(rows_.size()));
    end = output(pages, [&](int n) { return work.GoesOn(pages.CardsBefore(n)); });
  }
  if (end == OutputEnd::Failed) ties_.messages.Error(this, texts.failed);
  told_ = end == OutputEnd::Done ? texts.done : end == OutputEnd::Cancelled ? texts.cancelled : QString();
  ShowPosition();
}

void TF_dlprint::BitBtnPdfClick() {
  if (rows_.empty()) return;
  const QString path = ChoosePdf();
  if (path.isEmpty()) return;
  PutOut(PageLayout(),
         {.stage = u"PDF schreiben"_s,
          .done = u"Gespeichert: %1"_s.arg(QFileInfo(path).fileName()),
          .cancelled = u"Abgebrochen, die Datei ist wie zuvor"_s,
          .failed = u"Die Datei kann nicht geschrieben werden:\n%1"_s.arg(path)},
         [&](PrintedPages& pages, const BeforePage& keep_going) {
           return WritePdf(path, PageLayout(), pages, pages.order().title, keep_going);
         });
}

// There is one, or the user was told that there is none and what he can do.
bool TF_dlprint::HasPrinter() {
  if (!QPrinterInfo::availablePrinterNames().isEmpty()) return true;
  const Answer answer = ties_.messages.Question(
      this,
      u"Auf diesem Rechner ist kein Drucker eingerichtet.\nSie können die Seiten als PDF speichern und die Datei "
      u"woanders drucken."_s,
      u"Als PDF speichern"_s, u"Nicht speichern"_s, {}, Answer::Yes);
  if (answer == Answer::Yes) BitBtnPdfClick();
  return false;
}

void TF_dlprint::BitBtnDruckenClick() {
  if (rows_.empty() || !HasPrinter()) return;
  printer_->setPageLayout(PageLayout());
  printer_->setDocName(pages_->order().title);
  const bool two_sided = pages_->order().form == PrintForm::Cards && pages_->order().sides == PrintSides::Both;
  printer_->setDuplex(two_sided ? QPrinter::DuplexLongSide : QPrinter::DuplexNone);
  QPrintDialog dialog(printer_.get(), this);
  // Into a file it would write over what is there, page by page.
  dialog.setOption(QAbstractPrintDialog::PrintToFile, false);
  dialog.setOption(QAbstractPrintDialog::PrintCurrentPage);
  if (pages_->AllKnown()) dialog.setMinMax(1, pages_->Count());
  if (dialog.exec() != QDialog::Accepted) return;
  Print();
}

void TF_dlprint::Print() {
  QPageRanges numbers = printer_->pageRanges();
  if (printer_->printRange() == QPrinter::CurrentPage)
    numbers = QPageRanges::fromString(QString::number(ui_->Blatt->page() + 1));
  PutOut(printer_->pageLayout(),
         {.stage = u"Drucken"_s,
          .done = u"An den Drucker gegeben"_s,
          .cancelled = u"Drucken abgebrochen"_s,
          .failed = u"Drucken ist nicht möglich."_s},
         [&](PrintedPages& pages, const BeforePage& keep_going) {
           const auto go_on = [&](int page) { return keep_going(page) || (printer_->abort(), false); };
           return PrintPages(*printer_, pages, numbers, go_on);
         });
}

}  // namespace tessaro
