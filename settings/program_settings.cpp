#include "settings/program_settings.h"

#include <array>
#include <chrono>
#include <string>
#include <string_view>
#include <thread>

namespace tessaro {
namespace {

// Sections whose keys mean something only together.
constexpr std::array<std::string_view, 2> kLists = {"RECENT", "LShortCuts"};

// Writing takes a few milliseconds. Where no lock can be had, or another program has hung with it, it goes without.
LockAttempt LockOf(Disk& disk, const std::filesystem::path& path) {
  constexpr int kAttempts = 50;
  constexpr std::chrono::milliseconds kPause{20};
  const std::filesystem::path sign = path.parent_path() / ("." + path.filename().string() + ".lock");
  LockAttempt attempt = disk.Lock(sign);
  for (int i = 1; i < kAttempts && attempt.held_by_other; ++i) {
    std::this_thread::sleep_for(kPause);
    attempt = disk.Lock(sign);
  }
  return attempt;
}

}  // namespace

bool ProgramSettings::Save(Disk& disk) {
  if (!ini.changed()) return true;
  const LockAttempt lock = LockOf(disk, path);
  IniFile file;
  if (!file.Load(disk, path)) return false;
  // A file that is gone gets all of ours.
  const bool exists = disk.Exists(path);
  if (exists) ini.RepeatIn(file, kLists);
  if (!(exists ? file : ini).Save(disk, path)) return false;
  ini.Parse(std::string(exists ? file.Text() : ini.Text()));
  return true;
}

}  // namespace tessaro
