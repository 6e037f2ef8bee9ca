#pragma once

#include "learn/run_values.h"

namespace tessaro {

class IniFile;

// By which automatic method learning begins: that of the card file's own settings where they name one, else the one
// that the program was left with.
Method StartMethod(const IniFile& program, const IniFile& card_file);
// Keeps the method that a run was left with where StartMethod looks for it first. Leitner changes nothing.
void KeepStartMethod(Method method, IniFile& program, IniFile& card_file);

}  // namespace tessaro
