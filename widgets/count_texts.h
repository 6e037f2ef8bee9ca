#pragma once

#include <QString>
#include <cstdint>

namespace tessaro {

// "1 842", with a narrow blank that does not break.
QString NumberText(int64_t number);
// "eine Karte", "412 Karten".
QString CardsText(int64_t cards);

}  // namespace tessaro
