#include "bench/generated_cards.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <string_view>

#include "bench/measure.h"
#include "platform/disk.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr size_t kWriteSize = size_t{1} << 20;
constexpr int64_t kNow = 1'700'000'000;
constexpr int64_t kDay = 86'400;

// Umlauts in code page 1252.
constexpr std::array<std::string_view, 48> kWords = {"das Haus",
                                                     "die Br\xFC"
                                                     "cke",
                                                     "der Fl\xFC"
                                                     "gel",
                                                     "sch\xF6n",
                                                     "gr\xFC\xDF"
                                                     "en",
                                                     "h\xE4ufig",
                                                     "le pont",
                                                     "la maison",
                                                     "beautiful",
                                                     "to greet",
                                                     "often",
                                                     "der Vorgang",
                                                     "wichtig",
                                                     "\xDC"
                                                     "bung",
                                                     "l\xF6sen",
                                                     "Gem\xE4lde",
                                                     "verstehen",
                                                     "comprendre",
                                                     "Schl\xFCssel",
                                                     "la cl\xE9",
                                                     "Hauptstadt",
                                                     "Fl\xE4"
                                                     "che",
                                                     "Einwohner",
                                                     "Jahrhundert",
                                                     "gegr\xFCndet",
                                                     "K\xF6nig",
                                                     "Bundesland",
                                                     "Gebirge",
                                                     "M\xFCndung",
                                                     "Nebenfluss",
                                                     "und",
                                                     "oder",
                                                     "mit",
                                                     "ohne",
                                                     "nach",
                                                     "vor",
                                                     "der",
                                                     "die",
                                                     "das",
                                                     "ein",
                                                     "eine",
                                                     "im",
                                                     "1848",
                                                     "1815",
                                                     "ungef\xE4hr",
                                                     "meist",
                                                     "selten",
                                                     "stets"};

// Chance of our own making, since the distributions of the library differ from one to the next.
class Dice {
 public:
  explicit Dice(uint32_t seed) : generator_(seed) {}
  int Below(int limit) { return static_cast<int>(generator_() % static_cast<uint32_t>(limit)); }
  bool Percent(int chance) { return Below(100) < chance; }
  // Often small, now and then close to `limit`; on average a quarter of it.
  int Uneven(int limit) {
    const double part = Below(10'000) / 10'000.0;
    return static_cast<int>(part * part * part * limit);
  }
  // Two thirds of all cards have one answer, one in eight more than twenty.
  int AnswerCount() {
    const double part = Below(10'000) / 10'000.0;
    const double cubed = part * part * part;
    return 1 + static_cast<int>(cubed * cubed * cubed * kHistoryLength);
  }

 private:
  std::mt19937 generator_;
};

std::string Words(Dice& dice, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    if (i > 0) text += ' ';
    text += kWords[static_cast<size_t>(dice.Below(static_cast<int>(kWords.size())))];
  }
  return text;
}

std::string Number(const char* format, int number) {
  std::array<char, 32> text = {};
  const int length = std::snprintf(text.data(), text.size(), format, number);
  return {text.data(), static_cast<size_t>(length)};
}

// A side as it stands in the file: a line feed is a backslash and an n.
std::string Side(Dice& dice, int count, int line_feeds) {
  std::string side = Words(dice, 1 + dice.Uneven(8));
  if (dice.Percent(12)) side = "<b>" + side + "</b>";
  if (dice.Percent(8)) side += "<br>" + Words(dice, 3);
  if (dice.Percent(line_feeds)) side += "\\n" + Words(dice, 4);
  if (line_feeds > kFewLineFeeds && dice.Percent(line_feeds / 2)) side += "\\n" + Words(dice, 2);
  if (dice.Percent(4)) side += " <a href=\"" + Number("%06d", 1 + dice.Below(count)) + "\">" + Words(dice, 1) + "</a>";
  if (dice.Percent(1)) side += "<img src=\"bilder\\\\" + Number("b%d.jpg", dice.Below(1000)) + "\" border=\"0\">";
  return side;
}

struct History {
  int score = 1;
  std::string letters = std::string(kHistoryLength, 'f');
  std::string times;
};

// Answers newest first, each gap to the one before about a third of the gap that follows.
History RandomHistory(Dice& dice) {
  History history;
  const int fate = dice.Below(100);
  const bool unknown = fate < 6;
  const bool known_once = fate < 24 && !unknown;
  const int answers = known_once ? 1 : dice.AnswerCount();
  int64_t time = kNow - dice.Below(300 * static_cast<int>(kDay));
  int64_t gap = 60 + dice.Uneven(200 * static_cast<int>(kDay));
  if (unknown) history.score = 0;
  if (!unknown && !known_once) history.score = static_cast<int>(gap * 2 + 2);
  for (int i = 0; i < kHistoryLength; ++i) {
    if (i > 0) history.times += ' ';
    history.times += i < answers ? std::to_string(time) : "0";
    if (i < answers && (i > 0 || !unknown) && dice.Percent(85)) history.letters[static_cast<size_t>(i)] = 'w';
    time -= gap;
    gap = std::max<int64_t>(30, gap / 3);
  }
  if (!unknown) history.letters[0] = 'w';
  return history;
}

void AddRow(std::string& text, std::initializer_list<std::string_view> fields) {
  bool first = true;
  for (const std::string_view field : fields) {
    if (!first) text += kFieldSeparator;
    text += field;
    first = false;
  }
  text += '\n';
}

void AddCard(std::string& text, Dice& dice, int id, int count, int line_feeds) {
  const History history = RandomHistory(dice);
  const std::string question = (id == 1 ? "<index><navigation>" : "") + Side(dice, count, line_feeds);
  AddRow(text, {Number("%06d", id), Number("%02d", dice.Below(6)), question, Side(dice, count, line_feeds),
                Number("%09d", history.score), std::to_string(dice.Uneven(4000)), history.letters, history.times});
}

}  // namespace

bool GenerateCards(const std::filesystem::path& path, int count, uint32_t seed, int line_feeds) {
  const std::unique_ptr<WritableFile> file = RealDisk().Create(path);
  if (file == nullptr) return false;
  Dice dice(seed);
  std::string text;
  AddRow(text, {kId, kTopic, kQuestion, kAnswer, kScore, kTimeLearned, kYesNoRow, kTimeRow});
  AddRow(text, {kStartMark, "", "", "", "", "", "", ""});
  for (int id = 1; id <= count; ++id) {
    AddCard(text, dice, id, count, line_feeds);
    if (text.size() < kWriteSize) continue;
    if (!file->Write(text)) return false;
    text.clear();
  }
  AddRow(text, {kEndMark, "", "", "", "", "", "", ""});
  return file->Write(text) && file->Close();
}

void MeasureCardFiles(
    const char* given,
    const std::function<void(const std::filesystem::path& path, const std::filesystem::path& folder)>& measure,
    int most) {
  const auto in_new_folder = [&](const auto& work) {
    std::string name = (std::filesystem::temp_directory_path() / "tessaro_bench_XXXXXX").string();
    Check(mkdtemp(name.data()) != nullptr, "new folder");
    work(std::filesystem::path(name));
    std::filesystem::remove_all(name);
  };
  if (given != nullptr) {
    in_new_folder([&](const std::filesystem::path& folder) {
      const std::filesystem::path copy = folder / std::filesystem::path(given).filename();
      std::filesystem::copy(given, copy);
      measure(copy, folder);
    });
    return;
  }
  for (const int count : {10'000, 100'000, most}) {
    in_new_folder([&](const std::filesystem::path& folder) {
      const std::filesystem::path path = folder / (std::to_string(count) + ".mlb");
      Check(GenerateCards(path, count, 1), "generate");
      measure(path, folder);
    });
  }
}

}  // namespace tessaro
