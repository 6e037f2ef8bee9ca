#include "learn/frage.h"

#include <QPushButton>
#include <QShortcut>

#include "learn/answer_button.h"
#include "learn/command_keys.h"
#include "ui_frage.h"

namespace tessaro {
namespace {

// Gives the button the key of its command, which then also stands on it.
void SetKeys(AnswerButton* button, const QList<QKeySequence>& keys) {
  if (keys.isEmpty()) return;
  button->SetKeyText(FirstKeyName(keys));
  for (const QKeySequence& key : keys) {
    auto* shortcut = new QShortcut(key, button->window());
    // The key that led to the question may still be held down.
    shortcut->setAutoRepeat(false);
    QObject::connect(shortcut, &QShortcut::activated, button, &QPushButton::click);
  }
}

}  // namespace

TF_frage::TF_frage(const IniFile& settings, QWidget* parent) : QDialog(parent), ui_(std::make_unique<Ui::TF_frage>()) {
  ui_->setupUi(this);
  const CommandKeys keys = KeysOfCommands(ReadLearningKeys(settings));
  SetKeys(ui_->BtHand, keys[static_cast<size_t>(LearningCommand::Turn)]);
  SetKeys(ui_->BtWeissIch, keys[static_cast<size_t>(LearningCommand::Known)]);
  SetKeys(ui_->BtLerneIch, keys[static_cast<size_t>(LearningCommand::NotKnown)]);
  ui_->BtHand->SetMeaning(std::nullopt, "turn");
  ui_->BtWeissIch->SetMeaning(Accent::Known, "known");
  ui_->BtLerneIch->SetMeaning(Accent::NotKnown, "not-known");
  connect(ui_->BtHand, &QPushButton::clicked, this, &TF_frage::TurnWanted);
  connect(ui_->BtWeissIch, &QPushButton::clicked, this, [this] { Close(Rating::Known); });
  connect(ui_->BtLerneIch, &QPushButton::clicked, this, [this] { Close(Rating::NotKnown); });
  connect(ui_->BtOhne, &QPushButton::clicked, this, &QDialog::reject);
  ui_->BtHand->setFocus();
  StandBelowTheCard();
}

TF_frage::~TF_frage() = default;

void TF_frage::StandBelowTheCard() {
  if (parentWidget() == nullptr) return;
  adjustSize();
  const QWidget& below = *parentWidget()->window();
  const QRect window = below.geometry();
  // The question gets a frame of its own around its height, and the card's window may stand at the screen's foot.
  const int frame = below.frameGeometry().height() - window.height();
  move(window.center().x() - width() / 2, window.bottom() - height() - frame);
}

void TF_frage::Close(Rating rating) {
  rating_ = rating;
  accept();
}

}  // namespace tessaro
