#pragma once

#include <QString>
#include <functional>
#include <vector>

#include "settings/setting.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QWidget;

namespace tessaro {

class IniFile;

// The fields of a dialog, each tied to its setting. A number that is wrong is told beside its field as it is typed.
class OptionFields {
 public:
  void Add(QCheckBox& box, const FlagSetting& setting);
  // The first entry stands for false, the second for true.
  void Add(QComboBox& list, const FlagSetting& setting);
  // The place of an entry, counted from the least value, is the value.
  void Add(QComboBox& list, const NumberSetting& setting);
  void Add(QLineEdit& field, QLabel& note, const NumberSetting& setting);
  void Add(QLineEdit& field, QLabel& note, const DecimalSetting& setting);
  void Add(QLineEdit& field, const TextSetting& setting);
  // A field of another kind: how it is read from settings and written to them, and whether it is good.
  void Add(
      QWidget& field, std::function<void(const IniFile&)> read, std::function<void(IniFile&)> write,
      std::function<bool()> good = [] { return true; });

  void Read(const IniFile& settings) const;
  // Sets the fields on `page` to their standards.
  void Reset(const QWidget& page) const;
  // The first field whose value would not be taken; null when all are good.
  QWidget* FirstWrong() const;
  void Write(IniFile& settings) const;

 private:
  struct Field {
    QWidget* control;
    std::function<void(const IniFile&)> read;
    std::function<void(IniFile&)> write;
    std::function<bool()> good;
  };

  void AddTyped(QLineEdit& field, QLabel& note, const QString& bounds, Field typed);

  std::vector<Field> fields_;
};

}  // namespace tessaro
