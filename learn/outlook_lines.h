#pragma once

#include <QString>
#include <functional>

namespace tessaro {

// What the learning window shows of the evaluation, made by someone who knows it. Without a function, and of an empty
// text, nothing is shown.
struct OutlookLines {
  std::function<QString()> today;        // "Heute: 143 Antworten, 87 % gewusst"
  std::function<QString(int row)> card;  // how likely the card in this row is known now and later
};

}  // namespace tessaro
