#include "store/code_page.h"

#include <gtest/gtest.h>

namespace tessaro {
namespace {

static_assert("Menü"_cp == "Men\xFC");
static_assert("–€…„“ŸŽž"_cp == "\x96\x80\x85\x84\x93\x9F\x8E\x9E");
static_assert(""_cp.empty());

TEST(CodePage, ChangesCaseOfAllLettersAndNothingElse) {
  EXPECT_EQ(ToUpper("azäöüÿšœžþß÷µƒ[1]"_cp), "AZÄÖÜŸŠŒŽÞß÷µƒ[1]"_cp);
  for (int i = 0; i < 256; ++i) {
    const char c = static_cast<char>(i);
    EXPECT_EQ(ToUpper(ToUpper(c)), ToUpper(c)) << i;
    if (ToLower(c) != c) {
      EXPECT_EQ(ToUpper(ToLower(c)), c) << i;
    }
  }
}

TEST(CodePage, TellsLetters) {
  for (const char c : "AzÄßÿŸŠœƒªµº"_cp) EXPECT_TRUE(IsLetter(c)) << static_cast<int>(c);
  for (const char c : "@[`{0 ×÷«…€²"_cp) EXPECT_FALSE(IsLetter(c)) << static_cast<int>(c);
}

}  // namespace
}  // namespace tessaro
