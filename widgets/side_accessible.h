#pragma once

class QAccessibleInterface;
class QObject;
class QString;

namespace tessaro {

// For QAccessible::installFactory: a side is a document whose links, fitted pictures and video are objects of their
// own, in the order of TFrameHtml::targets(). Null for objects of other classes.
QAccessibleInterface* MakeSideAccessible(const QString& class_name, QObject* object);

}  // namespace tessaro
