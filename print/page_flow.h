#pragma once

#include <functional>
#include <vector>

namespace tessaro {

// Items of any height that follow one another on pages, each in as many parts as it needs pages.

// A part of an item, the next one to be put on a page.
struct FlowPlace {
  int item = 0;
  int part = 0;
  bool operator==(const FlowPlace&) const = default;
};

// A part on its page.
struct FlowPart {
  FlowPlace place;
  int top = 0;
  int height = 0;
  bool operator==(const FlowPart&) const = default;
};

struct FlowPage {
  std::vector<FlowPart> parts;
  FlowPlace next;  // what the page after it begins with
};

struct FlowRules {
  int items = 0;
  int height = 0;      // of a page, at least 1
  bool alone = false;  // nothing stands below the end of an item
};

// Fills a page from `start` on, which must be an item that is there. An item of one part goes to the next page when it
// does not fit; one of several begins a page, and each part but the last fills one. `heights`: of the parts of an item,
// at least one, each of at most a page.
FlowPage FillPage(FlowPlace start, const FlowRules& rules, const std::function<std::vector<int>(int item)>& heights);

}  // namespace tessaro
