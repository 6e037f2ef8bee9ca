#include "learn/dldata.h"

#include <QDateTime>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTableWidget>

#include "learn/interval_plot.h"
#include "learn/statistics_texts.h"
#include "settings/decimal_text.h"
#include "ui_dldata.h"
#include "widgets/text.h"
#include "widgets/theme.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

void SetRow(QTableWidget* table, int row, const QStringList& texts, bool quiet = false) {
  for (int column = 0; column < texts.size(); ++column) {
    QTableWidgetItem* item = table->item(row, column);
    if (item == nullptr) {
      item = new QTableWidgetItem;
      item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
      table->setItem(row, column, item);
    }
    item->setText(texts[column]);
    const QColor grey = table->palette().color(QPalette::Disabled, QPalette::Text);
    item->setData(Qt::ForegroundRole, quiet ? QVariant(QBrush(grey)) : QVariant());
  }
}

// When an answer was given, for people.
QString MomentText(int64_t time) {
  return time == 0 ? QString() : QDateTime::fromSecsSinceEpoch(time).toString(u"dd.MM.yyyy HH:mm"_s);
}

QString GermanText(const std::string& text) {
  return FromBytes(WithComma(text));
}

void Prepare(QTableWidget* table, const QStringList& heads) {
  table->setColumnCount(static_cast<int>(heads.size()));
  table->setHorizontalHeaderLabels(heads);
  table->verticalHeader()->hide();
  table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + 4);
  table->resizeColumnsToContents();
  table->horizontalHeader()->setStretchLastSection(true);
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
}

}  // namespace

TF_dldata::TF_dldata(QWidget* parent) : QWidget(parent, Qt::Dialog), ui_(std::make_unique<Ui::TF_dldata>()) {
  ui_->setupUi(this);
  // The keys stay with the learning window.
  setAttribute(Qt::WA_ShowWithoutActivating);
  Prepare(ui_->GridVerlauf, {u"Nr."_s, u"Antwort"_s, u"am"_s, u"Abstand (Tage)"_s, u"Zeit (s)"_s, u"Abstand (s)"_s});
  Prepare(ui_->GridReihe1, {u"x"_s, u"Abstand (s)"_s});
  for (QLabel* label : {ui_->LabelMethode, ui_->LabelGerade1, ui_->LabelGerade2, ui_->LabelPredict1, ui_->LabelPredict2,
                        ui_->LabelGewicht}) {
    MakeQuiet(*label);
  }
  Prepare(ui_->GridReihe2, {u"x"_s, u"Abstand (s)"_s});
}

TF_dldata::~TF_dldata() = default;

void TF_dldata::Clear() {
  ui_->LabelTitel->setText(u"Nach der nächsten Antwort steht hier, wie sich ihre Behaltenszeit ergibt."_s);
  ShowRecall({});
  for (QTableWidget* table : {ui_->GridVerlauf, ui_->GridReihe1, ui_->GridReihe2}) table->setRowCount(0);
  for (QLineEdit* edit : findChildren<QLineEdit*>()) {
    edit->clear();
    edit->setPlaceholderText({});
  }
  ui_->Abstaende->Show(IntervalContent(std::nullopt));
}

void TF_dldata::Show(const AnswerStatistics& statistics, const QString& title) {
  ui_->LabelTitel->setText(u"Karte: "_s + title);
  const StatisticsTexts texts = TextsOf(statistics);
  ShowHistory(texts, statistics.history.times);
  ShowSeries(ui_->GridReihe1, texts.trends[0]);
  ShowSeries(ui_->GridReihe2, texts.trends[1]);
  const QString no_line = statistics.forecast ? u"zu wenige Abstände"_s : QString();
  ui_->Edit_y1->setPlaceholderText(no_line);
  ui_->Edit_y2->setPlaceholderText(no_line);
  ui_->Edit_y1->setText(GermanText(texts.trends[0].line));
  ui_->Edit_y2->setText(GermanText(texts.trends[1].line));
  ui_->EditPredict1->setText(GermanText(texts.trends[0].prediction));
  ui_->EditPredict2->setText(GermanText(texts.trends[1].prediction));
  ui_->EditGewicht->setText(statistics.forecast ? FromBytes(texts.score) : u"0;  (ohne Berechnung)"_s);
  ui_->EditStatus->setText(statistics.history.corrected ? u"Korrektur Zeitreihe"_s : QString());
  ui_->Abstaende->Show(IntervalContent(statistics.forecast));
}

void TF_dldata::ShowRecall(const QString& text) {
  ui_->LabelGewusst->setText(text);
  ui_->LabelGewusst->setVisible(!text.isEmpty());
}

void TF_dldata::ShowHistory(const StatisticsTexts& texts, std::span<const int64_t> times) {
  ui_->GridVerlauf->setRowCount(static_cast<int>(texts.history.size()));
  for (size_t i = 0; i < texts.history.size(); ++i) {
    const HistoryRowText& text = texts.history[i];
    SetRow(ui_->GridVerlauf, static_cast<int>(i),
           {FromBytes(text.number), FromBytes(text.letter), MomentText(times[i]), FromBytes(text.days),
            FromBytes(text.time), FromBytes(text.interval)},
           text.empty);
  }
  // Once, and not with every cell: that would take a second.
  ui_->GridVerlauf->resizeColumnsToContents();
}

void TF_dldata::ShowSeries(QTableWidget* table, const TrendTexts& texts) {
  table->setRowCount(static_cast<int>(texts.rows.size()));
  int row = 0;
  for (const SeriesRowText& text : texts.rows) SetRow(table, row++, {FromBytes(text.x), FromBytes(text.interval)});
  table->resizeColumnsToContents();
}

void TF_dldata::closeEvent(QCloseEvent* event) {
  QWidget::closeEvent(event);
  Q_EMIT Closed();
}

}  // namespace tessaro
