#include "widgets/htmlview.h"

#include <QAccessible>
#include <QElapsedTimer>
#include <QFontInfo>
#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>
#include <exception>
#include <mutex>
#include <utility>
#include <vector>

#include "hypertext/plain_text.h"
#include "widgets/htmlview_state.h"
#include "widgets/painter.h"
#include "widgets/shown_side.h"
#include "widgets/side_accessible.h"
#include "widgets/text.h"
#include "widgets/video_screen.h"

namespace tessaro {
namespace {

constexpr QSize kInitialSize = {499, 319};
constexpr int kLettersPerLine = 75;  // longer lines are hard to read
constexpr int kLeastPicture = 16;    // pictures are not made smaller to fit
constexpr int kItemsAtOnce = 2000;   // of a side, laid out before it is shown

int PointsOf(const QFont& font) {
  return font.pointSize() > 0 ? font.pointSize() : QFontInfo(font).pointSize();
}

}  // namespace

class TFrameHtml::PaintBox : public QWidget {
 public:
  PaintBox(TFrameHtml& frame, QWidget* parent) : QWidget(parent), frame_(frame) { setMouseTracking(true); }

 protected:
  void paintEvent(QPaintEvent* event) override {
    State& state = *frame_.state_;
    QPainter painter(this);
    frame_.Guard([&] {
      QColor mark = palette().color(QPalette::Highlight);
      mark.setAlphaF(0.35F);
      for (const QRect& rect : state.marked.Rects(frame_.layout(), state.texts)) painter.fillRect(rect, mark);
      if (!PaintSide(painter, frame_.layout(), event->rect(), state.look, state.texts, state.pictures))
        QMetaObject::invokeMethod(&frame_, &TFrameHtml::LayOutSide, Qt::QueuedConnection);
    });
    if (state.selected != kNoTarget) PaintSelection(painter, state.targets[static_cast<size_t>(state.selected)].rect);
  }

  void mouseMoveEvent(QMouseEvent* event) override {
    if (marking_) {
      frame_.state_->marked.ExtendTo(TextPlaceAt(*event));
      return update();
    }
    const int hit = frame_.TargetIndexAt(event->position().toPoint());
    setCursor(hit != kNoTarget ? Qt::PointingHandCursor : Qt::ArrowCursor);
    setToolTip(frame_.HintOf(hit));
  }

  void mousePressEvent(QMouseEvent* event) override {
    if (event->button() != Qt::LeftButton) return event->ignore();
    frame_.state_->marked.Clear();
    update();
    const int hit = frame_.TargetIndexAt(event->position().toPoint());
    if (hit != kNoTarget) return frame_.Follow(hit);
    marking_ = true;
    frame_.state_->marked.Begin(TextPlaceAt(*event));
  }

  void mouseReleaseEvent(QMouseEvent* /*event*/) override { marking_ = false; }

  // The second press of a double click would follow a link of the card that has just appeared.
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    frame_.Enlarge(frame_.TargetIndexAt(event->position().toPoint()));
  }

 private:
  TextPlace TextPlaceAt(const QMouseEvent& event) const {
    return PlaceAt(frame_.layout(), event.position().toPoint(), frame_.state_->texts);
  }

  void PaintSelection(QPainter& painter, const QRect& rect) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRoundedRect(QRectF(rect).adjusted(-2, -1, 2, 1), 3, 3);
  }

  TFrameHtml& frame_;
  bool marking_ = false;
};

TFrameHtml::TFrameHtml(QWidget* parent) : QScrollArea(parent), state_(std::make_unique<State>()) {
  state_->look = {font(), Qt::black, Qt::white};
  state_->paper = new QWidget;
  state_->paper->setAutoFillBackground(true);
  state_->paint_box = new PaintBox(*this, state_->paper);
  state_->paint_box->setObjectName(QStringLiteral("PaintBox"));
  state_->panel_video = new VideoScreen(state_->paint_box);
  state_->panel_video->setObjectName(QStringLiteral("PanelVideo"));
  state_->panel_video->hide();
  setWidget(state_->paper);
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::StrongFocus);
  static std::once_flag once;
  std::call_once(once, [] { QAccessible::installFactory(&MakeSideAccessible); });
  setAccessibleName(QStringLiteral("Kartenseite"));
  connect(&state_->continuation, &QTimer::timeout, this, &TFrameHtml::LayOutMore);
  state_->pictures.SetObserver([this] { state_->paint_box->update(); });
  resize(kInitialSize);
}

TFrameHtml::~TFrameHtml() = default;

void TFrameHtml::SetMediaFolders(const MediaFolders& folders) {
  state_->pictures.SetFolders(folders);
}

void TFrameHtml::SetLinkColours(std::function<ColourClass(int64_t)> colours) {
  state_->colours = std::move(colours);
}

const Layout& TFrameHtml::layout() const {
  static const Layout kNothing;
  return state_->work ? state_->work->layout() : kNothing;
}

CodePage TFrameHtml::page() const {
  return state_->look.page;
}

void TFrameHtml::ShowSide(std::string_view side, const SideLook& look) {
  State& state = *state_;
  state.side = ShownSide(side);
  state.look = look;
  state.texts.SetFont(look.font, state.zoom, look.page);
  state.pictures.Forget();
  state.failure_told = false;
  state.whole_pictures = false;
  state.told_sounds = 0;
  CloseVideoPanel();
  Guard([&] { setAccessibleDescription(FromBytes(PlainText(state.side), look.page)); });
  DressPaper();
  SelectTarget(kNoTarget);
  LayOutSide();
  horizontalScrollBar()->setValue(0);
  verticalScrollBar()->setValue(0);
  TellSounds();
}

void TFrameHtml::ChangeLook(const SideLook& look) {
  state_->look = look;
  state_->texts.SetFont(look.font, state_->zoom, look.page);
  DressPaper();
  LayOutSide();
}

void TFrameHtml::DressPaper() {
  QPalette paper = palette();
  paper.setColor(QPalette::Window, state_->look.paper);
  state_->paper->setPalette(paper);
}

void TFrameHtml::SetZoom(double zoom) {
  state_->zoom = zoom;
  ChangeLook(state_->look);
}

void TFrameHtml::TellSounds() {
  Guard([&] {
    const std::vector<std::string> sounds = layout().sounds;
    const size_t told = std::exchange(state_->told_sounds, sounds.size());
    for (size_t i = told; i < sounds.size(); ++i) Q_EMIT SoundWanted(state_->pictures.PathOf(sounds[i]));
  });
}

QString TFrameHtml::MarkedText() const {
  return state_->marked.Text(layout(), state_->texts);
}

void TFrameHtml::MarkAll() {
  state_->marked.SelectAll(layout());
  state_->paint_box->update();
}

// Nothing of Qt lets an exception pass: here is the last place where the program can go on.
void TFrameHtml::Guard(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception&) {
    state_->continuation.stop();
    state_->work.reset();
    CollectTargets();
    TellDrawingFailed();
  }
}

void TFrameHtml::LayOutSide() {
  state_->continuation.stop();
  Guard([this] { LayOutParts(); });
  PlacePaintBox();
}

void TFrameHtml::LayOutParts() {
  State& state = *state_;
  // The room of the vertical scroll bar is always kept free, so that its coming and going moves no text.
  const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
  QFont letters = state.look.font;
  letters.setPointSizeF(PointsOf(letters) * state.zoom);
  const int column = QFontMetrics(letters).averageCharWidth() * kLettersPerLine;
  const int across = contentsRect().width() - 2 * kSheetMargin - bar;
  const int height = contentsRect().height() - 2 * kSheetMargin;
  const PixelSize card = {std::max(across - 2 * kPageMargin, kLeastPicture),
                          std::max(height - 2 * kPageMargin, kLeastPicture)};
  BeginLayout({std::min(across, column), height}, card);
  // A side fills the frame's height; where it needs the bar below, that bar's room is not to make it scroll vertically.
  const PixelSize& size = layout().size;
  const bool bar_below = size.width + 2 * kSheetMargin > contentsRect().width();
  if (bar_below && size.height <= height) BeginLayout({std::min(across, column), height - bar}, card);
}

void TFrameHtml::BeginLayout(PixelSize room, PixelSize card) {
  State& state = *state_;
  state.card = card;
  if (state.whole_pictures) card = {kMaxMediaPixels, kMaxMediaPixels};
  state.marked.Clear();
  state.work.reset();
  state.measurer = std::make_unique<QtMeasurer>(state.texts, state.pictures, state.colours, card);
  state.work = std::make_unique<LayoutWork>(state.side, PixelSize{std::max(room.width, 1), std::max(room.height, 1)},
                                            PointsOf(state.look.font), *state.measurer);
  if (state.work->Continue(kItemsAtOnce)) state.continuation.start(0);
  LayOutFor(0);
}

// What is left of a long side follows beside the user's keys.
void TFrameHtml::LayOutFor(int milliseconds) {
  State& state = *state_;
  QElapsedTimer time;
  time.start();
  while (state.continuation.isActive() && time.elapsed() < milliseconds)
    if (!state.work->Continue(kItemsAtOnce / 10)) state.continuation.stop();
  CollectTargets();
  if (layout().broken_off) TellDrawingFailed();
}

void TFrameHtml::LayOutMore() {
  constexpr int kSlice = 30;
  Guard([this] { LayOutFor(kSlice); });
  PlacePaintBox();
  TellSounds();
}

void TFrameHtml::PlacePaintBox() {
  State& state = *state_;
  const QSize size(layout().size.width, layout().size.height);
  const int left = std::max(kSheetMargin, (contentsRect().width() - size.width()) / 2);
  state.paint_box->setGeometry(QRect(QPoint(left, kSheetMargin), size));
  if (HasVideo()) state.panel_video->setGeometry(state.targets.back().rect);
  const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
  state.paper->setMinimumSize(std::max(size.width() + 2 * kSheetMargin, left + size.width()),
                              size.height() + 2 * kSheetMargin);
  verticalScrollBar()->setSingleStep(std::max(QFontMetrics(state.look.font).height(), bar));
  state.paint_box->update();
}

// Told once a side, and not out of the middle of drawing.
void TFrameHtml::TellDrawingFailed() {
  if (std::exchange(state_->failure_told, true)) return;
  QMetaObject::invokeMethod(this, &TFrameHtml::DrawingFailed, Qt::QueuedConnection);
}

VideoScreen* TFrameHtml::OpenVideoPanel() {
  if (!HasVideo()) return nullptr;
  state_->panel_video->show();
  return state_->panel_video;
}

void TFrameHtml::CloseVideoPanel() {
  state_->panel_video->hide();
}

void TFrameHtml::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  LayOutSide();
}

}  // namespace tessaro
