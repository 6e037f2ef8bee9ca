#include "exchange/foreign_text.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "exchange/blank_card.h"
#include "exchange/plain_form.h"
#include "platform/code_page.h"
#include "platform/utf8.h"

namespace tessaro {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleMark = "\xFF\xFE";
constexpr std::string_view kBigMark = "\xFE\xFF";

// How many bytes at the front are ASCII; looks at eight at once and may stop a little early.
size_t AsciiRun(std::string_view text) {
  constexpr size_t kGroup = 8;
  constexpr uint64_t kHighBits = 0x8080808080808080U;
  size_t run = 0;
  uint64_t group = 0;
  for (; run + kGroup <= text.size(); run += kGroup) {
    std::memcpy(&group, text.data() + run, kGroup);
    if ((group & kHighBits) != 0) break;
  }
  return run;
}

// Goes through the text once, piece by piece.
bool HoldsAny(std::string_view text, char one, char other) {
  constexpr size_t kAtOnce = size_t{64} * 1024;
  for (; !text.empty(); text.remove_prefix(std::min(kAtOnce, text.size()))) {
    const std::string_view piece = text.substr(0, kAtOnce);
    if (piece.find(one) != std::string_view::npos || piece.find(other) != std::string_view::npos) return true;
  }
  return false;
}

// UTF-8 that is more than ASCII: of that nobody needs to know.
bool IsMarklessUtf8(std::string_view text) {
  bool more = false;
  while (!text.empty()) {
    text.remove_prefix(AsciiRun(text));
    for (size_t i = 0; i < sizeof(uint64_t) && !text.empty(); ++i) {
      const auto first = FirstUtf8(text);
      if (!first) return false;
      more |= first->second > 1;
      text.remove_prefix(first->second);
    }
  }
  return more;
}

Encoding EncodingOf(std::string_view raw) {
  if (raw.starts_with(kUtf8Mark)) return Encoding::Utf8WithMark;
  if (raw.starts_with(kLittleMark)) return Encoding::Utf16Little;
  if (raw.starts_with(kBigMark)) return Encoding::Utf16Big;
  return IsMarklessUtf8(raw) ? Encoding::Utf8 : Encoding::CodePage;
}

// Writes the converted text over the one that is read: it never gets ahead, since no character becomes longer.
class Converter {
 public:
  Converter(ForeignText& text, FieldPages pages)
      : text_(text), bytes_(text.bytes), pages_(pages), by_sides_(!pages.western()) {}

  void FromCodePage() {
    if (!HoldsAny(bytes_, '\r', '\0')) return;
    for (const char byte : bytes_) PutByte(byte);
    Finish();
  }

  void FromUtf8(size_t mark) {
    std::string_view rest = std::string_view(bytes_).substr(mark);
    while (!rest.empty()) {
      const auto first = FirstUtf8(rest);
      if (first) {
        Put(first->first);
      } else {
        PutByte(rest[0]);
      }
      rest.remove_prefix(first ? first->second : 1);
    }
    Finish();
  }

  void FromUtf16(bool big) {
    const std::string_view source = bytes_;
    const auto unit = [&](size_t at) {
      const auto low = static_cast<uint8_t>(source[big ? at + 1 : at]);
      return static_cast<char32_t>(low | static_cast<uint8_t>(source[big ? at : at + 1]) << 8U);
    };
    for (size_t at = kLittleMark.size(); at < source.size(); at += 2) {
      if (at + 1 == source.size()) {
        Replace(0xFFFD);
        break;
      }
      const char32_t lead = unit(at);
      const bool pair = (lead & 0xFC00U) == 0xD800U && at + 3 < source.size() && (unit(at + 2) & 0xFC00U) == 0xDC00U;
      if (pair) at += 2;
      Put(pair ? 0x10000 + ((lead & 0x3FFU) << 10U | (unit(at) & 0x3FFU)) : lead);
    }
    Finish();
  }

 private:
  void Put(char32_t character) {
    if (!by_sides_ && character < 0x80) return PutByte(static_cast<char>(character));
    if (by_sides_) page_ = pages_.Next(character);
    const std::optional<char> byte = page_.ByteOf(character);
    if (byte && (page_.western() || !pages_.IsTaken(*byte))) return PutByte(*byte);
    if (IsAccent(character)) return PutAccent(character);
    Replace(character);
  }

  void PutByte(char byte) {
    const bool ends_pair = byte == '\n' && after_return_;
    after_return_ = byte == '\r';
    if (byte == '\0') {
      ++text_.zeros;
    } else if (ends_pair) {
      bytes_[end_ - 1] = '\n';
    } else {
      bytes_[end_++] = byte;
    }
  }

  void PutAccent(char32_t accent) {
    const std::optional<char> letter = end_ == 0 ? std::nullopt : WithAccent(bytes_[end_ - 1], accent, page_);
    if (!letter) return Replace(accent);
    bytes_[end_ - 1] = *letter;
  }

  void Replace(char32_t character) {
    const std::string_view by = PlainForm(character).value_or("?");
    ++text_.replaced;
    const bool known = std::any_of(text_.examples.begin(), text_.examples.end(),
                                   [&](const auto& example) { return example.character == character; });
    if (!known && text_.examples.size() < ForeignText::kMostExamples) {
      text_.examples.push_back({character, std::string(by)});
    }
    for (const char byte : by) PutByte(byte);
    if (by.empty()) after_return_ = false;
  }

  void Finish() { bytes_.resize(end_); }

  ForeignText& text_;
  std::string& bytes_;
  FieldPages pages_;
  bool by_sides_;
  CodePage page_;   // of the character at hand
  size_t end_ = 0;  // of what is written
  bool after_return_ = false;
};

}  // namespace

FieldPages::FieldPages(const SideCodePages& pages, char separator, char other)
    : pages_(pages), marks_{separator, other} {}

FieldPages FieldPages::OfText(const SideCodePages& pages, char separator, char card_separator, bool swapped) {
  return {swapped ? SideCodePages{pages.back, pages.front} : pages, separator, card_separator};
}

FieldPages FieldPages::OfTable(const SideCodePages& pages, char separator, char quote) {
  FieldPages table(pages, separator, quote);
  table.table_ = true;
  return table;
}

CodePage FieldPages::Next(char32_t character) {
  if (table_) return NextOfTable(character);
  if (character != Mark(0) && character != Mark(1)) return in_back_ ? pages_.back : pages_.front;
  in_back_ = character == Mark(0);
  return {};
}

// Behind a backslash nothing parts columns.
CodePage FieldPages::NextOfTable(char32_t character) {
  const bool mark = character == Mark(0);
  const bool quote = character == Mark(1);
  if (character == '\n') {
    column_ = 0;
  } else if (mark && !escaped_) {
    ++column_;
  }
  escaped_ = character == '\\' && !escaped_;
  if (mark || quote) return {};
  return column_ == kQuestionAt ? pages_.front : column_ == kAnswerAt ? pages_.back : CodePage();
}

ForeignText ReadCodePageText(std::string raw) {
  ForeignText text;
  text.bytes = std::move(raw);
  Converter(text, {}).FromCodePage();
  return text;
}

ForeignText ReadForeignText(std::string raw, FieldPages pages) {
  ForeignText text;
  text.encoding = EncodingOf(raw);
  text.bytes = std::move(raw);
  Converter converter(text, pages);
  switch (text.encoding) {
    case Encoding::CodePage:
      converter.FromCodePage();
      break;
    case Encoding::Utf8:
      converter.FromUtf8(0);
      break;
    case Encoding::Utf8WithMark:
      converter.FromUtf8(kUtf8Mark.size());
      break;
    case Encoding::Utf16Little:
      converter.FromUtf16(false);
      break;
    case Encoding::Utf16Big:
      converter.FromUtf16(true);
      break;
  }
  return text;
}

}  // namespace tessaro
