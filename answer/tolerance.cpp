#include "answer/tolerance.h"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>

namespace tessaro {
namespace {

// The letter without its accents, where it is made of both. Of the Cyrillic letters that is "ё", which is often written
// so; "й" and others are letters like any.
char WithoutAccents(char c, CodePage page) {
  const char16_t character = page.CharacterOf(c);
  if (page.set() == CharacterSet::Cyrillic && character != u'ё' && character != u'Ё') return c;
  UErrorCode error = U_ZERO_ERROR;
  const UNormalizer2* decomposing = unorm2_getNFDInstance(&error);
  constexpr int32_t kMost = 8;
  std::array<UChar, kMost> parts = {};
  const int32_t count = unorm2_getDecomposition(decomposing, character, parts.data(), kMost, &error);
  if (U_FAILURE(error) != 0 || count <= 0) return c;
  return page.ByteOf(parts[0]).value_or(c);
}

bool IsOfKind(char c, CodePage page, uint32_t kinds) {
  return (U_GET_GC_MASK(page.CharacterOf(c)) & kinds) != 0;
}

}  // namespace

LetterFolding::LetterFolding(const Tolerance& tolerance, CodePage page) {
  for (size_t i = 0; i < folded_.size(); ++i) {
    char letter = static_cast<char>(i);
    if (tolerance.punctuation && IsOfKind(letter, page, U_GC_P_MASK)) continue;
    if (tolerance.accents && IsOfKind(letter, page, U_GC_MN_MASK)) continue;
    // Some letters with accents have no large form, others get an accent by it: both come before and behind.
    if (tolerance.letter_case) letter = page.ToUpper(letter);
    if (tolerance.accents) letter = WithoutAccents(letter, page);
    folded_[i] = tolerance.letter_case ? page.ToUpper(letter) : letter;
  }
}

std::vector<bool> PairedBrackets(std::string_view text) {
  std::vector<bool> paired(text.size(), false);
  std::vector<size_t> open;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '(') open.push_back(i);
    if (text[i] != ')' || open.empty()) continue;
    paired[open.back()] = paired[i] = true;
    open.pop_back();
  }
  return paired;
}

}  // namespace tessaro
