#include "learn/frage.h"

#include <QPushButton>
#include <QShortcut>

#include "learn/command_keys.h"
#include "platform/qt/icons.h"
#include "ui_frage.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

// Gives the button the key of its command, which then also stands on it.
void SetKeys(QPushButton* button, const QList<QKeySequence>& keys) {
  if (keys.isEmpty()) return;
  button->setText(u"%1   %2"_s.arg(button->text(), FirstKeyName(keys)));
  for (const QKeySequence& key : keys) {
    QObject::connect(new QShortcut(key, button->window()), &QShortcut::activated, button, &QPushButton::click);
  }
}

}  // namespace

TF_frage::TF_frage(const IniFile& settings, QWidget* parent) : QDialog(parent), ui_(std::make_unique<Ui::TF_frage>()) {
  ui_->setupUi(this);
  const CommandKeys keys = KeysOfCommands(ReadLearningKeys(settings));
  SetKeys(ui_->BtHand, keys[static_cast<size_t>(LearningCommand::Turn)]);
  SetKeys(ui_->BtWeissIch, keys[static_cast<size_t>(LearningCommand::Known)]);
  SetKeys(ui_->BtLerneIch, keys[static_cast<size_t>(LearningCommand::NotKnown)]);
  ui_->BtHand->setIcon(Icon("turn"));
  ui_->BtWeissIch->setIcon(Icon("known"));
  ui_->BtLerneIch->setIcon(Icon("not-known"));
  connect(ui_->BtHand, &QPushButton::clicked, this, &TF_frage::TurnWanted);
  connect(ui_->BtWeissIch, &QPushButton::clicked, this, [this] { Close(AnswerCode::LinkKnown); });
  connect(ui_->BtLerneIch, &QPushButton::clicked, this, [this] { Close(AnswerCode::LinkNotKnown); });
  ui_->BtHand->setFocus();
}

TF_frage::~TF_frage() = default;

void TF_frage::Close(AnswerCode code) {
  code_ = code;
  accept();
}

}  // namespace tessaro
