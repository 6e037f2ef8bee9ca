#include "widgets/htmlview.h"

#include <QFocusEvent>
#include <QFontInfo>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>
#include <exception>
#include <utility>
#include <vector>

#include "hypertext/plain_text.h"
#include "widgets/painter.h"
#include "widgets/picture_store.h"
#include "widgets/qt_measurer.h"
#include "widgets/text.h"
#include "widgets/text_cache.h"
#include "widgets/video_screen.h"

namespace tessaro {
namespace {

constexpr QSize kInitialSize = {499, 319};
constexpr int kPaper = 16;           // paper around the paint box
constexpr int kLettersPerLine = 75;  // longer lines are hard to read
constexpr int kNoTarget = -1;
const QString kVideoHint = QStringLiteral(
    "Klick oder Enter: abspielen, anhalten, fortsetzen\nDoppelklick oder Umschalt+Enter: in eigenem Fenster");

int PointsOf(const QFont& font) {
  return font.pointSize() > 0 ? font.pointSize() : QFontInfo(font).pointSize();
}

}  // namespace

// Something that can be clicked: the link areas of the layout, in their order, and behind them the video area.
struct TFrameHtml::Target {
  QRect rect;
  int32_t card = 0;
  bool video = false;
};

struct TFrameHtml::State {
  std::string side;
  SideLook look;
  std::function<ColourClass(int64_t)> colours;
  TextCache texts;
  PictureStore pictures;
  Layout layout;
  std::vector<Target> targets;
  int selected = kNoTarget;
  bool failure_told = false;
  QWidget* paper = nullptr;
  QWidget* paint_box = nullptr;
  VideoScreen* panel_video = nullptr;
};

class TFrameHtml::PaintBox : public QWidget {
 public:
  PaintBox(TFrameHtml& frame, QWidget* parent) : QWidget(parent), frame_(frame) { setMouseTracking(true); }

 protected:
  void paintEvent(QPaintEvent* event) override {
    State& state = *frame_.state_;
    QPainter painter(this);
    frame_.Guard([&] {
      if (!PaintSide(painter, state.layout, event->rect(), state.look.text, state.texts, state.pictures))
        QMetaObject::invokeMethod(&frame_, &TFrameHtml::LayOutSide, Qt::QueuedConnection);
    });
    if (state.selected != kNoTarget) PaintSelection(painter, state.targets[static_cast<size_t>(state.selected)].rect);
  }

  void mouseMoveEvent(QMouseEvent* event) override {
    const int hit = frame_.TargetIndexAt(event->position().toPoint());
    setCursor(hit != kNoTarget ? Qt::PointingHandCursor : Qt::ArrowCursor);
    setToolTip(frame_.IsVideo(hit) ? kVideoHint : QString());
  }

  void mousePressEvent(QMouseEvent* event) override {
    const int hit = event->button() == Qt::LeftButton ? frame_.TargetIndexAt(event->position().toPoint()) : kNoTarget;
    if (hit == kNoTarget) return event->ignore();
    frame_.Follow(hit);
  }

  // The second press of a double click would follow a link of the card that has just appeared.
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    frame_.Enlarge(frame_.TargetIndexAt(event->position().toPoint()));
  }

 private:
  void PaintSelection(QPainter& painter, const QRect& rect) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRoundedRect(QRectF(rect).adjusted(-2, -1, 2, 1), 3, 3);
  }

  TFrameHtml& frame_;
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
  setAccessibleName(QStringLiteral("Kartenseite"));
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
  return state_->layout;
}

void TFrameHtml::ShowSide(std::string_view side, const SideLook& look) {
  State& state = *state_;
  state.side = side;
  state.look = look;
  state.texts.SetFont(look.font);
  state.pictures.Forget();
  state.failure_told = false;
  CloseVideoPanel();
  Guard([&] { setAccessibleDescription(FromBytes(PlainText(side))); });
  QPalette paper = palette();
  paper.setColor(QPalette::Window, look.paper);
  state.paper->setPalette(paper);
  SelectTarget(kNoTarget);
  LayOutSide();
  horizontalScrollBar()->setValue(0);
  verticalScrollBar()->setValue(0);
  Guard([&] {
    const std::vector<std::string> sounds = state.layout.sounds;
    for (const std::string& sound : sounds) Q_EMIT SoundWanted(state.pictures.PathOf(sound));
  });
}

// Nothing of Qt lets an exception pass: here is the last place where the program can go on.
void TFrameHtml::Guard(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::exception&) {
    state_->layout = {};
    CollectTargets();
    TellDrawingFailed();
  }
}

void TFrameHtml::LayOutSide() {
  Guard([this] { LayOutParts(); });
  PlacePaintBox();
}

void TFrameHtml::LayOutParts() {
  State& state = *state_;
  // The room of the vertical scroll bar is always kept free, so that its coming and going moves no text.
  const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
  const int column = QFontMetrics(state.look.font).averageCharWidth() * kLettersPerLine;
  const int width = std::min(contentsRect().width() - 2 * kPaper - bar, column);
  const int height = contentsRect().height() - 2 * kPaper;
  QtMeasurer measurer(state.texts, state.pictures, state.colours);
  const auto lay_out = [&](int room) {
    state.layout = LayOut(state.side, {std::max(width, 1), std::max(room, 1)}, PointsOf(state.look.font), measurer);
  };
  lay_out(height);
  // A side fills the frame's height; where it needs the bar below, that bar's room is not to make it scroll vertically.
  const bool bar_below = state.layout.size.width + 2 * kPaper > contentsRect().width();
  if (bar_below && state.layout.size.height <= height) lay_out(height - bar);
  CollectTargets();
  if (state.layout.broken_off) TellDrawingFailed();
}

void TFrameHtml::PlacePaintBox() {
  State& state = *state_;
  const QSize size(state.layout.size.width, state.layout.size.height);
  const int left = std::max(kPaper, (contentsRect().width() - size.width()) / 2);
  state.paint_box->setGeometry(QRect(QPoint(left, kPaper), size));
  if (HasVideo()) state.panel_video->setGeometry(state.targets.back().rect);
  const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
  state.paper->setMinimumSize(std::max(size.width() + 2 * kPaper, left + size.width()), size.height() + 2 * kPaper);
  verticalScrollBar()->setSingleStep(std::max(QFontMetrics(state.look.font).height(), bar));
  state.paint_box->update();
}

void TFrameHtml::CollectTargets() {
  State& state = *state_;
  state.targets.clear();
  for (const LinkArea& area : state.layout.links.areas())
    state.targets.push_back({QRect(QPoint(area.left, area.top), QPoint(area.right, area.bottom)), area.target, false});
  for (const Fragment& fragment : state.layout.fragments) {
    if (fragment.kind != Fragment::Kind::Video) continue;
    const PixelRect& rect = fragment.rect;
    state.targets.push_back({QRect(rect.left, rect.top, rect.width, rect.height), 0, true});
  }
  if (state.selected >= static_cast<int>(state.targets.size())) state.selected = kNoTarget;
}

void TFrameHtml::SelectTarget(int index) {
  State& state = *state_;
  state.selected = index;
  state.paint_box->update();
  if (index == kNoTarget) return;
  const QRect rect = state.targets[static_cast<size_t>(index)].rect.translated(state.paint_box->pos());
  const QPoint centre = rect.center();
  ensureVisible(centre.x(), centre.y(), std::min(rect.width() / 2 + kPaper, viewport()->width() / 2),
                std::min(rect.height() / 2 + kPaper, viewport()->height() / 2));
}

int TFrameHtml::TargetIndexAt(QPoint point) const {
  if (HasVideo() && state_->targets.back().rect.contains(point)) return static_cast<int>(state_->targets.size()) - 1;
  const std::optional<size_t> link = state_->layout.links.IndexAt(point.x(), point.y());
  return link ? static_cast<int>(*link) : kNoTarget;
}

void TFrameHtml::Follow(int index) {
  const Target target = state_->targets[static_cast<size_t>(index)];
  target.video ? Q_EMIT VideoClicked(VideoPath()) : Q_EMIT LinkClicked(target.card);
}

void TFrameHtml::Enlarge(int index) {
  if (IsVideo(index)) Q_EMIT VideoDoubleClicked(VideoPath());
}

bool TFrameHtml::IsVideo(int index) const {
  return index != kNoTarget && state_->targets[static_cast<size_t>(index)].video;
}

QString TFrameHtml::VideoPath() {
  const auto& fragments = state_->layout.fragments;
  const auto video = std::find_if(fragments.begin(), fragments.end(),
                                  [](const Fragment& fragment) { return fragment.kind == Fragment::Kind::Video; });
  return state_->pictures.PathOf(video->text);
}

// Told once a side, and not out of the middle of drawing.
void TFrameHtml::TellDrawingFailed() {
  if (std::exchange(state_->failure_told, true)) return;
  QMetaObject::invokeMethod(this, &TFrameHtml::DrawingFailed, Qt::QueuedConnection);
}

bool TFrameHtml::HasVideo() const {
  return !state_->targets.empty() && state_->targets.back().video;
}

VideoScreen* TFrameHtml::OpenVideoPanel() {
  if (!HasVideo()) return nullptr;
  state_->panel_video->show();
  return state_->panel_video;
}

void TFrameHtml::CloseVideoPanel() {
  state_->panel_video->hide();
}

bool TFrameHtml::event(QEvent* event) {
  // Enter belongs to a selected link before it belongs to a shortcut of the window.
  if (event->type() == QEvent::ShortcutOverride && state_->selected != kNoTarget) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
      event->accept();
      return true;
    }
  }
  return QScrollArea::event(event);
}

bool TFrameHtml::focusNextPrevChild(bool next) {
  const int count = static_cast<int>(state_->targets.size());
  const int step = next ? 1 : -1;
  const int wanted = state_->selected == kNoTarget ? (next ? 0 : count - 1) : state_->selected + step;
  if (hasFocus() && wanted >= 0 && wanted < count) {
    SelectTarget(wanted);
    return true;
  }
  SelectTarget(kNoTarget);
  return QScrollArea::focusNextPrevChild(next);
}

void TFrameHtml::focusInEvent(QFocusEvent* event) {
  QScrollArea::focusInEvent(event);
  const int count = static_cast<int>(state_->targets.size());
  if (count == 0) return;
  if (event->reason() == Qt::TabFocusReason) SelectTarget(0);
  if (event->reason() == Qt::BacktabFocusReason) SelectTarget(count - 1);
}

void TFrameHtml::focusOutEvent(QFocusEvent* event) {
  QScrollArea::focusOutEvent(event);
  if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason)
    SelectTarget(kNoTarget);
}

void TFrameHtml::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && event->modifiers() & Qt::ShiftModifier) return Enlarge(state_->selected);
  if (enter && state_->selected != kNoTarget) return Follow(state_->selected);
  QScrollArea::keyPressEvent(event);
}

void TFrameHtml::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  LayOutSide();
}

}  // namespace tessaro
