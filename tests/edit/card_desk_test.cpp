#include "edit/card_desk.h"

#include <gtest/gtest.h>

#include <memory>

#include "cards/card_reader.h"
#include "edit/card_tools.h"
#include "edit/landmark_settings.h"
#include "edit/renumbering.h"
#include "platform/code_page.h"
#include "tests/edit/card_desk_fixture.h"

namespace tessaro {
namespace {

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

}  // namespace
}  // namespace tessaro
