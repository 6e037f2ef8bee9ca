#pragma once

#include <QWidget>
#include <vector>

#include "outlook/figures_model.h"
#include "widgets/plot.h"

class QLabel;
class QModelIndex;
class QPushButton;
class QScrollArea;
class QSplitter;
class QTableView;

namespace tessaro {

// What a page shows: a sentence that answers its question, the plot, the same figures as a table, and the cards behind
// every bar, point or line.
struct PageContent {
  QString sentence;
  QString note;
  PlotContent plot;
  FigureTable table;
  std::vector<std::vector<int>> rows;  // card table rows, by what can be selected in the plot
  // Of a plot whose bars are single cards: all of them, and what they are.
  std::vector<int> all_rows = {};
  QString all_title = {};
};

// One question of the evaluation or the forecast.
class OutlookPage : public QWidget {
  Q_OBJECT

 public:
  explicit OutlookPage(QWidget* parent = nullptr);
  // While it is worked out, the sentence says so and the last figures stay.
  void ShowWaiting();
  // Nothing is worked out any more: the sentence is that of the last figures again.
  void ShowLast();
  void Show(PageContent content);
  // The cards behind what is shown are no longer in these rows.
  void ForgetCards();
  Plot& plot() { return *plot_; }
  void ToggleTable();
  void CopyTable();
  bool TableShown() const;

 Q_SIGNALS:
  void CardsWanted(const QString& title, const std::vector<int>& rows);
  void CardWanted(const QString& title, int row);

 private:
  void MakeLayout();
  void MakeButtons(QLayout& layout);
  void ShowSelection();
  std::vector<int> SelectedRows() const;
  void OpenSelection();
  void OpenCards();
  void SelectByTable(const QModelIndex& line);
  void OpenTable(bool open);

  QString answer_;  // the sentence of the last figures
  QLabel* sentence_;
  QLabel* selection_;
  QLabel* note_;
  QSplitter* splitter_;
  QScrollArea* plot_view_;
  Plot* plot_;
  QTableView* table_;
  FiguresModel* figures_;
  QPushButton* button_cards_;
  QPushButton* button_table_;
  std::vector<std::vector<int>> rows_;
  std::vector<int> all_rows_;
  QString all_title_;
  bool lines_are_items_ = false;  // the table has a line for each thing that can be selected in the plot
};

}  // namespace tessaro
