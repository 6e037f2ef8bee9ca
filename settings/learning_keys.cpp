#include "settings/learning_keys.h"

#include <string_view>

#include "store/file/ini_file.h"

namespace tessaro {
namespace {

constexpr std::string_view kSection = "LShortCuts";
constexpr std::array<std::string_view, kLearningCommands> kKeys = {"turn", "know", "learn", "back", "home"};

}  // namespace

LearningKeys ReadLearningKeys(const IniFile& settings) {
  LearningKeys keys = kStandardKeys;
  for (size_t i = 0; i < keys.size(); ++i) {
    const int64_t stored = settings.GetInt(kSection, kKeys[i], 0);
    if (stored >= 1) keys[i] = stored;
  }
  return keys;
}

void WriteLearningKeys(const LearningKeys& keys, IniFile& settings) {
  for (size_t i = 0; i < keys.size(); ++i) settings.SetInt(kSection, kKeys[i], keys[i]);
}

std::optional<std::pair<LearningCommand, LearningCommand>> FindDoubledKey(const LearningKeys& keys) {
  for (size_t i = 0; i < keys.size(); ++i) {
    for (size_t j = i + 1; j < keys.size(); ++j) {
      if (keys[i] == keys[j]) return std::pair(static_cast<LearningCommand>(i), static_cast<LearningCommand>(j));
    }
  }
  return std::nullopt;
}

}  // namespace tessaro
