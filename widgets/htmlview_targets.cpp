// What on a side answers to the mouse and to keys.

#include <QAccessible>
#include <QFocusEvent>
#include <QKeyEvent>
#include <algorithm>
#include <optional>

#include "widgets/htmlview_state.h"

namespace tessaro {
namespace {

const QString kWholeHint = QStringLiteral("Klick oder Enter: Bild in voller Größe zeigen");
const QString kFittedHint = QStringLiteral("Klick oder Enter: Bild wieder einpassen");
const QString kDeadLinkHint = QStringLiteral("Dieser Verweis führt zu keiner Karte.");
const QString kVideoHint = QStringLiteral(
    "Klick oder Enter: abspielen, anhalten, fortsetzen\nDoppelklick oder Umschalt+Enter: in eigenem Fenster");

}  // namespace

const std::vector<SideTarget>& TFrameHtml::targets() const {
  return state_->targets;
}

int TFrameHtml::selected_target() const {
  return state_->selected;
}

QRect TFrameHtml::PlaceOf(int target) const {
  const QRect& rect = state_->targets[static_cast<size_t>(target)].rect;
  return {state_->paint_box->mapTo(this, rect.topLeft()), rect.size()};
}

void TFrameHtml::CollectTargets() {
  State& state = *state_;
  state.targets = TargetsOf(layout(), [this](const Fragment& picture) { return CanBeWhole(picture); });
  if (state.selected >= static_cast<int>(state.targets.size())) state.selected = kNoTarget;
}

void TFrameHtml::SelectTarget(int index) {
  State& state = *state_;
  state.selected = index;
  state.paint_box->update();
  if (index == kNoTarget) return;
  QAccessibleEvent focused(this, QAccessible::Focus);
  focused.setChild(index);
  QAccessible::updateAccessibility(&focused);
  const QRect rect = state.targets[static_cast<size_t>(index)].rect.translated(state.paint_box->pos());
  const QPoint centre = rect.center();
  ensureVisible(centre.x(), centre.y(), std::min(rect.width() / 2 + kSheetMargin, viewport()->width() / 2),
                std::min(rect.height() / 2 + kSheetMargin, viewport()->height() / 2));
}

int TFrameHtml::TargetIndexAt(QPoint point) const {
  const auto& targets = state_->targets;
  const std::optional<size_t> link = layout().links.IndexAt(point.x(), point.y());
  const auto other = std::find_if(targets.begin(), targets.end(), [point](const SideTarget& target) {
    return target.kind != SideTarget::Kind::Link && target.rect.contains(point);
  });
  if (other != targets.end()) return static_cast<int>(other - targets.begin());
  return link ? static_cast<int>(*link) : kNoTarget;
}

void TFrameHtml::Follow(int index) {
  switch (const SideTarget target = state_->targets[static_cast<size_t>(index)]; target.kind) {
    case SideTarget::Kind::Link:
      return Q_EMIT LinkClicked(target.card);
    case SideTarget::Kind::Video:
      return Q_EMIT VideoClicked(VideoPath());
    case SideTarget::Kind::Picture:
      state_->whole_pictures = !state_->whole_pictures;
      LayOutSide();
  }
}

void TFrameHtml::Enlarge(int index) {
  if (IsA(SideTarget::Kind::Video, index)) Q_EMIT VideoDoubleClicked(VideoPath());
}

bool TFrameHtml::IsA(SideTarget::Kind kind, int index) const {
  return index != kNoTarget && state_->targets[static_cast<size_t>(index)].kind == kind;
}

// Whether it is made smaller to fit into the card, or would be.
bool TFrameHtml::CanBeWhole(const Fragment& picture) const {
  const PixelSize whole = BoundedMedia(state_->pictures.Find(picture.text).size);
  const PixelSize fitted = FittedInto(state_->card, whole);
  const PixelSize shown = {picture.rect.width, picture.rect.height};
  return fitted != whole && shown == (state_->whole_pictures ? whole : fitted);
}

QString TFrameHtml::HintOf(int index) const {
  if (IsA(SideTarget::Kind::Video, index)) return kVideoHint;
  if (IsA(SideTarget::Kind::Picture, index)) return state_->whole_pictures ? kFittedHint : kWholeHint;
  const bool dead = IsA(SideTarget::Kind::Link, index) && state_->targets[static_cast<size_t>(index)].card == 0;
  return dead ? kDeadLinkHint : QString();
}

QString TFrameHtml::VideoPath() {
  return state_->pictures.PathOf(state_->targets.back().text);
}

bool TFrameHtml::HasVideo() const {
  return !state_->targets.empty() && state_->targets.back().kind == SideTarget::Kind::Video;
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

}  // namespace tessaro
