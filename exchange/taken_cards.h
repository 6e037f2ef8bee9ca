#pragma once

#include <climits>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "exchange/compare_scan.h"
#include "exchange/work_observer.h"
#include "hypertext/media.h"

// What is left to do when cards of another card file were taken over.
namespace tessaro {

struct TakenLinks {
  int64_t rewritten = 0;
  int64_t left = 0;  // their targets were not taken over
};
// Links of the cards lead to numbers of the source: those whose target was taken over too get its new number. Nothing
// is changed when the card file cannot take it.
TakenLinks RewriteTakenLinks(CardFile& file, const std::vector<TakenCard>& taken);

struct MediaCopy {
  std::filesystem::path from;
  std::filesystem::path to;
};
// Files that the cards name without a full path and that lie with the source but not with the card file.
std::vector<MediaCopy> MissingMedia(const Disk& disk, const CardFile& file, const std::vector<TakenCard>& taken,
                                    const MediaFolders& source, const MediaFolders& own);
struct CopiedMedia {
  int64_t copied = 0;
  int64_t failed = 0;
  bool cancelled = false;  // the files that are left were not looked at
};
// Copies them one after the other; one that fails, or in which the observer ends it, is not there. The observer is told
// the bytes, BytesOf at the end.
CopiedMedia CopyMedia(Disk& disk, const std::vector<MediaCopy>& copies, const WorkObserver& observer = {});
int64_t BytesOf(const Disk& disk, const std::vector<MediaCopy>& copies);

// Cards before `end_row` whose front holds the mark of a duplicate.
int64_t CountMarked(const CardFile& file, int end_row = INT_MAX);
// Removes them; how many there were, nothing when the card file could not take it and all cards are as they were.
std::optional<int64_t> RemoveMarked(CardFile& file);

}  // namespace tessaro
