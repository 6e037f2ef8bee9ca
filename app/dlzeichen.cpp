#include "app/dlzeichen.h"

#include <QHeaderView>

#include "cards/card_reader.h"
#include "hypertext/plain_text.h"
#include "ui_dlzeichen.h"
#include "widgets/count_texts.h"
#include "widgets/text.h"
#include "widgets/theme.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr size_t kSamples = 12;
constexpr int kLettersShown = 120;

QString SideTitle(SideName side) {
  return side == SideName::Front ? u"Vorderseite"_s : u"Rückseite"_s;
}

CodePage PageOf(const SideCodePages& pages, SideName side) {
  return side == SideName::Front ? pages.front : pages.back;
}

QString SetName(CodePage page) {
  return CharacterSetNames().at(static_cast<int>(page.set()));
}

}  // namespace

QStringList CharacterSetNames() {
  return {u"Westeuropäisch"_s, u"Mitteleuropäisch"_s, u"Kyrillisch"_s, u"Griechisch"_s,  u"Türkisch"_s,
          u"Baltisch"_s,       u"Hebräisch"_s,        u"Arabisch"_s,   u"Thailändisch"_s};
}

TF_dlzeichen::TF_dlzeichen(const CardFile& file, const SideCodePages& to, const LackingText& lacking, QWidget* parent)
    : QDialog(parent),
      file_(file),
      from_(ReadCodePages(file.settings())),
      to_(to),
      samples_(SidesToShow(file, to, kSamples)),
      ui_(std::make_unique<Ui::TF_dlzeichen>()) {
  ui_->setupUi(this);
  QStringList changes;
  for (const SideName side : {SideName::Front, SideName::Back}) {
    const CodePage from = PageOf(from_, side);
    const CodePage page = PageOf(to_, side);
    if (!(from == page)) changes << u"%1 von %2 auf %3"_s.arg(SideTitle(side), SetName(from), SetName(page));
  }
  ui_->LabelWechsel->setText(
      u"Der Zeichensatz ändert sich: %1. Was soll mit den Texten geschehen, die schon auf den "
      u"Karten stehen?"_s.arg(changes.join(u", "_s)));
  QTableWidget& list = *ui_->ListeKarten;
  list.setColumnCount(3);
  list.setHorizontalHeaderLabels({u"Karte"_s, u"Bisher"_s, u"Danach"_s});
  list.horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  list.horizontalHeader()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  list.verticalHeader()->hide();
  list.setEditTriggers(QAbstractItemView::NoEditTriggers);
  list.setSelectionMode(QAbstractItemView::NoSelection);
  list.setTabKeyNavigation(false);
  ShowLacking(lacking);
  const bool fits = lacking.sides == 0;
  ui_->Umwandeln->setEnabled(fits);
  (fits ? ui_->Umwandeln : ui_->NeuLesen)->setChecked(true);
  connect(ui_->Umwandeln, &QAbstractButton::toggled, this, &TF_dlzeichen::ShowCards);
  connect(ui_->BitBtnOK, &QAbstractButton::clicked, this, &QDialog::accept);
  connect(ui_->BitBtnCancel, &QAbstractButton::clicked, this, &QDialog::reject);
  ShowCards();
  (fits ? ui_->Umwandeln : ui_->NeuLesen)->setFocus();
}

TF_dlzeichen::~TF_dlzeichen() = default;

bool TF_dlzeichen::convert() const {
  return ui_->Umwandeln->isChecked();
}

void TF_dlzeichen::ShowCards() {
  QTableWidget& list = *ui_->ListeKarten;
  list.setRowCount(static_cast<int>(samples_.size()));
  for (int i = 0; i < list.rowCount(); ++i) {
    const auto [row, side] = samples_[static_cast<size_t>(i)];
    const std::string text = PlainBeginning(CardReader(file_).Side(row, side));
    const auto shown = [&](CodePage page) { return FromBytes(text, page).simplified().left(kLettersShown); };
    const QString before = shown(PageOf(from_, side));
    list.setItem(i, 0, new QTableWidgetItem(u"%1, %2"_s.arg(row - 1).arg(SideTitle(side))));
    list.setItem(i, 1, new QTableWidgetItem(before));
    list.setItem(i, 2, new QTableWidgetItem(convert() ? before : shown(PageOf(to_, side))));
  }
}

void TF_dlzeichen::ShowLacking(const LackingText& lacking) {
  ui_->LabelFehlt->setVisible(lacking.sides > 0);
  ui_->ListeFehlt->setVisible(lacking.sides > 0);
  if (lacking.sides == 0) return;
  SetAccent(*ui_->LabelFehlt, Accent::Warning);
  QString text =
      lacking.sides == 1
          ? u"Umwandeln geht nicht: Auf einer Kartenseite stehen Zeichen, die der neue Zeichensatz nicht hat."_s
          : u"Umwandeln geht nicht: Auf %1 Kartenseiten stehen Zeichen, die der neue Zeichensatz nicht hat."_s.arg(
                NumberText(lacking.sides));
  if (lacking.sides > static_cast<int64_t>(lacking.listed.size())) {
    text += u" Hier die ersten %1."_s.arg(lacking.listed.size());
  }
  ui_->LabelFehlt->setText(text + u" Ändern Sie diese Karten zuerst, oder lesen Sie die Texte neu."_s);
  for (const LackingSide& side : lacking.listed) {
    QStringList characters;
    for (const char16_t character : side.characters) characters << QString(QChar(character));
    ui_->ListeFehlt->addItem(u"Karte %1, %2: %3"_s.arg(side.row - 1).arg(SideTitle(side.side), characters.join(u' ')));
  }
}

}  // namespace tessaro
