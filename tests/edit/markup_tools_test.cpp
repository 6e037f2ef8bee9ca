#include "edit/markup_tools.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>

#include "cards/link_rewriting.h"
#include "edit/character_table.h"
#include "edit/link_making.h"
#include "edit/overview_cards.h"
#include "edit/picture_cards.h"
#include "edit/tag_spans.h"
#include "edit/topics.h"
#include "hypertext/plain_text.h"

namespace tessaro {
namespace {

// The side after an edit, with "[" and "]" around what is then selected.
std::string Show(std::string_view side, const SideEdit& edit) {
  std::string text = ApplyEdit(side, edit);
  text.insert(edit.selection.begin + edit.selection.length, "]");
  return text.insert(edit.selection.begin, "[");
}

TEST(MarkupTools, TagsReplaceTheSelectionAndPairsEncloseIt) {
  EXPECT_EQ(Show("abcd", InsertTag("abcd", {1, 2}, "<br>")), "a<br>[]d");
  EXPECT_EQ(Show("abcd", EncloseInTags("abcd", {1, 2}, "<b>", "</b>")), "a<b>[bc]</b>d");
  EXPECT_EQ(Show("abcd", EncloseInTags("abcd", {4, 0}, "<i>", "</i>")), "abcd<i>[]</i>");
  EXPECT_EQ(Show("abcd", InsertAtStart("abcd", {1, 2}, "<navigation>")), "<navigation>a[bc]d");
  // A selection of a text that has become shorter meanwhile.
  EXPECT_EQ(Show("ab", EncloseInTags("ab", {1, 9}, "<u>", "</u>")), "a<u>[b]</u>");
  EXPECT_EQ(Show("ab", InsertTag("ab", {9, 9}, "x")), "abx[]");
}

TEST(MarkupTools, DirectivesCarryTheirHint) {
  EXPECT_EQ(AttachmentTag(Attachment::Picture, "a.bmp"),
            "<#SHOW:a.bmp+ (Pluszeichen löschen = Grafik zuerst anzeigen)>"_cp);
  EXPECT_EQ(AttachmentTag(Attachment::Video, "a.avi"),
            "<#PLAY:a.avi+ (Pluszeichen löschen = Video zuerst anzeigen)>"_cp);
  EXPECT_EQ(AttachmentTag(Attachment::Text, "a.txt"),
            "<#TEXT:a.txt (.rtf! Ausrufezeichen anfügen = Text zuerst anzeigen)>"_cp);
  EXPECT_EQ(EmbedTag("a.wav") + FontSizeTag(6) + TopicTag("T"),
            "<embed src=\"a.wav\" width=\"353\" height=\"289\"><font size=\"6\"><topic=\"T\">");
}

TEST(MarkupTools, NamesThatTheMarkupCannotHoldAreTold) {
  const std::tuple<const char*, bool, bool> cases[] = {{"bild.bmp", true, true},     {"mein bild.bmp", true, false},
                                                       {"bild.v2.bmp", true, false}, {"a\"b.bmp", false, true},
                                                       {"a>b.bmp", false, false},    {"Bilder\\b.jpg", true, true},
                                                       {"bild.jpeg", true, false},   {"", false, false},
                                                       {"a.bmp", true, true}};
  for (const auto& [name, tag, attachment] : cases) {
    EXPECT_EQ(FitsInTag(name), tag) << name;
    EXPECT_EQ(FitsInAttachment(Attachment::Picture, name), attachment) << name;
    const std::string plain = PlainFileName(name);
    EXPECT_TRUE(FitsInTag(plain)) << plain;
  }
  EXPECT_EQ(PlainFileName("az AZ.v09.bmp"), "az_AZ_v09.bmp");
}

TEST(MarkupTools, BreaksAreTransferredOnce) {
  const std::pair<const char*, const char*> cases[] = {
      {"a\nb", "a<br>\nb"},     {"a<br>\nb", "a<br>\nb"},           {"a<br> \nb", "a<br> <br>\nb"},
      {"\n\n", "<br>\n<br>\n"}, {"a<BR>\nb", "a<BR><br>\nb"},       {"ab", "ab"},
      {"a\r\nb", "a<br>\nb"},   {"a<br>\r\nb\rc", "a<br>\r\nb\rc"}, {"", ""}};
  for (const auto& [side, after] : cases) {
    EXPECT_EQ(TransferLineBreaks(side), after) << side;
    EXPECT_EQ(TransferLineBreaks(after), after) << side;
  }
}

TEST(TagSpans, AreWhatTheCardDoesNotShow) {
  const std::array parts = {
      "<",    ">",    "a",      "\"",           "=",         "/",       "#",    "\n",   " ",           "<b>", "</b>",
      "<br>", "&lt;", "<embed", "<img src=\"x", "<topic=\"", "<#TEXT:", "\xE4", "\x0F", "<navigation>"};
  const auto letters = [](std::string text) {
    std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
    return text;
  };
  std::mt19937 random(1);
  for (int i = 0; i < 3000; ++i) {
    std::string side;
    for (size_t part = random() % 12; part > 0; --part) side += parts[random() % parts.size()];
    std::string text;
    size_t at = 0;
    for (const TagSpan& tag : FindTags(side)) {
      text.append(side, at, tag.begin - at);
      at = tag.begin + tag.length;
    }
    text.append(side, at);
    EXPECT_EQ(letters(PlainText(side)), letters(PlainText(text))) << side;
  }
}

TEST(TagSpans, LinksNameTheirCards) {
  using Tags = std::vector<TagSpan>;
  EXPECT_EQ(FindTags("<a href=\"000012\">x</a>"), (Tags{{0, 17, true, 12}, {18, 4}}));
  EXPECT_EQ(FindTags("<a href=\"x\">y"), (Tags{{0, 12, true, 0}}));
  EXPECT_EQ(FindTags("1 < 2"), Tags());
}

TEST(LinkMaking, KeepsThePlaceWhileTheTextAroundItIsChanged) {
  PendingLink link("Siehe Ofen hier", {6, 4});
  EXPECT_EQ(link.Shown(), "Siehe <+> hier");
  EXPECT_EQ(link.side(), "Siehe Ofen hier");
  EXPECT_EQ(link.Finish("Siehe Ofen hier", "000007", link.face()), "Siehe <a href=\"000007\">Ofen</a> hier");
  link.TakeShown("<+> Bitte siehe <+> dort");
  EXPECT_EQ(link.side(), "Ofen Bitte siehe <+> dort") << "the nearer marker is that of the link";
  link.TakeShown("Bitte siehe <+> dort");
  EXPECT_EQ(link.Finish("Bitte siehe Ofen dort", "000007", "x"), "Bitte siehe <a href=\"000007\">x</a> dort");
  EXPECT_FALSE(link.Finish("Von anderen geändert", "000007", "x"));
  link.TakeShown("ohne");
  EXPECT_FALSE(link.Finish("ohne", "000007", "x"));
  EXPECT_EQ(link.Shown(), "ohne");
}

TEST(LinkRewriting, FollowsWhatTheViewerFollows) {
  const NumberMap twice = [](int64_t number) -> std::optional<int64_t> {
    if (number == 4) return std::nullopt;
    return number * 2;
  };
  const std::pair<const char*, const char*> cases[] = {
      {"<a href=\"000005\">x</a>", "<a href=\"000010\">x</a>"},
      {"<A Href=\"5\">x</A> <a HREF=\" +7x\">", "<A Href=\"000010\">x</A> <a HREF=\"000014\">"},
      {"<a href=\"#00005\">", nullptr},
      {"<a href=\"00000005\">", nullptr},
      {"<a href=\"999991\"><a href=\"0\"><a href=\"-3\"><a href=\"\">", nullptr},
      {"<a href=\"4\"><a href=\"5", nullptr},
      {"<a href=\"5>\"> <a href=\"3\">", "<a href=\"5>\"> <a href=\"000006\">"},
      {"href=href=\"1\"href=\"2\"", "href=href=\"000002\"href=\"000004\""},
      {"<a href=\"<a href=\"3\">", "<a href=\"<a href=\"000006\">"},
      {"no link", nullptr}};
  for (const auto& [side, after] : cases)
    EXPECT_EQ(RewriteLinks(side, twice), after ? std::optional<std::string>(after) : std::nullopt) << side;
  const NumberMap same = [](int64_t number) { return std::optional(number); };
  EXPECT_FALSE(RewriteLinks("<a href=\"000005\">", same)) << "nothing to write";
}

TEST(PictureCards, PutTheNameIntoTheFirstQuotedPicture) {
  EXPECT_TRUE(IsPictureTemplate("x<img SRC=a>") && !IsPictureTemplate("x<Img src=\"a\">"));
  EXPECT_EQ(WithPicture("<img src=\"a.bmp\"><img src=\"b.bmp\">", "n.jpg"), "<img src=\"n.jpg\"><img src=\"b.bmp\">");
  EXPECT_EQ(WithPicture("<img SRC=\"a.bmp\" border=\"0\">", "n.jpg"), "<img SRC=\"n.jpg\" border=\"0\">");
  EXPECT_EQ(WithPicture("<img src=a.bmp>", "n.jpg"), "<img src=a.bmp>");
  EXPECT_EQ(WithPicture("<img src=\"a.bmp>", "n.jpg"), "<img src=\"a.bmp>");
}

TEST(Topics, AreQuotedNamesInEitherOfTwoForms) {
  using Names = std::vector<std::string_view>;
  EXPECT_EQ(TopicsOn("<topic=\"A\">b<TOPIC=\"B C\">"), (Names{"A", "B C"}));
  EXPECT_EQ(TopicsOn("<topic=A><topic=\"\"><Topic=\"x\"><topic=\"open"), Names{});
  EXPECT_EQ(TopicsOn("<topic=\"a>b\"><topic=\"c\">"), Names{"c"});
  EXPECT_TRUE(HasTopic("x", "<topic=\"A\">", "A") && !HasTopic("<topic=\"AB\">", "", "A"));
}

TEST(CharacterTable, ComesBackAsTheUserLeftIt) {
  IniFile settings;
  const std::string standard = ReadCharacters(settings, EditSide::Front);
  EXPECT_NE(standard.find("€"_cp), std::string::npos);
  EXPECT_EQ(standard.find('\x81'), std::string::npos);
  WriteCharacters("a \xFF;\"", EditSide::Back, settings);
  EXPECT_EQ(ReadCharacters(settings, EditSide::Back), "a \xFF;\"");
  EXPECT_EQ(ReadCharacters(settings, EditSide::Front), standard);
  settings.SetString("ZEICHEN", "SIGN", "65 7 66");
  EXPECT_EQ(ReadCharacters(settings, EditSide::Front), standard) << "a line end is no character";
}

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
  EXPECT_EQ(overview.cards[0].question, Joined({"<navigation><automap><font size=\"14\">Kartenübersicht<br><br>"_cp,
                                                kIndent, "<a href=\"000003\">o</a>    <a href=\"x\">o</a>    "}));
  EXPECT_TRUE(RowOrderOverview({}, {"o", "oo"}, 8).cards.empty());
}

TEST(OverviewCards, LineEndsStandBehindTenEntriesThatAreFollowed) {
  for (const auto& [cards, lines] : {std::pair(10, 0), {11, 1}, {20, 1}, {21, 2}, {100, 9}}) {
    const Overview overview = RowOrderOverview(Ids(cards), {"card.bmp", ""}, 200);
    const std::string& question = overview.cards[0].question;
    EXPECT_EQ(Count(question, Joined({"</a>    <br>", kIndent, "<a"})), static_cast<size_t>(lines)) << cards;
    EXPECT_TRUE(question.ends_with("</a>    ")) << "none behind the last of " << cards;
    EXPECT_EQ(Count(question, "<a href=\"000010\"><img src=\"card.bmp\"></a>    "), 1U);
  }
}

TEST(OverviewCards, PartsLeadOnAndAnIndexLeadsToThem) {
  const Overview overview = RowOrderOverview(Ids(201), {"o", "g.bmp"}, 500);
  ASSERT_EQ(overview.cards.size(), 4U);
  EXPECT_EQ(overview.start, 503);
  const auto head = [&](size_t card, std::initializer_list<std::string_view> text) {
    EXPECT_TRUE(overview.cards[card].question.starts_with(Joined(text)))
        << overview.cards[card].question.substr(0, 120);
  };
  constexpr std::string_view kTitle = "<navigation><automap><font size=\"14\">Kartenübersicht"_cp;
  head(0, {kTitle, " Teil 1   <a href=\"000501\">weiter-></a><br><br>", kIndent, "<a href=\"000001\">o</a>"});
  head(1, {kTitle, " Teil 2   <a href=\"000502\">weiter-></a><br><br>", kIndent, "<a href=\"000101\">o</a>"});
  head(2, {kTitle, " Teil 3<br><br>", kIndent, "<a href=\"000201\">o</a>    "});
  EXPECT_EQ(overview.cards[3].question,
            Joined({"<navigation><automap><index><font size=\"14\">Index Kartenübersicht<br><br>"_cp, kIndent,
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
      Joined({"<navigation><automap><index><font size=\"14\">Index Kartenübersicht Teil 1   <a href=\"020102\">"_cp,
              "weiter -></a><br><br>", kIndent, "<a href=\"020000\">g</a>"})));
  for (const int64_t entries : {0, 1, 100, 101, 10000}) {
    EXPECT_EQ(RowOrderCards(entries),
              static_cast<int64_t>(RowOrderOverview(Ids(static_cast<int>(entries)), {"o", "g"}, 1).cards.size()));
  }
}

TEST(OverviewCards, TopicOverviewsAreRecognisedByTheirTitle) {
  const Overview one = TopicOverview(Ids(3), "A", "", {"o", ""}, 9);
  EXPECT_EQ(one.cards[0].question,
            Joined({"<navigation><autotopic><font size=\"14\">A <br><br>", kIndent,
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
  EXPECT_EQ(once, Joined({"Index \n<br><a href=\"000007\">", kRowOrderFace, "</a>"}));
  EXPECT_EQ(WithOverviewLink(once, 12, kRowOrderFace),
            Joined({"Index \n<br><a href=\"000012\">", kRowOrderFace, "</a>"}));
  EXPECT_EQ(WithOverviewLink(once, 12, "A"), Joined({once, " \n<br><a href=\"000012\">A</a>"}));
  EXPECT_EQ(WithOverviewLink("\">A</a>", 1, "A"), "\">A</a> \n<br><a href=\"000001\">A</a>");
}

}  // namespace
}  // namespace tessaro
