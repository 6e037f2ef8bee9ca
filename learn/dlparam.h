#pragma once

#include <QDialog>
#include <array>
#include <memory>
#include <optional>

#include "learn/parameter_entry.h"
#include "widgets/theme.h"

class QLineEdit;

namespace Ui {
class TF_dlparam;
}

namespace tessaro {

// The dialog of the learning parameters, with an assistant that derives them from a few plain questions. A wrong entry
// keeps the focus and says what is allowed; nothing is taken over before OK.
class TF_dlparam : public QDialog {
  Q_OBJECT

 public:
  explicit TF_dlparam(const ParameterEntry& entry, QWidget* parent = nullptr);
  ~TF_dlparam() override;

  // What stood in the fields at OK; before that what was given.
  const ParameterEntry& entry() const { return entry_; }

 private:
  void BitBtnOKClick();
  void BitBtnDefaultClick();
  void BitBtnUebernehmenClick();
  void FieldLeft(ParameterField field);
  void ShowSuggestion();

  ParameterTexts Texts() const;
  void SetTexts(const ParameterTexts& texts);
  void RefuseField(ParameterField field);
  void Say(const QString& text, std::optional<Accent> accent = std::nullopt);
  std::optional<LearningParameters> Suggestion() const;

  std::unique_ptr<Ui::TF_dlparam> ui_;
  std::array<QLineEdit*, kParameterFields> fields_;
  ParameterEntry entry_;
};

}  // namespace tessaro
