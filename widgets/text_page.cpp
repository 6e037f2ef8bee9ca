#include "widgets/text_page.h"

#include <QStringTokenizer>
#include <optional>
#include <string>

#include "hypertext/text_file.h"
#include "platform/disk.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::StringLiterals;

constexpr size_t kMostOfFile = 2 << 20;  // bytes; in UTF-16, or with the marks of rich text, fewer letters
constexpr int kMostLines = 20'000;

// Cut, and without lines of more than some thousand letters, which the view would lay out whole.
QString ForTextView(QString text, bool cut) {
  constexpr qsizetype kLongestLine = 4000;
  cut = cut || text.size() > TextPage::kMostLetters;
  text.truncate(TextPage::kMostLetters);
  QString lines;
  lines.reserve(text.size() + text.size() / kLongestLine + 1);
  int count = 0;
  for (QStringView line : QStringTokenizer(QStringView(text), u'\n')) {
    if (++count > kMostLines) {
      cut = true;
      break;
    }
    while (line.size() > kLongestLine) {
      const qsizetype blank = line.lastIndexOf(u' ', kLongestLine);
      const qsizetype end = blank > 0 ? blank + 1 : kLongestLine;
      lines.append(line.first(end)).append(u'\n');
      line = line.sliced(end);
    }
    lines.append(line).append(u'\n');
  }
  lines.chop(1);
  return cut ? lines + u"\n\n[Hier abgeschnitten: Der Text ist zu lang.]"_s : lines;
}

}  // namespace

TextPage::TextPage(const QString& name) {
  setObjectName(name);
  setReadOnly(true);
  setFrameShape(QFrame::NoFrame);
  // Without the keyboard focus, so that the keys of the answers are never taken away.
  setFocusPolicy(Qt::NoFocus);
  setTextInteractionFlags(Qt::TextSelectableByMouse);
}

void TextPage::ShowText(const QString& text, bool cut) {
  setPlainText(ForTextView(text, cut));
}

bool TextPage::ShowFile(const std::filesystem::path& path) {
  const std::optional<std::string> bytes = ReadBeginning(RealDisk(), path, kMostOfFile + 1);
  if (!bytes) return false;
  const bool cut = bytes->size() > kMostOfFile;
  const std::string_view text = cut ? WholeLetters(std::string_view(*bytes).substr(0, kMostOfFile)) : *bytes;
  ShowText(FromUtf8(ReadableText(text)), cut);
  return true;
}

}  // namespace tessaro
