#include "learn/side_look.h"

#include <gtest/gtest.h>

#include <string>

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

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
