#include "exchange/dlupd.h"

#include <QPushButton>
#include <QShortcut>
#include <QTextEdit>
#include <algorithm>

#include "exchange/compare_texts.h"
#include "platform/clock.h"
#include "settings/kept_place.h"
#include "settings/keys.h"
#include "settings/side_settings.h"
#include "ui_dlupd.h"
#include "widgets/long_work.h"
#include "widgets/messages.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

constexpr int64_t kSlice = 8;  // milliseconds
constexpr int kPercentStep = 5;
constexpr int kMostPercent = 95;
constexpr int kWordLengths = 5;
constexpr int64_t kTellComparisons = 1000;
constexpr int64_t kTellTaken = 10;

// What the user made of a text; nothing when it stayed.
std::optional<std::string> Edited(const QTextEdit& edit, CodePage page) {
  return edit.document()->isModified() ? ToBytes(SideText(edit), page) : std::nullopt;
}

}  // namespace

TF_dlupd::TF_dlupd(const ExchangeTies& ties, QWidget* parent)
    : QDialog(parent), ties_(ties), ui_(std::make_unique<Ui::TF_dlupd>()) {
  ui_->setupUi(this);
  FillChoices();
  DressTexts();
  ConnectControls();
  timer_.setInterval(0);
  connect(&timer_, &QTimer::timeout, this, &TF_dlupd::Work);
  EnableActions(false);
  ShowCounts();
  // The return key presses the button that it is on; the one that deletes is only pressed by its own keys.
  ui_->BitBtnQuelle->setDefault(true);
  ui_->BitBtnQuelle->setFocus();
  GrowToContent(*this);
  RestoreWindowPlace(*this, ties_.settings, place_suffix::kComparison);
}

TF_dlupd::~TF_dlupd() {
  KeepWindowPlace(*this, ties_.settings, place_suffix::kComparison);
}

void TF_dlupd::FillChoices() {
  for (int percent = kPercentStep; percent <= kMostPercent; percent += kPercentStep) {
    ui_->ComboBoxProzent->addItem(QString::number(percent));
  }
  for (int length = 0; length < kWordLengths; ++length) ui_->ComboBoxStrLen->addItem(u"> %1"_s.arg(length));
  ui_->ComboBoxProzent->setCurrentIndex(static_cast<int>(keys::kComparePercent.Read(ties_.settings)));
}

void TF_dlupd::ConnectControls() {
  const auto command = [this](QPushButton* button, const char16_t* key, void (TF_dlupd::*run)()) {
    const QKeySequence keys(QString::fromUtf16(key));
    button->setText(button->text().trimmed() + u"   "_s + keys.toString(QKeySequence::NativeText));
    connect(button, &QPushButton::clicked, this, run);
    auto* shortcut = new QShortcut(keys, this);
    connect(shortcut, &QShortcut::activated, button, [button] { button->click(); });
  };
  command(ui_->BitBtnStart, u"F5", &TF_dlupd::BitBtnStartClick);
  command(ui_->BitBtnBeibehalten, u"F6", &TF_dlupd::BitBtnBeibehaltenClick);
  command(ui_->BitBtnUpdaten, u"F7", &TF_dlupd::BitBtnUpdatenClick);
  command(ui_->BitBtnMarkieren, u"F8", &TF_dlupd::BitBtnMarkierenClick);
  command(ui_->BitBtnZielMarkieren, u"F9", &TF_dlupd::BitBtnZielMarkierenClick);
  connect(ui_->BitBtnQuelle, &QPushButton::clicked, this, &TF_dlupd::BitBtnQuelleClick);
  connect(ui_->BitBtnDelete, &QPushButton::clicked, this, &TF_dlupd::BitBtnDeleteClick);
  connect(ui_->BitBtnClose, &QPushButton::clicked, this, &TF_dlupd::reject);
  for (QComboBox* box : {ui_->ComboBoxProzent, ui_->ComboBoxStrLen}) {
    connect(box, &QComboBox::currentIndexChanged, this, &TF_dlupd::ChangeRule);
  }
  for (QCheckBox* box : {ui_->CheckBoxLaenge, ui_->CheckBoxVH}) {
    connect(box, &QCheckBox::toggled, this, &TF_dlupd::ChangeRule);
  }
  for (QTextEdit* edit : Texts()) connect(edit, &QTextEdit::textChanged, this, &TF_dlupd::MarkDifferences);
  connect(ui_->CheckBoxStatistik, &QCheckBox::toggled, this, [this](bool on) {
    if (scan_ != nullptr) scan_->set_with_statistics(on);
  });
}

CompareRule TF_dlupd::Rule() const {
  return {.threshold = (ui_->ComboBoxProzent->currentIndex() + 1) * kPercentStep,
          .min_word_length = static_cast<size_t>(ui_->ComboBoxStrLen->currentIndex() + 1),
          .ignore_length = ui_->CheckBoxLaenge->isChecked(),
          .either_side = ui_->CheckBoxVH->isChecked()};
}

void TF_dlupd::ChangeRule() {
  keys::kComparePercent.Write(ui_->ComboBoxProzent->currentIndex(), ties_.settings);
  if (scan_ != nullptr) scan_->SetRule(Rule());
}

bool TF_dlupd::ContinueLast() {
  const std::string last = keys::kCompareSource.Read(ties_.file.settings());
  const int64_t row = keys::kCompareRow.Read(ties_.file.settings());
  if (last.empty() || row <= kFirstCardRow) return false;
  if (ties_.messages.Question(this, u"\nMit letzter Quellkartei u.\nQuell-Position fortfahren?"_s, u"Fortfahren"_s,
                              u"Andere Quelle"_s, {}, Answer::Yes) != Answer::Yes) {
    return false;
  }
  first_row_ = static_cast<int>(std::min<int64_t>(row, kMostCardNumber));
  return OpenSource(last);
}

void TF_dlupd::BitBtnQuelleClick() {
  if (scan_ != nullptr && !SettleEdits()) return;
  if (scan_ != nullptr) Finish();
  if (ContinueLast()) return;
  first_row_ = kFirstCardRow;
  const QString chosen = ties_.messages.ChooseFileToOpen(
      this, u"Quelldatei"_s, FromPath(ties_.file.paths().cards.parent_path()), u"Karteien (*.mlb *.MLB)"_s);
  if (!chosen.isEmpty()) OpenSource(ToPath(chosen));
}

bool TF_dlupd::OpenSource(const fs::path& path) {
  SourceLoad load = SourceLoad::CannotLoad;
  {
    LongWork work(this, ties_.clock);
    work.NextStage(u"Karteikarten laden"_s, 0);
    load = LoadSource(ties_.disk, ties_.file, path, source_);
  }
  if (const QString text = LoadText(load); !text.isEmpty()) {
    ties_.messages.Error(this, text);
    return false;
  }
  internal_ = load == SourceLoad::Internal;
  source_path_ = path;
  ui_->EditQuelle->setText(internal_ ? u"%1 (Vergleich innerhalb der Kartei)"_s.arg(FromPath(path)) : FromPath(path));
  ui_->CheckBoxStatistik->setEnabled(!internal_);
  ui_->BitBtnStart->setEnabled(true);
  ui_->BitBtnStart->setDefault(true);
  ui_->BitBtnStart->setFocus();
  ui_->EditMeldung->clear();
  ShowCounts();
  return true;
}

void TF_dlupd::BitBtnStartClick() {
  if (running_) return Run(false);
  if (scan_ == nullptr) {
    if (!ties_.keep_state(this)) return;
    scan_ = std::make_unique<CompareScan>(ties_.file, internal_ ? nullptr : &source_, Rule(), first_row_);
    scan_->set_with_statistics(ui_->CheckBoxStatistik->isChecked());
    told_comparisons_ = told_taken_ = 0;
  }
  Run(true);
}

void TF_dlupd::Run(bool on) {
  running_ = on;
  ui_->BitBtnStart->setText(on ? u"&Anhalten   F5"_s : u"&Starten   F5"_s);
  ui_->BitBtnQuelle->setEnabled(!on);
  // What was changed in the texts of a pair comes in by a decision about it.
  ui_->BitBtnStart->setEnabled(scan_ != nullptr && (on || !scan_->stop()));
  if (on) timer_.start();
  if (!on && scan_ != nullptr && !scan_->Settle()) ShowFailure();
  ShowCounts();
}

void TF_dlupd::Work() {
  if (scan_ == nullptr) return timer_.stop();
  if (LongWork::Running()) return;
  const int64_t end = ties_.clock.Milliseconds() + kSlice;
  const CompareScan::GoOn go_on = [&] { return ties_.clock.Milliseconds() < end; };
  if (!running_) {
    if (!scan_->LookAhead(go_on)) timer_.stop();
    return;
  }
  ShowStep(scan_->Advance(go_on));
}

void TF_dlupd::ShowStep(CompareScan::Step step) {
  if (scan_->TakeDuplicateNote()) ui_->EditMeldung->setText(VerdictText({.result = kSameCard}));
  const CompareCounts& counts = scan_->counts();
  if (counts.comparisons / kTellComparisons != told_comparisons_) {
    told_comparisons_ = counts.comparisons / kTellComparisons;
    ui_->StatusBarUpd->showMessage(u"Vergleiche: %1"_s.arg(told_comparisons_ * kTellComparisons));
  }
  if (counts.taken / kTellTaken != told_taken_) {
    told_taken_ = counts.taken / kTellTaken;
    ui_->StatusBarUpd->showMessage(u"%1 Karten übernommen"_s.arg(told_taken_ * kTellTaken));
  }
  switch (step) {
    case CompareScan::Step::Paused:
      return ShowCounts();
    case CompareScan::Step::Stopped:
      return ShowStop();
    case CompareScan::Step::Ended:
      return ShowEnd();
    case CompareScan::Step::Failed:
      return ShowFailure();
  }
}

void TF_dlupd::ShowFailure() {
  running_ = false;
  timer_.stop();
  EnableActions(false);
  ui_->BitBtnStart->setEnabled(false);
  ties_.messages.Error(this, u"Die Kartei konnte die Änderung nicht aufnehmen.\nDer Vergleich ist beendet."_s);
}

CompareEdits TF_dlupd::Edits() const {
  const SideCodePages pages = ReadCodePages(ties_.file.settings());
  return {.target_front = Edited(*ui_->RichEditKVZ, pages.front),
          .target_back = Edited(*ui_->RichEditKHZ, pages.back),
          .source_front = Edited(*ui_->RichEditKVQ, pages.front),
          .source_back = Edited(*ui_->RichEditKHQ, pages.back)};
}

void TF_dlupd::BitBtnBeibehaltenClick() {
  if (MayTakeEdits()) Decide(scan_->KeepBoth(Edits()));
}
void TF_dlupd::BitBtnUpdatenClick() {
  if (MayTakeEdits()) Decide(scan_->ReplaceTarget(Edits(), ui_->CheckBoxStatistik->isChecked()));
}
void TF_dlupd::BitBtnMarkierenClick() {
  if (MayTakeEdits()) Decide(scan_->RejectSource(Edits()));
}
void TF_dlupd::BitBtnZielMarkierenClick() {
  if (MayTakeEdits()) Decide(scan_->MarkTarget(Edits()));
}

bool TF_dlupd::MayTakeEdits() {
  for (QTextEdit* edit : Texts()) {
    if (!edit->document()->isModified() || ToBytes(SideText(*edit), PageOf(*edit))) continue;
    ties_.messages.Error(this, u"Der Text enthält Zeichen, die nicht im Zeichensatz der Seite stehen."_s);
    edit->setFocus();
    return false;
  }
  return scan_ != nullptr;
}

void TF_dlupd::Decide(bool done) {
  EnableActions(false);
  if (!done) return ShowFailure();
  Run(true);
  // What was looked at in advance is there at once.
  Work();
}

}  // namespace tessaro
