#include "answer/answer_offer.h"

#include <algorithm>
#include <set>
#include <utility>

#include "answer/choice.h"
#include "cards/card_reader.h"
#include "hypertext/plain_text.h"

namespace tessaro {
namespace {

constexpr size_t kPool = 24;       // answers that the wrong ones are drawn from
constexpr size_t kLookedAt = 200;  // cards that are looked at for them
constexpr size_t kMostRead = 600;  // bytes of a side
constexpr size_t kMostShown = 120;
constexpr int kAtOnce = 100'000;  // cards

std::string_view WithoutOpenTag(std::string_view side) {
  const size_t tag = side.rfind('<');
  return tag != std::string_view::npos && side.find('>', tag) == std::string_view::npos ? side.substr(0, tag) : side;
}

// In one line, without blanks around and with one between words.
std::string OfferedText(std::string_view side) {
  std::string text;
  for (const char c : PlainText(side.size() > kMostRead ? WithoutOpenTag(side.substr(0, kMostRead)) : side)) {
    const bool blank = c == ' ' || c == '\n' || c == '\t' || c == '\r';
    if (!blank) text += c;
    if (blank && !text.empty() && text.back() != ' ') text += ' ';
  }
  if (!text.empty() && text.back() == ' ') text.pop_back();
  if (text.size() > kMostShown) text.replace(kMostShown - 3, std::string::npos, "...");
  return text;
}

// Of any card, as they are for the one on screen.
std::string_view FirstSide(const CardReader& cards, int row, const CardOnScreen& shown) {
  return shown.sides_swapped ? cards.Answer(row) : cards.Question(row);
}
std::string_view SecondSide(const CardReader& cards, int row, const CardOnScreen& shown) {
  return shown.sides_swapped ? cards.Question(row) : cards.Answer(row);
}

// Puts `count` of the texts, drawn one by one, behind `drawn`.
void Draw(std::vector<std::string> texts, size_t count, Random& random, std::vector<std::string>& drawn) {
  for (size_t i = 0; i < std::min(count, texts.size()); ++i) {
    std::swap(texts[i], texts[i + random.Next() % (texts.size() - i)]);
    drawn.push_back(texts[i]);
  }
}

}  // namespace

// The card, and what was found for it.
struct AnswerOffer::Asked {
  const CardOnScreen& card;
  std::string question;         // folded
  std::set<std::string> taken;  // folded answers
};

AnswerOffer::AnswerOffer(CardFile& file) : file_(file), watch_(file.watchers(), *this) {}

void AnswerOffer::RowsShifted(const RowShift& /*shift*/) {
  Forget();
}

void AnswerOffer::Forget() {
  for (std::optional<SimilarCards>& similar : similar_) similar.reset();
}

void AnswerOffer::CardsChanged(std::span<const int> /*rows*/, std::span<const int> columns) {
  const CardColumns& known = file_.columns();
  for (const int column : columns) {
    if (column == known.topic || column == known.question || column == known.answer) Forget();
  }
}

bool AnswerOffer::Prepare(bool sides_swapped, int cards) {
  return Similar(sides_swapped).Step(cards);
}

SimilarCards& AnswerOffer::Similar(bool sides_swapped) {
  std::optional<SimilarCards>& similar = similar_[sides_swapped ? 1 : 0];
  if (!similar || similar->RowCount() != file_.cards().RowCount()) {
    similar.emplace(file_, sides_swapped ? file_.columns().question : file_.columns().answer);
  }
  return *similar;
}

std::vector<std::string> AnswerOffer::Usable(std::span<const int> rows, Asked& asked) const {
  const CardReader cards(file_);
  const CodePage page = asked.card.second_page;
  std::vector<std::string> texts;
  for (const int row : rows) {
    if (texts.size() == kPool) break;
    if (cards.IsLeftOut(row)) continue;
    const std::string answer = OfferedText(SecondSide(cards, row, asked.card));
    if (answer.empty() || IsBareKey(answer, page)) continue;
    const std::string question = OfferedText(FirstSide(cards, row, asked.card));
    if (!question.empty() && asked.card.first_page.Folded(question) == asked.question) continue;
    if (asked.taken.insert(page.Folded(answer)).second) texts.push_back(answer);
  }
  return texts;
}

std::optional<OfferedAnswers> AnswerOffer::Make(const CardOnScreen& card, Random& random) {
  const CardReader cards(file_);
  const int row = card.row;
  if (!cards.IsCardRow(row)) return std::nullopt;
  const std::string right = OfferedText(SecondSide(cards, row, card));
  if (right.empty() || IsBareKey(right, card.second_page)) return std::nullopt;
  Asked asked = {.card = card,
                 .question = card.first_page.Folded(OfferedText(FirstSide(cards, row, card))),
                 .taken = {card.second_page.Folded(right)}};
  while (Prepare(card.sides_swapped, kAtOnce)) continue;
  const SimilarCards& similar = Similar(card.sides_swapped);
  OfferedAnswers offered;
  constexpr size_t kOthers = kMostOffered - 1;
  Draw(Usable(similar.OfTopic(row, kLookedAt), asked), kOthers, random, offered.texts);
  if (offered.texts.size() < kOthers) {
    const size_t missing = kOthers - offered.texts.size();
    Draw(Usable(similar.OfAll(row, kLookedAt), asked), missing, random, offered.texts);
  }
  if (offered.texts.empty()) return std::nullopt;
  offered.right = random.Next() % (offered.texts.size() + 1);
  offered.texts.insert(offered.texts.begin() + static_cast<std::ptrdiff_t>(offered.right), right);
  return offered;
}

}  // namespace tessaro
