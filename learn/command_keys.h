#pragma once

#include <QKeySequence>
#include <QList>
#include <array>

#include "learn/learning_keys.h"

namespace tessaro {

// The keys that work for each learning command, in the order of LearningCommand. The first of a list is the one to
// show. A list is empty when an earlier command has the same key: Qt would run neither.
using CommandKeys = std::array<QList<QKeySequence>, kLearningCommands>;

// A stored number that means no key leaves the command its standard key.
CommandKeys KeysOfCommands(const LearningKeys& codes);

// The key as it stands on a button; empty for a command without one.
QString FirstKeyName(const QList<QKeySequence>& keys);

}  // namespace tessaro
