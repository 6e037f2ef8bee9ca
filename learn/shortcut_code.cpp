#include "learn/shortcut_code.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int kShift = 0x2000;
constexpr int kControl = 0x4000;
constexpr int kAlt = 0x8000;
constexpr int kVirtualKey = 0x00FF;

// Keys that follow one another in both systems.
struct KeyRange {
  int first_code;
  int last_code;
  int first_key;
  Qt::KeyboardModifier modifier;
};
constexpr std::array kRanges = {
    KeyRange{'0', '9', Qt::Key_0, Qt::NoModifier},
    KeyRange{'A', 'Z', Qt::Key_A, Qt::NoModifier},
    KeyRange{96, 105, Qt::Key_0, Qt::KeypadModifier},
    KeyRange{112, 135, Qt::Key_F1, Qt::NoModifier},
};

struct SingleKey {
  int code;
  Qt::Key key;
  Qt::KeyboardModifier modifier = Qt::NoModifier;
};
constexpr std::array kSingleKeys = {
    SingleKey{8, Qt::Key_Backspace},
    SingleKey{9, Qt::Key_Tab},
    SingleKey{13, Qt::Key_Return},
    SingleKey{19, Qt::Key_Pause},
    SingleKey{27, Qt::Key_Escape},
    SingleKey{32, Qt::Key_Space},
    SingleKey{33, Qt::Key_PageUp},
    SingleKey{34, Qt::Key_PageDown},
    SingleKey{35, Qt::Key_End},
    SingleKey{36, Qt::Key_Home},
    SingleKey{37, Qt::Key_Left},
    SingleKey{38, Qt::Key_Up},
    SingleKey{39, Qt::Key_Right},
    SingleKey{40, Qt::Key_Down},
    SingleKey{45, Qt::Key_Insert},
    SingleKey{46, Qt::Key_Delete},
    SingleKey{106, Qt::Key_Asterisk, Qt::KeypadModifier},
    SingleKey{107, Qt::Key_Plus, Qt::KeypadModifier},
    SingleKey{109, Qt::Key_Minus, Qt::KeypadModifier},
    SingleKey{110, Qt::Key_Comma, Qt::KeypadModifier},
    SingleKey{111, Qt::Key_Slash, Qt::KeypadModifier},
    SingleKey{186, Qt::Key_Udiaeresis},
    SingleKey{187, Qt::Key_Plus},
    SingleKey{188, Qt::Key_Comma},
    SingleKey{189, Qt::Key_Minus},
    SingleKey{190, Qt::Key_Period},
    SingleKey{191, Qt::Key_NumberSign},
    SingleKey{192, Qt::Key_Odiaeresis},
    SingleKey{219, Qt::Key_ssharp},
    SingleKey{220, Qt::Key_AsciiCircum},
    SingleKey{221, Qt::Key_Dead_Acute},
    SingleKey{222, Qt::Key_Adiaeresis},
    SingleKey{226, Qt::Key_Less},
};

std::optional<QKeyCombination> PlainKey(int code) {
  for (const KeyRange& range : kRanges) {
    if (code >= range.first_code && code <= range.last_code) {
      return QKeyCombination(range.modifier, static_cast<Qt::Key>(range.first_key + code - range.first_code));
    }
  }
  const auto* found = std::ranges::find(kSingleKeys, code, &SingleKey::code);
  if (found == kSingleKeys.end()) return std::nullopt;
  return QKeyCombination(found->modifier, found->key);
}

int PlainCode(Qt::Key key, bool keypad) {
  const auto modifier = keypad ? Qt::KeypadModifier : Qt::NoModifier;
  for (const KeyRange& range : kRanges) {
    const int code = range.first_code + static_cast<int>(key) - range.first_key;
    if (range.modifier == modifier && code >= range.first_code && code <= range.last_code) return code;
  }
  for (const SingleKey& single : kSingleKeys) {
    if (single.key == key && single.modifier == modifier) return single.code;
  }
  return 0;
}

// Names that differ from what Qt prints without a German translation at hand.
struct NamedKey {
  Qt::Key key;
  QStringView name;
};
constexpr std::array kNamedKeys = {
    NamedKey{Qt::Key_Backspace, u"Rücktaste"},
    NamedKey{Qt::Key_Return, u"Enter"},
    NamedKey{Qt::Key_Enter, u"Enter"},
    NamedKey{Qt::Key_Delete, u"Entf"},
    NamedKey{Qt::Key_Insert, u"Einfg"},
    NamedKey{Qt::Key_Home, u"Pos1"},
    NamedKey{Qt::Key_End, u"Ende"},
    NamedKey{Qt::Key_PageUp, u"Bild auf"},
    NamedKey{Qt::Key_PageDown, u"Bild ab"},
    NamedKey{Qt::Key_Space, u"Leertaste"},
    NamedKey{Qt::Key_Escape, u"Esc"},
    NamedKey{Qt::Key_Tab, u"Tab"},
    NamedKey{Qt::Key_Left, u"Links"},
    NamedKey{Qt::Key_Right, u"Rechts"},
    NamedKey{Qt::Key_Up, u"Auf"},
    NamedKey{Qt::Key_Down, u"Ab"},
    NamedKey{Qt::Key_Pause, u"Pause"},
};

}  // namespace

std::optional<QKeyCombination> KeyFromShortcutCode(int64_t code) {
  if (code < 1 || (code & ~int64_t{kVirtualKey | kShift | kControl | kAlt}) != 0) return std::nullopt;
  const std::optional<QKeyCombination> plain = PlainKey(static_cast<int>(code & kVirtualKey));
  if (!plain) return std::nullopt;
  Qt::KeyboardModifiers modifiers = plain->keyboardModifiers();
  modifiers.setFlag(Qt::ShiftModifier, (code & kShift) != 0);
  modifiers.setFlag(Qt::ControlModifier, (code & kControl) != 0);
  modifiers.setFlag(Qt::AltModifier, (code & kAlt) != 0);
  return QKeyCombination(modifiers, plain->key());
}

int ShortcutCodeFromKey(QKeyCombination key) {
  const Qt::KeyboardModifiers modifiers = key.keyboardModifiers();
  const bool keypad = modifiers.testFlag(Qt::KeypadModifier);
  // Enter of the number block is the same key to a stored shortcut, and so are its arrows without the number lock.
  const Qt::Key plain = key.key() == Qt::Key_Enter ? Qt::Key_Return : key.key();
  int code = PlainCode(plain, keypad);
  if (code == 0 && keypad) code = PlainCode(plain, false);
  if (code == 0) return 0;
  return code | (modifiers.testFlag(Qt::ShiftModifier) ? kShift : 0) |
         (modifiers.testFlag(Qt::ControlModifier) ? kControl : 0) | (modifiers.testFlag(Qt::AltModifier) ? kAlt : 0);
}

bool IsProgramKey(QKeyCombination key) {
  // Modes of answering, taking back and restoring, saving, copying, size of the letters, full screen, closing, menus,
  // moving the focus, reading on.
  const QKeyCombination keys[] = {Qt::CTRL | Qt::Key_1,
                                  Qt::CTRL | Qt::Key_2,
                                  Qt::CTRL | Qt::Key_3,
                                  Qt::CTRL | Qt::Key_Z,
                                  Qt::CTRL | Qt::SHIFT | Qt::Key_Z,
                                  Qt::CTRL | Qt::Key_Y,
                                  Qt::CTRL | Qt::Key_S,
                                  Qt::CTRL | Qt::Key_C,
                                  Qt::CTRL | Qt::Key_0,
                                  Qt::CTRL | Qt::Key_Plus,
                                  Qt::CTRL | Qt::Key_Equal,
                                  Qt::CTRL | Qt::Key_Minus,
                                  Qt::Key_F11,
                                  Qt::ALT | Qt::Key_F4,
                                  Qt::Key_F10,
                                  Qt::Key_Space,
                                  Qt::Key_Tab,
                                  Qt::SHIFT | Qt::Key_Backtab,
                                  Qt::Key_PageUp,
                                  Qt::Key_PageDown};
  return std::ranges::find(keys, key) != std::end(keys);
}

QString KeyName(QKeyCombination key) {
  const Qt::KeyboardModifiers modifiers = key.keyboardModifiers();
  QString name;
  if (modifiers.testFlag(Qt::ControlModifier)) name += u"Strg+"_s;
  if (modifiers.testFlag(Qt::AltModifier)) name += u"Alt+"_s;
  if (modifiers.testFlag(Qt::ShiftModifier)) name += u"Umschalt+"_s;
  if (modifiers.testFlag(Qt::KeypadModifier)) name += u"Num "_s;
  const auto* found = std::ranges::find(kNamedKeys, key.key(), &NamedKey::key);
  return name + (found != kNamedKeys.end() ? found->name.toString()
                                           : QKeySequence(key.key()).toString(QKeySequence::NativeText));
}

}  // namespace tessaro
