#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

namespace tessaro {

[[noreturn]] inline void Fail(const std::string& what) {
  std::fprintf(stderr, "FAILED: %s\n", what.c_str());
  std::_Exit(EXIT_FAILURE);
}

// Runs `work` in a process of its own, which writes a letter to the file that it is given after each command, and kills
// it: after fewer than `commands`, and fewer than `microseconds`. Returns how many commands were done.
template <typename Work>
int KillAtRandom(const Work& work, unsigned commands, unsigned microseconds, std::mt19937& random) {
  int pipe_ends[2];
  if (pipe(pipe_ends) != 0) Fail("no pipe");
  const pid_t child = fork();
  if (child == 0) {
    close(pipe_ends[0]);
    work(pipe_ends[1]);
  }
  close(pipe_ends[1]);
  int done = 0;
  char letter = 0;
  for (auto i = random() % commands; i > 0 && read(pipe_ends[0], &letter, 1) == 1; --i) ++done;
  std::this_thread::sleep_for(std::chrono::microseconds(random() % microseconds));
  kill(child, SIGKILL);
  while (read(pipe_ends[0], &letter, 1) == 1) ++done;
  close(pipe_ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFSIGNALED(status)) Fail("the program ended by itself");
  return done;
}

// The tool's two arguments, how many kills and which seed, and a folder of its own for `run`, which returns the result
// of the program.
template <typename Run>
int RunKills(int argc, char** argv, const Run& run) {
  const int kills = argc > 1 ? std::atoi(argv[1]) : 30;
  const auto seed = static_cast<uint32_t>(argc > 2 ? std::atoi(argv[2]) : 1);
  std::string folder = (std::filesystem::temp_directory_path() / "kills_XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) Fail("no folder");
  const int result = run(kills, seed, folder);
  std::filesystem::remove_all(folder);
  return result;
}

}  // namespace tessaro
