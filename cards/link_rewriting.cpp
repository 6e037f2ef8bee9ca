#include "cards/link_rewriting.h"

#include <algorithm>

#include "hypertext/markup.h"
#include "platform/code_page.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr std::string_view kAttribute = "href=\"";
constexpr size_t kNowhere = std::string_view::npos;

struct LinkValue {
  size_t begin = 0;
  size_t length = 0;
};

// The next value of a link from `from` on. It ends at a quote, and before the end of its tag. Where a quote was
// forgotten that may be the opening one of the link behind it, whose value is looked for all the same.
std::optional<LinkValue> NextValue(std::string_view side, size_t from) {
  for (size_t at = side.find('=', from); at != kNowhere; at = side.find('=', at + 1)) {
    const size_t name = kAttribute.size() - 2;
    if (at < from + name || !EqualIgnoringCase(side.substr(at - name, kAttribute.size()), kAttribute)) continue;
    const size_t begin = at + 2;
    const size_t end = side.find_first_of("\">", begin);
    if (end == kNowhere) return std::nullopt;
    if (side[end] == '"') return LinkValue{begin, end - begin};
  }
  return std::nullopt;
}

// The card that a value leads to, read by the viewer's own reader; 0 when to none.
int64_t TargetOf(std::string_view value) {
  constexpr size_t kLongest = 7;
  if (value.size() > kLongest) return 0;
  MarkupItem item;
  MarkupReader reader(std::string("<a href=\"").append(value).append("\">x</a>"));
  return reader.Next(item) && item.kind == MarkupItem::Kind::Link ? item.target : 0;
}

// Nearly all values are plain digits.
int64_t NumberOf(std::string_view value) {
  constexpr size_t kLongest = 7;
  if (value.size() > kLongest) return 0;
  int64_t number = 0;
  for (const char c : value) {
    if (c < '0' || c > '9') return TargetOf(value);
    number = number * 10 + (c - '0');
  }
  return number > kMaxLinkTarget ? 0 : number;
}

}  // namespace

bool HoldsLinkValue(std::string_view side) {
  return NextValue(side, 0).has_value();
}

void VisitLinks(std::string_view side, const std::function<void(int64_t number)>& visit) {
  for (auto value = NextValue(side, 0); value; value = NextValue(side, value->begin)) {
    const int64_t number = NumberOf(side.substr(value->begin, value->length));
    if (number > 0) visit(number);
  }
}

std::optional<std::string> RewriteLinks(std::string_view side, const NumberMap& numbers) {
  std::string text;
  size_t done = 0;
  for (auto value = NextValue(side, 0); value; value = NextValue(side, value->begin)) {
    const int64_t number = NumberOf(side.substr(value->begin, value->length));
    const std::optional<int64_t> changed = number > 0 ? numbers(number) : std::nullopt;
    if (!changed) continue;
    text.append(side.substr(done, value->begin - done)).append(IdText(*changed));
    done = value->begin + value->length;
  }
  if (done == 0) return std::nullopt;
  text += side.substr(done);
  return text == side ? std::nullopt : std::optional(std::move(text));
}

}  // namespace tessaro
