// What the editor's windows cost on a large card file: the preview after a keystroke, and the table of all cards when
// it is opened, scrolled and sorted. Each beside what it may take. Takes a card file; without one it makes one of
// 980,000 cards.
#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/generated_cards.h"
#include "bench/measure.h"
#include "cards/card_reader.h"
#include "edit/card_order.h"
#include "edit/side_field.h"
#include "edit/wned.h"
#include "edit/wntab.h"
#include "widgets/messages.h"

namespace {

using namespace tessaro;
namespace fs = std::filesystem;

constexpr int kCards = 980'000;
constexpr int kKeys = 200;
constexpr int kPages = 100;
constexpr double kMilli = 1e3;

void PaintAll() {
  QCoreApplication::sendPostedEvents();
  QCoreApplication::processEvents();
}

void MeasurePreview(TF_wned& window) {
  auto* field = window.findChild<SideField*>(QStringLiteral("RichEditKarteVorne"));
  Check(field != nullptr, "field");
  field->setFocus();
  std::vector<double> keys;
  for (int i = 0; i < kKeys; ++i) {
    const QString letter = i % 8 == 7 ? QStringLiteral(" ") : QStringLiteral("e");
    keys.push_back(Time([&] {
      QKeyEvent press(QEvent::KeyPress, letter == QStringLiteral(" ") ? Qt::Key_Space : Qt::Key_E, Qt::NoModifier,
                      letter);
      QCoreApplication::sendEvent(field, &press);
      PaintAll();
    }));
  }
  Print({"keystroke and its preview", Median(keys) * kMilli}, "ms", {"goal", 5});
  Print({"  longest but 1 %", Nearly(keys) * kMilli}, "ms", {"limit", 16});
}

double SortOfKeys(const CardFile& file) {
  const CardReader cards(file);
  std::vector<std::string> keys;
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) keys.emplace_back(cards.Question(row));
  return Time([&] { std::stable_sort(keys.begin(), keys.end()); });
}

void MeasureTable(const CardFile& file, TF_wned& window) {
  const double opened = Time([&] {
    window.ShowTable();
    PaintAll();
  });
  Print({"table of all cards opened", opened * kMilli}, "ms", {"limit", 200});
  auto* table = window.findChild<TF_wntab*>();
  auto* grid = table->findChild<QTableView*>(QStringLiteral("StringGridTab"));
  std::vector<double> pages;
  for (int i = 0; i < kPages; ++i) {
    QScrollBar* bar = grid->verticalScrollBar();
    pages.push_back(Time([&] {
      bar->setValue(bar->value() + bar->pageStep() * (i % 2 == 0 ? 1 : 997));
      PaintAll();
    }));
  }
  Print({"scrolled a page", Median(pages) * kMilli}, "ms", {"limit", 16});
  const double reference = SortOfKeys(file);
  for (const auto& [name, column] : {std::pair("sorted by front", 2), {"sorted by retention time", 4}}) {
    const double sorted = Time([&, of = column] {
      grid->sortByColumn(of, Qt::AscendingOrder);
      PaintAll();
    });
    Print({name, sorted * kMilli}, "ms", {"stable_sort of fronts", reference * kMilli});
  }
}

void Measure(const fs::path& path) {
  CardFile file;
  Check(file.Open(path).result == OpenResult::Opened, "open");
  std::printf("%d cards\n", file.CardCount());
  ProgramSettings settings;
  BoxMessages messages;
  int64_t made = 0;
  TF_wned window(file, settings, {SystemClock(), RealDisk(), messages}, made);
  window.resize(1300, 800);
  window.show();
  PaintAll();
  MeasurePreview(window);
  MeasureTable(file, window);
}

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  tessaro::MeasureCardFiles(
      argc > 1 ? argv[1] : nullptr, [](const fs::path& path, const fs::path&) { Measure(path); }, kCards);
  return 0;
}
