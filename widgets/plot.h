#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "widgets/theme.h"

namespace tessaro {

// A part of a bar; the parts stand on each other.
struct PlotPart {
  double value = 0;
  PlotRole role = PlotRole::Known;
};

struct PlotBar {
  QString label;  // under the axis
  std::vector<PlotPart> parts;
  QString text;                               // what it says, in words: "80 bis 90 %: 412 Karten, 18 %"
  std::optional<double> mark = std::nullopt;  // a value on the right scale
  QString note = {};                          // behind a lying bar
};

struct PlotPoint {
  double x = 0;
  double y = 0;
  double low = 0;  // ends of its whisker; none where both are the same
  double high = 0;
  double weight = 1;  // 0 ... 1, of its area
  PlotRole role = PlotRole::Known;
  bool hollow = false;
  QString text = {};
};

struct PlotLine {
  std::vector<QPointF> points = {};
  PlotRole role = PlotRole::Known;
  Qt::PenStyle style = Qt::SolidLine;
  QString label = {};  // beside its last point
  QString text = {};   // empty: it only leads the eye and cannot be selected
};

struct PlotTick {
  double at = 0;
  QString label;
};

struct PlotLegend {
  QString text;
  PlotRole role = PlotRole::Known;
};

// What a plot shows. Selected are its bars, or where it has none its points with a text, or its lines with one.
struct PlotContent {
  QString name;   // what is shown, for those who cannot see it
  QString empty;  // stands in the place of an empty plot
  std::vector<PlotBar> bars;
  bool lying = false;  // the bars are a list: one below the other, each between its label and its note
  std::vector<PlotLine> lines;
  std::vector<PlotPoint> points;
  std::vector<PlotLegend> legend;
  double x_min = 0;  // of lines and points
  double x_max = 1;
  std::vector<PlotTick> x_ticks;
  double y_max = 0;       // 0: round, above all that is shown; higher bars are cut off, visibly
  bool from_zero = true;  // of lines: false lets the axis begin higher when they all run far above 0
  double y_step = 0;      // between the lines; 0: round
  QString y_title;
  std::function<QString(double)> y_text;  // null: whole numbers
  QString right_title;                    // of the marks
};

// A step of 1, 2 or 5 times a power of ten, so that at most `most` of them reach `highest`. Not below 1 when `whole`.
double RoundStep(double highest, int most, bool whole);

// Draws bars, lines and points in the colours of the theme, never telling by colour alone. The arrow keys, Home and End
// select what is shown, Enter or a click chooses it; what is selected is told to screen readers.
class Plot : public QWidget {
  Q_OBJECT

 public:
  // Shows an empty plot.
  explicit Plot(QWidget* parent = nullptr);
  // The selection stays where the same number of things is shown.
  void Show(PlotContent content);
  const PlotContent& content() const { return content_; }

  // The things that can be selected, counted from 0 as PlotContent says; the selected one; -1: none.
  int Count() const;
  QString TextOf(int item) const;
  int selected() const { return selected_; }  // -1 = nothing
  void Select(int item);
  // What frames it.
  QRect FrameOf(int item) const;
  QSize sizeHint() const override { return minimumSizeHint().expandedTo({480, 280}); }
  // That of a list has room for all its bars.
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  // Another thing was selected, or one was chosen by Enter or a double click.
  void SelectionChanged(int item);
  void Chosen(int item);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  bool event(QEvent* event) override;

 private:
  int ItemAt(const QPointF& point) const;

  PlotContent content_;
  int selected_ = -1;
};

}  // namespace tessaro
