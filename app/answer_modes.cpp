#include "app/answer_modes.h"

#include <QApplication>
#include <QFileInfo>

#include "answer/wntipp.h"
#include "answer/wnvgl.h"
#include "answer/wnwahl.h"
#include "edit/wnsign.h"
#include "learn/wnlern.h"
#include "settings/keys.h"
#include "widgets/side_look.h"
#include "widgets/wnmedia.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

struct ModeSettings {
  FlagSetting shown;
  FlagSetting floating;
};

ModeSettings SettingsOf(AnswerMode mode) {
  switch (mode) {
    case AnswerMode::None:
    case AnswerMode::Choice:
      break;
    case AnswerMode::Input:
      return {keys::kShowInput, keys::kInputFloats};
    case AnswerMode::Typing:
      return {keys::kShowTyping, keys::kTypingFloats};
  }
  return {keys::kShowChoice, keys::kChoiceFloats};
}

constexpr std::array kWindowModes = {AnswerMode::Choice, AnswerMode::Input, AnswerMode::Typing};

}  // namespace

AnswerModes::AnswerModes(CardFile& file, TF_wnlern& learning, TF_wnmedia& media, AnswerGate& gate,
                         ProgramSettings& settings, const Clock& clock, Random& random, Messages& messages,
                         bool& input_check_on)
    : file_(file),
      learning_(learning),
      media_(media),
      around_{learning, gate, settings, clock, messages},
      random_(random),
      input_check_on_(input_check_on) {
  connect(&learning, &TF_wnlern::AnswerModeWanted, this, &AnswerModes::SwitchTo);
  connect(&learning, &TF_wnlern::LearningKeysChanged, this, &AnswerModes::PassKeys);
  connect(&learning, &TF_wnlern::CardShown, this, &AnswerModes::CardShown);
  connect(&learning, &TF_wnlern::SideShown, this, [this] {
    if (Window() != nullptr) Window()->SideCame();
  });
  connect(&learning, &TF_wnlern::AnswerGiven, this, [this] {
    if (Window() != nullptr) Window()->AnswerGiven();
    if (learning_.Card().row == 0) CardShown();  // the run is over
  });
  connect(qApp, &QApplication::focusChanged, this, [this](const QWidget* /*before*/, const QWidget* now) {
    if (now != nullptr) works_here_ = BelongsToLearning(now->window());
  });
  connect(&media, &TF_wnmedia::SoundFailed, this, [this](const QString& path) {
    if (path == error_sound_) TellBadSound(path);
  });
}

AnswerModes::~AnswerModes() {
  if (Window() != nullptr) Window()->KeepPlace();
  mode_ = AnswerMode::None;
  TellGate();
}

void AnswerModes::Start() {
  for (const AnswerMode mode : kWindowModes) {
    if (SettingsOf(mode).shown.Read(around_.settings.ini)) return SwitchTo(mode);
  }
  SwitchTo(AnswerMode::None);
}

void AnswerModes::SwitchTo(AnswerMode mode) {
  if (mode != mode_) {
    SwitchOff();
    mode_ = mode;
    KeepMode();
    TellGate();
    if (mode != AnswerMode::None) {
      if (Window() == nullptr) MakeWindow(mode);
      Place();
      CardShown();
    }
    learning_.ShowChoiceStatus();
  }
  learning_.ShowAnswerMode(mode_);
}

void AnswerModes::SwitchOff() {
  AnswerWindow* window = Window();
  if (window == nullptr) return;
  window->SwitchedOff();
  window->KeepPlace();
  if (signs_ != nullptr) signs_->close();
  const AnswerMode old = std::exchange(mode_, AnswerMode::None);
  window->hide();
  if (old == AnswerMode::Typing) learning_.HideTemplate();
}

void AnswerModes::TellGate() {
  around_.gate.SetChoiceVisible(mode_ == AnswerMode::Choice);
  around_.gate.SetTypingVisible(mode_ == AnswerMode::Typing);
}

void AnswerModes::KeepMode() {
  for (const AnswerMode mode : kWindowModes) SettingsOf(mode).shown.Write(mode == mode_, around_.settings.ini);
}

void AnswerModes::MakeWindow(AnswerMode mode) {
  auto& window = windows_[static_cast<size_t>(mode)];
  window = mode == AnswerMode::Choice ? MakeChoice() : mode == AnswerMode::Input ? MakeInput() : MakeTyping();
  connect(window.get(), &AnswerWindow::CloseWanted, this, [this] { SwitchTo(AnswerMode::None); });
  connect(window.get(), &AnswerWindow::FloatWanted, this, [this](bool floating) {
    Window()->KeepPlace();
    SettingsOf(mode_).floating.Write(floating, around_.settings.ini);
    // Else the program would believe the keyboard to be with a window that is gone.
    Window()->hide();
    Place();
    TakeFocus();
  });
  PassKeys();
}

std::unique_ptr<AnswerWindow> AnswerModes::MakeChoice() {
  auto window = std::make_unique<TF_wnwahl>(around_, file_, random_);
  connect(window.get(), &TF_wnwahl::StatusChanged, &learning_, &TF_wnlern::ShowChoiceStatus);
  connect(window.get(), &TF_wnwahl::OfferDecided, this, &AnswerModes::GiveFocus);
  return window;
}

std::unique_ptr<AnswerWindow> AnswerModes::MakeInput() {
  auto window = std::make_unique<TF_wnvgl>(around_, input_check_on_);
  connect(window.get(), &TF_wnvgl::SignWanted, this, &AnswerModes::OpenSigns);
  return window;
}

// Those of the side that is typed, in its font.
void AnswerModes::OpenSigns() {
  if (signs_ == nullptr) {
    const IniFile& look = file_.settings();
    const std::array looks = {ReadSideLook(look, SideName::Front), ReadSideLook(look, SideName::Back)};
    signs_ = std::make_unique<TF_wnsign>(around_.settings, looks, &learning_);
    connect(signs_.get(), &TF_wnsign::CharacterChosen, static_cast<TF_wnvgl*>(Window()), &TF_wnvgl::InsertSign);
  }
  signs_->Open(learning_.Card().sides_swapped ? EditSide::Front : EditSide::Back);
}

std::unique_ptr<AnswerWindow> AnswerModes::MakeTyping() {
  auto window = std::make_unique<TF_wntipp>(around_);
  connect(window.get(), &TF_wntipp::TemplateWanted, &learning_, &TF_wnlern::ShowTemplate);
  connect(window.get(), &TF_wntipp::MarkWanted, &learning_, &TF_wnlern::MarkTemplate);
  connect(window.get(), &TF_wntipp::SoundWanted, this, &AnswerModes::PlayErrorSound);
  return window;
}

void AnswerModes::Place() {
  if (SettingsOf(mode_).floating.Read(around_.settings.ini)) return Window()->Float(learning_);
  learning_.DockUnderCard(*Window());
  Window()->BeDocked();
}

void AnswerModes::CardShown() {
  if (Window() == nullptr) return;
  Window()->CardCame();
  GiveFocus();
}

bool AnswerModes::BelongsToLearning(const QWidget* window) const {
  while (window != nullptr && window != &learning_ && window != Window()) {
    window = window->parentWidget() != nullptr ? window->parentWidget()->window() : nullptr;
  }
  return window != nullptr;
}

void AnswerModes::GiveFocus() {
  // Who works in another window meanwhile, as in the editor, goes on there. No window is active for a moment when a
  // dialog has closed.
  const QWidget* active = QApplication::activeWindow();
  if (active == nullptr ? works_here_ : active == &learning_ || active == Window()) TakeFocus();
}

void AnswerModes::TakeFocus() {
  // A question that a step led to is answered first.
  if (QApplication::activeModalWidget() != nullptr) return;
  if (Window() != nullptr && Window()->CanAnswer()) return Window()->TakeFocus();
  learning_.activateWindow();
}

void AnswerModes::SettingsChanged() {
  Start();
  // The side may have other characters now.
  if (signs_ != nullptr) signs_.release()->deleteLater();
  if (Window() == nullptr) return;
  Window()->ReadSettings();
  Window()->SideCame();
}

void AnswerModes::PassKeys() {
  for (const auto& window : windows_) {
    if (window != nullptr) window->SetLearningKeys(learning_.learning_keys());
  }
}

void AnswerModes::PlayErrorSound(const QString& path) {
  error_sound_ = path;
  if (!QFileInfo::exists(path)) return TellBadSound(path);
  if (path != bad_sound_) media_.PlaySound(path);
}

void AnswerModes::TellBadSound(const QString& path) {
  if (path == bad_sound_) return;
  bad_sound_ = path;
  around_.messages.Information(&learning_,
                               u"\nDer Ton für Fehler fehlt oder kann nicht abgespielt werden:\n%1"_s.arg(path));
}

}  // namespace tessaro
