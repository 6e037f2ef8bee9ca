#include "exchange/import_guess.h"

#include <algorithm>
#include <array>

#include "exchange/separators.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

constexpr size_t kMostBytes = size_t{1} << 18U;
constexpr int64_t kMostLines = 2000;
constexpr std::string_view kStops = "\r \t";

struct Candidate {
  char separator;
  int64_t texts = 0;   // lines with one of it
  int64_t tables = 0;  // lines with as many as eight columns have between them
};

// Whether a line is one of the usual text layout: it ends with one of the separators, or both sides stand on it.
bool IsUsualLine(std::string_view line) {
  const auto count = [&](char c) { return std::count(line.begin(), line.end(), c); };
  const auto fields = count(kUsualFieldSeparator);
  const auto cards = count(kUsualCardSeparator);
  const bool one_side =
      fields + cards == 1 && (line.back() == kUsualFieldSeparator || line.back() == kUsualCardSeparator);
  return one_side || (fields == 1 && cards == 1 && line.back() == kUsualCardSeparator);
}

}  // namespace

std::optional<LayoutGuess> GuessLayout(std::string_view text) {
  std::array<Candidate, 3> candidates = {Candidate{'\t'}, Candidate{';'}, Candidate{kUsualFieldSeparator}};
  LayoutGuess best = {false, kUsualFieldSeparator, kUsualCardSeparator, 0, 0};
  std::string_view rest = text.substr(0, kMostBytes);
  while (!rest.empty() && best.lines < kMostLines) {
    const size_t end = std::min(rest.find('\n'), rest.size());
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (line.find_first_not_of(kStops) == std::string_view::npos) continue;
    ++best.lines;
    if (IsUsualLine(line)) ++best.fitting;
    for (Candidate& candidate : candidates) {
      const auto count = std::count(line.begin(), line.end(), candidate.separator);
      candidate.texts += count == 1 ? 1 : 0;
      candidate.tables += count == static_cast<std::ptrdiff_t>(kCardColumns.size()) - 1 ? 1 : 0;
    }
  }
  for (const Candidate& candidate : candidates) {
    if (candidate.texts > best.fitting) best = {false, candidate.separator, '\n', candidate.texts, best.lines};
    if (candidate.tables > best.fitting) best = {true, candidate.separator, '\0', candidate.tables, best.lines};
  }
  return best.fitting * 2 > best.lines ? std::optional(best) : std::nullopt;
}

}  // namespace tessaro
