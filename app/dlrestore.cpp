#include "app/dlrestore.h"

#include <QHeaderView>
#include <QLocale>
#include <QPushButton>

#include "ui_dlrestore.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

enum Column { Saved, Cards, Size, Remark };

QString CardsText(const std::optional<int64_t>& cards) {
  return cards ? QLocale().toString(static_cast<qlonglong>(*cards)) : u"beschädigt"_s;
}

}  // namespace

TF_dlrestore::TF_dlrestore(const QString& card_file, const std::vector<BackupOffer>& offers, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::TF_dlrestore>()), offers_(offers) {
  ui_->setupUi(this);
  ui_->LabelTitle->setText(u"Welchen Stand der Kartei „%1“ wollen Sie zurückholen?"_s.arg(card_file));
  ui_->ButtonBox->button(QDialogButtonBox::Ok)->setText(u"&Zurückholen"_s);
  QPushButton* other = ui_->ButtonBox->addButton(u"Andere &Datei …"_s, QDialogButtonBox::ActionRole);
  other->setObjectName(u"ButtonOther"_s);
  other->setToolTip(u"Eine andere Kartei oder Sicherung wählen"_s);
  other->setAutoDefault(false);
  connect(other, &QPushButton::clicked, this, &TF_dlrestore::ButtonOtherClick);
  connect(ui_->ListBackups, &QTreeWidget::itemActivated, this, &TF_dlrestore::accept);
  connect(ui_->ListBackups, &QTreeWidget::itemSelectionChanged, this, [this] {
    ui_->ButtonBox->button(QDialogButtonBox::Ok)->setEnabled(!ui_->ListBackups->selectedItems().isEmpty());
  });
  for (const BackupOffer& offer : offers_) AddOffer(offer);
  for (const Column column : {Saved, Cards, Size}) ui_->ListBackups->resizeColumnToContents(column);
  ui_->ListBackups->setFocus();
}

TF_dlrestore::~TF_dlrestore() = default;

void TF_dlrestore::AddOffer(const BackupOffer& offer) {
  const QLocale locale;
  auto* item = new QTreeWidgetItem(ui_->ListBackups);
  item->setText(Saved, locale.toString(offer.saved, u"ddd dd.MM.yyyy  HH:mm:ss"_s));
  item->setText(Cards, CardsText(offer.cards));
  item->setText(Size, locale.formattedDataSize(static_cast<qint64>(offer.bytes), 1, QLocale::DataSizeSIFormat));
  item->setTextAlignment(Cards, Qt::AlignRight | Qt::AlignVCenter);
  item->setTextAlignment(Size, Qt::AlignRight | Qt::AlignVCenter);
  if (offer.put_aside) {
    item->setText(Cards, u"%1 geändert"_s.arg(locale.toString(static_cast<qlonglong>(*offer.put_aside))));
    item->setText(Remark, offer.fit ? u"Beiseite gelegte Antworten"_s
                                    : u"Beiseite gelegte Antworten zu einem anderen Stand der Kartei"_s);
    item->setDisabled(!offer.fit);
  }
  if (offer.last_save) item->setText(Remark, u"Stand vor dem letzten Speichern"_s);
  item->setToolTip(Saved, FromPath(offer.path));
  if (offer.cards && ui_->ListBackups->selectedItems().isEmpty()) ui_->ListBackups->setCurrentItem(item);
}

void TF_dlrestore::ButtonOtherClick() {
  path_.clear();
  QDialog::accept();
}

void TF_dlrestore::accept() {
  const int chosen = ui_->ListBackups->indexOfTopLevelItem(ui_->ListBackups->currentItem());
  if (chosen < 0 || ui_->ListBackups->selectedItems().isEmpty()) return;
  path_ = offers_[static_cast<size_t>(chosen)].path;
  QDialog::accept();
}

}  // namespace tessaro
