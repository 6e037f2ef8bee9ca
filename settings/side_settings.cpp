#include "settings/side_settings.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "store/file/ini_file.h"

namespace tessaro {
namespace {

constexpr int64_t kLargestColour = 0xFFFFFF;
constexpr int64_t kFixedPitch = 2;
// Heights are in pixels of a screen with 96 dots to the inch.
constexpr int64_t kPointsPerInch = 72;
constexpr int64_t kDotsPerInch = 96;

// "Charset" of a font, by the set.
constexpr std::array<int64_t, kCharacterSets> kCharsets = {0, 238, 204, 161, 162, 186, 177, 178, 222};

constexpr std::string_view kPending = "UMWANDLUNG";
struct PendingKeys {
  std::string_view front;
  std::string_view back;
};
constexpr PendingKeys kPendingFrom = {"AltV", "AltH"};
constexpr PendingKeys kPendingTo = {"NeuV", "NeuH"};
constexpr std::string_view kPendingSum = "Summe";

CharacterSet SetOf(int64_t charset) {
  const auto known = std::find(kCharsets.begin(), kCharsets.end(), charset);
  return known == kCharsets.end() ? CharacterSet::Western : static_cast<CharacterSet>(known - kCharsets.begin());
}

int64_t CharsetOf(CodePage page) {
  return kCharsets[static_cast<size_t>(page.set())];
}

SideCodePages ReadPages(const IniFile& settings, const PendingKeys& keys) {
  return {CodePage(SetOf(settings.GetInt(kPending, keys.front, 0))),
          CodePage(SetOf(settings.GetInt(kPending, keys.back, 0)))};
}

struct Sections {
  std::string_view font;
  std::string_view paper;
  std::string_view text_key;
};

Sections SectionsOf(SideName side) {
  return side == SideName::Front ? Sections{"FontV", "ColorV", "V"} : Sections{"FontH", "ColorH", "H"};
}

// Negative numbers and larger ones name colours of another system.
int64_t Colour(const IniFile& settings, std::string_view section, std::string_view key, int64_t fallback) {
  const int64_t number = settings.GetInt(section, key, SideSettings::kNoColour);
  return number < 0 || number > kLargestColour ? fallback : number;
}

int64_t Points(const IniFile& settings, std::string_view section) {
  const int64_t size = settings.GetInt(section, "Size", 0);
  if (size > 0) return std::clamp(size, SideSettings::kLeastPoints, SideSettings::kMostPoints);
  // A negative height is that of the letters alone, which is what a point size means; a positive one holds the space
  // between lines too and is taken the same. Bounded first, so that no stored number overflows the arithmetic.
  constexpr int64_t kBound = SideSettings::kMostPoints * kDotsPerInch;
  const int64_t height = std::clamp(settings.GetInt(section, "Height", 0), -kBound, kBound);
  if (height == 0) return SideSettings().points;
  const int64_t points = (height < 0 ? -height : height) * kPointsPerInch / kDotsPerInch;
  return std::clamp(points, SideSettings::kLeastPoints, SideSettings::kMostPoints);
}

}  // namespace

SideSettings ReadSideSettings(const IniFile& settings, SideName side) {
  const Sections sections = SectionsOf(side);
  SideSettings look;
  const std::string name = settings.GetString(sections.font, "Name");
  if (!name.empty()) look.font = name;
  look.points = Points(settings, sections.font);
  look.fixed_pitch = settings.GetInt(sections.font, "Pitch", 0) == kFixedPitch;
  look.text =
      Colour(settings, "ClText", sections.text_key, Colour(settings, sections.font, "Color", SideSettings::kNoColour));
  look.paper = Colour(settings, sections.paper, "Color", SideSettings::kNoColour);
  return look;
}

void WriteSideSettings(const SideSettings& look, SideName side, IniFile& settings) {
  const Sections sections = SectionsOf(side);
  settings.SetString(sections.font, "Name", look.font);
  settings.SetInt(sections.font, "Size", look.points);
  settings.SetInt(sections.font, "Height", -(look.points * kDotsPerInch / kPointsPerInch));
  settings.SetInt(sections.font, "Pitch", look.fixed_pitch ? kFixedPitch : 0);
  if (look.text != SideSettings::kNoColour) {
    settings.SetInt(sections.font, "Color", look.text);
    settings.SetInt("ClText", sections.text_key, look.text);
  }
  if (look.paper != SideSettings::kNoColour) settings.SetInt(sections.paper, "Color", look.paper);
}

void RemoveSideSettings(SideName side, IniFile& settings) {
  const Sections sections = SectionsOf(side);
  for (const std::string_view key : {"Name", "Size", "Height", "Pitch", "Color"}) settings.Remove(sections.font, key);
  settings.Remove(sections.paper, "Color");
  settings.Remove("ClText", sections.text_key);
}

CharacterSet ReadCharacterSet(const IniFile& settings, SideName side) {
  return SetOf(settings.GetInt(SectionsOf(side).font, "Charset", 0));
}

void WriteCharacterSet(CharacterSet set, SideName side, IniFile& settings) {
  if (ReadCharacterSet(settings, side) == set) return;
  settings.SetInt(SectionsOf(side).font, "Charset", kCharsets[static_cast<size_t>(set)]);
}

SideCodePages ReadCodePages(const IniFile& settings) {
  return {CodePage(ReadCharacterSet(settings, SideName::Front)), CodePage(ReadCharacterSet(settings, SideName::Back))};
}

void WriteCodePages(const SideCodePages& pages, IniFile& settings) {
  WriteCharacterSet(pages.front.set(), SideName::Front, settings);
  WriteCharacterSet(pages.back.set(), SideName::Back, settings);
}

std::optional<PendingConversion> ReadPendingConversion(const IniFile& settings) {
  std::string sum = settings.GetString(kPending, kPendingSum);
  if (sum.empty()) return std::nullopt;
  return PendingConversion{ReadPages(settings, kPendingFrom), ReadPages(settings, kPendingTo), std::move(sum)};
}

void WritePendingConversion(const PendingConversion& pending, IniFile& settings) {
  settings.SetInt(kPending, kPendingFrom.front, CharsetOf(pending.from.front));
  settings.SetInt(kPending, kPendingFrom.back, CharsetOf(pending.from.back));
  settings.SetInt(kPending, kPendingTo.front, CharsetOf(pending.to.front));
  settings.SetInt(kPending, kPendingTo.back, CharsetOf(pending.to.back));
  settings.SetString(kPending, kPendingSum, pending.sum);
}

void RemovePendingConversion(IniFile& settings) {
  for (const std::string_view key :
       {kPendingFrom.front, kPendingFrom.back, kPendingTo.front, kPendingTo.back, kPendingSum}) {
    settings.Remove(kPending, key);
  }
}

}  // namespace tessaro
