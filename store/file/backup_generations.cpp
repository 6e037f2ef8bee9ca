#include "store/file/backup_generations.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <map>
#include <utility>

#include "store/file/card_text_count.h"
#include "store/file/safe_save.h"
#include "store/table/card_columns.h"
#include "store/table/card_table.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kNumberWord = " Nr ";
constexpr std::string_view kCardsWord = " Karten ";
constexpr std::string_view kEnding = ".ml~";
constexpr std::string_view kTimePattern = " dddd-dd-dd dd.dd.dd";
constexpr size_t kSignLength = 12;
constexpr size_t kLongestStem = 80;  // bytes, so that the whole name stays below what drives take
constexpr uint64_t kMegabyte = 1'000'000;

std::string PathSign(const fs::path& path) {
  ContentHash hash;
  hash.Add(path.string());
  std::array<char, 24> text = {};
  std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(hash.Stamp().hash));
  return std::string(text.data(), kSignLength);
}

std::string CardFileSign(const fs::path& card_file) {
  std::string stem = card_file.stem().string();
  if (stem.size() > kLongestStem) {
    size_t end = kLongestStem;
    // Not in the middle of a letter.
    while (end > 0 && (static_cast<unsigned char>(stem[end]) & 0xC0U) == 0x80U) --end;
    stem.resize(end);
  }
  return stem + ' ' + PathSign(card_file);
}

bool FitsPattern(std::string_view text, std::string_view pattern) {
  return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                    [](char c, char sign) { return sign == 'd' ? c >= '0' && c <= '9' : c == sign; });
}

// `text` fits kTimePattern.
std::optional<LocalTime> ReadTime(std::string_view text) {
  const auto number = [&](size_t at, size_t length) {
    return static_cast<int>(LeadingNumber(text.substr(at, length)));
  };
  const LocalTime time = {number(1, 4), number(6, 2), number(9, 2), number(12, 2), number(15, 2), number(18, 2)};
  const std::chrono::year_month_day date(std::chrono::year(time.year),
                                         std::chrono::month(static_cast<unsigned>(time.month)),
                                         std::chrono::day(static_cast<unsigned>(time.day)));
  constexpr int kLeapSecond = 60;
  if (!date.ok() || time.hour > 23 || time.minute > 59 || time.second > kLeapSecond) return std::nullopt;
  return time;
}

// Takes "WORD NUMBER" off the end of the name.
std::optional<int64_t> TakeNumber(std::string_view& name, std::string_view word) {
  const size_t at = name.rfind(word);
  if (at == std::string_view::npos || !HasDigits(name.substr(at + word.size()))) return std::nullopt;
  const int64_t number = LeadingNumber(name.substr(at + word.size()));
  name = name.substr(0, at);
  return number;
}

// Copies take at most half of what is free: the next save of the cards needs room more than its copy does.
bool HasRoom(const Disk& disk, const fs::path& folder, uint64_t bytes) {
  const std::optional<uint64_t> free = disk.FreeBytes(folder);
  return !free || bytes <= *free / 2;
}

bool NewerFirst(const Generation& a, const Generation& b) {
  return a.name.number > b.name.number;
}

// The copies that may go, the oldest first: all but the newest of each card file. A copy is no younger than the next
// one of its card file, even if the clock said so.
std::vector<Generation> OldestFirst(std::vector<Generation> all) {
  std::sort(all.begin(), all.end(), NewerFirst);
  std::map<std::string, LocalTime> next;
  std::vector<std::pair<LocalTime, Generation>> older;
  for (Generation& generation : all) {
    const auto [place, newest] = next.try_emplace(generation.name.card_file, generation.name.saved);
    if (newest) continue;
    place->second = std::min(place->second, generation.name.saved);
    older.emplace_back(place->second, std::move(generation));
  }
  std::reverse(older.begin(), older.end());
  std::stable_sort(older.begin(), older.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<Generation> sorted;
  sorted.reserve(older.size());
  for (auto& [time, generation] : older) sorted.push_back(std::move(generation));
  return sorted;
}

}  // namespace

std::string FileNameOf(const GenerationName& name) {
  const LocalTime& time = name.saved;
  std::array<char, 64> text = {};
  std::snprintf(text.data(), text.size(), " %04d-%02d-%02d %02d.%02d.%02d", time.year, time.month, time.day, time.hour,
                time.minute, time.second);
  return name.card_file + text.data() + std::string(kNumberWord) + std::to_string(name.number) +
         std::string(kCardsWord) + std::to_string(name.cards) + std::string(kEnding);
}

std::optional<GenerationName> ReadGenerationName(std::string_view file_name) {
  if (!file_name.ends_with(kEnding)) return std::nullopt;
  std::string_view rest = file_name.substr(0, file_name.size() - kEnding.size());
  const std::optional<int64_t> cards = TakeNumber(rest, kCardsWord);
  const std::optional<int64_t> number = TakeNumber(rest, kNumberWord);
  if (!cards || !number || *number < 1 || rest.size() <= kTimePattern.size() + kSignLength) return std::nullopt;
  const std::string_view time_text = rest.substr(rest.size() - kTimePattern.size());
  rest.remove_suffix(kTimePattern.size());
  const std::string_view sign = rest.substr(rest.size() - kSignLength);
  const bool hexadecimal = sign.find_first_not_of("0123456789abcdef") == std::string_view::npos;
  if (!hexadecimal || !FitsPattern(time_text, kTimePattern)) return std::nullopt;
  const std::optional<LocalTime> time = ReadTime(time_text);
  if (!time) return std::nullopt;
  GenerationName name = {std::string(rest), *time, *number, *cards};
  if (FileNameOf(name) != file_name) return std::nullopt;
  return name;
}

std::vector<Generation> GenerationFolder::All() const {
  std::vector<Generation> all;
  for (const std::string& file_name : disk_.FileNames(folder_)) {
    const std::optional<GenerationName> name = ReadGenerationName(file_name);
    if (!name) continue;
    const fs::path path = folder_ / file_name;
    all.push_back({*name, path, disk_.State(path).value_or(FileState()).size});
  }
  return all;
}

std::vector<Generation> GenerationFolder::Of(const fs::path& card_file) const {
  std::vector<Generation> found = All();
  const std::string sign = CardFileSign(card_file);
  std::erase_if(found, [&](const Generation& generation) { return generation.name.card_file != sign; });
  std::sort(found.begin(), found.end(), NewerFirst);
  return found;
}

GenerationResult GenerationFolder::Add(const SavedCards& saved, const LocalTime& now,
                                       const GenerationSettings& settings) {
  const auto copy = [&](const fs::path& fresh) {
    return HasRoom(disk_, folder_, saved.state.size) ? CopyTo(saved, fresh) : GenerationResult::NoRoom;
  };
  return AddBy(copy, saved.path, saved.cards, now, settings);
}

GenerationResult GenerationFolder::AddCards(const fs::path& card_file, CardTable& cards, const LocalTime& now,
                                            const GenerationSettings& settings, Progress* progress) {
  const int cursor = cards.CurrentRow();
  const auto write = [&](const fs::path& fresh) {
    ContentStamp stamp;
    const bool written = ReplaceFile(disk_, fresh, [&](WritableFile& file) {
      StampingWriter stamped(file);
      const bool good = cards.SaveTo(stamped, progress);
      stamp = stamped.Stamp();
      return good;
    });
    CardTextCount copy;
    const bool good = written && CountFile(disk_, fresh, copy) && copy.rows() == cards.RowCount() && copy.HasEndRow() &&
                      copy.Stamp() == stamp;
    return good ? GenerationResult::Made : GenerationResult::Failed;
  };
  const GenerationResult result = AddBy(write, card_file, cards.RowCount() - 2, now, settings);
  cards.GoTo(cursor);
  return result;
}

GenerationResult GenerationFolder::AddBy(const MakeCopy& make, const fs::path& card_file, int64_t cards,
                                         const LocalTime& now, const GenerationSettings& settings) {
  if (!disk_.MakeFolder(folder_)) return GenerationResult::Failed;
  const std::vector<Generation> older = Of(card_file);
  const std::string sign = CardFileSign(card_file);
  const int64_t number = older.empty() ? 1 : older.front().name.number + 1;
  // Until it is known to be good it has a name that no one takes for that of a copy, always the same one.
  const fs::path fresh = folder_ / (sign + ".neu");
  GenerationResult result = make(fresh);
  if (result == GenerationResult::Made && !disk_.Rename(fresh, folder_ / FileNameOf({sign, now, number, cards}))) {
    result = GenerationResult::Failed;
  }
  if (result != GenerationResult::Made) {
    (void)disk_.Remove(fresh);
    return result;
  }
  (void)disk_.FlushFolder(folder_);
  LetGo(card_file, static_cast<uint64_t>(settings.most_mb) * kMegabyte);
  return result;
}

// A real copy and no second name of the same file: what damages the one must not damage the other, and the folder may
// be on another drive.
GenerationResult GenerationFolder::CopyTo(const SavedCards& saved, const fs::path& fresh) {
  const std::unique_ptr<ReadableFile> source = disk_.Open(saved.path);
  // Asked after the opening: a file saved once more has another state, whichever of the two was opened.
  if (disk_.State(saved.path) != saved.state) return GenerationResult::Overtaken;
  if (source == nullptr) return GenerationResult::Failed;
  const bool copied = ReplaceFile(disk_, fresh, [&](WritableFile& target) {
    constexpr size_t kPiece = size_t{1} << 18U;
    std::string piece(kPiece, '\0');
    std::ptrdiff_t size = 1;
    while (size > 0) {
      size = source->Read(piece.data(), piece.size());
      if (size <= 0) break;
      if (!target.Write(std::string_view(piece.data(), static_cast<size_t>(size)))) return false;
    }
    return size == 0;
  });
  CardTextCount copy;
  if (!copied || !CountFile(disk_, fresh, copy)) return GenerationResult::Failed;
  disk_.CopyRights(saved.path, fresh);
  const bool good = copy.rows() == saved.cards + 2 && copy.HasEndRow() && copy.Stamp() == saved.stamp;
  return good ? GenerationResult::Made : GenerationResult::Failed;
}

void GenerationFolder::LetGo(const fs::path& card_file, uint64_t most_bytes) {
  const std::vector<Generation> own = Of(card_file);
  std::vector<LocalTime> saves;
  saves.reserve(own.size());
  for (const Generation& generation : own) saves.push_back(generation.name.saved);
  const std::vector<bool> keep = GenerationsToKeep(saves);
  for (size_t i = own.size(); i-- > 1;) {
    if (!keep[i]) (void)disk_.Remove(own[i].path);
  }
  const std::vector<Generation> all = All();
  uint64_t bytes = 0;
  for (const Generation& generation : all) bytes += generation.bytes;
  for (const Generation& oldest : OldestFirst(all)) {
    if (bytes <= most_bytes) break;
    if (disk_.Remove(oldest.path)) bytes -= oldest.bytes;
  }
}

}  // namespace tessaro
