// Kills a learning program at random moments, over and over, and looks each time whether an answer is gone that the
// learner saw taken. The program is a child process with a real run on a real card file; it tells through a pipe what
// it is about to do and, once the next card would be on screen, what the card's row then holds.
// Usage: kill_test [NUMBER OF KILLS] [SEED]
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "store/index/card_ids.h"
#include "tests/crash/killed_program.h"
#include "tests/learn/learn_fixture.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr int kCards = 120;
constexpr int kSecondsPerStep = 7;

std::string RowText(const CardFile& file, int row) {
  std::string text;
  for (int column = 1; column <= file.cards().ColumnCount(); ++column) {
    text += std::string(file.cards().Peek(column, row)) + '|';
  }
  return text;
}

// Opens the file as the program does, taking over what an earlier run left; returns how many cards that changed.
int OpenAfterCrash(CardFile& file, const fs::path& path) {
  const OpenReport report = file.Open(path);
  if (report.result != OpenResult::Opened) Fail("the card file cannot be opened");
  if (report.end_missing || file.CardCount() != kCards) Fail("the card file is not whole");
  if (!report.put_aside.empty()) Fail("the journal was taken for that of another state");
  if (report.unsaved && !file.TakeOverUnsaved()) Fail("the indexes cannot be built");
  const CardIds ids(file.cards());
  if (!file.learn_index().Fits(ids) || !file.link_index().Fits(ids)) Fail("an index does not fit");
  // The undo button makes the score 1 and leaves the card where it is in the index.
  constexpr int64_t kUndone = 1;
  for (int row = kFirstCardRow; row <= kCards + 1; ++row) {
    const int64_t score = LeadingNumber(file.cards().Peek(file.columns().score, row));
    const int64_t key = file.learn_index().Score(file.learn_index().RowOfCard(row));
    if (key != score && score != kUndone) Fail("the index holds older scores");
  }
  return report.unsaved ? report.unsaved->cards : 0;
}

// Learns until it is killed.
[[noreturn]] void Learn(const fs::path& path, int64_t now, uint32_t seed, int news) {
  FixedClock clock(now);
  std::vector<uint32_t> numbers(10'000);
  std::generate(numbers.begin(), numbers.end(), [g = std::mt19937(seed)]() mutable { return g() >> 1U; });
  ScriptedRandom random(numbers);
  CardFile file(RealDisk(), clock);
  file.journal().FlushInBackground();
  OpenAfterCrash(file, path);
  LearningRun run(file, IniFile(), clock, random);
  run.Start();
  const auto tell = [&](char what, int row) {
    const std::string line = what + std::to_string(row) + ' ' + RowText(file, row) + '\n';
    if (write(news, line.data(), line.size()) < 0) std::_Exit(EXIT_FAILURE);
  };
  int last_row = kFirstCardRow;
  for (;;) {
    clock.now += kSecondsPerStep;
    const uint32_t dice = random.Next() % 20;
    const int row = dice == 0 ? last_row : run.card().row;
    tell('?', row);
    dice == 0 ? run.Undo() : dice < 6 ? run.NotKnown() : run.Known(dice < 9 ? 3 : 0);
    tell('=', row);
    last_row = row;
    if (random.Next() % 12 == 0 && file.Save() != SaveResult::Saved) std::_Exit(EXIT_FAILURE);
  }
}

class Killer {
 public:
  Killer(fs::path folder, uint32_t seed) : folder_(std::move(folder)), random_(seed) {
    const std::vector<TestCard> cards = Numbered(kCards, [](int i) { return NewCard(100000 + i); });
    fs::create_directories(folder_ / "deck");
    if (!MakeCards(cards).SaveToFile(path())) Fail("cannot write the card file");
  }

  int answers = 0;  // acknowledged
  int taken_over = 0;
  int lost = 0;

  void KillOnce() {
    int pipe_ends[2];
    if (pipe(pipe_ends) != 0) Fail("no pipe");
    const auto seed = static_cast<uint32_t>(random_());
    const pid_t child = fork();
    if (child == 0) {
      close(pipe_ends[0]);
      Learn(path(), now_, seed, pipe_ends[1]);
    }
    close(pipe_ends[1]);
    FILE* news = fdopen(pipe_ends[0], "r");
    for (auto i = random_() % 60; i > 0; --i) Listen(news);
    std::this_thread::sleep_for(std::chrono::microseconds(random_() % 4000));
    kill(child, SIGKILL);
    while (Listen(news)) continue;
    std::fclose(news);
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFSIGNALED(status)) Fail("the program ended by itself");
    now_ += 100000;
    CompareWithCopy();
  }

 private:
  fs::path path() const { return folder_ / "deck" / "x.mlb"; }

  // One piece of news; false at their end.
  bool Listen(FILE* news) {
    char line[4096];
    if (std::fgets(line, sizeof line, news) == nullptr) return false;
    const std::string text = line;
    if (text.back() != '\n') return true;
    const int row = std::stoi(text.substr(1));
    asked_row_ = text[0] == '?' ? row : 0;
    if (asked_row_ != 0) return true;
    ++answers;
    seen_[row] = text.substr(text.find(' ') + 1, text.size() - text.find(' ') - 2);
    return true;
  }

  // Looks at a copy: the next program has to find its way from what the killed one really left.
  void CompareWithCopy() {
    const fs::path copy = folder_ / "copy";
    fs::remove_all(copy);
    fs::copy(path().parent_path(), copy);
    CardFile file;
    taken_over += OpenAfterCrash(file, copy / "x.mlb");
    for (auto& [row, text] : seen_) {
      // Of the answer during which the program died nobody was told.
      if (row != asked_row_ && RowText(file, row) != text) {
        ++lost;
        std::printf("row %d was  %s\n        is  %s\n", row, text.c_str(), RowText(file, row).c_str());
      }
      text = RowText(file, row);
    }
    asked_row_ = 0;
  }

  fs::path folder_;
  std::mt19937 random_;
  int64_t now_ = kNow;
  std::map<int, std::string> seen_;  // what the learner knows of each row
  int asked_row_ = 0;                // the row of an answer that was not acknowledged yet
};

int Run(int kills, uint32_t seed, const fs::path& folder) {
  Killer killer(folder, seed);
  for (int i = 0; i < kills; ++i) killer.KillOnce();
  std::printf("%d kills, %d answers acknowledged, %d cards changed by journals, %d answers lost\n", kills,
              killer.answers, killer.taken_over, killer.lost);
  return killer.lost == 0 && killer.taken_over > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace tessaro

int main(int argc, char** argv) {
  return tessaro::RunKills(argc, argv, tessaro::Run);
}
