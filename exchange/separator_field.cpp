#include "exchange/separator_field.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <algorithm>

#include "exchange/exchange_texts.h"
#include "widgets/text.h"
#include "widgets/theme.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int kTypedDigits = 3;  // the code of the Euro sign has one more

// As wide as the text and some air.
void FixWidth(QLineEdit& field, const QString& text) {
  constexpr int kAir = 24;
  field.setFixedWidth(field.fontMetrics().horizontalAdvance(text) + kAir);
}

}  // namespace

SeparatorField::SeparatorField(const Controls& controls, std::string_view usual, QObject* parent)
    : QObject(parent), controls_(controls) {
  for (const char choice : usual) {
    auto* button = new QToolButton(controls.character.parentWidget());
    button->setText(CharacterName(choice));
    button->setToolTip(u"%1 einsetzen"_s.arg(CharacterName(choice)));
    button->setFocusPolicy(Qt::TabFocus);
    controls.buttons.addWidget(button);
    connect(button, &QToolButton::clicked, this, [this, choice] { Set(choice); });
  }
  controls.buttons.addStretch();
  FixWidth(controls.character, CharacterName('\n'));
  FixWidth(controls.code, u"-128"_s);
  if (controls.warning != nullptr) SetAccent(*controls.warning, Accent::Warning);
  // Only what the user types: the field being edited gets no echo.
  connect(&controls.character, &QLineEdit::textEdited, this, &SeparatorField::CharacterEdited);
  connect(&controls.code, &QLineEdit::textEdited, this, &SeparatorField::CodeEdited);
}

void SeparatorField::Set(char character) {
  value_ = character;
  ShowCode();
  ShowCharacter();
  Q_EMIT Changed();
}

void SeparatorField::FocusCode() {
  controls_.code.setFocus();
  controls_.code.selectAll();
}

void SeparatorField::Warn(SeparatorFault fault) {
  controls_.warning->setText(WarningText(fault));
  controls_.warning->setVisible(fault != SeparatorFault::None);
}

void SeparatorField::CharacterEdited(const QString& text) {
  const std::optional<std::string> bytes = ToBytes(text);
  value_ = bytes && !bytes->empty() ? std::optional(bytes->front()) : std::nullopt;
  controls_.character.setPlaceholderText({});
  ShowCode();
  Q_EMIT Changed();
}

void SeparatorField::CodeEdited(const QString& text) {
  value_ = CharacterOfCode(text.toStdString());
  ShowCharacter();
  Q_EMIT Changed();
}

void SeparatorField::ShowCode() {
  const QString code = FromBytes(CodeText(value_));
  controls_.code.setMaxLength(std::max(kTypedDigits, static_cast<int>(code.size())));
  controls_.code.setText(code);
}

// A line of text cannot show every character: for those their name stands there in grey.
void SeparatorField::ShowCharacter() {
  const bool control = value_ && static_cast<unsigned char>(*value_) < ' ';
  controls_.character.setText(value_ && !control ? FromBytes({&*value_, 1}) : QString());
  controls_.character.setPlaceholderText(control ? CharacterName(*value_) : QString());
}

}  // namespace tessaro
