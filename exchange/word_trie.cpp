#include "exchange/word_trie.h"

#include <utility>

namespace tessaro {
namespace {

constexpr size_t kRoots = size_t{1} << 16U;
constexpr unsigned kFirstBits = 12;
constexpr unsigned kKeyBits = 64;

}  // namespace

WordTrie::WordTrie() : roots_(kRoots, kNone), edges_(size_t{1} << kFirstBits), shift_(kKeyBits - kFirstBits) {}

uint32_t WordTrie::Add(std::string_view word) {
  if (word.size() < 2) return 0;
  uint32_t& root = roots_[Root(word)];
  if (root == kNone) root = AddNode();
  uint32_t node = root;
  for (const char byte : word.substr(2)) node = AddChild(node, byte);
  if (word_of_node_[node] == kNone) word_of_node_[node] = words_++;
  return word_of_node_[node];
}

uint32_t WordTrie::AddNode() {
  word_of_node_.push_back(kNone);
  return static_cast<uint32_t>(word_of_node_.size() - 1);
}

uint32_t WordTrie::AddChild(uint32_t node, char byte) {
  const uint64_t key = Key(node, byte);
  size_t slot = Slot(key);
  if (edges_[slot].key == key) return edges_[slot].child;
  if (edge_count_ * 2 >= edges_.size()) {
    Grow();
    slot = Slot(key);
  }
  ++edge_count_;
  edges_[slot] = {key, AddNode()};
  return edges_[slot].child;
}

void WordTrie::Grow() {
  std::vector<Edge> old(edges_.size() * 2);
  old.swap(edges_);
  --shift_;
  for (const Edge& edge : old) {
    if (edge.key != UINT64_MAX) edges_[Slot(edge.key)] = edge;
  }
}

}  // namespace tessaro
