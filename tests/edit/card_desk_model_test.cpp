#include <functional>
#include <random>

#include "edit/renumbering.h"
#include "tests/edit/card_desk_fixture.h"

namespace tessaro {
namespace {

// All card commands in any order against a plain list of cards, with every state kept for taking back.
class DeskModel {
 public:
  struct Card {
    int64_t id = 0;
    std::string front;
    bool marked = false;
    int key = 0;  // whatever its number becomes
    bool operator==(const Card&) const = default;
  };
  struct State {
    std::vector<Card> cards;
    size_t at = 0;
    bool operator==(const State&) const = default;
  };
  State now;
  int64_t highest = 0;
  // A state to go back to, and where the user goes when that is reverted.
  struct Step {
    State state;
    size_t other_at = 0;
  };
  std::vector<Step> before;
  std::vector<Step> after;
  std::string clipboard;
  int last_key = 3;
  std::array<int, 2> marks{};  // keys of the cards

  // The row that a mark leads to. One whose card went is gone for good.
  int MarkedRow(size_t mark) {
    const auto marked = [key = marks[mark]](const Card& one) { return one.key == key; };
    const auto found = std::find_if(now.cards.begin(), now.cards.end(), marked);
    if (found == now.cards.end()) marks[mark] = 0;
    return marks[mark] == 0 ? 0 : static_cast<int>(found - now.cards.begin()) + kFirstCardRow;
  }
  Card& card() { return now.cards[now.at]; }
  // As the fixture's Show.
  std::string Show() const {
    std::string text;
    for (size_t i = 0; i < now.cards.size(); ++i) {
      const Card& card = now.cards[i];
      text += std::string(i == 0 ? "" : " ") + (i == now.at ? ">" : "") + (card.marked ? "*" : "") +
              std::to_string(card.id) + ':' + card.front;
    }
    return text;
  }
  void Keep() {
    before.push_back({now, now.at});
    after.clear();
  }
  void Exchange(std::vector<Step>& from, std::vector<Step>& to) {
    if (from.empty()) return;
    const Step step = from.back();
    from.pop_back();
    to.push_back({{now.cards, step.other_at}, step.state.at});
    now = step.state;
    for (const Card& one : now.cards) highest = std::max(highest, one.id);
  }
  void Insert(const std::string& front) {
    Keep();
    now.cards.insert(now.cards.begin() + static_cast<std::ptrdiff_t>(++now.at), {++highest, front, false, ++last_key});
    before.back().other_at = now.at;
  }
  void Renumber(int64_t first) {
    Keep();
    highest = first - 1;
    for (Card& one : now.cards) one.id = ++highest;
  }
  void Remove(const std::function<bool(const Card&)>& goes) {
    Keep();
    const size_t kept_before = static_cast<size_t>(
        std::count_if(now.cards.begin(), now.cards.begin() + static_cast<std::ptrdiff_t>(now.at), std::not_fn(goes)));
    std::erase_if(now.cards, goes);
    if (now.cards.empty()) now.cards.push_back({++highest, "-", false, ++last_key});
    now.at = std::min(kept_before, now.cards.size() - 1);
    before.back().other_at = now.at;
  }
};

class CardDeskModelTest : public CardDeskTest {
 protected:
  static constexpr size_t kCommands = 13;

  void Begin(uint32_t seed) {
    random.seed(seed);
    desk.reset();
    Open({{.id = "000001", .question = "1"}, {.id = "000002", .question = "2"}, {.id = "000003", .question = "3"}});
    model = {};
    model.now = {{{1, "1", false, 1}, {2, "2", false, 2}, {3, "3", false, 3}}, 0};
    model.highest = 3;
    text_open = false;
  }
  size_t Below(size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(random); }

  // Gives a command to both. A text stored again and again is one step to take back, until another command comes.
  void Give(size_t command, int step) {
    const bool keeps_text_open = command == 1 || command == 6 || command == 10 || (command == 5 && NoneMarked());
    GiveOne(command, step);
    text_open = command == 6 || (keeps_text_open && text_open);
  }

  DeskModel model;

 private:
  static bool IsMarked(const DeskModel::Card& card) { return card.marked; }
  bool NoneMarked() const { return std::none_of(model.now.cards.begin(), model.now.cards.end(), IsMarked); }

  void GiveOne(size_t command, int step) {
    const std::string text = std::to_string(step);
    if (command == 0) {
      desk->InsertEmpty();
      model.Insert("-");
    } else if (command == 1) {
      desk->Copy();
      model.clipboard = model.card().front;
    } else if (command == 2 && desk->CanPaste()) {
      desk->Paste();
      model.Insert(model.clipboard);
    } else if (command == 3) {
      desk->Cut();
      model.clipboard = model.card().front;
      model.Remove([id = model.card().id](const DeskModel::Card& card) { return card.id == id; });
    } else if (command == 4) {
      desk->ToggleDeletion();
      model.Keep();
      model.card().marked = !model.card().marked;
    } else if (command == 5) {
      EXPECT_TRUE(desk->RemoveMarked());
      if (!NoneMarked()) model.Remove(IsMarked);
    } else if (command == 6) {
      desk->Store(text, "Antwort");
      if (!text_open) model.Keep();
      model.after.clear();
      model.card().front = text;
    } else if (command == 7) {
      EXPECT_EQ(Renumber(file, desk->commands(), {step + 1}, desk->row()), RenumberOutcome::Done);
      model.Renumber(step + 1);
    } else if (command == 8) {
      desk->Undo();
      model.Exchange(model.before, model.after);
    } else if (command == 9) {
      desk->Redo();
      model.Exchange(model.after, model.before);
    } else if (command == 10) {
      const size_t mark = Below(2);
      desk->SetMark(mark);
      model.marks[mark] = model.card().key;
    } else {
      model.now.at = Below(model.now.cards.size());
      desk->GoTo(static_cast<int>(model.now.at) + kFirstCardRow);
    }
  }

  std::mt19937 random;
  bool text_open = false;
};

TEST_F(CardDeskModelTest, RandomCommandsDoWhatAPlainListDoes) {
  for (uint32_t seed = 1; seed <= 12; ++seed) {
    Begin(seed);
    for (int step = 0; step < 150; ++step) {
      const size_t command = Below(kCommands);
      const std::string where =
          "seed " + std::to_string(seed) + ", step " + std::to_string(step) + ", command " + std::to_string(command);
      Give(command, step);
      ASSERT_EQ(Show(), model.Show()) << where;
      for (const size_t mark : {0U, 1U}) ASSERT_EQ(desk->MarkedRow(mark), model.MarkedRow(mark)) << where;
      ASSERT_EQ(file.highest_id(), model.highest) << where;
    }
    ExpectIndexesFit(file);
  }
}

}  // namespace
}  // namespace tessaro
