#pragma once

#include "store/file/card_file_types.h"

// A save on a drive without hard links renames twice: X.mlb to X.ml~, then the new file to X.mlb. A program that ends
// between the two leaves no file of that name.
namespace tessaro {

class Disk;

// Whether that happened: the old and the new file are there, but none has the name of the card file.
bool WasCutShort(const Disk& disk, const CardFilePaths& paths);
// Gives the new file its name if it is the one that the journal saw written last, else the old one, to which the
// journal then fits. None when nothing was cut short, or the disk refused.
CutSave MendCutSave(Disk& disk, const CardFilePaths& paths);

}  // namespace tessaro
