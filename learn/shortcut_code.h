#pragma once

#include <QKeySequence>
#include <QString>
#include <cstdint>
#include <optional>

namespace tessaro {

// A learning shortcut is stored as one decimal number: a Windows virtual key code, plus 0x2000 for Shift, 0x4000 for
// Ctrl and 0x8000 for Alt. Keys of the number block have codes of their own; punctuation and umlauts are those of the
// German keyboard.

// Nothing for a number below 1, an unknown key code or unknown modifier bits.
std::optional<QKeyCombination> KeyFromShortcutCode(int64_t code);
// 0 for a key that has no code.
int ShortcutCodeFromKey(QKeyCombination key);

// True for a key by which the program itself is used: the learner's commands cannot have it.
bool IsProgramKey(QKeyCombination key);

// The name of a key as it is printed on a German keyboard, modifiers before it, for example "Strg+Entf".
QString KeyName(QKeyCombination key);

}  // namespace tessaro
