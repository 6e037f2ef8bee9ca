#pragma once

#include <filesystem>
#include <functional>

class QWidget;

namespace tessaro {

class CardFile;
class Clock;
class Disk;
class IniFile;
class Messages;

// What the exchange dialogs work on and what they ask of the rest of the program.
struct ExchangeTies {
  CardFile& file;
  Disk& disk;
  const Clock& clock;
  Messages& messages;
  IniFile& settings;             // of the program
  std::filesystem::path folder;  // where the choice of a file begins
  // Puts the cards as they are in memory into the dated copies. False: that failed, and the user rather leaves it.
  std::function<bool(QWidget* asker)> keep_state;
  // Lets the user number the cards anew. May be empty.
  std::function<void(QWidget* asker)> renumber;
  // Opens a card file in place of the open one, which is not saved.
  std::function<void(const std::filesystem::path& path)> load;
  // Opens a card file as the user's own command would, who is asked about the open one.
  std::function<void(const std::filesystem::path& path)> open;
};

}  // namespace tessaro
