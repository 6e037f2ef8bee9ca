#pragma once

#include <QString>

#include "exchange/compare_scan.h"
#include "exchange/compare_source.h"

namespace tessaro {

// Why a source was not opened; empty when it was.
QString LoadText(SourceLoad load);
// What is said of two cards.
QString VerdictText(const CompareStop& stop);
// How far a comparison is and what it found.
QString StandText(const CompareScan& scan);

}  // namespace tessaro
