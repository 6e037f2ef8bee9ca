#include "edit/overview_cards.h"

#include <algorithm>
#include <array>

#include "edit/markup_tools.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr std::string_view kLineEnd = "<br>             ";
constexpr std::string_view kTitleEnd = "<br><br>             ";

// What the cards of one overview have in common.
struct Wording {
  std::string tags;          // up to the title
  std::string title;         // without the number of the part
  std::string_view only;     // behind the title of the only part
  std::string_view forward;  // face of the link to the next part
  std::string_view symbol;
  bool framed = true;  // pictograms of the index have no frame
};

size_t PartCount(size_t entries) {
  return (entries + kEntriesOfPart - 1) / kEntriesOfPart;
}

std::string Head(const Wording& wording, size_t part, size_t parts, int64_t next_id) {
  const std::string head = wording.tags + "<font size=\"14\">" + wording.title;
  if (parts == 1) return Joined({head, wording.only, kTitleEnd});
  const std::string numbered = Joined({head, " Teil ", std::to_string(part + 1)});
  if (part + 1 == parts) return Joined({numbered, kTitleEnd});
  return Joined({numbered, "   <a href=\"", IdText(next_id), "\">", wording.forward, "</a>", kTitleEnd});
}

// What stands behind the number of an entry.
std::string EndOfEntry(const Wording& wording) {
  if (!IsPictogram(wording.symbol)) return Joined({"\">", wording.symbol, "</a>    "});
  return Joined({"\"><img src=\"", wording.symbol, wording.framed ? "\">" : "\" border=\"0\">", "</a>    "});
}

// Generates the parts of one overview.
void GenerateParts(const PackedFields& ids, const Wording& wording, int64_t first_id, const TakeGenerated& take) {
  constexpr std::string_view kEntry = "<a href=\"";
  const std::string rest = EndOfEntry(wording);
  const size_t parts = PartCount(ids.rows());
  PackedReader id_reader(ids);
  std::string text;
  for (size_t part = 0; part < parts; ++part) {
    const int64_t id = first_id + static_cast<int64_t>(part);
    text = Head(wording, part, parts, id + 1);
    const size_t begin = part * kEntriesOfPart;
    const size_t end = std::min(begin + kEntriesOfPart, ids.rows());
    for (size_t i = begin; i < end; ++i) {
      id_reader.Next();
      text.append(kEntry).append(id_reader.fields().front().text).append(rest);
      if ((i - begin + 1) % kEntriesOfLine == 0 && i + 1 < end) text += kLineEnd;
    }
    take(id, text);
  }
}

}  // namespace

bool IsPictogram(std::string_view symbol) {
  constexpr std::array<std::string_view, 6> kEndings = {".bmp", ".jpg", ".jpeg", ".png", ".gif", ".svg"};
  return std::any_of(kEndings.begin(), kEndings.end(), [symbol](std::string_view ending) {
    return symbol.size() > ending.size() && EqualIgnoringCase(symbol.substr(symbol.size() - ending.size()), ending);
  });
}

int64_t RowOrderCards(int64_t entries) {
  const auto parts = static_cast<int64_t>(PartCount(static_cast<size_t>(entries)));
  return parts < 2 ? parts : parts + static_cast<int64_t>(PartCount(static_cast<size_t>(parts)));
}

int64_t GenerateRowOrder(const PackedFields& ids, const OverviewSymbols& symbols, int64_t first_id,
                         const TakeGenerated& take) {
  const Wording parts = {"<navigation><automap>", std::string("Kartenübersicht"_cp), "", "weiter->", symbols.single};
  GenerateParts(ids, parts, first_id, take);
  const auto count = static_cast<int64_t>(PartCount(ids.rows()));
  if (count < 2) return first_id;
  const Wording index = {
      "<navigation><automap><index>", std::string("Index Kartenübersicht"_cp), "", "weiter ->", symbols.group, false};
  PackedFields part_ids;
  for (int64_t part = 0; part < count; ++part) part_ids.AddRow({{1, IdText(first_id + part)}});
  GenerateParts(part_ids, index, first_id + count, take);
  return first_id + count;
}

int64_t TopicCards(int64_t entries) {
  return static_cast<int64_t>(PartCount(static_cast<size_t>(entries)));
}

std::string TopicTitle(std::string_view topic1, std::string_view topic2) {
  if (topic2.empty() || topic2 == topic1) return std::string(topic1);
  return Joined({topic1, " - ", topic2});
}

int64_t GenerateTopic(const PackedFields& ids, std::string_view topic1, std::string_view topic2,
                      const OverviewSymbols& symbols, int64_t first_id, const TakeGenerated& take) {
  const Wording wording = {"<navigation><autotopic>", TopicTitle(topic1, topic2), " ", "weiter->", symbols.single};
  GenerateParts(ids, wording, first_id, take);
  return first_id;
}

bool IsTopicOverview(std::string_view question, std::string_view title) {
  const std::string head = Joined({"<navigation><autotopic><font size=\"14\">", title, " "});
  if (!question.starts_with(head)) return false;
  question.remove_prefix(head.size());
  if (question.starts_with(kTitleEnd)) return true;
  if (!question.starts_with("Teil ")) return false;
  question.remove_prefix(5);
  const size_t digits = std::min(question.find_first_not_of("0123456789"), question.size());
  question.remove_prefix(digits);
  return digits > 0 && (question.starts_with(kTitleEnd) || question.starts_with("   <a href=\""));
}

std::string WithOverviewLink(std::string_view question, int64_t target, std::string_view face) {
  constexpr std::string_view kOpen = "<a href=\"";
  const std::string rest = Joined({"\">", face, "</a>"});
  std::string text(question);
  bool replaced = false;
  for (size_t at = text.find(rest); at != std::string::npos; at = text.find(rest, at + 1)) {
    // The value begins behind the quote before this one.
    const size_t quote = at == 0 ? std::string::npos : text.rfind('"', at - 1);
    if (quote == std::string::npos || quote + 1 < kOpen.size()) continue;
    if (text.compare(quote + 1 - kOpen.size(), kOpen.size(), kOpen) != 0) continue;
    const std::string value = IdText(target);
    text.replace(quote + 1, at - quote - 1, value);
    at = quote + 1 + value.size();
    replaced = true;
  }
  if (!replaced) text += Joined({" \n<br>", kOpen, IdText(target), rest});
  return text;
}

}  // namespace tessaro
