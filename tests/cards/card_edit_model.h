#pragma once

#include <set>
#include <span>

#include "cards/card_edit.h"
#include "tests/support/test_cards.h"

namespace tessaro {

inline constexpr size_t kColumns = kCardColumns.size();
inline constexpr std::array<size_t, 5> kLearned = {1, 4, 5, 6, 7};

// Cards as plain lists of texts, each with a name that stays with it.
struct ModelCard {
  std::array<std::string, kColumns> texts;
  int name = 0;
  std::array<std::string, 5> Learned() const {
    std::array<std::string, 5> learned;
    for (size_t i = 0; i < learned.size(); ++i) learned[i] = texts[kLearned[i]];
    return learned;
  }
};

// What a command did, so that it can be taken back in the plainest way.
struct ModelUndo {
  struct Text {
    int name;
    size_t column;
    std::string old;
    std::array<std::string, 5> left;  // in the columns that learning writes
  };
  std::vector<Text> texts;
  std::vector<std::pair<size_t, ModelCard>> removed;  // by place before
  std::set<int> inserted;                             // names
};

class Model : public CardWatcher {
 public:
  std::vector<ModelCard> cards;
  std::map<int, int> held;  // row of a card by its name, kept up to date by what the file tells
  std::set<int> told_rows;

  void RowsShifted(const RowShift& shift) override {
    std::map<int, int> mapped;
    for (const auto& [name, row] : held) {
      const int now = shift.Map(row);
      EXPECT_EQ(shift.MapOrBefore(row) == now, now != 0);
      if (now != 0) mapped[name] = now;
    }
    held = std::move(mapped);
  }
  void CardsChanged(std::span<const int> rows, std::span<const int> columns) override {
    EXPECT_FALSE(columns.empty());
    told_rows.insert(rows.begin(), rows.end());
  }

  std::string Text() const {
    std::vector<TestCard> texts;
    for (const ModelCard& card : cards) {
      const auto& t = card.texts;
      texts.push_back({t[0], t[2], t[3], t[4], t[6], t[7], t[1], t[5]});
    }
    return FileText(texts);
  }
  ModelCard* Named(int name) {
    for (ModelCard& card : cards) {
      if (card.name == name) return &card;
    }
    return nullptr;
  }
  void HoldAll() {
    held.clear();
    for (size_t i = 0; i < cards.size(); ++i) held[cards[i].name] = static_cast<int>(i) + kFirstCardRow;
  }

  // Takes `undo` back and gives what takes that back.
  ModelUndo TakeBack(const ModelUndo& undo) {
    ModelUndo redo;
    for (const ModelUndo::Text& text : undo.texts) {
      ModelCard& card = *Named(text.name);
      const bool learned = std::find(kLearned.begin(), kLearned.end(), text.column) != kLearned.end();
      if (learned && card.Learned() != text.left) continue;
      redo.texts.push_back({text.name, text.column, card.texts[text.column], {}});
    }
    // All that is left alone is decided before anything is changed.
    for (const ModelUndo::Text& text : redo.texts) {
      for (const ModelUndo::Text& from : undo.texts) {
        if (from.name == text.name && from.column == text.column) Named(text.name)->texts[text.column] = from.old;
      }
    }
    for (ModelUndo::Text& text : redo.texts) text.left = Named(text.name)->Learned();
    std::vector<ModelCard> left;
    for (size_t i = 0; i < cards.size(); ++i) {
      if (undo.inserted.count(cards[i].name) > 0) {
        redo.removed.emplace_back(i, cards[i]);
      } else {
        left.push_back(cards[i]);
      }
    }
    cards = std::move(left);
    for (const auto& [place, card] : undo.removed) {
      cards.insert(cards.begin() + static_cast<std::ptrdiff_t>(place), card);
      redo.inserted.insert(card.name);
    }
    return redo;
  }
};

}  // namespace tessaro
