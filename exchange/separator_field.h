#pragma once

#include <QObject>
#include <optional>
#include <string_view>

#include "exchange/separators.h"

class QHBoxLayout;
class QLabel;
class QLineEdit;

namespace tessaro {

// A separator that is entered as a character or as its decimal code: what is typed into the one field shows in the
// other. Buttons beside them give the usual ones.
class SeparatorField : public QObject {
  Q_OBJECT

 public:
  struct Controls {
    QLineEdit& character;
    QLineEdit& code;
    QHBoxLayout& buttons;
    QLabel* warning = nullptr;  // below them
  };
  // `usual`: the characters that get a button.
  SeparatorField(const Controls& controls, std::string_view usual, QObject* parent);

  // A byte of the code page; nothing when none was entered, or a character that the code page lacks.
  std::optional<char> value() const { return value_; }
  void Set(char character);
  void FocusCode();
  void Warn(SeparatorFault fault);

 Q_SIGNALS:
  void Changed();

 private:
  void CharacterEdited(const QString& text);
  void CodeEdited(const QString& text);
  void ShowCharacter();
  void ShowCode();

  Controls controls_;
  std::optional<char> value_;
};

}  // namespace tessaro
