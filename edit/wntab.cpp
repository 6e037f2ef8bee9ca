#include "edit/wntab.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QShortcut>
#include <QShowEvent>
#include <algorithm>

#include "edit/card_model.h"
#include "edit/card_work.h"
#include "edit/wnsuch.h"
#include "settings/kept_place.h"
#include "settings/side_settings.h"
#include "ui_wntab.h"
#include "widgets/count_texts.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

using namespace Qt::StringLiterals;

namespace tessaro {
TF_wntab::TF_wntab(CardFile& file, CardDesk& desk, ProgramSettings& settings, const Clock& clock, Messages& messages,
                   const std::array<SideLook, 2>& looks, QWidget* parent)
    : QDialog(parent),
      file_(file),
      desk_(desk),
      settings_(settings),
      clock_(clock),
      messages_(messages),
      looks_(looks),
      ui_(std::make_unique<Ui::TF_wntab>()),
      model_(new CardModel(file, this)) {
  ui_->setupUi(this);
  // No dialog over the editor: either may stand in front.
  setWindowFlags(Qt::Window);
  ui_->StringGridTab->horizontalHeader()->setSortIndicator(CardModel::Number, Qt::AscendingOrder);
  ui_->StringGridTab->setModel(model_);
  ui_->StringGridTab->verticalScrollBar()->setObjectName(u"ScrollBarTab"_s);
  ui_->StringGridTab->horizontalHeader()->setStretchLastSection(true);
  ui_->StringGridTab->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  RestoreWindowPlace(*this, settings_.ini, place_suffix::kTable);
  connect(ui_->StringGridTab, &QAbstractItemView::doubleClicked, this, &TF_wntab::BitBtnEditorClick);
  connect(ui_->BitBtnStart, &QAbstractButton::clicked, this, &TF_wntab::BitBtnStartClick);
  connect(ui_->EditSuchen, &QLineEdit::returnPressed, this, &TF_wntab::BitBtnStartClick);
  connect(ui_->BitBtnEditor, &QAbstractButton::clicked, this, [this] {
    if (!ui_->EditSuchen->hasFocus()) BitBtnEditorClick();
  });
  connect(ui_->BitBtnLoeschen, &QAbstractButton::clicked, this, &TF_wntab::BitBtnLoeschenClick);
  MakeKeys();
  connect(ui_->BitBtnStatistik, &QAbstractButton::clicked, this, &TF_wntab::BitBtnStatistikClick);
  connect(ui_->BitBtnDrucken, &QAbstractButton::clicked, this, &TF_wntab::PrintWanted);
  connect(new QShortcut(QKeySequence(u"Ctrl+P"_s), this), &QShortcut::activated, this, &TF_wntab::PrintWanted);
  connect(ui_->BitBtnFontV, &QAbstractButton::clicked, this, [this] { SetSideFont(looks_[0]); });
  connect(ui_->BitBtnFontH, &QAbstractButton::clicked, this, [this] { SetSideFont(looks_[1]); });
  connect(ui_->BitBtnClose, &QAbstractButton::clicked, this, &QDialog::reject);
}

TF_wntab::~TF_wntab() = default;

// Of the grid, in which whole rows are marked.
void TF_wntab::MakeKeys() {
  const auto key = [this](Qt::Key pressed, auto&& run) {
    connect(new QShortcut(pressed, ui_->StringGridTab, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated,
            this, run);
  };
  key(Qt::Key_Delete, [this] { ui_->BitBtnLoeschen->click(); });
  key(Qt::Key_Home, [this] { ShowRow(model_->CardRow(0)); });
  key(Qt::Key_End, [this] { ShowRow(model_->CardRow(model_->rowCount() - 1)); });
}

void TF_wntab::Open(int card_row) {
  model_->ShowAnew();
  for (QAbstractButton* changes : {ui_->BitBtnLoeschen, ui_->BitBtnStatistik}) {
    changes->setDisabled(file_.read_only());
    if (file_.read_only()) changes->setToolTip(u"Die Kartei ist nur zum Lesen geöffnet"_s);
  }
  show();
  ShowRow(card_row);
  raise();
  activateWindow();
  ui_->StringGridTab->setFocus();
}

// The sides share what the other columns leave.
void TF_wntab::FitColumns() {
  const QFontMetrics metrics = ui_->StringGridTab->fontMetrics();
  const int letter = metrics.averageCharWidth();
  int room = ui_->StringGridTab->viewport()->width();
  const auto set = [&](CardModel::Column column, int width) {
    ui_->StringGridTab->setColumnWidth(column, width);
    room -= width;
  };
  set(CardModel::Number, letter * 9);
  set(CardModel::Id, letter * 10);
  set(CardModel::Retention, metrics.horizontalAdvance(u"Behaltenszeit"_s) + letter * 5);
  set(CardModel::LastAnswer, metrics.horizontalAdvance(u"00.00.0000 00:00"_s) + letter * 3);
  set(CardModel::Topic, letter * 12);
  const int side = std::clamp(room / 2, letter * 12, letter * 60);
  set(CardModel::Front, side);
  set(CardModel::Back, side);
}

void TF_wntab::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (!event->spontaneous()) FitColumns();
}

void TF_wntab::hideEvent(QHideEvent* event) {
  KeepWindowPlace(*this, settings_.ini, place_suffix::kTable);
  QDialog::hideEvent(event);
}

void TF_wntab::ShowRow(int card_row) {
  const QModelIndex index = model_->index(model_->ViewRow(card_row), CardModel::Front);
  ui_->StringGridTab->setCurrentIndex(index);
  ui_->StringGridTab->scrollTo(index, QAbstractItemView::PositionAtCenter);
}

int TF_wntab::CurrentRow() const {
  return std::max(model_->CardRow(ui_->StringGridTab->currentIndex().row()), 0);
}

std::vector<int> TF_wntab::MarkedRows() const {
  std::vector<int> rows;
  for (const QItemSelectionRange& range : ui_->StringGridTab->selectionModel()->selection()) {
    for (int view_row = range.top(); view_row <= range.bottom(); ++view_row) rows.push_back(model_->CardRow(view_row));
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  std::erase(rows, -1);
  return rows;
}

// Searches in the order of the view, behind the marked row.
void TF_wntab::BitBtnStartClick() {
  const SideCodePages pages = ReadCodePages(file_.settings());
  const SoughtText text = SoughtTextOf(ui_->EditSuchen->text(), pages);
  if (text.empty()) return ui_->LabelErgebnis->setText(u"Bitte eine Zeichenfolge eingeben"_s);
  Q_EMIT StoreWanted();
  const CardSearch search({.first = text, .second = {}, .ignore_case = true, .pages = pages});
  const auto row_at = [this](int place) { return model_->CardRow(place - kFirstCardRow); };
  const int next = ui_->StringGridTab->currentIndex().row() + 1;
  SearchResult result;
  {
    CardWork work(this, clock_, u"Karten durchsuchen"_s, file_);
    result = SearchCards(file_, search, next + kFirstCardRow, work.keep_going(), row_at);
  }
  ui_->LabelErgebnis->setText(result.cancelled  ? u"Suche abgebrochen"_s
                              : result.row == 0 ? u"Zeichenfolge(n) nicht gefunden"_s
                                                : u"gefunden: Karte %1"_s.arg(result.row - 1));
  if (result.row != 0) ShowRow(result.row);
}

void TF_wntab::BitBtnEditorClick() {
  if (CurrentRow() != 0) Q_EMIT EditorWanted(CurrentRow());
}

void TF_wntab::BitBtnLoeschenClick() {
  const std::vector<int> rows = MarkedRows();
  if (rows.empty()) return;
  Q_EMIT StoreWanted();
  desk_.MarkAll(rows);
  model_->ShowAnew();
  Q_EMIT CardsTouched();
  const bool marked = file_.deletion_marks().Has(rows.front());
  ui_->LabelErgebnis->setText(
      (marked ? u"Gelöscht: %1 (entfernt, wenn Editor und Tabelle geschlossen sind)"_s : u"Wiederhergestellt: %1"_s)
          .arg(CardsText(std::ssize(rows))));
}

void TF_wntab::BitBtnStatistikClick() {
  const std::vector<int> rows = MarkedRows();
  if (rows.empty()) return;
  if (rows.size() > 1 && messages_.Question(this, u"\nStatistik von %1 Karten\nwirklich löschen?"_s.arg(rows.size()),
                                            u"Löschen"_s, u"Nicht löschen"_s, {}, Answer::No) != Answer::Yes) {
    return;
  }
  Q_EMIT StoreWanted();
  const bool done = desk_.ResetAll(rows);
  model_->ShowAnew();
  Q_EMIT CardsTouched();
  ui_->LabelErgebnis->setText(done ? u"Statistik gelöscht: %1"_s.arg(CardsText(std::ssize(rows)))
                                   : u"Update fehlgeschlagen"_s);
}

void TF_wntab::SetSideFont(const SideLook& look) {
  ui_->StringGridTab->setFont(look.font);
  ui_->StringGridTab->verticalHeader()->setDefaultSectionSize(QFontMetrics(look.font).height() + 6);
}

}  // namespace tessaro
