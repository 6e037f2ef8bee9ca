#include "settings/kept_place.h"

#include <algorithm>
#include <string>

#include "settings/setting.h"
#include "store/file/ini_file.h"

namespace tessaro {
namespace {

constexpr std::string_view kSection = "POS";

std::string Key(std::string_view name, std::string_view suffix) {
  return std::string(name).append(suffix);
}

}  // namespace

KeptPlace ReadPlace(const IniFile& settings, std::string_view suffix, const KeptPlace& fallback) {
  constexpr int64_t kBeyondAnyScreen = 100000;
  const auto read = [&](std::string_view name, int missing) {
    const std::string key = Key(name, suffix);
    return static_cast<int>(NumberSetting{kSection, key, missing, -kBeyondAnyScreen, kBeyondAnyScreen}.Read(settings));
  };
  return {.x = read("x", fallback.x),
          .y = read("y", fallback.y),
          .width = read("cx", fallback.width),
          .height = read("cy", fallback.height),
          .maximised = read("max", fallback.maximised ? 1 : 0) == 1};
}

bool HasPlace(const IniFile& settings, std::string_view suffix) {
  return settings.Has(kSection, Key("x", suffix)) && settings.Has(kSection, Key("y", suffix));
}

KeptPlace PlaceWithin(KeptPlace place, int screen_width, int screen_height) {
  place.width = std::min(place.width, screen_width);
  place.height = std::min(place.height, screen_height);
  place.x = std::min(std::max(place.x, 0), screen_width - place.width);
  place.y = std::min(std::max(place.y, 0), screen_height - place.height);
  return place;
}

void WritePlace(const KeptPlace& place, std::string_view suffix, IniFile& settings) {
  settings.SetInt(kSection, Key("x", suffix), place.x);
  settings.SetInt(kSection, Key("y", suffix), place.y);
  settings.SetInt(kSection, Key("cx", suffix), place.width);
  settings.SetInt(kSection, Key("cy", suffix), place.height);
  const std::string max = Key("max", suffix);
  if (place.maximised || settings.Has(kSection, max)) settings.SetInt(kSection, max, place.maximised ? 1 : 0);
}

}  // namespace tessaro
