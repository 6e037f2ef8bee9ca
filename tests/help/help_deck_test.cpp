#include "help/help_deck.h"

#include <gtest/gtest.h>

#include <set>

#include "hypertext/markup.h"
#include "platform/code_page.h"
#include "tests/support/memory_disk.h"
#include "window_names.h"

namespace tessaro {
namespace {

// The help that the program comes with.
class Help : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(deck); }
  int CardOf(const std::string& place) const { return deck->CardOfPlace(std::vector{place}); }

  std::optional<HelpDeck> deck = HelpDeck::Read(RealDisk(), TESSARO_HELP);
};

TEST_F(Help, HasACardForEveryWindow) {
  for (const char* window : kWindowNames) EXPECT_NE(CardOf(window), 0) << window;
}

TEST_F(Help, HasNoDeadLinksAndNoCardThatTheFirstDoesNotLeadTo) {
  std::set<int> reached = {deck->StartCard()};
  std::vector<int> ahead = {deck->StartCard()};
  while (!ahead.empty()) {
    const HelpCard& card = *deck->Card(ahead.back());
    ahead.pop_back();
    MarkupReader reader(card.side);
    for (MarkupItem item; reader.Next(item);) {
      if (item.kind != MarkupItem::Kind::Link) continue;
      const bool alive = deck->Card(item.target) != nullptr;
      EXPECT_TRUE(alive) << card.title << " has a dead link";
      if (alive && reached.insert(item.target).second) ahead.push_back(item.target);
    }
  }
  EXPECT_EQ(reached.size(), static_cast<size_t>(deck->Count()));
  EXPECT_NE(deck->IndexCard(), deck->StartCard());
}

TEST_F(Help, NamesEveryCardOnceAndPutsItIntoAChapter) {
  std::set<std::string> titles;
  for (int number = 1; number <= deck->Count(); ++number) {
    const HelpCard& card = *deck->Card(number);
    EXPECT_TRUE(titles.insert(card.title).second) << card.title;
    EXPECT_FALSE(card.chapter.empty()) << card.title;
    EXPECT_EQ(deck->Search(card.title).front(), number) << card.title;
  }
}

// A deck of the test's own.
class SmallHelp : public testing::Test {
 protected:
  static std::string Row(const std::string& id, const std::string& front, const std::string& back) {
    return id + '\x0F' + front + '\x0F' + back + '\n';
  }
  std::optional<HelpDeck> Read(const std::string& rows) {
    disk.Put("/help.mlb", Row("ID", "Question", "Answer") + Row("@@", "", "") + rows + Row("##", "", ""));
    return HelpDeck::Read(disk, "/help.mlb");
  }

  MemoryDisk disk;
};

TEST_F(SmallHelp, FindsTheInnermostPlaceAndTheLineOfAMessage) {
  const auto deck =
      Read(Row("000001", "<topic=\"One\"><b>Start</b><br>x", "Begin") +
           Row("000002", "<home><place=\"TF_dlopt TabLernen\"><message=\"Fehler Speichern\">Options", "") +
           Row("000003", "<index><place=\"TabKarten\"><message=\"Fehler\"><place=\"Last", ""));
  ASSERT_TRUE(deck);
  EXPECT_EQ(deck->StartCard(), 2);
  EXPECT_EQ(deck->IndexCard(), 3);
  EXPECT_EQ(deck->Card(1)->title, "Start");
  EXPECT_EQ(deck->Card(1)->chapter, "One");
  EXPECT_EQ(deck->Card(0), nullptr);
  EXPECT_EQ(deck->Card(4), nullptr);
  EXPECT_EQ(deck->CardOfPlace(std::vector<std::string>{"Edit", "", "TabKarten", "TF_dlopt"}), 3);
  EXPECT_EQ(deck->CardOfPlace(std::vector<std::string>{"TabLernen", "TabKarten"}), 2);
  EXPECT_EQ(deck->CardOfPlace(std::vector<std::string>{"TF_dl", "Last"}), 0);
  EXPECT_EQ(deck->CardOfMessage("\nFehler Speichern Kartei.\nx.mlb"), 2);
  EXPECT_EQ(deck->CardOfMessage("x\nFehler"), 3);
  EXPECT_EQ(deck->CardOfMessage("Kein Fehler"), 0);
}

TEST_F(SmallHelp, SearchesForAllWordsWhateverTheirCaseTitlesFirst) {
  const auto deck =
      Read(Row("000001", std::string("Die Kartei<br>Die Übersicht"_cp), "") +
           Row("000002", "Lernen", std::string("Übersicht"_cp)) +
           Row("000003", std::string("Übersicht<br>Kartei <a href=\"000002\">Lernen</a> <a href="_cp), "") +
           Row("000004", "Kartei", ""));
  ASSERT_TRUE(deck);
  const std::pair<std::string_view, std::vector<int>> kCases[] = {{"übersicht"_cp, {3, 2, 1}},
                                                                  {"KARTEI"_cp, {4, 1, 3}},
                                                                  {"kartei  ÜBER "_cp, {1, 3}},
                                                                  {"lernen"_cp, {2}},
                                                                  {"kartei lernen"_cp, {}},
                                                                  {" "_cp, {}},
                                                                  {"die\nü"_cp, {}}};
  for (const auto& [wanted, found] : kCases) EXPECT_EQ(deck->Search(wanted), found) << wanted;
}

TEST_F(SmallHelp, IsNothingWhereTheFileIsMissingOrNoHelp) {
  EXPECT_TRUE(!HelpDeck::Read(disk, "/none.mlb") && !HelpDeck::Read(disk, ""));
  EXPECT_TRUE(!Read("") && !Read(Row("000002", "a", "b")));
  EXPECT_FALSE(Read(Row("000001", "a", "b") + Row("000003", "a", "b")));
  disk.Put("/help.mlb", std::string("\0\xFF\x0F", 3));
  EXPECT_FALSE(HelpDeck::Read(disk, "/help.mlb"));
}

}  // namespace
}  // namespace tessaro
