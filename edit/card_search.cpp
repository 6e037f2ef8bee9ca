#include "edit/card_search.h"

#include <algorithm>
#include <cstring>

#include "cards/card_reader.h"

namespace tessaro {
namespace {

constexpr size_t kNowhere = std::string_view::npos;

// How often a byte stands on cards, as a rough order: the lower the rarer.
int Frequency(char c) {
  constexpr std::string_view kCommon = " enirtsah<>dulbcgomfkpwzv=\"/";
  const size_t place = kCommon.find(c);
  return place == kNowhere ? 0 : static_cast<int>(kCommon.size() - place);
}

}  // namespace

TextFinder::TextFinder(std::string_view text, bool ignore_case, CodePage page)
    : text_(ignore_case ? page.Folded(std::string(text)) : std::string(text)), page_(page), ignore_case_(ignore_case) {
  const auto rarer = [](char a, char b) { return Frequency(a) < Frequency(b); };
  if (!text_.empty()) {
    rarest_ = static_cast<size_t>(std::min_element(text_.begin(), text_.end(), rarer) - text_.begin());
  }
}

size_t TextFinder::Find(std::string_view in) const {
  if (text_.empty() || in.size() < text_.size()) return kNowhere;
  if (ignore_case_) return FindIgnoringCase(in);
  // The rarest byte can only stand in this part of the text.
  const char* at = in.data() + rarest_;
  const char* const end = in.data() + in.size() - (text_.size() - 1 - rarest_);
  for (; at < end; ++at) {
    at = static_cast<const char*>(std::memchr(at, text_[rarest_], static_cast<size_t>(end - at)));
    if (at == nullptr) return kNowhere;
    const char* const begin = at - rarest_;
    if (std::memcmp(begin, text_.data(), text_.size()) == 0) return static_cast<size_t>(begin - in.data());
  }
  return kNowhere;
}

size_t TextFinder::FindIgnoringCase(std::string_view in) const {
  const auto same = [page = page_](char a, char b) { return page.Folded(a) == b; };
  const auto found = std::search(in.begin(), in.end(), text_.begin(), text_.end(), same);
  return found == in.end() ? kNowhere : static_cast<size_t>(found - in.begin());
}

CardSearch::CardSearch(const SearchQuery& query)
    : first_(query.first.empty() && query.mode == SearchMode::Or ? query.second : query.first, query),
      second_(query.first.empty() ? SoughtText() : query.second, query),
      mode_(query.mode),
      sides_(query.sides) {}

std::optional<FoundText> CardSearch::Finders::Find(const Sides& sides) const {
  for (const EditSide name : {EditSide::Front, EditSide::Back}) {
    const size_t index = name == EditSide::Front ? 0 : 1;
    const std::string_view side = sides[index];
    const TextFinder& finder = finders_[index];
    const size_t at = finder.Find(side);
    if (at == kNowhere) continue;
    const auto lines_before = std::count(side.begin(), side.begin() + static_cast<std::ptrdiff_t>(at), '\n');
    return FoundText{name, {at, finder.size()}, static_cast<int>(lines_before) + 1};
  }
  return std::nullopt;
}

std::optional<FoundText> CardSearch::Match(std::string_view front, std::string_view back) const {
  const Sides sides = {sides_ == SearchSides::Back ? std::string_view() : front,
                       sides_ == SearchSides::Front ? std::string_view() : back};
  const std::optional<FoundText> first = first_.Find(sides);
  if (second_.empty()) return first;
  if (mode_ == SearchMode::Or) return first ? first : second_.Find(sides);
  if (!first) return std::nullopt;
  const bool second = second_.Find(sides).has_value();
  return second == (mode_ == SearchMode::And) ? first : std::nullopt;
}

SearchResult SearchCards(const CardFile& file, const CardSearch& search, int first, const KeepGoing& keep_going,
                         const std::function<int(int place)>& row_at) {
  SearchResult result;
  if (!search.Possible()) return result;
  const std::array columns = {file.columns().question, file.columns().answer};
  const int last = CardReader(file).LastCardRow();
  for (int place = std::max(first, kFirstCardRow); place <= last; ++place) {
    result.cancelled = !GoesOn(keep_going, place);
    if (result.cancelled) break;
    const int row = row_at ? row_at(place) : place;
    if (file.deletion_marks().Has(row)) continue;
    ++result.examined;
    std::array<std::string_view, 2> sides;
    file.cards().Expect(row + CardTable::kAhead);
    file.cards().PeekAll(row, columns, sides);
    const std::optional<FoundText> found = search.Match(sides[0], sides[1]);
    if (!found) continue;
    result.row = row;
    result.line = found->line;
    break;
  }
  return result;
}

}  // namespace tessaro
