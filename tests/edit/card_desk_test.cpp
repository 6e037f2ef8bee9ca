#include "cards/card_reader.h"
#include "edit/card_tools.h"
#include "edit/landmark_settings.h"
#include "edit/renumbering.h"
#include "tests/edit/card_desk_fixture.h"

namespace tessaro {
namespace {

TEST_F(CardDeskTest, NoCardIsMadeThatLinksCouldNotLeadTo) {
  Open({{.id = "999989", .question = "a"}});
  EXPECT_EQ(desk->InsertEmpty().id, "999990");
  EXPECT_EQ(desk->InsertEmpty().outcome, DeskOutcome::NoNumberLeft);
  EXPECT_EQ(Renumber(file, desk->commands(), {999989}, 2), RenumberOutcome::Done);
  EXPECT_EQ(Renumber(file, desk->commands(), {999990}, 2), RenumberOutcome::BadStart);
  EXPECT_EQ(Renumber(file, desk->commands(), {1}, 2), RenumberOutcome::Done);
  EXPECT_EQ(desk->InsertEmpty().id, "000003");
  EXPECT_TRUE(CardReader(file).Score(3) == 60 && CardReader(file).Score(4) == 120) << "one minute behind the other";
  EXPECT_EQ(desk->Cut().id, "000003");
}

TEST_F(CardDeskTest, OneCardIsFirstAndLastAndItsPlaceNeverEmpty) {
  Open({{.id = "000001", .question = "a", .score = "000000500"}});
  EXPECT_EQ(desk->Paste().outcome, DeskOutcome::NoCard);
  EXPECT_FALSE(desk->Next() || desk->Previous() || desk->GoToPosition(2) || desk->GoToId(7) || desk->Overview() ||
               desk->EnsureCard() || desk->FollowLink(0) || desk->FollowLink(7) || desk->CanGoBack());
  EXPECT_TRUE(desk->GoToPosition(1) && desk->Last() && desk->GoToId(1));
  EXPECT_EQ(desk->ResetStatistics().outcome, DeskOutcome::Done);
  EXPECT_EQ(CardReader(file).Score(2), 0);
  // Of several cards those are marked that are not; all that are, lose their marks.
  desk->Copy();
  EXPECT_EQ(desk->Paste().position, 2);
  const std::pair<std::vector<int>, const char*> steps[] = {{{3}, "1:a >*2:a"},     {{2, 3, 9}, "*1:a >*2:a"},
                                                            {{2, 3}, "1:a >2:a"},   {{2}, "*1:a >2:a"},
                                                            {{2, 3}, "*1:a >*2:a"}, {{}, "*1:a >*2:a"}};
  for (const auto& [rows, shown] : steps) {
    desk->MarkAll(rows);
    EXPECT_EQ(Show(), shown);
  }
  EXPECT_TRUE(desk->RemoveMarked());
  EXPECT_EQ(Show(), ">3:-");
  desk->Undo();
  EXPECT_EQ(Show(), "*1:a >*2:a");
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
  EXPECT_TRUE(desk->row() == 2 && !desk->IsLinking());
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
  EXPECT_TRUE(!desk->FollowLink(2) && desk->FollowLink(3) && desk->GoBack());
  EXPECT_EQ(desk->row(), 2);
  EXPECT_FALSE(desk->GoBack());
  EXPECT_EQ(desk->Search({.first = "a", .second = ""}).row, 2);
  const SearchResult more = desk->SearchMore();
  EXPECT_TRUE(more.row == 4 && more.examined == 2);
  EXPECT_EQ(desk->SearchMore().row, 0);
  EXPECT_TRUE(CardReader(file).IsLeftOut(3));
  // The place where the search stands follows its card.
  EXPECT_EQ(desk->Search({.first = "a", .second = ""}).row, 2);
  desk->InsertEmpty();
  EXPECT_EQ(desk->SearchMore().row, 5);
  desk->First();
  desk->InsertEmpty();
  EXPECT_EQ(desk->SearchMore().row, 0);
}

TEST_F(CardDeskTest, WayBackFollowsItsCardThroughRenumberingAndMovedRows) {
  Open({{.id = "000005", .question = "a"}, {.id = "000007", .question = "<home>b"}, {.id = "000006", .question = "c"}});
  EXPECT_TRUE(desk->FollowLink(7) && desk->FollowLink(6));
  ASSERT_EQ(Renumber(file, desk->commands(), {1}, desk->row()), RenumberOutcome::Done);
  EXPECT_TRUE(desk->Home());
  desk->First();
  desk->InsertEmpty();
  EXPECT_TRUE(desk->GoBack());
  EXPECT_EQ(Show(), "1:a 4:- >2:<home>b 3:c");
  EXPECT_TRUE(desk->GoBack());
  EXPECT_EQ(desk->id(), "000001");
  // The home card is found anew when cards moved, though they are as many, or texts changed.
  EXPECT_TRUE(desk->Home());
  desk->Last();
  desk->Cut();
  desk->First();
  desk->InsertEmpty();
  EXPECT_TRUE(desk->Home() && desk->id() == "000002");
  EXPECT_EQ(desk->Store("b", "Antwort"), StoreOutcome::Saved);
  EXPECT_TRUE(desk->Home() && desk->id() == "000001");
}

TEST_F(CardDeskTest, CancelledToolsLeaveAllAsItWas) {
  std::vector<TestCard> cards;
  for (int id = 1; id <= 2000; ++id)
    cards.push_back({.id = IdText(id), .question = "a\nb<topic=\"T\"><a href=\"000003\">", .topic = "01"});
  Open(cards);
  file.settings().SetString("TOPIC", "1", "Haus");
  const std::string before = FileText(file.cards()) + file.settings().Text();
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
  EXPECT_EQ(FileText(file.cards()) + file.settings().Text(), before);
  EXPECT_FALSE(commands.CanUndo());
}

TEST_F(CardDeskTest, StackForgetsItsOldestCommandsAndTellsOfIt) {
  using enum CommandStack::Forgotten;
  constexpr size_t kLimit = 20'000;
  Open({{.id = "000001", .question = "0"}});
  CommandStack stack(file, kLimit);
  const auto change = [&](const std::string& text) {
    CardCommand command;
    command.Replace(2, {{file.columns().question, text}});
    EXPECT_TRUE(stack.Do(EditKind::LineBreaks, std::move(command), 2));
    EXPECT_LE(stack.MemoryBytes(), kLimit);
    return stack.TakeForgotten();
  };
  int done = 1;
  while (change(std::to_string(done) + std::string(1000, 'x')) == Nothing && done < 100) ++done;
  int undone = 0;
  while (stack.Undo()) ++undone;
  EXPECT_TRUE(undone > 3 && undone >= done / 2 && undone < done) << undone << " of " << done;
  EXPECT_EQ(LeadingNumber(Front(2)), done - undone) << "the oldest commands are the forgotten ones";
  change(std::string(50'000, 'f'));
  EXPECT_EQ(change("g"), All) << "already one is too long";
  EXPECT_FALSE(stack.CanUndo());
  EXPECT_EQ(stack.TakeForgotten(), Nothing);
}

TEST_F(CardDeskTest, OverviewIsReplacedAndTheWayToItKept) {
  std::vector<TestCard> cards = {{.id = "000001", .question = "<index><navigation>Index"}};
  for (int id = 2; id <= 150; ++id) cards.push_back({.id = IdText(id)});
  Open(cards);
  CommandStack& commands = desk->commands();
  ToolResult result = MakeRowOrderOverview(file, commands, {"o", "g"}, 2);
  EXPECT_TRUE(result.cards == 149 && result.linked && result.start_row == 154 && file.CardCount() == 153);
  EXPECT_EQ(OverviewSetting(file.settings()), "000153");
  result = MakeRowOrderOverview(file, commands, {"o", "g"}, 2);
  EXPECT_EQ(file.CardCount(), 153) << "the old overview is gone";
  EXPECT_EQ(OverviewSetting(file.settings()), "000156");
  EXPECT_EQ(Front(2), std::string("<index><navigation>Index \n<br><a href=\"000156\">Reihenfolgeübersicht</a>"_cp));
  desk->Undo();
  EXPECT_EQ(OverviewSetting(file.settings()), "000153");
  EXPECT_TRUE(desk->Overview() && desk->id() == "000153");
  desk->Undo();
  EXPECT_TRUE(OverviewSetting(file.settings()).empty() && file.CardCount() == 150);
  EXPECT_EQ(MakeTopicOverview(file, commands, {"o", "g"}, "T", "", 2).outcome, ToolOutcome::Nothing);
  ExpectIndexesFit(file);
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
  EXPECT_TRUE(CardReader(file).Answer(4) == "Wer?" && CardReader(file).Score(4) == 1);
}

TEST_F(CardDeskTest, RenumberingKeepsWhereLinksLead) {
  Open({{.id = "000010", .question = "<home><a href=\"7\">"},
        {.id = "000007", .question = "<index>", .answer = "<a Href=\"000010\"><a href=\"000003\"><a href=\"#10\">"},
        {.id = "000007", .question = "<automap><index><a href=\"000007\">"}});
  EXPECT_EQ(CountDeadLinks(file), 1);
  ASSERT_EQ(Renumber(file, desk->commands(), {3}, 2), RenumberOutcome::Done);
  EXPECT_EQ(Show(), ">3:<home><a href=\"000004\"> 4:<index> 5:<automap><index><a href=\"000004\">");
  EXPECT_EQ(CardReader(file).Answer(3), "<a Href=\"000003\"><a href=\"000003\"><a href=\"#10\">");
  EXPECT_EQ(HomeSetting(file.settings()) + OverviewSetting(file.settings()), "000003000005");
  EXPECT_EQ(file.highest_id(), 5);
  ExpectIndexesFit(file);
  desk->Undo();
  EXPECT_EQ(OverviewSetting(file.settings()), "");
  EXPECT_EQ(desk->id(), "000010");
  EXPECT_TRUE(desk->Overview() && desk->row() == 4);
  ASSERT_EQ(Renumber(file, desk->commands(), {3, true}, 2), RenumberOutcome::Done);
  EXPECT_EQ(CardReader(file).Answer(3), "<a Href=\"000003\"><a href=\"000000\"><a href=\"#10\">");
  EXPECT_TRUE(desk->Home() && desk->Store("x", "Antwort") == StoreOutcome::Saved && desk->Home());
  EXPECT_EQ(desk->row(), 3) << "the index, where no card says that it is the home";
  const auto stop = [](int) { return false; };
  EXPECT_TRUE(GoesOn(stop, 3) && !GoesOn(stop, 1024));
  for (const char* text : {"", "x", "1x", "-1", "1 2", "9999999999"}) EXPECT_FALSE(ReadStartNumber(text)) << text;
  EXPECT_EQ(ReadStartNumber(" 07 "), 7);
  EXPECT_FALSE(CanNumberFrom(file, 0));
}

TEST(CardSearch, CombinesTwoTextsOverTheChosenSides) {
  using enum SearchMode;
  using enum SearchSides;
  // A query, and the line on the card "rot\nblau" / "gelb\n\nrot".
  const std::pair<SearchQuery, std::optional<int>> cases[] = {{{"rot", "", Or, Both}, 1},
                                                              {{"rot", "", Or, Back}, 3},
                                                              {{"blau", "gelb", And, Both}, 2},
                                                              {{"blau", "gelb", And, Front}, std::nullopt},
                                                              {{"blau", "gelb", AndNot, Both}, std::nullopt},
                                                              {{"blau", "gelb", AndNot, Front}, 2},
                                                              {{"rot", "rot", AndNot, Both}, std::nullopt},
                                                              {{"grau", "gelb", Or, Both}, 1},
                                                              {{"", "blau", Or, Both}, 2},
                                                              {{"", "blau", And, Both}, std::nullopt},
                                                              {{"", "grau", AndNot, Both}, std::nullopt},
                                                              {{"", "", Or, Both}, std::nullopt},
                                                              {{"rot", "", AndNot, Both}, 1},
                                                              {{"Rot", "", Or, Both}, std::nullopt},
                                                              {{"ROT", "", Or, Back, true}, 3},
                                                              {{"t\nbl", "", Or, Both}, 1},
                                                              {{"rot\nblau!", "", Or, Both}, std::nullopt}};
  int number = 0;
  for (const auto& [query, line] : cases) {
    const auto found = CardSearch(query).Match("rot\nblau", "gelb\n\nrot");
    EXPECT_EQ(found ? std::optional(found->line) : std::nullopt, line) << "case " << number;
    ++number;
  }
  EXPECT_FALSE(CardSearch({"", "x", And}).Possible());
}

TEST(CardSearch, CaseIsThatOfTheCodePage) {
  EXPECT_NE(TextFinder("ÄRGER"_cp, true).Find("der Ärger"_cp), std::string_view::npos);
  EXPECT_NE(TextFinder("straße"_cp, true).Find("STRAßE"_cp), std::string_view::npos);
  EXPECT_EQ(TextFinder("ärger"_cp, false).Find("Ärger"_cp), std::string_view::npos);
}

TEST(CardSearch, LooksForATextAsEachSideWritesIt) {
  SearchQuery query;
  query.pages = {CodePage(), CodePage(CharacterSet::Greek)};
  query.ignore_case = true;
  query.first.back = "\xD3\xCF\xD3";
  EXPECT_EQ(CardSearch(query).Match("\xF3\xEF\xF2", "-"), std::nullopt) << "the front cannot hold it";
  ASSERT_TRUE(CardSearch(query).Match("-", "x \xF3\xEF\xF2")) << "two small letters have one capital";
  EXPECT_EQ(CardSearch(query).Match("-", "x \xF3\xEF\xF2")->text, (SideRange{2, 3}));
}

TEST(CardSearch, FindsWhereverTheTextStands) {
  // The byte that is looked for first may stand anywhere in the text, and before a place where the text fits.
  for (const std::string text : {"xee", "exe", "eex", "e", "xx"}) {
    for (size_t before = 0; before < 6; ++before) {
      const std::string in = std::string(before, 'e') + text + "eex";
      EXPECT_EQ(TextFinder(text, false).Find(in), in.find(text)) << text << " in " << in;
      EXPECT_EQ(TextFinder(text, true).Find(in), in.find(text)) << text << " in " << in;
    }
  }
}

TEST_F(CardDeskTest, SearchGoesOnFromAnyPlaceOfAView) {
  Open({{.id = "000001", .question = "Ofen"},
        {.id = "000002", .question = "x", .answer = "Ofen"},
        {.id = "000003", .question = "Ofen"}});
  const CardSearch search({.first = "Ofen", .second = ""});
  EXPECT_EQ(SearchCards(file, search, 3).row, 3);
  // In the order of a view that begins with the last card.
  const auto backwards = [](int place) { return 6 - place; };
  EXPECT_EQ(SearchCards(file, search, 2, {}, backwards).row, 4);
  EXPECT_EQ(SearchCards(file, search, 4, {}, backwards).row, 2);
  EXPECT_EQ(SearchCards(file, search, 5, {}, backwards).row, 0);
  EXPECT_EQ(SearchCards(file, CardSearch({.first = "@@", .second = ""}), 0).examined, 3)
      << "the rows of the frame are no cards";
}

}  // namespace
}  // namespace tessaro
