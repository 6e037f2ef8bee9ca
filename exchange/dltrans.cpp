#include "exchange/dltrans.h"

#include <QPushButton>
#include <QRegularExpressionValidator>

#include "exchange/exchange_texts.h"
#include "exchange/first_version.h"
#include "exchange/separator_field.h"
#include "platform/disk.h"
#include "store/file/card_file.h"
#include "ui_dltrans.h"
#include "widgets/long_work.h"
#include "widgets/messages.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

}  // namespace

TF_dltrans::TF_dltrans(const ExchangeTies& ties, QWidget* parent)
    : QDialog(parent), ties_(ties), ui_(std::make_unique<Ui::TF_dltrans>()) {
  ui_->setupUi(this);
  separator_ = new SeparatorField({*ui_->EditVH, *ui_->EditVH10, *ui_->UsualEditVH}, "\t;\xA4", this);
  separator_->Set(kUsualFieldSeparator);
  ui_->MaskEditZiel->setValidator(new QRegularExpressionValidator(QRegularExpression(u"[\\p{L}\\p{N}]{0,34}"_s), this));
  connect(ui_->MaskEditZiel, &QLineEdit::textChanged, this, &TF_dltrans::ShowTarget);
  connect(ui_->BitBtnOpen, &QPushButton::clicked, this, &TF_dltrans::BitBtnOpenClick);
  connect(ui_->BitBtnOK, &QPushButton::clicked, this, &TF_dltrans::BitBtnOKClick);
  connect(ui_->BitBtnClose, &QPushButton::clicked, this, &QDialog::close);
  ui_->BitBtnOpen->setFocus();
  ShowTarget();
  GrowToContent(*this);
}

TF_dltrans::~TF_dltrans() = default;

fs::path TF_dltrans::Target() const {
  const QString name = ui_->MaskEditZiel->text().trimmed();
  return source_.empty() || name.isEmpty() ? fs::path() : source_.parent_path() / ToPath(name + u".mlb"_s);
}

void TF_dltrans::ShowTarget() {
  const fs::path target = Target();
  ui_->LabelZielPfad->setText(target.empty() ? u"Die neue Kartei kommt in den Ordner der Exportdatei."_s
                                             : u"Es entsteht die Datei %1."_s.arg(FromPath(target)));
}

void TF_dltrans::BitBtnOpenClick() {
  const QString chosen = ties_.messages.ChooseFileToOpen(
      this, u"Exportdatei der Version 1.0"_s, FromPath(source_.empty() ? ties_.folder : source_.parent_path()),
      u"Export - Textdatei (*.txt);;Alle Dateien (*)"_s);
  if (chosen.isEmpty()) return;
  source_ = ToPath(chosen);
  ui_->EditUrsprung->setText(FromPath(source_));
  ShowTarget();
  ui_->MaskEditZiel->setFocus();
}

void TF_dltrans::BitBtnOKClick() {
  if (!separator_->value()) {
    ui_->StatusBarTrans->showMessage(u"Trennzeichen fehlt"_s);
    return separator_->FocusCode();
  }
  if (ui_->MaskEditZiel->text().trimmed().isEmpty()) {
    ui_->MaskEditZiel->setFocus();
    ties_.messages.Error(this, u"Eingabe Name neue Kartei fehlt"_s);
    return ui_->StatusBarTrans->showMessage(u"Karteiname fehlt"_s);
  }
  if (source_.empty()) {
    ui_->StatusBarTrans->showMessage(u"Exportdatei fehlt"_s);
    return ui_->BitBtnOpen->setFocus();
  }
  if (MayWrite(Target())) Convert(Target(), *separator_->value());
}

bool TF_dltrans::MayWrite(const fs::path& target) {
  if (ties_.file.IsOpen() && fs::absolute(ties_.disk.Resolve(target)).lexically_normal() == ties_.file.paths().cards) {
    ties_.messages.Error(this, u"\nDiese Kartei ist gerade geöffnet.\nBitte einen anderen Namen eingeben."_s);
    return false;
  }
  return !ties_.disk.Exists(target) ||
         ties_.messages.Question(this,
                                 u"Die Kartei\n%1\ngibt es schon. Soll sie ersetzt werden?\nDie alte bleibt als "
                                 u"Sicherung (.ml~) erhalten."_s.arg(FromPath(target)),
                                 u"Ersetzen"_s, u"Nicht ersetzen"_s, {}, Answer::No) == Answer::Yes;
}

void TF_dltrans::Convert(const fs::path& target, char separator) {
  first_version::Result result;
  {
    LongWork work(this, ties_.clock);
    work.AllowCancel();
    work.NextStage(u"Karten übertragen"_s, static_cast<int64_t>(ties_.disk.State(source_).value_or(FileState()).size));
    result = first_version::TransferFile(ties_.disk, source_, target, separator,
                                         [&](int64_t done) { return work.GoesOn(done); });
  }
  switch (result.end) {
    case first_version::End::CannotOpen:
      return ties_.messages.Error(this, u"\nDatei kann nicht\ngeöffnet werden"_s);
    case first_version::End::InUse:
      return ties_.messages.Error(this, u"\nDie Kartei ist in einem anderen Programm geöffnet."_s);
    case first_version::End::Failed:
      return ties_.messages.Error(this, u"\nDie Kartei konnte nicht geschrieben werden."_s);
    case first_version::End::Cancelled:
      return ui_->StatusBarTrans->showMessage(u"Abgebrochen, es wurde nichts geschrieben"_s);
    case first_version::End::TopicsFailed:
      ties_.messages.Error(this, u"\nDie Namen der Themen konnten nicht geschrieben werden."_s);
      break;
    case first_version::End::Done:
      break;
  }
  ui_->StatusBarTrans->showMessage(u"%1 Karten übertragen"_s.arg(result.lines));
  Offer(target);
}

void TF_dltrans::Offer(const fs::path& target) {
  const Answer answer =
      ties_.messages.Question(this, u"Sie können die Kartei über Menü - Kartei - öffnen jetzt benutzen."_s,
                              u"Jetzt öffnen"_s, u"Nicht öffnen"_s, {}, Answer::No);
  if (answer != Answer::Yes) return;
  accept();
  ties_.open(target);
}

}  // namespace tessaro
