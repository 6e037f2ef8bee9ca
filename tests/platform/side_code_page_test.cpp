#include "platform/side_code_page.h"

#include <gtest/gtest.h>

#include "platform/utf8.h"

namespace tessaro {
namespace {

TEST(SideCodePage, HasTheCharactersAndTheCaseOfItsLanguages) {
  using Bytes = std::string_view;
  const std::tuple<CharacterSet, Bytes, std::u16string_view, Bytes, Bytes> samples[] = {
      {CharacterSet::Western, "\xE4\xDF\x80i\xFF", u"äß€iÿ", "\xC4\xDF\x80I\x9F", "\xE4\xDF\x80i\xFF"},
      {CharacterSet::CentralEuropean, "\xA3\xF3\x9F", u"Łóź", "\xA3\xD3\x8F", "\xB3\xF3\x9F"},
      {CharacterSet::Cyrillic, "\xC6\xE6\xB8\xBF", u"Жжёї", "\xC6\xC6\xA8\xAF", "\xE6\xE6\xB8\xBF"},
      {CharacterSet::Greek, "\xD3\xF3\xF2\xDC", u"Σσςά", "\xD3\xD3\xD3\xA2", "\xF3\xF3\xF3\xDC"},
      {CharacterSet::Turkish, "iI\xDD\xFD\xFE", u"iIİış", "\xDDI\xDDI\xDE", "i\xFDi\xFD\xFE"},
      {CharacterSet::Baltic, "\xF0\xE0", u"šą", "\xD0\xC0", "\xF0\xE0"},
      {CharacterSet::Hebrew, "\xF9\xECx", u"שלx", "\xF9\xECX", "\xF9\xECx"},
      {CharacterSet::Arabic, "\xC7\xD3\x81", u"اسپ", "\xC7\xD3\x81", "\xC7\xD3\x81"},
      {CharacterSet::Thai, "\xA1\xD2", u"กา", "\xA1\xD2", "\xA1\xD2"},
  };
  for (const auto& [set, bytes, characters, all_upper, all_folded] : samples) {
    const CodePage page(set);
    EXPECT_EQ(page.Characters(bytes), characters) << bytes;
    std::string upper;
    std::string folded;
    for (const char c : bytes) {
      upper += page.ToUpper(c);
      folded += page.Folded(c);
      EXPECT_TRUE(c == '\x80' || page.IsLetter(c)) << bytes;
    }
    EXPECT_EQ(upper, all_upper) << bytes;
    EXPECT_EQ(folded, all_folded) << bytes;
  }
}

TEST(SideCodePage, EveryByteComesBackFromItsCharacter) {
  for (size_t set = 0; set < kCharacterSets; ++set) {
    const CodePage page(static_cast<CharacterSet>(set));
    for (int i = 0; i < 256; ++i) {
      const auto byte = static_cast<char>(i);
      EXPECT_EQ(page.ByteOf(page.CharacterOf(byte)), byte) << set << " " << i;
      EXPECT_EQ(page.Folded(page.ToUpper(byte)), page.Folded(byte)) << set << " " << i;
      EXPECT_TRUE(i >= 0x80 || page.CharacterOf(byte) == i) << set << " " << i;
    }
    EXPECT_EQ(page.ByteOf(U'中'), std::nullopt);
    EXPECT_EQ(page.ByteOf(0x1F600), std::nullopt);
  }
}

TEST(SideCodePage, ConvertsAllOrNothingAndNamesWhatIsLacking) {
  const CodePage western;
  const CodePage cyrillic(CharacterSet::Cyrillic);
  EXPECT_EQ(Converted("\x84 ab\xA9", western, cyrillic), "\x84 ab\xA9");
  EXPECT_EQ(Converted("\xCF\xF3\x99", cyrillic, CodePage(CharacterSet::Western)), std::nullopt);
  EXPECT_EQ(Lacking("\xE4\x80\xE4 x \xF6", western, cyrillic), u"äö") << "the Euro sign stands elsewhere there";
  EXPECT_EQ(Converted("\x80", western, cyrillic), "\x88");
  EXPECT_EQ(Utf8FromCodePage("\xCC\xE8\xF0", cyrillic), "Мир");
}

}  // namespace
}  // namespace tessaro
