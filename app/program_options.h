#pragma once

#include <QString>
#include <QStringList>
#include <filesystem>

#include "app/start_wish.h"
#include "store/file/ini_file.h"
#include "widgets/theme.h"

namespace tessaro {

// What the command line says. Paths are as given.
struct ProgramOptions {
  StartWish wish;
  std::filesystem::path settings;  // another tessaro.ini; empty = the user's own
  Theme theme = Theme::Desktop;
  bool splash = true;
  bool another = false;  // another process, though one is running
  bool show_help = false;
  bool show_version = false;
  QString mistake;  // what cannot be understood, in words; empty = nothing
};

// `arguments` with the program's name in front.
ProgramOptions ReadOptions(const QStringList& arguments);
QString HelpText();

// Colours and size of text as the program's settings say; colours that were given at the start come before.
void ApplyAppearance(const IniFile& settings, Theme given = Theme::Desktop);

}  // namespace tessaro
