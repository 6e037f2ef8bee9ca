#include "answer/wntipp.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include "answer/typed_text.h"
#include "answer/verdict_field.h"
#include "settings/keys.h"
#include "ui_wntipp.h"
#include "widgets/text.h"
#include "widgets/theme.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr KeptPlace kFirstTypingPlace = {.x = 3, .y = 528, .width = 573, .height = 200};
constexpr int kTickMilliseconds = 100;

QString KeyName(char expected, CodePage page) {
  if (expected == ' ') return u"Leer"_s;
  if (expected == '\n') return u"Eingabetaste"_s;
  if (expected == '\t') return u"Tabulatortaste"_s;
  return FromBytes({&expected, 1}, page);
}

Verdict VerdictOf(TypingMood mood) {
  switch (mood) {
    case TypingMood::Normal:
      break;
    case TypingMood::FirstError:
      return Verdict::Yellow;
    case TypingMood::WithinLimit:
      return Verdict::Orange;
    case TypingMood::BeyondLimit:
      return Verdict::Red;
  }
  return Verdict::Plain;
}

}  // namespace

TF_wntipp::TF_wntipp(const AnswerSurroundings& around)
    : AnswerWindow(around, place_suffix::kTyping, kFirstTypingPlace), ui_(std::make_unique<Ui::TF_wntipp>()) {
  ui_->setupUi(this);
  DressHeader(*ui_->LabelTitel, *ui_->SpeedButtonFrei, *ui_->SpeedButtonClose, *ui_->BitBtnHelp);
  MakeQuiet(*ui_->LabelLimit);
  figures_.setInterval(kTickMilliseconds);
  connect(&figures_, &QTimer::timeout, this, &TF_wntipp::ShowFigures);
  connect(ui_->RichEditTipp, &QPlainTextEdit::textChanged, this, &TF_wntipp::RichEditTippChange);
  WatchKeys();
  ReadSettings();
  ShowStart();
}

TF_wntipp::~TF_wntipp() = default;

void TF_wntipp::ReadSettings() {
  const IniFile& settings = around_.settings.ini;
  limits_ = {.error_percent = keys::kErrorLimit.Read(settings),
             .speed = keys::kSpeedLimit.Read(settings),
             .percent = keys::kSpeedPercent.Read(settings)};
  mark_ = static_cast<TypingMark>(keys::kTypingMark.Read(settings));
  show_figures_ = keys::kTypingFigures.Read(settings);
  sound_ = FromBytes(keys::kErrorSound.Read(settings));
}

void TF_wntipp::CardCame() {
  figures_.stop();
  const CardOnScreen card = around_.learning.Card();
  required_ = Asks() ? TypingText(around_.learning.FirstSide()) : std::string();
  training_.Begin(required_, limits_);
  place_ = 0;
  ui_->RichEditTipp->Replace({});
  ui_->RichEditTipp->setEnabled(!required_.empty());
  // A card without anything to type is answered with the learning window's own buttons.
  around_.gate.SetTypingVisible(card.navigation || !required_.empty());
  if (!result_shown_) ShowStart();
  result_shown_ = false;
  SideCame();
}

void TF_wntipp::SideCame() {
  if (required_.empty() || !around_.learning.Card().first_side) return;
  Q_EMIT TemplateWanted(required_);
  Mark(place_);
}

void TF_wntipp::TakeFocus() {
  FocusOn(*ui_->RichEditTipp);
}

CodePage TF_wntipp::Page() const {
  return around_.learning.Card().first_page;
}

void TF_wntipp::ShowStart() {
  const QString text = required_.empty() ? u"Auf dieser Karte ist nichts abzuschreiben"_s
                                         : u"Text abschreiben - die Zeit läuft ab dem ersten Zeichen"_s;
  ShowVerdict(*ui_->EditKommentar, text, Verdict::Plain);
  ShowVerdict(*ui_->EditSec, {}, Verdict::Plain);
  ui_->LabelLimit->clear();
}

void TF_wntipp::RichEditTippChange() {
  try {
    const std::string typed = TypedBytes(ui_->RichEditTipp->toPlainText(), Page());
    Follow(training_.Change(typed, around_.clock.Milliseconds()));
  } catch (...) {
    around_.messages.Error(this, u"Ausnahmefehler Tippmaske,\nbei Wiederholung Programm\nbitte beenden."_s);
  }
}

void TF_wntipp::Follow(const TypingStep& step) {
  if (step.rewritten) ui_->RichEditTipp->Replace(FromBytes(*step.rewritten, Page()));
  Mark(step.mark);
  switch (step.verdict) {
    case TypingVerdict::Nothing:
      return;
    case TypingVerdict::Right:
      ShowVerdict(*ui_->EditKommentar,
                  step.errors == 0 ? u"Bisher ohne Fehler"_s : u"Bisher %1 Fehler"_s.arg(step.errors), Verdict::Plain);
      ui_->LabelLimit->clear();
      break;
    case TypingVerdict::Wrong:
      ShowWrong(step);
      break;
    case TypingVerdict::Finished:
      figures_.stop();
      ShowResult(*step.result);
      result_shown_ = true;
      if (around_.gate.Result() != AnswerModeResult::None) {
        around_.gate.SetResult(step.result->Known() ? AnswerModeResult::Known : AnswerModeResult::NotKnown);
      }
      return around_.learning.TypingDone(step.result->Known());
  }
  ShowFigures();
  if (!figures_.isActive()) figures_.start();
}

void TF_wntipp::ShowWrong(const TypingStep& step) {
  ShowVerdict(
      *ui_->EditKommentar,
      u"%1. Fehler. Erforderliche Eingabe %2"_s.arg(QString::number(step.errors), KeyName(step.expected, Page())),
      VerdictOf(step.mood));
  ui_->LabelLimit->setText(step.within_limit ? u"im Limit"_s : u"über dem Limit"_s);
  if (!sound_.isEmpty()) Q_EMIT SoundWanted(sound_);
}

void TF_wntipp::ShowResult(const TypingResult& result) {
  const char* errors = result.right_enough ? "%2.2f%% Fehler im %2.2f%% Limit" : "%2.2f%% Fehler > %2.2f%% Limit";
  // Deliberate: two blanks before the "<".
  const char* speed = result.fast_enough ? "A./min %0.1f >= %d (Limit)" : "A./min %0.1f  < %d (Limit)";
  ShowVerdict(*ui_->EditKommentar, QString::asprintf(errors, result.error_percent, result.error_limit),
              result.right_enough ? Verdict::Plain : Verdict::Red);
  ShowVerdict(*ui_->EditSec, QString::asprintf(speed, result.speed, static_cast<int>(result.required_speed)),
              result.fast_enough ? Verdict::Plain : Verdict::Red);
  ui_->LabelLimit->setText(result.Known() ? u"gewusst"_s : u"nicht gewusst"_s);
}

void TF_wntipp::Mark(size_t place) {
  place_ = place;
  Q_EMIT MarkWanted(static_cast<int>(place), static_cast<int>(MarkLength(required_, place, mark_)));
}

void TF_wntipp::ShowFigures() {
  const std::optional<TypingFigures> figures = training_.Figures(around_.clock.Milliseconds());
  if (!figures) return figures_.stop();  // until the next key
  if (!show_figures_) return;
  ShowVerdict(*ui_->EditSec,
              QString::asprintf("Anschl.:%d Sek:%0.2f A/min:%0.1f", figures->letters, figures->seconds, figures->speed),
              Verdict::Plain);
}

bool TF_wntipp::KeyPressed(QKeyEvent& event) {
  // A line feed may be what is to be typed.
  if (!ui_->RichEditTipp->hasFocus()) return false;
  if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter) return false;
  ui_->RichEditTipp->Type(event);
  return true;
}

void TF_wntipp::hideEvent(QHideEvent* event) {
  figures_.stop();
  AnswerWindow::hideEvent(event);
}

}  // namespace tessaro
