#pragma once

#include <optional>
#include <string>

namespace tessaro {

// The number at the beginning of a text, behind blanks and "+", with "." or "," as decimal sign. Nothing when there is
// none, or none that is finite.
std::optional<double> LeadingDecimal(std::string text);
// With "." and at least one decimal: "1.0". Reads back the same.
std::string DecimalText(double number);
// As people here write it, "1,0".
std::string WithComma(std::string number);

}  // namespace tessaro
