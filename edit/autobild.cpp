#include "edit/autobild.h"

#include "cards/card_reader.h"
#include "edit/card_tools.h"
#include "edit/ed_texts.h"
#include "edit/markup_tools.h"
#include "edit/picture_cards.h"
#include "ui_autobild.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {

TF_autobild::TF_autobild(CardFile& file, CommandStack& commands, Messages& messages, int row,
                         std::function<std::string(const QString& path)> name_of, QWidget* parent)
    : QDialog(parent),
      file_(file),
      commands_(commands),
      messages_(messages),
      row_(row),
      name_of_(std::move(name_of)),
      ui_(std::make_unique<Ui::TF_autobild>()) {
  ui_->setupUi(this);
  connect(ui_->BitBtnBilder, &QAbstractButton::clicked, this, &TF_autobild::BitBtnBilderClick);
  connect(ui_->BitBtnClose, &QAbstractButton::clicked, this, &QDialog::accept);
}

TF_autobild::~TF_autobild() = default;

QString TF_autobild::told() const {
  return ui_->StatusPanel->text();
}

void TF_autobild::BitBtnBilderClick() {
  if (!IsPictureTemplate(CardReader(file_).Question(row_))) {
    return messages_.Information(this, u"Vorlagekarte ohne Musterbild,\nbitte auf Vollständigkeit prüfen!"_s);
  }
  const QStringList files = messages_.ChooseFilesToOpen(this, u"Bilddateien wählen"_s,
                                                        FromPath(file_.paths().cards.parent_path()), PictureFilter());
  std::vector<std::string> names;
  QStringList refused;
  for (const QString& file : files) {
    std::string name = name_of_(file);
    FitsInTag(name) ? names.push_back(std::move(name)) : refused.push_back(file);
  }
  const ToolResult result = names.empty() ? ToolResult() : MakePictureCards(file_, commands_, names, row_);
  if (result.outcome == ToolOutcome::NoNumberLeft) return messages_.Error(this, NoNumberLeftText());
  QString text = u"%1 Karten erstellt"_s.arg(result.cards);
  if (!refused.isEmpty()) {
    text += u". Nicht verwendet, weil eine Karte diese Namen nicht enthalten kann: "_s + refused.join(u", "_s);
  }
  ui_->StatusPanel->setText(text);
}

}  // namespace tessaro
