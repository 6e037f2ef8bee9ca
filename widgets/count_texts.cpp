#include "widgets/count_texts.h"

#include <QLocale>

namespace tessaro {

using namespace Qt::Literals::StringLiterals;

QString NumberText(int64_t number) {
  constexpr QChar kNarrowBlank(0x202F);
  const QLocale german(QLocale::German, QLocale::Germany);
  return german.toString(static_cast<qlonglong>(number)).replace(u'.', kNarrowBlank);
}

QString CardsText(int64_t cards) {
  return cards == 1 ? u"eine Karte"_s : u"%1 Karten"_s.arg(NumberText(cards));
}

}  // namespace tessaro
