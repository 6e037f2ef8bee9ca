#include "help/help_deck.h"

#include <algorithm>
#include <array>

#include "cards/navigation.h"
#include "hypertext/plain_text.h"
#include "platform/code_page.h"
#include "platform/disk.h"
#include "store/table/card_columns.h"
#include "store/table/card_table.h"

namespace tessaro {
namespace {

// What stands in the next <name="..."> from `from` on, which then is behind it; nothing when there is none.
std::optional<std::string_view> NextTag(std::string_view side, std::string_view name, size_t& from) {
  const std::string opening = std::string("<").append(name).append("=\"");
  const size_t begin = side.find(opening, from);
  if (begin == std::string_view::npos) return std::nullopt;
  const size_t text = begin + opening.size();
  const size_t end = side.find("\">", text);
  if (end == std::string_view::npos) return std::nullopt;
  from = end;
  return side.substr(text, end - text);
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  while (!text.empty()) {
    const size_t end = std::min(text.find(separator), text.size());
    if (end > 0) parts.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

std::string WithoutLinks(std::string_view side) {
  constexpr std::string_view kEnd = "</a>";
  std::string rest;
  while (true) {
    const size_t begin = side.find("<a ");
    rest += side.substr(0, begin);
    const size_t end = begin == std::string_view::npos ? begin : side.find(kEnd, begin);
    if (end == std::string_view::npos) return rest;
    side.remove_prefix(end + kEnd.size());
  }
}

bool HasAll(std::string_view upper_text, std::span<const std::string_view> words) {
  return std::all_of(words.begin(), words.end(),
                     [&](std::string_view word) { return upper_text.find(word) != std::string_view::npos; });
}

}  // namespace

std::optional<HelpDeck> HelpDeck::Read(Disk& disk, const std::filesystem::path& path) {
  const auto file = disk.Open(path);
  CardTable table;
  table.SetSeparator(kFieldSeparator);
  if (file == nullptr || !table.LoadFrom(*file)) return std::nullopt;
  const int id = table.ColumnIndex(kId);
  const int question = table.ColumnIndex(kQuestion);
  const int answer = table.ColumnIndex(kAnswer);
  if (id == 0 || question == 0 || answer == 0) return std::nullopt;
  HelpDeck deck;
  for (int row = 1; row <= table.RowCount(); ++row) {
    const std::string_view number = table.Peek(id, row);
    if (number == kStartMark || number == kEndMark) continue;
    if (LeadingNumber(number) != deck.Count() + 1) return std::nullopt;
    deck.Add(table.Peek(question, row), table.Peek(answer, row));
  }
  if (deck.cards_.empty()) return std::nullopt;
  return deck;
}

void HelpDeck::Add(std::string_view front, std::string_view back) {
  HelpCard card;
  card.side = front;
  card.text = PlainText(front);
  card.words = PlainText(back);
  card.title = card.text.substr(0, card.text.find('\n'));
  size_t from = 0;
  card.chapter = NextTag(front, "topic", from).value_or("");
  const int number = Count() + 1;
  if (front.find(kHomeTag) != std::string_view::npos) start_ = number;
  if (front.find(kIndexTag) != std::string_view::npos) index_ = number;
  from = 0;
  while (const auto places = NextTag(front, "place", from)) {
    for (const std::string_view place : Split(*places, ' ')) places_.push_back({std::string(place), number});
  }
  from = 0;
  while (const auto message = NextTag(front, "message", from)) messages_.push_back({std::string(*message), number});
  Searched searched;
  searched.title = UpperCase(card.title);
  searched.words = searched.title + '\n' + UpperCase(card.words);
  searched.text = searched.words + '\n' + UpperCase(PlainText(WithoutLinks(front)));
  searched_.push_back(std::move(searched));
  cards_.push_back(std::move(card));
}

const HelpCard* HelpDeck::Card(int64_t number) const {
  return number >= 1 && number <= Count() ? &cards_[static_cast<size_t>(number - 1)] : nullptr;
}

std::vector<HelpChapter> HelpDeck::Chapters() const {
  std::vector<HelpChapter> chapters;
  for (int number = 1; number <= Count(); ++number) {
    const std::string& name = Card(number)->chapter;
    const auto same = [&](const HelpChapter& chapter) { return chapter.name == name; };
    auto chapter = std::find_if(chapters.begin(), chapters.end(), same);
    if (chapter == chapters.end()) chapter = chapters.insert(chapter, {.name = name, .cards = {}});
    chapter->cards.push_back(number);
  }
  return chapters;
}

int HelpDeck::CardOfPlace(std::span<const std::string> places) const {
  for (const std::string& place : places) {
    const auto found =
        std::find_if(places_.begin(), places_.end(), [&](const Name& known) { return known.name == place; });
    if (found != places_.end()) return found->card;
  }
  return 0;
}

int HelpDeck::CardOfMessage(std::string_view text) const {
  for (const std::string_view line : Split(text, '\n')) {
    const auto found = std::find_if(messages_.begin(), messages_.end(),
                                    [&](const Name& known) { return line.starts_with(known.name); });
    if (found != messages_.end()) return found->card;
  }
  return 0;
}

std::vector<int> HelpDeck::Search(std::string_view wanted) const {
  const std::string upper = UpperCase(std::string(wanted));
  const std::vector<std::string_view> words = Split(upper, ' ');
  if (words.empty()) return {};
  std::array<std::vector<int>, 4> found;
  for (int number = 1; number <= Count(); ++number) {
    const Searched& card = searched_[static_cast<size_t>(number - 1)];
    if (card.title.starts_with(upper)) {
      found[0].push_back(number);
    } else if (HasAll(card.title, words)) {
      found[1].push_back(number);
    } else if (HasAll(card.words, words)) {
      found[2].push_back(number);
    } else if (HasAll(card.text, words)) {
      found[3].push_back(number);
    }
  }
  std::vector<int> all;
  for (const std::vector<int>& part : found) all.insert(all.end(), part.begin(), part.end());
  return all;
}

}  // namespace tessaro
