#include "exchange/taken_cards.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "cards/card_edit.h"
#include "cards/link_rewriting.h"
#include "hypertext/markup.h"
#include "store/file/safe_save.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

using Numbers = std::map<int64_t, int64_t>;  // of the source, of the card file

Numbers NumbersOf(const CardFile& file, const std::vector<TakenCard>& taken) {
  Numbers numbers;
  for (const TakenCard& card : taken) {
    numbers.emplace(card.source_number, LeadingNumber(file.cards().Peek(file.columns().id, card.target_row)));
  }
  return numbers;
}

// The media files that a side names.
std::set<std::string> NamesOn(std::string_view side) {
  std::set<std::string> names;
  MarkupReader reader(side);
  for (MarkupItem item; reader.Next(item);) {
    const bool media = item.kind == MarkupItem::Kind::Picture || item.kind == MarkupItem::Kind::Video ||
                       item.kind == MarkupItem::Kind::Sound || item.picture_face;
    if (media && !item.text.empty()) names.insert(item.text);
  }
  for (const MediaKind kind : {MediaKind::Picture, MediaKind::Video, MediaKind::Sound, MediaKind::Text}) {
    if (std::optional<MediaDirective> directive = FindDirective(side, kind)) names.insert(directive->name);
  }
  return names;
}

bool IsBelow(const fs::path& relative) {
  return !relative.empty() && relative.is_relative() && *relative.begin() != "..";
}

// Asks behind each piece, with its bytes, whether to go on.
template <typename GoOn>
bool Copy(Disk& disk, const MediaCopy& copy, const GoOn& go_on) {
  constexpr size_t kCopiedAtOnce = size_t{256} * 1024;
  const std::unique_ptr<ReadableFile> from = disk.Open(copy.from);
  if (from == nullptr || !disk.MakeFolder(copy.to.parent_path())) return false;
  std::string piece(kCopiedAtOnce, '\0');
  return ReplaceFile(disk, copy.to, [&](WritableFile& file) {
    std::ptrdiff_t count = 0;
    while ((count = from->Read(piece.data(), piece.size())) > 0) {
      if (!file.Write({piece.data(), static_cast<size_t>(count)}) || !go_on(count)) return false;
    }
    return count == 0;
  });
}

}  // namespace

TakenLinks RewriteTakenLinks(CardFile& file, const std::vector<TakenCard>& taken) {
  const Numbers numbers = NumbersOf(file, taken);
  std::vector<int> rows;
  rows.reserve(taken.size());
  for (const TakenCard& card : taken) rows.push_back(card.target_row);
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  TakenLinks links;
  const NumberMap new_number = [&](int64_t number) -> std::optional<int64_t> {
    const auto found = numbers.find(number);
    ++(found == numbers.end() ? links.left : links.rewritten);
    return found == numbers.end() ? std::nullopt : std::optional(found->second);
  };
  CardCommand command;
  for (const int row : rows) {
    for (const int column : {file.columns().question, file.columns().answer}) {
      const std::optional<std::string> side = RewriteLinks(file.cards().Peek(column, row), new_number);
      if (side) command.Replace(row, {{column, *side}});
    }
  }
  if (!command.empty() && !CardEdit(file).Apply(std::move(command))) return {0, links.left + links.rewritten};
  return links;
}

std::vector<MediaCopy> MissingMedia(const Disk& disk, const CardFile& file, const std::vector<TakenCard>& taken,
                                    const MediaFolders& source, const MediaFolders& own) {
  std::set<std::string> names;
  for (const TakenCard& card : taken) {
    for (const int column : {file.columns().question, file.columns().answer}) {
      names.merge(NamesOn(file.cards().Peek(column, card.target_row)));
    }
  }
  MediaFinder in_source(disk, source);
  MediaFinder in_own(disk, own);
  std::vector<MediaCopy> copies;
  for (const std::string& name : names) {
    const std::optional<fs::path> from = in_source.Find(name);
    if (!from || in_own.Find(name)) continue;
    const fs::path relative = from->lexically_relative(source.folder);
    if (IsBelow(relative)) copies.push_back({*from, own.folder / relative});
  }
  return copies;
}

CopiedMedia CopyMedia(Disk& disk, const std::vector<MediaCopy>& copies, const WorkObserver& observer) {
  CopiedMedia media;
  int64_t done = 0;
  const auto go_on = [&](std::ptrdiff_t bytes) {
    done += bytes;
    media.cancelled = observer && !observer(done);
    return !media.cancelled;
  };
  for (const MediaCopy& copy : copies) {
    const bool copied = Copy(disk, copy, go_on);
    if (media.cancelled) break;
    ++(copied ? media.copied : media.failed);
  }
  return media;
}

int64_t BytesOf(const Disk& disk, const std::vector<MediaCopy>& copies) {
  int64_t bytes = 0;
  for (const MediaCopy& copy : copies) {
    bytes += static_cast<int64_t>(disk.State(copy.from).value_or(FileState()).size);
  }
  return bytes;
}

int64_t CountMarked(const CardFile& file, int end_row) {
  int64_t marked = 0;
  for (int row = kFirstCardRow; row < std::min(end_row, file.CardCount() + 2); ++row) {
    marked += IsDuplicateMarked(file.cards().Peek(file.columns().question, row)) ? 1 : 0;
  }
  return marked;
}

std::optional<int64_t> RemoveMarked(CardFile& file) {
  CardCommand command;
  int64_t marked = 0;
  for (int row = kFirstCardRow; row <= file.CardCount() + 1; ++row) {
    if (!IsDuplicateMarked(file.cards().Peek(file.columns().question, row))) continue;
    command.Remove(row);
    ++marked;
  }
  CardEdit edit(file);
  if (marked > 0 && !edit.Apply(std::move(command))) return std::nullopt;
  (void)edit.Finish();
  return marked;
}

}  // namespace tessaro
