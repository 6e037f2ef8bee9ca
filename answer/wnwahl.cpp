#include "answer/wnwahl.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyle>
#include <QTabBar>
#include <QToolButton>

#include "answer/verdict_field.h"
#include "settings/keys.h"
#include "ui_wnwahl.h"
#include "widgets/text.h"
#include "widgets/theme.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr KeptPlace kFirstChoicePlace = {.x = 76, .y = 572, .width = 580, .height = 154};

constexpr int kPreparedAtOnce = 10'000;  // cards; no wait that anyone feels
constexpr int kPreparedInAStep = 1000;

const QString kRightText = u"Antwort war richtig, nächste Karte ist angezeigt"_s;
const QString kWrongText = u"Fehler - richtige Antwort ist angezeigt - weiter n u r  mit <weiter>"_s;

QString LetterOf(ChoicePage page, size_t choice) {
  return FromBytes(ChoiceName(page, choice));
}

void SetLetters(QWidget& control, const std::optional<QColor>& colour) {
  QPalette palette = control.parentWidget()->palette();
  if (colour) palette.setColor(QPalette::ButtonText, *colour);
  control.setPalette(palette);
}

}  // namespace

TF_wnwahl::TF_wnwahl(const AnswerSurroundings& around, CardFile& file, Random& random)
    : AnswerWindow(around, place_suffix::kChoice, kFirstChoicePlace),
      ui_(std::make_unique<Ui::TF_wnwahl>()),
      offers_(keys::kOfferAnswers.Read(around.settings.ini)),
      offer_(file),
      preparation_(around.clock, this),
      random_(random) {
  ui_->setupUi(this);
  DressHeader(*ui_->LabelTitel, *ui_->SpeedButtonFrei, *ui_->SpeedButtonClose, *ui_->SpeedButtonHelp);
  MakeChoices();
  setFocusPolicy(Qt::StrongFocus);
  ui_->PageControlSelect->tabBar()->setFocusPolicy(Qt::TabFocus);
  ui_->PageControlSelect->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
  ui_->PageControlSelect->setCurrentIndex(static_cast<int>(keys::kChoicePage.Read(around_.settings.ini)));
  connect(ui_->PageControlSelect, &QTabWidget::currentChanged, this, &TF_wnwahl::PageChanged);
  connect(ui_->PanelAntworten, &OfferedList::Chosen, this, &TF_wnwahl::OfferedClick);
  connect(ui_->BitBtnMehrfach, &QAbstractButton::clicked, this, &TF_wnwahl::BitBtnMehrfachClick);
  connect(ui_->BitBtnLerneIch, &QAbstractButton::clicked, this, &TF_wnwahl::BitBtnLerneIchClick);
  WatchKeys();
  PageChanged();
  Restore();
  ui_->PanelAntworten->hide();
}

TF_wnwahl::~TF_wnwahl() {
  keys::kChoicePage.Write(ui_->PageControlSelect->currentIndex(), around_.settings.ini);
}

void TF_wnwahl::MakeChoices() {
  for (const ChoicePage page : {ChoicePage::Numbers, ChoicePage::Letters}) {
    for (size_t i = 0; i < kChoices; ++i) {
      auto* button = findChild<QToolButton*>(u"SpeedButton"_s + LetterOf(page, i));
      choices_[static_cast<size_t>(page)][i] = button;
      connect(button, &QAbstractButton::clicked, this, [this, i, button] { ChoiceClick(i, *button); });
    }
  }
  for (size_t i = 0; i < kChoices; ++i) {
    boxes_[i] = findChild<QCheckBox*>(u"CheckBox%1"_s.arg(i));
    // Without room for a caption, so that it stands in the middle below its letter.
    boxes_[i]->setFixedWidth(style()->pixelMetric(QStyle::PM_IndicatorWidth) + 2);
    connect(boxes_[i], &QAbstractButton::clicked, this, [this, i] { CheckBoxClick(i); });
  }
}

ChoicePage TF_wnwahl::Page() const {
  return ui_->PageControlSelect->currentIndex() == 0 ? ChoicePage::Numbers : ChoicePage::Letters;
}

CodePage TF_wnwahl::KeyPage() const {
  return around_.learning.Card().second_page;
}

void TF_wnwahl::PageChanged() {
  for (size_t i = 0; i < kChoices; ++i) {
    boxes_[i]->setAccessibleName(LetterOf(Page(), i));
    boxes_[i]->setToolTip(u"%1 ankreuzen (Leertaste)"_s.arg(LetterOf(Page(), i)));
  }
  ShowHint();
  ShowStatus();
}

void TF_wnwahl::ShowHint() {
  ui_->StatusBarSelect->setPlaceholderText(
      preparation_.Running()          ? u"Antworten zum Auswählen werden gesucht …"_s
      : offered_                      ? u"Antwort wählen (A bis %1)"_s.arg(ui_->PanelAntworten->LastLetter())
      : Page() == ChoicePage::Numbers ? u"Zahl wählen (Ziffer); mehrere: ankreuzen und prüfen (Eingabetaste)"_s
                                      : u"Buchstaben wählen; mehrere: ankreuzen und prüfen (Eingabetaste)"_s);
}

// For the card on screen; while a long card file is being looked at there is none yet. The offered answers stand in the
// place of letters, numbers and boxes.
void TF_wnwahl::MakeOffer() {
  const CardOnScreen card = around_.learning.Card();
  preparation_.Stop();
  const bool wanted = offers_ && Asks();
  if (wanted && offer_.Prepare(card.sides_swapped, kPreparedAtOnce)) PrepareOffer();
  offered_ = wanted && !preparation_.Running() ? offer_.Make(card, random_) : std::nullopt;
  if (offered_) ui_->PanelAntworten->Offer(*offered_, card.second_page);
  ui_->PanelAntworten->setVisible(offered_.has_value());
  for (QWidget* part : {static_cast<QWidget*>(ui_->PageControlSelect), static_cast<QWidget*>(ui_->PanelCheck),
                        static_cast<QWidget*>(ui_->BitBtnMehrfach)}) {
    part->setVisible(!offered_);
  }
  ShowHint();
}

void TF_wnwahl::PrepareOffer() {
  const bool swapped = around_.learning.Card().sides_swapped;
  preparation_.Begin([this, swapped] { return offer_.Prepare(swapped, kPreparedInAStep); },
                     [this] {
                       // Who is answering the card by its letters or numbers goes on.
                       if (!around_.gate.SelectError() && Ticked().none()) MakeOffer();
                       ShowHint();
                       ShowStatus();
                       Q_EMIT OfferDecided();
                     });
}

void TF_wnwahl::ReadSettings() {
  const bool offers = keys::kOfferAnswers.Read(around_.settings.ini);
  if (offers == std::exchange(offers_, offers) || around_.gate.SelectError()) return;
  CardCame();
}

void TF_wnwahl::CardCame() {
  around_.gate.SetSelectError(false);
  Restore();
  MakeOffer();
  if (const std::optional<ChoicePage> page = PageOf(around_.learning.SecondSide(), KeyPage()); page && Asks()) {
    ui_->PageControlSelect->setCurrentIndex(static_cast<int>(*page));
  }
  for (QWidget* part : {static_cast<QWidget*>(ui_->PageControlSelect), static_cast<QWidget*>(ui_->PanelCheck)}) {
    part->setEnabled(Asks());
  }
  ShowStatus();
}

void TF_wnwahl::SwitchedOff() {
  if (around_.gate.SelectError()) BitBtnLerneIchClick();
  preparation_.Stop();
}

bool TF_wnwahl::CanAnswer() const {
  const std::string_view key = around_.learning.SecondSide();
  return Asks() && (offered_ || preparation_.Running() || CanBeRight(key, ChoicePage::Numbers, KeyPage()) ||
                    CanBeRight(key, ChoicePage::Letters, KeyPage()));
}

void TF_wnwahl::TakeFocus() {
  FocusOn(*this);
}

bool TF_wnwahl::MayChoose() const {
  return !around_.gate.InputLocked() && !around_.gate.SelectError() && Asks();
}

void TF_wnwahl::OfferedClick(size_t place) {
  if (!MayChoose() || !offered_) return;
  if (place == offered_->right) {
    Right(kRightText);
  } else {
    ui_->PanelAntworten->Mark(place, offered_->right);
    Wrong();
  }
  around_.gate.LockInput();
}

void TF_wnwahl::ChoiceClick(size_t choice, QToolButton& button) {
  if (!MayChoose()) return;
  if (IsRightChoice(around_.learning.SecondSide(), Page(), choice)) {
    Right(kRightText);
  } else {
    SetLetters(button, AccentColour(Accent::NotKnown, palette()));
    Wrong();
  }
  around_.gate.LockInput();
}

void TF_wnwahl::CheckBoxClick(size_t choice) {
  box_ = choice;
  const bool any = Ticked().any() && !around_.gate.SelectError();
  ui_->BitBtnMehrfach->setEnabled(any);
  if (any) ui_->BitBtnMehrfach->setFocus();
}

void TF_wnwahl::BitBtnMehrfachClick() {
  if (!MayChoose()) return;
  if (RightTicks(around_.learning.SecondSide(), Page(), KeyPage()) == Ticked()) {
    Right(u"Antwort war richtig"_s);
  } else {
    Wrong();
  }
  ui_->BitBtnMehrfach->setEnabled(false);
  around_.gate.LockInput();
}

void TF_wnwahl::BitBtnLerneIchClick() {
  around_.gate.SetSelectError(false);
  Register(false);
  Restore();
}

// The next card comes while this is registered, and finds the bar as it is.
void TF_wnwahl::Right(const QString& text) {
  Register(true);
  Untick();
  ShowVerdict(*ui_->StatusBarSelect, text, Verdict::Plain);
  ShowStatus(ChoiceStatus::NewChoice);
}

void TF_wnwahl::Wrong() {
  around_.gate.SetSelectError(true);
  around_.learning.ShowAnswer();
  QPalette red = palette();
  red.setColor(QPalette::Window, QColor(0xFFC62828u));
  ui_->PanelLerneIch->setPalette(red);
  SetLetters(*ui_->BitBtnLerneIch, AccentColour(Accent::NotKnown, palette()));
  ShowVerdict(*ui_->StatusBarSelect, kWrongText, Verdict::Yellow);
  ui_->BitBtnLerneIch->setEnabled(true);
  FocusOn(*ui_->BitBtnLerneIch);
}

void TF_wnwahl::Restore() {
  ui_->PanelLerneIch->setPalette({});
  ShowVerdict(*ui_->StatusBarSelect, {}, Verdict::Plain);
  for (const auto& page : choices_) {
    for (QToolButton* button : page) SetLetters(*button, std::nullopt);
  }
  SetLetters(*ui_->BitBtnLerneIch, std::nullopt);
  // The focus must not fall to the next control, which would take the keys for itself.
  if (ui_->BitBtnLerneIch->hasFocus() || ui_->BitBtnMehrfach->hasFocus()) setFocus();
  ui_->BitBtnLerneIch->setEnabled(false);
  Untick();
}

void TF_wnwahl::Untick() {
  for (QCheckBox* box : boxes_) box->setChecked(false);
  ui_->BitBtnMehrfach->setEnabled(false);
  box_ = 0;
}

Ticks TF_wnwahl::Ticked() const {
  Ticks ticks;
  for (size_t i = 0; i < kChoices; ++i) ticks.set(i, boxes_[i]->isChecked());
  return ticks;
}

void TF_wnwahl::ShowStatus(ChoiceStatus after) {
  const bool possible =
      offered_ || preparation_.Running() || CanBeRight(around_.learning.SecondSide(), Page(), KeyPage());
  around_.gate.SetStatus(!around_.gate.ChoiceVisible() ? ChoiceStatus::None
                         : possible                    ? after
                                                       : ChoiceStatus::NoChoice);
  Q_EMIT StatusChanged();
}

bool TF_wnwahl::KeyPressed(QKeyEvent& event) {
  const int key = event.key();
  if (key == Qt::Key_Return || key == Qt::Key_Enter) {
    if (event.isAutoRepeat()) return true;
    if (ui_->BitBtnLerneIch->isEnabled()) {
      ui_->BitBtnLerneIch->click();
    } else if (ui_->BitBtnMehrfach->isEnabled()) {
      ui_->BitBtnMehrfach->click();
    } else if (offered_) {
      return false;  // chooses the answer that has the focus
    }
    return true;
  }
  if (event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) return false;
  if (offered_) return ChooseOffered(event);
  return MoveAmongBoxes(key) || ChooseByKey(event);
}

// Space ticks the box that the arrows have come to, also after a tick has given the focus to the button beside it.
bool TF_wnwahl::MoveAmongBoxes(int key) {
  if (ui_->PageControlSelect->tabBar()->hasFocus() || !ui_->PanelCheck->isEnabled()) return false;
  const bool in_boxes = std::any_of(boxes_.begin(), boxes_.end(), [](const QCheckBox* box) { return box->hasFocus(); });
  if (key == Qt::Key_Space && ui_->BitBtnMehrfach->hasFocus()) {
    boxes_[box_]->click();
    return true;
  }
  if (key != Qt::Key_Left && key != Qt::Key_Right) return false;
  if (in_boxes || ui_->BitBtnMehrfach->hasFocus()) {
    for (size_t i = 0; in_boxes && i < kChoices; ++i) {
      if (boxes_[i]->hasFocus()) box_ = i;
    }
    box_ = (box_ + (key == Qt::Key_Right ? 1 : kChoices - 1)) % kChoices;
  }
  boxes_[box_]->setFocus(Qt::TabFocusReason);
  return true;
}

bool TF_wnwahl::ChooseOffered(QKeyEvent& event) {
  if (event.key() == Qt::Key_Up || event.key() == Qt::Key_Down) {
    ui_->PanelAntworten->MoveFocus(event.key() == Qt::Key_Down);
    return true;
  }
  QPushButton* button = ui_->PanelAntworten->ButtonOf(event.text().toUpper());
  if (button != nullptr && !event.isAutoRepeat()) button->click();
  return button != nullptr;
}

// Not while boxes are ticked or one has the focus: the learner is about to name several.
bool TF_wnwahl::ChooseByKey(QKeyEvent& event) {
  const QString text = event.text().toUpper();
  if (text.size() != 1 || qobject_cast<QCheckBox*>(focusWidget()) != nullptr) return false;
  for (size_t i = 0; i < kChoices; ++i) {
    if (text != LetterOf(Page(), i)) continue;
    if (!event.isAutoRepeat() && Ticked().none() && ui_->PageControlSelect->isEnabled()) {
      choices_[static_cast<size_t>(Page())][i]->click();
    }
    return true;
  }
  return false;
}

}  // namespace tessaro
