#include <gtest/gtest.h>

#include <string>

#include "learn/shortcut_code.h"
#include "store/file/ini_file.h"
#include "widgets/side_look.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

TEST(ShortcutCode, MapsStoredNumbersToKeysAndBack) {
  const struct {
    int code;
    QKeyCombination key;
    QString name;
  } cases[] = {
      {8, Qt::Key_Backspace, u"Rücktaste"_s},
      {13, Qt::Key_Return, u"Enter"_s},
      {46, Qt::Key_Delete, u"Entf"_s},
      {135, Qt::Key_F24, u"F24"_s},
      {105, QKeyCombination(Qt::KeypadModifier, Qt::Key_9), u"Num 9"_s},
      {187, Qt::Key_Plus, u"+"_s},
      {192, Qt::Key_Odiaeresis, u"Ö"_s},
      {0x2000 + 112, QKeyCombination(Qt::ShiftModifier, Qt::Key_F1), u"Umschalt+F1"_s},
      {0x4000 + 46, QKeyCombination(Qt::ControlModifier, Qt::Key_Delete), u"Strg+Entf"_s},
      {0xE000 + 'A', QKeyCombination(Qt::ControlModifier | Qt::AltModifier | Qt::ShiftModifier, Qt::Key_A),
       u"Strg+Alt+Umschalt+A"_s},
  };
  for (const auto& given : cases) {
    SCOPED_TRACE(given.code);
    EXPECT_EQ(KeyFromShortcutCode(given.code), given.key);
    EXPECT_EQ(ShortcutCodeFromKey(given.key), given.code);
    EXPECT_EQ(KeyName(given.key), given.name);
  }
}

TEST(ShortcutCode, RefusesWhatIsNoShortcut) {
  for (const int64_t code : {INT64_MIN, INT64_C(-1), INT64_C(0), INT64_C(1), INT64_C(0x100 + 13), INT64_C(0x10000 + 13),
                             INT64_C(0x2000), INT64_MAX}) {
    EXPECT_FALSE(KeyFromShortcutCode(code)) << code;
  }
  const std::pair<QKeyCombination, int> keys[] = {
      {Qt::Key_VolumeUp, 0},
      {Qt::Key_Shift, 0},
      {QKeyCombination(Qt::KeypadModifier, Qt::Key_Enter), 13},  // of the number block, without a code of its own
  };
  for (const auto& [key, code] : keys) EXPECT_EQ(ShortcutCodeFromKey(key), code);
}

IniFile Settings(const std::string& text) {
  IniFile settings;
  settings.Parse(text);
  return settings;
}

TEST(SideLook, FontSizeIsReadAndBounded) {
  const std::pair<const char*, int> cases[] = {
      {"", 14},
      {"Size=1", 1},
      {"Size=4000", 400},
      {"Size=0\nHeight=-16", 12},
      {"Size=-3\nHeight=32", 24},
      {"Height=-9223372036854775808", 400},
      {"Size=gross", 14},
  };
  for (const auto& [text, points] : cases) {
    const SideLook look = ReadSideLook(Settings(std::string("[FontV]\n") + text), SideName::Front);
    EXPECT_EQ(look.font.pointSize(), points) << text;
  }
}

TEST(SideLook, FrontAndBackHaveTheirOwnFontsAndColours) {
  const IniFile settings = Settings(
      "[FontV]\nName=Courier\nColor=255\nPitch=2\n[FontH]\nName=\n[ColorV]\nColor=16777164\n[ColorH]\nColor=-16777211\n"
      "[ClText]\nH=32768\n");
  const SideLook front = ReadSideLook(settings, SideName::Front);
  EXPECT_EQ(front.font.family(), u"Courier"_s);
  EXPECT_TRUE(front.font.fixedPitch());
  EXPECT_EQ(front.text, QColor(255, 0, 0));
  EXPECT_EQ(front.paper, QColor(0xCC, 0xFF, 0xFF));
  const SideLook back = ReadSideLook(settings, SideName::Back);
  EXPECT_EQ(back.font.family(), u"MS Sans Serif"_s);
  EXPECT_EQ(back.text, QColor(0, 128, 0));
  EXPECT_GT(back.paper.lightness(), 230) << "a system colour gives the near-white default";
}

}  // namespace
}  // namespace tessaro
