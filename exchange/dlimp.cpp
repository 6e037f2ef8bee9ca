#include "exchange/dlimp.h"

#include <QPushButton>
#include <tuple>

#include "exchange/card_export.h"
#include "exchange/exchange_texts.h"
#include "exchange/separator_field.h"
#include "settings/kept_place.h"
#include "settings/side_settings.h"
#include "store/file/card_file.h"
#include "ui_dlimp.h"
#include "widgets/count_texts.h"
#include "widgets/long_work.h"
#include "widgets/messages.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

constexpr int kFaultsShown = 8;

}  // namespace

TF_dlimp::TF_dlimp(const ExchangeTies& ties, QWidget* parent)
    : QDialog(parent), ties_(ties), ui_(std::make_unique<Ui::TF_dlimp>()), pages_(ReadCodePages(ties.file.settings())) {
  ui_->setupUi(this);
  MakeSeparators();
  MakePreview();
  connect(ui_->BitBtnDatei, &QPushButton::clicked, this, &TF_dlimp::BitBtnDateiClick);
  connect(ui_->BitBtnVTrain, &QPushButton::clicked, this, &TF_dlimp::BitBtnVTrainClick);
  connect(ui_->BitBtnExcel, &QPushButton::clicked, this, &TF_dlimp::BitBtnExcelClick);
  connect(ui_->BitBtnClose, &QPushButton::clicked, this, &QDialog::close);
  connect(ui_->ButtonErkannt, &QPushButton::clicked, this, &TF_dlimp::UseGuess);
  ui_->BitBtnDatei->setDefault(true);
  ui_->BitBtnDatei->setFocus();
  GrowToContent(*this);
  RestoreWindowPlace(*this, ties_.settings, place_suffix::kImport);
}

TF_dlimp::~TF_dlimp() {
  KeepWindowPlace(*this, ties_.settings, place_suffix::kImport);
}

void TF_dlimp::MakeSeparators() {
  const SeparatorFields made = MakeSeparatorFields(*ui_, "\n|", this);
  field_ = made.field;
  card_ = made.card;
  quote_ = made.quote;
  for (SeparatorField* field : {field_, card_, quote_}) {
    connect(field, &SeparatorField::Changed, this, [this] {
      ShowWarnings();
      preview_timer_.start();
    });
  }
}

void TF_dlimp::ShowWarnings() {
  for (SeparatorField* second : {card_, quote_}) {
    const bool same = second->value() && second->value() == field_->value();
    second->Warn(same ? SeparatorFault::Same : SeparatorFault::None);
  }
  GrowToContent(*this);
}

void TF_dlimp::BitBtnDateiClick() {
  const QString chosen = ties_.messages.ChooseFileToOpen(
      this, u"Importdatei"_s, FromPath(path_.empty() ? ties_.folder : path_.parent_path()),
      u"Textdateien (*.txt);;Texttabellen comma separated (*.csv);;Alle Dateien (*)"_s);
  if (chosen.isEmpty()) return;
  const fs::path named = ToPath(chosen);
  const fs::path with_ending = WithTextEnding(named);
  const bool as_named = !ties_.disk.Exists(with_ending) && ties_.disk.Exists(named);
  if (!ReadFileAt(as_named ? named : with_ending)) {
    return ties_.messages.Error(this, u"\nDatei kann nicht\ngeöffnet werden"_s);
  }
  ui_->EditDatei->setText(FromPath(path_));
  Say({});
  guess_ = GuessLayout(text_.bytes);
  ShowGuess();
  ui_->CheckBoxErsetzen->setChecked(false);
  EnableWays(true);
  Preview();
  const bool table = table_check_.cards > 0 && (!text_check_.good || text_check_.Given() == 0);
  ui_->TabBarVorschau->setCurrentIndex(table ? 1 : 0);
  ShowPreview();
  // Where the separators fit nothing, what was recognised is what comes next.
  (shown_.empty() && guess_ ? static_cast<QWidget*>(ui_->ButtonErkannt) : ui_->ListeKarten)->setFocus();
}

bool TF_dlimp::ReadFileAt(const fs::path& path) {
  LongWork work(this, ties_.clock);
  work.NextStage(u"Datei lesen"_s, 0);
  const std::optional<FileState> state = ties_.disk.State(path);
  std::optional<std::string> raw = ReadFile(ties_.disk, path);
  if (!raw) return false;
  path_ = path;
  state_ = state;
  FreeTexts();
  std::string copy;
  if (!pages_.western()) copy = *raw;
  text_ = ReadForeignText(*std::move(raw));
  if (text_.encoding != Encoding::CodePage) raw_ = std::move(copy);
  return true;
}

void TF_dlimp::FreeTexts() {
  // An empty text that is assigned would leave them their memory.
  (void)std::tuple(std::move(raw_), std::move(text_), std::move(table_text_));
}

bool TF_dlimp::Missing(SeparatorField& field) {
  if (field.value()) return false;
  Say(u"Eingabe fehlt"_s);
  field.FocusCode();
  return true;
}

std::optional<TextLayout> TF_dlimp::TakeTextLayout() {
  if (Missing(*field_) || Missing(*card_)) return std::nullopt;
  return TextLayout{*field_->value(), *card_->value(), ui_->CheckBoxTausch->isChecked(),
                    ui_->CheckBoxPaare->isChecked()};
}

std::optional<TableLayout> TF_dlimp::TakeTableLayout() {
  if (Missing(*field_) || Missing(*quote_)) return std::nullopt;
  return TableLayout{*field_->value(), *quote_->value()};
}

bool TF_dlimp::MayImport(const ForeignText& text) {
  if (ties_.disk.State(path_) != state_) {
    ties_.messages.Error(this, u"Formatfehler"_s);
    Say(u"Die Datei hat sich inzwischen geändert"_s);
    if (ReadFileAt(path_)) Preview();
    return false;
  }
  if (text.replaced == 0 || ui_->CheckBoxErsetzen->isChecked()) return true;
  const Answer answer =
      ties_.messages.Question(this, ReplacementText(text), u"Ersetzen"_s, u"Nicht importieren"_s, {}, Answer::No);
  ui_->CheckBoxErsetzen->setChecked(answer == Answer::Yes);
  return answer == Answer::Yes;
}

void TF_dlimp::BitBtnVTrainClick() {
  const std::optional<TextLayout> layout = TakeTextLayout();
  if (!layout) return;
  bool is_number = false;
  const int topic = ui_->EditThemaNr->text().toInt(&is_number);
  if (!is_number || topic < 0 || topic > kMostTopic) return Say(u"Eingabe fehlt - Zahl von 0 - 19"_s);
  if (!MayImport(text_)) return;
  Preview();
  if (!text_check_.good) {
    Say(u"Falsche(s) Trennzeichen in Karte %1"_s.arg(text_check_.cards));
    return ties_.messages.Error(this, u"Falsche(s) Trennzeichen in Karte %1"_s.arg(text_check_.cards));
  }
  Say(u"%1 Karten gecheckt"_s.arg(text_check_.cards));
  if (text_check_.Given() == 0 || !ties_.keep_state(this)) return;
  EnableWays(false);
  ImportResult result;
  {
    LongWork work(this, ties_.clock);
    work.AllowCancel();
    work.NextStage(u"Karten importieren"_s, static_cast<int64_t>(text_.bytes.size()));
    result = ImportText(ties_.file, text_.bytes, *layout, text_check_, topic,
                        [&](int64_t done) { return work.GoesOn(done); });
  }
  // What was brought in is not brought in twice by another key press.
  EnableWays(result.end != ImportEnd::Done);
  TellTextImport(result);
}

void TF_dlimp::TellTextImport(const ImportResult& result) {
  switch (result.end) {
    case ImportEnd::Done:
      Say(u"%1 Karten importiert"_s.arg(result.cards));
      return ties_.messages.Information(
          this, u"Importiert und noch nicht gespeichert: %1.\n%2"_s.arg(CardsText(result.cards), BackAgainText()));
    case ImportEnd::Cancelled:
      return Say(u"Abgebrochen, die Kartei ist wie zuvor"_s);
    case ImportEnd::NoNumbers:
      return ties_.messages.Error(this,
                                  u"Die Kartennummern reichen nicht: die höchste ist 999990.\nBitte die Karten "
                                  u"neu nummerieren oder die Datei teilen."_s);
    default:
      return ties_.messages.Error(this, u"Die Karten konnten nicht übernommen werden.\nDie Kartei ist wie zuvor."_s);
  }
}

void TF_dlimp::BitBtnExcelClick() {
  if (ties_.messages.Question(this, u"\nVorhandene Datenbank \nmit Import überschreiben?"_s, u"Überschreiben"_s,
                              u"Nicht überschreiben"_s, {}, Answer::No) != Answer::Yes) {
    return;
  }
  const std::optional<TableLayout> layout = TakeTableLayout();
  if (!layout || !MayImport(TableText())) return;
  Preview();
  if (table_check_.cards == 0) {
    return ties_.messages.Error(this, u"In der Tabelle ist keine Karte.\nDie Kartei ist wie zuvor."_s);
  }
  if (!LeaveOutFaults() || !ties_.keep_state(this)) return;
  Replace(*layout);
}

bool TF_dlimp::LeaveOutFaults() {
  if (table_check_.fault_count == 0) return true;
  QStringList lines = {
      u"Nicht passende Zeilen: %1 von %2."_s.arg(NumberText(table_check_.fault_count), NumberText(table_check_.lines))};
  for (int i = 0; i < kFaultsShown && i < static_cast<int>(table_check_.faults.size()); ++i) {
    const TableFault& fault = table_check_.faults[static_cast<size_t>(i)];
    lines << u"Zeile %1: %2"_s.arg(NumberText(fault.line), FaultText(fault.fault));
  }
  if (table_check_.fault_count > kFaultsShown) lines << u"…"_s;
  return ties_.messages.Question(this, lines.join(u'\n'), u"Zeilen weglassen"_s, u"Nicht importieren"_s, {},
                                 Answer::No) == Answer::Yes;
}

void TF_dlimp::Replace(const TableLayout& layout) {
  EnableWays(false);
  ImportResult result;
  {
    LongWork work(this, ties_.clock);
    work.AllowCancel();
    work.NextStage(u"Kartei schreiben"_s, static_cast<int64_t>(TableText().bytes.size()));
    result = ReplaceByTable(ties_.disk, ties_.file.paths(), TableText().bytes, layout, table_check_,
                            [&](int64_t done) { return work.GoesOn(done); });
  }
  EnableWays(result.end != ImportEnd::Done);
  if (result.end == ImportEnd::Cancelled) return Say(u"Abgebrochen, die Kartei ist wie zuvor"_s);
  if (result.end != ImportEnd::Done) {
    return ties_.messages.Error(this, u"Die Kartei konnte nicht geschrieben werden.\nSie ist wie zuvor."_s);
  }
  Say(u"%1 Karten importiert"_s.arg(result.cards));
  ties_.messages.Information(this,
                             u"Aktivieren des Importes durch\nNeuladen der Kartei über\nMenü oder "
                             u"Schnellauswahl.\n\nDort Abfrage nach Datei speichern\nbitte mit nein beantworten."_s);
  const Answer answer = ties_.messages.Question(
      this,
      u"Die Kartei jetzt gleich neu laden?\nDer Stand im Speicher wird dabei nicht gespeichert.\n"_s + BackAgainText(),
      u"Neu laden"_s, u"Später"_s, {}, Answer::Yes);
  if (answer != Answer::Yes) return;
  const fs::path cards = ties_.file.paths().cards;
  accept();
  // The cards that are loaded need as much memory.
  FreeTexts();
  ties_.load(cards);
}

void TF_dlimp::Say(const QString& text) {
  ui_->StatusBarImport->showMessage(text);
}

void TF_dlimp::EnableWays(bool on) {
  ui_->BitBtnVTrain->setEnabled(on);
  ui_->BitBtnExcel->setEnabled(on);
}

}  // namespace tessaro
