// Laying out and drawing card sides into an image, beside one drawText of the same letters in the same run, and the
// pictures of an overview beside drawing them alone. A typical side has 80 words, two links and a picture; an overview
// has 100 picture links. Given a card file, sides from all over it.
#include <QApplication>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "bench/measure.h"
#include "hypertext/layout.h"
#include "hypertext/plain_text.h"
#include "store/file/card_file.h"
#include "widgets/htmlview.h"
#include "widgets/painter.h"
#include "widgets/picture_store.h"
#include "widgets/qt_measurer.h"
#include "widgets/text.h"
#include "widgets/text_cache.h"

namespace {

using namespace tessaro;

constexpr int kRounds = 300;
constexpr int kWordsOfASide = 80;
constexpr int kPoints = 14;
constexpr int kPicturesOfAnOverview = 100;
constexpr const char* kPlainText = "drawText of the letters";
constexpr PixelSize kFrame = {640, 480};

// The viewer without its window.
class Viewer {
 public:
  Viewer() {
    font_.setPointSize(kPoints);
    image_.fill(Qt::white);
  }
  void SetFolder(const std::filesystem::path& folder) { pictures_.SetFolders({folder, {}}); }
  void ForgetWords() {
    texts_.SetFont(QFont());
    texts_.SetFont(font_);
  }
  double LayOutAndDraw(std::string_view side) {
    texts_.SetFont(font_);
    return Time([&] {
      QtMeasurer measurer(texts_, pictures_, colours_, kFrame);
      const Layout layout = LayOut(side, kFrame, kPoints, measurer);
      QPainter painter(&image_);
      PaintSide(painter, layout, image_.rect(), {font_, Qt::black, Qt::white}, texts_, pictures_);
    });
  }
  double DrawPlain(std::string_view side) {
    const QString text = FromBytes(PlainText(side));
    return Time([&] {
      QPainter painter(&image_);
      painter.setFont(font_);
      painter.drawText(image_.rect(), Qt::TextWordWrap, text);
    });
  }
  double DrawImages(int count) {
    const QImage small(24, 24, QImage::Format_RGB32);
    return Time([&] {
      QPainter painter(&image_);
      for (int i = 0; i < count; ++i) painter.drawImage(i % 10 * 30, i / 10 * 30, small);
    });
  }

 private:
  QFont font_{QStringLiteral("DejaVu Sans")};
  QImage image_{kFrame.width, kFrame.height, QImage::Format_ARGB32_Premultiplied};
  TextCache texts_;
  PictureStore pictures_;
  std::function<ColourClass(int64_t)> colours_ = [](int64_t id) { return static_cast<ColourClass>(id % 3 + 1); };
};

std::string RandomWord(std::mt19937& random) {
  static constexpr std::string_view kSyllables[] = {"land", "ber",    "\xFC", "stein", "ge",       "haus",
                                                    "en",   "fl\xFC", "ss",   "er",    "wald",     "ung",
                                                    "me",   "kar",    "te",   "rot",   "sch\xF6n", "tag"};
  std::string word;
  for (size_t i = 0; i < 1 + random() % 4; ++i) word += kSyllables[random() % std::size(kSyllables)];
  return word;
}

std::string TypicalSide(std::mt19937& random) {
  std::string side = "<b>" + RandomWord(random) + "</b><br>";
  for (int i = 0; i < kWordsOfASide; ++i) {
    const std::string word = RandomWord(random);
    side += i % 40 == 20 ? "<a href=\"000012\">" + word + "</a> " : word + " ";
    if (i == 50) side += "<img src=\"bild.jpg\" border=\"0\">";
  }
  return side;
}

std::string Overview() {
  std::string side =
      "<navigation><automap><font size=\"14\">Karten\xFC"
      "bersicht<br><br>             ";
  for (int i = 1; i <= kPicturesOfAnOverview; ++i) {
    side += "<a href=\"" + std::to_string(i) + "\"><img src=\"karte.bmp\"></a>    ";
    if (i % 10 == 0) side += "<br>             ";
  }
  return side;
}

void Report(const char* what, const std::vector<double>& times, const char* reference,
            const std::vector<double>& plain) {
  Print({what, Median(times) * 1e3}, "ms", {reference, Median(plain) * 1e3});
}

void MeasureGenerated(Viewer& viewer) {
  std::mt19937 random(1);
  std::vector<double> anew, known, blank, plain, overview, images;
  for (int i = 0; i < kRounds; ++i) {
    const std::string side = TypicalSide(random);
    anew.push_back(viewer.LayOutAndDraw(side));
    known.push_back(viewer.LayOutAndDraw(side));
    plain.push_back(viewer.DrawPlain(side));
    viewer.ForgetWords();
    blank.push_back(viewer.LayOutAndDraw(side));
    overview.push_back(viewer.LayOutAndDraw(Overview()));
    images.push_back(viewer.DrawImages(kPicturesOfAnOverview));
  }
  Report("typical side, no word seen before", blank, kPlainText, plain);
  Report("typical side, some words known", anew, kPlainText, plain);
  Report("typical side, drawn again", known, kPlainText, plain);
  Report("overview of 100 picture links", overview, "100 times drawImage", images);
}

int MeasureCardFile(Viewer& viewer, const char* path) {
  CardFile file;
  if (file.Open(path).result != OpenResult::Opened) {
    std::fprintf(stderr, "%s cannot be opened\n", path);
    return 1;
  }
  viewer.SetFolder(std::filesystem::path(path).parent_path());
  std::vector<double> times, plain;
  const int step = std::max(1, file.CardCount() / 2000);
  for (int row = kFirstCardRow; row <= file.CardCount() + 1; row += step) {
    for (const int column : {file.columns().question, file.columns().answer}) {
      const std::string side(file.cards().Peek(column, row));
      times.push_back(viewer.LayOutAndDraw(side));
      plain.push_back(viewer.DrawPlain(side));
    }
  }
  if (times.empty()) return 0;
  Report("a side of the card file", times, kPlainText, plain);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  Viewer viewer;
  if (argc > 1) return MeasureCardFile(viewer, argv[1]);
  const QTemporaryDir folder;
  QImage picture(200, 150, QImage::Format_RGB32);
  picture.fill(QColor(90, 140, 200));
  if (!picture.save(folder.filePath(QStringLiteral("bild.jpg")))) return 1;
  if (!picture.scaled(24, 24).save(folder.filePath(QStringLiteral("karte.bmp")))) return 1;
  viewer.SetFolder(ToPath(folder.path()));
  MeasureGenerated(viewer);
  return 0;
}
