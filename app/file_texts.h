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

// Why the card file of this name was not opened; empty for Opened.
QString RefusalText(const OpenReport& report, const std::filesystem::path& path);
// Whether a file that other programs cannot be kept away from is to be changed all the same.
QString NoLockText(const std::filesystem::path& path);
// Whether a file that is not ours alone may be replaced; empty when nothing speaks against it.
QString TiesText(const FileTies& ties, const std::filesystem::path& path);
// Whether the backup is to be opened in place of a card file that is gone. `saved` in seconds since 1970.
QString MissingText(const std::filesystem::path& cards, const std::filesystem::path& backup, int64_t saved);
// Whether changes that an earlier run could not save are to be taken over.
QString UnsavedText(const UnsavedChanges& unsaved);
// What the user should know of a card file that was opened, one message each.
QStringList RemarkTexts(const OpenReport& report);
// That an index could not be built; empty for None.
QString DefectText(IndexDefect defect);
// What was not saved of the card file of this name; empty for Saved.
QString FailureText(SaveResult result, const std::filesystem::path& path);

QString LowSpaceText(SaveKind kind);
// Free bytes of the drive and bytes that the card file needs.
QString SpaceText(SaveKind kind, const std::filesystem::path& target, const SpaceEstimate& space);

}  // namespace tessaro
