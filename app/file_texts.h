#pragma once

#include <QString>
#include <QStringList>

#include "store/file/card_file.h"

// What the main window says about opening and saving, in one place.
namespace tessaro {

enum class SaveKind { Plain, AnotherName };

// What is being done, for the progress dialog: "Karteikarten laden".
QString StageText(FileStage stage);
// The same for the status line, which has another text for the building of an index.
QString StatusText(FileStage stage);
// The second half of the status line while a file is loaded: "Dateigröße: 1234 Bytes". Empty while saving.
QString StageSizeText(FileStage stage, uint64_t file_size);

// Why a card file was not opened; empty for Opened. `in_use_by` as in OpenReport.
QString RefusalText(OpenResult result, const LockHolder& in_use_by = {});
// Whether changes that an earlier run could not save are to be taken over.
QString UnsavedText(const UnsavedChanges& unsaved);
// What the user should know of a card file that was opened, one message each.
QStringList RemarkTexts(const OpenReport& report);
// That an index could not be built; empty for None.
QString DefectText(IndexDefect defect);
// Empty for Saved.
QString FailureText(SaveResult result);

QString LowSpaceText(SaveKind kind);
// Free bytes of the drive and bytes that the card file needs.
QString SpaceText(SaveKind kind, const std::filesystem::path& target, const SpaceEstimate& space);

}  // namespace tessaro
