#pragma once

#include <QString>

#include "edit/command_stack.h"

// What the editor and its tools say.
namespace tessaro {

// Where a file has no card: what the one is that the editor made.
QString FirstCardText();
// That sides of the card in this position, counted from 1, are empty; nothing when none is.
QString EmptySideHint(bool front_empty, bool back_empty, int position);
// The same without saying which side.
QString EmptySidesHint(int position);
// No card can be made any more, for want of numbers.
QString NoNumberLeftText();
// These characters were left out, since the code page of the side has none of them, and where to choose another one; of
// many only the first are named.
QString LeftOutText(const QString& characters);
// A link names a card that is not there.
QString TargetMissingText();
// The cards cannot be changed: others may write the file.
QString ReadOnlyText();
// Which commands can no longer be taken back; nothing for those that all can.
QString ForgottenText(CommandStack::Forgotten forgotten);
// The pictures to choose from, for a file dialog.
QString PictureFilter();
// The tags that a card can hold.
QString FormatsText();

}  // namespace tessaro
