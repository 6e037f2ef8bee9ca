#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tessaro {

// Words of two bytes or more, each with a number, and a way to find all those that stand in a text, wherever they
// begin. Words count from 0 in the order in which they came.
class WordTrie {
 public:
  WordTrie();
  // The number of a word, which is added when it is new. Shorter words than two bytes have none: 0 without meaning.
  uint32_t Add(std::string_view word);
  uint32_t size() const { return words_; }

  // Calls `visit` with the number of each word found; a word is found as often as it stands there.
  template <typename Visit>
  void ForEachIn(std::string_view text, const Visit& visit) const {
    for (size_t start = 0; start + 2 <= text.size(); ++start) {
      uint32_t node = roots_[Root(text.substr(start))];
      for (size_t at = start + 2; node != kNone; ++at) {
        if (word_of_node_[node] != kNone) visit(word_of_node_[node]);
        if (at == text.size()) break;
        node = Child(node, text[at]);
      }
    }
  }

 private:
  static constexpr uint32_t kNone = UINT32_MAX;
  struct Edge {
    uint64_t key = UINT64_MAX;  // node and byte
    uint32_t child = kNone;
  };

  static size_t Root(std::string_view text) {
    return static_cast<size_t>(static_cast<uint8_t>(text[0])) << 8U | static_cast<uint8_t>(text[1]);
  }
  static uint64_t Key(uint32_t node, char byte) { return uint64_t{node} << 8U | static_cast<uint8_t>(byte); }
  size_t Slot(uint64_t key) const {
    constexpr uint64_t kMix = 0x9E3779B97F4A7C15U;
    size_t slot = (key * kMix) >> shift_;
    while (edges_[slot].key != key && edges_[slot].key != UINT64_MAX) slot = (slot + 1) & (edges_.size() - 1);
    return slot;
  }
  uint32_t Child(uint32_t node, char byte) const { return edges_[Slot(Key(node, byte))].child; }
  uint32_t AddNode();
  uint32_t AddChild(uint32_t node, char byte);
  void Grow();

  std::vector<uint32_t> roots_;         // by the first two bytes
  std::vector<uint32_t> word_of_node_;  // kNone where no word ends
  std::vector<Edge> edges_;             // hashed; their number is a power of two
  unsigned shift_;
  size_t edge_count_ = 0;
  uint32_t words_ = 0;
};

}  // namespace tessaro
