#include "print/printed_pages.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <utility>

#include "widgets/count_texts.h"

namespace tessaro {
namespace {

using namespace Qt::StringLiterals;

constexpr int kGutter = 16;      // between the columns of a list
constexpr int kRowPadding = 6;   // below and above what stands in a row of a list
constexpr int kFootHeight = 24;  // of a list, below its rows
constexpr int kFootPixels = 11;  // its letters
constexpr int kCardPadding = 6;  // around what stands on a card
constexpr int kMark = 10;        // the corner that says that something is missing
const QColor kRule(176, 176, 176);

// A line as thin as the device has it, whatever the scale.
QPen RulePen() {
  QPen pen(kRule, 0);
  pen.setCosmetic(true);
  return pen;
}

// A black corner says that a side goes on where there is no room for it.
void PaintMark(QPainter& painter, const QRect& room) {
  const QPointF corner(room.left() + room.width(), room.top() + room.height());
  QPainterPath mark;
  mark.addPolygon(QPolygonF({corner, corner - QPointF(kMark, 0), corner - QPointF(0, kMark), corner}));
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(mark, Qt::black);
}

}  // namespace

PrintedPages::PrintedPages(PrintSource source, PrintOrder order)
    : source_(std::move(source)),
      order_(std::move(order)),
      front_(source_.front, pictures_),
      back_(source_.back, pictures_) {
  if (order_.form == PrintForm::List) order_.sides = PrintSides::Both;
  pictures_.SetFolders(source_.folders);
  pictures_.SetReadsAtOnce(true);
  all_known_ = source_.cards == 0;
  if (!all_known_) starts_.emplace_back();
}

void PrintedPages::SetPictureObserver(std::function<void()> read) {
  pictures_.SetReadsAtOnce(read == nullptr);
  pictures_.SetObserver(std::move(read));
}

SideName PrintedPages::SideOf(int n) const {
  const bool back = order_.sides == PrintSides::Both ? n % 2 == 1 : order_.sides == PrintSides::Backs;
  return back ? SideName::Back : SideName::Front;
}

CardSheet PrintedPages::Sheet() const {
  CardSheet sheet = {order_.paper, order_.margin, order_.columns, order_.rows};
  if (order_.paper.width > order_.paper.height) std::swap(sheet.columns, sheet.rows);
  return sheet;
}

int PrintedPages::Count() const {
  return InFlow() ? static_cast<int>(starts_.size()) : Sheet().Sheets(source_.cards) * SidesOfACard();
}

bool PrintedPages::AllKnown() const {
  return all_known_ || !InFlow();
}

int PrintedPages::CardsBefore(int page) const {
  if (!InFlow()) return std::min(page / SidesOfACard() * Sheet().Cells(), source_.cards);
  const int item = starts_[static_cast<size_t>(page)].item;
  return order_.form == PrintForm::List ? item : item / SidesOfACard();
}

bool PrintedPages::FindPage() {
  if (AllKnown()) return false;
  const FlowPlace next = Fill(Count() - 1).next;
  all_known_ = next.item >= Rules().items;
  if (!all_known_) starts_.push_back(next);
  return !all_known_;
}

PixelRect PrintedPages::Body() const {
  const int foot = order_.form == PrintForm::List ? kFootHeight : 0;
  return {order_.margin, order_.margin, std::max(order_.paper.width - 2 * order_.margin, 1),
          std::max(order_.paper.height - 2 * order_.margin - foot, 1)};
}

FlowRules PrintedPages::Rules() const {
  const bool list = order_.form == PrintForm::List;
  return {.items = list ? source_.cards : source_.cards * SidesOfACard(), .height = Body().height, .alone = !list};
}

void PrintedPages::FlowItem::Add(FittedSide side, int room_height, int padding) {
  strips.push_back(CutIntoStrips(side.layout, room_height * 100 / side.percent));
  heights.resize(std::max(heights.size(), strips.back().size()));
  for (size_t part = 0; part < strips.back().size(); ++part) {
    const Strip& strip = strips.back()[part];
    heights[part] = std::max(heights[part], LengthOnPaper(strip.bottom - strip.top, side.percent) + padding);
  }
  columns.push_back(std::move(side));
}

PrintedPages::FlowItem PrintedPages::LayOutRow(int card) {
  constexpr int kPadding = 2 * kRowPadding;
  const PixelRect body = Body();
  const PixelSize room = {std::max((body.width - kGutter) / 2, 1), std::max(body.height - kPadding, 1)};
  FlowItem row;
  for (const SideName name : {SideName::Front, SideName::Back}) {
    SidePrinter& printer = PrinterOf(name);
    const SideFit fit = {order_.percent, printer.LeastPercent(order_.percent), false};
    row.Add(printer.Fit(source_.side(card, name), room, fit), room.height, kPadding);
  }
  return row;
}

PrintedPages::FlowItem PrintedPages::LayOutLarge(int item) {
  const PixelSize room = {Body().width, Body().height};
  SidePrinter& printer = PrinterOf(SideOf(item));
  const auto fit = [&](const SideFit& how) {
    return printer.Fit(source_.side(item / SidesOfACard(), SideOf(item)), room, how);
  };
  const int least = printer.LeastPercent(order_.percent);
  const int a_little_less = Enlarges() ? std::max(least, order_.percent * 7 / 10) : order_.percent;
  FittedSide side = fit({std::max(order_.most_percent, order_.percent), a_little_less, true});
  // What does not fit goes on on the next page.
  if (side.cut) side = fit({order_.percent, least, false});
  FlowItem large;
  large.Add(std::move(side), room.height, 0);
  return large;
}

const FlowPage& PrintedPages::Fill(int page) {
  if (page == filled_) return page_;
  const FlowPlace start = starts_[static_cast<size_t>(page)];
  // The item that did not fit on the page before is kept.
  std::erase_if(items_, [&](const auto& item) { return item.first != start.item; });
  page_ = FillPage(start, Rules(), [this](int item) {
    const auto known = items_.find(item);
    if (known != items_.end()) return known->second.heights;
    return (items_[item] = order_.form == PrintForm::List ? LayOutRow(item) : LayOutLarge(item)).heights;
  });
  filled_ = page;
  return page_;
}

void PrintedPages::Paint(QPainter& painter, int page) {
  painter.save();
  InFlow() ? PaintFlow(painter, page) : PaintSheet(painter, page);
  painter.restore();
}

void PrintedPages::PaintFlow(QPainter& painter, int page) {
  for (const FlowPart& part : Fill(page).parts) {
    const FlowItem& item = items_.at(part.place.item);
    order_.form == PrintForm::List ? PaintListPart(painter, part, item) : PaintLargePart(painter, part, item);
  }
  if (order_.form == PrintForm::List) PaintFoot(painter, page);
}

void PrintedPages::PaintListPart(QPainter& painter, const FlowPart& part, const FlowItem& item) {
  const PixelRect body = Body();
  const int top = body.top + part.top;
  const int step = (body.width - kGutter) / 2 + kGutter;
  for (size_t column = 0; column < item.columns.size(); ++column) {
    const auto n = static_cast<size_t>(part.place.part);
    if (n >= item.strips[column].size()) continue;
    const QRect room(body.left + static_cast<int>(column) * step, top, step - kGutter, part.height);
    const QPoint place = room.topLeft() + QPoint(0, kRowPadding);
    (column == 0 ? front_ : back_).Paint(painter, item.columns[column], item.strips[column][n], place, room);
    if (item.columns[column].cut) PaintMark(painter, room);
  }
  painter.setPen(RulePen());
  const int bottom = top + part.height;
  painter.drawLine(body.left, bottom, body.left + body.width, bottom);
  const int middle = body.left + body.width / 2;
  painter.drawLine(middle, top, middle, bottom);
  if (part.top == 0) painter.drawLine(body.left, top, body.left + body.width, top);
}

void PrintedPages::PaintLargePart(QPainter& painter, const FlowPart& part, const FlowItem& item) {
  const QRect room(Body().left, Body().top, Body().width, Body().height);
  const FittedSide& side = item.columns.front();
  QPoint place = room.topLeft();
  if (item.heights.size() == 1 && Enlarges()) {
    place += QPoint(std::max(room.width() - LengthOnPaper(side.content.width, side.percent), 0) / 2,
                    std::max(room.height() - LengthOnPaper(side.content.height, side.percent), 0) / 2);
  }
  const Strip& strip = item.strips.front()[static_cast<size_t>(part.place.part)];
  PrinterOf(SideOf(part.place.item)).Paint(painter, side, strip, place, room);
  if (side.cut) PaintMark(painter, room);
}

void PrintedPages::PaintFoot(QPainter& painter, int page) const {
  const PixelRect body = Body();
  QFont font;
  font.setPixelSize(kFootPixels);
  font.setHintingPreference(QFont::PreferNoHinting);
  painter.setFont(font);
  painter.setPen(Qt::darkGray);
  const QRect foot(body.left, body.top + body.height, body.width, kFootHeight);
  const QString number = u"Seite %1"_s.arg(NumberText(page + 1));
  const int room = foot.width() - QFontMetrics(font).horizontalAdvance(number) - kGutter;
  painter.drawText(foot, Qt::AlignLeft | Qt::AlignBottom,
                   QFontMetrics(font).elidedText(order_.title, Qt::ElideRight, room));
  painter.drawText(foot, Qt::AlignRight | Qt::AlignBottom, number);
}

void PrintedPages::PaintSheet(QPainter& painter, int page) {
  const CardSheet sheet = Sheet();
  const int first = CardsBefore(page);
  const int cards = std::min(sheet.Cells(), source_.cards - first);
  const SideName side = SideOf(page);
  for (int n = 0; n < cards; ++n) {
    const PixelRect cell = sheet.Cell(side == SideName::Front ? n : sheet.Behind(n));
    PaintCard(painter, cell, first + n, side);
    if (side == SideName::Back && order_.sides == PrintSides::Both) continue;
    painter.setPen(RulePen());
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(cell.left, cell.top, cell.width, cell.height);
  }
}

void PrintedPages::PaintCard(QPainter& painter, const PixelRect& cell, int card, SideName name) {
  const QRect room(cell.left + kCardPadding, cell.top + kCardPadding, std::max(cell.width - 2 * kCardPadding, 1),
                   std::max(cell.height - 2 * kCardPadding, 1));
  SidePrinter& printer = PrinterOf(name);
  const SideFit fit = {order_.percent, printer.LeastPercent(order_.percent), true};
  const FittedSide side = printer.Fit(source_.side(card, name), {room.width(), room.height()}, fit);
  const auto before = [&side](int length, int content) {
    return std::max(length - LengthOnPaper(content, side.percent), 0) / 2;
  };
  const QPoint place =
      room.topLeft() + QPoint(before(room.width(), side.content.width), before(room.height(), side.content.height));
  printer.Paint(painter, side, CutIntoStrips(side.layout, room.height() * 100 / side.percent).front(), place, room);
  if (side.cut) PaintMark(painter, room);
}

}  // namespace tessaro
