#include "edit/card_desk.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>

#include "cards/card_reader.h"
#include "edit/card_tools.h"
#include "edit/landmark_settings.h"
#include "edit/renumbering.h"
#include "platform/code_page.h"
#include "tests/support/test_cards.h"

namespace tessaro {
namespace {

// Both indexes are what a rebuild would make of the cards, the order among equal keys aside.
void ExpectIndexesRight(const CardFile& file) {
  const CardReader cards(file);
  LinkIndex links;
  LearnIndex scores;
  ASSERT_TRUE(links.Build(file.cards()));
  ASSERT_TRUE(scores.Build(file.cards()));
  EXPECT_EQ(scores.RowCount(), file.learn_index().RowCount());
  int64_t last = -1;
  for (int row = 2; row < file.learn_index().RowCount(); ++row) {
    const int64_t score = file.learn_index().Score(row);
    EXPECT_GE(score, last);
    last = score;
  }
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    const int place = file.learn_index().RowOfCard(row);
    ASSERT_NE(place, 0) << row;
    EXPECT_EQ(file.learn_index().Score(place), cards.Score(row));
    const int64_t id = LeadingNumber(cards.Id(row));
    EXPECT_EQ(LeadingNumber(cards.Id(file.RowOfId(id))), id);
  }
}

std::string CardsOf(const CardFile& file) {
  std::string text;
  for (int row = 1; row <= file.cards().RowCount(); ++row) {
    for (int column = 1; column <= file.cards().ColumnCount(); ++column) {
      text.append(file.cards().Peek(column, row)) += '|';
    }
    text += '\n';
  }
  return text;
}

class CardDeskTest : public testing::Test {
 protected:
  void Open(const std::vector<TestCard>& cards) {
    OpenTestFile(disk, file, cards);
    desk = std::make_unique<CardDesk>(file, made);
    desk->First();
  }
  // IDs and fronts of all cards; "*" stands before what is marked, ">" before the card on the desk.
  std::string Show() const {
    const CardReader cards(file);
    std::string text;
    for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
      if (!text.empty()) text += ' ';
      if (desk && desk->row() == row) text += '>';
      if (file.deletion_marks().Has(row)) text += '*';
      text += std::to_string(LeadingNumber(cards.Id(row))) + ':' + std::string(cards.Question(row));
    }
    return text;
  }
  std::string Front(int row) const { return std::string(file.cards().Peek(file.columns().question, row)); }

  MemoryDisk disk;
  CardFile file{disk};
  int64_t made = 0;
  std::unique_ptr<CardDesk> desk;
};

TEST_F(CardDeskTest, CommandsGoToTheirCardAndBackAgain) {
  Open({{.id = "000001", .question = "a"}, {.id = "000004", .question = "b"}});
  const DeskResult first = desk->InsertEmpty();
  EXPECT_EQ(first.id, "000005");
  EXPECT_EQ(first.position, 2);
  desk->InsertEmpty();
  EXPECT_EQ(Show(), "1:a 5:- >6:- 4:b");
  const CardReader cards(file);
  EXPECT_EQ(cards.Score(3), 60);
  EXPECT_EQ(cards.Score(4), 120);
  desk->First();
  desk->Copy();
  desk->Last();
  EXPECT_EQ(desk->Paste().position, 5);
  EXPECT_EQ(Show(), "1:a 5:- 6:- 4:b >7:a");
  EXPECT_EQ(desk->Cut().id, "000007");
  EXPECT_EQ(Show(), "1:a 5:- 6:- >4:b") << "behind the last card is none";
  desk->First();
  desk->Cut();
  EXPECT_EQ(Show(), ">5:- 6:- 4:b");
  EXPECT_TRUE(desk->ToggleDeletion().marked);
  desk->Next();
  EXPECT_TRUE(desk->RemoveMarked());
  EXPECT_EQ(Show(), ">6:- 4:b");
  std::vector<std::string> states;
  while (desk->commands().CanUndo()) {
    desk->Undo();
    states.push_back(Show());
  }
  EXPECT_EQ(states, (std::vector<std::string>{"*5:- >6:- 4:b", ">5:- 6:- 4:b", ">1:a 5:- 6:- 4:b",
                                              "1:a 5:- 6:- 4:b >7:a", "1:a 5:- 6:- >4:b", "1:a >5:- 4:b", ">1:a 4:b"}));
  while (desk->commands().CanRedo()) desk->Redo();
  EXPECT_EQ(Show(), ">6:- 4:b");
}

TEST_F(CardDeskTest, FileIsNeverWithoutACard) {
  Open({{.id = "000001", .question = "a"}});
  desk->Cut();
  EXPECT_EQ(Show(), ">2:-");
  desk->ToggleDeletion();
  desk->RemoveMarked();
  EXPECT_EQ(Show(), ">3:-");
}

TEST_F(CardDeskTest, NoCardIsMadeThatLinksCouldNotLeadTo) {
  Open({{.id = "999989", .question = "a"}});
  EXPECT_EQ(desk->InsertEmpty().id, "999990");
  EXPECT_EQ(desk->InsertEmpty().outcome, DeskOutcome::NoNumberLeft);
  EXPECT_EQ(Renumber(file, desk->commands(), {999989}, 2), RenumberOutcome::Done);
  EXPECT_EQ(Renumber(file, desk->commands(), {999990}, 2), RenumberOutcome::BadStart);
  EXPECT_EQ(Renumber(file, desk->commands(), {1}, 2), RenumberOutcome::Done);
  EXPECT_EQ(desk->InsertEmpty().id, "000003");
}

TEST_F(CardDeskTest, StoresWhatWasTypedAndNothingElse) {
  Open({{.id = "000001", .question = "a\r\nb", .answer = "x"}, {.id = "000002", .question = "c"}});
  EXPECT_EQ(desk->Shown(EditSide::Front), "a\nb");
  EXPECT_EQ(desk->Store("a\nb", "x"), StoreOutcome::Unchanged);
  EXPECT_EQ(desk->Store("a\nb", "y"), StoreOutcome::Saved);
  EXPECT_EQ(Front(2), "a\r\nb") << "a side that was not touched keeps its bytes";
  EXPECT_EQ(desk->Store("a\nb!", "y"), StoreOutcome::Saved);
  EXPECT_EQ(Front(2), "a\nb!");
  desk->Undo();
  EXPECT_EQ(Front(2), "a\r\nb") << "both changes were one";
  EXPECT_EQ(desk->Shown(EditSide::Back), "x");
  desk->Redo();
  EXPECT_EQ(Front(2), "a\nb!");
  // Rows that move elsewhere are followed; a card that was replaced is not overwritten.
  desk->Last();
  CardCommand command;
  command.Remove(2);
  ASSERT_TRUE(CardEdit(file).Apply(std::move(command)));
  EXPECT_EQ(desk->Store("c!", "Antwort"), StoreOutcome::Saved);
  EXPECT_EQ(Front(2), "c!");
  EXPECT_TRUE(desk->commands().CanUndo());
  desk->InsertEmpty();
  file.cards().GoTo(2);
  file.cards().DeleteRow();
  file.TableChanged();
  ASSERT_TRUE(file.RebuildIndexes());
  EXPECT_EQ(desk->Store("d", "Antwort"), StoreOutcome::Moved) << "rows moved without a word";
  EXPECT_EQ(Front(2), "-");
  EXPECT_EQ(desk->StoreById("d", "Antwort"), StoreOutcome::Saved);
  EXPECT_EQ(Show(), ">3:d");
}

TEST_F(CardDeskTest, UndoNeverTakesAnswersBack) {
  Open({{.id = "000001", .question = "a", .score = "000000500"}, {.id = "000002"}});
  desk->ResetStatistics();
  SetScore(file, 2, 777);
  desk->Store("b", "y");
  desk->Undo();
  desk->Undo();
  EXPECT_EQ(CardReader(file).Score(2), 777);
  EXPECT_EQ(Front(2), "a");
}

TEST_F(CardDeskTest, LinkIsPutWhereItsMarkerStoodWhateverHappensMeanwhile) {
  Open({{.id = "000001", .question = "siehe Ofen"}, {.id = "000002", .question = "Ofen"}});
  desk->BeginLink(EditSide::Front, {6, 4});
  EXPECT_EQ(desk->Shown(EditSide::Front), "siehe <+>");
  EXPECT_EQ(Front(2), "siehe Ofen");
  EXPECT_EQ(desk->Store("Siehe <+>!", "Antwort"), StoreOutcome::Saved);
  EXPECT_EQ(Front(2), "Siehe Ofen!");
  desk->First();
  desk->InsertEmpty();
  desk->First();
  EXPECT_EQ(desk->Shown(EditSide::Front), "Siehe <+>!");
  desk->Last();
  EXPECT_EQ(desk->Shown(EditSide::Front), "Ofen");
  EXPECT_TRUE(desk->FinishLink("Herd"));
  EXPECT_EQ(Front(2), "Siehe <a href=\"000002\">Herd</a>!");
  EXPECT_EQ(desk->row(), 2);
  EXPECT_FALSE(desk->IsLinking());
  // A link to the card itself; then one whose side others have changed.
  desk->BeginLink(EditSide::Back, {0, 0});
  EXPECT_TRUE(desk->FinishLink(desk->link()->face()));
  EXPECT_EQ(desk->Shown(EditSide::Back), "<a href=\"000001\">......</a>Antwort");
  desk->BeginLink(EditSide::Back, {0, 0});
  CardCommand command;
  command.Replace(2, {{file.columns().answer, "anders"}});
  ASSERT_TRUE(CardEdit(file).Apply(std::move(command)));
  EXPECT_FALSE(desk->FinishLink("x"));
  EXPECT_EQ(desk->Shown(EditSide::Back), "anders");
  // A card marked for deletion is no target.
  desk->BeginLink(EditSide::Back, {0, 0});
  desk->Last();
  desk->ToggleDeletion();
  EXPECT_FALSE(desk->FinishLink("x"));
  EXPECT_EQ(file.cards().Peek(file.columns().answer, 2), "anders");
}

TEST_F(CardDeskTest, MarkedCardsAreNeitherFoundNorLinkedTo) {
  Open({{.id = "000001", .question = "a"}, {.id = "000002", .question = "a"}, {.id = "000003", .question = "a"}});
  desk->GoTo(3);
  desk->ToggleDeletion();
  desk->First();
  EXPECT_FALSE(desk->FollowLink(2));
  EXPECT_TRUE(desk->FollowLink(3));
  EXPECT_TRUE(desk->GoBack());
  EXPECT_EQ(desk->row(), 2);
  EXPECT_FALSE(desk->GoBack());
  EXPECT_EQ(desk->Search({.first = "a", .second = ""}).row, 2);
  const SearchResult more = desk->SearchMore();
  EXPECT_EQ(more.row, 4);
  EXPECT_EQ(more.examined, 2);
  EXPECT_EQ(desk->SearchMore().row, 0);
  EXPECT_TRUE(CardReader(file).IsLeftOut(3));
  // The place where the search stands follows its card.
  EXPECT_EQ(desk->Search({.first = "a", .second = ""}).row, 2);
  desk->InsertEmpty();
  EXPECT_EQ(desk->SearchMore().row, 5);
  desk->GoTo(2);
  desk->Cut();
  EXPECT_EQ(desk->SearchMore().row, 0);
}

TEST_F(CardDeskTest, WayBackFollowsItsCardThroughRenumberingAndMovedRows) {
  Open({{.id = "000005", .question = "a"}, {.id = "000007", .question = "<home>b"}, {.id = "000006", .question = "c"}});
  EXPECT_TRUE(desk->FollowLink(7));
  EXPECT_TRUE(desk->FollowLink(6));
  ASSERT_EQ(Renumber(file, desk->commands(), {1}, desk->row()), RenumberOutcome::Done);
  desk->First();
  desk->InsertEmpty();
  EXPECT_TRUE(desk->GoBack());
  EXPECT_EQ(Show(), "1:a 4:- >2:<home>b 3:c");
  EXPECT_TRUE(desk->GoBack());
  EXPECT_EQ(desk->id(), "000001");
  // The home card is found anew when texts changed.
  EXPECT_TRUE(desk->Home());
  EXPECT_EQ(desk->Store("b", "Antwort"), StoreOutcome::Saved);
  EXPECT_TRUE(desk->Home());
  EXPECT_EQ(desk->id(), "000001");
}

TEST_F(CardDeskTest, CancelledToolsLeaveAllAsItWas) {
  std::vector<TestCard> cards;
  for (int id = 1; id <= 2000; ++id) {
    cards.push_back({.id = IdText(id), .question = "a\nb<topic=\"T\"><a href=\"000003\">", .topic = "01"});
  }
  Open(cards);
  file.settings().SetString("TOPIC", "1", "Haus");
  const std::string before = CardsOf(file) + file.settings().Text();
  CommandStack& commands = desk->commands();
  for (const int stop_at : {1024, 3000}) {
    const KeepGoing keep_going = [stop_at](int row) { return row < stop_at; };
    EXPECT_EQ(Renumber(file, commands, {7}, 2, keep_going), RenumberOutcome::Cancelled);
    if (stop_at > 2000) continue;
    EXPECT_EQ(TransferAllLineBreaks(file, commands, 2, keep_going).outcome, ToolOutcome::Cancelled);
    EXPECT_EQ(MakeRowOrderOverview(file, commands, {"o", "g"}, 2, keep_going).outcome, ToolOutcome::Cancelled);
    EXPECT_EQ(MakeTopicOverview(file, commands, {"o", "g"}, "T", "", 2, keep_going).outcome, ToolOutcome::Cancelled);
    EXPECT_EQ(TransferOldTopics(file, commands, 2, keep_going).outcome, ToolOutcome::Cancelled);
    EXPECT_EQ(CountDeadLinks(file, keep_going), std::nullopt);
    EXPECT_TRUE(desk->Search({.first = "fehlt", .second = ""}, keep_going).cancelled);
  }
  EXPECT_EQ(CardsOf(file) + file.settings().Text(), before);
  EXPECT_FALSE(commands.CanUndo());
}

TEST_F(CardDeskTest, MemoryOfTheStackIsBounded) {
  Open({{.id = "000001", .question = "a"}});
  const std::string text(3000, 'x');
  const auto change = [&](CommandStack& stack, char last) {
    CardCommand command;
    command.Replace(2, {{file.columns().question, text + last}});
    EXPECT_TRUE(stack.Do(EditKind::LineBreaks, std::move(command), 2));
  };
  CommandStack endless(file, 1000000);
  change(endless, 'a');
  change(endless, 'b');
  const size_t limit = (endless.MemoryBytes() - sizeof(CardCommand)) * 7 / 2;
  CommandStack stack(file, limit);
  for (char last = 'c'; last <= 'h'; ++last) {
    change(stack, last);
    EXPECT_LE(stack.MemoryBytes(), limit);
  }
  int undone = 0;
  while (stack.Undo()) ++undone;
  EXPECT_GE(undone, 2);
  EXPECT_LT(undone, 6);
  EXPECT_EQ(Front(2), text + static_cast<char>('h' - undone)) << "the oldest commands are the forgotten ones";
}

TEST_F(CardDeskTest, OverviewIsReplacedAndTheWayToItKept) {
  std::vector<TestCard> cards = {{.id = "000001", .question = "<index><navigation>Index"}};
  for (int id = 2; id <= 150; ++id) cards.push_back({.id = IdText(id)});
  Open(cards);
  CommandStack& commands = desk->commands();
  ToolResult result = MakeRowOrderOverview(file, commands, {"o", "g"}, 2);
  EXPECT_EQ(result.cards, 149);
  EXPECT_TRUE(result.linked);
  EXPECT_EQ(file.CardCount(), 153);
  EXPECT_EQ(OverviewSetting(file.settings()), "000153");
  EXPECT_EQ(result.start_row, 154);
  result = MakeRowOrderOverview(file, commands, {"o", "g"}, 2);
  EXPECT_EQ(file.CardCount(), 153) << "the old overview is gone";
  EXPECT_EQ(OverviewSetting(file.settings()), "000156");
  EXPECT_EQ(Front(2), std::string("<index><navigation>Index \n<br><a href=\"000156\">Reihenfolgeübersicht</a>"_cp));
  desk->Undo();
  EXPECT_EQ(OverviewSetting(file.settings()), "000153");
  EXPECT_TRUE(desk->Overview());
  EXPECT_EQ(desk->id(), "000153");
  desk->Undo();
  EXPECT_EQ(OverviewSetting(file.settings()), "");
  EXPECT_EQ(file.CardCount(), 150);
  EXPECT_EQ(MakeTopicOverview(file, commands, {"o", "g"}, "T", "", 2).outcome, ToolOutcome::Nothing);
  ExpectIndexesRight(file);
}

TEST_F(CardDeskTest, TopicOverviewTakesCardsWithBothTopics) {
  Open({{.id = "000001", .question = "x<topic=\"A\">", .answer = "<TOPIC=\"B\">"},
        {.id = "000002", .question = "<topic=\"A\">"},
        {.id = "000003", .question = "<navigation><topic=\"A\"><topic=\"B\">"}});
  EXPECT_EQ(MakeTopicOverview(file, desk->commands(), {"o", ""}, "A", "B", 2).cards, 1);
  EXPECT_EQ(MakeTopicOverview(file, desk->commands(), {"o", ""}, "A", "A", 2).cards, 2);
  EXPECT_EQ(MakeTopicOverview(file, desk->commands(), {"o", ""}, "A", "", 2).cards, 2);
  EXPECT_EQ(file.CardCount(), 5) << "one overview for each title";
  EXPECT_FALSE(MakeTopicOverview(file, desk->commands(), {"o", ""}, "A", "", 2).linked);
}

TEST_F(CardDeskTest, OldTopicsAndLineBreaksAreTransferredOnce) {
  Open({{.id = "000001", .question = "a\nb", .topic = "01"},
        {.id = "000002", .question = "c", .topic = "02"},
        {.id = "000003", .question = "<navigation>", .topic = "01"}});
  file.settings().SetString("TOPIC", "1", "Haus");
  file.settings().SetString("TOPIC", "2", "...");
  EXPECT_EQ(TransferOldTopics(file, desk->commands(), 2).cards, 1);
  EXPECT_EQ(TransferOldTopics(file, desk->commands(), 2).cards, 0);
  EXPECT_EQ(TransferAllLineBreaks(file, desk->commands(), 2).cards, 1);
  EXPECT_EQ(TransferAllLineBreaks(file, desk->commands(), 2).cards, 0);
  EXPECT_EQ(Front(2), "a<br>\nb<topic=\"Haus\">");
}

TEST_F(CardDeskTest, PictureCardsAreCopiesOfTheirTemplate) {
  Open({{.id = "000001", .question = "<img src=\"x.bmp\">", .answer = "Wer?", .score = "000000500"}, {.id = "000002"}});
  EXPECT_EQ(MakePictureCards(file, desk->commands(), {"a.bmp"}, 3).outcome, ToolOutcome::Nothing);
  EXPECT_EQ(MakePictureCards(file, desk->commands(), {"a.bmp", "b.jpg"}, 2).cards, 2);
  EXPECT_EQ(Show(), ">1:<img src=\"x.bmp\"> 2:Frage 3:<img src=\"a.bmp\"> 4:<img src=\"b.jpg\">");
  EXPECT_EQ(CardReader(file).Answer(4), "Wer?");
  EXPECT_EQ(CardReader(file).Score(4), 1);
}

TEST_F(CardDeskTest, RenumberingKeepsWhereLinksLead) {
  Open({{.id = "000010", .question = "<home><a href=\"7\">"},
        {.id = "000007", .question = "<index>", .answer = "<a Href=\"000010\"><a href=\"000003\"><a href=\"#10\">"},
        {.id = "000007", .question = "<automap><index><a href=\"000007\">"}});
  EXPECT_EQ(CountDeadLinks(file), 1);
  ASSERT_EQ(Renumber(file, desk->commands(), {3}, 2), RenumberOutcome::Done);
  EXPECT_EQ(Show(), ">3:<home><a href=\"000004\"> 4:<index> 5:<automap><index><a href=\"000004\">");
  EXPECT_EQ(CardReader(file).Answer(3), "<a Href=\"000003\"><a href=\"000003\"><a href=\"#10\">");
  EXPECT_EQ(HomeSetting(file.settings()), "000003");
  EXPECT_EQ(OverviewSetting(file.settings()), "000005");
  EXPECT_EQ(file.highest_id(), 5);
  ExpectIndexesRight(file);
  desk->Undo();
  EXPECT_EQ(OverviewSetting(file.settings()), "");
  EXPECT_EQ(desk->id(), "000010");
  ASSERT_EQ(Renumber(file, desk->commands(), {3, true}, 2), RenumberOutcome::Done);
  EXPECT_EQ(CardReader(file).Answer(3), "<a Href=\"000003\"><a href=\"000000\"><a href=\"#10\">");
  const auto stop = [](int) { return false; };
  EXPECT_TRUE(GoesOn(stop, 3));
  EXPECT_FALSE(GoesOn(stop, 1024));
  for (const char* text : {"", "x", "1x", "-1", "1 2", "9999999999"}) EXPECT_FALSE(ReadStartNumber(text)) << text;
  EXPECT_EQ(ReadStartNumber(" 07 "), 7);
  EXPECT_FALSE(CanNumberFrom(file, 0));
}

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

TEST_F(CardDeskTest, RandomCommandsDoWhatAPlainListDoes) {
  for (uint32_t seed = 1; seed <= 12; ++seed) {
    std::mt19937 random(seed);
    const auto below = [&random](size_t limit) { return std::uniform_int_distribution<size_t>(0, limit - 1)(random); };
    desk.reset();
    Open({{.id = "000001", .question = "1"}, {.id = "000002", .question = "2"}, {.id = "000003", .question = "3"}});
    DeskModel model;
    model.now = {{{1, "1", false, 1}, {2, "2", false, 2}, {3, "3", false, 3}}, 0};
    model.highest = 3;
    bool text_open = false;
    for (int step = 0; step < 150; ++step) {
      const size_t command = below(13);
      const std::string text = std::to_string(step);
      if (command == 0) {
        desk->InsertEmpty();
        model.Insert("-");
      } else if (command == 1) {
        desk->Copy();
        model.clipboard = model.card().front;
        continue;
      } else if (command == 2 && desk->CanPaste()) {
        desk->Paste();
        model.Insert(model.clipboard);
      } else if (command == 3) {
        desk->Cut();
        model.clipboard = model.card().front;
        const int64_t id = model.card().id;
        model.Remove([id](const DeskModel::Card& card) { return card.id == id; });
      } else if (command == 4) {
        desk->ToggleDeletion();
        model.Keep();
        model.card().marked = !model.card().marked;
      } else if (command == 5) {
        const auto marked = [](const DeskModel::Card& card) { return card.marked; };
        EXPECT_TRUE(desk->RemoveMarked());
        if (std::none_of(model.now.cards.begin(), model.now.cards.end(), marked)) continue;
        model.Remove(marked);
      } else if (command == 6) {
        desk->Store(text, "Antwort");
        if (!text_open) model.Keep();
        model.after.clear();
        model.card().front = text;
        text_open = true;
        continue;
      } else if (command == 7) {
        ASSERT_EQ(Renumber(file, desk->commands(), {step + 1}, desk->row()), RenumberOutcome::Done);
        model.Keep();
        for (size_t i = 0; i < model.now.cards.size(); ++i) {
          model.now.cards[i].id = step + 1 + static_cast<int64_t>(i);
        }
        model.highest = step + static_cast<int64_t>(model.now.cards.size());
      } else if (command < 10) {
        command == 8 ? desk->Undo() : desk->Redo();
        command == 8 ? model.Exchange(model.before, model.after) : model.Exchange(model.after, model.before);
      } else if (command == 10) {
        const size_t mark = below(2);
        desk->SetMark(mark);
        model.marks[mark] = model.card().key;
        continue;
      } else {
        model.now.at = below(model.now.cards.size());
        desk->GoTo(static_cast<int>(model.now.at) + kFirstCardRow);
      }
      text_open = false;
      std::string expected;
      for (size_t i = 0; i < model.now.cards.size(); ++i) {
        const DeskModel::Card& card = model.now.cards[i];
        expected += std::string(i == 0 ? "" : " ") + (i == model.now.at ? ">" : "") + (card.marked ? "*" : "") +
                    std::to_string(card.id) + ':' + card.front;
      }
      ASSERT_EQ(Show(), expected) << "seed " << seed << ", step " << step << ", command " << command;
      for (const size_t mark : {0U, 1U}) {
        ASSERT_EQ(desk->MarkedRow(mark), model.MarkedRow(mark)) << "seed " << seed << ", step " << step;
      }
      ASSERT_EQ(file.highest_id(), model.highest) << "seed " << seed << ", step " << step << ", command " << command;
    }
    ExpectIndexesRight(file);
  }
}

// What a new start makes of the files that lie there now.
std::string CardsAfterRestart(const MemoryDisk& disk) {
  MemoryDisk copy;
  const std::filesystem::path folder = std::filesystem::path(kTestFile).parent_path();
  for (const std::string& name : disk.FileNames(folder)) copy.Put(folder / name, *disk.Content(folder / name));
  CardFile file(copy);
  const OpenReport report = file.Open(kTestFile);
  EXPECT_EQ(report.result, OpenResult::Opened);
  EXPECT_TRUE(!report.unsaved || file.TakeOverUnsaved());
  return CardsOf(file);
}

TEST_F(CardDeskTest, WhatWasKeptIsThereAfterACrashHoweverTheDiskFailed) {
  int failures = 0;
  int compared = 0;
  for (uint32_t seed = 1; seed <= 40; ++seed) {
    std::mt19937 random(seed);
    const auto below = [&random](int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random); };
    desk.reset();
    Open({{.id = "000001", .question = "1"}, {.id = "000002", .question = "2"}, {.id = "000003", .question = "3"}});
    for (int step = 0; step < 60; ++step) {
      const auto fault = below(2) == 0 ? MemoryDisk::WriteFault::Nothing : MemoryDisk::WriteFault::Half;
      if (below(5) == 0) disk.FailAt(1 + below(6), fault, below(2) == 0);
      if (below(7) == 0) disk.set_capacity(static_cast<uint64_t>(below(4000)));
      desk->GoTo(kFirstCardRow + below(file.CardCount()));
      const std::array<std::function<void()>, 9> commands = {
          [&] { desk->InsertEmpty(); },
          [&] { desk->Cut(); },
          [&] { desk->Paste(); },
          [&] { desk->ToggleDeletion(); },
          [&] { desk->RemoveMarked(); },
          [&] { desk->Undo(); },
          [&] { desk->Redo(); },
          [&] { EXPECT_EQ(Renumber(file, desk->commands(), {1 + step}, desk->row()), RenumberOutcome::Done); },
          [&] { desk->Store(std::string(static_cast<size_t>(below(300)), 'x') + std::to_string(step), "Antwort"); }};
      commands[static_cast<size_t>(below(9))]();
      if (below(3) == 0) {
        disk.FailAt(0);
        disk.set_capacity(UINT64_MAX);
      }
      failures += file.journal().failing() ? 1 : 0;
      if (file.journal().failing()) continue;
      ++compared;
      ASSERT_EQ(CardsAfterRestart(disk), CardsOf(file)) << "seed " << seed << ", step " << step;
    }
    disk.FailAt(0);
    disk.set_capacity(UINT64_MAX);
    ExpectIndexesRight(file);
    desk.reset();
    file.Close();
  }
  EXPECT_GT(failures, 100);
  EXPECT_GT(compared, 1000);
}

}  // namespace
}  // namespace tessaro
