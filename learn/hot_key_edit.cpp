#include "learn/hot_key_edit.h"

#include <QKeyEvent>

#include "learn/shortcut_code.h"

namespace tessaro {

HotKeyEdit::HotKeyEdit(QWidget* parent) : QLineEdit(parent) {
  setReadOnly(true);
  setContextMenuPolicy(Qt::NoContextMenu);
}

void HotKeyEdit::SetCode(int64_t code) {
  code_ = code;
  const std::optional<QKeyCombination> key = KeyFromShortcutCode(code);
  setText(key ? KeyName(*key) : QString::number(code));
}

bool HotKeyEdit::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) event->accept();
  return QLineEdit::event(event);
}

void HotKeyEdit::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    event->ignore();
    return;
  }
  const Qt::Key pressed = event->key() == Qt::Key_Enter ? Qt::Key_Return : static_cast<Qt::Key>(event->key());
  const bool modifier_alone = pressed == Qt::Key_Shift || pressed == Qt::Key_Control || pressed == Qt::Key_Alt ||
                              pressed == Qt::Key_AltGr || pressed == Qt::Key_Meta;
  event->accept();
  if (modifier_alone) return;
  const QKeyCombination key(event->modifiers() & ~Qt::KeypadModifier, pressed);
  const int code = ShortcutCodeFromKey(key);
  const bool needed = IsProgramKey(key);
  if (code == 0 || needed) {
    Q_EMIT KeyRefused(needed);
    return;
  }
  SetCode(code);
  Q_EMIT KeyTaken();
}

}  // namespace tessaro
