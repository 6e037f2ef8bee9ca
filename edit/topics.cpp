#include "edit/topics.h"

#include <algorithm>
#include <unordered_set>

#include "cards/card_reader.h"
#include "platform/code_page.h"

namespace tessaro {
namespace {

constexpr std::string_view kSection = "TOPIC";
constexpr std::string_view kNoName = "...";

// The next beginning of a topic tag, from `from` on.
size_t FindTag(std::string_view side, size_t from) {
  return std::min(side.find("<topic=", from), side.find("<TOPIC=", from));
}

}  // namespace

std::vector<std::string_view> TopicsOn(std::string_view side) {
  constexpr size_t kTagLength = 7;
  std::vector<std::string_view> topics;
  for (size_t at = FindTag(side, 0); at != std::string_view::npos; at = FindTag(side, at + 1)) {
    const size_t end = side.find('>', at);
    if (end == std::string_view::npos) break;
    const std::string_view value = side.substr(at + kTagLength, end - at - kTagLength);
    const size_t close = value.find('"', 1);
    if (value.starts_with('"') && close != std::string_view::npos && close > 1) {
      topics.push_back(value.substr(1, close - 1));
    }
  }
  return topics;
}

bool HasTopic(std::string_view front, std::string_view back, std::string_view topic) {
  const auto names = [topic](std::string_view side) {
    const std::vector<std::string_view> topics = TopicsOn(side);
    return std::find(topics.begin(), topics.end(), topic) != topics.end();
  };
  return names(front) || names(back);
}

std::vector<std::string> TopicList(const CardFile& file, const KeepGoing& keep_going) {
  const CardReader cards(file);
  std::vector<std::string> list;
  std::unordered_set<std::string> known;
  for (int row = kFirstCardRow; row <= cards.LastCardRow() && GoesOn(keep_going, row); ++row) {
    file.cards().Expect(row + CardTable::kAhead);
    for (const std::string_view side : {cards.Question(row), cards.Answer(row)}) {
      for (const std::string_view topic : TopicsOn(side)) {
        if (known.emplace(topic).second) list.emplace_back(topic);
      }
    }
  }
  return list;
}

std::string OldTopicName(const IniFile& settings, std::string_view topic_number) {
  std::string name = settings.GetString(kSection, std::to_string(LeadingNumber(topic_number)));
  if (name.empty()) name = settings.GetString(kSection, topic_number);
  return name == kNoName ? std::string() : name;
}

bool HasOldTopics(const IniFile& settings) {
  const std::string& text = settings.Text();
  for (size_t at = text.find('['); at != std::string::npos; at = text.find('[', at + 1)) {
    const size_t end = text.find(']', at);
    if (end == std::string::npos) return false;
    if (at > 0 && text[at - 1] != '\n') continue;
    if (EqualIgnoringCase(std::string_view(text).substr(at + 1, end - at - 1), kSection)) return true;
  }
  return false;
}

}  // namespace tessaro
