#include "outlook/outlook_page.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QSplitter>
#include <QTableView>
#include <utility>

#include "widgets/theme.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr double kSentence = 1.2;  // times the normal size

QLabel* TextLabel(const QString& name, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

}  // namespace

OutlookPage::OutlookPage(QWidget* parent)
    : QWidget(parent),
      sentence_(TextLabel(u"LabelAntwort"_s, this)),
      selection_(TextLabel(u"LabelAuswahl"_s, this)),
      note_(TextLabel(u"LabelHinweis"_s, this)),
      splitter_(new QSplitter(Qt::Vertical, this)),
      plot_view_(new QScrollArea(this)),
      plot_(new Plot(this)),
      table_(new QTableView(this)),
      figures_(new FiguresModel(this)),
      button_cards_(new QPushButton(u"&Karten zeigen"_s, this)),
      button_table_(new QPushButton(u"&Tabelle"_s, this)) {
  QFont font = sentence_->font();
  font.setPointSizeF(font.pointSizeF() * kSentence);
  sentence_->setFont(font);
  plot_->setObjectName(u"Diagramm"_s);
  table_->setObjectName(u"Tabelle"_s);
  table_->setModel(figures_);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->verticalHeader()->hide();
  table_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
  table_->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
  plot_view_->setWidget(plot_);
  plot_view_->setWidgetResizable(true);
  plot_view_->setFrameShape(QFrame::NoFrame);
  plot_view_->setFocusPolicy(Qt::NoFocus);
  plot_view_->setMinimumSize(240, 160);
  MakeLayout();
  OpenTable(false);
  connect(plot_, &Plot::SelectionChanged, this, &OutlookPage::ShowSelection);
  connect(plot_, &Plot::Chosen, this, &OutlookPage::OpenSelection);
  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &OutlookPage::SelectByTable);
  connect(table_, &QAbstractItemView::activated, this, [this](const QModelIndex& line) {
    SelectByTable(line);
    if (lines_are_items_) OpenSelection();
  });
  ShowSelection();
}

void OutlookPage::MakeLayout() {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(sentence_);
  splitter_->setObjectName(u"Teilung"_s);
  splitter_->addWidget(plot_view_);
  splitter_->addWidget(table_);
  splitter_->setStretchFactor(0, 3);
  splitter_->setStretchFactor(1, 2);
  splitter_->setCollapsible(0, false);
  layout->addWidget(splitter_, 1);
  connect(splitter_, &QSplitter::splitterMoved, this,
          [this] { button_table_->setChecked(splitter_->sizes().back() > 0); });
  layout->addWidget(selection_);
  MakeButtons(*layout);
}

void OutlookPage::MakeButtons(QLayout& layout) {
  static_cast<QVBoxLayout&>(layout).addWidget(note_);
  auto* line = new QHBoxLayout;
  line->addStretch(1);
  auto* copy = new QPushButton(u"Als Tabelle ko&pieren"_s, this);
  copy->setObjectName(u"ButtonKopieren"_s);
  copy->setToolTip(u"Die Zahlen mit Tabulatoren in die Zwischenablage legen"_s);
  button_table_->setObjectName(u"ButtonTabelle"_s);
  button_table_->setCheckable(true);
  button_table_->setToolTip(u"Dieselben Zahlen als Tabelle zeigen (Strg+T)"_s);
  button_cards_->setObjectName(u"ButtonKarten"_s);
  for (QPushButton* button : {button_table_, copy, button_cards_}) {
    button->setAutoDefault(false);
    line->addWidget(button);
  }
  static_cast<QVBoxLayout&>(layout).addLayout(line);
  connect(button_table_, &QPushButton::toggled, this, &OutlookPage::OpenTable);
  connect(copy, &QPushButton::clicked, this, &OutlookPage::CopyTable);
  connect(button_cards_, &QPushButton::clicked, this, &OutlookPage::OpenCards);
}

void OutlookPage::ShowWaiting() {
  sentence_->setText(u"Wird berechnet …"_s);
}

void OutlookPage::ShowLast() {
  sentence_->setText(answer_);
}

void OutlookPage::Show(PageContent content) {
  answer_ = content.sentence;
  ShowLast();
  // Said once is enough.
  if (content.plot.empty == content.sentence) content.plot.empty.clear();
  MakeQuiet(*note_);
  MakeQuiet(*selection_);
  note_->setText(content.note);
  rows_ = std::move(content.rows);
  all_rows_ = std::move(content.all_rows);
  all_title_ = content.all_title;
  lines_are_items_ = content.table.rows.size() == rows_.size();
  figures_->Show(std::move(content.table));
  if (figures_->columnCount() > 0) table_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
  plot_->Show(std::move(content.plot));
  ShowSelection();
}

void OutlookPage::ForgetCards() {
  rows_.clear();
  all_rows_.clear();
  ShowSelection();
}

void OutlookPage::SelectByTable(const QModelIndex& line) {
  if (lines_are_items_ && line.isValid()) plot_->Select(line.row());
}

// It may also have been pulled up.
void OutlookPage::OpenTable(bool open) {
  table_->setFocusPolicy(open ? Qt::StrongFocus : Qt::NoFocus);
  if (open && splitter_->sizes().back() > 0) return;
  constexpr int kParts = 100;
  splitter_->setSizes(open ? QList<int>{3 * kParts, 2 * kParts} : QList<int>{5 * kParts, 0});
}

void OutlookPage::ToggleTable() {
  button_table_->toggle();
  (TableShown() ? static_cast<QWidget*>(table_) : plot_)->setFocus();
}

bool OutlookPage::TableShown() const {
  return button_table_->isChecked();
}

void OutlookPage::CopyTable() {
  QGuiApplication::clipboard()->setText(figures_->Text());
}

std::vector<int> OutlookPage::SelectedRows() const {
  const auto item = static_cast<size_t>(plot_->selected());
  return plot_->selected() >= 0 && item < rows_.size() ? rows_[item] : std::vector<int>();
}

void OutlookPage::ShowSelection() {
  const int item = plot_->selected();
  const bool single = !all_rows_.empty();
  const QString hint = plot_->Count() == 0 ? QString()
                       : single            ? u"Pfeiltasten wählen aus, Eingabe oder ein Klick öffnet die Karte."_s
                                           : u"Pfeiltasten wählen aus, Eingabe oder ein Klick zeigt die Karten."_s;
  selection_->setText(item < 0 ? hint : plot_->TextOf(item));
  if (item >= 0) {
    const QRect frame = plot_->FrameOf(item);
    plot_view_->ensureVisible(frame.center().x(), frame.center().y(), 0, frame.height());
  }
  const bool has_cards = single || !SelectedRows().empty();
  button_cards_->setEnabled(has_cards);
  button_cards_->setToolTip(single      ? u"Alle diese Karten als Liste zeigen"_s
                            : has_cards ? u"Die Karten hinter der Auswahl zeigen (Eingabe)"_s
                            : item < 0  ? u"Erst im Diagramm etwas auswählen"_s
                                        : u"Dahinter stehen keine Karten"_s);
}

void OutlookPage::OpenSelection() {
  const std::vector<int> rows = SelectedRows();
  if (rows.empty()) return;
  const QString title = plot_->TextOf(plot_->selected());
  all_rows_.empty() ? Q_EMIT CardsWanted(title, rows) : Q_EMIT CardWanted(title, rows.front());
}

void OutlookPage::OpenCards() {
  all_rows_.empty() ? OpenSelection() : Q_EMIT CardsWanted(all_title_, all_rows_);
}

}  // namespace tessaro
