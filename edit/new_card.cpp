#include "edit/new_card.h"

#include <algorithm>

#include "cards/answer_history.h"
#include "cards/card_writer.h"
#include "edit/overview_cards.h"
#include "hypertext/markup.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

const std::string& NoTimes() {
  static const std::string times = BlankTimeRow();
  return times;
}
const std::string& NoLetters() {
  static const std::string letters = BlankYesNoRow();
  return letters;
}

}  // namespace

NewCard::NewCard(const CardFile& file, int64_t id, std::string_view front, std::string_view back, int64_t score)
    : id_(IdText(id)), score_(ScoreText(std::min(score, kMaxScore))) {
  const CardColumns& columns = file.columns();
  fields_ = {{columns.id, id_},
             {columns.topic, "00"},
             {columns.question, front},
             {columns.answer, back},
             {columns.score, score_},
             {columns.time_learned, "00"},
             {columns.yes_no_row, NoLetters()},
             {columns.time_row, NoTimes()}};
}

int64_t NextId(const CardFile& file, int64_t count) {
  return file.highest_id() + count > kMaxLinkTarget ? 0 : file.highest_id() + 1;
}

std::vector<FieldView> ResetStatistics(const CardFile& file) {
  const CardColumns& columns = file.columns();
  return {{columns.score, "000000000"},
          {columns.time_learned, "0"},
          {columns.yes_no_row, NoLetters()},
          {columns.time_row, NoTimes()}};
}

}  // namespace tessaro
