#pragma once

#include <QWidget>
#include <vector>

#include "outlook/figures_model.h"
#include "widgets/plot.h"

class QLabel;
class QPushButton;
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
};

// One question of the evaluation or the forecast.
class OutlookPage : public QWidget {
  Q_OBJECT

 public:
  explicit OutlookPage(QWidget* parent = nullptr);
  // While it is worked out, the sentence says so and the old figures stay.
  void ShowWaiting();
  void Show(PageContent content);
  Plot& plot() { return *plot_; }
  void ToggleTable();
  void CopyTable();
  bool TableShown() const;

 Q_SIGNALS:
  void CardsWanted(const QString& title, const std::vector<int>& rows);

 private:
  void MakeLayout();
  void MakeButtons(QLayout& layout);
  void ShowSelection();
  void OpenSelection();

  QLabel* sentence_;
  QLabel* selection_;
  QLabel* note_;
  Plot* plot_;
  QTableView* table_;
  FiguresModel* figures_;
  QPushButton* button_cards_;
  QPushButton* button_table_;
  std::vector<std::vector<int>> rows_;
};

}  // namespace tessaro
