#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/code_page.h"
#include "store/table/packed_fields.h"

// The texts of generated overview cards: navigation cards full of links, whose colours show what is known.
namespace tessaro {

inline constexpr size_t kEntriesOfPart = 100;
inline constexpr size_t kEntriesOfLine = 10;

// What stands for a card, or a group of cards, in an overview: text characters, or the file of a pictogram.
struct OverviewSymbols {
  std::string single;
  std::string group;
};
// A symbol that ends like a picture's file is a pictogram.
bool IsPictogram(std::string_view symbol);

// Takes a card that was generated; its back is "-". The text is gone afterwards.
using TakeGenerated = std::function<void(int64_t id, std::string_view question)>;

// Generates the cards of an overview, numbered from `first_id` on, in the order in which they come at the end of the
// file, with an entry for each of the IDs, one field a row; no IDs give no cards. Where the entries fill more than one
// part, an index with an entry for each part follows them; it has parts itself where it needs them. The result is the
// number of the card where the overview begins: the index, or the only part.
int64_t GenerateRowOrder(const PackedFields& ids, const OverviewSymbols& symbols, int64_t first_id,
                         const TakeGenerated& take);
// How many cards that are.
int64_t RowOrderCards(int64_t entries);

// The same for the cards of one topic, or of two, without an index: the overview begins with its first part. A second
// topic that is empty or equal to the first does not count.
int64_t GenerateTopic(const PackedFields& ids, std::string_view topic1, std::string_view topic2,
                      const OverviewSymbols& symbols, int64_t first_id, const TakeGenerated& take);
int64_t TopicCards(int64_t entries);
// "Thema" or "Thema 1 - Thema 2": what the overview is called on its cards and in the link to it.
std::string TopicTitle(std::string_view topic1, std::string_view topic2);
// Whether a card's front is that of a topic overview with this title, made with any number of cards.
bool IsTopicOverview(std::string_view question, std::string_view title);

// The face of the link to the row-order overview.
inline constexpr std::string_view kRowOrderFace = "Reihenfolgeübersicht"_cp;
// The front of a card with a link of this face to that card: where it has one, its target changes, else the link comes
// at its end.
std::string WithOverviewLink(std::string_view question, int64_t target, std::string_view face);

}  // namespace tessaro
