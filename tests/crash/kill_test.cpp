// Kills a program at random moments while cards are learned and edited, over and over, and looks each time whether the
// cards are what they were after the last command that was done, or after the one that was under way. What that is
// tells the same script, done again from the same cards without being killed.
// Usage: kill_test [NUMBER OF KILLS] [SEED]
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>

#include "edit/card_desk.h"
#include "edit/renumbering.h"
#include "tests/learn/learn_fixture.h"
#include "tests/support/temporary_folder.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr int kCards = 60;
constexpr int kSecondsPerStep = 7;
constexpr unsigned kMostCommands = 60;
constexpr unsigned kMostMicroseconds = 4000;

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "FAILED: %s\n", what);
  std::_Exit(EXIT_FAILURE);
}

// Opens the file as the program does, taking over what an earlier run left; true when there was something.
bool OpenAfterCrash(CardFile& file, const fs::path& path) {
  const OpenReport report = file.Open(path);
  if (report.result != OpenResult::Opened) Fail("the card file cannot be opened");
  if (report.end_missing || !report.put_aside.empty()) Fail("the card file or its journal is not whole");
  if (report.unsaved && !file.TakeOverUnsaved()) Fail("the indexes cannot be built");
  const CardIds ids(file.cards());
  if (!file.learn_index().Fits(ids) || !file.link_index().Fits(ids)) Fail("an index does not fit");
  // The undo button makes the score 1 and leaves the card where it is in the index.
  constexpr int64_t kUndone = 1;
  for (int row = kFirstCardRow; row <= file.CardCount() + 1; ++row) {
    const int64_t score = LeadingNumber(file.cards().Peek(file.columns().score, row));
    const int64_t key = file.learn_index().Score(file.learn_index().RowOfCard(row));
    if (key != score && score != kUndone) Fail("the index holds older scores");
  }
  return report.unsaved.has_value();
}

// One user who learns and edits. The same seed does the same to the same cards.
class Script {
 public:
  Script(CardFile& file, int64_t now, uint32_t seed) : file_(file), random_(seed), clock_(now) {
    run_.Start();
    desk_.First();
  }

  void Step() {
    clock_.now += kSecondsPerStep;
    ++step_;
    const int dice = Below(20);
    if (dice < 9) return Edit(dice);
    dice == 9 ? run_.Undo() : dice < 14 ? run_.NotKnown() : run_.Known(dice < 16 ? 3 : 0);
  }

 private:
  int Below(int limit) { return static_cast<int>(random_() % static_cast<uint32_t>(limit)); }
  void Edit(int command) {
    desk_.GoTo(kFirstCardRow + Below(file_.CardCount()));
    switch (command) {
      case 0:
        return (void)desk_.InsertEmpty();
      case 1:
        return (void)desk_.Cut();
      case 2:
        desk_.Copy();
        return (void)desk_.Paste();
      case 3:
        return (void)desk_.ToggleDeletion();
      case 4:
        return (void)desk_.RemoveMarked();
      case 5:
        return (void)Renumber(file_, desk_.commands(), {1 + step_ % 3}, desk_.row());
      case 6:
        return (void)desk_.Undo();
      case 7:
        if (Below(3) == 0 && file_.Save() != SaveResult::Saved) Fail("cannot save");
        return;
      default:
        return (void)desk_.Store("Frage " + std::to_string(step_) + " <a href=\"000007\">x</a>", "Antwort\nzwei");
    }
  }

  CardFile& file_;
  std::mt19937 random_;
  FixedClock clock_;
  ScriptedRandom draws_{random_};
  LearningRun run_{file_, IniFile(), clock_, draws_};
  int64_t made_ = 0;
  CardDesk desk_{file_, made_};
  int step_ = 0;
};

// Tells a letter after each command.
[[noreturn]] void WorkUntilKilled(const fs::path& path, int64_t now, uint32_t seed, int news) {
  CardFile file;
  file.journal().FlushInBackground();
  OpenAfterCrash(file, path);
  Script script(file, now, seed);
  for (;;) {
    script.Step();
    if (write(news, "=", 1) != 1) std::_Exit(EXIT_FAILURE);
  }
}

// Runs `work` in a process of its own and kills it. Returns how many letters it told.
int KillAtRandom(const std::function<void(int)>& work, std::mt19937& random) {
  int pipe_ends[2];
  if (pipe(pipe_ends) != 0) Fail("no pipe");
  const pid_t child = fork();
  if (child == 0) {
    close(pipe_ends[0]);
    work(pipe_ends[1]);
  }
  close(pipe_ends[1]);
  int told = 0;
  char letter = 0;
  for (auto i = random() % kMostCommands; i > 0 && read(pipe_ends[0], &letter, 1) == 1; --i) ++told;
  std::this_thread::sleep_for(std::chrono::microseconds(random() % kMostMicroseconds));
  kill(child, SIGKILL);
  while (read(pipe_ends[0], &letter, 1) == 1) ++told;
  close(pipe_ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFSIGNALED(status)) Fail("the program ended by itself");
  return told;
}

// True when the state of the killed deck is that after `done` commands, or after one more.
bool IsExplained(const fs::path& before, int64_t now, uint32_t seed, int done, const std::string& found) {
  CardFile file;
  OpenAfterCrash(file, before);
  Script script(file, now, seed);
  for (int i = 0; i < done; ++i) script.Step();
  if (FileText(file.cards()) == found) return true;
  script.Step();
  return FileText(file.cards()) == found;
}

void CopyDeck(const fs::path& from, const fs::path& to) {
  fs::remove_all(to);
  fs::copy(from, to);
}

int Run(int kills, uint32_t seed, const fs::path& folder) {
  const fs::path deck = folder / "deck";
  fs::create_directories(deck);
  if (!MakeCards(Numbered(kCards, NewCard)).SaveToFile(deck / "x.mlb")) Fail("cannot write");
  std::mt19937 random(seed);
  int64_t now = kNow;
  int commands = 0;
  int taken_over = 0;
  int lost = 0;
  for (int i = 0; i < kills; ++i, now += 100'000) {
    CopyDeck(deck, folder / "before");
    const auto script = static_cast<uint32_t>(random());
    const int done = KillAtRandom([&](int news) { WorkUntilKilled(deck / "x.mlb", now, script, news); }, random);
    commands += done;
    CopyDeck(deck, folder / "after");
    CardFile file;
    taken_over += OpenAfterCrash(file, folder / "after" / "x.mlb") ? 1 : 0;
    if (!IsExplained(folder / "before" / "x.mlb", now, script, done, FileText(file.cards()))) ++lost;
  }
  std::printf("%d kills, %d commands done, %d journals taken over, %d states lost\n", kills, commands, taken_over,
              lost);
  return lost == 0 && taken_over > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace tessaro

int main(int argc, char** argv) {
  const tessaro::TemporaryFolder folder;
  return tessaro::Run(argc > 1 ? std::atoi(argv[1]) : 50, argc > 2 ? static_cast<uint32_t>(std::atoi(argv[2])) : 1,
                      folder.path());
}
