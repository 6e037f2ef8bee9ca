#pragma once

#include <vector>

#include "platform/side_code_page.h"
#include "store/file/card_file.h"

namespace tessaro {

// What the table of all cards can be ordered by.
enum class CardOrder { Row, Id, Front, Back, Retention, LastAnswer, Topic };

// The rows of all cards in that order; equal ones as they stand in the file, also where it is descending. Texts are
// compared as a person reads them, without markup and case, by the bytes of the code pages.
std::vector<int> OrderedRows(const CardFile& file, const SideCodePages& pages, CardOrder order, bool descending);

// The topics of a card as one text.
std::string TopicText(std::string_view front, std::string_view back);

}  // namespace tessaro
