// What the comparison shows of its cards.

#include <QPushButton>
#include <QTextBlock>
#include <QTextEdit>
#include <array>

#include "exchange/compare_texts.h"
#include "exchange/dlupd.h"
#include "exchange/taken_cards.h"
#include "settings/side_settings.h"
#include "ui_dlupd.h"
#include "widgets/side_look.h"
#include "widgets/text.h"
#include "widgets/theme.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int kTint = 60;  // of 255: the words stay readable on it

// Marks the words of a text that the other lacks.
void MarkWords(QTextEdit& edit, const std::string& other, CodePage page) {
  QList<QTextEdit::ExtraSelection> marks;
  const std::optional<std::string> text = ToBytes(SideText(edit), page);
  QTextEdit::ExtraSelection mark;
  QColor tint = AccentColour(Accent::Notice, edit.palette());
  tint.setAlpha(kTint);
  mark.format.setBackground(tint);
  mark.format.setFontUnderline(true);
  if (text) {
    ForEachWord(*text, 0, [&](std::string_view word) {
      if (other.find(word) != std::string::npos) return;
      mark.cursor = QTextCursor(edit.document());
      mark.cursor.setPosition(static_cast<int>(word.data() - text->data()));
      mark.cursor.setPosition(mark.cursor.position() + static_cast<int>(word.size()), QTextCursor::KeepAnchor);
      marks.append(mark);
    });
  }
  edit.setExtraSelections(marks);
}

}  // namespace

QString SideText(const QTextEdit& edit) {
  QString text = edit.document()->toRawText();
  return text.replace(QChar::ParagraphSeparator, u'\n').replace(QChar::LineSeparator, u'\n');
}

std::array<QTextEdit*, 4> TF_dlupd::Texts() const {
  return {ui_->RichEditKVQ, ui_->RichEditKHQ, ui_->RichEditKVZ, ui_->RichEditKHZ};
}

bool TF_dlupd::IsFront(const QTextEdit& edit) const {
  return &edit == ui_->RichEditKVQ || &edit == ui_->RichEditKVZ;
}

CodePage TF_dlupd::PageOf(const QTextEdit& edit) const {
  const SideCodePages pages = ReadCodePages(ties_.file.settings());
  return IsFront(edit) ? pages.front : pages.back;
}

void TF_dlupd::DressTexts() {
  for (QTextEdit* edit : Texts()) {
    const bool front = IsFront(*edit);
    const SideLook look =
        LookOnScreen(ties_.file.settings(), ties_.settings, front ? SideName::Front : SideName::Back, palette());
    QPalette colours = edit->palette();
    colours.setColor(QPalette::Base, look.paper);
    colours.setColor(QPalette::Text, look.text);
    edit->setPalette(colours);
    edit->setFont(look.font);
  }
  QFont verdict = ui_->EditMeldung->font();
  verdict.setPointSizeF(verdict.pointSizeF() * 1.2);
  ui_->EditMeldung->setFont(verdict);
}

void TF_dlupd::ShowStop() {
  Run(false);
  const CompareStop& stop = *scan_->stop();
  const CardSides source = scan_->SourceSides(stop.source_row);
  const CardSides target = scan_->TargetSides(stop.target_row);
  const std::array<std::string_view, 4> sides = {source.front, source.back, target.front, target.back};
  for (size_t i = 0; i < sides.size(); ++i) Texts()[i]->setPlainText(FromBytes(sides[i], PageOf(*Texts()[i])));
  MarkDifferences();
  ui_->EditMeldung->setText(VerdictText(stop));
  ui_->StatusBarUpd->showMessage(u"Position Quelle: %1, Ziel: %2"_s.arg(stop.source_row - 1).arg(stop.target_row - 1));
  EnableActions(true);
  ui_->BitBtnBeibehalten->setFocus();
  timer_.start();
}

void TF_dlupd::MarkDifferences() {
  if (scan_ == nullptr || !scan_->stop()) return;
  const auto mark = [this](QTextEdit& one, QTextEdit& other) {
    const CodePage page = PageOf(one);
    MarkWords(one, ToBytes(SideText(other), page).value_or(std::string()), page);
    MarkWords(other, ToBytes(SideText(one), page).value_or(std::string()), page);
  };
  mark(*ui_->RichEditKVQ, *ui_->RichEditKVZ);
  mark(*ui_->RichEditKHQ, *ui_->RichEditKHZ);
}

void TF_dlupd::ShowEnd() {
  Run(false);
  timer_.stop();
  EnableActions(false);
  ui_->EditMeldung->setText(u"Bearbeitung beendet.Karteiende Quellkartei."_s);
  for (QTextEdit* edit : Texts()) {
    edit->setExtraSelections({});
    const bool source = edit == ui_->RichEditKVQ || edit == ui_->RichEditKHQ;
    edit->setPlainText(source ? u"<< Ende Quellkartei >>"_s : u"<< Ende Zielkartei >>"_s);
  }
  ui_->BitBtnStart->setEnabled(false);
  (CountMarked(ties_.file) > 0 ? ui_->BitBtnDelete : ui_->BitBtnClose)->setFocus();
}

void TF_dlupd::ShowCounts() {
  ui_->BalkenStand->setMaximum(scan_ == nullptr ? 1 : scan_->source_end() - kFirstCardRow);
  ui_->BalkenStand->setValue(scan_ == nullptr ? 0 : scan_->source_row() - kFirstCardRow);
  const QString before = (source_path_.empty() ? u"Quelle öffnen, dann starten."_s : u"Jetzt starten."_s) +
                         u" Angehalten wird bei ähnlichen Karten."_s;
  ui_->LabelStand->setText(scan_ == nullptr ? before : StandText(*scan_));
}

void TF_dlupd::EnableActions(bool on) {
  for (QPushButton* button :
       {ui_->BitBtnBeibehalten, ui_->BitBtnUpdaten, ui_->BitBtnMarkieren, ui_->BitBtnZielMarkieren}) {
    button->setEnabled(on);
  }
  for (QTextEdit* edit : Texts()) edit->setReadOnly(!on);
}

}  // namespace tessaro
