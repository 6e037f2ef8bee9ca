#pragma once

#include <optional>
#include <string_view>

#include "settings/setting.h"

namespace tessaro {

// What a person typed for a setting. Nothing when it is no number, has something else beside the number, or is out of
// bounds; blanks around it do not matter.
std::optional<int64_t> TypedNumber(std::string_view text, const NumberSetting& setting);
// With "." or "," as decimal sign.
std::optional<double> TypedDecimal(std::string_view text, const DecimalSetting& setting);

}  // namespace tessaro
