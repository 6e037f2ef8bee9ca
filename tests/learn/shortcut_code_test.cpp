#include "learn/shortcut_code.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

TEST(ShortcutCode, MapsStoredNumbersToKeysAndBack) {
  struct Case {
    int code;
    QKeyCombination key;
    QString name;
  };
  const Case cases[] = {
      {8, Qt::Key_Backspace, u"Rücktaste"_s},
      {13, Qt::Key_Return, u"Enter"_s},
      {46, Qt::Key_Delete, u"Entf"_s},
      {35, Qt::Key_End, u"Ende"_s},
      {36, Qt::Key_Home, u"Pos1"_s},
      {'0', Qt::Key_0, u"0"_s},
      {'Z', Qt::Key_Z, u"Z"_s},
      {112, Qt::Key_F1, u"F1"_s},
      {135, Qt::Key_F24, u"F24"_s},
      {105, QKeyCombination(Qt::KeypadModifier, Qt::Key_9), u"Num 9"_s},
      {107, QKeyCombination(Qt::KeypadModifier, Qt::Key_Plus), u"Num +"_s},
      {187, Qt::Key_Plus, u"+"_s},
      {192, Qt::Key_Odiaeresis, u"Ö"_s},
      {0x2000 + 112, QKeyCombination(Qt::ShiftModifier, Qt::Key_F1), u"Umschalt+F1"_s},
      {0x4000 + 46, QKeyCombination(Qt::ControlModifier, Qt::Key_Delete), u"Strg+Entf"_s},
      {0xE000 + 'A', QKeyCombination(Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier, Qt::Key_A),
       u"Strg+Alt+Umschalt+A"_s},
  };
  for (const Case& given : cases) {
    SCOPED_TRACE(given.code);
    EXPECT_EQ(KeyFromShortcutCode(given.code), given.key);
    EXPECT_EQ(ShortcutCodeFromKey(given.key), given.code);
    EXPECT_EQ(KeyName(given.key), given.name);
  }
}

TEST(ShortcutCode, EveryKnownCodeComesBackTheSame) {
  for (int code = 1; code <= 0xFFFF; ++code) {
    const std::optional<QKeyCombination> key = KeyFromShortcutCode(code);
    if (key) {
      EXPECT_EQ(ShortcutCodeFromKey(*key), code);
    }
  }
}

TEST(ShortcutCode, RefusesWhatIsNoShortcut) {
  for (const int64_t code : {INT64_MIN, INT64_C(-1), INT64_C(0), INT64_C(1), INT64_C(0x100 + 13), INT64_C(0x10000 + 13),
                             INT64_C(0x2000), INT64_MAX}) {
    EXPECT_FALSE(KeyFromShortcutCode(code)) << code;
  }
  EXPECT_EQ(ShortcutCodeFromKey(Qt::Key_VolumeUp), 0);
  EXPECT_EQ(ShortcutCodeFromKey(Qt::Key_Shift), 0);
}

TEST(ShortcutCode, NumberBlockKeysWithoutACodeCountAsTheOthers) {
  EXPECT_EQ(ShortcutCodeFromKey(QKeyCombination(Qt::KeypadModifier, Qt::Key_Enter)), 13);
  EXPECT_EQ(ShortcutCodeFromKey(QKeyCombination(Qt::KeypadModifier, Qt::Key_Home)), 36);
}

}  // namespace
}  // namespace tessaro
