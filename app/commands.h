#pragma once

#include <QString>
#include <span>

class QMainWindow;
class QMenu;

namespace tessaro {

class Program;

// The commands of the main window: one row of a table each, in the order of the menus.
enum class CommandMenu { File, Edit, Learn, Extras, Help };

// Without it a command is off.
enum class CommandNeeds {
  Nothing,
  CardFile,          // an open card file
  CardFileAndNoRun,  // the same, and no learning window
};

struct Command {
  CommandMenu menu = CommandMenu::File;
  const char* name = "";           // the object name of its action
  const char16_t* text = u"";      // with "&" before its letter
  const char16_t* tip = u"";       // shown in the status line
  const char16_t* shortcut = u"";  // in Qt's portable form; empty: none
  const char* icon = "";           // of widgets/icons; empty: none
  CommandNeeds needs = CommandNeeds::Nothing;
  void (*run)(Program& program) = nullptr;  // null: a menu of its own, which is filled elsewhere
  bool ends_group = false;                  // a line follows in the menu
  bool leaves_marked = false;               // cards marked for deletion may stay
};

std::span<const Command> MainCommands();

// Makes the menus of the table in the window's menu bar. The actions and menus belong to the window and are found by
// their object names; a menu has the name of its CommandMenu, as in "MenuFile".
void MakeMenus(QMainWindow& window, Program& program);
// Switches the window's commands on and off by what they need.
void EnableCommands(QMainWindow& window, bool card_file_open, bool learning);

}  // namespace tessaro
