#include "answer/wnvgl.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>

#include "answer/typed_answer.h"
#include "answer/typed_text.h"
#include "answer/verdict_field.h"
#include "hypertext/plain_text.h"
#include "settings/keys.h"
#include "ui_wnvgl.h"
#include "widgets/text.h"
#include "widgets/theme.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr KeptPlace kFirstComparisonPlace = {.x = 3, .y = 628, .width = 573, .height = 126};
constexpr int kComparisonMilliseconds = 3000;
constexpr size_t kLeastBlanks = 2;

const QString kOtherCaseText = u"Groß-/Kleinschreibung unterschiedlich"_s;
const QString kWrongText =
    u"Buchstabenfolge vor oder um die Eingabeposition ist falsch - korrigieren oder weiter schreiben mit Leertaste"_s;

// `begin` and `end` stand around what differs, a line under what may differ.
QString Marked(const std::vector<ComparedPiece>& pieces, CodePage page, const QString& begin, const QString& end) {
  QString text;
  for (const ComparedPiece& piece : pieces) {
    // What the code page lacks was typed as a zero byte.
    const QString letters = FromBytes(piece.text, page).replace(QChar(u'\0'), QChar(0xFFFD)).toHtmlEscaped();
    switch (piece.likeness) {
      case ComparedPiece::Likeness::Same:
        text += letters;
        break;
      case ComparedPiece::Likeness::Tolerated:
        text += u"<u>"_s + letters + u"</u>"_s;
        break;
      case ComparedPiece::Likeness::Different:
        text += begin + letters + end;
        break;
    }
  }
  return text;
}

QString OneLine(QString text) {
  return text.replace(u'\n', u' ');
}

// Of what differs, the typed letters are struck out and those of the answer underlined.
QString ComparisonText(const TypedComparison& compared, CodePage page, const QPalette& palette) {
  const auto colour = [&](Accent accent) { return AccentColour(accent, palette).name(); };
  QString typed = Marked(compared.typed, page, u"<s style=\"color:%1\">"_s.arg(colour(Accent::NotKnown)), u"</s>"_s);
  if (compared.IsTolerated()) {
    typed += u"&nbsp;&nbsp;<span style=\"color:%1\">(gilt als richtig)</span>"_s.arg(colour(Accent::Known));
  }
  // Where nothing is the same nothing of the answer stands out.
  const bool alike = std::any_of(compared.answer.begin(), compared.answer.end(), [](const auto& piece) {
    return piece.likeness != ComparedPiece::Likeness::Different;
  });
  const QString mark =
      alike ? u"<u style=\"color:%1\">"_s.arg(colour(Accent::Known)) : u"<u style=\"text-decoration:none\">"_s;
  const QString answer = Marked(compared.answer, page, mark, u"</u>"_s);
  // The next question is on screen by then.
  return u"<table cellspacing=0><tr><td rowspan=2>Vorige Karte&nbsp;&nbsp;&nbsp;</td><td>Getippt:&nbsp;</td>"
         u"<td>%1</td></tr><tr><td>Antwort:&nbsp;</td><td>%2</td></tr></table>"_s.arg(typed, OneLine(answer));
}

}  // namespace

TF_wnvgl::TF_wnvgl(const AnswerSurroundings& around, bool& input_check_on)
    : AnswerWindow(around, place_suffix::kTypedAnswer, kFirstComparisonPlace),
      ui_(std::make_unique<Ui::TF_wnvgl>()),
      input_check_on_(input_check_on) {
  ui_->setupUi(this);
  DressHeader(*ui_->LabelTitel, *ui_->SpeedButtonFrei, *ui_->BitBtnClose, *ui_->BitBtnHelp);
  ui_->BitBtnTest->setChecked(input_check_on_);
  // Two lines, so that nothing moves when they are filled.
  ui_->LabelVergleich->setMinimumHeight(2 * fontMetrics().lineSpacing() + 4);
  comparison_end_.setSingleShot(true);
  connect(&comparison_end_, &QTimer::timeout, this, &TF_wnvgl::EndComparison);
  connect(ui_->RichEditVgl, &QLineEdit::textChanged, this, &TF_wnvgl::RichEditVglChange);
  connect(ui_->BitBtnHand, &QAbstractButton::clicked, this, [this] {
    around_.learning.ShowAnswer();
    typed_since_ = false;
    TakeFocus();
  });
  connect(ui_->BitBtnWeissIch, &QAbstractButton::clicked, this, [this] { Judge(true); });
  connect(ui_->BitBtnLerneIch, &QAbstractButton::clicked, this, [this] { Judge(false); });
  connect(ui_->BitBtnTest, &QAbstractButton::clicked, this, &TF_wnvgl::BitBtnTestClick);
  connect(ui_->BitBtnSign, &QAbstractButton::clicked, this, &TF_wnvgl::SignWanted);
  WatchKeys();
  ShowVerdict(*ui_->StatusBarVgl, {}, Verdict::Plain);
  ReadSettings();
}

TF_wnvgl::~TF_wnvgl() = default;

void TF_wnvgl::ReadSettings() {
  const IniFile& settings = around_.settings.ini;
  blank_limit_ = static_cast<size_t>(keys::kExtraBlanks.Read(settings)) + kLeastBlanks;
  tolerance_ = {.letter_case = keys::kAnyCase.Read(settings),
                .accents = keys::kAnyAccents.Read(settings),
                .punctuation = keys::kAnyPunctuation.Read(settings),
                .brackets = keys::kOptionalBrackets.Read(settings)};
}

void TF_wnvgl::CardCame() {
  ClearInput();
  answer_seen_ = false;
  keeps_focus_ = false;
  SideCame();
  for (QWidget* part : {static_cast<QWidget*>(ui_->RichEditVgl), static_cast<QWidget*>(ui_->BitBtnHand),
                        static_cast<QWidget*>(ui_->BitBtnWeissIch), static_cast<QWidget*>(ui_->BitBtnLerneIch)}) {
    part->setEnabled(Asks());
  }
}

void TF_wnvgl::SideCame() {
  key_ = around_.learning.SecondSide();
  page_ = around_.learning.Card().second_page;
  if (!around_.learning.Card().first_side) {
    answer_seen_ = true;
    typed_since_ = false;
  }
  if (std::exchange(keeps_focus_, false)) TakeFocus();
}

void TF_wnvgl::TakeFocus() {
  FocusOn(*ui_->RichEditVgl);
}

void TF_wnvgl::InsertSign(const QString& sign) {
  ui_->RichEditVgl->insert(sign);
}

void TF_wnvgl::ClearInput() {
  const QSignalBlocker silent(ui_->RichEditVgl);
  ui_->RichEditVgl->clear();
  ShowVerdict(*ui_->StatusBarVgl, {}, Verdict::Plain);
}

void TF_wnvgl::RichEditVglChange() {
  typed_since_ = true;
  EndComparison();
  ShowVerdict(*ui_->StatusBarVgl, {}, Verdict::Plain);
  if (!input_check_on_) return;
  QLineEdit& input = *ui_->RichEditVgl;
  const std::string typed = TypedBytes(input.text(), page_);
  const TypedCheck check =
      CheckTyped(typed, static_cast<size_t>(input.cursorPosition()), key_, blank_limit_, page_, tolerance_);
  switch (check.verdict) {
    case TypedVerdict::ShowAnswer:
      return ShowAnswerAndJudge();
    case TypedVerdict::Right:
      return ShowVerdict(*ui_->StatusBarVgl, QString(static_cast<qsizetype>(typed.size()), u'█'), Verdict::Bar);
    case TypedVerdict::OtherCase:
      return ShowVerdict(*ui_->StatusBarVgl, kOtherCaseText, Verdict::White);
    case TypedVerdict::Wrong:
      break;
  }
  if (check.select) input.setSelection(static_cast<int>(*check.select), 1);
  ShowVerdict(*ui_->StatusBarVgl, kWrongText, Verdict::Yellow);
}

void TF_wnvgl::ShowAnswerAndJudge() {
  around_.learning.ShowAnswer();
  FocusOn(*ui_->BitBtnWeissIch);
}

void TF_wnvgl::Judge(bool known) {
  if (around_.gate.SelectError()) return;
  Register(known);
  TakeFocus();
}

void TF_wnvgl::BitBtnTestClick() {
  input_check_on_ = !input_check_on_;
  ui_->BitBtnTest->setChecked(input_check_on_);
  ShowVerdict(*ui_->StatusBarVgl,
              input_check_on_ ? u"Eingabekontrolle eingeschaltet"_s : u"Eingabekontrolle ausgeschaltet"_s,
              Verdict::Plain);
  TakeFocus();
}

void TF_wnvgl::AnswerGiven() {
  std::string typed = TypedBytes(ui_->RichEditVgl->text(), page_);
  typed.resize(typed.find_last_not_of(' ') + 1);
  if (typed.empty()) return;
  std::string answer = PlainText(key_);
  std::replace(answer.begin(), answer.end(), '\n', ' ');
  const TypedComparison compared = CompareTyped(typed, answer, page_, tolerance_);
  ui_->LabelVergleich->setText(ComparisonText(compared, page_, palette()));
  comparison_end_.start(kComparisonMilliseconds);
}

void TF_wnvgl::EndComparison() {
  comparison_end_.stop();
  ui_->LabelVergleich->clear();
}

// Once the answer was seen there is nothing more to write, unless the learner goes on typing.
bool TF_wnvgl::LeaveToLearning(const QKeyEvent& key) {
  const bool writes = !key.text().isEmpty() && key.text().at(0).isPrint();
  if (!answer_seen_ || writes) return false;
  const QLineEdit& input = *ui_->RichEditVgl;
  const bool moves = key.key() == Qt::Key_Home || key.key() == Qt::Key_End;
  if (input.hasFocus()) return keeps_focus_ = !typed_since_ && (!moves || input.text().isEmpty());
  return key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter;  // these press the button
}

bool TF_wnvgl::KeyPressed(QKeyEvent& event) {
  const int key = event.key();
  const bool modifier = key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_AltGr;
  if (comparison_end_.isActive() && !modifier && !event.isAutoRepeat()) EndComparison();
  if ((key != Qt::Key_Return && key != Qt::Key_Enter) || !ui_->RichEditVgl->hasFocus()) return false;
  if (!event.isAutoRepeat()) ShowAnswerAndJudge();
  return true;
}

}  // namespace tessaro
