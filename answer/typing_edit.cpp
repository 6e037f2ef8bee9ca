#include "answer/typing_edit.h"

#include <QKeyEvent>
#include <QSignalBlocker>

namespace tessaro {

TypingEdit::TypingEdit(QWidget* parent) : QPlainTextEdit(parent) {
  setAcceptDrops(false);
  setUndoRedoEnabled(false);
  setContextMenuPolicy(Qt::NoContextMenu);
  setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setTabChangesFocus(true);
}

void TypingEdit::Replace(const QString& text) {
  const QSignalBlocker silent(this);
  const QString old = toPlainText();
  // A key that is taken back is the usual case, and must not lay a long text out anew.
  if (old.size() == text.size() + 1 && old.startsWith(text)) {
    moveCursor(QTextCursor::End);
    textCursor().deletePreviousChar();
  } else {
    setPlainText(text);
  }
  moveCursor(QTextCursor::End);
}

QSize TypingEdit::sizeHint() const {
  constexpr int kLines = 3;
  const int edge = 2 * (frameWidth() + static_cast<int>(document()->documentMargin()));
  return {QPlainTextEdit::sizeHint().width(), kLines * fontMetrics().lineSpacing() + edge};
}

void TypingEdit::Type(QKeyEvent& event) {
  constexpr Qt::KeyboardModifiers kCommand = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
  // Both together are AltGr on some systems.
  const Qt::KeyboardModifiers command = event.modifiers() & kCommand;
  if (command != Qt::NoModifier && command != (Qt::ControlModifier | Qt::AltModifier)) return event.ignore();
  const bool back = event.key() == Qt::Key_Backspace;
  const bool line = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  const bool writes = line || (!event.text().isEmpty() && event.text().at(0).isPrint());
  if (!back && !writes) return event.ignore();
  if (event.isAutoRepeat() && !back) return;
  moveCursor(QTextCursor::End);
  if (back) return textCursor().deletePreviousChar();
  insertPlainText(line ? QStringLiteral("\n") : event.text());
}

void TypingEdit::keyPressEvent(QKeyEvent* event) {
  Type(*event);
}

// A click brings the focus and leaves the cursor where the text goes on.
void TypingEdit::mousePressEvent(QMouseEvent* event) {
  event->accept();
  moveCursor(QTextCursor::End);
}

}  // namespace tessaro
