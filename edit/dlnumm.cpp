#include "edit/dlnumm.h"

#include <utility>

#include "edit/card_work.h"
#include "edit/renumbering.h"
#include "ui_dlnumm.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

using namespace Qt::StringLiterals;

namespace tessaro {

TF_dlnumm::TF_dlnumm(CardFile& file, CommandStack& commands, Messages& messages, const Clock& clock, int row,
                     QWidget* parent, MayBegin may_begin)
    : QDialog(parent),
      file_(file),
      commands_(commands),
      messages_(messages),
      clock_(clock),
      row_(row),
      may_begin_(std::move(may_begin)),
      ui_(std::make_unique<Ui::TF_dlnumm>()) {
  ui_->setupUi(this);
  ShowDeadLinks();
  GrowToContent(*this);
  connect(ui_->BitBtnOK, &QAbstractButton::clicked, this, &TF_dlnumm::BitBtnOKClick);
  connect(ui_->BitBtnCancel, &QAbstractButton::clicked, this, &QDialog::reject);
  ui_->EditStartNummer->selectAll();
}

TF_dlnumm::~TF_dlnumm() = default;

void TF_dlnumm::ShowDeadLinks() {
  CardWork work(parentWidget(), clock_, u"Verweise zählen"_s, file_);
  const std::optional<int64_t> dead = CountDeadLinks(file_, work.keep_going());
  ui_->LabelTote->setVisible(dead != 0);
  ui_->CheckBoxTote->setVisible(dead != 0);
  if (!dead) return ui_->LabelTote->setText(u"Verweise, die zu keiner Karte führen, wurden nicht gezählt."_s);
  ui_->LabelTote->setText(
      (*dead == 1
           ? u"Ein Verweis führt zu keiner Karte. Nach dem Nummerieren könnte er zu einer falschen führen."_s
           : u"%1 Verweise führen zu keiner Karte. Nach dem Nummerieren könnten sie zu einer falschen führen."_s.arg(
                 *dead)));
}

void TF_dlnumm::BitBtnOKClick() {
  const auto start = ReadStartNumber(ui_->EditStartNummer->text().toStdString());
  if (!start || !CanNumberFrom(file_, *start)) {
    messages_.Error(this,
                    u"\nBitte eine Startnummer von 1 bis %1 eingeben:\nDie letzte Karte darf höchstens die "
                    u"Nummer 999990 erhalten."_s.arg(999990 - file_.CardCount() + 1));
    return ui_->EditStartNummer->setFocus();
  }
  if (may_begin_ && !may_begin_(this)) return;
  RenumberOutcome outcome = RenumberOutcome::Failed;
  {
    CardWork work(this, clock_, u"Karten nummerieren"_s, file_, 2);
    outcome = Renumber(file_, commands_, {*start, ui_->CheckBoxTote->isChecked()}, row_, work.keep_going());
    if (outcome == RenumberOutcome::Done) (void)CardEdit(file_).Finish(ShowIndexes(work));
  }
  if (outcome == RenumberOutcome::Cancelled) return;
  if (outcome != RenumberOutcome::Done) {
    messages_.Error(this, u"\nDie Karten konnten nicht nummeriert werden.\nAlles ist wie zuvor."_s);
    return reject();
  }
  messages_.Information(this, u"Nummerierung abgeschlossen"_s);
  accept();
}

}  // namespace tessaro
