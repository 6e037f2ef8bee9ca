#include "app/commands.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <array>

#include "app/program.h"
#include "app/wnmain.h"
#include "help/help_desk.h"
#include "widgets/icons.h"

namespace tessaro {
namespace {

struct MenuTitle {
  CommandMenu menu;
  const char* name;
  const char16_t* title;
};

constexpr std::array kMenus = {
    MenuTitle{CommandMenu::File, "MenuFile", u"&Karteikasten"},
    MenuTitle{CommandMenu::Edit, "MenuEdit", u"&Bearbeiten"},
    MenuTitle{CommandMenu::Learn, "MenuLearn", u"&Lernen"},
    MenuTitle{CommandMenu::Extras, "MenuExtras", u"&Extras"},
    MenuTitle{CommandMenu::Help, "MenuHelp", u"&Hilfe"},
};

using M = CommandMenu;
using N = CommandNeeds;

constexpr Command kCommands[] = {
    {.menu = M::File,
     .name = "FileNewExecute",
     .text = u"&Neu …",
     .tip = u"Eine neue Kartei anlegen",
     .shortcut = u"Ctrl+N",
     .icon = "new",
     .run = [](Program& program) { program.main_window().FileNewExecute(); }},
    {.menu = M::File,
     .name = "FileOpenExecute",
     .text = u"Ö&ffnen …",
     .tip = u"Eine Kartei öffnen",
     .shortcut = u"Ctrl+O",
     .icon = "open",
     .run = [](Program& program) { program.main_window().FileOpenExecute(); }},
    {.menu = M::File, .name = "MenuRecent", .text = u"&Zuletzt geöffnet", .icon = "recent", .ends_group = true},
    {.menu = M::File,
     .name = "FileSaveExecute",
     .text = u"&Speichern",
     .tip = u"Die Kartei speichern; die vorige Fassung bleibt als Sicherung erhalten",
     .shortcut = u"Ctrl+S",
     .icon = "save",
     .needs = N::CardFile,
     .run = [](Program& program) { program.main_window().FileSaveExecute(); }},
    {.menu = M::File,
     .name = "FileSaveAsExecute",
     .text = u"Speichern &unter …",
     .tip = u"Die Kartei unter einem anderen Namen speichern und dort weiterlernen",
     .shortcut = u"Ctrl+Shift+S",
     .icon = "save-as",
     .needs = N::CardFile,
     .run = [](Program& program) { program.main_window().FileSaveAsExecute(); }},
    {.menu = M::File,
     .name = "MBackupClick",
     .text = u"Sicherungs&kopie anlegen …",
     .tip = u"Eine Kopie der Kartei in eine andere Datei schreiben",
     .needs = N::CardFile,
     .run = [](Program& program) { program.main_window().MBackupClick(); }},
    {.menu = M::File,
     .name = "MRestoreClick",
     .text = u"&Restore …",
     .tip = u"Den Stand einer Sicherung oder einer anderen Kartei zurückholen",
     .icon = "restore",
     .run = [](Program& program) { program.main_window().MRestoreClick(); },
     .ends_group = true},
    {.menu = M::File,
     .name = "DruckenExecute",
     .text = u"&Drucken …",
     .tip = u"Karten drucken oder als PDF speichern: als Liste, zum Ausschneiden oder groß",
     .shortcut = u"Ctrl+P",
     .icon = "print",
     .needs = N::CardFile,
     .run = [](Program& program) { program.PrintCards(&program.main_window()); },
     .ends_group = true,
     .leaves_marked = true},
    {.menu = M::File,
     .name = "MImportierenClick",
     .text = u"&Importieren …",
     .tip = u"Karten aus einer Textdatei oder Tabelle in die Kartei bringen",
     .needs = N::CardFile,
     .run = [](Program& program) { program.main_window().MImportierenClick(); }},
    {.menu = M::File,
     .name = "MExportierenClick",
     .text = u"&Exportieren …",
     .tip = u"Die Karten in eine Textdatei oder Tabelle schreiben",
     .needs = N::CardFile,
     .run = [](Program& program) { program.main_window().MExportierenClick(); }},
    {.menu = M::File,
     .name = "MAbgleichClick",
     .text = u"Karteien ab&gleichen …",
     .tip = u"Doppelte und ähnliche Karten finden, in der Kartei oder beim Übernehmen aus einer anderen",
     .needs = N::CardFile,
     .run = [](Program& program) { program.main_window().MAbgleichClick(); }},
    {.menu = M::File,
     .name = "MTransferClick",
     .text = u"Kartei aus &Version 1.0 übernehmen …",
     .tip = u"Aus einer Exportdatei der Version 1.0 eine Kartei machen",
     .run = [](Program& program) { program.main_window().MTransferClick(); },
     .ends_group = true},
    {.menu = M::File,
     .name = "MClose",
     .text = u"&Beenden",
     .tip = u"Tessaro beenden",
     .shortcut = u"Ctrl+Q",
     .icon = "close",
     .run = [](Program& program) { program.main_window().close(); }},

    {.menu = M::Edit,
     .name = "EditorAufrufExecute",
     .text = u"Karten &bearbeiten",
     .tip = u"Den Karteneditor öffnen",
     .shortcut = u"F8",
     .icon = "edit",
     .needs = N::CardFile,
     .run = [](Program& program) { program.OpenEditor(); }},
    {.menu = M::Edit,
     .name = "SuchenExecute",
     .text = u"&Suchen …",
     .tip = u"Karten nach ihrem Text suchen",
     .shortcut = u"Ctrl+F",
     .icon = "search",
     .needs = N::CardFile,
     .run = [](Program& program) { program.OpenSearch(); }},
    {.menu = M::Edit,
     .name = "MTabelleClick",
     .text = u"Übersichts&tabelle",
     .tip = u"Alle Karten als Tabelle ansehen",
     .icon = "table",
     .needs = N::CardFile,
     .run = [](Program& program) { program.OpenTable(); },
     .ends_group = true},
    {.menu = M::Edit,
     .name = "MUebersichtClick",
     .text = u"&Auswahlübersichten …",
     .tip = u"Übersichten nach Themen und Reihenfolge erstellen",
     .icon = "overview",
     .needs = N::CardFile,
     .run = [](Program& program) { program.MakeOverviews(); }},
    {.menu = M::Edit,
     .name = "MNummerierenClick",
     .text = u"Karten neu &nummerieren …",
     .tip = u"Allen Karten in ihrer Reihenfolge neue Nummern geben; Verweise werden angepasst",
     .needs = N::CardFile,
     .run = [](Program& program) { program.NumberCards(); }},

    {.menu = M::Learn,
     .name = "LernStartExecute",
     .text = u"&Lernen",
     .tip = u"Die Karten der offenen Kartei lernen",
     .shortcut = u"F5",
     .icon = "learn",
     .needs = N::CardFile,
     .run = [](Program& program) { program.main_window().LernStartExecute(); }},
    {.menu = M::Learn,
     .name = "LernAuswahlExecute",
     .text = u"Lernmethode &wählen …",
     .tip = u"Wählen, in welcher Reihenfolge die Karten kommen, oder ein Karteifach durcharbeiten",
     .shortcut = u"F6",
     .icon = "boxes",
     .needs = N::CardFile,
     .run = [](Program& program) { program.main_window().LernAuswahlExecute(); },
     .ends_group = true},
    {.menu = M::Learn,
     .name = "AuswertungExecute",
     .text = u"&Auswertung …",
     .tip = u"Was Sie wissen, was Sie getan haben und ob die Vorhersagen stimmten",
     .needs = N::CardFile,
     .run = [](Program& program) { program.outlook().OpenEvaluation(); }},
    {.menu = M::Learn,
     .name = "PrognoseExecute",
     .text = u"&Prognose …",
     .tip = u"Was fällig wird und was Sie an einem Prüfungstag wissen werden",
     .needs = N::CardFile,
     .run = [](Program& program) { program.outlook().OpenForecast(); },
     .ends_group = true},
    {.menu = M::Learn,
     .name = "LernEinstellungExecute",
     .text = u"&Einstellungen Lernvorgang …",
     .tip = u"Einstellen, wie die Karten ausgewählt werden; erst das Lernfenster schließen, sie gelten für einen "
            u"ganzen Lauf",
     .icon = "settings",
     .needs = N::CardFileAndNoRun,
     .run = [](Program& program) { program.main_window().LernEinstellungExecute(); }},

    {.menu = M::Extras,
     .name = "KarteiPruefenExecute",
     .text = u"Kartei &prüfen …",
     .tip = u"Nach doppelten Nummern, Verweisen ins Leere und Fehlern in der Statistik suchen",
     .needs = N::CardFile,
     .run = [](Program& program) { program.main_window().KarteiPruefenExecute(); }},
    {.menu = M::Extras,
     .name = "IndexAufbauExecute",
     .text = u"&Index aufbauen",
     .tip = u"Lernindex und Linkindex aus den Karten neu aufbauen",
     .icon = "index",
     .needs = N::CardFile,
     .run = [](Program& program) { program.main_window().IndexAufbauExecute(); }},
    {.menu = M::Extras,
     .name = "MDelStatClick",
     .text = u"&Statistik löschen …",
     .tip = u"Vergessen, was gelernt wurde: bei allen Karten oder bei den schlecht gewussten",
     .needs = N::CardFile,
     .run = [](Program& program) { program.main_window().MDelStatClick(); },
     .ends_group = true},
    {.menu = M::Extras,
     .name = "OptionenExecute",
     .text = u"&Optionen …",
     .tip = u"Schrift und Farben, Lernen, Antworten, Medien, Sicherungen, Darstellung",
     .shortcut = u"Ctrl+,",
     .icon = "settings",
     .run = [](Program& program) { program.ShowOptions(); }},

    {.menu = M::Help,
     .name = "HilfeExecute",
     .text = u"&Hilfe",
     .tip = u"Die Hilfe zu dem Fenster, in dem Sie gerade arbeiten; F1 gibt es in allen Fenstern",
     .shortcut = u"F1",
     .icon = "help",
     .run = [](Program& program) { program.help().Open(program.main_window()); }},
    {.menu = M::Help,
     .name = "MAboutClick",
     .text = u"Ü&ber Tessaro",
     .tip = u"Name und Version des Programms",
     .run = [](Program& program) { program.main_window().MAboutClick(); }},
};

void AddCommand(const Command& command, QMenu& menu, QMainWindow& window, Program& program) {
  const QString text = QString::fromUtf16(command.text);
  QAction* action = nullptr;
  if (command.run == nullptr) {
    auto* inner = new QMenu(text, &window);
    inner->setObjectName(QLatin1StringView(command.name));
    action = menu.addMenu(inner);
  } else {
    action = new QAction(text, &window);
    action->setObjectName(QLatin1StringView(command.name));
    menu.addAction(action);
    action->setShortcut(QKeySequence(QString::fromUtf16(command.shortcut)));
    action->setStatusTip(QString::fromUtf16(command.tip));
    // What works on the whole file finds it without what the editor still holds.
    const bool whole_file =
        !command.leaves_marked && (command.menu == CommandMenu::File || command.menu == CommandMenu::Extras);
    QObject::connect(action, &QAction::triggered, &window, [run = command.run, &program, whole_file] {
      if (program.StoreEdited(whole_file)) run(program);
    });
  }
  if (*command.icon != '\0') action->setIcon(Icon(command.icon));
  if (command.ends_group) menu.addSeparator();
}

bool IsOn(CommandNeeds needs, bool card_file_open, bool learning) {
  switch (needs) {
    case CommandNeeds::Nothing:
      return true;
    case CommandNeeds::CardFile:
      return card_file_open;
    case CommandNeeds::CardFileAndNoRun:
      return card_file_open && !learning;
  }
  return false;
}

}  // namespace

std::span<const Command> MainCommands() {
  return kCommands;
}

void MakeMenus(QMainWindow& window, Program& program) {
  for (const MenuTitle& title : kMenus) {
    QMenu* menu = nullptr;
    for (const Command& command : MainCommands()) {
      if (command.menu != title.menu) continue;
      if (menu == nullptr) menu = window.menuBar()->addMenu(QString::fromUtf16(title.title));
      menu->setObjectName(QLatin1StringView(title.name));
      AddCommand(command, *menu, window, program);
    }
  }
}

void EnableCommands(QMainWindow& window, bool card_file_open, bool learning) {
  for (const Command& command : MainCommands()) {
    if (command.run == nullptr) continue;
    auto* action = window.findChild<QAction*>(QLatin1StringView(command.name));
    action->setEnabled(IsOn(command.needs, card_file_open, learning));
  }
}

}  // namespace tessaro
