#include "learn/command_keys.h"

#include <algorithm>

#include "learn/shortcut_code.h"

namespace tessaro {

LearningKeys UsableKeys(LearningKeys codes) {
  for (size_t i = 0; i < codes.size(); ++i) {
    if (!KeyFromShortcutCode(codes[i])) codes[i] = kStandardKeys[i];
  }
  return codes;
}

CommandKeys KeysOfCommands(const LearningKeys& codes) {
  const LearningKeys usable = UsableKeys(codes);
  CommandKeys keys;
  for (size_t i = 0; i < keys.size(); ++i) {
    const QKeyCombination key = *KeyFromShortcutCode(usable[i]);
    const auto taken = [&](const QList<QKeySequence>& earlier) { return earlier.contains(QKeySequence(key)); };
    if (std::any_of(keys.begin(), keys.begin() + static_cast<std::ptrdiff_t>(i), taken)) continue;
    keys[i] = {QKeySequence(key)};
    // Enter of the number block is a key of its own to Qt. It stands first: menus print the first key, and its name is
    // the one that the buttons show too.
    if (key.key() == Qt::Key_Return)
      keys[i].prepend(QKeySequence(QKeyCombination(key.keyboardModifiers(), Qt::Key_Enter)));
  }
  return keys;
}

QString FirstKeyName(const QList<QKeySequence>& keys) {
  return keys.isEmpty() ? QString() : KeyName(keys.front()[0]);
}

}  // namespace tessaro
