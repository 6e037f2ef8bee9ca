// The commands of the editor that concern whole cards, and those that go from one to another.

#include <QLineEdit>

#include "edit/card_model.h"
#include "edit/card_work.h"
#include "edit/ed_texts.h"
#include "edit/side_field.h"
#include "edit/wned.h"
#include "edit/wnlink.h"
#include "edit/wnsuch.h"
#include "edit/wntab.h"
#include "settings/side_settings.h"
#include "ui_wned.h"
#include "widgets/count_texts.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

QString CommandName(EditKind kind) {
  switch (kind) {
    case EditKind::Text:
      return u"Text der Karte"_s;
    case EditKind::Insert:
      return u"Leerkarte"_s;
    case EditKind::Paste:
      return u"Karte einfügen"_s;
    case EditKind::Cut:
      return u"Karte ausschneiden"_s;
    case EditKind::Mark:
      return u"Karte löschen (markieren)"_s;
    case EditKind::Remove:
      return u"Markierte Karten entfernen"_s;
    case EditKind::Statistics:
      return u"Statistik löschen"_s;
    case EditKind::LineBreaks:
      return u"Zeilenumbruchmarken setzen"_s;
    case EditKind::Link:
      return u"Link setzen"_s;
    case EditKind::Renumber:
      return u"Nummerieren"_s;
    case EditKind::Overview:
      return u"Übersicht"_s;
    case EditKind::Topics:
      return u"Themen"_s;
    case EditKind::Pictures:
      return u"Bildkarten"_s;
  }
  return {};
}

}  // namespace

void TF_wned::Do(const std::function<void()>& command) {
  if (LongWork::Running() || !StoreSide()) return;
  busy_ = true;
  command();
  busy_ = false;
  ShowCard();
}

void TF_wned::Go(const std::function<bool()>& go, const QString& otherwise) {
  bool moved = true;
  Do([&] { moved = go(); });
  if (!moved && !otherwise.isEmpty()) ShowStatus(otherwise);
}

void TF_wned::GoBy(bool (CardDesk::*step)(), const QString& otherwise) {
  Go([this, step] { return (desk_.*step)(); }, otherwise);
}

void TF_wned::TellMade(const DeskResult& result, bool empty_card) {
  switch (result.outcome) {
    case DeskOutcome::Done: {
      const QString text =
          empty_card ? u"Karte ID: %1 (Leerkarte) an Pos. %2 eingefügt"_s : u"Karte ID: %1 an Pos. %2 eingefügt"_s;
      return ShowStatus(text.arg(FromBytes(result.id)).arg(result.position));
    }
    case DeskOutcome::NoNumberLeft:
      return machine_.messages.Error(this, NoNumberLeftText());
    case DeskOutcome::Failed:
      return machine_.messages.Error(
          this, u"Speicherproblem beim Einfügen.\nBeenden Sie bitte das Programm\nund starten Sie neu."_s);
    case DeskOutcome::NoCard:
      return ShowStatus(u"Es ist noch keine Karte kopiert"_s);
  }
}

void TF_wned::MCardSaveToFile() {
  if (!Settle()) return;
  Q_EMIT SaveWanted();
  ShowPosition();
  if (!file_.changed()) ShowStatus(u"Alle Karten gespeichert"_s);
}

void TF_wned::MCardBuildLinkIndex() {
  Do([this] {
    LongWork work(this, machine_.clock);
    if (file_.RebuildIndexes(ShowIndexes(work))) {
      ShowStatus(u"Linkindex neu aufgebaut: %1"_s.arg(CardsText(file_.link_index().RowCount() - 2)));
    } else {
      machine_.messages.Error(this, u"\nLinkindexaufbau Fehler,\nDefekt in Kartei.\nSiehe Hilfeindex!"_s);
    }
  });
}

// Asks whether to rebuild the link index where it does not lead to a card that is there, which should not happen.
void TF_wned::CheckLinkIndex(int64_t card_id) {
  if (desk_.IndexLeadsTo(card_id)) return;
  const Answer answer = machine_.messages.Question(this, u"\nLinkindex nicht mehr aktuell.\nJetzt neu aufbauen?"_s,
                                                   u"Aufbauen"_s, u"Nicht aufbauen"_s, {}, Answer::Yes);
  if (answer == Answer::Yes) MCardBuildLinkIndex();
}

void TF_wned::MCardLeer() {
  DeskResult result;
  Do([&] { result = desk_.InsertEmpty(); });
  if (result.outcome == DeskOutcome::NoCard) return;
  TellMade(result, true);
  if (result.outcome != DeskOutcome::Done) return;
  sides_.Activate(EditSide::Front);
  ActiveText().setFocus();
  ActiveText().selectAll();
}

void TF_wned::MCardCopy() {
  Do([this] { desk_.Copy(); });
  ShowStatus(u"Karte %1 kopiert"_s.arg(FromBytes(desk_.id())));
}

void TF_wned::MCardPaste() {
  DeskResult result;
  Do([&] { result = desk_.Paste(); });
  TellMade(result, false);
}

void TF_wned::MCardCut() {
  DeskResult result;
  const bool last = file_.CardCount() == 1;
  Do([&] { result = desk_.Cut(); });
  if (result.outcome == DeskOutcome::Done) {
    ShowStatus(last ? FirstCardText() : u"Karte %1 ausgeschnitten"_s.arg(FromBytes(result.id)));
  } else {
    machine_.messages.Error(this, u"\nDelete fehlgeschlagen.\nBitte neu positionieren\nund nochmal versuchen."_s);
  }
}

void TF_wned::MCardDelete() {
  DeskResult result;
  Do([&] { result = desk_.ToggleDeletion(); });
  model_->ShowAnew();
  // Deliberate: the character before "glich" is no "ö".
  if (result.outcome != DeskOutcome::Done) return ShowStatus(u"Delete nicht m\u201Dglich"_s);
  const QString text = result.marked ? u"Karte %1 gelöscht"_s : u"Karte %1 wiederhergestellt"_s;
  ShowStatus(text.arg(FromBytes(result.id)));
}

void TF_wned::MCardDelStat() {
  DeskResult result;
  Do([&] { result = desk_.ResetStatistics(); });
  if (result.outcome == DeskOutcome::Done) {
    ShowStatus(u"Statistik der Karte %1 gelöscht"_s.arg(FromBytes(result.id)));
  }
}

void TF_wned::TakeCommand(bool back) {
  std::optional<CommandStack::Moved> moved;
  Do([&] { moved = back ? desk_.Undo() : desk_.Redo(); });
  model_->ShowAnew();
  if (!moved) return ShowStatus(back ? u"Es ist nichts zurückzunehmen"_s : u"Es ist nichts zu wiederholen"_s);
  ShowStatus((back ? u"Zurückgenommen: %1"_s : u"Wiederholt: %1"_s).arg(CommandName(moved->kind)));
}

void TF_wned::SpeedButtonGoto() {
  QString text = ui_->EditGoto->text().trimmed();
  const bool by_number = text.startsWith(u'#');
  if (by_number) text.remove(0, 1);
  bool is_number = false;
  const int number = text.toInt(&is_number);
  if (!is_number) return ShowStatus(u"Bitte eine Position eingeben, oder mit # davor eine Kartennummer"_s);
  if (by_number) CheckLinkIndex(number);
  const int before = desk_.row();
  Go([&] { return by_number ? number > 0 && desk_.GoToId(number) : desk_.GoToPosition(number); },
     by_number ? u"Keine Karte hat diese Nummer"_s : u"Diese Position gibt es nicht"_s);
  if (desk_.row() != before) ActiveText().setFocus();
}

void TF_wned::SpeedButtonMarke(size_t mark) {
  desk_.SetMark(mark);
  ShowCommands();
  ShowStatus(u"M%1: Karte %2"_s.arg(mark + 1).arg(desk_.position()));
}

void TF_wned::FollowLink(int card_id) {
  bool followed = false;
  CheckLinkIndex(card_id);
  Do([&] { followed = desk_.FollowLink(card_id); });
  if (!followed) machine_.messages.Information(this, TargetMissingText());
}

void TF_wned::ShowSearch() {
  if (search_window_ == nullptr) {
    search_window_ = std::make_unique<TF_wnsuch>(settings_, this);
    connect(search_window_.get(), &TF_wnsuch::StartWanted, this, [this] {
      Search([this](const KeepGoing& keep_going) { return desk_.Search(search_window_->query(), keep_going); });
    });
    connect(search_window_.get(), &TF_wnsuch::MoreWanted, this, &TF_wned::MCardSearchMore);
  }
  search_window_->SetCodePages(ReadCodePages(file_.settings()));
  search_window_->Begin();
}

void TF_wned::MCardSearchMore() {
  if (!desk_.query()) return ShowSearch();
  Search([this](const KeepGoing& keep_going) { return desk_.SearchMore(keep_going); });
}

void TF_wned::Search(const std::function<SearchResult(const KeepGoing& keep_going)>& search) {
  SearchResult result;
  QWidget* asker = search_window_ != nullptr && search_window_->isVisible() ? search_window_.get() : window();
  Do([&] {
    CardWork work(asker, machine_.clock, u"Karten durchsuchen"_s, file_);
    result = search(work.keep_going());
  });
  if (!desk_.query()) return;
  const CardSearch query(*desk_.query());
  const bool possible = query.Possible();
  ShowStatus(SearchText(result, possible));
  if (search_window_ != nullptr) search_window_->ShowResult(result, possible);
  if (result.row == 0) return;
  show();
  const auto found = query.Match(sides_.field(EditSide::Front).Side(), sides_.field(EditSide::Back).Side());
  if (!found) return;
  sides_.Activate(found->side);
  ActiveText().Select(found->text);
}

void TF_wned::ShowTable() {
  if (!StoreSide()) return;
  if (table_window_ == nullptr) {
    table_window_ =
        std::make_unique<TF_wntab>(file_, desk_, settings_, machine_.clock, machine_.messages, sides_.looks(), this);
    connect(table_window_.get(), &TF_wntab::EditorWanted, this, [this](int row) {
      ShowRow(row);
      show();
      raise();
      activateWindow();
    });
    connect(table_window_.get(), &TF_wntab::CardsTouched, this, [this] {
      ShowCard();
      model_->ShowAnew();
    });
    connect(table_window_.get(), &TF_wntab::PrintWanted, this, [this] { Q_EMIT PrintWanted(table_window_.get()); });
    connect(table_window_.get(), &TF_wntab::StoreWanted, this, [this] { (void)StoreSide(); });
    connect(table_window_.get(), &QDialog::finished, this, [this] {
      if (!IsInUse()) close();
    });
  }
  table_window_->Open(desk_.row());
}

void TF_wned::ShowCommands() {
  const bool card = desk_.row() != 0;
  const auto enable = [this](const char16_t* name, bool on) {
    if (auto* action = findChild<QAction*>(QString::fromUtf16(name))) action->setEnabled(on);
  };
  CommandStack& commands = desk_.commands();
  enable(u"MCardPaste", desk_.CanPaste());
  enable(u"MCardCut", card);
  enable(u"MCardDelete", card);
  enable(u"MCommandUndo", commands.CanUndo());
  enable(u"MCommandRedo", commands.CanRedo());
  enable(u"MCardGoLastLink", desk_.CanGoBack());
  ui_->SpeedButtonGoMarke1->setEnabled(desk_.MarkedRow(0) != 0);
  ui_->SpeedButtonGoMarke2->setEnabled(desk_.MarkedRow(1) != 0);
  if (auto* undo = findChild<QAction*>(u"MCommandUndo"_s)) {
    undo->setText(commands.CanUndo() ? u"&Zurücknehmen: %1"_s.arg(CommandName(commands.NextUndo()))
                                     : u"Kartenbefehl &zurücknehmen"_s);
  }
  if (auto* redo = findChild<QAction*>(u"MCommandRedo"_s)) {
    redo->setText(commands.CanRedo() ? u"Wi&ederholen: %1"_s.arg(CommandName(commands.NextRedo()))
                                     : u"Kartenbefehl wi&ederholen"_s);
  }
}

}  // namespace tessaro
