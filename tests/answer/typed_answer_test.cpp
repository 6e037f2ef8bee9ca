#include "answer/typed_answer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "platform/code_page.h"

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
}

// The steps one by one, over whole copies of the texts.
TypedCheck CheckedByHand(const std::string& text, size_t cursor, const std::string& key, size_t blanks) {
  size_t count = 0;
  while (count < text.size() && text[text.size() - 1 - count] == ' ') ++count;
  if (count >= blanks) return {.verdict = TypedVerdict::ShowAnswer};
  const std::string delimiters = " ,;?!\r\n";
  size_t start = 0;
  for (size_t i = 0; i < cursor; ++i) {
    if (delimiters.find(text[i]) != std::string::npos) start = i + 1;
  }
  std::string word = text.substr(start).substr(0, 100);
  word = word.substr(0, word.find_first_of(delimiters));
  if (key.find(word) != std::string::npos) return {};
  std::string big_key = key;
  for (char& c : big_key) c = ToUpper(c);
  for (char& c : word) c = ToUpper(c);
  if (big_key.find(word) != std::string::npos) return {.verdict = TypedVerdict::OtherCase};
  return {.verdict = TypedVerdict::Wrong, .select = cursor > 0 ? std::optional(cursor - 1) : std::nullopt};
}

TEST(TypedAnswer, RandomTextsAreCheckedAsByHand) {
  std::mt19937 random(7);
  const std::string letters("aAbBäÄ ,;?!.\n"_cp);
  const auto text = [&](size_t most) {
    std::string made(random() % (most + 1), ' ');
    for (char& c : made) c = letters[random() % letters.size()];
    return made;
  };
  std::array<int, 4> seen{};
  for (int i = 0; i < 20000; ++i) {
    const std::string typed = text(12);
    const std::string key = text(30);
    const size_t cursor = random() % (typed.size() + 1);
    const size_t blanks = 2 + random() % 2;
    const TypedCheck check = CheckTyped(typed, cursor, key, blanks);
    const TypedCheck by_hand = CheckedByHand(typed, cursor, key, blanks);
    ASSERT_EQ(check.verdict, by_hand.verdict) << typed << '|' << key << '|' << cursor;
    ASSERT_EQ(check.select, by_hand.select) << typed << '|' << key << '|' << cursor;
    ++seen[static_cast<size_t>(check.verdict)];
  }
  EXPECT_GT(*std::min_element(seen.begin(), seen.end()), 50) << "every verdict is met often";
}

// What differs in brackets.
std::string Dump(const std::vector<ComparedPiece>& pieces) {
  std::string text;
  for (const ComparedPiece& piece : pieces) text += piece.same ? piece.text : '[' + piece.text + ']';
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
    for (const ComparedPiece& piece : pieces) whole += piece.same || !same_only ? piece.text : "";
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
