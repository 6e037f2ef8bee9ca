#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tessaro {

// The new number for one that a link leads to; nothing: the link stays as it is written.
using NumberMap = std::function<std::optional<int64_t>(int64_t number)>;

// Whether a side has anything that VisitLinks and RewriteLinks look at.
bool HoldsLinkValue(std::string_view side);
// Goes through the links of a side: the values behind href=" in either case, read as the viewer reads them, so that
// what it follows is what changes. Values that lead to no number are not asked for.
void VisitLinks(std::string_view side, const std::function<void(int64_t number)>& visit);
// The side with its links rewritten to "%06d" of their new numbers; nothing when none of them changes.
std::optional<std::string> RewriteLinks(std::string_view side, const NumberMap& numbers);

}  // namespace tessaro
