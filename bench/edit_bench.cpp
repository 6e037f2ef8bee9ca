// Times what becomes of the cards outside learning: single cards that come, go and change, and commands on all of them,
// journal and indexes included. Works on generated files, or on a copy of the card file on its command line.
#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "bench/generated_cards.h"
#include "bench/measure.h"
#include "cards/card_edit.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

// Leaves numbers for the cards that come.
constexpr int kMostEdited = 980'000;
constexpr int kTimes = 200;
constexpr double kMilli = 1e3;
constexpr double kMega = 1e6;

struct Bench {
  CardFile& file;
  double reference = 0;  // seconds
  const char* what = "";

  CardEditDone Apply(CardCommand command) {
    std::optional<CardEditDone> done = CardEdit(file).Apply(std::move(command));
    Check(done.has_value(), "command");
    return std::move(*done);
  }
  void Report(const char* work, double seconds) const {
    Print({work, seconds * kMilli}, "ms", {what, reference * kMilli});
  }
};

std::vector<FieldView> NewCard(const CardColumns& columns, const std::string& id) {
  static const std::string letters(kHistoryLength, 'f');
  static const std::string times = [] {
    std::string zeros = "0";
    for (int i = 1; i < kHistoryLength; ++i) zeros += " 0";
    return zeros;
  }();
  return {{columns.id, id},          {columns.topic, "00"},        {columns.question, "-"},
          {columns.answer, "-"},     {columns.score, "000000060"}, {columns.time_learned, "00"},
          {columns.time_row, times}, {columns.yes_no_row, letters}};
}

// Each of many single commands, and the inverse of each at once.
void TimeSingle(Bench& bench, const char* name, const std::function<CardCommand(int row)>& make) {
  std::vector<double> there;
  std::vector<double> back;
  for (int i = 0; i < kTimes; ++i) {
    const int row = kFirstCardRow + static_cast<int>(int64_t{i} * 7919 * 131 % bench.file.CardCount());
    CardCommand command = make(row);
    CardEditDone done;
    there.push_back(Time([&] { done = bench.Apply(std::move(command)); }));
    if (i % 2 == 0) back.push_back(Time([&] { (void)bench.Apply(std::move(done.inverse)); }));
  }
  bench.Report(name, Median(there));
  bench.Report((std::string("  longest but 1 %")).c_str(), Nearly(there));
  bench.Report((std::string("  taken back")).c_str(), Median(back));
}

void TimeSingles(Bench& bench) {
  CardFile& file = bench.file;
  const CardColumns& columns = file.columns();
  std::vector<int32_t> rows(static_cast<size_t>(file.CardCount()));
  std::vector<double> passes;
  for (int i = 0; i < kTimes; ++i) {
    passes.push_back(Time([&] { std::for_each(rows.begin(), rows.end(), [](int32_t& row) { ++row; }); }));
  }
  Check(rows.front() == kTimes, "pass");
  bench.what = "4 bytes a card + 1";
  bench.reference = Median(passes);
  TimeSingle(bench, "insert a card", [&](int row) {
    CardCommand command;
    command.InsertBehind(row, NewCard(columns, file.IssueId()));
    return command;
  });
  TimeSingle(bench, "remove a card", [](int row) {
    CardCommand command;
    command.Remove(row);
    return command;
  });
  int number = 0;
  TimeSingle(bench, "save a side", [&](int row) {
    CardCommand command;
    command.Replace(row, {{columns.question, "Ein neuer Text der Vorderseite " + std::to_string(++number)}});
    return command;
  });
}

void TimeThereAndBack(Bench& bench, const char* name, CardCommand command) {
  CardEditDone done;
  bench.Report(name, Time([&] { done = bench.Apply(std::move(command)); }));
  std::printf("  %-44s %10.1f MB\n", "  inverse", static_cast<double>(done.inverse.MemoryBytes()) / kMega);
  bench.Report("  taken back", Time([&] { (void)bench.Apply(std::move(done.inverse)); }));
}

CardCommand Renumbering(const CardFile& file) {
  const CardColumns& columns = file.columns();
  CardCommand command;
  for (int row = kFirstCardRow; row <= file.CardCount() + 1; ++row) {
    const std::string id = std::to_string(1'000'000 + row).substr(1);
    command.Replace(row, {{columns.id, id}});
    if (row % 20 != 0) continue;
    const std::string question = std::string(file.cards().Peek(columns.question, row)) + "<a href=\"" + id + "\">x</a>";
    command.Replace(row, {{columns.question, question}});
  }
  return command;
}

CardCommand Reset(const CardFile& file) {
  const CardColumns& columns = file.columns();
  const std::vector<FieldView> fresh = NewCard(columns, "");
  CardCommand command;
  for (int row = kFirstCardRow; row <= file.CardCount() + 1; ++row) {
    command.Replace(row, {fresh.begin() + 4, fresh.end()});
  }
  return command;
}

CardCommand Import(const CardFile& file, int count) {
  CardCommand command;
  for (int i = 0; i < count; ++i) {
    const std::string id = std::to_string(1'000'000 + file.highest_id() % 1000 + i).substr(1);
    command.InsertBehind(file.CardCount() + 1, NewCard(file.columns(), id));
  }
  return command;
}

void Measure(const fs::path& path) {
  CardFile file;
  Check(file.Open(path).result == OpenResult::Opened, "open");
  file.journal().FlushInBackground();
  std::printf("%s, %d cards\n", path.filename().c_str(), file.CardCount());
  Bench bench{file};
  TimeSingles(bench);
  bench.what = "wc -l";
  bench.reference = RunProgram({"wc", "-l", path.string()}).seconds;
  CardCommand marked;
  for (int i = 1; i <= 1000; ++i) marked.Remove(kFirstCardRow + i * 9);
  TimeThereAndBack(bench, "remove 1000 cards", std::move(marked));
  TimeThereAndBack(bench, "renumber all, 5 links in 100 cards", Renumbering(file));
  TimeThereAndBack(bench, "reset all statistics", Reset(file));
  TimeThereAndBack(bench, "as many cards again",
                   Import(file, std::min(file.CardCount(), kMostCards - file.CardCount())));
  bench.Report("indexes built anew at the end", Time([&] { Check(CardEdit(file).Finish(), "indexes"); }));
}

}  // namespace
}  // namespace tessaro

int main(int argc, char** argv) {
  tessaro::MeasureCardFiles(
      argc > 1 ? argv[1] : nullptr,
      [](const std::filesystem::path& path, const std::filesystem::path&) { tessaro::Measure(path); },
      tessaro::kMostEdited);
  return 0;
}
