#include "answer/choice.h"

#include <algorithm>

#include "platform/code_page.h"

namespace tessaro {
namespace {

constexpr int kMostTokens = 18;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Choices are Latin letters, whatever language has others in their place.
char LargeLetter(char c, CodePage page) {
  return c >= 'a' && c <= 'z' ? ToUpper(c) : page.ToUpper(c);
}

// Cuts a key into tokens of one or two characters that belong to the page. All other characters part them, and of a
// longer run every third one begins a new token.
class TokenReader {
 public:
  TokenReader(std::string_view key, ChoicePage page, CodePage code_page)
      : key_(key), page_(page), code_page_(code_page) {}

  // Empty at the end of the key.
  std::string Next() {
    while (at_ < key_.size() && !IsKept(key_[at_])) ++at_;
    std::string token;
    while (at_ < key_.size() && token.size() < 2 && IsKept(key_[at_])) token += LargeLetter(key_[at_++], code_page_);
    return token;
  }

 private:
  bool IsKept(char c) const { return page_ == ChoicePage::Numbers ? IsDigit(c) : code_page_.IsLetter(c); }

  std::string_view key_;
  ChoicePage page_;
  CodePage code_page_;
  size_t at_ = 0;
};

std::optional<size_t> ChoiceOf(std::string_view token, ChoicePage page) {
  for (size_t i = 0; i < kChoices; ++i) {
    if (token == ChoiceName(page, i)) return i;
  }
  return std::nullopt;
}

}  // namespace

std::string ChoiceName(ChoicePage page, size_t choice) {
  return page == ChoicePage::Numbers ? std::to_string(choice) : std::string(1, static_cast<char>('A' + choice));
}

bool IsRightChoice(std::string_view key, ChoicePage page, size_t choice) {
  const std::string name = ChoiceName(page, choice);
  if (page == ChoicePage::Numbers) return key == name;
  return key.size() == 1 && (key[0] == name[0] || key[0] == ToLower(name[0]));
}

std::optional<Ticks> RightTicks(std::string_view key, ChoicePage page, CodePage code_page) {
  TokenReader tokens(key, page, code_page);
  Ticks ticks;
  for (int count = 0;; ++count) {
    const std::string token = tokens.Next();
    if (token.empty()) break;
    const std::optional<size_t> choice = ChoiceOf(token, page);
    // Behind the last token that counts only another choice does harm: it is named twice, or all of them are named.
    if (!choice && count >= kMostTokens) continue;
    if (!choice || ticks[*choice] || count >= kMostTokens) return std::nullopt;
    ticks.set(*choice);
  }
  return ticks.any() ? std::optional(ticks) : std::nullopt;
}

// Deliberate: the boxes alone are asked. A key that is one choice and nothing else is right for its box, too.
bool CanBeRight(std::string_view key, ChoicePage page, CodePage code_page) {
  return RightTicks(key, page, code_page).has_value();
}

std::optional<ChoicePage> PageOf(std::string_view key, CodePage code_page) {
  const bool numbers = CanBeRight(key, ChoicePage::Numbers, code_page);
  if (numbers == CanBeRight(key, ChoicePage::Letters, code_page)) return std::nullopt;
  return numbers ? ChoicePage::Numbers : ChoicePage::Letters;
}

bool IsBareKey(std::string_view text, CodePage code_page) {
  const bool letters = std::any_of(text.begin(), text.end(), [code_page](char c) { return code_page.IsLetter(c); });
  const bool digits = std::any_of(text.begin(), text.end(), IsDigit);
  return letters != digits && CanBeRight(text, letters ? ChoicePage::Letters : ChoicePage::Numbers, code_page);
}

}  // namespace tessaro
