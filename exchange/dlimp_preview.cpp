// What the import dialog shows of a file before anything is brought in.

#include <QHeaderView>
#include <QPushButton>
#include <QTableWidget>
#include <algorithm>

#include "exchange/blank_card.h"
#include "exchange/dlimp.h"
#include "exchange/exchange_texts.h"
#include "exchange/separator_field.h"
#include "settings/keys.h"
#include "settings/side_settings.h"
#include "store/file/card_file.h"
#include "ui_dlimp.h"
#include "widgets/count_texts.h"
#include "widgets/long_work.h"
#include "widgets/side_look.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

constexpr int kPreviewAfter = 250;  // milliseconds without a change
constexpr int kPreviewCards = 20;

QString WouldCome(int64_t cards) {
  return (cards == 1 ? u"Es käme "_s : u"Es kämen "_s) + CardsText(cards);
}

}  // namespace

void TF_dlimp::MakePreview() {
  preview_timer_.setSingleShot(true);
  preview_timer_.setInterval(kPreviewAfter);
  connect(&preview_timer_, &QTimer::timeout, this, &TF_dlimp::Preview);
  for (QCheckBox* box : {ui_->CheckBoxTausch, ui_->CheckBoxPaare}) {
    connect(box, &QCheckBox::toggled, this, [this] { raw_.empty() ? ShowPreview() : Preview(); });
  }
  ui_->TabBarVorschau->addTab(u"Als Te&xtkarten"_s);
  ui_->TabBarVorschau->addTab(u"Als Ta&belle"_s);
  ui_->TabBarVorschau->setDrawBase(false);
  connect(ui_->TabBarVorschau, &QTabBar::currentChanged, this, &TF_dlimp::ShowPreview);
  QTableWidget& list = *ui_->ListeKarten;
  list.setColumnCount(2);
  list.setHorizontalHeaderLabels({u"Vorderseite"_s, u"Rückseite"_s});
  list.horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  list.setEditTriggers(QAbstractItemView::NoEditTriggers);
  list.setSelectionBehavior(QAbstractItemView::SelectRows);
  list.setSelectionMode(QAbstractItemView::SingleSelection);
  list.setTabKeyNavigation(false);
  const fs::path folder = ties_.file.paths().cards.parent_path();
  for (TFrameHtml* side : {ui_->KarteVorne, ui_->KarteHinten}) {
    side->SetMediaFolders({folder, folder / keys::kMediaFolder.Read(ties_.settings), pages_});
  }
  connect(&list, &QTableWidget::currentCellChanged, this, [this](int row) { ShowCard(row); });
}

void TF_dlimp::ShowGuess() {
  const bool differs =
      guess_ && (guess_->separator != field_->value() || (!guess_->table && guess_->card_separator != card_->value()));
  ui_->ButtonErkannt->setVisible(differs);
  if (!guess_) return ui_->LabelErkannt->setText(u"Die Zeilen der Datei passen zu keinem der üblichen Trennzeichen."_s);
  const QString what = guess_->table
                           ? u"eine Tabelle mit %1 zwischen den acht Spalten"_s.arg(CharacterName(guess_->separator))
                           : u"Textkarten mit %1 zwischen den Seiten und %2 zwischen den Karten"_s.arg(
                                 CharacterName(guess_->separator), CharacterName(guess_->card_separator));
  ui_->LabelErkannt->setText(
      u"Erkannt: %1 (passende Zeilen: %2 von %3)."_s.arg(what, NumberText(guess_->fitting), NumberText(guess_->lines)));
}

void TF_dlimp::UseGuess() {
  if (!guess_) return;
  field_->Set(guess_->separator);
  if (!guess_->table) card_->Set(guess_->card_separator);
  ui_->TabBarVorschau->setCurrentIndex(guess_->table ? 1 : 0);
  Preview();
  ui_->ListeKarten->setFocus();
}

void TF_dlimp::ConvertSides() {
  if (raw_.empty() || !field_->value()) return;
  if (card_->value()) {
    text_ = ReadForeignText(
        raw_, FieldPages::OfText(pages_, *field_->value(), *card_->value(), ui_->CheckBoxTausch->isChecked()));
  }
  table_text_ = ReadForeignText(raw_, FieldPages::OfTable(pages_, *field_->value(), quote_->value().value_or('\0')));
}

void TF_dlimp::Preview() {
  preview_timer_.stop();
  if (path_.empty() || LongWork::Running()) return;
  {
    LongWork work(this, ties_.clock);
    ConvertSides();
    const auto range = static_cast<int64_t>(text_.bytes.size());
    const WorkObserver observer = [&](int64_t done) {
      work.SetPosition(done);
      return true;
    };
    text_check_ = {};
    table_check_ = {};
    work.NextStage(u"Karten prüfen"_s, range);
    if (field_->value() && card_->value()) {
      text_check_ =
          CheckText(text_.bytes, {.separator = *field_->value(), .card_separator = *card_->value()}, observer);
    }
    work.NextStage(u"Tabelle prüfen"_s, range);
    if (field_->value() && quote_->value()) {
      table_check_ = CheckTable(TableText().bytes, {*field_->value(), *quote_->value()}, observer);
    }
  }
  ui_->CheckBoxPaare->setVisible(text_check_.backslash_pairs);
  if (!text_check_.backslash_pairs) ui_->CheckBoxPaare->setChecked(false);
  ShowGuess();
  ShowPreview();
  GrowToContent(*this);
}

void TF_dlimp::ShowPreview() {
  if (path_.empty()) return;
  const bool table = ui_->TabBarVorschau->currentIndex() == 1;
  (table ? ui_->BitBtnExcel : ui_->BitBtnVTrain)->setDefault(true);
  QStringList sentences = {table ? TableSentence() : TextSentence()};
  const ForeignText& text = table ? TableText() : text_;
  const bool as_sides = text.encoding == Encoding::CodePage && !pages_.western();
  sentences << u"Zeichensatz: %1."_s.arg(as_sides ? u"der der Kartenseiten"_s : EncodingText(text.encoding));
  if (text.zeros > 0) sentences << u"Nullzeichen, die wegfallen: %1."_s.arg(NumberText(text.zeros));
  if (text.replaced > 0) sentences << ReplacementText(text);
  ui_->CheckBoxErsetzen->setVisible(text.replaced > 0);
  ui_->LabelVorschau->setText(sentences.join(u' '));
  ui_->TabBarVorschau->show();
  shown_ = table ? FirstTableCards() : FirstTextCards();
  QTableWidget& list = *ui_->ListeKarten;
  list.setRowCount(static_cast<int>(shown_.size()));
  for (int row = 0; row < list.rowCount(); ++row) {
    const Sides& card = shown_[static_cast<size_t>(row)];
    list.setItem(row, 0, new QTableWidgetItem(FromBytes(card.first, pages_.front).simplified()));
    list.setItem(row, 1, new QTableWidgetItem(FromBytes(card.second, pages_.back).simplified()));
  }
  for (QWidget* widget : {static_cast<QWidget*>(&list), static_cast<QWidget*>(ui_->KarteVorne),
                          static_cast<QWidget*>(ui_->KarteHinten)}) {
    widget->setVisible(!shown_.empty());
  }
  if (!shown_.empty()) list.setCurrentCell(0, 0);
  ShowCard(0);
}

QString TF_dlimp::TextSentence() const {
  if (!field_->value() || !card_->value()) return u"Ein Trennzeichen fehlt."_s;
  if (!text_check_.good) {
    const QString stop = u"Die Prüfung hielte an: Falsche(s) Trennzeichen in Karte %1."_s.arg(text_check_.cards);
    return text_check_.cards > 0 ? stop + u" Davor stehen die Karten unten."_s : stop;
  }
  QString text = WouldCome(text_check_.Given()) + u", hinter die Karten der offenen Kartei."_s;
  if (text_check_.cut_card) text += u" Der letzten fehlt das Kartentrennzeichen, sie zählt trotzdem."_s;
  if (text_check_.empty_first) text += u" Die erste ist leer und fällt weg."_s;
  if (text_check_.left_over > 0) {
    text += u" Hinter der letzten stehen noch %1 Zeichen ohne Trennzeichen, die nicht übernommen werden."_s.arg(
        NumberText(text_check_.left_over));
  }
  if (text_check_.backslash_pairs) text += u" Backslashes stehen doppelt, wie der Textexport sie schreibt."_s;
  return text;
}

QString TF_dlimp::TableSentence() const {
  if (!field_->value() || !quote_->value()) return u"Ein Trennzeichen fehlt."_s;
  QString text = WouldCome(table_check_.cards) + u", an die Stelle aller Karten der offenen Kartei."_s;
  if (table_check_.fault_count > 0) {
    const TableFault& first = table_check_.faults.front();
    text += u" Nicht passende Zeilen: %1 von %2, die erste ist Zeile %3: %4."_s.arg(
        NumberText(table_check_.fault_count), NumberText(table_check_.lines), NumberText(first.line),
        FaultText(first.fault));
  }
  return text;
}

std::vector<TF_dlimp::Sides> TF_dlimp::FirstTextCards() const {
  std::vector<Sides> sides;
  if (!field_->value() || !card_->value()) return sides;
  const int64_t most = text_check_.good ? kPreviewCards : std::min<int64_t>(kPreviewCards, text_check_.cards);
  TextCards cards(text_.bytes, {*field_->value(), *card_->value(), ui_->CheckBoxTausch->isChecked(),
                                ui_->CheckBoxPaare->isChecked()});
  for (TextCards::Card card; static_cast<int64_t>(sides.size()) < most && cards.Next(card);) {
    sides.emplace_back(std::move(card.front), std::move(card.back));
  }
  return sides;
}

std::vector<TF_dlimp::Sides> TF_dlimp::FirstTableCards() const {
  std::vector<Sides> sides;
  if (!field_->value() || !quote_->value() || table_check_.cards == 0) return sides;
  for (const std::vector<std::string>& fields :
       FirstCards(TableText().bytes, {*field_->value(), *quote_->value()}, kPreviewCards)) {
    sides.emplace_back(fields[kQuestionAt], fields[kAnswerAt]);
  }
  return sides;
}

void TF_dlimp::ShowCard(int row) {
  if (row < 0 || row >= static_cast<int>(shown_.size())) return;
  const auto& [front, back] = shown_[static_cast<size_t>(row)];
  const auto look = [&](SideName side) { return LookOnScreen(ties_.file.settings(), ties_.settings, side, palette()); };
  ui_->KarteVorne->ShowSide(front, look(SideName::Front));
  ui_->KarteHinten->ShowSide(back, look(SideName::Back));
}

}  // namespace tessaro
