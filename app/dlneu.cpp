#include "app/dlneu.h"

#include <QDir>
#include <QFileInfo>
#include <QPushButton>

#include "app/dlzeichen.h"
#include "platform/disk.h"
#include "store/file/card_file.h"
#include "ui_dlneu.h"
#include "widgets/messages.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

// Names that some system cannot hold are refused everywhere: card files travel.
constexpr QStringView kForbidden = u"/\\:*?\"<>|";

}  // namespace

TF_dlneu::TF_dlneu(Messages& messages, const std::filesystem::path& folder, QWidget* parent)
    : QDialog(parent), messages_(messages), ui_(std::make_unique<Ui::TF_dlneu>()) {
  ui_->setupUi(this);
  ui_->EditFolder->setText(QDir::toNativeSeparators(FromPath(folder)));
  ui_->ButtonBox->button(QDialogButtonBox::Ok)->setText(u"&Anlegen"_s);
  for (QComboBox* sets : {ui_->ZeichensatzV, ui_->ZeichensatzH}) sets->addItems(CharacterSetNames());
  connect(ui_->EditName, &QLineEdit::textChanged, this, &TF_dlneu::EditChange);
  connect(ui_->EditFolder, &QLineEdit::textChanged, this, &TF_dlneu::EditChange);
  connect(ui_->ButtonFolder, &QPushButton::clicked, this, &TF_dlneu::ButtonFolderClick);
  EditChange();
}

TF_dlneu::~TF_dlneu() = default;

std::filesystem::path TF_dlneu::path() const {
  const std::filesystem::path name = ToPath(ui_->EditName->text().trimmed());
  const std::filesystem::path path = ToPath(QDir::fromNativeSeparators(ui_->EditFolder->text().trimmed())) / name;
  return HasCardFileType(path) ? path : std::filesystem::path(path.string() + ".mlb");
}

SideCodePages TF_dlneu::code_pages() const {
  const auto chosen = [](const QComboBox& sets) { return CodePage(static_cast<CharacterSet>(sets.currentIndex())); };
  return {chosen(*ui_->ZeichensatzV), chosen(*ui_->ZeichensatzH)};
}

void TF_dlneu::ButtonFolderClick() {
  const QString folder = messages_.ChooseFolder(this, u"Ordner der neuen Kartei"_s, ui_->EditFolder->text());
  if (!folder.isEmpty()) ui_->EditFolder->setText(QDir::toNativeSeparators(folder));
}

QString TF_dlneu::Mistake() const {
  const QString name = ui_->EditName->text().trimmed();
  if (name.isEmpty()) return u"Geben Sie der Kartei einen Namen, zum Beispiel „Englisch“."_s;
  for (const QChar letter : name) {
    if (kForbidden.contains(letter)) return u"Das Zeichen %1 ist in einem Namen nicht erlaubt."_s.arg(letter);
  }
  if (name.startsWith(u'.')) return u"Der Name darf nicht mit einem Punkt beginnen."_s;
  if (path().filename().string().size() > kLongestName) return u"Der Name ist zu lang."_s;
  if (!QDir::isAbsolutePath(QDir::fromNativeSeparators(ui_->EditFolder->text().trimmed()))) {
    return u"Wählen Sie einen Ordner für die Kartei."_s;
  }
  return {};
}

void TF_dlneu::EditChange() {
  const QString mistake = Mistake();
  ui_->ButtonBox->button(QDialogButtonBox::Ok)->setEnabled(mistake.isEmpty());
  ui_->LabelHint->setText(mistake.isEmpty() ? u"Es entsteht die Datei %1."_s.arg(FromPath(path().filename()))
                                            : mistake);
}

void TF_dlneu::accept() {
  if (!Mistake().isEmpty()) return;
  const QFileInfo file(FromPath(path()));
  if (!QDir().mkpath(file.absolutePath())) {
    return messages_.Error(this, u"Der Ordner\n%1\nkann nicht angelegt werden."_s.arg(file.absolutePath()));
  }
  if (file.exists() &&
      messages_.Question(
          this, u"Die Kartei\n%1\ngibt es schon. Soll sie durch eine leere ersetzt werden?"_s.arg(file.filePath()),
          u"Ersetzen"_s, u"Anderer Name"_s, {}, Answer::No) != Answer::Yes) {
    return ui_->EditName->setFocus();
  }
  QDialog::accept();
}

}  // namespace tessaro
