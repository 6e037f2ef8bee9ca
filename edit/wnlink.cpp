#include "edit/wnlink.h"

#include "ui_wnlink.h"
#include "widgets/window_place.h"

namespace tessaro {
namespace {

constexpr std::string_view kPlaceSuffix = "HL";

}  // namespace

TF_wnlink::TF_wnlink(ProgramSettings& settings, QWidget* parent)
    : QDialog(parent), settings_(settings), ui_(std::make_unique<Ui::TF_wnlink>()) {
  ui_->setupUi(this);
  RestorePlaceAside(*this, settings_.ini, kPlaceSuffix);
  connect(ui_->BitBtnLink, &QAbstractButton::clicked, this, [this] {
    KeepWindowPlace(*this, settings_.ini, kPlaceSuffix);
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
  KeepWindowPlace(*this, settings_.ini, kPlaceSuffix);
  hide();
  Q_EMIT Cancelled();
}

}  // namespace tessaro
