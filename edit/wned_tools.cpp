// The commands of the editor that work on the text of a side, and the tools and dialogs that they open.

#include <QComboBox>

#include "edit/autobild.h"
#include "edit/autolink.h"
#include "edit/card_tools.h"
#include "edit/card_work.h"
#include "edit/dlnumm.h"
#include "edit/ed_texts.h"
#include "edit/landmark_settings.h"
#include "edit/side_field.h"
#include "edit/topics.h"
#include "edit/wned.h"
#include "edit/wnlink.h"
#include "edit/wnsign.h"
#include "ui_wned.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

// To be called when a dialog ends that may have made cards.
void OrderIndexes(CardFile& file, const Clock& clock, QWidget* asker) {
  LongWork work(asker, clock);
  (void)CardEdit(file).Finish(ShowIndexes(work));
}

}  // namespace

// Back to what the card was when it was taken up.
void TF_wned::MCardUndo() {
  for (const EditSide side : {EditSide::Front, EditSide::Back}) {
    if (sides_.field(side).Side() != desk_.Opened(side)) sides_.field(side).Replace(desk_.Opened(side));
  }
  ShowStatus(u"Alle Änderungen rückgängig"_s);
}

void TF_wned::MTextSign() {
  if (sign_window_ == nullptr || !sign_window_->isVisible()) {
    sign_window_ = std::make_unique<TF_wnsign>(settings_, sides_.looks(), this);
    connect(sign_window_.get(), &TF_wnsign::CharacterChosen, this, [this](const QString& character) {
      if (MayChange()) ActiveText().PutTag(ToBytes(character, sides_.page(sides_.active())).value_or(std::string()));
    });
  }
  sign_window_->Open(sides_.active());
}

// One key for two commands: in a text it makes a link, elsewhere it builds the link index.
void TF_wned::LinkOrIndex() {
  const bool in_text = ui_->RichEditKarteVorne->hasFocus() || ui_->RichEditKarteHinten->hasFocus();
  in_text ? MHtmlLink() : MCardBuildLinkIndex();
}

void TF_wned::MarkCard(std::string_view tag) {
  if (!MayChange()) return;
  sides_.field(EditSide::Front).PutAtStart(tag);
  ActiveText().setFocus();
}

void TF_wned::ReadTopics() {
  const QString chosen = topics_->currentText();
  topics_->clear();
  for (const std::string& topic : TopicList(file_)) topics_->addItem(FromBytes(topic));
  topics_->setCurrentText(chosen);
}

void TF_wned::HtmlThema() {
  const auto topic = ToBytes(topics_->currentText().trimmed());
  if (!topic || topic->empty() || topic->find_first_of("\">") != std::string::npos) {
    return ShowStatus(u"Bitte ein Thema wählen oder eingeben, ohne Anführungszeichen und >"_s);
  }
  MarkCard(TopicTag(*topic));
  if (topics_->findText(topics_->currentText()) < 0) topics_->addItem(topics_->currentText());
}

void TF_wned::HtmlHome() {
  const Answer answer = machine_.messages.Question(this, u"\nKarte wirklich als neue Indexkarte definieren?"_s, u"Ja"_s,
                                                   u"Nein"_s, {}, Answer::No);
  if (answer != Answer::Yes) return;
  MarkCard(kHomeTags);
  if (!StoreSide()) return;
  const int home = Landmarks().HomeRow(file_);
  if (home != desk_.row()) {
    ShowStatus(u"Startkarte bleibt die Karte an Pos. %1: Die erste Karte mit <home> gilt"_s.arg(home - 1));
  }
}

void TF_wned::HtmlAuto() {
  const Answer answer = machine_.messages.Question(
      this, u"\nKarte wirklich als neue Startkarte\nder Auswahl nach Reihenfolge definieren?"_s, u"Ja"_s, u"Nein"_s, {},
      Answer::No);
  if (answer != Answer::Yes) return;
  SetOverviewSetting(desk_.id(), file_.settings());
  (void)file_.SaveSettings();
  ShowStatus(u"Karte %1 ist die Startkarte der Auswahl, bis die Übersicht nach Reihenfolge neu erstellt wird"_s.arg(
      FromBytes(desk_.id())));
}

// A tag for a file, if there is one.
void TF_wned::InsertMedia(const std::string& tag) {
  if (tag.empty() || !MayChange()) return;
  // The file may be new in its folder.
  sides_.ReadLooks(file_, settings_);
  ActiveText().PutTag(tag);
}

void TF_wned::DropFiles(const QStringList& paths) {
  activateWindow();
  for (const QString& path : paths) {
    const auto use = CardMedia::UseOf(path);
    if (use) {
      InsertMedia(media_.TagOf(*use, path, this));
    } else {
      ShowStatus(u"Diese Art von Datei kann eine Karte nicht zeigen: %1"_s.arg(path));
    }
  }
}

void TF_wned::MHtmlTransferAll() {
  if (!Settle()) return;
  ToolResult result;
  Do([&] {
    CardWork work(this, machine_.clock, u"Zeilenumbruchmarken setzen"_s, file_);
    result = TransferAllLineBreaks(file_, desk_.commands(), desk_.row(), work.keep_going());
  });
  switch (result.outcome) {
    case ToolOutcome::Done:
      return ShowStatus(u"%1 Karten umgewandelt"_s.arg(result.cards));
    case ToolOutcome::Cancelled:
      return ShowStatus(u"Abgebrochen; alles ist wie zuvor"_s);
    default:
      return ShowStatus(u"Update fehlgeschlagen"_s);
  }
}

void TF_wned::MHtmlLink() {
  if (desk_.IsLinking() || !MayChange()) return;
  const std::string side = ActiveText().Side();
  const SideRange selection = ActiveText().Selection();
  if (!StoreSide()) return;
  desk_.BeginLink(sides_.active(), selection);
  link_window_ = std::make_unique<TF_wnlink>(settings_, this);
  connect(link_window_.get(), &TF_wnlink::Accepted, this, &TF_wned::FinishLink);
  connect(link_window_.get(), &TF_wnlink::Cancelled, this, &TF_wned::EndLink);
  for (const char16_t* name : {u"MCardGoHome", u"MCardGoAuto", u"MCardGoLastLink", u"MCardTop", u"MCardGoBack",
                               u"MCardGoNext", u"MCardBottom", u"MCardSearch", u"MCardSearchMore"}) {
    link_window_->addAction(findChild<QAction*>(QString::fromUtf16(name)));
  }
  link_window_->Begin(FromBytes(desk_.id()), FromBytes(desk_.link()->face(), sides_.page(desk_.link_side())));
  ShowCard();
}

void TF_wned::FinishLink(const QString& face) {
  const auto bytes = ToBytes(face, sides_.page(desk_.link_side()));
  if (!bytes) return ShowStatus(u"Der Linktext hat Zeichen, die nicht im Zeichensatz der Seite stehen"_s);
  if (!StoreSide()) return;
  const EditSide side = desk_.link_side();
  busy_ = true;
  const bool made = desk_.FinishLink(*bytes);
  busy_ = false;
  link_window_->hide();
  link_window_.release()->deleteLater();
  ShowCard();
  sides_.Activate(side);
  ActiveText().setFocus();
  made ? ShowStatus(u"Link gesetzt"_s) : machine_.messages.Error(this, u"Fehler beim Suchen nach Linkposition"_s);
}

void TF_wned::EndLink() {
  if (link_window_ == nullptr) return;
  (void)StoreSide();
  desk_.CancelLink();
  link_window_->hide();
  link_window_.release()->deleteLater();
  ShowCard();
}

void TF_wned::MHtmlAutoLink() {
  if (!MayChange() || !Settle()) return;
  busy_ = true;
  TF_autolink dialog(file_, desk_.commands(), {settings_, machine_.messages, machine_.disk, machine_.clock},
                     desk_.row(), isVisible() ? this : parentWidget());
  dialog.exec();
  busy_ = false;
  OrderIndexes(file_, machine_.clock, this);
  ReadTopics();
  // The way to the overview is a setting of the card file.
  (void)file_.SaveSettings();
  if (dialog.start_row() != 0) desk_.GoTo(dialog.start_row());
  ShowCard();
  ShowStatus(dialog.told());
}

void TF_wned::MHtmlAutoBild() {
  if (!Settle()) return;
  busy_ = true;
  const auto name = [this](const QString& path) { return media_.NameOf(path); };
  TF_autobild dialog(file_, desk_.commands(), machine_.messages, desk_.row(), name, this);
  dialog.exec();
  busy_ = false;
  OrderIndexes(file_, machine_.clock, this);
  ShowCard();
  ShowStatus(dialog.told());
}

void TF_wned::MNummerierenClick() {
  if (!MayChange() || !Settle()) return;
  busy_ = true;
  TF_dlnumm dialog(file_, desk_.commands(), machine_.messages, machine_.clock, desk_.row(),
                   isVisible() ? this : parentWidget(), machine_.keep_state);
  const bool numbered = dialog.exec() == QDialog::Accepted;
  busy_ = false;
  (void)file_.SaveSettings();
  ShowCard();
  if (numbered) ShowStatus(u"Nummerierung abgeschlossen"_s);
}

}  // namespace tessaro
