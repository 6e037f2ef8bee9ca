#include "widgets/plot.h"

#include <QAccessible>
#include <set>

#include "tests/support/window_test.h"
#include "widgets/plot_layout.h"
#include "widgets/side_look.h"

namespace tessaro {
namespace {

PlotContent Bars(const std::vector<double>& heights) {
  PlotContent content;
  content.name = u"Karten"_s;
  for (const double height : heights)
    content.bars.push_back({u"x"_s, {{height, PlotRole::Known}}, u"%1 Karten"_s.arg(height)});
  return content;
}

TEST(Plot, StepsAreRound) {
  const std::tuple<double, int, bool, double> cases[] = {
      {0, 5, true, 1},      {1, 5, true, 1},      {4, 5, true, 1},     {6, 5, true, 2},
      {50, 5, true, 10},    {51, 5, true, 20},    {101, 5, true, 50},  {900, 5, true, 200},
      {0.9, 5, false, 0.2}, {1.0, 5, false, 0.2}, {3e6, 5, true, 1e6}, {7, 4, false, 2}};
  for (const auto& [highest, most, whole, step] : cases)
    EXPECT_NEAR(RoundStep(highest, most, whole), step, 1e-9) << highest;
}

TEST(Plot, KeysSelectAndChooseAndTellAScreenReader) {
  Plot plot;
  plot.resize(400, 200);
  plot.show();
  plot.Show(Bars({3, 0, 12}));
  QSignalSpy chosen(&plot, &Plot::Chosen);
  // The last step of a row stays.
  const std::pair<Qt::Key, QString> cases[] = {{Qt::Key_Left, u"3 Karten"_s},   {Qt::Key_Right, u"0 Karten"_s},
                                               {Qt::Key_Right, u"12 Karten"_s}, {Qt::Key_Right, u"12 Karten"_s},
                                               {Qt::Key_Left, u"0 Karten"_s},   {Qt::Key_Home, u"3 Karten"_s},
                                               {Qt::Key_Left, u"3 Karten"_s},   {Qt::Key_End, u"12 Karten"_s}};
  QTest::keyClick(&plot, Qt::Key_Return);
  EXPECT_EQ(chosen.size(), 0) << "nothing is selected yet";
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&plot)->role(), QAccessible::Chart);
  EXPECT_EQ(QAccessible::queryAccessibleInterface(&plot)->text(QAccessible::Name), u"Karten"_s);
  for (const auto& [key, text] : cases) {
    QTest::keyClick(&plot, key);
    EXPECT_EQ(plot.TextOf(plot.selected()), text);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&plot)->text(QAccessible::Description), text);
  }
  QTest::keyClick(&plot, Qt::Key_Return);
  ASSERT_EQ(chosen.size(), 1);
  EXPECT_EQ(chosen[0][0], 2);
  QTest::keyClick(&plot, Qt::Key_Enter);
  EXPECT_EQ(chosen.size(), 2);
  plot.Show(Bars({1, 2, 3}));
  EXPECT_EQ(plot.selected(), 2);
  plot.Show(Bars({1}));
  EXPECT_EQ(plot.selected(), -1);
}

TEST(Plot, AClickMeansTheBarAboveWhichItIs) {
  Plot plot;
  plot.resize(400, 200);
  plot.Show(Bars({3, 0, 12}));
  const PlotLayout layout(plot.content(), plot.rect(), plot.font());
  QSignalSpy chosen(&plot, &Plot::Chosen);
  for (const size_t bar : {2U, 0U, 1U}) {
    QTest::mouseClick(&plot, Qt::LeftButton, {}, layout.Column(bar).center().toPoint());
    EXPECT_EQ(plot.selected(), static_cast<int>(bar));
  }
  EXPECT_EQ(chosen.size(), 3);
  QTest::mouseClick(&plot, Qt::LeftButton, {}, QPoint(1, 1));
  QTest::mouseClick(&plot, Qt::RightButton, {}, layout.Column(2).center().toPoint());
  EXPECT_EQ(chosen.size(), 3);
  EXPECT_EQ(plot.selected(), 1);
  // Who comes by the mouse has not chosen yet, who comes by Tab cannot see more than what is selected.
  for (const auto& [reason, selected] : {std::pair{Qt::MouseFocusReason, -1}, {Qt::TabFocusReason, 0}}) {
    Plot fresh;
    fresh.Show(Bars({3, 0, 12}));
    QFocusEvent focus(QEvent::FocusIn, reason);
    QApplication::sendEvent(&fresh, &focus);
    EXPECT_EQ(fresh.selected(), selected);
  }
}

TEST(Plot, ListGoesDownwardAndHasRoomForAllBars) {
  PlotContent content = Bars({60, 30, 0});
  content.lying = true;
  content.bars[0].label = QString(500, u'W');
  Plot plot;
  plot.Show(content);
  plot.resize(400, 200);
  const PlotLayout layout(plot.content(), plot.rect(), plot.font());
  EXPECT_DOUBLE_EQ(layout.Bar(0).width(), 2 * layout.Bar(1).width());
  EXPECT_GT(layout.Bar(1).top(), layout.Bar(0).bottom());
  EXPECT_LT(layout.area().left(), 200) << "a long label leaves room for the bars";
  QTest::keyClick(&plot, Qt::Key_Down);
  QTest::keyClick(&plot, Qt::Key_Down);
  EXPECT_EQ(plot.selected(), 1);
  QTest::mouseClick(&plot, Qt::LeftButton, {}, layout.LyingLabel(2).center().toPoint());
  EXPECT_EQ(plot.selected(), 2);
  QTest::keyClick(&plot, Qt::Key_Up);
  EXPECT_TRUE(plot.FrameOf(1).contains(layout.Bar(1).toAlignedRect()));
  content.bars.resize(50, content.bars[1]);
  plot.Show(content);
  const PlotLayout all(plot.content(), QRectF(QPointF(), plot.minimumSizeHint()), plot.font());
  EXPECT_GE(all.Column(49).height(), QFontMetricsF(plot.font()).height());
  EXPECT_LE(all.Column(49).bottom(), plot.minimumSizeHint().height());
}

// Lines that only lead the eye and points without a text are passed over.
TEST(Plot, SelectsPointsOrElseLinesThatSaySomething) {
  PlotContent content;
  content.points = {{.x = 0.2, .y = 1}, {.x = 0.5, .y = 4}};
  content.lines = {{.points = {{0, 0}, {1, 4}}}, {.points = {{0, 4}, {1, 4}}, .text = u"oben"_s}};
  Plot plot;
  plot.resize(400, 300);
  plot.Show(content);
  EXPECT_EQ(plot.Count(), 1);
  EXPECT_EQ(plot.TextOf(0), u"oben"_s);
  const PlotLayout layout(plot.content(), plot.rect(), plot.font());
  EXPECT_EQ(layout.ItemAt(layout.Point(0.7, 4) + QPointF(0, 5)), 0);
  EXPECT_EQ(layout.ItemAt(layout.Point(0.7, 2)), -1);
  content.points[1].text = u"Punkt"_s;
  plot.Show(content);
  EXPECT_EQ(plot.Count(), 1);
  EXPECT_EQ(plot.TextOf(0), u"Punkt"_s);
  const PlotLayout points(plot.content(), plot.rect(), plot.font());
  const double radius = points.Radius(plot.content().points[1]);
  EXPECT_EQ(points.ItemAt(points.Point(0.5, 4) + QPointF(radius + 10, 0)), 0) << "near its edge";
}

// Bars begin at 0, and so do lines that come near it. Others leave out what is far below them.
TEST(Plot, AxisLeavesOutOnlyWhatIsFarBelowLines) {
  const std::tuple<double, double, bool, double, double> cases[] = {{134, 187, false, 120, 200},
                                                                    {134, 187, true, 0, 200},
                                                                    {90, 187, false, 0, 200},
                                                                    {0.7, 1, false, 0, 1},
                                                                    {73'006, 75'659, false, 73'000, 76'000},
                                                                    {500, 500, false, 500, 501}};
  for (const auto& [low, high, from_zero, bottom, top] : cases) {
    PlotContent content;
    content.from_zero = from_zero;
    content.lines = {{.points = {{0, low}, {1, high}}}};
    const PlotLayout layout(content, QRectF(0, 0, 600, 300), QFont());
    EXPECT_EQ(layout.y_bottom(), bottom) << low;
    EXPECT_EQ(layout.y_top(), top) << low;
    EXPECT_NEAR(layout.Point(0, low).y(),
                layout.area().bottom() - layout.area().height() * (low - bottom) / (top - bottom), 1e-9);
  }
  PlotContent content = Bars({100, 900, 0});
  content.y_max = 200;
  content.bars[0].mark = 7.3;
  const PlotLayout layout(content, QRectF(0, 0, 600, 300), QFont());
  EXPECT_EQ(layout.Bar(1).top(), layout.area().top());
  EXPECT_EQ(layout.right_top(), 8);
  EXPECT_TRUE(layout.IsCut(1) && !layout.IsCut(0));
}

// What differs differs for those who see no colours, too, and stands out from its ground in both themes.
TEST(Plot, TellsByMoreThanColour) {
  for (const QColor& base : {QColor(Qt::white), QColor(0x1E, 0x1F, 0x21)}) {
    Plot plot;
    QPalette palette;
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Window, base);
    palette.setColor(QPalette::Text, base == Qt::white ? Qt::black : Qt::white);
    palette.setColor(QPalette::WindowText, palette.color(QPalette::Text));
    plot.setPalette(palette);
    plot.resize(400, 300);
    PlotContent content = Bars({9, 9, 9});
    content.bars[1].parts[0].role = PlotRole::NotKnown;
    content.bars[2].parts[0].role = PlotRole::New;
    plot.Show(content);
    const QImage image = plot.grab().toImage();
    const PlotLayout layout(plot.content(), plot.rect(), plot.font());
    for (const size_t bar : {0U, 1U, 2U}) {
      const QColor colour = PlotColour(content.bars[bar].parts[0].role, palette);
      EXPECT_GT(Contrast(colour, base), base == Qt::white ? 3.8 : 5.5) << bar;
      std::set<QRgb> seen;
      const QRect inside = layout.Bar(bar).toAlignedRect().adjusted(4, 40, -4, -4);
      for (int y = inside.top(); y < inside.top() + 12; ++y) seen.insert(image.pixel(inside.center().x(), y));
      EXPECT_EQ(seen.size() > 1, bar > 0) << bar;
    }
  }
}

TEST(Plot, PaintsOneCardBesideThousandsMarksAndCuts) {
  PlotContent content = Bars({1, 5000, 90'000});
  content.y_max = 6000;
  content.bars[0].mark = 60;
  content.bars[1].mark = 30;
  Plot plot;
  plot.resize(600, 400);
  plot.Show(content);
  const QImage image = plot.grab().toImage();
  const PlotLayout layout(plot.content(), plot.rect(), plot.font());
  const auto seen = [&](size_t bar, double top, double bottom) {
    std::set<QRgb> colours;
    for (double y = top; y <= bottom; ++y)
      colours.insert(image.pixel(QPointF(layout.Column(bar).center().x(), y).toPoint()));
    return colours;
  };
  const QRgb bar = PlotColour(PlotRole::Known, plot.palette()).rgb();
  const double axis = layout.area().bottom();
  const std::set<QRgb> one = seen(0, axis - 3, axis);
  EXPECT_TRUE(std::any_of(one.begin(), one.end(), [](QRgb c) { return qBlue(c) > qRed(c) + 60; })) << "it is blue";
  EXPECT_TRUE(seen(1, axis - 60, axis - 50) == std::set{bar});
  const double middle = axis - layout.area().height() / 2;
  EXPECT_TRUE(seen(1, middle - 1, middle + 1).contains(plot.palette().color(QPalette::Text).rgb())) << "its mark";
  EXPECT_TRUE(seen(2, layout.area().top(), axis - 60).contains(plot.palette().color(QPalette::Base).rgb())) << "cut";
  EXPECT_TRUE(seen(2, layout.area().top() + 1, layout.area().top() + 5).contains(bar));
}

TEST(Plot, BarsStandOnTheAxisAndLabelsApart) {
  PlotContent content = Bars(std::vector<double>(90, 40));
  for (PlotBar& bar : content.bars) bar.label = u"22.11."_s;
  const PlotLayout layout(content, QRectF(0, 0, 600, 300), QFont());
  EXPECT_DOUBLE_EQ(layout.Bar(0).bottom(), layout.area().bottom());
  EXPECT_DOUBLE_EQ(layout.Bar(89).height(), layout.area().height());
  const double room = layout.Column(0).width() * static_cast<double>(layout.LabelStride());
  EXPECT_GT(room, QFontMetricsF(QFont()).horizontalAdvance(u"22.11."_s));
  // Nothing is drawn of no content, at no size.
  Plot plot;
  plot.Show({});
  plot.resize(1, 1);
  EXPECT_FALSE(plot.grab().isNull());
}

}  // namespace
}  // namespace tessaro
