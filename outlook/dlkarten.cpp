#include "outlook/dlkarten.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QScreen>
#include <algorithm>
#include <utility>

#include "outlook/card_list_model.h"
#include "outlook/number_texts.h"
#include "ui_dlkarten.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int kQuestionLetters = 40;
constexpr int kAround = 48;  // the edges of the window and a scroll bar

}  // namespace

TF_dlkarten::TF_dlkarten(CardFile& file, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::TF_dlkarten>()), file_(file) {
  ui_->setupUi(this);
  ui_->ListCards->verticalHeader()->hide();
  ui_->ListCards->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  connect(ui_->ButtonText, &QPushButton::clicked, this,
          [this] { QGuiApplication::clipboard()->setText(model_->Text()); });
  connect(ui_->ButtonEdit, &QPushButton::clicked, this, &TF_dlkarten::EditCurrent);
  connect(ui_->ButtonClose, &QPushButton::clicked, this, &QWidget::close);
  connect(ui_->ListCards, &QAbstractItemView::doubleClicked, this, &TF_dlkarten::EditCurrent);
}

TF_dlkarten::~TF_dlkarten() = default;

void TF_dlkarten::Show(const QString& title, CardLines lines, EditCard edit) {
  edit_ = std::move(edit);
  ui_->LabelTitle->setText(title);
  ui_->ListCards->setSortingEnabled(false);
  delete std::exchange(model_, new CardListModel(file_, std::move(lines), this));
  ui_->ListCards->setModel(model_);
  connect(model_, &QAbstractItemModel::rowsRemoved, this, &TF_dlkarten::ShowCount);
  connect(model_, &QAbstractItemModel::modelReset, this, &TF_dlkarten::ShowCount);
  ShowCount();
  ui_->ListCards->horizontalHeader()->setSortIndicator(CardListModel::Number, Qt::AscendingOrder);
  ui_->ListCards->setSortingEnabled(true);
  SetColumns();
  ui_->ButtonEdit->setVisible(edit_ != nullptr);
  ui_->ButtonEdit->setDefault(true);
  ui_->ListCards->setCurrentIndex(model_->index(0, CardListModel::Question));
  ui_->ListCards->setFocus();
  show();
  raise();
  activateWindow();
}

void TF_dlkarten::ShowCount() {
  ui_->LabelCount->setText(CardsText(model_->rowCount()));
}

void TF_dlkarten::SetColumns() {
  QHeaderView& header = *ui_->ListCards->horizontalHeader();
  header.setSectionResizeMode(QHeaderView::Interactive);
  header.setSectionResizeMode(CardListModel::Question, QHeaderView::Stretch);
  const auto widen = [&](int column, QStringView sample) {
    const int least = header.sectionSizeHint(column);
    header.resizeSection(column, std::max(least, fontMetrics().horizontalAdvance(sample.toString()) + 16));
  };
  widen(CardListModel::Number, u"000000");
  widen(CardListModel::Recall, u"100 %");
  widen(CardListModel::Due, u"00.00.0000");
  widen(CardListModel::Misses, u"00");
  widen(CardListModel::Time, u"00 Std. 00 Min.");
  // In large letters the questions need a wider window.
  const int others = header.length() - header.sectionSize(CardListModel::Question);
  const int wanted = others + kQuestionLetters * fontMetrics().averageCharWidth() + kAround;
  resize(std::max(width(), std::min(wanted, screen()->availableGeometry().width())), height());
}

void TF_dlkarten::EditCurrent() {
  const QModelIndex current = ui_->ListCards->currentIndex();
  if (edit_ && current.isValid()) edit_(model_->RowOf(current));
}

}  // namespace tessaro
