#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessaro {

// A long text in pieces that follow one another, some of them its own, some that stay where they are.
class PiecedText {
 public:
  // The piece at its end, to be added to; valid up to the next AddView.
  std::string& own() { return pieces_.back().own; }
  // Adds bytes that must outlive it.
  void AddView(std::string_view bytes) {
    pieces_.back().behind = bytes;
    pieces_.emplace_back();
  }
  // The first of its own pieces.
  std::string& front() { return pieces_.front().own; }

  // In order; valid until it changes.
  std::vector<std::string_view> pieces() const {
    std::vector<std::string_view> pieces;
    for (const Piece& piece : pieces_) {
      if (!piece.own.empty()) pieces.emplace_back(piece.own);
      if (!piece.behind.empty()) pieces.push_back(piece.behind);
    }
    return pieces;
  }
  size_t size() const {
    size_t size = 0;
    for (const Piece& piece : pieces_) size += piece.own.size() + piece.behind.size();
    return size;
  }
  std::string Joined() const {
    std::string text;
    text.reserve(size());
    for (const std::string_view piece : pieces()) text += piece;
    return text;
  }

 private:
  struct Piece {
    std::string own;
    std::string_view behind;
  };
  std::vector<Piece> pieces_ = std::vector<Piece>(1);
};

}  // namespace tessaro
