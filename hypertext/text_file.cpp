#include "hypertext/text_file.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/utf8.h"

namespace tessaro {
namespace {

constexpr std::string_view kRichTextStart = "{\\rtf";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr int kMostNumber = 100000000;

// Groups that begin with one of these words hold no text of the document.
constexpr std::array<std::string_view, 22> kDestinations = {
    "colortbl",          "datastore", "filetbl", "fldinst", "fonttbl",    "footer",   "footerf", "footerl",
    "footerr",           "generator", "header",  "headerf", "headerl",    "headerr",  "info",    "listtable",
    "listoverridetable", "object",    "pict",    "revtbl",  "stylesheet", "themedata"};

constexpr std::array<std::pair<std::string_view, char32_t>, 14> kCharacterWords = {{{"par", '\n'},
                                                                                    {"line", '\n'},
                                                                                    {"page", '\n'},
                                                                                    {"sect", '\n'},
                                                                                    {"row", '\n'},
                                                                                    {"cell", '\t'},
                                                                                    {"tab", '\t'},
                                                                                    {"bullet", 0x2022},
                                                                                    {"endash", 0x2013},
                                                                                    {"emdash", 0x2014},
                                                                                    {"lquote", 0x2018},
                                                                                    {"rquote", 0x2019},
                                                                                    {"ldblquote", 0x201C},
                                                                                    {"rdblquote", 0x201D}}};

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

int HexDigit(char c) {
  if (IsDigit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// Text out of UTF-16 units that come one by one.
class Utf16Joiner {
 public:
  void Add(uint32_t unit, std::string& text) {
    if (high_ != 0 && unit >= 0xDC00 && unit <= 0xDFFF) {
      AppendUtf8(text, 0x10000 + ((high_ - 0xD800) << 10U) + (unit - 0xDC00));
      high_ = 0;
      return;
    }
    high_ = unit >= 0xD800 && unit <= 0xDBFF ? unit : 0;
    if (high_ == 0) AppendUtf8(text, unit);
  }

 private:
  uint32_t high_ = 0;
};

std::string FromUtf16(std::string_view file, bool low_byte_first) {
  std::string text;
  Utf16Joiner joiner;
  for (size_t at = 2; at + 1 < file.size(); at += 2) {
    const uint32_t first = static_cast<uint8_t>(file[at]);
    const uint32_t second = static_cast<uint8_t>(file[at + 1]);
    joiner.Add(low_byte_first ? first | second << 8U : first << 8U | second, text);
  }
  return text;
}

class RichTextReader {
 public:
  explicit RichTextReader(std::string_view file) : rest_(file) {}

  std::string Read() {
    while (!rest_.empty()) {
      const char c = Take();
      if (c == '{') {
        groups_.push_back(group_);
      } else if (c == '}') {
        CloseGroup();
      } else if (c == '\\') {
        ReadControl();
      } else if (c != '\r' && c != '\n') {
        AddByte(c);
      }
    }
    return std::move(text_);
  }

 private:
  struct Group {
    bool skipped = false;
    int stand_ins = 1;  // how many bytes behind a \u stand in for it in old programs
  };

  char Take() {
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }

  void CloseGroup() {
    if (groups_.empty()) return;
    group_ = groups_.back();
    groups_.pop_back();
    bytes_to_drop_ = 0;
  }

  void ReadControl() {
    if (rest_.empty()) return;
    if (!IsLetter(rest_.front())) return ReadSymbol(Take());
    const std::string_view word = TakeWhile(IsLetter);
    const bool negative = rest_.starts_with('-');
    if (negative) rest_.remove_prefix(1);
    const std::string_view digits = TakeWhile(IsDigit);
    int number = 0;
    for (const char digit : digits) number = std::min(number, kMostNumber) * 10 + (digit - '0');
    if (rest_.starts_with(' ')) rest_.remove_prefix(1);
    Obey(word, negative ? -number : number, !digits.empty());
  }

  template <typename Predicate>
  std::string_view TakeWhile(Predicate belongs) {
    const auto* const end = std::find_if_not(rest_.begin(), rest_.end(), belongs);
    const std::string_view taken = rest_.substr(0, static_cast<size_t>(end - rest_.begin()));
    rest_.remove_prefix(taken.size());
    return taken;
  }

  void ReadSymbol(char symbol) {
    switch (symbol) {
      case '\'':
        return ReadHexByte();
      case '*':
        group_.skipped = true;
        return;
      case '~':
        return AddCharacter(0xA0);
      case '_':
        return AddCharacter('-');
      case '\r':
      case '\n':
        return AddCharacter('\n');
      case '\\':
      case '{':
      case '}':
        return AddByte(symbol);
      default:
        return;
    }
  }

  void ReadHexByte() {
    if (rest_.size() < 2) return;
    const int high = HexDigit(Take());
    const int low = HexDigit(Take());
    if (high >= 0 && low >= 0) AddByte(static_cast<char>(high << 4 | low));
  }

  void Obey(std::string_view word, int number, bool has_number) {
    if (word == "u") {
      AddUnit(static_cast<uint16_t>(number));
    } else if (word == "uc") {
      group_.stand_ins = std::max(number, 0);
    } else if (word == "bin") {
      rest_.remove_prefix(std::min(rest_.size(), static_cast<size_t>(std::max(number, 0))));
    } else if (has_number) {
      return;
    } else if (std::find(kDestinations.begin(), kDestinations.end(), word) != kDestinations.end()) {
      group_.skipped = true;
    } else {
      const auto* const found = std::find_if(kCharacterWords.begin(), kCharacterWords.end(),
                                             [word](const auto& known) { return known.first == word; });
      if (found != kCharacterWords.end()) AddCharacter(found->second);
    }
  }

  void AddUnit(uint16_t unit) {
    if (!group_.skipped) joiner_.Add(unit, text_);
    bytes_to_drop_ = group_.stand_ins;
  }

  void AddByte(char byte) {
    if (bytes_to_drop_ > 0) {
      --bytes_to_drop_;
    } else if (!group_.skipped) {
      text_ += Utf8FromCodePage({&byte, 1});
    }
  }

  void AddCharacter(char32_t character) {
    bytes_to_drop_ = 0;
    if (!group_.skipped) AppendUtf8(text_, character);
  }

  std::string_view rest_;
  std::string text_;
  Group group_;
  std::vector<Group> groups_;  // the open ones around the present one
  int bytes_to_drop_ = 0;
  Utf16Joiner joiner_;
};

}  // namespace

std::string ReadableText(std::string_view file) {
  if (file.starts_with(kRichTextStart)) return RichTextReader(file).Read();
  if (file.starts_with("\xFF\xFE")) return FromUtf16(file, true);
  if (file.starts_with("\xFE\xFF")) return FromUtf16(file, false);
  if (file.starts_with(kUtf8Mark)) file.remove_prefix(kUtf8Mark.size());
  return IsUtf8(file) ? std::string(file) : Utf8FromCodePage(file);
}

std::string_view WholeLetters(std::string_view beginning) {
  if (beginning.starts_with("\xFF\xFE") || beginning.starts_with("\xFE\xFF")) {
    return beginning.substr(0, beginning.size() / 2 * 2);
  }
  constexpr size_t kLongestLetter = 4;
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
  size_t end = beginning.size();
  while (end > 0 && beginning.size() - end < kLongestLetter && continues(beginning[end - 1])) --end;
  const unsigned char first = end > 0 ? static_cast<unsigned char>(beginning[end - 1]) : 0;
  const size_t length = first >= 0xF0U ? 4 : first >= 0xE0U ? 3 : first >= 0xC0U ? 2 : 0;
  return beginning.substr(0, beginning.size() - end + 1 < length ? end - 1 : beginning.size());
}

}  // namespace tessaro
