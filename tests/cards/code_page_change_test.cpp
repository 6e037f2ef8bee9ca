#include "cards/code_page_change.h"

#include "cards/card_reader.h"
#include "tests/support/clock_and_chance.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

const SideCodePages kCyrillicBack = {CodePage(), CodePage(CharacterSet::Cyrillic)};

std::string Sides(const CardFile& file) {
  std::string text;
  for (int row = kFirstCardRow; row <= CardReader(file).LastCardRow(); ++row)
    text.append(CardReader(file).Question(row)).append("|").append(CardReader(file).Answer(row)).append("\n");
  return text;
}

struct CodePageChange : testing::Test {
  void Open(const std::vector<TestCard>& cards) { OpenTestFile(disk, file, cards); }
  MemoryDisk disk;
  FixedClock clock;
  CardFile file{disk, clock};
};

TEST(ConvertedSide, TextIsConvertedAndTagsKeepTheirBytes) {
  const CodePage western;
  const CodePage cyrillic(CharacterSet::Cyrillic);
  // The Euro sign is 0x80 in the one and 0x88 in the other.
  EXPECT_EQ(ConvertedSide("\x80 <img src=\"\x80\xFC.bmp\"> <a href=\"3\">\x80</a> 1 < 2 \x80", western, cyrillic),
            "\x88 <img src=\"\x80\xFC.bmp\"> <a href=\"3\">\x88</a> 1 < 2 \x88");
  EXPECT_EQ(ConvertedSide("<b>\xFC</b>", western, cyrillic), std::nullopt);
  EXPECT_EQ(LackingOnSide("\xFC<\xE4>\xF6\xFC", western, cyrillic), u"üö");
}

TEST_F(CodePageChange, WhatTheNewSetLacksIsListedAndNothingIsDone) {
  Open({{.question = "\xFC", .answer = "\x80"}, {.id = "000002", .answer = "\xE4\xE4\xDF"}, {.id = "000003"}});
  const std::string before = Sides(file);
  const LackingText lacking = FindLacking(file, kCyrillicBack);
  ASSERT_EQ(lacking.sides, 1) << "the front stays as it is";
  EXPECT_TRUE(lacking.listed[0].row == 3 && lacking.listed[0].side == SideName::Back);
  EXPECT_EQ(lacking.listed[0].characters, u"äß");
  EXPECT_EQ(ConvertTexts(file, kCyrillicBack), ConversionEnd::Lacking);
  EXPECT_EQ(Sides(file), before);
  EXPECT_TRUE(ReadCodePages(file.settings()).western() && !file.changed());
  Open({{.question = "\xFC", .answer = "abc<\x80>"}});
  EXPECT_TRUE(FindLacking(file, kCyrillicBack).alike && !lacking.alike) << "tags keep their bytes";
}

TEST_F(CodePageChange, SidesThatChangeAreShownOrElseTheFirst) {
  const auto shown = [&](const std::vector<TestCard>& cards, const SideCodePages& to, size_t most) {
    Open(cards);
    std::string text = " ";
    for (const auto& [row, side] : SidesToShow(file, to, most))
      text += std::to_string(row) + (side == SideName::Front ? 'v' : 'h');
    return text;
  };
  const SideCodePages both = {CodePage(CharacterSet::Greek), CodePage(CharacterSet::Cyrillic)};
  const std::vector<TestCard> cards = {{.question = "\xFC"}, {.answer = "<\xFC>a"}, {.answer = "\x7F\x80"}};
  EXPECT_EQ(shown(cards, kCyrillicBack, 9) + shown(cards, both, 9) + shown(cards, both, 1), " 4h 2v4h 2v");
  EXPECT_EQ(shown({{}, {}}, kCyrillicBack, 9) + shown({{}, {}}, both, 3), " 2h3h 2v2h3v");
  std::vector<TestCard> many(5000);
  many.push_back(cards[2]);
  EXPECT_EQ(shown(many, kCyrillicBack, 1) + shown({++many.begin(), many.end()}, kCyrillicBack, 1), " 2h 5001h");
}

TEST_F(CodePageChange, EndedEarlyNothingIsDone) {
  Open(std::vector<TestCard>(3000, TestCard{.answer = "\x80"}));
  const auto never = [](int /*row*/) { return false; };
  EXPECT_TRUE(FindLacking(file, kCyrillicBack, never).cancelled);
  EXPECT_EQ(ConvertTexts(file, kCyrillicBack, never), ConversionEnd::Cancelled);
  EXPECT_FALSE(file.changed());
}

// Wherever the power fails, texts and code pages fit together when the card file is opened again.
TEST_F(CodePageChange, CardsAndSettingsFitTogetherAfterACrashAtAnyMoment) {
  int converted = 0;
  int kept = 0;
  for (int failing = 1; failing < 200; ++failing) {
    MemoryDisk drive;
    bool over = false;
    {
      CardFile dying(drive, clock);
      OpenTestFile(drive, dying, {{.question = "\xFC", .answer = "\x80 <b>"}, {.id = "000002", .answer = "\x93"}});
      drive.FailAt(failing, MemoryDisk::WriteFault::Half, true);
      if (ConvertTexts(dying, kCyrillicBack) == ConversionEnd::Done) {
        dying.journal().Flush();
        if (dying.Save() == SaveResult::Saved) ForgetConversion(dying);
      }
      over = drive.operations() < failing;
      drive.FailAt(0);
      // The program is gone without closing its file.
      drive.LoseUnflushed();
    }
    CardFile again(drive, clock);
    const OpenReport report = again.Open(kTestFile);
    ASSERT_EQ(report.result, OpenResult::Opened) << failing;
    ASSERT_TRUE(!report.unsaved || again.TakeOverUnsaved()) << failing;
    FinishConversion(again);
    const bool now = ReadCodePages(again.settings()) == kCyrillicBack;
    EXPECT_EQ(Sides(again), now ? "\xFC|\x88 <b>\nFrage|\x93\n" : "\xFC|\x80 <b>\nFrage|\x93\n") << failing;
    EXPECT_EQ(ReadPendingConversion(again.settings()), std::nullopt);
    ++(now ? converted : kept);
    if (over) break;
  }
  EXPECT_TRUE(converted > 1 && kept > 1);
}

TEST_F(CodePageChange, WhoDoesNotSaveTheCardsKeepsTheirCodePages) {
  Open({{.answer = "\x80"}});
  ASSERT_EQ(ConvertTexts(file, kCyrillicBack), ConversionEnd::Done);
  ASSERT_TRUE(file.SaveSettings());
  EXPECT_EQ(Sides(file), "Frage|\x88\n");
  file.Close();
  ASSERT_EQ(file.Open(kTestFile).result, OpenResult::Opened);
  FinishConversion(file);
  EXPECT_EQ(Sides(file), "Frage|\x80\n");
  EXPECT_TRUE(ReadCodePages(file.settings()).western());
  // A side that comes to read as the other is.
  Open({{.question = "\x80", .answer = "\x88"}});
  ASSERT_EQ(ConvertTexts(file, {kCyrillicBack.back, CodePage()}), ConversionEnd::Done);
  EXPECT_EQ(Sides(file), "\x88|\x88\n");
}

}  // namespace
}  // namespace tessaro
