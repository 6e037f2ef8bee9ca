#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cards/keep_going.h"
#include "store/file/card_file.h"

namespace tessaro {

// The topics that a side names with <topic="..."> or <TOPIC="...">, in their order; unquoted and empty ones are none.
std::vector<std::string_view> TopicsOn(std::string_view side);
bool HasTopic(std::string_view front, std::string_view back, std::string_view topic);

// The topics of all cards, each once, in the order in which they are first met; of the cards up to where it was ended.
std::vector<std::string> TopicList(const CardFile& file, const KeepGoing& keep_going = {});

// The name that the card file's settings give to the number in a card's Topic; empty when there is none.
std::string OldTopicName(const IniFile& settings, std::string_view topic_number);
// Whether the card file brings names for such numbers at all.
bool HasOldTopics(const IniFile& settings);

}  // namespace tessaro
