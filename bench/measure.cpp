#include "bench/measure.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>

namespace tessaro {
namespace {

[[noreturn]] void Become(const std::vector<std::string>& arguments) {
  std::vector<char*> pointers;
  for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
  pointers.push_back(nullptr);
  const int nowhere = open("/dev/null", O_WRONLY);
  dup2(nowhere, STDOUT_FILENO);
  execvp(pointers[0], pointers.data());
  _exit(127);
}

}  // namespace

double Time(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double ProcessorTime(const std::function<void()>& work) {
  const auto now = [] {
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
  };
  const double start = now();
  work();
  return now() - start;
}

double Median(std::vector<double> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

double Nearly(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  return values[(values.size() - 1) * 99 / 100];
}

void Print(Measured work, const char* unit, Measured reference) {
  std::printf("  %-42s %10.3f %s   %-28s %10.3f %s   ratio %7.2f\n", work.what, work.value, unit, reference.what,
              reference.value, unit, work.value / reference.value);
  std::fflush(stdout);
}

void Check(bool good, const char* what) {
  if (good) return;
  std::fprintf(stderr, "failed: %s\n", what);
  std::exit(1);
}

ProcessFigures RunProgram(const std::vector<std::string>& arguments) {
  ProcessFigures figures;
  int status = 0;
  rusage usage = {};
  figures.seconds = Time([&] {
    const pid_t child = fork();
    if (child == 0) Become(arguments);
    if (child < 0 || wait4(child, &status, 0, &usage) != child) status = -1;
  });
  if (status != 0) {
    std::fprintf(stderr, "%s failed\n", arguments[0].c_str());
    std::exit(1);
  }
  figures.peak_kib = usage.ru_maxrss;
  return figures;
}

std::string OwnPath() {
  return std::filesystem::canonical("/proc/self/exe").string();
}

}  // namespace tessaro
