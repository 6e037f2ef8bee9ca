#include "store/file/cut_save.h"

#include <algorithm>
#include <optional>
#include <string>
#include <variant>

#include "store/file/journal.h"

namespace tessaro {
namespace {

// The content that the journal saw written last.
std::optional<ContentStamp> LastSavePoint(Disk& disk, const std::filesystem::path& journal) {
  const std::optional<std::string> text = ReadFile(disk, journal);
  const std::optional<JournalContents> contents = text ? ParseJournal(*text) : std::nullopt;
  if (!contents) return std::nullopt;
  const auto is_save = [](const JournalRecord& record) { return std::holds_alternative<SavePoint>(record.what); };
  const auto last = std::find_if(contents->records.rbegin(), contents->records.rend(), is_save);
  if (last == contents->records.rend()) return std::nullopt;
  return std::get<SavePoint>(last->what).stamp;
}

}  // namespace

bool WasCutShort(const Disk& disk, const CardFilePaths& paths) {
  return !disk.Exists(paths.cards) && disk.Exists(paths.backup) && disk.Exists(BesideName(paths.cards));
}

CutSave MendCutSave(Disk& disk, const CardFilePaths& paths) {
  if (!WasCutShort(disk, paths)) return CutSave::None;
  const std::filesystem::path fresh = BesideName(paths.cards);
  const std::optional<ContentStamp> saved = LastSavePoint(disk, paths.journal);
  const bool whole = saved && StampOf(disk, fresh) == saved;
  if (!disk.Rename(whole ? fresh : paths.backup, paths.cards)) return CutSave::None;
  return whole ? CutSave::Finished : CutSave::TakenBack;
}

}  // namespace tessaro
