#include "exchange/foreign_text.h"

#include <gtest/gtest.h>

#include "platform/code_page.h"

namespace tessaro {
namespace {

using namespace std::literals;

TEST(ForeignText, EncodingIsRecognisedAndConverted) {
  const struct {
    std::string raw;
    Encoding encoding;
    std::string bytes;
    int replaced;
  } cases[] = {
      {"abc", Encoding::CodePage, "abc", 0},
      {"gr\xFC\xDF", Encoding::CodePage, "gr\xFC\xDF", 0},
      {"grüß €", Encoding::Utf8, "gr\xFC\xDF \x80", 0},
      {"\xEF\xBB\xBFgrün", Encoding::Utf8WithMark, "gr\xFCn", 0},
      {"\xEF\xBB\xBFgr\xFCn", Encoding::Utf8WithMark, "gr\xFCn", 0},
      {"\xFF\xFE"s + "g\0\xFC\0\x51\x01"s, Encoding::Utf16Little, "g\xFCo", 1},
      {"\xFE\xFF"s + "\0g\0\xFC\0\r\0\n"s, Encoding::Utf16Big, "g\xFC\n", 0},
      {"\xFF\xFE\x3D\xD8\x00\xDE\x3D"s, Encoding::Utf16Little, "??", 2},  // a pair and half a unit
      {"\xFF\xFE\x00\xDE\x61\x00"s, Encoding::Utf16Little, "?a", 1},      // half a pair
      {"a\xCC\x88 s\xCC\x88 \xCC\x88", Encoding::Utf8, "\xE4 s ", 2},     // accents of their own
      {"ő ﬁ → ☃\xE2\x80\x8B", Encoding::Utf8, "o fi -> ?", 5},
      {"ấ Ł", Encoding::Utf8, "a L", 2},
  };
  for (const auto& [raw, encoding, bytes, replaced] : cases) {
    const ForeignText text = ReadForeignText(raw);
    EXPECT_EQ(text.encoding, encoding) << raw;
    EXPECT_EQ(text.bytes, bytes) << raw;
    EXPECT_EQ(text.replaced, replaced) << raw;
  }
}

TEST(ForeignText, LineEndsBecomeLineFeedsAndZerosAreLeftOutAndCounted) {
  const ForeignText text = ReadForeignText("a\r\nb\rc\0\r\r\n\r\0\n"s);
  EXPECT_EQ(text.bytes, "a\nb\rc\r\n\r\n");
  EXPECT_EQ(text.zeros, 2);
}

TEST(ForeignText, ExamplesNameEachReplacementOnce) {
  const ForeignText text = ReadForeignText("ő ő ☃");
  ASSERT_EQ(text.examples.size(), 2U);
  EXPECT_EQ(text.examples[0].by, "o");
  EXPECT_EQ(text.examples[1].character, U'☃');
  EXPECT_EQ(text.replaced, 3);
}

}  // namespace
}  // namespace tessaro
