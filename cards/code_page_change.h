#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cards/keep_going.h"
#include "platform/side_code_page.h"
#include "settings/side_settings.h"

// The texts of a card file, brought into other code pages. Tags keep their bytes: what they name stays named.
namespace tessaro {

class CardFile;

// A side in another code page; nothing where that lacks a character of its text.
std::optional<std::string> ConvertedSide(std::string_view side, CodePage from, CodePage to);
// The characters of its text that the other code page lacks, each once.
std::u16string LackingOnSide(std::string_view side, CodePage from, CodePage to);

struct LackingSide {
  int row = 0;
  SideName side = SideName::Front;
  std::u16string characters;
};

// What other code pages cannot hold.
struct LackingText {
  static constexpr size_t kMostListed = 100;

  bool cancelled = false;
  // Nothing at all would look otherwise: each byte of the texts is the same character in the old and the new page.
  bool alike = true;
  int64_t sides = 0;
  std::vector<LackingSide> listed;  // the first of them
};
LackingText FindLacking(const CardFile& file, const SideCodePages& to, const KeepGoing& keep_going = {});

struct ChangingSide {
  int row = 0;
  SideName side = SideName::Front;
  bool operator==(const ChangingSide&) const = default;
};

// At most so many sides that show what other code pages do: the first with more than ASCII in their text, which alone
// change; where the first cards have none, just the first. Sides whose code page stays are left out.
std::vector<ChangingSide> SidesToShow(const CardFile& file, const SideCodePages& to, size_t most);

enum class ConversionEnd { Done, Cancelled, Lacking, Failed };

// Brings all sides into other code pages, in one command, and the settings with them; the caller saves the cards then.
// On anything but Done all is as it was. Before the cards change, the settings on the disk note what is being done, so
// that cards and settings fit together again whatever happens until ForgetConversion.
ConversionEnd ConvertTexts(CardFile& file, const SideCodePages& to, const KeepGoing& keep_going = {});
// To be called when the cards were saved.
void ForgetConversion(CardFile& file);
// To be called when a card file was opened and its unsaved changes were taken over or refused: where a conversion is
// noted, the settings get the code pages that the cards are in.
void FinishConversion(CardFile& file);

}  // namespace tessaro
