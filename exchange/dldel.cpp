#include "exchange/dldel.h"

#include <QPushButton>
#include <optional>

#include "exchange/exchange_texts.h"
#include "store/file/card_file.h"
#include "ui_dldel.h"
#include "widgets/long_work.h"
#include "widgets/messages.h"
#include "widgets/theme.h"
#include "widgets/window_place.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

}  // namespace

TF_dldel::TF_dldel(const ExchangeTies& ties, QWidget* parent)
    : QDialog(parent), ties_(ties), ui_(std::make_unique<Ui::TF_dldel>()) {
  ui_->setupUi(this);
  for (int length = kShortestRun; length <= kLongestRun; ++length) ui_->ComboBoxLen->addItem(QString::number(length));
  ui_->LabelSicherung->setText(u"Vorher wird der jetzige Stand gesichert. "_s + BackAgainText());
  MakeQuiet(*ui_->LabelSicherung);
  connect(ui_->BitBtnDelAll, &QPushButton::clicked, this, &TF_dldel::BitBtnDelAllClick);
  connect(ui_->BitBtnDelPart, &QPushButton::clicked, this, &TF_dldel::BitBtnDelPartClick);
  connect(ui_->BitBtnClose, &QPushButton::clicked, this, &QDialog::close);
  ui_->BitBtnClose->setFocus();
  GrowToContent(*this);
}

TF_dldel::~TF_dldel() = default;

void TF_dldel::BitBtnDelAllClick() {
  Reset(std::nullopt, u"Die Statistik aller Karten löschen?"_s, u"%1 Statistiken gelöscht"_s);
}

void TF_dldel::BitBtnDelPartClick() {
  Reset(ui_->ComboBoxLen->currentIndex() + kShortestRun,
        u"Die Statistik der Karten löschen, die nicht bei jeder der letzten %1 Antworten gewusst wurden?"_s.arg(
            ui_->ComboBoxLen->currentText()),
        u"%1 Statistiken bereinigt"_s);
}

void TF_dldel::Reset(ResetScope scope, const QString& question, const QString& progress) {
  if (ties_.messages.Question(this, question, u"Löschen"_s, u"Nicht löschen"_s, {}, Answer::No) != Answer::Yes) return;
  if (!ties_.keep_state(this)) return;
  std::optional<int64_t> count;
  bool cancelled = false;
  {
    LongWork work(this, ties_.clock);
    work.AllowCancel();
    work.NextStage(u"Statistik löschen"_s, ties_.file.CardCount());
    count = ResetStatistics(ties_.file, scope, [&](int64_t row) {
      cancelled = !work.GoesOn(row);
      return !cancelled;
    });
  }
  if (!count) {
    const QString text = cancelled ? u"Abgebrochen, die Kartei ist wie zuvor"_s
                                   : u"Die Statistik konnte nicht gelöscht werden, die Kartei ist wie zuvor"_s;
    return ui_->StatusBarDelStat->showMessage(text);
  }
  ui_->StatusBarDelStat->showMessage(progress.arg(*count));
}

}  // namespace tessaro
