#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

#include "exchange/work_observer.h"
#include "platform/side_code_page.h"
#include "store/table/card_table.h"

// Cards written to a text file for other programs. Each export walks the card table from its first row, the start row
// included, to the first row whose ID begins with "#".
namespace tessaro {

class Disk;
class WritableFile;

// How the bytes of a text file are written.
struct TextFileForm {
  bool cr_lf = false;  // lines end with CR LF
  bool utf8 = false;   // without a mark; else each side stands there in its own code page
  SideCodePages pages = {};
};

enum class ExportEnd { Done, UnfitSeparator, Cancelled, WriteFailed };
struct ExportResult {
  ExportEnd end = ExportEnd::Done;
  int64_t cards = 0;      // written; the first card has the number 0
  char separator = '\0';  // UnfitSeparator: it stands in the card behind those that were written
};

// One row a line: the eight columns with `separator` between them. In question and answer a backslash is written twice,
// a line feed as a backslash and "n", a double quote as `quote`. The observer is told the cards.
ExportResult WriteTableExport(const CardTable& cards, char separator, char quote, TextFileForm form, WritableFile& file,
                              const WorkObserver& observer = {});
// The question, `separator`, a line feed, the answer, `card_separator`, a line feed; backslashes are written twice.
ExportResult WriteTextExport(const CardTable& cards, char separator, char card_separator, TextFileForm form,
                             WritableFile& file, const WorkObserver& observer = {});

// Replaces the file `path` by what `write` puts. UnfitSeparator keeps the cards before; after Cancelled and WriteFailed
// the file is as it was.
using ExportWriter = std::function<ExportResult(WritableFile& file)>;
ExportResult ExportToFile(Disk& disk, const std::filesystem::path& path, const ExportWriter& write);

// The name with ".txt" behind it, unless it holds ".txt" or ".TXT" anywhere.
std::filesystem::path WithTextEnding(const std::filesystem::path& path);

}  // namespace tessaro
