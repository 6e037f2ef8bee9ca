#include "hypertext/markup.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

namespace tessaro {
namespace {

using Kind = MarkupItem::Kind;

std::string DumpMedia(const char* kind, const MarkupItem& item) {
  std::string dump = std::string(kind) + "(" + item.text;
  if (item.width != 0 || item.height != 0) dump += " " + std::to_string(item.width) + "x" + std::to_string(item.height);
  return dump + (item.framed ? " framed)" : ")");
}

std::string Dump(const MarkupItem& item) {
  const std::string text = "'" + item.text + "'";
  const std::string onoff = item.on ? "+" : "-";
  const std::map<Kind, std::string> dumps = {
      {Kind::Blank, "_"},
      {Kind::WordEnd, "|"},
      {Kind::LineBreak, "br"},
      {Kind::Bold, onoff + "b"},
      {Kind::Italic, onoff + "i"},
      {Kind::Underline, onoff + "u"},
      {Kind::FontSize, "+" + std::to_string(item.points)},
      {Kind::FontSizeEnd, "-size"},
      {Kind::Text, text},
      {Kind::Picture, DumpMedia("img", item)},
      {Kind::Video, DumpMedia("video", item)},
      {Kind::Sound, "sound(" + item.text + ")"},
      {Kind::Link, std::to_string(item.target) + "->" + (item.picture_face ? DumpMedia("img", item) : text)}};
  return dumps.at(item.kind);
}

std::string Items(std::string_view side) {
  MarkupReader reader(side);
  MarkupItem item;
  std::string items;
  while (reader.Next(item)) items += (items.empty() ? "" : " ") + Dump(item);
  return items;
}

// Sides, and the items in each of them.
void Check(const std::vector<std::pair<std::string, std::string>>& cases) {
  for (const auto& [side, items] : cases) EXPECT_EQ(Items(side), items) << side;
}

TEST(Markup, TextIsReadInWords) {
  Check({
      // A word ends at the first blank, the further ones begin the next.
      {"", ""},
      {"a  b", "'a' _ ' b'"},
      {"  a   b ", "'  a' _ '  b' _"},
      {"<br>             x", "br '             x'"},
      {"a\tb\x0F", "'a\tb\x0F'"},
      // A line feed is a blank only directly behind a letter or link.
      {"a\r\nb", "'a' _ 'b'"},
      {"a \nb", "'a' _ 'b'"},
      {"a\n b", "'a' _ ' b'"},
      {"a  \n b", "'a' _ ' ' | ' b'"},
      {"\n<br>\na", "br 'a'"},
      {"<b>a</b>\nb", "+b 'a' -b _ 'b'"},
      {"<a href=\"1\">x</a>\nb", "1->'x' _ 'b'"},
      {"a\rb\r", "'ab'"},
      // Tags inside a word do not end it.
      {"a<b>b</b>c d", "'a' +b 'b' -b 'c' _ 'd'"},
      {"a<navigation>b<#SHOW:x.bmp+ (Plus)> c", "'ab' _ 'c'"},
      {"a <u> b", "'a' _ +u ' b'"},
  });
}

TEST(Markup, TagsAndEntities) {
  Check({
      // In any case; unknown ones are left out, unfinished ones are text.
      {"<B>x</B><I></i><U></u><BR><Br>", "+b 'x' -b +i -i +u -u br br"},
      {"<navigation><HOME><index><automap><topic=\"a > b\">x", "' b\">x'"},
      {"<b >x<br/></p><+++>", "'x'"},
      {"<<b>x", "'x'"},
      {"<b\r>x<b\n>y", "+b 'xy'"},
      {"a < b", "'a' _ '<' _ 'b'"},
      {"<b>x</b", "+b 'x</b'"},
      // There are two entities.
      {"&lt;b&gt; &amp; &LT; &lt", "'<b>' _ '&amp;' _ '&LT;' _ '&lt'"},
      {"&&lt;lt;", "'&<lt;'"},
      {"<a href=\"1\">a&lt;b&gt;</a>", "1->'a<b>'"},
      // All digits of a font tag are its size.
      {"<font size=\"14\">x</font>", "+14 'x' -size"},
      {"<FONT SIZE=9>", "+9"},
      {"<font size=\"1\" color=\"2\">", "+12"},
      {"<font size=\"0\"><font size=\"\">", "+0 +0"},  // as it is
      {"<font size=\"99999999999999999999\">", "+400"},
      {"<font color=\"3\"></FONT>", "-size"},
      {"</font size=7>", "+7"},
  });
}

TEST(Markup, Links) {
  Check({
      // Targets are numbers of up to seven characters.
      {"<a href=\"000042\">x</a>", "42->'x'"},
      {"<A HREF=\"0999990\">x</A>", "999990->'x'"},
      {"<a href=\"999991\">x</a>", "0->'x'"},
      {"<a href=\"00000012\">x</a>", "0->'x'"},
      {"<a href=\"-5\">x</a><a href=\"\">y</a><a href=\"x1\">z</a>", "0->'x' | 0->'y' | 0->'z'"},
      {"<a href=\" 12b\">x</a>", "12->'x'"},
      {"<a href=\"12>x</a>", "0->'x'"},
      {"<a href=12>x</a>", "'x'"},
      // A face is one piece without tags, or a picture.
      {"<a href=\"1\">New  <b>York</b><br>City</a>", "1->'New  YorkCity'"},
      {"<a href=\"1\">a\n\nb \nc</a>", "1->'a b c'"},
      {"<a href=\"1\">a < b</A>c", "1->'a < b' 'c'"},
      {"<a href=\"1\">to the end </b> of it", "1->'to the end  of it'"},
      {"<a href=\"1\">x</address>y", "1->'x' 'y'"},
      {"<a href=\"1\"><img src=\"p.bmp\"></a>", "1->img(p.bmp framed)"},
      {"<a href=\"000001\">a <IMG SRC=\"p.bmp\" border=\"0\" width=\"9\"> b</a>c", "1->img(p.bmp 9x0) 'c'"},
      {"<a href=\"1\">img src</a>", "1->img( framed)"},
  });
}

TEST(Markup, PicturesSoundsAndVideos) {
  Check({
      // Links and pictures end the word before them, but only in their usual forms.
      {"a<a href=\"1\">x</a>.", "'a' | 1->'x' '.'"},
      {"a<A HREF=\"1\">x</a><a href=\"2\">y</a>", "'a' | 1->'x' | 2->'y'"},
      {"a<a HREF=\"1\">x</a> b", "'a' 1->'x' _ 'b'"},
      {"<a href=\"1\">x</a>    <a href=\"2\">y</a>", "1->'x' _ '   ' | 2->'y'"},
      {"a<img src=\"p.bmp\" border=\"0\">b", "'a' _ img(p.bmp) 'b'"},
      {"a<IMG SRC=\"p.bmp\">", "'a' _ img(p.bmp framed)"},
      {"a<Img src=\"p.bmp\">b", "'a' img(p.bmp framed) 'b'"},
      // Attributes are found by substring, and only in quotes.
      {"<img src=\"p.jpg\" width=\"30\" height=\"20\" border=\"2\">", "img(p.jpg 30x20 framed)"},
      {"<img src=\"P.jpg\" width=30 height=\"x\">", "img(P.jpg framed)"},
      {"<img src=p.jpg width=\"30\">", "img(30 30x0 framed)"},
      {"<img src=\"p.jpg>x", "img( framed) 'x'"},
      {"<img src=\"p.jpg\" width=\"99999999999\" height=\"-4\">", "img(p.jpg 1000000x0 framed)"},
      {"<img src=\"border.bmp\" border=\"1\">", "img(border.bmp)"},
      {"<img src=\"a.bmp\" border=\" -1\"><img src=\"a.bmp\" border=\"-0\">", "img(a.bmp framed) img(a.bmp)"},
      // The ending decides what is embedded.
      {"a<embed src=\"s.wav\">b", "'a' sound(s.wav) 'b'"},
      {"a<img embed src=\"s.wav\">b", "'a' _ sound(s.wav) 'b'"},
      {"<EMBED SRC=\"f.AVI\" width=\"353\" height=\"289\">", "video(f.AVI 353x289 framed)"},
      {"<embed src=\"f.mpeg\">x", "'x'"},
      {"<embed src=\"f.mpg\"> x <embed src=\"g.avi\">y", "video(f.mpg framed) ' x' _ 'y'"},
      {"<img src=\"embed.bmp\">", "sound(embed.bmp)"},
  });
}

}  // namespace
}  // namespace tessaro
