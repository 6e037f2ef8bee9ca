#pragma once

#include <functional>

class QWidget;

namespace tessaro {

class Clock;
class Disk;
class Messages;

// What the editor asks of the machine and of its user. All of it must outlive the window.
struct EditorMachine {
  const Clock& clock;
  Disk& disk;
  Messages& messages;
  // Keeps the cards as they are before all of them change; false: they are to stay so. May be empty.
  std::function<bool(QWidget* asker)> keep_state = {};
};

}  // namespace tessaro
