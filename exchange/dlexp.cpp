#include "exchange/dlexp.h"

#include <QPushButton>
#include <algorithm>

#include "exchange/exchange_texts.h"
#include "exchange/separator_field.h"
#include "platform/clock.h"
#include "platform/disk.h"
#include "settings/keys.h"
#include "settings/side_settings.h"
#include "store/file/card_file.h"
#include "ui_dlexp.h"
#include "widgets/count_texts.h"
#include "widgets/long_work.h"
#include "widgets/messages.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

constexpr int64_t kLeastPerCard = 300;
constexpr int64_t kMostPerCard = 2000;

}  // namespace

TF_dlexp::TF_dlexp(const ExchangeTies& ties, QWidget* parent)
    : QDialog(parent), ties_(ties), ui_(std::make_unique<Ui::TF_dlexp>()) {
  ui_->setupUi(this);
  const SeparatorFields made = MakeSeparatorFields(*ui_, "|", this);
  field_ = made.field;
  card_ = made.card;
  quote_ = made.quote;
  for (SeparatorField* field : {field_, card_, quote_}) {
    connect(field, &SeparatorField::Changed, this, &TF_dlexp::ShowWarnings);
  }
  connect(ui_->BitBtnDatei, &QPushButton::clicked, this, &TF_dlexp::BitBtnDateiClick);
  connect(ui_->BitBtnZeile, &QPushButton::clicked, this, &TF_dlexp::BitBtnZeileClick);
  connect(ui_->BitBtnNormal, &QPushButton::clicked, this, &TF_dlexp::BitBtnNormalClick);
  connect(ui_->BitBtnClose, &QPushButton::clicked, this, &QDialog::close);
  keys::kBytesPerCard.Write(std::clamp(keys::kBytesPerCard.Read(ties_.settings), kLeastPerCard, kMostPerCard),
                            ties_.settings);
  // Two code pages in one file are read by no other program.
  ui_->CheckBoxUtf8->setChecked(!ReadCodePages(ties_.file.settings()).western());
  ui_->BitBtnDatei->setDefault(true);
  ui_->BitBtnDatei->setFocus();
  ShowSentence();
  ShowWarnings();
}

TF_dlexp::~TF_dlexp() = default;

void TF_dlexp::ShowWarnings() {
  const std::optional<char> separator = field_->value();
  field_->Warn(separator ? FaultOf(*separator) : SeparatorFault::None);
  for (SeparatorField* second : {card_, quote_}) {
    second->Warn(separator && second->value() ? FaultOf(*separator, *second->value()) : SeparatorFault::None);
  }
  GrowToContent(*this);
}

void TF_dlexp::ShowSentence() {
  const QString cards = CardsText(ties_.file.CardCount());
  ui_->LabelSatz->setText(
      path_.empty() ? u"Wählen Sie zuerst die Datei, in die %1 geschrieben werden."_s.arg(cards)
                    : u"In die Datei %1 kommen %2: als Tabelle mit allen acht Spalten samt Statistik, oder als "
                      u"Text nur mit Vorder- und Rückseiten. Vorher können die Karten neu nummeriert werden; das "
                      u"ändert die offene Kartei."_s.arg(FromPath(path_.filename()), cards));
}

bool TF_dlexp::IsOwnFile(const fs::path& path) const {
  const CardFilePaths& own = ties_.file.paths();
  const fs::path target = fs::absolute(ties_.disk.Resolve(path)).lexically_normal();
  const auto files = {own.cards, own.learn_index, own.link_index, own.settings, own.backup, own.journal};
  return std::find(files.begin(), files.end(), target) != files.end();
}

void TF_dlexp::BitBtnDateiClick() {
  const fs::path suggested = path_.empty() ? ties_.folder / "export1.txt" : path_;
  const QString chosen = ties_.messages.ChooseFileToSave(
      this, u"Exportdatei"_s, FromPath(suggested),
      u"Textdateien (f. Export geeignet) (*.txt);;Texttabellen comma separated (*.csv);;Alle Dateien (*)"_s);
  if (chosen.isEmpty()) return;
  const fs::path path = WithTextEnding(ToPath(chosen));
  if (IsOwnFile(path)) {
    return ties_.messages.Error(this, u"\nDas ist eine Datei der offenen Kartei.\nBitte einen anderen Namen wählen."_s);
  }
  // The one that was asked about had another name.
  if (path != ToPath(chosen) && ties_.disk.Exists(path) &&
      ties_.messages.Question(this, u"Die Datei\n%1\ngibt es schon. Soll sie ersetzt werden?"_s.arg(FromPath(path)),
                              u"Ersetzen"_s, u"Nicht ersetzen"_s, {}, Answer::No) != Answer::Yes) {
    return;
  }
  path_ = path;
  ui_->EditDatei->setText(FromPath(path_));
  ShowSentence();
  GrowToContent(*this);
  ShowSpace();
  EnableWays(true);
  ui_->BitBtnNormal->setFocus();
}

void TF_dlexp::ShowSpace() {
  const int64_t needed = ties_.file.cards().RowCount() * keys::kBytesPerCard.Read(ties_.settings);
  const std::optional<uint64_t> free = ties_.disk.FreeBytes(path_.parent_path());
  const QString space = ExportSpaceText(path_, free, needed);
  if (!free || static_cast<uint64_t>(needed) <= *free) return ui_->StatusBarExport->showMessage(space);
  ties_.messages.Error(this, u"Wenig Speicherplatz, bitte checken!"_s);
  ui_->StatusBarExport->showMessage(space);
}

bool TF_dlexp::TakeSeparators(SeparatorField& one, SeparatorField& other, char& first, char& second) {
  for (SeparatorField* field : {&one, &other}) {
    if (field->value()) continue;
    ui_->StatusBarExport->showMessage(u"Eingabe fehlt"_s);
    field->FocusCode();
    return false;
  }
  first = *one.value();
  second = *other.value();
  return true;
}

void TF_dlexp::Renumber() {
  EnableWays(false);
  ui_->StatusBarExport->showMessage(u"Vor Export Karten neu nummmerieren"_s);
  if (ties_.renumber) ties_.renumber(this);
}

ExportResult TF_dlexp::Write(Layout write, char first, char second) {
  LongWork work(this, ties_.clock);
  work.AllowCancel();
  work.NextStage(u"Karten exportieren"_s, ties_.file.cards().RowCount());
  const TextFileForm form = {ui_->CheckBoxCrLf->isChecked(), ui_->CheckBoxUtf8->isChecked(),
                             ReadCodePages(ties_.file.settings())};
  return ExportToFile(ties_.disk, path_, [&](WritableFile& file) {
    return write(ties_.file.cards(), first, second, form, file, [&](int64_t cards) {
      ui_->StatusBarExport->showMessage(u"%1 Karten exportiert"_s.arg(cards));
      return work.GoesOn(cards);
    });
  });
}

void TF_dlexp::Tell(const ExportResult& result, const QString& unfit) {
  QString text = u"%1 Karten exportiert"_s.arg(result.cards);
  if (result.end == ExportEnd::UnfitSeparator) text = unfit.arg(CharacterName(result.separator)).arg(result.cards);
  if (result.end == ExportEnd::Cancelled) text = u"Abgebrochen, die Datei ist wie zuvor"_s;
  if (result.end == ExportEnd::WriteFailed) text = u"Die Datei kann nicht geschrieben werden"_s;
  ui_->StatusBarExport->showMessage(text);
  if (result.end == ExportEnd::UnfitSeparator || result.end == ExportEnd::WriteFailed) {
    ties_.messages.Error(this, text);
  }
  EnableWays(true);
}

void TF_dlexp::BitBtnZeileClick() {
  char separator = '\0';
  char quote = '\0';
  if (!TakeSeparators(*field_, *quote_, separator, quote)) return;
  Renumber();
  Tell(Write(WriteTableExport, separator, quote), u"Ungeeignetes Trennzeichen %1 auf Karte, Zeile %2"_s);
}

void TF_dlexp::BitBtnNormalClick() {
  char separator = '\0';
  char card_separator = '\0';
  if (!TakeSeparators(*field_, *card_, separator, card_separator)) return;
  Renumber();
  Tell(Write(WriteTextExport, separator, card_separator), u"Illegales Trennzeichen %1 auf Karte Nr. %2"_s);
}

void TF_dlexp::EnableWays(bool on) {
  ui_->BitBtnZeile->setEnabled(on);
  ui_->BitBtnNormal->setEnabled(on);
}

}  // namespace tessaro
