#include "edit/card_order.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <string>

#include "cards/card_reader.h"
#include "edit/topics.h"
#include "hypertext/plain_text.h"
#include "platform/code_page.h"

namespace tessaro {
namespace {

// Orders positions by keys, which stay where they are.
template <typename Key>
std::vector<int> RowsByKeys(const std::vector<Key>& keys, bool descending) {
  std::vector<int> rows(keys.size());
  std::iota(rows.begin(), rows.end(), 0);
  const auto key = [&keys](int row) -> const Key& { return keys[static_cast<size_t>(row)]; };
  std::stable_sort(rows.begin(), rows.end(),
                   [&](int a, int b) { return descending ? key(b) < key(a) : key(a) < key(b); });
  for (int& row : rows) row += kFirstCardRow;
  return rows;
}

int64_t NumberKey(const CardReader& cards, int row, CardOrder order) {
  if (order == CardOrder::Id) return LeadingNumber(cards.Id(row));
  if (order == CardOrder::Retention) return cards.WasAnswered(row) ? cards.Score(row) : -1;
  return order == CardOrder::LastAnswer ? cards.NewestTime(row) : row;
}

// A text to be ordered: most are told apart by its first letters, held as a number.
struct TextKey {
  uint64_t head = 0;
  std::string text;

  explicit TextKey(std::string folded) : text(std::move(folded)) {
    for (size_t i = 0; i < sizeof(head); ++i) {
      head = (head << 8U) | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    }
  }
  bool operator<(const TextKey& other) const { return head != other.head ? head < other.head : text < other.text; }
};

std::string ReadText(const CardReader& cards, int row, CardOrder order) {
  if (order == CardOrder::Topic) return TopicText(cards.Question(row), cards.Answer(row));
  return PlainText(order == CardOrder::Front ? cards.Question(row) : cards.Answer(row));
}

}  // namespace

std::string TopicText(std::string_view front, std::string_view back) {
  std::string text;
  for (const std::string_view side : {front, back}) {
    for (const std::string_view topic : TopicsOn(side)) {
      if (!text.empty()) text += ", ";
      text += topic;
    }
  }
  return text;
}

std::vector<int> OrderedRows(const CardFile& file, const SideCodePages& pages, CardOrder order, bool descending) {
  const CardReader cards(file);
  if (order == CardOrder::Front || order == CardOrder::Back || order == CardOrder::Topic) {
    const CodePage page = order == CardOrder::Front ? pages.front : order == CardOrder::Back ? pages.back : CodePage();
    std::vector<TextKey> keys;
    keys.reserve(static_cast<size_t>(cards.Count()));
    for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
      keys.emplace_back(page.Folded(ReadText(cards, row, order)));
    }
    return RowsByKeys(keys, descending);
  }
  std::vector<int64_t> keys;
  keys.reserve(static_cast<size_t>(cards.Count()));
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) keys.push_back(NumberKey(cards, row, order));
  return RowsByKeys(keys, descending);
}

}  // namespace tessaro
