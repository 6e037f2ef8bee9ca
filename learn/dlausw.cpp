#include "learn/dlausw.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QIntValidator>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <utility>

#include "ui_dlausw.h"
#include "widgets/theme.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

// The running counts are painted so often, in milliseconds.
constexpr int64_t kRepaintInterval = 50;

constexpr size_t Place(int box) {
  return static_cast<size_t>(box - 1);
}

}  // namespace

TF_dlausw::TF_dlausw(CardFile& file, ProgramSettings& settings, const Clock& clock, Messages& messages,
                     const MethodDialogState& shown, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::TF_dlausw>()),
      file_(file),
      settings_(settings),
      clock_(clock),
      messages_(messages) {
  ui_->setupUi(this);
  count_edits_ = {ui_->EditAnzFach1, ui_->EditAnzFach2, ui_->EditAnzFach3,
                  ui_->EditAnzFach4, ui_->EditAnzFach5, ui_->EditAnzFach6};
  limit_edits_ = {ui_->MaskEditMax1, ui_->MaskEditMax2, ui_->MaskEditMax3, ui_->MaskEditMax4, ui_->MaskEditMax5};
  learn_buttons_ = {ui_->BitBtnLern1, ui_->BitBtnLern2, ui_->BitBtnLern3,
                    ui_->BitBtnLern4, ui_->BitBtnLern5, ui_->BitBtnLern6};
  for (int box = 1; box <= kLimitedBoxes; ++box) {
    QLineEdit* edit = limit_edits_[Place(box)];
    edit->setValidator(new QIntValidator(0, 99999, edit));
    connect(edit, &QLineEdit::textEdited, this, [this, box] { LimitEdited(box); });
  }
  for (int box = 1; box <= kBoxes; ++box) {
    connect(learn_buttons_[Place(box)], &QPushButton::clicked, this, [this, box] { BitBtnLernClick(box); });
  }
  connect(ui_->BitBtnSort, &QPushButton::clicked, this, &TF_dlausw::BitBtnSortClick);
  connect(ui_->BitBtnNeuNach1, &QPushButton::clicked, this, &TF_dlausw::BitBtnNeuNach1Click);
  connect(ui_->CheckBoxKompatibel, &QCheckBox::toggled, this, &TF_dlausw::CheckBoxKompatibelClick);
  connect(ui_->BtLern, &QPushButton::clicked, this, &TF_dlausw::BtLernClick);
  connect(ui_->BitBtnCancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(ui_->PageControl, &QTabWidget::currentChanged, this, &TF_dlausw::PageChanged);
  (shown.automatic == Method::RowOrder ? ui_->RadioReihe : ui_->RadioStandard)->setChecked(true);
  ui_->CheckBoxKompatibel->setChecked(shown.box_lock);
  ui_->PageControl->setCurrentWidget(shown.boxes ? ui_->TabSheetManuell : ui_->TabSheetAuto);
  PageChanged();
}

TF_dlausw::~TF_dlausw() = default;

void TF_dlausw::BitBtnSortClick() {
  if (counting_) return;
  const QScopedValueRollback<bool> counting(counting_, true);
  limits_ = ReadBoxLimits(settings_.ini);
  for (size_t i = 0; i < limit_edits_.size(); ++i) {
    limit_edits_[i]->setText(QString::number(limits_.cards[i]));
    limit_edits_[i]->setEnabled(true);
  }
  QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  CardWriter writer(file_);
  counts_ = CountBoxes(file_, writer, [this](const BoxCounts& counts) { ShowProgress(counts); });
  AllowAfterCount(counts_, limits_, commands_);
  ShowCounts();
  BuildOrder();
  QGuiApplication::restoreOverrideCursor();
  ShowCommands();
}

void TF_dlausw::BuildOrder() {
  ui_->StatusZeile->setText(u"Leitner-Index aufbauen"_s);
  std::optional<BoxOrder> order = BuildBoxOrder(file_, clock_.Now(), this);
  ui_->StatusZeile->clear();
  if (!order) messages_.Error(this, u"\nIndexaufbau Fehler,\nDefekt in Kartei.\nSiehe Hilfeindex!"_s);
  order_ = std::move(order).value_or(BoxOrder());
}

bool TF_dlausw::PaintNow() {
  const int64_t now = clock_.Milliseconds();
  if (now - painted_ < kRepaintInterval) return false;
  painted_ = now;
  return true;
}

void TF_dlausw::ShowProgress(const BoxCounts& counts) {
  if (!PaintNow()) return;
  counts_ = counts;
  ShowCounts();
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void TF_dlausw::SetPosition(int64_t position) {
  if (!PaintNow()) return;
  ui_->StatusZeile->setText(u"Leitner-Index aufbauen: %1 Karten"_s.arg(position));
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void TF_dlausw::BitBtnNeuNach1Click() {
  BringNewCards(limits_, counts_, commands_);
  ShowCounts();
  ShowCommands();
}

void TF_dlausw::BitBtnLernClick(int box) {
  choice_.method = Method::Leitner;
  choice_.box = {box, box == 1 ? counts_.boxes[0] : 0, std::move(order_)};
  choice_.box_lock = ui_->CheckBoxKompatibel->isChecked();
  WriteBoxLimits(limits_, settings_.ini);
  accept();
}

void TF_dlausw::LimitEdited(int box) {
  limits_.cards[Place(box)] = limit_edits_[Place(box)]->text().toLongLong();
  AllowAfterLimitEdit(box, counts_, limits_, commands_);
  WriteBoxLimits(limits_, settings_.ini);
  ShowCommands();
}

void TF_dlausw::CheckBoxKompatibelClick() {
  QCheckBox* box = ui_->CheckBoxKompatibel;
  SetAccent(*box, box->isChecked() ? std::nullopt : std::optional(Accent::NotKnown));
  box->setText(box->isChecked() ? u"Zeitsperre gegen vorzeitiges Weiterücken ist aktiv:"_s
                                : u"Original Leitnermethode. Nicht k o m p a t i b e l !"_s);
}

// A box is started by its own button; the button for the automatic methods would start another thing than one sees.
void TF_dlausw::PageChanged() {
  const bool boxes = ui_->PageControl->currentWidget() == ui_->TabSheetManuell;
  ui_->BtLern->setEnabled(!boxes);
  ui_->BtLern->setToolTip(boxes ? u"Hier beginnt das Lernen mit dem Knopf eines Faches"_s : u"Lernfenster anzeigen"_s);
  if (boxes) {
    ui_->BitBtnSort->setFocus();
  } else {
    (ui_->RadioReihe->isChecked() ? ui_->RadioReihe : ui_->RadioStandard)->setFocus();
  }
}

void TF_dlausw::BtLernClick() {
  choice_.method = ui_->RadioReihe->isChecked() ? Method::RowOrder : Method::Standard;
  choice_.box_lock = ui_->CheckBoxKompatibel->isChecked();
  accept();
}

void TF_dlausw::ShowCounts() {
  ui_->EditAnzNeu->setText(QString::number(counts_.fresh));
  for (size_t i = 0; i < count_edits_.size(); ++i) count_edits_[i]->setText(QString::number(counts_.boxes[i]));
}

void TF_dlausw::ShowCommands() {
  ui_->BitBtnNeuNach1->setEnabled(commands_.bring_new_cards);
  for (int box = 1; box <= kBoxes; ++box) {
    QPushButton* button = learn_buttons_[Place(box)];
    button->setEnabled(commands_.learn[Place(box)]);
    button->setToolTip(button->isEnabled() ? u"Durcharbeiten von Karteifach %1 jetzt starten"_s.arg(box)
                                           : ReasonText(box));
  }
}

QString TF_dlausw::ReasonText(int box) const {
  if (counts_.boxes[Place(box)] == 0) return u"Fach %1 ist leer"_s.arg(box);
  return u"In Fach %1 ist kein Platz für gewusste Karten: erst dort lernen oder mehr Karten zulassen"_s.arg(box + 1);
}

}  // namespace tessaro
