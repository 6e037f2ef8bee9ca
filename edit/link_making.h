#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "edit/markup_tools.h"

namespace tessaro {

// Holds the place of a link on screen while its target is looked for.
inline constexpr std::string_view kLinkMarker = "<+>";
// The face of a link for which nothing was selected.
inline constexpr std::string_view kEmptyFace = "......";

// The markup of a link with this face to that card.
std::string LinkText(std::string_view target_id, std::string_view face);

// A link being made on one side of a card. On screen the marker stands in the place of the selected text; the card
// keeps that text until the link is made.
class PendingLink {
 public:
  // `side` is the whole text of the side, without the marker.
  PendingLink(std::string_view side, SideRange selection);

  const std::string& selected() const { return selected_; }
  // What the link is to show: the selected text, or where there is none something to click on.
  std::string face() const { return selected_.empty() ? std::string(kEmptyFace) : selected_; }
  // What the card keeps meanwhile.
  const std::string& side() const { return side_; }
  // The side as it is shown. When the marker was lost it is the side itself.
  std::string Shown() const;
  SideRange marker() const { return {begin_, lost_ ? 0 : kLinkMarker.size()}; }

  // The user has changed the shown text. Of several markers the one nearest to where it was counts; without one the
  // place of the link is lost.
  void TakeShown(std::string_view shown);
  // The side with the link to that card. Nothing when the place was lost, or when `side_now`, the card's side as it is
  // stored, is not the one that was kept: others have changed it.
  std::optional<std::string> Finish(std::string_view side_now, std::string_view target_id, std::string_view face) const;

 private:
  std::string side_;
  std::string selected_;
  size_t begin_ = 0;
  bool lost_ = false;
};

}  // namespace tessaro
