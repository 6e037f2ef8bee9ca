#include "hypertext/text_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tessaro {
namespace {

void Check(const std::vector<std::pair<std::string, std::string>>& cases) {
  for (const auto& [file, text] : cases) EXPECT_EQ(ReadableText(file), text) << file;
}

TEST(TextFile, PlainTextIsReadInTheEncodingItIsIn) {
  Check({
      {"gr\xFC\xDF \x80", "grüß €"},
      {"grüß €\r\n", "grüß €\r\n"},
      {"\xEF\xBB\xBFgrüß", "grüß"},
      {std::string("\xFF\xFE\xFC\x00\x3D\xD8\x00\xDE!", 9), "ü😀"},
      {std::string("\xFE\xFF\x00\xFC", 4), "ü"},
      {"ü\xC0\xAF", "Ã¼À¯"},  // an overlong form is no UTF-8
  });
}

// However a text is cut, what is left of it is still read in its encoding.
TEST(TextFile, ACutBeginningLosesTheLetterItWasCutIn) {
  const std::pair<std::string, size_t> cases[] = {{"abc", 3},
                                                  {"", 0},
                                                  {"gr\xC3", 2},
                                                  {"gr\xC3\xBC", 4},
                                                  {"\xE2\x82", 0},
                                                  {"x\xF0\x9F\x98", 1},
                                                  {"x\xF0\x9F\x98\x80", 5},
                                                  {"\xBC\xBC\xBC\xBC\xBC\xBC", 6},
                                                  {std::string("\xFF\xFE\xFC\0!", 5), 4}};
  for (const auto& [text, whole] : cases) EXPECT_EQ(WholeLetters(text).size(), whole) << text;
}

TEST(TextFile, RichTextIsReducedToItsLetters) {
  Check({
      {R"({\rtf1\ansi{\fonttbl{\f0\fswiss Arial;}}{\colortbl;\red0\green0\blue0;}\pard\f0\fs24 Guten \b Tag\b0 !\par
Zeile\line zwei\tab x\cell\row})",
       "Guten Tag!\nZeile\nzwei\tx\t\n"},
      {R"({\rtf1 gr\'fc\'DF \'80\~\{a\\b\}\_c\-d})", "grüß €\u00A0{a\\b}-cd"},
      {R"({\rtf1\uc1 \u937?\u-10179?\u-8704?x {\uc2\u228\'61\'65y}\u228?z})", "Ω😀x äyäz"},
      {R"({\rtf1{\*\generator Editor;}{\info{\title T}}{\pict\bin5 }}}}}x}y)", "y"},
      {R"({\rtf1\pict\bin999999999999 x)", ""},
      {"{\\rtf1 a\r\nb\\\r\nc\\", "ab\nc"},
      {R"({\rtf1 \'4\'zzx}}}} y)", "'zzx y"},
  });
}

}  // namespace
}  // namespace tessaro
