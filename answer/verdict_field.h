#pragma once

#include <QString>

class QLineEdit;
class QWidget;

namespace tessaro {

// The colours of a field that says what became of an answer. Each comes with words; none says something alone.
enum class Verdict {
  Plain,  // as a button's face
  Bar,    // the same, with green letters
  White,
  Yellow,
  Orange,
  Red,
};

void ShowVerdict(QLineEdit& field, const QString& text, Verdict verdict);
// Gives a field its colours and the size of its letters anew: its palette, or the room that it has, changed. Nothing
// happens to a field that never had a verdict.
void DressVerdict(QLineEdit& field);
// ... all fields in a window.
void DressVerdictFields(QWidget& window);

}  // namespace tessaro
