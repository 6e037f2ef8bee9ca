#pragma once

#include <QString>
#include <cstdint>

// What the editor and its tools say.
namespace tessaro {

QString EmptySideHint(bool front_empty, bool back_empty, int position);
QString NoNumberLeftText();
QString ForeignText(const QString& characters);
QString TargetMissingText();
QString ReadOnlyText();
QString FormatsText();

}  // namespace tessaro
