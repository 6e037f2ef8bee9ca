#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "hypertext/media.h"
#include "print/card_sheet.h"
#include "print/page_flow.h"
#include "print/printed_side.h"
#include "settings/side_settings.h"
#include "widgets/picture_store.h"

class QPainter;

namespace tessaro {

enum class PrintForm {
  List,   // front and back beside each other
  Cards,  // to be cut out
  Large,  // a side on a page, its letters as large as they fit
};
enum class PrintSides { Both, Fronts, Backs };

// How cards are put on paper.
struct PrintOrder {
  PrintForm form = PrintForm::List;
  PrintSides sides = PrintSides::Both;  // of a list always both
  int columns = 2;                      // of cards to be cut out, on upright paper
  int rows = 5;
  int percent = 100;       // of the letters' own size
  int most_percent = 400;  // of those on a page of their own
  PixelSize paper = {};    // the whole sheet, in pixels of the layout
  int margin = 0;          // in these pixels
  QString title = {};      // at the foot of a list
  bool operator==(const PrintOrder&) const = default;
};

// What is printed. The sides must stay as they are; a text holds until the next one is asked for.
struct PrintSource {
  int cards = 0;
  std::function<std::string_view(int card, SideName side)> side;
  SideLook front;
  SideLook back;
  MediaFolders folders = {};
};

// Cards on pages. What is on a page is found when it is looked for, so that many cards take no time to begin with: the
// pages of cards to be cut out are known at once, those of the other forms up to the one that was looked at last.
class PrintedPages {
 public:
  PrintedPages(PrintSource source, PrintOrder order);

  const PrintOrder& order() const { return order_; }
  // Pages known by now, and whether these are all.
  int Count() const;
  bool AllKnown() const;
  // Finds the page behind those that are known. False: there is none.
  bool FindPage();
  // The cards that stand on pages before this one, which is known; a measure of how far the work is.
  int CardsBefore(int page) const;
  // Draws a known page in pixels of the layout, the corner of the paper at 0, 0.
  void Paint(QPainter& painter, int page);

  // Pictures that take time are read beside the window, and this is called then; without it pages are drawn whole.
  void SetPictureObserver(std::function<void()> read);

 private:
  // The sides of an item beside each other, each cut into strips.
  struct FlowItem {
    std::vector<FittedSide> columns;
    std::vector<std::vector<Strip>> strips;
    std::vector<int> heights;  // of the parts
    void Add(FittedSide side, int room_height, int padding);
  };

  bool InFlow() const { return order_.form != PrintForm::Cards; }
  bool Enlarges() const { return order_.most_percent > order_.percent; }
  int SidesOfACard() const { return order_.sides == PrintSides::Both ? 2 : 1; }
  SideName SideOf(int n) const;
  SidePrinter& PrinterOf(SideName side) { return side == SideName::Front ? front_ : back_; }
  CardSheet Sheet() const;
  PixelRect Body() const;
  FlowRules Rules() const;
  FlowItem LayOutRow(int card);
  FlowItem LayOutLarge(int item);
  const FlowPage& Fill(int page);
  void PaintFlow(QPainter& painter, int page);
  void PaintListPart(QPainter& painter, const FlowPart& part, const FlowItem& item);
  void PaintLargePart(QPainter& painter, const FlowPart& part, const FlowItem& item);
  void PaintFoot(QPainter& painter, int page) const;
  void PaintSheet(QPainter& painter, int page);
  void PaintCard(QPainter& painter, const PixelRect& cell, int card, SideName side);

  PrintSource source_;
  PrintOrder order_;
  PictureStore pictures_;
  SidePrinter front_;
  SidePrinter back_;
  std::vector<FlowPlace> starts_;  // of the pages known
  bool all_known_ = false;
  int filled_ = -1;  // the page that was filled last
  FlowPage page_;
  std::map<int, FlowItem> items_;  // on it
};

}  // namespace tessaro
