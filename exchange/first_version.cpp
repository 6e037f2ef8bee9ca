#include "exchange/first_version.h"

#include <algorithm>
#include <vector>

#include "exchange/card_frame.h"
#include "exchange/foreign_text.h"
#include "platform/disk.h"
#include "store/file/card_file_types.h"
#include "store/file/ini_file.h"
#include "store/file/safe_save.h"
#include "store/table/card_columns.h"

namespace tessaro::first_version {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kTopicLine = "999999";
constexpr std::string_view kSection = "TOPIC";
constexpr std::string_view kNameKey = "name";
constexpr size_t kFirstColumn = 10;
constexpr size_t kLastColumn = 499;
constexpr size_t kMostMarks = 22;
constexpr size_t kBehindMark = 2;  // characters from a mark to the name
constexpr size_t kLongestName = 20;
constexpr int kHeadLines = 2;
constexpr size_t kBufferSize = size_t{256} * 1024;

std::vector<size_t> FindMarks(std::string_view line, char separator) {
  std::vector<size_t> marks;
  for (size_t i = kFirstColumn; i <= kLastColumn && i < line.size() && marks.size() < kMostMarks; ++i) {
    if (line[i] == separator) break;
    if (line[i] == '*') marks.push_back(i);
  }
  return marks;
}

// Takes the next line, its line feed included, or the next piece of a long one.
std::string_view TakePiece(std::string_view& rest) {
  const size_t line_feed = rest.substr(0, kPiece).find('\n');
  const size_t size = line_feed != std::string_view::npos ? line_feed + 1 : std::min(kPiece, rest.size());
  const std::string_view piece = rest.substr(0, size);
  rest.remove_prefix(size);
  return piece;
}

void AppendConverted(std::string& target, std::string_view piece, char separator) {
  for (size_t i = 0; i < piece.size(); ++i) {
    const char c = piece[i];
    if (c == '\\') {
      target += "\\\\";
    } else if (c == '|' && i + 1 < piece.size() && piece[i + 1] == '|') {
      target += "\\n";
      ++i;
    } else {
      target += c == separator ? kFieldSeparator : c;
    }
  }
}

}  // namespace

Topics ReadTopics(std::string_view line, char separator) {
  const std::vector<size_t> marks = FindMarks(line, separator);
  const auto name = [&](size_t i) {
    if (i + 1 >= marks.size() || marks[i + 1] < marks[i] + kBehindMark) return std::string(kNoTopic);
    const std::string_view text = line.substr(marks[i] + kBehindMark, marks[i + 1] - marks[i] - kBehindMark);
    return std::string(text.empty() || text.size() > kLongestName ? kNoTopic : text);
  };
  Topics topics;
  for (size_t i = 0; i < kTopics; ++i) topics.names[i] = name(i);
  topics.name = name(kTopics);
  return topics;
}

void Put(const Topics& topics, IniFile& settings) {
  settings.RemoveSection(kSection);
  const auto put = [&](std::string_view key, std::string_view name) {
    if (!settings.SetString(kSection, key, name)) settings.SetString(kSection, key, kNoTopic);
  };
  for (size_t i = 0; i < kTopics; ++i) put(std::to_string(i), topics.names[i]);
  put(kNameKey, topics.name);
}

Transfer WriteCards(std::string_view exported, char separator, WritableFile& file, const WorkObserver& observer) {
  Transfer transfer;
  WorkWatch watch(observer, kTellEveryBytes);
  std::string buffer = CardFileHead();
  std::string_view rest = exported;
  bool open_line = false;
  for (int i = 0; i < kHeadLines && !rest.empty(); ++i) TakePiece(rest);
  while (!rest.empty()) {
    if (!watch.GoOn(static_cast<int64_t>(exported.size() - rest.size()))) return transfer;
    const std::string_view piece = TakePiece(rest);
    if (piece.starts_with(kTopicLine)) {
      transfer.topics = ReadTopics(piece, separator);
      continue;
    }
    AppendConverted(buffer, piece, separator);
    ++transfer.lines;
    open_line = !piece.ends_with('\n');
    if (buffer.size() < kBufferSize) continue;
    if (!file.Write(buffer)) return transfer;
    buffer.clear();
  }
  if (open_line) buffer += '\n';
  AppendFrameRow(buffer, kEndMark);
  buffer += '\n';
  transfer.good = file.Write(buffer);
  return transfer;
}

Result TransferFile(Disk& disk, const fs::path& source, const fs::path& target, char separator,
                    const WorkObserver& observer) {
  std::optional<std::string> raw = ReadFile(disk, source);
  if (!raw) return {End::CannotOpen, 0};
  const std::string exported = ReadCodePageText(*std::move(raw)).bytes;
  const CardFilePaths paths = PathsFor(disk.Resolve(target));
  const LockAttempt lock = disk.Lock(LockPathOf(paths.cards));
  if (lock.held_by_other) return {End::InUse, 0};
  bool cancelled = false;
  const WorkObserver watched = [&](int64_t done) {
    cancelled = observer && !observer(done);
    return !cancelled;
  };
  // Before the cards: indexes of other cards might seem to fit.
  if (!disk.Remove(paths.learn_index) || !disk.Remove(paths.link_index)) return {End::Failed, 0};
  Transfer transfer;
  const auto write = [&](WritableFile& file) {
    transfer = WriteCards(exported, separator, file, watched);
    return transfer.good;
  };
  if (!ReplaceFile(disk, paths.cards, write, paths.backup)) return {cancelled ? End::Cancelled : End::Failed, 0};
  IniFile settings;
  const bool kept = !transfer.topics || (settings.Load(disk, paths.settings) &&
                                         (Put(*transfer.topics, settings), settings.Save(disk, paths.settings)));
  return {kept ? End::Done : End::TopicsFailed, transfer.lines};
}

}  // namespace tessaro::first_version
