#pragma once

#include <QLineEdit>
#include <QObject>
#include <optional>
#include <string_view>

#include "exchange/separators.h"

class QHBoxLayout;
class QLabel;

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

// The separators of a dialog that names the controls of each as "EditVH" and so on, with their usual characters set.
struct SeparatorFields {
  SeparatorField* field;
  SeparatorField* card;
  SeparatorField* quote;
};
template <typename Ui>
SeparatorFields MakeSeparatorFields(const Ui& ui, std::string_view usual_cards, QObject* parent) {
  const SeparatorFields made = {
      new SeparatorField({*ui.EditVH, *ui.EditVH10, *ui.UsualEditVH, ui.WarnungVH}, "\t;\xA4", parent),
      new SeparatorField({*ui.EditKK, *ui.EditKK10, *ui.UsualEditKK, ui.WarnungKK}, usual_cards, parent),
      new SeparatorField({*ui.EditQuote, *ui.EditQuote2, *ui.UsualEditQuote, ui.WarnungQuote}, "\xA6", parent)};
  made.field->Set(kUsualFieldSeparator);
  made.card->Set(kUsualCardSeparator);
  made.quote->Set(kUsualQuoteSubstitute);
  // Deliberate: the code of another character, which counts as soon as it is edited.
  ui.EditQuote2->setText(QStringLiteral("180"));
  return made;
}

}  // namespace tessaro
