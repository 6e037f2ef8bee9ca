#include "app/dlcheck.h"

#include <QHeaderView>
#include <QPushButton>
#include <QShortcut>
#include <QStyledItemDelegate>

#include "app/check_model.h"
#include "app/check_texts.h"
#include "ui_dlcheck.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

// The frame of an empty box is drawn a little darker than the window, which in a dark list cannot be seen.
class BoxDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    option->palette.setColor(QPalette::Window, option->palette.color(QPalette::Text));
  }
};

constexpr int kShownLetters = 24;
constexpr int kFaultLetters = 46;

}  // namespace

TF_dlcheck::TF_dlcheck(const CardFile& file, const DeckReport& report, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::TF_dlcheck>()), model_(new CheckModel(file, report.findings, this)) {
  ui_->setupUi(this);
  ui_->LabelSummary->setText(u"Das ist aufgefallen: %1."_s.arg(SummaryText(report)));
  ui_->ListFindings->setModel(model_);
  ui_->ListFindings->setItemDelegate(new BoxDelegate(this));
  SetColumns();
  ui_->ButtonBox->button(QDialogButtonBox::Ok)->setText(u"Ausgewählte &reparieren"_s);
  ui_->ButtonBox->button(QDialogButtonBox::Cancel)->setText(u"Sch&ließen"_s);
  connect(ui_->ButtonAll, &QPushButton::clicked, this, [this] { model_->ChooseAll(true); });
  connect(ui_->ButtonNone, &QPushButton::clicked, this, [this] { model_->ChooseAll(false); });
  connect(model_, &CheckModel::ChoiceChanged, this, &TF_dlcheck::ShowChoice);
  // The box of a row stands in its last column; the space bar is to reach it from any.
  auto* space = new QShortcut(Qt::Key_Space, ui_->ListFindings);
  space->setContext(Qt::WidgetShortcut);
  connect(space, &QShortcut::activated, this, &TF_dlcheck::ToggleRow);
  connect(ui_->ListFindings->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &TF_dlcheck::ShowDetail);
  constexpr int kDetailLines = 2;
  ui_->LabelDetail->setMinimumHeight(kDetailLines * fontMetrics().lineSpacing());
  ui_->ListFindings->setCurrentIndex(model_->index(0, CheckModel::CardId));
  ShowChoice();
  ui_->ListFindings->setFocus();
}

TF_dlcheck::~TF_dlcheck() = default;

void TF_dlcheck::SetColumns() {
  const int letter = fontMetrics().averageCharWidth();
  QHeaderView& header = *ui_->ListFindings->header();
  header.resizeSection(CheckModel::CardId, fontMetrics().horizontalAdvance(u"0000000000"_s));
  header.resizeSection(CheckModel::Question, kShownLetters * letter);
  header.resizeSection(CheckModel::Fault, kFaultLetters * letter);
}

void TF_dlcheck::ShowChoice() {
  QPushButton& repair = *ui_->ButtonBox->button(QDialogButtonBox::Ok);
  repair.setEnabled(model_->ChosenCount() > 0);
  repair.setToolTip(repair.isEnabled() ? QString() : u"Es ist keine Reparatur ausgewählt"_s);
}

void TF_dlcheck::ShowDetail(const QModelIndex& row) {
  QStringList texts;
  for (const int column : {CheckModel::Fault, CheckModel::Repair}) {
    texts << row.siblingAtColumn(column).data().toString();
  }
  ui_->LabelDetail->setText(texts.join(u'\n'));
}

void TF_dlcheck::ToggleRow() {
  const QModelIndex box = ui_->ListFindings->currentIndex().siblingAtColumn(CheckModel::Repair);
  if (!(model_->flags(box) & Qt::ItemIsUserCheckable)) return;
  const bool on = model_->data(box, Qt::CheckStateRole).toInt() == Qt::Checked;
  model_->setData(box, on ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
}

std::vector<DeckFinding> TF_dlcheck::Chosen() const {
  return model_->Chosen();
}

}  // namespace tessaro
