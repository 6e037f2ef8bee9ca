#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "exchange/work_observer.h"

// Card files of the program's first version, which writes its whole table as text:
//
//     two lines that mean nothing here
//     000001¤00¤question||second line¤answer¤…
//     999999¤…  * first topic* second topic* …
//
// "||" is a line break. Lines of more than kPiece bytes are taken in pieces, each as if it were a line.
namespace tessaro {

class Disk;
class IniFile;
class WritableFile;

namespace first_version {

inline constexpr size_t kPiece = 2190;
inline constexpr size_t kTopics = 20;
inline constexpr std::string_view kNoTopic = "...";

// The names in the line of topics; one that is missing, or has more than 20 letters, is "...".
struct Topics {
  std::array<std::string, kTopics> names;
  std::string name;  // the one behind them
};
Topics ReadTopics(std::string_view line, char separator);
// Replaces what the settings hold of topics.
void Put(const Topics& topics, IniFile& settings);

struct Transfer {
  bool good = false;             // false: the file took no more, or the observer ended it
  int64_t lines = 0;             // written as cards
  std::optional<Topics> topics;  // of the last line of topics
};
// Writes a card file of an exported text whose fields are parted by `separator`. Zero bytes are left out, CR LF is a
// line feed. The observer is told the bytes.
Transfer WriteCards(std::string_view exported, char separator, WritableFile& file, const WorkObserver& observer = {});

enum class End {
  Done,
  CannotOpen,  // the exported file
  InUse,       // another program has the card file open
  Cancelled,
  Failed,        // the card file could not be written
  TopicsFailed,  // it was, but not the names of the topics
};
struct Result {
  End end = End::Done;
  int64_t lines = 0;
};
// Writes the card file `target`, with an existing one as its backup, and the names of the topics into its settings.
// Its indexes are removed: they are those of other cards. The card file is the old or the new one, whole.
Result TransferFile(Disk& disk, const std::filesystem::path& source, const std::filesystem::path& target,
                    char separator, const WorkObserver& observer = {});

}  // namespace first_version
}  // namespace tessaro
