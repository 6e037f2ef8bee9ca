#include "exchange/compare_source.h"

#include <utility>

#include "store/file/card_layout.h"

namespace tessaro {

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
  cards = std::move(loaded);
  return SourceLoad::Loaded;
}

}  // namespace tessaro
