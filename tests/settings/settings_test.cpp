#include <gtest/gtest.h>

#include "settings/box_limits.h"
#include "settings/decimal_text.h"
#include "settings/kept_place.h"
#include "settings/keys.h"
#include "settings/program_settings.h"
#include "settings/recent_files.h"
#include "settings/side_settings.h"
#include "tests/support/memory_disk.h"

namespace tessaro {
namespace {

IniFile Parsed(std::string_view text) {
  IniFile settings;
  settings.Parse(text);
  return settings;
}

TEST(Settings, MissingValuesGiveTheStandardAndWildOnesTheNearestBound) {
  const IniFile empty;
  EXPECT_TRUE(keys::kShowFigures.Read(empty) && keys::kErrorLimit.Read(empty) == 5.0);
  EXPECT_EQ(keys::kMediaFolder.Read(empty), "Medien");
  const IniFile wild = Parsed(
      "[SEL]\ni=7\n[ttrain]\nFehler=-3,5\nAnschlaege=99999999999999999999\nProzent=abc\n[SHOW]\nFigures=-4\nStat=x\n");
  EXPECT_EQ(keys::kChoicePage.Read(wild), 1);
  EXPECT_EQ(keys::kErrorLimit.Read(wild), 0.0);
  EXPECT_EQ(keys::kSpeedLimit.Read(wild), keys::kSpeedLimit.most);
  EXPECT_EQ(keys::kSpeedPercent.Read(wild), 100) << "no number at all";
  EXPECT_TRUE(keys::kShowFigures.Read(wild) && !keys::kShowStatistics.Read(wild));
}

TEST(Settings, DecimalsAreReadWithEitherSignAndWrittenSoThatTheyReadTheSame) {
  const std::pair<const char*, std::optional<double>> cases[] = {
      {"2.5", 2.5}, {"2,5", 2.5}, {" +7", 7.0}, {"0,1 %", 0.1}, {"", {}}, {"ab", {}}, {"inf", {}}, {"nan", {}}};
  for (const auto& [text, number] : cases) EXPECT_EQ(LeadingDecimal(text), number) << text;
  for (const double number : {0.0, 0.1, 1.0 / 3, 12.5, 100.0, 1e-7}) {
    IniFile settings;
    keys::kErrorLimit.Write(number, settings);
    EXPECT_EQ(keys::kErrorLimit.Read(settings), number);
  }
}

TEST(Settings, LookOfASideComesBackAndLeavesTheOtherSideAlone) {
  const std::pair<const char*, int64_t> sizes[] = {
      {"", 14},
      {"Size=1", 1},
      {"Size=4000", 400},
      {"Size=0\nHeight=-16", 12},
      {"Size=-3\nHeight=32", 24},
      {"Height=-9223372036854775808", 400},
      {"Size=gross", 14},
  };
  for (const auto& [text, points] : sizes)
    EXPECT_EQ(ReadSideSettings(Parsed(std::string("[FontV]\n") + text), SideName::Front).points, points) << text;
  IniFile settings = Parsed("[FontV]\nCharset=1\nHeight=-13\nColor=-5\n[ClText]\nH=255\n");
  SideSettings front = ReadSideSettings(settings, SideName::Front);
  EXPECT_EQ(front, (SideSettings{.points = 9})) << "a colour of another system is none";
  EXPECT_EQ(ReadSideSettings(settings, SideName::Back).text, 255);

  front = {.font = "DejaVu Serif", .points = 31, .fixed_pitch = true, .text = 0x102030, .paper = 0xFFFFFF};
  WriteSideSettings(front, SideName::Front, settings);
  EXPECT_EQ(ReadSideSettings(settings, SideName::Front), front);
  EXPECT_EQ(ReadSideSettings(settings, SideName::Back).text, 255);

  RemoveSideSettings(SideName::Front, settings);
  EXPECT_EQ(settings.Text(), "[FontV]\nCharset=1\n[ClText]\nH=255\n\n[ColorV]\n") << "a foreign key stays";
}

TEST(Settings, PlacesAreKeptWithTheSuffixOfTheirWindow) {
  IniFile settings;
  EXPECT_FALSE(HasPlace(settings, "W"));
  WritePlace({.x = -4, .y = 5, .width = 600, .height = 154}, "W", settings);
  EXPECT_TRUE(HasPlace(settings, "W"));
  EXPECT_EQ(settings.GetInt("POS", "cyW", 0), 154);
  EXPECT_FALSE(settings.Has("POS", "maxW")) << "never maximised";
  EXPECT_EQ(ReadPlace(settings, "W", {}).x, -4);
  EXPECT_EQ(ReadPlace(settings, "V", {.x = 3, .y = 628, .width = 573, .height = 126}).y, 628);
  settings.SetInt("POS", "xW", INT64_MIN);
  EXPECT_EQ(ReadPlace(settings, "W", {}).x, -100000);
}

TEST(Settings, TwoProgramsWriteOneFileEachItsOwnKeys) {
  MemoryDisk disk;
  disk.Put("/t.ini", "[SHOW]\nStat=0\nAlign=0\n[RECENT]\n1=/a\n");
  ProgramSettings one;
  ProgramSettings other;
  for (ProgramSettings* settings : {&one, &other}) {
    settings->path = "/t.ini";
    ASSERT_TRUE(settings->ini.Load(disk, settings->path));
  }
  keys::kShowStatistics.Write(true, one.ini);
  AddRecentFile(one.ini, "/b");
  ASSERT_TRUE(one.Save(disk));
  keys::kBarBelow.Write(true, other.ini);
  ASSERT_TRUE(other.Save(disk));
  EXPECT_EQ(disk.Content("/t.ini"), "[SHOW]\nStat=1\nAlign=1\n[RECENT]\n1=/b\n2=/a\n");
  EXPECT_TRUE(keys::kShowStatistics.Read(other.ini)) << "and reads those of the other";
  // Its own answer of before is no change any more.
  keys::kShowStatistics.Write(false, other.ini);
  ASSERT_TRUE(other.Save(disk) && one.Save(disk));
  EXPECT_NE(disk.Content("/t.ini")->find("Stat=0"), std::string::npos);
  // What could not be written is written the next time; a file that is gone comes back whole.
  disk.FailAt(1, MemoryDisk::WriteFault::Nothing, true);
  AddRecentFile(one.ini, "/c");
  EXPECT_FALSE(one.Save(disk));
  disk.FailAt(0);
  ASSERT_TRUE(disk.Remove("/t.ini") && one.Save(disk));
  EXPECT_NE(disk.Content("/t.ini")->find("Stat"), std::string::npos);
  EXPECT_EQ(RecentFiles(one.ini).front(), "/c");
  EXPECT_EQ(disk.FileNames("/").size(), 1U) << "no lock is left";
}

TEST(Settings, RecentFilesAreEightEachOnce) {
  IniFile settings;
  for (const char* file : {"/1", "/2", "/3", "/4", "/5", "/6", "/7", "/8", "/9", "/3"}) AddRecentFile(settings, file);
  EXPECT_EQ(settings.Text(), "[RECENT]\n1=/3\n2=/9\n3=/8\n4=/7\n5=/6\n6=/5\n7=/4\n8=/2\n");
  RemoveRecentFile(settings, "/9");
  EXPECT_EQ(settings.Text(), "[RECENT]\n1=/3\n2=/8\n3=/7\n4=/6\n5=/5\n6=/4\n7=/2\n");
}

TEST(Settings, LimitsOfBoxesAreCutToTheirFields) {
  const BoxLimits limits = ReadBoxLimits(Parsed("[Leitner]\nFach1=1000\nFach2=-1\nFach5=99999\n"));
  EXPECT_EQ(limits.cards, (std::array<int64_t, kLimitedBoxes>{999, 0, 100, 250, 99999}));
}

TEST(CharacterSets, AreThoseOfTheFonts) {
  constexpr std::pair<int, CharacterSet> kNumbers[] = {
      {0, CharacterSet::Western},  {238, CharacterSet::CentralEuropean}, {204, CharacterSet::Cyrillic},
      {161, CharacterSet::Greek},  {162, CharacterSet::Turkish},         {186, CharacterSet::Baltic},
      {177, CharacterSet::Hebrew}, {178, CharacterSet::Arabic},          {222, CharacterSet::Thai},
      {1, CharacterSet::Western},  {255, CharacterSet::Western},         {-1, CharacterSet::Western},
  };
  for (const auto& [number, set] : kNumbers) {
    const std::string text = "[FontV]\nCharset=" + std::to_string(number) + "\n[FontH]\nCharset=204\n";
    IniFile settings = Parsed(text);
    EXPECT_EQ(ReadCharacterSet(settings, SideName::Front), set) << number;
    WriteCharacterSet(set, SideName::Front, settings);
    EXPECT_EQ(settings.Text(), text) << "what means the same stays";
    EXPECT_EQ(ReadCodePages(settings), (SideCodePages{CodePage(set), CodePage(CharacterSet::Cyrillic)}));
  }
  IniFile settings;
  WriteCharacterSet(CharacterSet::Greek, SideName::Back, settings);
  EXPECT_EQ(settings.GetInt("FontH", "Charset", 0), 161);
}

}  // namespace
}  // namespace tessaro
