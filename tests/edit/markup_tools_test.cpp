#include "edit/markup_tools.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "cards/link_rewriting.h"
#include "edit/character_table.h"
#include "edit/link_making.h"
#include "edit/picture_cards.h"
#include "edit/tag_spans.h"
#include "edit/topics.h"
#include "hypertext/plain_text.h"
#include "platform/code_page.h"

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
  EXPECT_EQ(PlainFileName("mein Bild.v2.bmp"), "mein_Bild_v2.bmp");
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

}  // namespace
}  // namespace tessaro
