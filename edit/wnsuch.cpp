#include "edit/wnsuch.h"

#include <QShortcut>

#include "settings/kept_place.h"
#include "ui_wnsuch.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

using namespace Qt::StringLiterals;

namespace tessaro {
QString SearchText(const SearchResult& result, bool possible) {
  if (!possible) return u"Ohne Zeichenfolge 1 lässt sich nur mit \"oder\" suchen"_s;
  if (result.cancelled) return u"Suche abgebrochen"_s;
  const QString examined = u"%1 Karten durchsucht"_s.arg(result.examined);
  if (result.row == 0) return u"Zeichenfolge(n) nicht gefunden. "_s + examined;
  return u"gefunden in Zeile %1. "_s.arg(result.line) + examined;
}

SoughtText SoughtTextOf(const QString& text, const SideCodePages& pages) {
  SoughtText sought;
  sought.front = ToBytes(text, pages.front).value_or(std::string());
  sought.back = ToBytes(text, pages.back).value_or(std::string());
  return sought;
}

TF_wnsuch::TF_wnsuch(ProgramSettings& settings, QWidget* parent)
    : QDialog(parent), settings_(settings), ui_(std::make_unique<Ui::TF_wnsuch>()) {
  ui_->setupUi(this);
  RestorePlaceAside(*this, settings_.ini, place_suffix::kSearch);
  connect(ui_->BitBtnStart, &QAbstractButton::clicked, this, &TF_wnsuch::Start);
  connect(ui_->BitBtnWeiter, &QAbstractButton::clicked, this, &TF_wnsuch::MoreWanted);
  connect(ui_->BitBtnClose, &QAbstractButton::clicked, this, &QDialog::close);
  connect(new QShortcut(QKeySequence(Qt::Key_F3), this), &QShortcut::activated, this, &TF_wnsuch::MoreWanted);
}

TF_wnsuch::~TF_wnsuch() = default;

void TF_wnsuch::Begin() {
  show();
  raise();
  activateWindow();
  ui_->EditString1->setFocus();
  ui_->EditString1->selectAll();
}

void TF_wnsuch::hideEvent(QHideEvent* event) {
  KeepWindowPlace(*this, settings_.ini, place_suffix::kSearch);
  QDialog::hideEvent(event);
}

SearchQuery TF_wnsuch::query() const {
  SearchQuery query;
  query.first = SoughtTextOf(ui_->EditString1->text(), pages_);
  query.second = SoughtTextOf(ui_->EditString2->text(), pages_);
  query.pages = pages_;
  query.mode = ui_->RadioButtonUnd->isChecked()     ? SearchMode::And
               : ui_->RadioButtonNicht->isChecked() ? SearchMode::AndNot
                                                    : SearchMode::Or;
  query.sides = ui_->RadioButtonVorne->isChecked()    ? SearchSides::Front
                : ui_->RadioButtonHinten->isChecked() ? SearchSides::Back
                                                      : SearchSides::Both;
  query.ignore_case = ui_->CheckBoxGross->isChecked();
  return query;
}

bool TF_wnsuch::TextsFit() {
  const auto fits = [this](const QString& text) { return text.isEmpty() || !SoughtTextOf(text, pages_).empty(); };
  const bool fit = fits(ui_->EditString1->text()) && fits(ui_->EditString2->text());
  if (!fit)
    ui_->LabelErgebnis->setText(u"Die Suchbegriffe haben Zeichen, die nicht im Zeichensatz der Kartei stehen"_s);
  return fit;
}

void TF_wnsuch::Start() {
  if (TextsFit()) Q_EMIT StartWanted();
}

void TF_wnsuch::ShowResult(const SearchResult& result, bool possible) {
  ui_->LabelErgebnis->setText(SearchText(result, possible));
}

}  // namespace tessaro
