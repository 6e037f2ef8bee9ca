#include "exchange/blank_card.h"

#include <algorithm>

#include "cards/answer_history.h"
#include "cards/card_writer.h"

namespace tessaro {

std::string QueuedScore(int64_t base, int64_t n) {
  return ScoreText(std::min(base + kScoreStep * n, kMaxScore));
}

void MakeBlank(CardTexts& texts, int64_t n, int topic) {
  static const std::string letters = BlankYesNoRow();
  static const std::string times = BlankTimeRow();
  texts[kTopicAt] = (topic < 10 ? "0" : "") + std::to_string(topic);
  texts[kScoreAt] = QueuedScore(0, n);
  texts[kTimeLearnedAt] = "0";
  texts[kYesNoRowAt] = letters;
  texts[kTimeRowAt] = times;
}

CardTexts TextsOf(const CardTable& cards, int row) {
  CardTexts texts;
  for (size_t i = 0; i < texts.size(); ++i) texts[i] = cards.Peek(cards.ColumnIndex(kCardColumns[i]), row);
  return texts;
}

std::vector<FieldView> FieldsIn(const CardColumns& columns, const CardTexts& texts) {
  return {{columns.id, texts[kIdAt]},
          {columns.topic, texts[kTopicAt]},
          {columns.question, texts[kQuestionAt]},
          {columns.answer, texts[kAnswerAt]},
          {columns.score, texts[kScoreAt]},
          {columns.time_learned, texts[kTimeLearnedAt]},
          {columns.yes_no_row, texts[kYesNoRowAt]},
          {columns.time_row, texts[kTimeRowAt]}};
}

}  // namespace tessaro
