#include "app/option_fields.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <utility>

#include "settings/decimal_text.h"
#include "settings/option_text.h"
#include "store/file/ini_file.h"
#include "widgets/text.h"
#include "widgets/theme.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

std::string Typed(const QLineEdit& field) {
  return field.text().toStdString();
}

// What was not changed is not written: a file without a key keeps the standard, whatever that will be.
template <typename Setting, typename Value>
void WriteChanged(const Setting& setting, const Value& value, IniFile& settings) {
  if (setting.Read(settings) != value) static_cast<void>(setting.Write(value, settings));
}

// German people write "2,5".
QString GermanDecimal(double number) {
  return QString::fromStdString(WithComma(DecimalText(number)));
}

}  // namespace

void OptionFields::Add(QWidget& field, std::function<void(const IniFile&)> read, std::function<void(IniFile&)> write,
                       std::function<bool()> good) {
  fields_.push_back({&field, std::move(read), std::move(write), std::move(good)});
}

void OptionFields::Add(QCheckBox& box, const FlagSetting& setting) {
  Add(
      box, [&box, setting](const IniFile& settings) { box.setChecked(setting.Read(settings)); },
      [&box, setting](IniFile& settings) { WriteChanged(setting, box.isChecked(), settings); });
}

void OptionFields::Add(QComboBox& list, const FlagSetting& setting) {
  Add(
      list, [&list, setting](const IniFile& settings) { list.setCurrentIndex(setting.Read(settings) ? 1 : 0); },
      [&list, setting](IniFile& settings) { WriteChanged(setting, list.currentIndex() == 1, settings); });
}

void OptionFields::Add(QComboBox& list, const NumberSetting& setting) {
  Add(
      list,
      [&list, setting](const IniFile& settings) {
        list.setCurrentIndex(static_cast<int>(setting.Read(settings) - setting.least));
      },
      [&list, setting](IniFile& settings) { WriteChanged(setting, list.currentIndex() + setting.least, settings); });
}

void OptionFields::Add(QLineEdit& field, const TextSetting& setting) {
  Add(
      field, [&field, setting](const IniFile& settings) { field.setText(FromBytes(setting.Read(settings))); },
      [&field, setting](IniFile& settings) {
        if (const auto bytes = ToBytes(field.text())) WriteChanged(setting, *bytes, settings);
      });
}

void OptionFields::Add(QLineEdit& field, QLabel& note, const NumberSetting& setting) {
  const auto typed = [&field, setting] { return TypedNumber(Typed(field), setting); };
  AddTyped(
      field, note, u"%1 bis %2"_s.arg(QLocale().toString(setting.least), QLocale().toString(setting.most)),
      {&field, [&field, setting](const IniFile& settings) { field.setText(QString::number(setting.Read(settings))); },
       [typed, setting](IniFile& settings) { WriteChanged(setting, typed().value_or(setting.standard), settings); },
       [typed] { return typed().has_value(); }});
}

void OptionFields::Add(QLineEdit& field, QLabel& note, const DecimalSetting& setting) {
  const auto typed = [&field, setting] { return TypedDecimal(Typed(field), setting); };
  AddTyped(
      field, note, u"%1 bis %2"_s.arg(GermanDecimal(setting.least), GermanDecimal(setting.most)),
      {&field, [&field, setting](const IniFile& settings) { field.setText(GermanDecimal(setting.Read(settings))); },
       [typed, setting](IniFile& settings) { WriteChanged(setting, typed().value_or(setting.standard), settings); },
       [typed] { return typed().has_value(); }});
}

void OptionFields::AddTyped(QLineEdit& field, QLabel& note, const QString& bounds, Field typed) {
  note.setText(bounds);
  QObject::connect(&field, &QLineEdit::textChanged, &note, [&note, bounds, good = typed.good] {
    const bool right = good();
    SetAccent(note, right ? std::nullopt : std::optional(Accent::Warning));
    note.setText(right ? bounds : u"Hier ist nur eine Zahl von %1 möglich."_s.arg(bounds));
  });
  fields_.push_back(std::move(typed));
}

void OptionFields::Read(const IniFile& settings) const {
  for (const Field& field : fields_) field.read(settings);
}

void OptionFields::Reset(const QWidget& page) const {
  const IniFile nothing;
  for (const Field& field : fields_) {
    if (page.isAncestorOf(field.control)) field.read(nothing);
  }
}

QWidget* OptionFields::FirstWrong() const {
  for (const Field& field : fields_) {
    if (!field.good()) return field.control;
  }
  return nullptr;
}

void OptionFields::Write(IniFile& settings) const {
  for (const Field& field : fields_) field.write(settings);
}

}  // namespace tessaro
