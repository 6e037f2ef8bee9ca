#include "edit/wnsign.h"

#include <QHeaderView>

#include "settings/kept_place.h"
#include "ui_wnsign.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int kCellsInRow = 12;

}  // namespace

TF_wnsign::TF_wnsign(ProgramSettings& settings, const std::array<SideLook, 2>& looks, QWidget* parent)
    : QDialog(parent), settings_(settings), looks_(looks), ui_(std::make_unique<Ui::TF_wnsign>()) {
  ui_->setupUi(this);
  ui_->ZeichenTabelle->setColumnCount(kCellsInRow);
  ui_->ZeichenTabelle->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  ui_->ZeichenTabelle->horizontalHeader()->setMinimumSectionSize(24);
  RestoreWindowPlace(*this, settings_.ini, place_suffix::kCharacters);
  connect(ui_->BitBtnOK, &QAbstractButton::clicked, this, &TF_wnsign::Choose);
  connect(ui_->ZeichenTabelle, &QTableWidget::cellDoubleClicked, this, &TF_wnsign::Choose);
  connect(ui_->ZeichenTabelle, &QTableWidget::itemChanged, this, &TF_wnsign::CellChanged);
  connect(ui_->BitBtnNeu, &QAbstractButton::clicked, this, [this] { Load(side_); });
  connect(ui_->BitBtnVH, &QAbstractButton::clicked, this,
          [this] { Load(side_ == EditSide::Front ? EditSide::Back : EditSide::Front); });
  connect(ui_->BitBtnClose, &QAbstractButton::clicked, this, &QDialog::close);
}

TF_wnsign::~TF_wnsign() = default;

void TF_wnsign::Open(EditSide side) {
  Load(side);
  show();
  raise();
  activateWindow();
  ui_->ZeichenTabelle->setFocus();
}

void TF_wnsign::Load(EditSide side) {
  loading_ = true;
  side_ = side;
  const CodePage page = Page();
  const std::string characters = ReadCharacters(settings_.ini, side, page);
  const int rows = (static_cast<int>(characters.size()) + kCellsInRow - 1) / kCellsInRow;
  ui_->ZeichenTabelle->setRowCount(rows);
  for (int cell = 0; cell < rows * kCellsInRow; ++cell) {
    const auto at = static_cast<size_t>(cell);
    const QString text = at < characters.size() ? FromBytes({&characters[at], 1}, page).trimmed() : QString();
    auto* item = new QTableWidgetItem(text);
    item->setTextAlignment(Qt::AlignCenter);
    ui_->ZeichenTabelle->setItem(cell / kCellsInRow, cell % kCellsInRow, item);
  }
  ui_->ZeichenTabelle->setFont(looks_[side == EditSide::Front ? 0 : 1].font);
  ui_->ZeichenTabelle->verticalHeader()->setDefaultSectionSize(ui_->ZeichenTabelle->fontMetrics().height() + 10);
  ui_->ZeichenTabelle->setCurrentCell(0, 0);
  ui_->BitBtnVH->setText(side == EditSide::Front ? u"Vorderseite"_s : u"Rückseite"_s);
  loading_ = false;
}

CodePage TF_wnsign::Page() const {
  return looks_[side_ == EditSide::Front ? 0 : 1].page;
}

void TF_wnsign::CellChanged(QTableWidgetItem* item) {
  if (loading_) return;
  loading_ = true;
  // One character of the code page, or an empty cell.
  QString text = item->text().trimmed().left(1);
  if (!ToBytes(text, Page())) text.clear();
  item->setText(text);
  loading_ = false;
  Keep();
}

void TF_wnsign::Keep() {
  std::string characters;
  for (int cell = 0; cell < ui_->ZeichenTabelle->rowCount() * kCellsInRow; ++cell) {
    const QTableWidgetItem* item = ui_->ZeichenTabelle->item(cell / kCellsInRow, cell % kCellsInRow);
    const std::string byte = ToBytes(item->text(), Page()).value_or(std::string());
    characters += byte.empty() ? ' ' : byte.front();
  }
  WriteCharacters(characters, side_, settings_.ini, Page());
}

void TF_wnsign::Choose() {
  const QTableWidgetItem* item = ui_->ZeichenTabelle->currentItem();
  if (item != nullptr && !item->text().isEmpty()) Q_EMIT CharacterChosen(item->text());
}

void TF_wnsign::hideEvent(QHideEvent* event) {
  KeepWindowPlace(*this, settings_.ini, place_suffix::kCharacters);
  QDialog::hideEvent(event);
}

}  // namespace tessaro
