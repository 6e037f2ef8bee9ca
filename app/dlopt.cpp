#include "app/dlopt.h"

#include <QColorDialog>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "app/dlzeichen.h"
#include "platform/code_page.h"
#include "settings/keys.h"
#include "settings/option_text.h"
#include "store/file/card_file.h"
#include "ui_dlopt.h"
#include "widgets/htmlview.h"
#include "widgets/long_work.h"
#include "widgets/messages.h"
#include "widgets/scroll_pages.h"
#include "widgets/side_look.h"
#include "widgets/text.h"
#include "widgets/theme.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

const NumberSetting kPoints = {"", "", SideSettings().points, SideSettings::kLeastPoints, SideSettings::kMostPoints};
constexpr std::array kModes = {&keys::kShowChoice, &keys::kShowInput, &keys::kShowTyping};

// The colour on a button that chooses it.
QIcon Swatch(const QColor& colour) {
  constexpr int kSide = 16;
  QPixmap picture(kSide, kSide);
  picture.fill(colour);
  return QIcon(picture);
}

}  // namespace

TF_dlopt::TF_dlopt(OptionPlaces places, Messages& messages, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::TF_dlopt>()),
      places_(std::move(places)),
      messages_(messages),
      sides_{} {
  ui_->setupUi(this);
  sides_[0] = {SideName::Front,      ui_->SchriftV,      ui_->GroesseV,
               ui_->HinweisGroesseV, ui_->SchriftfarbeV, ui_->KartenfarbeV,
               ui_->ZeichensatzV,    ui_->MusterV,       {}};
  sides_[1] = {SideName::Back,       ui_->SchriftH,      ui_->GroesseH,
               ui_->HinweisGroesseH, ui_->SchriftfarbeH, ui_->KartenfarbeH,
               ui_->ZeichensatzH,    ui_->MusterH,       {}};
  for (Side& side : sides_) TieSide(side);
  const bool open = places_.card_file != nullptr;
  ui_->LabelKarten->setText(
      open ? u"Schrift, Farben und Zeichensatz dieser Kartei; jede Kartei hat ihre eigenen."_s
           : u"Schrift, Farben und Zeichensatz gehören zu einer Kartei. Öffnen Sie zuerst eine."_s);
  ui_->GruppeV->setEnabled(open);
  ui_->GruppeH->setEnabled(open);
  TieCharacterSets();
  TieLearning();
  TieAnswers();
  TieFolders();
  connect(ui_->BitBtnOK, &QAbstractButton::clicked, this, &TF_dlopt::BitBtnOKClick);
  connect(ui_->BitBtnCancel, &QAbstractButton::clicked, this, &QDialog::reject);
  connect(ui_->BitBtnDefault, &QAbstractButton::clicked, this, &TF_dlopt::BitBtnDefaultClick);
  fields_.Read(places_.program);
  file_fields_.Read(open ? *places_.card_file : IniFile());
  LetPagesScroll(*ui_->Seiten);
  FitToScreen(*this);
}

TF_dlopt::~TF_dlopt() = default;

void TF_dlopt::TieSide(Side& side) {
  file_fields_.Add(
      *side.points, [this, &side](const IniFile& settings) { TakeSide(side, ReadSideSettings(settings, side.name)); },
      [&side](IniFile& settings) {
        if (ReadSideSettings(settings, side.name) == side.look) return;
        // Without colours of its own a side has those of the program.
        RemoveSideSettings(side.name, settings);
        WriteSideSettings(side.look, side.name, settings);
      },
      [&side] { return TypedNumber(side.points->text().toStdString(), kPoints).has_value(); });
  connect(side.font, &QFontComboBox::currentFontChanged, this, [this, &side](const QFont& font) {
    if (const auto name = ToBytes(font.family())) side.look.font = *name;
    ShowSample(side);
  });
  connect(side.points, &QLineEdit::textChanged, this, [this, &side](const QString& text) {
    const std::optional<int64_t> points = TypedNumber(text.toStdString(), kPoints);
    SetAccent(*side.note, points ? std::nullopt : std::optional(Accent::Warning));
    side.note->setText(points ? QString() : u"1 bis 400"_s);
    if (points) side.look.points = *points;
    ShowSample(side);
  });
  connect(side.text, &QAbstractButton::clicked, this, [this, &side] { ChooseColour(side, &SideSettings::text); });
  connect(side.paper, &QAbstractButton::clicked, this, [this, &side] { ChooseColour(side, &SideSettings::paper); });
}

void TF_dlopt::TakeSide(Side& side, const SideSettings& look) {
  // A field that changes writes into the look: the fields are set from a copy.
  side.look = look;
  side.font->setCurrentFont(LookOf(look).font);
  side.points->setText(QString::number(look.points));
  side.look = look;
  ShowSample(side);
}

void TF_dlopt::ShowSample(Side& side) {
  const SideLook look = LookOf(side.look);
  side.text->setIcon(Swatch(look.text));
  side.paper->setIcon(Swatch(look.paper));
  QPalette paper = side.sample->palette();
  paper.setColor(QPalette::Window, look.paper);
  side.sample->setPalette(paper);
  side.sample->setAutoFillBackground(true);
  side.sample->ShowSide(side.name == SideName::Front ? "Wie heißt die <b>Hauptstadt</b> von Norwegen?"_cp
                                                     : "<b>Oslo</b> <i>am Oslofjord</i>"_cp,
                        look);
}

void TF_dlopt::ChooseColour(Side& side, int64_t SideSettings::*colour) {
  const SideLook look = LookOf(side.look);
  const QColor chosen = QColorDialog::getColor(colour == &SideSettings::text ? look.text : look.paper, this);
  if (!chosen.isValid()) return;
  side.look.*colour = NumberFromColour(chosen);
  ShowSample(side);
}

// No fields like the others: the standard of the page leaves them, since with them the texts would change.
void TF_dlopt::TieCharacterSets() {
  for (const Side& side : sides_) {
    side.character_set->addItems(CharacterSetNames());
    if (places_.cards == nullptr) continue;
    const CharacterSet set = ReadCharacterSet(places_.cards->settings(), side.name);
    side.character_set->setCurrentIndex(static_cast<int>(set));
    side.character_set->setDisabled(places_.cards->read_only());
  }
}

bool TF_dlopt::AskForTexts() {
  code_page_change_.reset();
  if (places_.cards == nullptr) return true;
  const auto chosen = [](const Side& side) {
    return CodePage(static_cast<CharacterSet>(side.character_set->currentIndex()));
  };
  const SideCodePages to = {chosen(sides_[0]), chosen(sides_[1])};
  if (to == ReadCodePages(places_.cards->settings())) return true;
  LackingText lacking;
  {
    LongWork work(this, *places_.clock);
    work.AllowCancel();
    work.NextStage(u"Zeichen prüfen"_s, places_.cards->CardCount());
    lacking = FindLacking(*places_.cards, to, [&work](int row) { return work.GoesOn(row); });
  }
  if (lacking.cancelled) return false;
  if (lacking.alike) {
    code_page_change_ = {to, false};
    return true;
  }
  TF_dlzeichen dialog(*places_.cards, to, lacking, this);
  if (dialog.exec() != QDialog::Accepted) return false;
  code_page_change_ = {to, dialog.convert()};
  return true;
}

void TF_dlopt::TieLearning() {
  fields_.Add(*ui_->Methode, keys::kRowOrder);
  fields_.Add(*ui_->NeueKarten, keys::kFewNewCards);
  file_fields_.Add(*ui_->KarteiMethode, keys::kStartMethod);
  file_fields_.Add(*ui_->Startkarte, keys::kStartAtHome);
  for (QWidget* field : {static_cast<QWidget*>(ui_->LabelKarteiMethode), static_cast<QWidget*>(ui_->KarteiMethode),
                         static_cast<QWidget*>(ui_->Startkarte)}) {
    field->setEnabled(places_.card_file != nullptr);
  }
  fields_.Add(
      *ui_->Antwortart,
      [this](const IniFile& settings) {
        const auto on =
            std::find_if(kModes.begin(), kModes.end(), [&](const auto* mode) { return mode->Read(settings); });
        ui_->Antwortart->setCurrentIndex(on == kModes.end() ? 0 : static_cast<int>(on - kModes.begin()) + 1);
      },
      [this](IniFile& settings) {
        for (size_t i = 0; i < kModes.size(); ++i) {
          const bool on = ui_->Antwortart->currentIndex() == static_cast<int>(i) + 1;
          if (kModes[i]->Read(settings) != on) kModes[i]->Write(on, settings);
        }
      });
  fields_.Add(*ui_->Anzeigen, keys::kShowFigures);
  fields_.Add(*ui_->Statistik, keys::kShowStatistics);
  for (size_t i = 0; i < keys::kBoxLimits.size(); ++i) {
    fields_.Add(*findChild<QLineEdit*>(u"Fach%1"_s.arg(i + 1)), *findChild<QLabel*>(u"HinweisFach%1"_s.arg(i + 1)),
                keys::kBoxLimits[i]);
  }
  connect(ui_->Parameter, &QAbstractButton::clicked, this, &TF_dlopt::ParametersWanted);
  connect(ui_->Tasten, &QAbstractButton::clicked, this, &TF_dlopt::KeysWanted);
  ui_->Parameter->setEnabled(places_.card_file != nullptr);
}

void TF_dlopt::TieAnswers() {
  fields_.Add(*ui_->Vorschlaege, keys::kOfferAnswers);
  fields_.Add(*ui_->Leerzeichen, keys::kExtraBlanks);
  fields_.Add(*ui_->AndereSchreibung, keys::kAnyCase);
  fields_.Add(*ui_->OhneAkzente, keys::kAnyAccents);
  fields_.Add(*ui_->OhneSatzzeichen, keys::kAnyPunctuation);
  fields_.Add(*ui_->OhneKlammern, keys::kOptionalBrackets);
  fields_.Add(*ui_->Fehler, *ui_->HinweisFehler, keys::kErrorLimit);
  fields_.Add(*ui_->Anschlaege, *ui_->HinweisAnschlaege, keys::kSpeedLimit);
  fields_.Add(*ui_->Prozent, *ui_->HinweisProzent, keys::kSpeedPercent);
  fields_.Add(*ui_->Marke, keys::kTypingMark);
  fields_.Add(*ui_->Tippzeile, keys::kTypingFigures);
  fields_.Add(*ui_->Ton, keys::kErrorSound);
  connect(ui_->TonWaehlen, &QAbstractButton::clicked, this, [this] {
    const QString folder = ui_->Ton->text().isEmpty() ? QDir::homePath() : QFileInfo(ui_->Ton->text()).path();
    const QString path =
        messages_.ChooseFileToOpen(this, u"Ton bei Fehlern"_s, folder, u"Töne (*.wav *.mid *.mp3 *.ogg)"_s);
    if (!path.isEmpty()) ui_->Ton->setText(path);
  });
  connect(ui_->TonTest, &QAbstractButton::clicked, this, &TF_dlopt::TonTestClick);
  connect(ui_->Ton, &QLineEdit::textChanged, this, [this](const QString& path) {
    const bool missing = !path.isEmpty() && !QFileInfo::exists(path);
    SetAccent(*ui_->HinweisTon, Accent::Warning);
    ui_->HinweisTon->setText(missing ? u"Diese Datei gibt es nicht."_s : QString());
    ui_->TonTest->setEnabled(!path.isEmpty() && !missing);
  });
  ui_->TonTest->setEnabled(false);
}

void TF_dlopt::TonTestClick() {
  Q_EMIT SoundWanted(ui_->Ton->text());
}

void TF_dlopt::TieFolders() {
  connect(ui_->Ordner, &QLineEdit::textChanged, this, &TF_dlopt::ShowFolder);
  connect(ui_->OrdnerWaehlen, &QAbstractButton::clicked, this, [this] {
    const QString folder = messages_.ChooseFolder(this, u"Ordner für Medien"_s, FromPath(places_.folder));
    if (!folder.isEmpty()) ui_->Ordner->setText(folder);
  });
  fields_.Add(*ui_->Ordner, keys::kMediaFolder);
  fields_.Add(*ui_->Sichern, keys::kBackups);
  fields_.Add(*ui_->Megabyte, *ui_->HinweisMegabyte, keys::kBackupMegabytes);
  connect(ui_->OrdnerOeffnen, &QAbstractButton::clicked, this,
          [this] { QDesktopServices::openUrl(QUrl::fromLocalFile(FromPath(places_.backups))); });
  const bool any = !places_.backups.empty() && QFileInfo::exists(FromPath(places_.backups));
  ui_->OrdnerOeffnen->setEnabled(any);
  ui_->OrdnerOeffnen->setToolTip(any ? FromPath(places_.backups) : u"Es wurden noch keine Kopien angelegt."_s);
  fields_.Add(*ui_->Farben, keys::kTheme);
  fields_.Add(*ui_->Leiste, keys::kBarBelow);
  fields_.Add(*ui_->Textgroesse, *ui_->HinweisTextgroesse, keys::kTextPercent);
}

void TF_dlopt::ShowFolder() {
  const QString folder = FromPath(places_.folder / ToPath(ui_->Ordner->text()));
  const QString meaning = u"Was eine Karte nennt, wird neben der Kartei gesucht und dann hier: %1"_s.arg(folder);
  ui_->HinweisOrdner->setText(QFileInfo(folder).isDir() ? meaning : meaning + u"\nDiesen Ordner gibt es nicht."_s);
}

void TF_dlopt::BitBtnOKClick() {
  QWidget* wrong = file_fields_.FirstWrong();
  if (wrong == nullptr) wrong = fields_.FirstWrong();
  if (wrong != nullptr) {
    for (int i = 0; i < ui_->Seiten->count(); ++i) {
      if (ui_->Seiten->widget(i)->isAncestorOf(wrong)) ui_->Seiten->setCurrentIndex(i);
    }
    wrong->setFocus();
    return;
  }
  if (!AskForTexts()) return;
  fields_.Write(places_.program);
  if (places_.card_file != nullptr) file_fields_.Write(*places_.card_file);
  accept();
}

void TF_dlopt::BitBtnDefaultClick() {
  fields_.Reset(*ui_->Seiten->currentWidget());
  file_fields_.Reset(*ui_->Seiten->currentWidget());
}

}  // namespace tessaro
