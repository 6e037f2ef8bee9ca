#include "learn/run_presenter.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "cards/figures.h"
#include "hypertext/plain_text.h"

namespace tessaro {
namespace {

constexpr int64_t kMinute = 60;
constexpr int64_t kHour = 60 * kMinute;

template <typename... Values>
std::string Format(const char* form, Values... values) {
  std::array<char, 100> text = {};
  std::snprintf(text.data(), text.size(), form, static_cast<long long>(values)...);
  return text.data();
}

// A side as one line of plain text, no longer than any window shows.
std::string InOneLine(std::string_view side) {
  constexpr size_t kMostBytes = 4000;
  constexpr size_t kMostLetters = 500;
  std::string line;
  for (const char c : PlainText(side.substr(0, kMostBytes))) {
    const bool blank = c == ' ' || c == '\n' || c == '\r' || c == '\t';
    if (!blank) line += c;
    if (blank && !line.empty() && line.back() != ' ') line += ' ';
  }
  if (!line.empty() && line.back() == ' ') line.pop_back();
  return line.substr(0, kMostLetters);
}

void FillCard(const LearningRun& run, int64_t now, RunScreen& screen) {
  const ShownCard& card = run.card();
  screen.has_card = card.row != 0;
  screen.side = run.moment().first_side ? CardSide::Question : CardSide::Answer;
  screen.navigation = card.navigation;
  screen.position = card.row - kFirstCardRow + 1;
  screen.status = card.status;
  screen.retention = card.newest_known ? DurationText(card.score) : "0";
  if (card.last_answer > 0) screen.last_shown = DurationText(now - card.last_answer);
  screen.due_in_if_known = run.DueInIfKnown();
  if (screen.has_card && screen.side == CardSide::Answer) screen.side_before = InOneLine(run.other_side_text());
}

void FillCommands(const LearningRun& run, RunScreen& screen) {
  screen.open = screen.has_card && !run.ended();
  screen.can_undo = run.CanUndo();
  screen.can_take_back = run.CanTakeBackAnswer();
  screen.can_restore = run.CanRestoreAnswer();
  screen.options = run.options();
  screen.method = run.method();
  screen.box = run.moment().leitner.box;
  screen.box_waits = screen.method != Method::Leitner && screen.box != 0;
}

RunScreen::Next NextOf(const LearningRun& run, const RunScreen& screen) {
  using enum RunScreen::Next;
  if (run.ended()) return BeginRun;
  if (!screen.has_card) return Close;
  if (screen.navigation) return GoOn;
  return run.moment().first_side ? Turn : Answer;
}

void FillNotice(const LearningRun& run, const CardFile& file, int64_t now, RunScreen& screen) {
  const bool nothing_due = screen.notice == Notice::NothingDue;
  const bool at_end = screen.notice == Notice::EndWithoutCard;
  if (nothing_due) screen.next_due_in = FiguresOf(file, run.parameters(), now).next_due_in;
  screen.offers_new_run = screen.notice == Notice::ClockWentBack || at_end;
  screen.offers_no_lock = (nothing_due || at_end) && run.options().time_lock;
}

}  // namespace

RunScreen ScreenOf(const LearningRun& run, const CardFile& file, Notice notice, int64_t now) {
  RunScreen screen;
  screen.figures = run.figures();
  screen.stage = run.moment().stage;
  screen.notice = notice;
  FillCard(run, now, screen);
  FillCommands(run, screen);
  FillNotice(run, file, now, screen);
  screen.next = NextOf(run, screen);
  return screen;
}

std::string DurationText(int64_t seconds) {
  const int64_t time = std::max<int64_t>(seconds, 0);
  return Format("%lld:%02lld:%02lld:%02lld", time / kSecondsPerDay, time % kSecondsPerDay / kHour,
                time % kHour / kMinute, time % kMinute);
}

std::string StopwatchText(int64_t seconds) {
  return Format("%02lld:%02lld", seconds / kMinute, seconds % kMinute);
}

}  // namespace tessaro
