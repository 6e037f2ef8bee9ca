#include "learn/wnlern_look.h"

#include <QMainWindow>
#include <algorithm>
#include <array>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <vector>

#include "ui_wnlern.h"
#include "widgets/card_pages.h"
#include "widgets/icons.h"
#include "widgets/theme.h"

namespace tessaro {
namespace {

constexpr int kFoldWidth = 900;     // below this the figures beside the card are folded away
constexpr int kFigureLetters = 12;  // room for "1234:23:59:59"

std::vector<QLabel*> Captions(Ui::TF_wnlern& ui) {
  return {ui.LabelDisplayBeh,
          ui.LabelDisplayZuletzt,
          ui.LabelEinheit,
          ui.LabelDisplayKarteifach,
          ui.LabelDisplayZufallswahl,
          ui.LabelDisplayAnzGewNull,
          ui.LabelDisplayCheckAnzahl,
          ui.LabelDisplayUebungszeit,
          ui.LabelDisplayJetztGeuebt,
          ui.LabelEdit1,
          ui.LabelLabelPos,
          ui.LabelSteuerung,
          ui.LabelTage,
          ui.LabelSeite,
          ui.LabelFrage,
          ui.LabelAntwort};
}

void DressCaptions(Ui::TF_wnlern& ui, const QMainWindow& window) {
  for (QLabel* caption : Captions(ui)) MakeQuiet(*caption);
  QFont title = window.font();
  title.setWeight(QFont::DemiBold);
  for (QLabel* label : {ui.TitelKarte, ui.TitelAuswahl, ui.LabelSeite}) label->setFont(title);
}

void DressButtons(Ui::TF_wnlern& ui) {
  ui.BtHand->SetMeaning(std::nullopt, "turn");
  ui.BtLerneIch->SetMeaning(Accent::NotKnown, "not-known");
  ui.BtWeissIch->SetMeaning(Accent::Known, "known");
  ui.BtWeissIch->KeepRoomFor(QStringLiteral("etwa 59 Minuten"), {});
  ui.SpeedButtonHome->setIcon(Icon("home"));
  ui.SpeedButtonBack->setIcon(Icon("back"));
  ui.SpeedButtonVis->setIcon(Icon("overview"));
  ui.TbEdit->setIcon(Icon("edit"));
  ui.SpeedButtonUndo->setIcon(Icon("undo"));
  ui.SpeedButtonInversEin->setIcon(Icon("inverse"));
  ui.SpeedButtonInversAus->setIcon(Icon("inverse"));
  ui.SpeedButtonTausch->setIcon(Icon("swap"));
  ui.ButtonMethode->setIcon(Icon("learn"));
  ui.SpeedButtonLeitner->setIcon(Icon("boxes"));
  ui.SpeedButtonLeitnerOn->setIcon(Icon("boxes-leave"));
  ui.SpeedButtonLeitnerOff->setIcon(Icon("boxes-resume"));
  ui.TbCalc->setIcon(Icon("chart"));
  ui.SpeedButtonWahl->setIcon(Icon("choice"));
  ui.SpeedButtonInput->setIcon(Icon("input"));
  ui.SpeedButtonTipp->setIcon(Icon("keyboard"));
  ui.BildHinweis->setPixmap(Icon("clock").pixmap(QSize(20, 20), ui.BildHinweis->devicePixelRatioF()));
  ui.Hinweis->setBackgroundRole(QPalette::AlternateBase);
}

void DressMenus(Ui::TF_wnlern& ui) {
  ui.MHome->setIcon(Icon("home"));
  ui.MBack->setIcon(Icon("back"));
  ui.MVis->setIcon(Icon("overview"));
  ui.MSpeichern->setIcon(Icon("save"));
  ui.MDrucken->setIcon(Icon("print"));
  ui.MAntwortZurueck->setIcon(Icon("undo"));
  ui.MAntwortWieder->setIcon(Icon("redo"));
  ui.MKarteDrehen->setIcon(Icon("turn"));
  ui.MDrehen->setIcon(Icon("turn"));
  ui.Weiss_ich->setIcon(Icon("known"));
  ui.Lerne_ich->setIcon(Icon("not-known"));
}

int NeededWidth(const QWidget& row) {
  return row.layout()->sizeHint().width();
}

// Words go before icons do: icons keep their hints.
void FitControlBar(Ui::TF_wnlern& ui, int width) {
  const std::initializer_list<QToolButton*> navigation = {ui.SpeedButtonHome, ui.SpeedButtonBack, ui.SpeedButtonVis,
                                                          ui.TbEdit, ui.SpeedButtonUndo};
  const auto set = [](std::initializer_list<QToolButton*> buttons, Qt::ToolButtonStyle style) {
    for (QToolButton* button : buttons) button->setToolButtonStyle(style);
  };
  const auto fits = [&] { return NeededWidth(*ui.Steuerleiste) <= width; };
  set(navigation, Qt::ToolButtonTextBesideIcon);
  set({ui.ButtonMethode}, Qt::ToolButtonTextBesideIcon);
  ui.EditZeitsperre->show();
  if (!fits()) set(navigation, Qt::ToolButtonIconOnly);
  if (!fits()) set({ui.ButtonMethode}, Qt::ToolButtonIconOnly);
  if (!fits()) ui.EditZeitsperre->hide();
}

// The column of the card needs room for the answers with their keys; the figures stand beside it where they can.
// Returns the width that is left to the card.
int FitFigures(Ui::TF_wnlern& ui, int width) {
  const QMargins around = ui.InhaltLayout->contentsMargins();
  const int inside = width - around.left() - around.right();
  const int figures = ui.Anzeigen->sizeHint().width() + 2 * ui.InhaltLayout->spacing();
  const bool wide = width >= kFoldWidth && inside - figures >= AnswersWidth(ui, false);
  const bool shown = wide && ui.MAnzeigen->isChecked();
  ui.Anzeigen->setVisible(shown);
  // Two of the figures then move to the status line.
  for (QLabel* label : {ui.LabelEdit1, ui.Edit1, ui.LabelLabelPos, ui.LabelPos}) label->setVisible(!shown);
  return std::min(shown ? inside - figures : inside, ui.Kartenspalte->maximumWidth());
}

void DressIcons(Ui::TF_wnlern& ui, const QMainWindow& window) {
  constexpr int kLeastIcon = 16;
  const int side = std::max(kLeastIcon, window.fontMetrics().height());
  for (QToolButton* button : ui.Steuerleiste->findChildren<QToolButton*>()) button->setIconSize(QSize(side, side));
}

}  // namespace

void DressControls(Ui::TF_wnlern& ui, QMainWindow& window) {
  DressCaptions(ui, window);
  DressButtons(ui);
  DressMenus(ui);
  DressIcons(ui, window);
  const int figure = window.fontMetrics().horizontalAdvance(QLatin1Char('0')) * kFigureLetters;
  ui.DisplayBeh->setMinimumWidth(figure);
  constexpr int kLeastWidth = 520;
  const QMargins around = ui.InhaltLayout->contentsMargins();
  const int answers = ui.AntwortzeileLayout->minimumSize().width() + around.left() + around.right();
  window.setMinimumWidth(std::max(kLeastWidth, answers));
}

void FitControls(Ui::TF_wnlern& ui, int width) {
  const int card_width = FitFigures(ui, width);
  FitControlBar(ui, width);
  if (AnswersWidth(ui, true) > card_width) AnswersWidth(ui, false);
  const auto show_if_fits = [](QWidget* part, const QWidget& row, int room) {
    part->show();
    part->setVisible(NeededWidth(row) <= room);
  };
  show_if_fits(ui.LabelTage, *ui.Tageszeile, card_width);
  show_if_fits(ui.LabelSteuerung, *ui.Statuszeile, width);
}

int AnswersWidth(Ui::TF_wnlern& ui, bool with_note) {
  ui.BtWeissIch->KeepRoomForNote(with_note);
  ui.AntwortzeileLayout->invalidate();
  return ui.AntwortzeileLayout->sizeHint().width();
}

void NameFigures(Ui::TF_wnlern& ui) {
  const std::pair<QLabel*, QLabel*> figures[] = {{ui.LabelDisplayBeh, ui.DisplayBeh},
                                                 {ui.LabelDisplayZuletzt, ui.DisplayZuletzt},
                                                 {ui.LabelDisplayKarteifach, ui.DisplayKarteifach},
                                                 {ui.LabelDisplayZufallswahl, ui.DisplayZufallswahl},
                                                 {ui.LabelDisplayAnzGewNull, ui.DisplayAnzGewNull},
                                                 {ui.LabelDisplayCheckAnzahl, ui.DisplayCheckAnzahl},
                                                 {ui.LabelDisplayJetztGeuebt, ui.DisplayJetztGeuebt},
                                                 {ui.LabelEdit1, ui.Edit1},
                                                 {ui.LabelLabelPos, ui.LabelPos}};
  for (const auto& [caption, figure] : figures) {
    QString name = caption->text();
    while (name.endsWith(QLatin1Char(':'))) name.chop(1);
    figure->setAccessibleName(name + QStringLiteral(": ") + figure->text());
  }
}

void PlaceControlBar(Ui::TF_wnlern& ui, bool below) {
  ui.MitteLayout->removeWidget(ui.Steuerleiste);
  ui.MitteLayout->insertWidget(below ? 1 : 0, ui.Steuerleiste);
}

}  // namespace tessaro
