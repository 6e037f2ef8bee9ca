#pragma once

#include <cstdint>

#include "hypertext/layout.h"
#include "settings/learning_parameters.h"
#include "store/file/card_file.h"

namespace tessaro {

// How well the card that a link points to is known; the viewer has a colour for each.
enum class LinkState { KnownNotDue, DueOrWrong, NeverLearned };

// `id` 0 and a number that no card has count as never learned, navigation cards too. `now` in seconds since 1970.
LinkState LinkStateOf(const CardFile& file, int64_t id, const LearningParameters& parameters, int64_t now);
// The colour in which a link to this card is shown.
ColourClass LinkColour(const CardFile& file, int64_t id, const LearningParameters& parameters, int64_t now);

}  // namespace tessaro
