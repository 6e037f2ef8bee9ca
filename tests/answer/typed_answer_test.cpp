#include "answer/typed_answer.h"

#include <gtest/gtest.h>

#include <random>

namespace tessaro {
namespace {

constexpr size_t kTwoBlanks = 2;

TEST(TypedAnswer, WordAtTheCursorMustStandInTheKey) {
  using V = TypedVerdict;
  const std::string hundred(100, 'x');
  const struct {
    std::string text;
    size_t cursor;
    std::string key;
    V verdict;
    std::optional<size_t> select = {};
  } cases[] = {
      {"Ha", 2, "Das Haus", V::Right},
      {"ha", 2, "Das Haus", V::OtherCase},
      {"Hx", 2, "Das Haus", V::Wrong, 1},
      {"Hx ", 3, "Das Haus", V::Right},  // a new word, still empty
      {"Hx a", 4, "Das Haus", V::Right},
      {"Hx Haus", 1, "Das Haus", V::Wrong, 0},
      {"xHaus", 0, "Das Haus", V::Wrong},  // nothing stands before the cursor
      {"Hauptsatz", 4, "Das Haus", V::Wrong, 3},
      {"Das,Haus?", 9, "Das Haus", V::Right},
      {"z.B.", 4, "also z.B. dies", V::Right},
      {"z.C.", 4, "also z.B. dies", V::Wrong, 3},
      {"b>", 2, "<b>fett</b>", V::Right},  // the key is looked at as it stands
      {std::string("GRÖSSE"_cp), 6, std::string("größe"_cp), V::Wrong, 5},
      {std::string("ÄÖÜ"_cp), 3, std::string("äöü"_cp), V::OtherCase},
      {"Haus ", 5, "Haus", V::Right},
      {"Haus  ", 6, "Haus", V::ShowAnswer},
      {"  ", 2, "Haus", V::ShowAnswer},
      {"", 0, "", V::Right},
      {hundred + "y", 3, hundred, V::Right},  // a word is looked at for 100 characters
      {"Ha", 999, "Haus", V::Right},
      {std::string(195, ',') + "Hausx", 200, "Haus", V::Right},  // longer texts end after 198 characters
  };
  for (const auto& given : cases) {
    const TypedCheck check = CheckTyped(given.text, given.cursor, given.key, kTwoBlanks);
    EXPECT_EQ(check.verdict, given.verdict) << given.text;
    EXPECT_EQ(check.select, given.select) << given.text;
  }
  EXPECT_EQ(CheckTyped("Haus   ", 7, "Haus", 4).verdict, V::Right);
  // Cyrillic letters, which are other ones of 1252.
  EXPECT_EQ(CheckTyped("\xA8\xCB", 2, "\xB8\xEB\xEA\xE0", 4, CodePage(CharacterSet::Cyrillic)).verdict, V::OtherCase);
}

TEST(TypedAnswer, WhatIsAllowedIsRight) {
  using V = TypedVerdict;
  const Tolerance any_case = {.letter_case = true};
  const Tolerance accents = {.accents = true};
  const Tolerance punctuation = {.punctuation = true};
  const Tolerance brackets = {.brackets = true};
  const struct {
    std::string_view word;
    std::string_view key;
    Tolerance tolerance;
    V verdict;
  } cases[] = {
      {"haus", "Das Haus", any_case, V::Right},
      {"schoner", "sch\xF6ner", accents, V::Right},
      {"\xE9t\xE9", "l'ete", accents, V::Right},
      {"SCHON", "sch\xF6n", accents, V::OtherCase},
      {"strase",
       "stra\xDF"
       "e",
       accents, V::Wrong},  // no accent, a letter of its own
      {"zB", "also z.B. dies", punctuation, V::Right},
      {"Don\x92t", "Don't", punctuation, V::Right},
      {"rotgelb", "rot,gelb", punctuation, V::Wrong},  // what parts words is not passed over
      {"2+3", "23", punctuation, V::Wrong},            // a sign, no punctuation
      {"Kollegen", "die Kolleg(inn)en", brackets, V::Right},
      {"Kolleginnen", "die Kolleg(inn)en", brackets, V::Right},
      {"Kolleg(inn)en", "die Kolleg(inn)en", brackets, V::Right},
      {"Kollegnen", "die Kolleg(inn)en", brackets, V::Wrong},
      {"Kollegen", "die Kolleg(inn)en", {}, V::Wrong},
      {"Lehrerinnen", "Lehrer(in(nen))", brackets, V::Right},
      {"ab", "a)b(", brackets, V::Wrong},  // no partners
      {"ab", "((a(c d)b", brackets, V::Right},
      {"(ab", "((a(c d)b", brackets, V::Right},
      {"a(b)", "ab", brackets, V::Wrong},  // the card has no brackets
  };
  const Tolerance both = {.letter_case = true, .accents = true};
  const CodePage turkish(CharacterSet::Turkish);
  EXPECT_EQ(CheckTyped("istanbul", 8, "\xDDstanbul", kTwoBlanks, turkish, any_case).verdict, V::Right);
  EXPECT_EQ(CheckTyped("istanbul", 8, "\xDDstanbul", kTwoBlanks, turkish, both).verdict, V::Right);
  EXPECT_EQ(CheckTyped("\xE9", 1, "\xC0", kTwoBlanks, CodePage(CharacterSet::Greek), both).verdict, V::Right);
  const CodePage cyrillic(CharacterSet::Cyrillic);
  EXPECT_EQ(CheckTyped("\xE5\xE6", 2, "\xB8\xE6", kTwoBlanks, cyrillic, accents).verdict, V::Right);
  EXPECT_EQ(CheckTyped("\xEC\xE8", 2, "\xEC\xE9", kTwoBlanks, cyrillic, accents).verdict, V::Wrong);
  EXPECT_EQ(CheckTyped("\xF9\xEC", 2, "\xF9\xC0\xEC", kTwoBlanks, CodePage(CharacterSet::Hebrew), accents).verdict,
            V::Right)
      << "without points";
  for (const auto& given : cases) {
    const TypedCheck check = CheckTyped(given.word, given.word.size(), given.key, kTwoBlanks, {}, given.tolerance);
    EXPECT_EQ(check.verdict, given.verdict) << given.word << '|' << given.key;
  }
}

using Likeness = ComparedPiece::Likeness;

// What differs in brackets, what may differ in braces.
std::string Dump(const std::vector<ComparedPiece>& pieces) {
  std::string text;
  for (const ComparedPiece& piece : pieces)
    text += piece.likeness == Likeness::Same        ? piece.text
            : piece.likeness == Likeness::Tolerated ? '{' + piece.text + '}'
                                                    : '[' + piece.text + ']';
  return text;
}

TEST(TypedAnswer, ComparisonMarksWhatDiffers) {
  const struct {
    const char* typed;
    const char* answer;
    const char* marked_typed;
    const char* marked_answer;
  } cases[] = {
      {"Das Haus", "Das Haus", "Das Haus", "Das Haus"},
      {"Das Hous", "Das Haus", "Das H[o]us", "Das H[a]us"},
      {"Das Pferd", "Das Haus", "Das [Pferd]", "Das [Haus]"},
      {"", "Haus", "", "[Haus]"},
      {"Haus", "", "[Haus]", ""},
      {"rot blau", "rot gelb blau", "rot blau", "rot [gelb ]blau"},
  };
  for (const auto& given : cases) {
    const TypedComparison compared = CompareTyped(given.typed, given.answer);
    EXPECT_EQ(Dump(compared.typed), given.marked_typed);
    EXPECT_EQ(Dump(compared.answer), given.marked_answer);
  }
  const Tolerance all = {.letter_case = true, .accents = true, .punctuation = true, .brackets = true};
  const struct {
    std::string_view typed;
    std::string_view answer;
    const char* marked_typed;
    std::string_view marked_answer;
    bool right;
  } tolerated[] = {
      {"das haus", "Das Haus!", "{d}as {h}aus", "{D}as {H}aus{!}", true},
      {"ete", "\xE9t\xE9", "{e}t{e}", "{\xE9}t{\xE9}", true},
      {"go", "(to) go", "go", "{(to) }go", true},
      {"to go", "(to) go", "to go", "{(}to{)} go", true},
      {"rot blau", "rot (hell) blau", "rot blau", "rot {(hell) }blau", true},
      {"das hous", "Das Haus", "{d}as {h}[o]us", "{D}as {H}[a]us", false},
      {"Haus", "Haus", "Haus", "Haus", false},  // there is nothing to tolerate
  };
  for (const auto& given : tolerated) {
    const TypedComparison compared = CompareTyped(given.typed, given.answer, {}, all);
    EXPECT_EQ(Dump(compared.typed), given.marked_typed);
    EXPECT_EQ(Dump(compared.answer), given.marked_answer);
    EXPECT_EQ(compared.IsTolerated(), given.right) << given.typed;
  }
  const TypedComparison longest = CompareTyped(std::string(500, 'a'), std::string(50000, 'a'));
  EXPECT_EQ(longest.typed.size() + longest.answer.size(), 2U);
  EXPECT_LE(longest.answer.front().text.size(), 1000U);
}

TEST(TypedAnswer, ComparisonLosesNothingAndItsCommonPiecesAgree) {
  std::mt19937 random(3);
  const auto text = [&] {
    std::string made(random() % 20, ' ');
    for (char& c : made) c = "ab "[random() % 3];
    return made;
  };
  const auto joined = [](const std::vector<ComparedPiece>& pieces, bool same_only) {
    std::string whole;
    for (const ComparedPiece& piece : pieces) whole += piece.likeness == Likeness::Same || !same_only ? piece.text : "";
    return whole;
  };
  for (int i = 0; i < 3000; ++i) {
    const std::string typed = text();
    const std::string answer = text();
    const TypedComparison compared = CompareTyped(typed, answer);
    ASSERT_EQ(joined(compared.typed, false), typed);
    ASSERT_EQ(joined(compared.answer, false), answer);
    ASSERT_EQ(joined(compared.typed, true), joined(compared.answer, true));
  }
}

}  // namespace
}  // namespace tessaro
