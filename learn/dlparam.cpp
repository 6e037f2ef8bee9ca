#include "learn/dlparam.h"

#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTimer>

#include "settings/decimal_text.h"
#include "ui_dlparam.h"
#include "widgets/scroll_pages.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int kValues = 0;  // their page

QString RefusalText(ParameterField field) {
  switch (field) {
    case ParameterField::MinWidth:
      return u"<< Minimale Breite mindestens 2 ! >>"_s;
    case ParameterField::MaxWidth:
      return u"<< Breite zu klein >>"_s;
    case ParameterField::SwitchCount:
      return u"<< Zahl von 5 bis 50 erforderlich >>"_s;
    case ParameterField::CheckEvery:
      return u"<< Zahl von 2 bis 20 >>"_s;
    case ParameterField::CheckRun:
      return u"<< w = 10 bis 2000 >>"_s;
    case ParameterField::RetentionWeight:
      return u"<< Zahl von 1.0 bis 4.0 >>"_s;
    case ParameterField::MaxDays:
      return u"<< Zahl 14 bis 500 >>"_s;
    default:
      return u"<< Zahl ab 1 >>"_s;
  }
}

// What the assistant suggests, a line for each value.
QString SuggestionTable(const LearningParameters& p) {
  const auto line = [](const QString& name, const QString& value, const QString& unit) {
    return u"<tr><td>%1&nbsp;&nbsp;</td><td align=right>%2</td><td>&nbsp;%3</td></tr>"_s.arg(name, value, unit);
  };
  const auto number = [](int64_t value) { return QString::number(value); };
  return u"Dazu passen diese Werte:<table cellspacing=2>"_s +
         line(u"Auswahl aus den am schlechtesten beherrschten"_s, number(p.max_width), u"Karten"_s) +
         line(u"bei Intensivwiederholung aus"_s, number(p.min_width), u"Karten"_s) +
         line(u"Intensivwiederholung ab"_s, number(p.switch_count), u"nicht gewussten Karten"_s) +
         line(u"Überprüfung bei jeder"_s, number(p.check_every) + u'.', u"Karte"_s) +
         line(u"am Stück durchzuprüfen"_s, number(p.check_run), u"Karten"_s) +
         line(u"Behaltenszeit mal"_s, QString::fromStdString(WithComma(DecimalText(p.retention_weight))), {}) +
         line(u"spätestens wieder nach"_s, number(p.max_time / kSecondsPerDay), u"Tagen"_s) + u"</table>"_s;
}

// The place of the checked button, which is the place of its answer; nothing while none is checked.
template <typename Choice>
std::optional<Choice> Chosen(std::initializer_list<const QRadioButton*> buttons) {
  int place = 0;
  for (const QRadioButton* button : buttons) {
    if (button->isChecked()) return static_cast<Choice>(place);
    ++place;
  }
  return std::nullopt;
}

}  // namespace

TF_dlparam::TF_dlparam(const ParameterEntry& entry, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::TF_dlparam>()), entry_(entry) {
  ui_->setupUi(this);
  fields_ = {ui_->EdMinBreite, ui_->EdMaxBreite,       ui_->EdAnzKartWechsel, ui_->EdCheck_n,
             ui_->EdCheck_w,   ui_->EdCheckZeitFaktor, ui_->EdCheckImmer,     ui_->EdCheckPosition};
  SetTexts(ParameterTextsOf(entry));
  for (size_t i = 0; i < fields_.size(); ++i) {
    connect(fields_[i], &QLineEdit::editingFinished, this, [this, i] { FieldLeft(static_cast<ParameterField>(i)); });
  }
  for (QRadioButton* button : findChildren<QRadioButton*>()) {
    connect(button, &QRadioButton::toggled, this, &TF_dlparam::ShowSuggestion);
  }
  connect(ui_->BitBtnOK, &QPushButton::clicked, this, &TF_dlparam::BitBtnOKClick);
  connect(ui_->BitBtnCancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(ui_->BitBtnDefault, &QPushButton::clicked, this, &TF_dlparam::BitBtnDefaultClick);
  connect(ui_->BitBtnUebernehmen, &QPushButton::clicked, this, &TF_dlparam::BitBtnUebernehmenClick);
  for (QLabel* hint : findChildren<QLabel*>(QRegularExpression(u"^HinweisEd"_s))) MakeQuiet(*hint);
  LetPagesScroll(*ui_->PageControl);
  FitToScreen(*this);
  ui_->PageControl->setCurrentIndex(kValues);
  ui_->EdMinBreite->setFocus();
  ShowSuggestion();
}

// A field that loses the focus speaks to the dialog: while there is one.
TF_dlparam::~TF_dlparam() {
  hide();
}

void TF_dlparam::BitBtnOKClick() {
  const ParameterTexts texts = Texts();
  if (const std::optional<ParameterField> wrong = FindWrong(texts)) {
    RefuseField(*wrong);
    return;
  }
  entry_ = EntryOf(texts);
  accept();
}

void TF_dlparam::BitBtnDefaultClick() {
  SetTexts(ParameterTextsOf({LearningParameters(), EntryOf(Texts()).check_position}));
  Say(u"Vorgabewerte gesetzt"_s);
}

void TF_dlparam::BitBtnUebernehmenClick() {
  const std::optional<LearningParameters> suggestion = Suggestion();
  if (!suggestion) {
    Say(u"Eingaben im Assistenten fehlen"_s, Accent::Warning);
    return;
  }
  SetTexts(ParameterTextsOf({*suggestion, EntryOf(Texts()).check_position}));
  ui_->PageControl->setCurrentIndex(kValues);
  Say(u"Vorgeschlagene Werte eingetragen; mit OK gelten sie."_s);
}

// Also sent by Enter, on which OK follows and looks at all fields itself.
void TF_dlparam::FieldLeft(ParameterField field) {
  if (IsGood(Texts(), field)) {
    ui_->StatusZeile->clear();
    return;
  }
  // The focus is on its way to another control: it is called back when it has arrived there.
  QTimer::singleShot(0, this, [this, field] {
    if (!IsGood(Texts(), field)) RefuseField(field);
  });
}

void TF_dlparam::RefuseField(ParameterField field) {
  QLineEdit* edit = fields_[static_cast<size_t>(field)];
  ui_->PageControl->setCurrentIndex(kValues);
  // Taking the focus away makes the other field emit editingFinished, too.
  edit->setFocus();
  edit->selectAll();
  Say(RefusalText(field), Accent::Warning);
}

void TF_dlparam::Say(const QString& text, std::optional<Accent> accent) {
  SetAccent(*ui_->StatusZeile, accent);
  ui_->StatusZeile->setText(text);
}

std::optional<LearningParameters> TF_dlparam::Suggestion() const {
  const auto short_term = Chosen<Memory>({ui_->RadioKurzSchwach, ui_->RadioKurzMittel, ui_->RadioKurzGut});
  const auto long_term = Chosen<Memory>({ui_->RadioLangSchwach, ui_->RadioLangMittel, ui_->RadioLangGut});
  const auto kind = Chosen<CardKind>({ui_->RadioKartenKurz, ui_->RadioKartenGemischt, ui_->RadioKartenSchwer});
  if (!short_term || !long_term || !kind) return std::nullopt;
  return SuggestParameters(*short_term, *long_term, *kind);
}

void TF_dlparam::ShowSuggestion() {
  const std::optional<LearningParameters> p = Suggestion();
  if (!p) {
    ui_->LabelVorschlag->setText(u"Beantworten Sie die drei Fragen; dann stehen hier die Werte, die dazu passen."_s);
    return;
  }
  ui_->LabelVorschlag->setText(SuggestionTable(*p));
}

ParameterTexts TF_dlparam::Texts() const {
  ParameterTexts texts;
  for (size_t i = 0; i < fields_.size(); ++i) texts[i] = fields_[i]->text().toStdString();
  return texts;
}

void TF_dlparam::SetTexts(const ParameterTexts& texts) {
  for (size_t i = 0; i < fields_.size(); ++i) fields_[i]->setText(QString::fromStdString(texts[i]));
}

}  // namespace tessaro
