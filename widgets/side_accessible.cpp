#include "widgets/side_accessible.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <QWindow>
#include <algorithm>
#include <vector>

#include "widgets/htmlview.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

// The target with this place in the list, whatever side is shown.
class TargetAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  TargetAccessible(TFrameHtml& frame, int index) : frame_(&frame), index_(index) {}

  bool isValid() const override { return frame_ && index_ < static_cast<int>(frame_->targets().size()); }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return isValid() ? frame_->window()->windowHandle() : nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(frame_); }
  QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
  void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
  QString text(QAccessible::Text kind) const override {
    return isValid() && kind == QAccessible::Name ? FromBytes(Target().text, frame_->page()) : QString();
  }
  QRect rect() const override {
    if (!isValid()) return {};
    const QRect place = frame_->PlaceOf(index_);
    return {frame_->mapToGlobal(place.topLeft()), place.size()};
  }
  QAccessible::Role role() const override {
    const bool link = !isValid() || Target().kind == SideTarget::Kind::Link;
    return link ? QAccessible::Link : QAccessible::Graphic;
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    state.invalid = !isValid();
    state.focusable = true;
    state.linked = true;
    state.focused = isValid() && frame_->selected_target() == index_ && frame_->hasFocus();
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }
  QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& name) override {
    if (isValid() && name == pressAction()) frame_->Follow(index_);
  }
  QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

 private:
  const SideTarget& Target() const { return frame_->targets()[static_cast<size_t>(index_)]; }

  QPointer<TFrameHtml> frame_;
  int index_;
};

class SideAccessible : public QAccessibleWidget {
 public:
  explicit SideAccessible(TFrameHtml& frame) : QAccessibleWidget(&frame, QAccessible::Document), frame_(frame) {}
  ~SideAccessible() override {
    for (const QAccessible::Id id : children_) QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return static_cast<int>(frame_.targets().size()); }
  QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= childCount()) return nullptr;
    while (static_cast<int>(children_.size()) <= index) {
      auto* target = new TargetAccessible(frame_, static_cast<int>(children_.size()));
      children_.push_back(QAccessible::registerAccessibleInterface(target));
    }
    return QAccessible::accessibleInterface(children_[static_cast<size_t>(index)]);
  }
  int indexOfChild(const QAccessibleInterface* wanted) const override {
    for (int index = 0; index < childCount(); ++index)
      if (child(index) == wanted) return index;
    return -1;
  }
  QAccessibleInterface* focusChild() const override { return child(frame_.selected_target()); }
  QAccessibleInterface* childAt(int x, int y) const override {
    for (int index = childCount() - 1; index >= 0; --index)
      if (child(index)->rect().contains(x, y)) return child(index);
    return nullptr;
  }

 private:
  TFrameHtml& frame_;
  mutable std::vector<QAccessible::Id> children_;
};

}  // namespace

QAccessibleInterface* MakeSideAccessible(const QString& /*class_name*/, QObject* object) {
  auto* frame = qobject_cast<TFrameHtml*>(object);
  return frame == nullptr ? nullptr : new SideAccessible(*frame);
}

}  // namespace tessaro
