#include "edit/overview_cards.h"

#include <gtest/gtest.h>

#include <deque>

#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr std::string_view kIndent = "             ";

std::vector<std::string_view> Ids(int count) {
  static std::deque<std::string> texts;
  while (static_cast<int>(texts.size()) < count) texts.push_back(IdText(static_cast<int64_t>(texts.size()) + 1));
  return {texts.begin(), texts.begin() + count};
}

size_t Count(std::string_view text, std::string_view part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

std::string Text(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

struct Overview {
  struct Card {
    int64_t id;
    std::string question;
  };
  std::vector<Card> cards;
  int64_t start = 0;

  TakeGenerated Take() {
    return [this](int64_t id, std::string_view question) { cards.push_back({id, std::string(question)}); };
  }
};

PackedFields Packed(const std::vector<std::string_view>& ids) {
  PackedFields packed;
  for (const std::string_view id : ids) packed.AddRow({{1, id}});
  return packed;
}

Overview RowOrderOverview(const std::vector<std::string_view>& ids, const OverviewSymbols& symbols, int64_t first_id) {
  Overview overview;
  overview.start = GenerateRowOrder(Packed(ids), symbols, first_id, overview.Take());
  return overview;
}

Overview TopicOverview(const std::vector<std::string_view>& ids, std::string_view topic1, std::string_view topic2,
                       const OverviewSymbols& symbols, int64_t first_id) {
  Overview overview;
  overview.start = GenerateTopic(Packed(ids), topic1, topic2, symbols, first_id, overview.Take());
  return overview;
}

TEST(OverviewCards, FewCardsFillOnePart) {
  const Overview overview = RowOrderOverview({"000003", "x"}, {"o", "oo"}, 8);
  ASSERT_EQ(overview.cards.size(), 1U);
  EXPECT_EQ(overview.start, 8);
  EXPECT_EQ(overview.cards[0].question, Text({"<navigation><automap><font size=\"14\">Kartenübersicht<br><br>"_cp,
                                              kIndent, "<a href=\"000003\">o</a>    <a href=\"x\">o</a>    "}));
  EXPECT_TRUE(RowOrderOverview({}, {"o", "oo"}, 8).cards.empty());
}

TEST(OverviewCards, LineEndsStandBehindTenEntriesThatAreFollowed) {
  for (const auto& [cards, lines] : {std::pair(10, 0), {11, 1}, {20, 1}, {21, 2}, {100, 9}}) {
    const Overview overview = RowOrderOverview(Ids(cards), {"card.bmp", ""}, 200);
    const std::string& question = overview.cards[0].question;
    EXPECT_EQ(Count(question, Text({"</a>    <br>", kIndent, "<a"})), static_cast<size_t>(lines)) << cards;
    EXPECT_TRUE(question.ends_with("</a>    ")) << "none behind the last of " << cards;
    EXPECT_EQ(Count(question, "<a href=\"000010\"><img src=\"card.bmp\"></a>    "), 1U);
  }
}

TEST(OverviewCards, PartsLeadOnAndAnIndexLeadsToThem) {
  const Overview overview = RowOrderOverview(Ids(201), {"o", "g.bmp"}, 500);
  ASSERT_EQ(overview.cards.size(), 4U);
  EXPECT_EQ(overview.start, 503);
  const auto head = [&](size_t card, std::initializer_list<std::string_view> text) {
    EXPECT_TRUE(overview.cards[card].question.starts_with(Text(text))) << overview.cards[card].question.substr(0, 120);
  };
  constexpr std::string_view kTitle = "<navigation><automap><font size=\"14\">Kartenübersicht"_cp;
  head(0, {kTitle, " Teil 1   <a href=\"000501\">weiter-></a><br><br>", kIndent, "<a href=\"000001\">o</a>"});
  head(1, {kTitle, " Teil 2   <a href=\"000502\">weiter-></a><br><br>", kIndent, "<a href=\"000101\">o</a>"});
  head(2, {kTitle, " Teil 3<br><br>", kIndent, "<a href=\"000201\">o</a>    "});
  EXPECT_EQ(overview.cards[3].question,
            Text({"<navigation><automap><index><font size=\"14\">Index Kartenübersicht<br><br>"_cp, kIndent,
                  "<a href=\"000500\"><img src=\"g.bmp\" border=\"0\"></a>    ",
                  "<a href=\"000501\"><img src=\"g.bmp\" border=\"0\"></a>    ",
                  "<a href=\"000502\"><img src=\"g.bmp\" border=\"0\"></a>    "}));
}

TEST(OverviewCards, IndexOfManyPartsHasPartsItself) {
  const Overview overview = RowOrderOverview(Ids(10001), {"o", "g"}, 20000);
  ASSERT_EQ(static_cast<int64_t>(overview.cards.size()), RowOrderCards(10001));
  ASSERT_EQ(overview.cards.size(), 103U);
  EXPECT_EQ(overview.start, overview.cards[101].id);
  EXPECT_TRUE(overview.cards[101].question.starts_with(
      Text({"<navigation><automap><index><font size=\"14\">Index Kartenübersicht Teil 1   <a href=\"020102\">"_cp,
            "weiter -></a><br><br>", kIndent, "<a href=\"020000\">g</a>"})));
  for (const int64_t entries : {0, 1, 100, 101, 10000}) {
    EXPECT_EQ(RowOrderCards(entries),
              static_cast<int64_t>(RowOrderOverview(Ids(static_cast<int>(entries)), {"o", "g"}, 1).cards.size()));
  }
}

TEST(OverviewCards, TopicOverviewsAreRecognisedByTheirTitle) {
  const Overview one = TopicOverview(Ids(3), "A", "", {"o", ""}, 9);
  EXPECT_EQ(one.cards[0].question,
            Text({"<navigation><autotopic><font size=\"14\">A <br><br>", kIndent,
                  "<a href=\"000001\">o</a>    <a href=\"000002\">o</a>    <a href=\"000003\">o</a>    "}));
  const Overview two = TopicOverview(Ids(150), "A", "B", {"o", ""}, 900);
  ASSERT_EQ(two.cards.size(), 2U);
  EXPECT_EQ(two.start, 900);
  EXPECT_TRUE(two.cards[0].question.starts_with(
      "<navigation><autotopic><font size=\"14\">A - B Teil 1   <a href=\"000901\">weiter-></a><br><br>"));
  EXPECT_TRUE(two.cards[1].question.starts_with("<navigation><autotopic><font size=\"14\">A - B Teil 2<br><br>"));
  const Overview similar = TopicOverview(Ids(1), "A Teil 1", "", {"o", ""}, 9);
  for (const std::string_view title : {"A", "A - B", "A Teil 1"}) {
    EXPECT_EQ(IsTopicOverview(one.cards[0].question, title), title == "A");
    EXPECT_EQ(IsTopicOverview(two.cards[0].question, title), title == "A - B");
    EXPECT_EQ(IsTopicOverview(two.cards[1].question, title), title == "A - B");
    EXPECT_EQ(IsTopicOverview(similar.cards[0].question, title), title == "A Teil 1");
  }
  EXPECT_EQ(TopicTitle("A", "A"), "A");
}

TEST(OverviewCards, LinkOnTheIndexCardIsReplacedNotAddedAgain) {
  const std::string once = WithOverviewLink("Index", 7, kRowOrderFace);
  EXPECT_EQ(once, Text({"Index \n<br><a href=\"000007\">", kRowOrderFace, "</a>"}));
  EXPECT_EQ(WithOverviewLink(once, 12, kRowOrderFace),
            Text({"Index \n<br><a href=\"000012\">", kRowOrderFace, "</a>"}));
  EXPECT_EQ(WithOverviewLink(once, 12, "A"), Text({once, " \n<br><a href=\"000012\">A</a>"}));
  EXPECT_EQ(WithOverviewLink("\">A</a>", 1, "A"), "\">A</a> \n<br><a href=\"000001\">A</a>");
}

}  // namespace
}  // namespace tessaro
