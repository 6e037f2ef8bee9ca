// From the start of the program to its window painted with a card file open, beside an empty Qt window on the same
// platform and the opening of the same file, in the same run. QT_QPA_PLATFORM chooses the platform.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/generated_cards.h"
#include "bench/measure.h"
#include "cards/figures.h"
#include "store/file/card_file.h"

namespace {

using namespace tessaro;
namespace fs = std::filesystem;

constexpr int kRounds = 11;
constexpr double kMilli = 1e3;

[[noreturn]] void Become(const std::vector<std::string>& arguments, int output) {
  std::vector<char*> pointers;
  for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
  pointers.push_back(nullptr);
  dup2(output, STDOUT_FILENO);
  execv(pointers[0], pointers.data());
  _exit(127);
}

// Seconds until the program says that it has painted.
double StartOf(const std::vector<std::string>& arguments) {
  std::array<int, 2> pipe_ends = {};
  Check(pipe2(pipe_ends.data(), O_CLOEXEC) == 0, "pipe");
  pid_t child = -1;
  const double seconds = Time([&] {
    child = fork();
    if (child == 0) Become(arguments, pipe_ends[1]);
    close(pipe_ends[1]);
    char word = 0;
    Check(read(pipe_ends[0], &word, 1) == 1 && word == 'p', arguments[0].c_str());
  });
  close(pipe_ends[0]);
  int status = 0;
  Check(waitpid(child, &status, 0) == child && status == 0, "the end of a program");
  return seconds;
}

double Open(const fs::path& path) {
  CardFile file(RealDisk(), SystemClock(), CountUnknown);
  return Time([&] { Check(file.Open(path).result == OpenResult::Opened, "open"); });
}

void Measure(const fs::path& path, const fs::path& folder) {
  const fs::path programs = fs::path(OwnPath()).parent_path();
  const std::string settings = folder / "tessaro.ini";
  const fs::path copy = folder / "copy.mlb";
  {
    CardFile file;
    Check(file.Open(path).result == OpenResult::Opened && file.SaveCopy(copy) == SaveResult::Saved, "copy");
    std::printf("%s, %d cards\n", path.filename().c_str(), file.CardCount());
  }
  std::vector<double> program, frame, start_page, empty, open;
  for (int i = 0; i < kRounds; ++i) {
    empty.push_back(StartOf({programs / "empty_window"}));
    start_page.push_back(StartOf({programs / "watched_tessaro", "--new", "--no-splash", "--settings", settings}));
    open.push_back(Open(copy));
    program.push_back(StartOf({programs / "watched_tessaro", "--new", "--settings", settings, copy}));
    setenv("WATCH_FIRST_PAINT", "1", 1);
    frame.push_back(StartOf({programs / "watched_tessaro", "--new", "--settings", settings, copy}));
    unsetenv("WATCH_FIRST_PAINT");
  }
  const double least = Median(empty) + Median(open);
  Print({"start to the start page, no card file", Median(start_page) * kMilli}, "ms",
        {"empty Qt window", Median(empty) * kMilli});
  Print({"start to the painted frame, before the file", Median(frame) * kMilli}, "ms",
        {"empty Qt window", Median(empty) * kMilli});
  Print({"start to the figures of the card file", Median(program) * kMilli}, "ms",
        {"empty Qt window + opening it", least * kMilli});
}

}  // namespace

int main(int argc, char** argv) {
  std::string name = (fs::temp_directory_path() / "start_bench_XXXXXX").string();
  Check(mkdtemp(name.data()) != nullptr, "folder");
  const auto measure = [&](const fs::path& path) { Measure(path, name); };
  if (argc > 1) measure(argv[1]);
  for (const int cards : {100'000, kMostCards}) {
    if (argc > 1) break;
    const fs::path generated = fs::path(name) / (std::to_string(cards) + ".mlb");
    Check(GenerateCards(generated, cards, 1), "generate");
    measure(generated);
  }
  fs::remove_all(name);
  return 0;
}
