#pragma once

#include <QKeySequence>
#include <QList>
#include <array>

#include "settings/learning_keys.h"

namespace tessaro {

// The keys that work for each learning command, in the order of LearningCommand. The first of a list is the one to
// show. A list is empty when an earlier command has the same key: Qt would run neither.
using CommandKeys = std::array<QList<QKeySequence>, kLearningCommands>;

// The same codes, but the standard one where a number means no key.
LearningKeys UsableKeys(LearningKeys codes);
// Of any codes, as if they were first made usable.
CommandKeys KeysOfCommands(const LearningKeys& codes);

// The key as it stands on a button; empty for a command without one.
QString FirstKeyName(const QList<QKeySequence>& keys);

}  // namespace tessaro
