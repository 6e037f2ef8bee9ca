// A page of cards put on paper, from their bytes to the drawn page: as an image of the screen's dots, as the preview
// shows it, and as a page of a PDF file. All words are new; the goal is 50 ms for 20 cards. Then how long it takes to
// find all pages of a list, and to choose what is due. Figures are the least of several runs. Takes a card file.
#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>
#include <cstdio>
#include <functional>

#include "bench/generated_cards.h"
#include "bench/measure.h"
#include "print/card_choice.h"
#include "print/page_output.h"
#include "print/printed_pages.h"
#include "widgets/side_look.h"

namespace {

using namespace tessaro;

constexpr double kMilli = 1e3;
constexpr PixelSize kPaper = {794, 1123};
constexpr int kCards = 20;
constexpr int kRounds = 9;

PrintSource SourceOf(const CardFile& file, int first, int cards) {
  const CardReader reader(file);
  const SideLook look = LookOf(SideSettings());
  return {.cards = cards,
          .side =
              [reader, first](int card, SideName side) {
                const int row = kFirstCardRow + first + card;
                return side == SideName::Front ? reader.Question(row) : reader.Answer(row);
              },
          .front = look,
          .back = look};
}

PrintOrder OrderOf(PrintForm form) {
  return {.form = form, .columns = 4, .rows = 5, .paper = kPaper, .margin = 30};
}

double Least(const std::function<void(int round)>& work) {
  double least = 1e9;
  for (int round = 0; round < kRounds; ++round) least = std::min(least, Time([&] { work(round); }));
  return least;
}

// Both sides of so many cards: two pages of cards to be cut out, as many as it takes of a list.
void MeasurePages(const CardFile& file, PrintForm form, const char* on_screen, const char* in_pdf) {
  const auto pages = [&](int round) { return PrintedPages(SourceOf(file, round * kCards, kCards), OrderOf(form)); };
  QImage image(kPaper.width, kPaper.height, QImage::Format_RGB32);
  const double screen = Least([&](int round) {
    PrintedPages printed = pages(round);
    for (int page = 0; page == 0 || page < printed.Count() || printed.FindPage(); ++page) {
      QPainter painter(&image);
      printed.Paint(painter, page);
    }
  });
  Print({on_screen, screen * kMilli}, "ms", {"goal", 50});
  const double pdf = Least([&](int round) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    PrintedPages printed = pages(round);
    Check(PrintPages(writer, printed, {}) == OutputEnd::Done, "writing a PDF");
  });
  Print({in_pdf, pdf * kMilli}, "ms", {"goal", 50});
}

void MeasureFile(const std::filesystem::path& path) {
  CardFile file;
  Check(file.Open(path).result == OpenResult::Opened, "opening");
  std::printf("%d cards\n", file.CardCount());
  MeasurePages(file, PrintForm::Cards, "20 cards to cut out, both sides, image", "the same, PDF");
  MeasurePages(file, PrintForm::List, "20 cards in a list, image", "the same list, PDF");
  const DueAt at = {.parameters = {}, .now = SystemClock().Now()};
  for (const auto& [choice, what] :
       {std::pair(CardChoice::All, "all cards chosen"), std::pair(CardChoice::Due, "those due")}) {
    const double chosen = Least([&, choice = choice](int) { (void)ChosenCards(file, choice, {}, false, at); });
    Print({what, chosen * kMilli}, "ms", {"goal", 300});
  }
  constexpr int kListed = 5000;
  const double found = Least([&](int) {
    PrintedPages printed(SourceOf(file, 0, kListed), OrderOf(PrintForm::List));
    while (printed.FindPage()) continue;
  });
  Print({"pages of 5,000 cards in a list found", found * kMilli}, "ms", {"goal", 2000});
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  MeasureCardFiles(argc > 1 ? argv[1] : nullptr, [](const auto& path, const auto&) { MeasureFile(path); });
  return 0;
}
