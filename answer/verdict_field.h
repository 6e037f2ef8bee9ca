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
// Gives the fields in a window their colours anew, from a palette that changed.
void DressVerdictFields(QWidget& window);

}  // namespace tessaro
