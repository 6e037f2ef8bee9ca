#include "cards/deck_check.h"

#include <algorithm>
#include <optional>

#include "cards/answer_history.h"
#include "cards/card_reader.h"
#include "hypertext/markup.h"

namespace tessaro {
namespace {

constexpr int kRowsAhead = 16;
constexpr size_t kMostDigits = 18;  // those of kMostInHistory

bool IsNumber(std::string_view text) {
  return !text.empty() && text.size() <= kMostDigits && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool IsScore(std::string_view text) {
  return IsNumber(text) && LeadingNumber(text) <= kMaxScore;
}

bool AreLetters(std::string_view text) {
  return text.size() == kHistoryLength &&
         std::all_of(text.begin(), text.end(), [](char c) { return c == kKnownLetter || c == kNotKnownLetter; });
}

// Reading a side item by item costs a hundred times as much as seeing that it names nothing: what does holds `href="`
// or `src` and a quote.
bool MayNameThings(std::string_view side) {
  for (size_t at = side.find("=\""); at != std::string_view::npos; at = side.find("=\"", at + 1)) {
    // Bit 5 parts capital from small letters.
    const auto ends_with = [&](std::string_view word) {
      return at >= word.size() &&
             std::equal(word.begin(), word.end(), side.begin() + static_cast<ptrdiff_t>(at - word.size()),
                        [](char small, char c) { return static_cast<char>(c | 0x20) == small; });
    };
    if (ends_with("href") || ends_with("src")) return true;
  }
  return false;
}

// Letters outside of tags are enough to know that something is shown; the rest is rare and read item by item.
bool IsEmptySide(std::string_view side) {
  const size_t first = side.find_first_not_of(" \r\n");
  if (first == std::string_view::npos) return true;
  if (side[first] != '<') return false;
  for (const MediaKind kind : {MediaKind::Picture, MediaKind::Video, MediaKind::Sound, MediaKind::Text})
    if (FindDirective(side, kind)) return false;
  MarkupReader reader(side);
  for (MarkupItem item; reader.Next(item);) {
    if (item.kind == MarkupItem::Kind::Picture || item.kind == MarkupItem::Kind::Video ||
        item.kind == MarkupItem::Kind::Sound || item.picture_face ||
        item.text.find_first_not_of(' ') != std::string::npos)
      return false;
  }
  return true;
}

enum class TimesState { Good, Disordered, Malformed };

TimesState StateOf(std::string_view times) {
  if (times.ends_with(' ')) times.remove_suffix(1);
  int count = 0;
  int64_t newer = 0;
  bool ordered = true;
  for (bool more = true; more; ++count) {
    const size_t blank = times.find(' ');
    const std::string_view piece = times.substr(0, blank);
    if (!IsNumber(piece)) return TimesState::Malformed;
    const int64_t time = LeadingNumber(piece);
    // An empty slot may stand between answers: an undo in the box method leaves one.
    if (time > 0) {
      ordered = ordered && (newer == 0 || time <= newer);
      newer = time;
    }
    more = blank != std::string_view::npos;
    times.remove_prefix(more ? blank + 1 : 0);
  }
  if (count != kHistoryLength && count != kHistoryLength - 1) return TimesState::Malformed;
  return ordered ? TimesState::Good : TimesState::Disordered;
}

}  // namespace

DeckCheck::DeckCheck(const CardFile& file, int64_t now)
    : file_(file),
      now_(now),
      rows_(file.cards().RowCount()),
      next_id_(kFirstCardRow),
      next_row_(kFirstCardRow),
      row_of_(static_cast<size_t>(kMaxLinkTarget) + 1),
      linked_(static_cast<size_t>(kMaxLinkTarget) + 1) {
  report_.cards = file.CardCount();
}

bool DeckCheck::Step(int rows) {
  for (; rows > 0 && next_id_ < rows_; --rows) ReadId(next_id_++);
  for (; rows > 0 && next_row_ < rows_; --rows) LookAt(next_row_++);
  return next_row_ < rows_;
}

int64_t DeckCheck::Position() const {
  return int64_t{next_id_} + next_row_;
}

void DeckCheck::ReadId(int row) {
  const CardTable& cards = file_.cards();
  __builtin_prefetch(cards.Peek(file_.columns().id, row + kRowsAhead).data());
  const std::string_view id = cards.Peek(file_.columns().id, row);
  if (id.find('#') != std::string_view::npos) return;
  if (!HasDigits(id)) return Add(DeckFault::MissingId, row);
  const int64_t number = LeadingNumber(id);
  highest_ = std::max(highest_, number);
  int& first_row = FirstRow(number);
  if (first_row != 0) return Add(DeckFault::DoubleId, row, number);
  first_row = row;
}

int& DeckCheck::FirstRow(int64_t number) {
  return number >= 0 && number <= kMaxLinkTarget ? row_of_[static_cast<size_t>(number)] : row_of_others_[number];
}

bool DeckCheck::HasCard(int64_t number) const {
  return number > 0 && row_of_[static_cast<size_t>(number)] != 0;
}

void DeckCheck::LookAt(int row) {
  const CardReader cards(file_);
  __builtin_prefetch(cards.Question(row + kRowsAhead).data());
  LookAtSide(row, cards.Question(row));
  LookAtSide(row, cards.Answer(row));
  if (cards.HasEndMark(row) || cards.IsNavigation(row)) return;
  if (IsEmptySide(cards.Question(row)) || IsEmptySide(cards.Answer(row))) Add(DeckFault::EmptySide, row);
  LookAtHistory(row);
}

void DeckCheck::LookAtSide(int row, std::string_view side) {
  if (MayNameThings(side)) LookAtTags(row, side);
  if (!media_ || side.find('#') == std::string_view::npos) return;
  for (const MediaKind kind : {MediaKind::Picture, MediaKind::Video, MediaKind::Sound, MediaKind::Text}) {
    const std::optional<MediaDirective> directive = FindDirective(side, kind);
    if (directive && !media_->Find(directive->name)) AddMissing(row, directive->name);
  }
}

void DeckCheck::LookAtTags(int row, std::string_view side) {
  MarkupReader reader(side);
  for (MarkupItem item; reader.Next(item);) {
    if (item.kind == MarkupItem::Kind::Link) {
      linked_[static_cast<size_t>(item.target)] = true;
      if (!HasCard(item.target)) Add(DeckFault::DeadLink, row, item.target);
    }
    const bool names_file = item.kind == MarkupItem::Kind::Picture || item.kind == MarkupItem::Kind::Video ||
                            item.kind == MarkupItem::Kind::Sound || item.picture_face;
    if (names_file && media_ && !media_->Find(item.text)) AddMissing(row, item.text);
  }
}

void DeckCheck::AddMissing(int row, const std::string& name) {
  Add(DeckFault::MissingMedia, row);
  report_.findings.back().name = name;
}

void DeckCheck::LookAtHistory(int row) {
  const CardReader cards(file_);
  const TimesState times = StateOf(cards.TimeRow(row));
  if (cards.NewestTime(row) > now_) Add(DeckFault::FutureAnswer, row);
  if (times == TimesState::Disordered) Add(DeckFault::TimeOrder, row);
  if (!AreLetters(cards.YesNoRow(row))) Add(DeckFault::Letters, row);
  if (times == TimesState::Malformed) Add(DeckFault::Times, row);
  if (!IsScore(file_.cards().Peek(file_.columns().score, row))) Add(DeckFault::Score, row);
  if (!IsNumber(file_.cards().Peek(file_.columns().time_learned, row))) Add(DeckFault::TimeLearned, row);
}

void DeckCheck::Add(DeckFault fault, int row, int64_t number) {
  ++report_.counts[static_cast<size_t>(fault)];
  report_.findings.push_back({.fault = fault, .row = row, .number = number});
}

bool DeckCheck::CanRepair(const DeckFinding& finding) const {
  switch (finding.fault) {
    case DeckFault::MissingId:
      return highest_ < kMaxLinkTarget;
    case DeckFault::DoubleId:
      return !finding.links_lead_to && highest_ < kMaxLinkTarget;
    case DeckFault::DeadLink:
    case DeckFault::TimeOrder:
    case DeckFault::EmptySide:
    case DeckFault::MissingMedia:
      return false;
    default:
      return true;
  }
}

DeckReport DeckCheck::TakeReport() {
  for (DeckFinding& finding : report_.findings) {
    finding.links_lead_to = finding.fault == DeckFault::DoubleId && finding.number >= 0 &&
                            finding.number <= kMaxLinkTarget && linked_[static_cast<size_t>(finding.number)];
    finding.can_repair = CanRepair(finding);
  }
  std::stable_sort(report_.findings.begin(), report_.findings.end(),
                   [](const DeckFinding& a, const DeckFinding& b) { return a.row < b.row; });
  return std::move(report_);
}

int64_t CountFutureAnswers(const CardFile& file, int64_t now) {
  const CardReader cards(file);
  int64_t count = 0;
  for (int row = kFirstCardRow; row <= cards.LastCardRow(); ++row) {
    __builtin_prefetch(cards.TimeRow(row + kRowsAhead).data());
    if (cards.NewestTime(row) > now && !cards.HasEndMark(row) && !cards.IsNavigation(row)) ++count;
  }
  return count;
}

}  // namespace tessaro
