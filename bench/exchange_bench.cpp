// Comparing two card files of 50,000 word cards, beside a sample of the same work pair by pair; and exports, imports
// and the reset of all statistics, beside `cp` or the opening of the result.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>

#include "bench/generated_cards.h"
#include "bench/measure.h"
#include "exchange/card_export.h"
#include "exchange/card_import.h"
#include "exchange/compare_scan.h"
#include "exchange/foreign_text.h"
#include "exchange/separators.h"
#include "exchange/statistics_reset.h"

namespace {

using namespace tessaro;
namespace fs = std::filesystem;

constexpr int kRounds = 3;
constexpr double kMilli = 1e3;
constexpr int kComparedCards = 50'000;
constexpr size_t kVocabulary = 30'000;

// Words as languages have them: few that are frequent, many that are rare.
class Words {
 public:
  explicit Words(uint32_t seed) : random_(seed) {
    std::mt19937 letters(7);
    for (size_t i = 0; i < kVocabulary; ++i) {
      std::string word;
      const size_t length = i < 40 ? 2 + letters() % 3 : 3 + letters() % 9;
      while (word.size() < length) word += std::string("enisratdhulcgmobwfkzvp")[letters() % 22];
      words_.push_back(word);
    }
  }
  std::string Side() {
    std::string side;
    for (size_t count = 1 + random_() % 4; count > 0; --count) {
      const double part = static_cast<double>(random_()) / 4294967296.0;
      side += words_[static_cast<size_t>(part * part * part * static_cast<double>(kVocabulary))];
      if (count > 1) side += ' ';
    }
    return side;
  }
  bool OneIn(uint32_t n) { return random_() % n == 0; }

 private:
  std::mt19937 random_;
  std::vector<std::string> words_;
};

CardTable MakeDeck(uint32_t seed, const CardTable* other) {
  Words words(seed);
  CardTable cards;
  cards.SetSeparator(kFieldSeparator);
  for (const std::string_view name : kCardColumns) cards.AddColumn(name);
  const auto add = [&](const std::string& id, const std::string& front, const std::string& back) {
    cards.AppendRow();
    const int row = cards.RowCount();
    cards.Poke(1, row, id);
    cards.Poke(3, row, front);
    cards.Poke(4, row, back);
    cards.Poke(5, row, "000000060");
  };
  add("@@", "", "");
  for (int i = 1; i <= kComparedCards; ++i) {
    std::string front = words.Side();
    std::string back = words.Side();
    // One card in ten is in the other file, too, half of these with a word more.
    if (other != nullptr && words.OneIn(10)) {
      front = other->Peek(3, i + 1);
      back = other->Peek(4, i + 1);
      if (words.OneIn(2)) back += " " + words.Side();
    }
    add(std::to_string(1'000'000 + i).substr(1), front, back);
  }
  add("##", "", "");
  return cards;
}

CardSides Sides(const CardTable& cards, int row) {
  return {cards.Peek(3, row), cards.Peek(4, row)};
}

// What all target cards are searched with.
MatchFinder MakeFinder(const CardTable& target, const CompareRule& rule) {
  MatchFinder finder(rule, [&](int row) { return Sides(target, row); });
  for (int row = kFirstCardRow; row <= kComparedCards + 1; ++row) finder.Count(row);
  for (int row = kFirstCardRow; row <= kComparedCards + 1; ++row) finder.MakeFindable(row);
  return finder;
}

// Seconds of the literal work for all pairs, told from some source cards; their matches must be those of the finder.
double LiteralSeconds(const CardTable& target, const CardTable& source, const MatchFinder& finder,
                      const CompareRule& rule) {
  constexpr int kSample = 20;
  std::vector<std::vector<Match>> matches(kSample);
  const auto row_of = [](int i) { return kFirstCardRow + i * (kComparedCards / kSample); };
  const double seconds = Time([&] {
    for (int i = 0; i < kSample; ++i) {
      for (int row = kFirstCardRow; row <= kComparedCards + 1; ++row) {
        const int result = Similarity(Sides(target, row), Sides(source, row_of(i)), rule);
        if (result != kNoMatch) matches[static_cast<size_t>(i)].push_back({row, result});
      }
    }
  });
  for (int i = 0; i < kSample; ++i) {
    Check(finder.Find(Sides(source, row_of(i)), kFirstCardRow) == matches[static_cast<size_t>(i)], "the same matches");
  }
  return seconds * kComparedCards / kSample;
}

void MeasureCompare(const CardTable& target, const CardTable& source, const CompareRule& rule) {
  std::vector<double> seconds;
  size_t matches = 0;
  for (int i = 0; i < kRounds; ++i) {
    matches = 0;
    seconds.push_back(Time([&] {
      const MatchFinder finder = MakeFinder(target, rule);
      for (int row = kFirstCardRow; row <= kComparedCards + 1; ++row) {
        matches += finder.Find(Sides(source, row), kFirstCardRow).size();
      }
    }));
  }
  const std::string what = "compare 50,000 x 50,000, " + std::to_string(rule.threshold) + " %, words > " +
                           std::to_string(rule.min_word_length);
  Print({what.c_str(), *std::min_element(seconds.begin(), seconds.end())}, "s",
        {"pair by pair (from a sample)", LiteralSeconds(target, source, MakeFinder(target, rule), rule)});
  std::printf("    %zu pairs match\n", matches);
}

// A whole comparison with its stops, each decided at once; before the first ones all was looked at in advance.
void MeasureStops(CardTable& target, CardTable& source, const fs::path& folder) {
  constexpr size_t kLookedAt = 200;
  const fs::path path = folder / "target.mlb";
  Check(target.SaveToFile(path), "save");
  CardFile file;
  Check(file.Open(path).result == OpenResult::Opened, "open");
  CompareScan scan(file, &source, {});
  std::vector<double> decided;
  const double whole = Time([&] {
    while (scan.Advance([] { return true; }) == CompareScan::Step::Stopped) {
      if (decided.size() < kLookedAt) {
        while (scan.LookAhead([] { return true; })) {
        }
        decided.push_back(Time([&] {
          Check(scan.KeepBoth({}), "keep");
          (void)scan.Advance([] { return true; });
        }));
      }
      Check(scan.KeepBoth({}), "keep");
    }
  });
  Print({"next stop, median", Median(decided) * kMilli}, "ms",
        {"slowest", *std::max_element(decided.begin(), decided.end()) * kMilli});
  std::printf("    %lld stops and %lld cards taken over in %.3f s\n", static_cast<long long>(scan.counts().pairs),
              static_cast<long long>(scan.counts().taken), whole);
}

void MeasureCompares() {
  const fs::path folder = fs::temp_directory_path() / ("exchange_bench." + std::to_string(getpid()));
  fs::create_directories(folder);
  CardTable target = MakeDeck(1, nullptr);
  CardTable source = MakeDeck(2, &target);
  for (const int percent : {50, 20}) {
    for (const size_t min_length : {size_t{1}, size_t{3}}) {
      MeasureCompare(target, source, {.threshold = percent, .min_word_length = min_length});
    }
  }
  MeasureStops(target, source, folder);
  fs::remove_all(folder);
}

double CopySeconds(const fs::path& from, const fs::path& to) {
  std::vector<double> seconds;
  for (int i = 0; i < kRounds; ++i) {
    fs::remove(to);
    sync();
    seconds.push_back(RunProgram({"cp", from.string(), to.string()}).seconds);
  }
  return *std::min_element(seconds.begin(), seconds.end());
}

template <typename Write>
void MeasureExport(const char* what, const fs::path& path, const Write& write) {
  std::vector<double> seconds;
  for (int i = 0; i < kRounds; ++i) {
    fs::remove(path);
    sync();
    seconds.push_back(Time([&] { Check(ExportToFile(RealDisk(), path, write).end == ExportEnd::Done, what); }));
  }
  Print({what, *std::min_element(seconds.begin(), seconds.end()) * kMilli}, "ms",
        {"cp of what was written", CopySeconds(path, path.string() + ".copy") * kMilli});
}

double OpenWithoutIndexes(const fs::path& path) {
  const CardFilePaths paths = PathsFor(path);
  fs::remove(paths.learn_index);
  fs::remove(paths.link_index);
  return Time([&] {
    CardFile file;
    Check(file.Open(path).result == OpenResult::Opened, "open");
  });
}

// The text is gone before the cards are loaded.
void ImportTable(const fs::path& table, const CardFilePaths& paths) {
  const std::string bytes = ReadForeignText(*ReadFile(RealDisk(), table)).bytes;
  const TableLayout layout = {'\x01', '\x02'};
  const TableCheck check = CheckTable(bytes, layout);
  Check(ReplaceByTable(RealDisk(), paths, bytes, layout, check).end == ImportEnd::Done, "table import");
}

// A new card file has cards of its own, and no number is above 999990.
constexpr int kMostImported = 999'980;

void MeasureFiles(const fs::path& path, const fs::path& folder) {
  std::printf("%s\n", path.filename().c_str());
  CardFile file;
  Check(file.Open(path).result == OpenResult::Opened, "open");
  const fs::path table = folder / "table.txt";
  const fs::path text = folder / "text.txt";
  MeasureExport("table export", table,
                [&](WritableFile& out) { return WriteTableExport(file.cards(), '\x01', '\x02', {}, out); });
  MeasureExport("text export", text,
                [&](WritableFile& out) { return WriteTextExport(file.cards(), '\x01', '\x02', {}, out); });

  const double reset = Time([&] { Check(ResetStatistics(file, std::nullopt).has_value(), "reset"); });
  Print({"reset of all statistics", reset * kMilli}, "ms",
        {"wc -l", RunProgram({"wc", "-l", path.string()}).seconds * kMilli});

  const fs::path imported = folder / "imported.mlb";
  Check(file.CreateNew(imported), "new file");
  const double table_import = Time([&] {
    ImportTable(table, file.paths());
    Check(file.Open(imported).result == OpenResult::Opened, "open");
  });
  file.Close();
  Print({"table import, file loaded", table_import * kMilli}, "ms",
        {"opening without indexes", OpenWithoutIndexes(imported) * kMilli});

  const fs::path appended = folder / "appended.mlb";
  Check(file.CreateNew(appended), "new file");
  const double text_import = Time([&] {
    const std::string bytes = ReadForeignText(*ReadFile(RealDisk(), text)).bytes;
    const TextLayout layout = {.separator = '\x01', .card_separator = '\x02'};
    const TextCheck check = CheckText(bytes, layout);
    Check(check.good, "check");
    Check(ImportText(file, bytes, layout, check, 0).end == ImportEnd::Done, "text import");
  });
  Check(file.Save() == SaveResult::Saved, "save");
  file.Close();
  Print({"text import", text_import * kMilli}, "ms",
        {"opening without indexes", OpenWithoutIndexes(appended) * kMilli});
}

}  // namespace

// What to measure: "compare", or a card file; else all.
int main(int argc, char** argv) {
  const std::string_view what = argc > 1 ? argv[1] : "";
  if (what.empty() || what == "compare") MeasureCompares();
  if (what != "compare") tessaro::MeasureCardFiles(what.empty() ? nullptr : argv[1], MeasureFiles, kMostImported);
  return 0;
}
