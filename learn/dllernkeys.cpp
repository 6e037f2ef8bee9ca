#include "learn/dllernkeys.h"

#include <QPushButton>

#include "learn/command_keys.h"
#include "learn/hot_key_edit.h"
#include "store/file/ini_file.h"
#include "ui_dllernkeys.h"
#include "widgets/theme.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

QString CommandName(LearningCommand command) {
  static const std::array<QString, kLearningCommands> names = {u"Karte drehen"_s, u"Weiß ich"_s, u"Lerne ich"_s,
                                                               u"Zurück"_s, u"Zur Startseite"_s};
  return names[static_cast<size_t>(command)];
}

}  // namespace

TF_dllernkeys::TF_dllernkeys(IniFile& settings, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::TF_dllernkeys>()),
      settings_(settings),
      keys_(UsableKeys(ReadLearningKeys(settings))) {
  ui_->setupUi(this);
  fields_ = {ui_->HotKeyDrehen, ui_->HotKeyWeiss, ui_->HotKeyLerne, ui_->HotKeyBack, ui_->HotKeyHome};
  for (HotKeyEdit* field : fields_) {
    connect(field, &HotKeyEdit::KeyTaken, this, &TF_dllernkeys::ShowConflict);
    connect(field, &HotKeyEdit::KeyRefused, this, [this](bool needed) {
      ui_->StatusZeile->setText(needed ? u"Diese Taste braucht das Programm selbst."_s
                                       : u"Diese Taste kann nicht verwendet werden."_s);
    });
  }
  connect(ui_->BitBtnOK, &QPushButton::clicked, this, &TF_dllernkeys::BitBtnOKClick);
  connect(ui_->BitBtnDefault, &QPushButton::clicked, this, &TF_dllernkeys::BitBtnDefaultClick);
  connect(ui_->BitBtnCancel, &QPushButton::clicked, this, &QDialog::reject);
  SetFields(keys_);
}

TF_dllernkeys::~TF_dllernkeys() = default;

void TF_dllernkeys::done(int result) {
  WriteLearningKeys(keys_, settings_);
  QDialog::done(result);
}

void TF_dllernkeys::BitBtnOKClick() {
  keys_ = FieldKeys();
  accept();
}

void TF_dllernkeys::BitBtnDefaultClick() {
  keys_ = kStandardKeys;
  SetFields(keys_);
}

void TF_dllernkeys::ShowConflict() {
  const auto doubled = FindDoubledKey(FieldKeys());
  SetAccent(*ui_->StatusZeile, doubled ? std::optional(Accent::Warning) : std::nullopt);
  if (!doubled) {
    ui_->StatusZeile->clear();
    return;
  }
  ui_->StatusZeile->setText(u"Dieselbe Taste für „%1“ und „%2“: Es gilt „%1“."_s.arg(CommandName(doubled->first),
                                                                                     CommandName(doubled->second)));
}

LearningKeys TF_dllernkeys::FieldKeys() const {
  LearningKeys keys;
  for (size_t i = 0; i < keys.size(); ++i) keys[i] = fields_[i]->code();
  return keys;
}

void TF_dllernkeys::SetFields(const LearningKeys& keys) {
  for (size_t i = 0; i < keys.size(); ++i) fields_[i]->SetCode(keys[i]);
  ShowConflict();
}

}  // namespace tessaro
