#include "exchange/compare_source.h"

#include <utility>

#include "cards/code_page_change.h"
#include "settings/side_settings.h"
#include "store/file/card_layout.h"
#include "store/file/ini_file.h"

namespace tessaro {
namespace {

// False: a text has characters that the other code pages lack.
bool BringInto(const SideCodePages& from, const SideCodePages& to, CardTable& cards) {
  const auto convert = [&](std::string_view name, CodePage old_page, CodePage new_page) {
    const int column = cards.ColumnIndex(name);
    for (int row = 1; row <= cards.RowCount() && !(old_page == new_page); ++row) {
      const std::string_view side = cards.Peek(column, row);
      const std::optional<std::string> converted = ConvertedSide(side, old_page, new_page);
      if (!converted) return false;
      if (*converted != side) cards.Poke(column, row, *converted);
    }
    return true;
  };
  return convert(kQuestion, from.front, to.front) && convert(kAnswer, from.back, to.back);
}

SideCodePages CodePagesOf(Disk& disk, const std::filesystem::path& cards) {
  IniFile settings;
  (void)settings.Load(disk, PathsFor(disk.Resolve(cards)).settings);
  return ReadCodePages(settings);
}

}  // namespace

SourceLoad LoadSource(Disk& disk, const CardFile& file, const std::filesystem::path& path, CardTable& cards) {
  if (!HasCardFileType(path)) return disk.Exists(path) ? SourceLoad::WrongType : SourceLoad::CannotOpen;
  if (std::filesystem::absolute(disk.Resolve(path)).lexically_normal() == file.paths().cards) {
    if (file.changed()) return SourceLoad::TargetChanged;
    return file.ChangedOnDisk() ? SourceLoad::NotIdentical : SourceLoad::Internal;
  }
  const std::unique_ptr<ReadableFile> source = disk.Open(path);
  if (source == nullptr) return SourceLoad::CannotOpen;
  CardTable loaded;
  loaded.SetSeparator(kFieldSeparator);
  if (!loaded.LoadFrom(*source) || loaded.ColumnIndex(kQuestion) == 0) return SourceLoad::CannotLoad;
  if (CompleteCards(loaded) == CardTableState::Unusable) return SourceLoad::NoCards;
  if (!BringInto(CodePagesOf(disk, path), ReadCodePages(file.settings()), loaded)) return SourceLoad::OtherCharacters;
  cards = std::move(loaded);
  return SourceLoad::Loaded;
}

}  // namespace tessaro
