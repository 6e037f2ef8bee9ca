
#include <sstream>

#include "cards/figures.h"
#include "print/card_choice.h"
#include "print/card_sheet.h"
#include "print/fitted_side.h"
#include "print/page_flow.h"
#include "tests/hypertext/fixed_measurer.h"
#include "tests/learn/learn_fixture.h"

namespace tessaro {
namespace {

constexpr int kPoints = 20;  // a letter is 10 wide and 20 high, at 100 %

FittedSide Fit(const std::string& side, PixelSize room, const SideFit& fit) {
  FixedMeasurer measurer;
  measurer.pictures["high.png"] = {50, 350};
  const auto lay_out = [&](PixelSize frame, bool in_height) {
    return in_height ? LayOutWithin(side, frame, kPoints, measurer) : LayOut(side, frame, kPoints, measurer);
  };
  return FitSide(lay_out, room, fit);
}

std::string Words(int count) {
  std::string words;
  for (int n = 0; n < count; ++n) words += "abcd ";
  return words;
}

TEST(FitSide, TakesTheLargestSizeInWhichTheSideFits) {
  const struct {
    const char* what;
    std::string side;
    PixelSize room;
    SideFit fit;
    int percent;
    bool cut;
  } kCases[] = {
      {"as it is", "abcd", {200, 100}, {100, 50}, 100, false},
      {"nothing", "", {200, 100}, {100, 50}, 100, false},
      {"enlarged to its width: 45 * 4 = 180", "abcd", {180, 200}, {400, 100}, 400, false},
      {"one pixel less", "abcd", {179, 200}, {400, 100}, 350, false},
      {"enlarged to its height: 25 * 4 = 100", "abcd", {900, 99}, {400, 100}, 350, false},
      {"three lines in two lines' room", Words(3), {50, 50}, {100, 50}, 70, false},
      {"a word that is too wide", "abcdefghij", {95, 100}, {100, 50}, 90, false},
      {"too wide at any size", std::string(50, 'x'), {95, 100}, {100, 60}, 60, true},
      {"too much", Words(500), {100, 100}, {100, 50}, 50, true},
      {"as high as it likes", Words(500), {100, 100}, {100, 50, false}, 100, false},
      {"no bounds to go by", Words(3), {50, 50}, {100, 100}, 100, true},
      {"a size that is none of the usual", "abcdefghij", {92, 100}, {95, 85}, 85, false},
  };
  for (const auto& c : kCases) {
    const FittedSide side = Fit(c.side, c.room, c.fit);
    EXPECT_EQ(side.percent, c.percent) << c.what;
    EXPECT_EQ(side.cut, c.cut) << c.what;
    EXPECT_LE(LengthOnPaper(side.content.height, side.percent), c.cut || !c.fit.in_height ? 1 << 20 : c.room.height);
  }
}

TEST(FitPictures, MovesUpWhatIsBelowThem) {
  // A side, the room for pictures, and the places of the fragments: left, top, width, height.
  const std::tuple<const char*, PixelSize, const char*> kCases[] = {
      {"a<br><img src=\"high.png\">b", {400, 350}, "5,5 10x20 5,25 50x350 5,377 10x20 "},
      {"a<br><img src=\"high.png\">b", {400, 100}, "5,5 10x20 5,25 14x100 5,127 10x20 "},
      {"<img src=\"high.png\"><img src=\"high.png\">b", {25, 400}, "5,5 25x175 5,182 25x175 5,359 10x20 "},
      {"<a href=\"000001\"><img src=\"high.png\"></a>a<br>b", {400, 100}, "5,131 14x100 57,171 10x20 5,357 10x20 "},
  };
  for (const auto& [text, room, expected] : kCases) {
    FittedSide side = Fit(text, {400, 1000}, {100, 100, false});
    FitPictures(side.layout, room);
    std::ostringstream places;
    for (const Fragment& fragment : side.layout.fragments) {
      const PixelRect& rect = fragment.rect;
      places << rect.left << "," << rect.top << " " << rect.width << "x" << rect.height << " ";
      EXPECT_TRUE(fragment.kind != Fragment::Kind::Text || fragment.baseline == rect.top + 15);
    }
    EXPECT_EQ(places.str(), expected) << text;
  }
}

TEST(Strips, EndBetweenLines) {
  // What the text is, the text, the height of a strip, and the strips.
  const std::tuple<const char*, const char*, int, const char*> kCases[] = {
      {"nothing", "", 50, "0-0 "},
      {"one strip", "a<br>b", 45, "0-45 "},
      {"a line goes on", "a<br>b<br>c", 45, "0-45 45-65 "},
      {"a pixel is missing", "a<br>b", 44, "0-25 25-45 "},
      {"letters of two sizes stay together", "a<br><font size=\"40\">b</font> c<br>d", 50, "0-25 25-65 65-85 "},
      {"an empty beginning is left out", "<br><br><br><br>a", 50, "85-105 "},
      {"higher than a strip", "a<br><img src=\"high.png\"><br>b", 100, "0-25 25-125 125-225 225-325 325-417 "},
  };
  for (const auto& [what, text, height, strips] : kCases) {
    const FittedSide side = Fit(text, {400, 1000}, {100, 100, false});
    std::ostringstream out;
    for (const Strip& strip : CutIntoStrips(side.layout, height)) out << strip.top << "-" << strip.bottom << " ";
    EXPECT_EQ(out.str(), strips) << what;
  }
}

std::string Pages(const std::vector<std::vector<int>>& items, const FlowRules& rules) {
  std::ostringstream out;
  FlowPlace place;
  while (place.item < static_cast<int>(items.size())) {
    const FlowPage page = FillPage(place, rules, [&](int item) { return items[static_cast<size_t>(item)]; });
    for (const FlowPart& part : page.parts)
      out << part.place.item << (part.place.part > 0 ? "'" : "") << "@" << part.top << " ";
    out << "| ";
    EXPECT_FALSE(page.parts.empty());
    if (page.parts.empty()) break;
    place = page.next;
  }
  return out.str();
}

TEST(PageFlow, BreaksPagesBetweenItems) {
  // What is there, the heights of the parts of each item, whether each begins a page, and the pages.
  const std::tuple<const char*, std::vector<std::vector<int>>, bool, const char*> kCases[] = {
      {"a full page", {{60}, {40}, {1}}, false, "0@0 1@60 | 2@0 | "},
      {"does not fit below", {{60}, {41}, {59}}, false, "0@0 | 1@0 2@41 | "},
      {"longer than a page", {{10}, {100, 30}, {60}, {20}}, false, "0@0 | 1@0 | 1'@0 2@30 | 3@0 | "},
      {"longer than a page, with a short first part", {{10}, {50, 60}}, false, "0@0 | 1@0 | 1'@0 | "},
      {"at the top it begins at once", {{100, 100, 5}, {95}}, false, "0@0 | 0'@0 | 0'@0 1@5 | "},
      {"two of them", {{100, 10}, {100, 10}}, false, "0@0 | 0'@0 | 1@0 | 1'@0 | "},
      {"one that is higher than it may be", {{150}, {10}}, false, "0@0 | 1@0 | "},
      {"one on a page", {{10}, {100, 5}, {10}}, true, "0@0 | 1@0 | 1'@0 | 2@0 | "},
  };
  for (const auto& [what, items, alone, pages] : kCases) {
    const FlowRules rules = {.items = static_cast<int>(items.size()), .height = 100, .alone = alone};
    EXPECT_EQ(Pages(items, rules), pages) << what;
  }
  // Items that show nothing do not go on for ever.
  EXPECT_EQ(FillPage({}, {.items = 1'000'000, .height = 100}, [](int) { return std::vector{0}; }).next.item, 101);
}

TEST(CardSheet, HasTheBacksBehindTheirFronts) {
  for (const PixelSize paper : {PixelSize{794, 1123}, PixelSize{1123, 794}, PixelSize{559, 794}, PixelSize{500, 500}}) {
    for (const PixelSize grid : {PixelSize{1, 1}, PixelSize{2, 5}, PixelSize{4, 5}, PixelSize{3, 2}}) {
      const CardSheet sheet = {paper, 30, grid.width, grid.height};
      for (int n = 0; n < sheet.Cells(); ++n) {
        const PixelRect front = sheet.Cell(n);
        const PixelRect back = sheet.Cell(sheet.Behind(n));
        EXPECT_GE(std::min(front.left, front.top), 30);
        EXPECT_LE(front.left + front.width, paper.width - 30);
        EXPECT_LE(front.top + front.height, paper.height - 30);
        const bool upright = paper.width <= paper.height;
        // Seen from behind, turned over the long edge; half a pixel may be lost on either side.
        EXPECT_NEAR(back.left, upright ? paper.width - front.left - front.width : front.left, 1);
        EXPECT_NEAR(back.top, upright ? front.top : paper.height - front.top - front.height, 1);
        EXPECT_EQ(sheet.Behind(sheet.Behind(n)), n);
        EXPECT_FALSE(n > 0 && front == sheet.Cell(n - 1));
      }
    }
  }
  const CardSheet sheet = {{794, 1123}, 30, 2, 5};
  EXPECT_EQ(sheet.Cell(9).top + sheet.Cell(9).height - sheet.Cell(0).top, 5 * sheet.CellSize().height);
  EXPECT_EQ(sheet.Sheets(0), 0);
  EXPECT_EQ(sheet.Sheets(10), 1);
  EXPECT_EQ(sheet.Sheets(11), 2);
  EXPECT_EQ(sheet.Sheets(INT32_MAX), 214748365);
}

using Rows = std::vector<int>;

TEST(CardChoice, GivesRowsInTheOrderOfTheFile) {
  MemoryDisk disk;
  CardFile file{disk};
  OpenTestFile(disk, file,
               {NewCard(1), NavigationCard(2), KnownCard(3, 100, 500), WrongCard(4), KnownCard(5, 900000, 500),
                KnownCard(6, 100, 500)});
  const DueAt at = {.parameters = {}, .now = kNow};
  const CardOffer offer = {.found = [](int row) { return row <= 4; }, .marked = {3, 6, 7, 99}, .shown = 6};
  // A choice, with navigation cards or without, its rows, and those when the last card is marked for deletion.
  const std::tuple<CardChoice, bool, Rows, Rows> kCases[] = {
      {CardChoice::All, false, {2, 4, 5, 6, 7}, {2, 4, 5, 6}},
      {CardChoice::All, true, {2, 3, 4, 5, 6, 7}, {2, 3, 4, 5, 6}},
      {CardChoice::Found, false, {2, 4}, {2, 4}},
      {CardChoice::Found, true, {2, 3, 4}, {2, 3, 4}},
      {CardChoice::Due, true, {4, 7}, {4}},
      {CardChoice::Marked, false, {3, 6, 7}, {3, 6}},
      {CardChoice::Shown, false, {6}, {6}},
  };
  for (const auto& [choice, navigation, rows, without_last] : kCases) {
    file.deletion_marks().Clear();
    EXPECT_EQ(ChosenCards(file, choice, offer, navigation, at), rows) << static_cast<int>(choice);
    (void)file.deletion_marks().Exchange({7});
    EXPECT_EQ(ChosenCards(file, choice, offer, navigation, at), without_last) << static_cast<int>(choice);
  }
  EXPECT_EQ(ChosenCards(file, CardChoice::Shown, {}, false, at), Rows());
  EXPECT_FALSE(CardOffer().Has(CardChoice::Found) || CardOffer().Has(CardChoice::Marked) ||
               CardOffer().Has(CardChoice::Shown));
}

TEST(CardChoice, CallsDueWhatTheStartPageCounts) {
  std::mt19937 chance(7);
  MemoryDisk disk;
  CardFile file{disk};
  std::vector<TestCard> cards = Numbered(3000, [&](int number) {
    TestCard card = KnownCard(number, static_cast<int64_t>(chance() % 5) * 100, static_cast<int64_t>(chance() % 700));
    if (chance() % 5 == 0) card.yes_no_row = Letters("f");
    if (chance() % 9 == 0) card.question = "<navigation>";
    if (chance() % 9 == 0) card.answer = "<+++>";
    if (chance() % 9 == 0) card.time_row = "0";
    return card;
  });
  OpenTestFile(disk, file, cards);
  DueAt at = {.parameters = {}, .now = kNow};
  at.parameters.max_time = 200;
  const auto due = ChosenCards(file, CardChoice::Due, {}, false, at);
  EXPECT_GT(due->size(), 500U);
  EXPECT_EQ(static_cast<int64_t>(due->size()), FiguresOf(file, at.parameters, at.now).due);
  int asked = 0;
  EXPECT_FALSE(ChosenCards(file, CardChoice::All, {}, false, at, [&](int) { return ++asked < 2; }));
  EXPECT_EQ(asked, 2);
}

}  // namespace
}  // namespace tessaro
