#include "print/page_flow.h"

#include <algorithm>

namespace tessaro {

FlowPage FillPage(FlowPlace start, const FlowRules& rules, const std::function<std::vector<int>(int item)>& heights) {
  FlowPage page = {{}, start};
  int top = 0;
  while (page.next.item < rules.items) {
    const std::vector<int> parts = heights(page.next.item);
    const int height = parts[static_cast<size_t>(page.next.part)];
    const bool fits = parts.size() == 1 && top + height <= rules.height;
    if (top > 0 && !fits) break;
    page.parts.push_back({page.next, top, height});
    // One without height would let a page go on for ever.
    top += std::max(height, 1);
    const bool ends = page.next.part + 1 == static_cast<int>(parts.size());
    page.next = ends ? FlowPlace{page.next.item + 1, 0} : FlowPlace{page.next.item, page.next.part + 1};
    if (rules.alone) break;
  }
  return page;
}

}  // namespace tessaro
