#include "edit/wnlink.h"

#include "settings/kept_place.h"
#include "ui_wnlink.h"
#include "widgets/window_place.h"

namespace tessaro {
TF_wnlink::TF_wnlink(ProgramSettings& settings, QWidget* parent)
    : QDialog(parent), settings_(settings), ui_(std::make_unique<Ui::TF_wnlink>()) {
  ui_->setupUi(this);
  RestorePlaceAside(*this, settings_.ini, place_suffix::kLinks);
  connect(ui_->BitBtnLink, &QAbstractButton::clicked, this, [this] {
    KeepWindowPlace(*this, settings_.ini, place_suffix::kLinks);
    Q_EMIT Accepted(ui_->EditLinkText->text());
  });
  connect(ui_->BitBtnCancel, &QAbstractButton::clicked, this, &TF_wnlink::reject);
}

TF_wnlink::~TF_wnlink() = default;

void TF_wnlink::Begin(const QString& source_id, const QString& face) {
  ui_->EditQuelleIdent->setText(source_id);
  ui_->EditLinkText->setText(face);
  show();
  // The keys of the editor go on leading from card to card, and Enter ends the search.
  ui_->BitBtnLink->setFocus();
}

void TF_wnlink::ShowTarget(const QString& id) {
  ui_->EditZielIdent->setText(id);
}

void TF_wnlink::reject() {
  if (!isVisible()) return;
  KeepWindowPlace(*this, settings_.ini, place_suffix::kLinks);
  hide();
  Q_EMIT Cancelled();
}

}  // namespace tessaro
