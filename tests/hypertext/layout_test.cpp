#include "hypertext/layout.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/hypertext/fixed_measurer.h"

namespace tessaro {
namespace {

constexpr PixelSize kFrame = {200, 100};
constexpr int kPoints = 20;  // a letter is 10 wide and 20 high

void Dump(const Fragment& fragment, std::ostream& out) {
  const bool picture = fragment.kind == Fragment::Kind::Picture;
  if (fragment.kind == Fragment::Kind::Text) {
    out << "'" << fragment.text << "' ";
    // Where the letters stand, as FixedMeasurer makes them.
    EXPECT_EQ(fragment.baseline, fragment.rect.top + fragment.style.points * 3 / 4) << fragment.text;
  } else {
    out << (picture ? "img(" : "video(") << fragment.text << ") ";
  }
  const PixelRect& rect = fragment.rect;
  out << rect.left << "," << rect.top << " " << rect.width << "x" << rect.height;
  out << (fragment.style.from_right ? " <" : "") << (fragment.style.bold ? " b" : "")
      << (fragment.style.italic ? " i" : "");
  out << (fragment.style.underline ? " u" : "") << (fragment.framed ? " framed" : "");
  out << (fragment.transparent ? " transparent" : "");
  if (fragment.colour != ColourClass::Text) out << " colour " << static_cast<int>(fragment.colour);
  out << "\n";
}

std::string Dump(const Layout& layout) {
  std::ostringstream out;
  for (const Fragment& fragment : layout.fragments) Dump(fragment, out);
  for (const LinkArea& area : layout.links.areas()) {
    out << "link " << area.left << "," << area.top << " to " << area.right << "," << area.bottom << ": " << area.target
        << "\n";
  }
  for (const std::string& sound : layout.sounds) out << "sound " << sound << "\n";
  if (layout.broken_off) out << "broken off\n";
  if (layout.size != kFrame) out << "size " << layout.size.width << "x" << layout.size.height << "\n";
  return out.str();
}

struct LayoutOf : testing::Test {
  FixedMeasurer measurer;
  Layout Lay(std::string_view side) { return LayOut(side, kFrame, kPoints, measurer); }
  // Sides and their layouts.
  void Check(const std::vector<std::pair<std::string, std::string>>& cases) {
    for (const auto& [side, layout] : cases) EXPECT_EQ(Dump(Lay(side)), layout) << side;
  }
  void SetUp() override {
    measurer.pictures = {{"p.bmp", {40, 30}},      {"p.jpg", {40, 30}},           {"punkt.jpg", {1, 1}},
                         {"breit.jpg", {300, 10}}, {"riesig.bmp", {40960, 4096}}, {"leer.jpg", {0, 1}}};
    measurer.sounds = {"s.wav"};
    measurer.unreadable = {"kaputt.jpg"};
    measurer.colours = {{1, ColourClass::Green}, {2, ColourClass::Red}};
  }
};

TEST_F(LayoutOf, TextInLines) {
  Check({
      // Every blank is one blank of advance.
      {"a  b", "'a' 5,5 10x20\n' b' 25,5 20x20\n"},
      {"a<font size=\"40\"> </font>b", "'a' 5,5 10x20\n'b' 35,5 10x20\n"},
      // Words wrap whole at the width of the frame, which only a wider word leaves.
      {"aaaaaaaaaaaaaaaaaaaaaaaaa bb cc",
       "'aaaaaaaaaaaaaaaaaaaaaaaaa' 5,5 250x20\n'bb' 5,25 20x20\n'cc' 35,25 20x20\nsize 260x100\n"},
      {"aaaaaaaaaa bbbbbbbb<font size=\"10\">c</font>",  // just fits
       "'aaaaaaaaaa' 5,5 100x20\n'bbbbbbbb' 115,5 80x20\n'c' 195,13 5x10\n"},
      {"aaaaaaaaaa bbbbbbbbb", "'aaaaaaaaaa' 5,5 100x20\n'bbbbbbbbb' 5,25 90x20\n"},
      {"aaaaaaaaaa bbbb<i>bbbbb</i>", "'aaaaaaaaaa' 5,5 100x20\n'bbbb' 5,25 40x20\n'bbbbb' 45,25 50x20 i\n"},
      {"aaaaaaaaaaaaaaaaaaa  b", "'aaaaaaaaaaaaaaaaaaa' 5,5 190x20\n' b' 5,25 20x20\n"},
      // A line has the height of its largest letter or of the current size, and one base line.
      {"a<font size=\"40\">B</font>c<br>d", "'a' 5,20 10x20\n'B' 15,5 20x40\n'c' 35,20 10x20\n'd' 5,45 10x20\n"},
      {"a<br><br>b", "'a' 5,5 10x20\n'b' 5,45 10x20\n"},
      {"<br><font size=\"30\"><br></font>b", "'b' 5,55 10x20\n"},
      {"a <br>b", "'a' 5,5 10x20\n'b' 5,25 10x20\n"},
      // Styles are switches, not counters.
      {"<b><b>x</b>y", "'x' 5,5 10x20 b\n'y' 15,5 10x20\n"},
      {"</b><i>x<u>y</i>z", "'x' 5,5 10x20 i\n'y' 15,5 10x20 i u\n'z' 25,5 10x20 u\n"},
      {"<u>a b</u> c", "'a' 5,5 20x20 u\n'b' 25,5 10x20 u\n'c' 45,5 10x20\n"},
  });
}

TEST_F(LayoutOf, FontSizesAreAStackOfTwentyWithTheStartSize) {
  std::string side;
  for (int size = 21; size <= 45; ++size) side += "<font size=\"" + std::to_string(size) + "\">";
  EXPECT_EQ(Lay(side + "x").fragments.back().style.points, 39);
  for (int i = 0; i < 18; ++i) side += "</font>";
  EXPECT_EQ(Lay(side + "x").fragments.back().style.points, 21);
  EXPECT_EQ(Lay("<font size=\"30\"><font size=\"0\">a</font>b").fragments.back().style.points, 30);
  EXPECT_EQ(Lay(side + "</font></font></font>x").fragments.back().style.points, kPoints);
  EXPECT_EQ(LayOut("x", kFrame, 5000, measurer).fragments.back().style.points, 400);
}

TEST_F(LayoutOf, LinksPicturesAndMedia) {
  Check({
      // A text link is one underlined piece with an area.
      {"<a href=\"1\">x y</a>.", "'x y' 5,5 30x20 u colour 1\n'.' 35,5 10x20\nlink 5,5 to 34,24: 1\n"},
      {"aaaaaaaaaaaa <a href=\"2\">b c d</a> <a href=\"0\">e</a>",
       "'aaaaaaaaaaaa' 5,5 120x20\n'b c d' 135,5 50x20 u colour 2\n'e' 5,25 10x20 u colour 3\n"
       "link 135,5 to 184,24: 2\nlink 5,25 to 14,44: 0\n"},
      {"aaaaaaaaaaaaaaa <a href=\"2\">b c</a>!",
       "'aaaaaaaaaaaaaaa' 5,5 150x20\n'b c' 5,25 30x20 u colour 2\n'!' 35,25 10x20\nlink 5,25 to 34,44: 2\n"},
      {"<a href=\"1\"></a>b", "'' 5,5 0x20 u colour 1\n'b' 5,5 10x20\n"},
      // Plain pictures stand on lines of their own.
      {"a<img src=\"p.bmp\">b", "'a' 5,5 10x20\nimg(p.bmp) 5,25 40x30 framed transparent\n'b' 5,57 10x20\n"},
      {"<img src=\"p.jpg\" border=\"0\"><img src=\"p.bmp\" border=\"0\"> b",
       "img(p.jpg) 5,5 40x30\nimg(p.bmp) 5,37 40x30 transparent\n' b' 5,69 20x20\n"},
      {"a<img src=\"fehlt.bmp\">b", "'a' 5,5 10x20\n'b' 25,5 10x20\n"},
      {"<img src=\"leer.jpg\"><img src=\"punkt.jpg\">", "img(punkt.jpg) 5,5 1x1 framed\n"},
      {"a<Img src=\"fehlt.bmp\">b", "'a' 5,5 10x20\n'b' 15,5 10x20\n"},
      {"<img src=\"breit.jpg\">aaaaaaaaa bbbbbbbbbbb",
       "img(breit.jpg) 5,5 300x10 framed\n'aaaaaaaaa' 5,17 90x20\n'bbbbbbbbbbb' 5,37 110x20\nsize 310x100\n"},
      // Sizes of pictures keep proportions and bounds.
      {"<img src=\"p.bmp\" width=\"20\">", "img(p.bmp) 5,5 20x15 framed\n"},
      {"<img src=\"p.bmp\" height=\"60\">", "img(p.bmp) 5,5 80x60 framed\n"},
      {"<img src=\"p.bmp\" width=\"10\" height=\"60\">", "img(p.bmp) 5,5 10x60 framed\n"},
      {"<img src=\"p.bmp\" width=\"40\" height=\"30\">", "img(p.bmp) 5,5 40x30 framed transparent\n"},
      {"<img src=\"riesig.bmp\">", "img(riesig.bmp) 5,5 4096x410 framed\nsize 4106x425\n"},
      {"<img src=\"p.bmp\" width=\"1\" height=\"999999\">", "img(p.bmp) 5,5 1x4096 framed\nsize 200x4111\n"},
      // Picture links stand in the line like words.
      {"a <a href=\"1\"><img src=\"p.jpg\"></a> b",
       "'a' 5,11 10x20\nimg(p.jpg) 25,6 40x30 framed colour 1\n'b' 77,11 10x20\nlink 25,6 to 64,35: 1\n"},
      {"aaaaaaaaaaaa aaa<a href=\"2\"><img src=\"p.bmp\" border=\"0\"></a><br>b",
       "'aaaaaaaaaaaa' 5,5 120x20\n'aaa' 135,5 30x20\nimg(p.bmp) 5,26 40x30 transparent colour 2\n'b' 5,57 10x20\n"
       "link 5,26 to 44,55: 2\n"},
      {"a <a href=\"1\"><img src=\"fehlt.jpg\"></a>b", "'a' 5,5 10x20\n'b' 25,5 10x20\n"},
      // An unreadable picture ends the side, only the first video is placed, sounds are collected.
      {"a <img src=\"kaputt.jpg\"> b", "'a' 5,5 10x20\nbroken off\n"},
      {"<embed src=\"f.avi\" width=\"60\" height=\"40\">a<embed src=\"g.avi\">b",
       "video(f.avi) 5,5 60x40 framed\n'ab' 5,47 20x20\n"},
      {"<embed src=\"f.mpg\">", "video(f.mpg) 5,5 353x289 framed\nsize 363x304\n"},
      {"a<embed src=\"s.wav\">b<embed src=\"fehlt.wav\">", "'a' 5,5 10x20\n'b' 15,5 10x20\nsound s.wav\n"},
  });
}

TEST_F(LayoutOf, ThePaintBoxGrowsByTenBelowContentThatLeavesIt) {
  EXPECT_EQ(Lay("a<br>a<br>a<br>a").size, kFrame);
  EXPECT_EQ(Lay("a<br>a<br>a<br>a<br>a").size, (PixelSize{200, 115}));
  EXPECT_EQ(LayOut("ab c", {0, 0}, kPoints, measurer).size, (PixelSize{30, 55}));
}

TEST_F(LayoutOf, TheLastLinkBeyondTheTableTakesTheOverflowEntry) {
  std::string side;
  for (int i = 1; i <= 120; ++i) side += "<a href=\"" + std::to_string(i) + "\">x</a><br>";
  const Layout layout = Lay(side);
  ASSERT_EQ(layout.links.areas().size(), LinkAreas::kEntries + 1);
  for (const int line : {1, 110, 111, 119, 120}) {
    const auto hit = layout.links.IndexAt(7, 5 + (line - 1) * 20 + 10);
    ASSERT_EQ(hit.has_value(), line <= 110 || line == 120) << line;
    EXPECT_EQ(hit ? layout.links.areas()[*hit].target : line, line);
  }
}

TEST(LinkAreas, HitsCountBordersAndPreferTheLastDrawn) {
  LinkAreas areas;
  areas.Add({10, 10, 30, 40, 1});
  areas.Add({40, 20, 30, 60, 2});
  const std::tuple<int, int, std::optional<size_t>> cases[] = {{10, 10, 0}, {39, 30, 0}, {40, 20, 1},  {40, 10, 0},
                                                               {60, 30, 1}, {9, 10, {}}, {10, 31, {}}, {61, 20, {}}};
  for (const auto& [x, y, hit] : cases) EXPECT_EQ(areas.IndexAt(x, y), hit) << x << "," << y;
}

TEST_F(LayoutOf, HostileSidesStayBounded) {
  for (const char* part : {"a ", "<", "<<b>", "<a href=\"1\">", "<img src=\"riesig.bmp\">", "<font size=\"400\"><br>",
                           "a<b>", "&lt;", "<a href=\"1\">x</a>", "<embed src=\"s.wav\">", "x"}) {
    std::string side;
    while (side.size() < 1 << 20) side += part;
    const Layout layout = Lay(side);
    EXPECT_LE(layout.fragments.size(), kMaxFragments) << side.substr(0, 20);
    EXPECT_LE(layout.size.width, kMaxExtent + 1000) << side.substr(0, 20);
    EXPECT_LE(layout.size.height, kMaxExtent + kMaxMediaPixels + 1000) << side.substr(0, 20);
    EXPECT_LE(measurer.longest_text, Measurer::kLongestPiece) << side.substr(0, 20);
  }
  const Layout layout = Lay("<a href=\"1\">" + std::string(2500, 'x') + "</a>");
  ASSERT_EQ(layout.links.areas().size(), 1U);
  EXPECT_EQ(layout.links.areas()[0].right, 5 + 25000 - 1) << "a long face in pieces is one area";
}

// Hebrew bytes are upright letters here: "\xE0" is alef.
TEST_F(LayoutOf, LinesThatRunFromRightToLeft) {
  measurer.page = CodePage(CharacterSet::Hebrew);
  Check({
      {"\xE0\xE1 \xE2", "'\xE0\xE1' 175,5 20x20 <\n'\xE2' 155,5 10x20 <\n"},
      // Words in Latin letters and numbers keep their order among themselves.
      {"\xE0 ab 12 \xE1",
       "'\xE0' 185,5 10x20 <\n'ab' 125,5 20x20\n'1' 155,5 10x20\n'2' 165,5 10x20\n'\xE1' 105,5 10x20 <\n"},
      {"\xE0-7(\xE1)",
       "'\xE0' 185,5 10x20 <\n'-' 175,5 10x20 <\n'7' 165,5 10x20\n'(' 155,5 10x20 <\n"
       "'\xE1' 145,5 10x20 <\n')' 135,5 10x20 <\n"},
      // The blank at the end of a full line takes no room.
      {std::string(19, '\xE0') + " \xE1", "'" + std::string(19, '\xE0') + "' 5,5 190x20 <\n'\xE1' 185,25 10x20 <\n"},
      {std::string(25, '\xE0'), "'" + std::string(25, '\xE0') + "' 5,5 250x20 <\nsize 260x100\n"},
      {"<a href=\"1\">\xE0 b</a> \xE1",
       "'\xE0' 185,5 10x20 < u colour 1\n' ' 175,5 10x20 < u colour 1\n'b' 165,5 10x20 u colour 1\n"
       "'\xE1' 145,5 10x20 <\nlink 165,5 to 194,24: 1\n"},
      {"<u>\xE0 \xE1</u>", "'\xE0' 185,5 10x20 < u\n' ' 175,5 10x20 < u\n'\xE1' 165,5 10x20 < u\n"},
      {"\xE0<img src=\"p.jpg\">", "'\xE0' 185,5 10x20 <\nimg(p.jpg) 155,25 40x30 framed\n"},
  });
  (void)Lay(std::string(3000, '\xE0'));
  EXPECT_EQ(measurer.longest_text, Measurer::kLongestPiece);
}

TEST_F(LayoutOf, ThaiLinesEndBetweenWords) {
  measurer.page = CodePage(CharacterSet::Thai);
  // "Land Thailand has a capital", four words and a half of ten letters, without a blank.
  const std::string side = "\xBB\xC3\xD0\xE0\xB7\xC8\xE4\xB7\xC2\xC1\xD5\xE0\xC1\xD7\xCD\xA7\xCB\xC5\xC7\xA7";
  for (const Fragment& fragment : Lay(side).fragments) EXPECT_LE(fragment.rect.left + fragment.rect.width, 200);
  EXPECT_EQ(Lay(side).fragments.back().rect.top, 25);
  EXPECT_EQ(Lay(side).fragments.front().text.substr(0, 6), side.substr(0, 6)) << "a word is not cut";
}

}  // namespace
}  // namespace tessaro
