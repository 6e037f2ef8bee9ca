#include <QComboBox>
#include <QImage>
#include <QPainter>

#include "print/dlprint.h"
#include "tests/app/main_window_fixture.h"
#include "tests/support/temporary_folder.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::StringLiterals;

constexpr PixelSize kPaper = {794, 1123};

// The part of a page that is not white.
QRect Ink(PrintedPages& pages, int page) {
  QImage image(kPaper.width, kPaper.height, QImage::Format_RGB32);
  image.fill(Qt::white);
  {
    QPainter painter(&image);
    pages.Paint(painter, page);
  }
  QRect ink;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (qGray(image.pixel(x, y)) < 100) ink |= QRect(x, y, 1, 1);
    }
  }
  return ink;
}

PrintSource Source(std::vector<std::array<std::string, 2>> cards) {
  const SideLook look = {QFont(u"DejaVu Sans"_s, 12), Qt::black, Qt::white};
  const int count = static_cast<int>(cards.size());
  return {.cards = count,
          .side = [cards = std::move(cards)](int card, SideName side) -> std::string_view {
            return cards[static_cast<size_t>(card)][side == SideName::Front ? 0 : 1];
          },
          .front = look,
          .back = look};
}

TEST(PrintedPages, HaveTheBackOfACardBehindItsFront) {
  const PrintOrder order = {.form = PrintForm::Cards, .columns = 2, .rows = 5, .paper = kPaper, .margin = 30};
  const CardSheet sheet = {kPaper, 30, 2, 5};
  std::vector<std::array<std::string, 2>> cards(14);
  cards[13] = {"<b>front</b>", "<b>back</b>"};
  PrintedPages pages(Source(cards), order);
  ASSERT_EQ(pages.Count(), 4);
  EXPECT_TRUE(Ink(pages, 1).isEmpty());
  const auto cell = [&](int n) {
    const PixelRect rect = sheet.Cell(n);
    return QRect(rect.left, rect.top, rect.width, rect.height);
  };
  const QRect front = Ink(pages, 2);
  const QRect back = Ink(pages, 3);
  EXPECT_TRUE(!front.isEmpty() && cell(3).contains(front));
  EXPECT_TRUE(!back.isEmpty() && cell(2).contains(back));
}

}  // namespace
}  // namespace tessaro
