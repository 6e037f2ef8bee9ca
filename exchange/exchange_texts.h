#pragma once

#include <QString>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "exchange/foreign_text.h"
#include "exchange/separators.h"
#include "exchange/table_import.h"

// What the exchange dialogs say, as far as several of them do or it takes more than a line.
namespace tessaro {

// "Tab", "Zeilenende", else the character itself.
QString CharacterName(char character);
// Why cards that are written with these separators cannot be read back; empty when they can.
QString WarningText(SeparatorFault fault);
QString EncodingText(Encoding encoding);
// What was replaced in a text and by what; empty when nothing was.
QString ReplacementText(const ForeignText& text);
QString FaultText(LineFault fault);
// The free and the needed bytes of an export.
QString ExportSpaceText(const std::filesystem::path& target, std::optional<uint64_t> free, int64_t needed);
// What to do to come back, after large work.
QString BackAgainText();

}  // namespace tessaro
