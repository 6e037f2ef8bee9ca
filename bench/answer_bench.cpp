// From a key press to the painted verdict, in the whole program with a learning window: a text of 5,000 characters to
// be copied, and a line of an answer typed against a side of 5,000 characters. The reference is the same key in a bare
// text field. QT_QPA_PLATFORM chooses the platform.
#include <QApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "app/program.h"
#include "app/wnmain.h"
#include "bench/measure.h"
#include "settings/keys.h"
#include "store/table/card_columns.h"

namespace {

using namespace tessaro;
namespace fs = std::filesystem;

constexpr size_t kLetters = 5000;
constexpr size_t kTyped = 190;  // keys: the last ones of the text, with all the others before them
constexpr double kMilli = 1e3;

std::string LongText() {
  std::string text;
  for (size_t word = 0; text.size() < kLetters; ++word) text += "wort" + std::to_string(word) + ' ';
  return text.substr(0, kLetters);
}

// Seconds of the processor from the key to what it painted.
double Press(QWidget& field, char letter) {
  return ProcessorTime([&] {
    QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(QLatin1Char(letter)));
    QApplication::sendEvent(&field, &key);
    field.window()->repaint();
    QApplication::processEvents();
  });
}

// Each key of `letters` behind the text that stands there already.
std::vector<double> Type(QWidget& field, const std::string& before, const std::string& letters) {
  if (auto* text = qobject_cast<QPlainTextEdit*>(&field); text != nullptr) {
    text->setPlainText(QString::fromStdString(before));
    text->moveCursor(QTextCursor::End);
    text->window()->repaint();
  }
  std::vector<double> seconds;
  for (const char letter : letters) seconds.push_back(Press(field, letter));
  return seconds;
}

// A key that is wrong before every tenth letter: it is taken back and told.
std::string WithFaults(const std::string& text) {
  std::string typed;
  for (size_t i = 0; i < text.size(); ++i) {
    if (i % 10 == 0) typed += '#';
    typed += text[i];
  }
  return typed;
}

void MakeDeck(const fs::path& path) {
  CardFile file;
  Check(file.CreateNew(path), "a new card file");
  const int row = kFirstCardRow;
  file.cards().Poke(file.columns().question, row, LongText());
  file.cards().Poke(file.columns().answer, row, LongText());
  file.RowChanged(row);
  Check(file.Save() == SaveResult::Saved, "save");
}

// The answer window's field for what is typed, in the program that learns `deck` with the mode.
std::vector<double> Measure(const fs::path& folder, const FlagSetting& mode, const char* field,
                            const std::string& before, const std::string& letters) {
  const RealClock clock;
  RealRandom random;
  BoxMessages messages;
  IniFile settings;
  mode.Write(true, settings);
  Check(settings.Save(RealDisk(), folder / "tessaro.ini"), "settings");
  Program program({RealDisk(), clock, random, messages},
                  {.settings = folder / "tessaro.ini", .samples = {}, .documents = {}});
  program.main_window().show();
  Check(program.main_window().OpenFile(folder / "deck.mlb"), "open");
  program.OpenLearning();
  for (int i = 0; i < 20; ++i) QApplication::processEvents();
  for (QWidget* top : QApplication::topLevelWidgets()) {
    auto* input = top->findChild<QWidget*>(QLatin1StringView(field));
    if (input == nullptr || !input->isVisible()) continue;
    std::vector<double> seconds = Type(*input, before, letters);
    Check(program.CloseLearning(), "close");
    return seconds;
  }
  Check(false, field);
  return {};
}

void Report(const char* what, const std::vector<double>& seconds, double bare) {
  Print({what, Median(seconds) * kMilli}, "ms", {"the same key in a bare field", bare * kMilli});
  std::printf("  99 %% within %.2f ms\n", Nearly(seconds) * kMilli);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  std::string folder = (fs::temp_directory_path() / "answer_bench_XXXXXX").string();
  Check(mkdtemp(folder.data()) != nullptr, "folder");
  MakeDeck(fs::path(folder) / "deck.mlb");
  const std::string text = LongText();
  const std::string before = text.substr(0, kLetters - kTyped - 1);
  const std::string last = text.substr(before.size(), kTyped);
  QPlainTextEdit bare;
  bare.show();
  const double bare_key = Median(Type(bare, before, last));
  Report("key at the end of 5,000, one in eleven wrong",
         Measure(folder, keys::kShowTyping, "RichEditTipp", before, WithFaults(last)), bare_key);
  Report("key of a typed answer to 5,000 characters", Measure(folder, keys::kShowInput, "RichEditVgl", {}, last),
         bare_key);
  fs::remove_all(folder);
  return 0;
}
