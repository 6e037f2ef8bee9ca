#include "cards/code_page_change.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cards/card_edit.h"
#include "cards/card_reader.h"
#include "hypertext/plain_text.h"
#include "store/table/content_stamp.h"

namespace tessaro {
namespace {

// Hands out the text and the tags of a side in their order; a "<" that nothing closes is text.
template <typename TakePart>
void ForEachPart(std::string_view side, const TakePart& take) {
  for (size_t at = 0; at < side.size();) {
    const size_t open = side.find('<', at);
    const size_t close = open == std::string_view::npos ? open : side.find('>', open);
    const size_t text_end = close == std::string_view::npos ? side.size() : open;
    take(side.substr(at, text_end - at), false);
    at = text_end;
    if (close == std::string_view::npos) continue;
    take(side.substr(open, close + 1 - open), true);
    at = close + 1;
  }
}

// Looks at the sides of all cards; false: ended early.
template <typename TakeSides>
bool ForEachCard(const CardFile& file, const KeepGoing& keep_going, const TakeSides& take) {
  const std::array columns = {file.columns().question, file.columns().answer};
  const int last = CardReader(file).LastCardRow();
  for (int row = kFirstCardRow; row <= last; ++row) {
    if (!GoesOn(keep_going, row)) return false;
    file.cards().Expect(row + CardTable::kAhead);
    std::array<std::string_view, 2> sides;
    file.cards().PeekAll(row, columns, sides);
    if (!take(row, sides)) return false;
  }
  return true;
}

// Tells the sides of one table from those of another.
class SideSum {
 public:
  void Add(std::string_view side) {
    hash_.Add(side);
    hash_.Add(std::string_view("\0", 1));
  }
  std::string Text() const { return std::to_string(hash_.Stamp().hash); }

 private:
  ContentHash hash_;
};

std::string SumOf(const CardFile& file) {
  SideSum sum;
  ForEachCard(file, {}, [&](int /*row*/, const std::array<std::string_view, 2>& sides) {
    for (const std::string_view side : sides) sum.Add(side);
    return true;
  });
  return sum.Text();
}

bool ReadsAlike(std::string_view side, CodePage from, CodePage to) {
  bool alike = true;
  ForEachPart(side, [&](std::string_view part, bool tag) {
    const auto same = [&](char c) { return from.CharacterOf(c) == to.CharacterOf(c); };
    alike = alike && (tag || std::all_of(part.begin(), part.end(), same));
  });
  return alike;
}

}  // namespace

std::optional<std::string> ConvertedSide(std::string_view side, CodePage from, CodePage to) {
  std::string converted;
  converted.reserve(side.size());
  bool good = true;
  ForEachPart(side, [&](std::string_view part, bool tag) {
    const std::optional<std::string> text = tag ? std::optional(std::string(part)) : Converted(part, from, to);
    good = good && text;
    if (text) converted += *text;
  });
  return good ? std::optional(std::move(converted)) : std::nullopt;
}

std::u16string LackingOnSide(std::string_view side, CodePage from, CodePage to) {
  std::string texts;
  ForEachPart(side, [&](std::string_view part, bool tag) {
    if (!tag) texts += part;
  });
  return Lacking(texts, from, to);
}

LackingText FindLacking(const CardFile& file, const SideCodePages& to, const KeepGoing& keep_going) {
  const SideCodePages from = ReadCodePages(file.settings());
  LackingText lacking;
  const auto look = [&](int row, SideName name, std::string_view side, CodePage old_page, CodePage new_page) {
    if (old_page == new_page) return;
    lacking.alike = lacking.alike && ReadsAlike(side, old_page, new_page);
    std::u16string characters = LackingOnSide(side, old_page, new_page);
    if (characters.empty()) return;
    if (lacking.listed.size() < LackingText::kMostListed) lacking.listed.push_back({row, name, std::move(characters)});
    ++lacking.sides;
  };
  lacking.cancelled = !ForEachCard(file, keep_going, [&](int row, const std::array<std::string_view, 2>& sides) {
    look(row, SideName::Front, sides[0], from.front, to.front);
    look(row, SideName::Back, sides[1], from.back, to.back);
    return true;
  });
  return lacking;
}

std::vector<ChangingSide> SidesToShow(const CardFile& file, const SideCodePages& to, size_t most) {
  constexpr int kMostLookedAt = 5000;  // cards
  const SideCodePages from = ReadCodePages(file.settings());
  const CardReader reader(file);
  const int end = std::min(reader.LastCardRow() + 1, kFirstCardRow + kMostLookedAt);
  std::vector<ChangingSide> sides;
  const auto take = [&](int row, SideName side, bool any) {
    const bool stays = side == SideName::Front ? from.front == to.front : from.back == to.back;
    if (stays || sides.size() >= most) return;
    const std::string text = PlainBeginning(reader.Side(row, side));
    if (any || !std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
      sides.push_back({row, side});
  };
  for (const bool any : {false, true}) {
    for (int row = kFirstCardRow; row < end && sides.size() < most; ++row) {
      for (const SideName side : {SideName::Front, SideName::Back}) take(row, side, any);
    }
    if (!sides.empty()) break;
  }
  return sides;
}

ConversionEnd ConvertTexts(CardFile& file, const SideCodePages& to, const KeepGoing& keep_going) {
  const SideCodePages from = ReadCodePages(file.settings());
  CardCommand command;
  SideSum sum;
  ConversionEnd end = ConversionEnd::Cancelled;
  const bool whole = ForEachCard(file, keep_going, [&](int row, const std::array<std::string_view, 2>& sides) {
    const std::optional<std::string> front = ConvertedSide(sides[0], from.front, to.front);
    const std::optional<std::string> back = ConvertedSide(sides[1], from.back, to.back);
    if (!front || !back) {
      end = ConversionEnd::Lacking;
      return false;
    }
    sum.Add(*front);
    sum.Add(*back);
    if (*front != sides[0]) command.Replace(row, {{file.columns().question, *front}});
    if (*back != sides[1]) command.Replace(row, {{file.columns().answer, *back}});
    return true;
  });
  if (!whole) return end;
  WritePendingConversion({from, to, sum.Text()}, file.settings());
  if (file.SaveSettings() && (command.empty() || CardEdit(file).ApplyForGood(std::move(command)))) {
    WriteCodePages(to, file.settings());
    return ConversionEnd::Done;
  }
  ForgetConversion(file);
  return ConversionEnd::Failed;
}

void ForgetConversion(CardFile& file) {
  if (!ReadPendingConversion(file.settings())) return;
  RemovePendingConversion(file.settings());
  (void)file.SaveSettings();
}

void FinishConversion(CardFile& file) {
  const std::optional<PendingConversion> pending = ReadPendingConversion(file.settings());
  if (!pending || file.read_only()) return;
  WriteCodePages(SumOf(file) == pending->sum ? pending->to : pending->from, file.settings());
  ForgetConversion(file);
}

}  // namespace tessaro
