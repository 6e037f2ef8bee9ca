#include "edit/side_field.h"

#include <QImage>
#include <QKeyEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QSyntaxHighlighter>
#include <QTextBlock>
#include <QTextOption>
#include <QUrl>
#include <algorithm>

#include "edit/tag_spans.h"
#include "widgets/text.h"
#include "widgets/theme.h"

using namespace Qt::StringLiterals;

namespace tessaro {

// Colours the tags of a document. They are found in the whole of it: one may reach over line ends.
class TagHighlighter : public QSyntaxHighlighter {
 public:
  explicit TagHighlighter(QTextDocument& document) : QSyntaxHighlighter(static_cast<QTextDocument*>(nullptr)) {
    setDocument(&document);
  }

  void Show(std::vector<TagSpan> tags) {
    tags_ = std::move(tags);
    rehighlight();
  }
  void SetColour(const QColor& colour) { colour_ = colour; }
  std::function<bool(int64_t)> is_card;

 protected:
  void highlightBlock(const QString& text) override {
    const auto begin = static_cast<size_t>(currentBlock().position());
    const size_t end = begin + static_cast<size_t>(text.size());
    auto tag = std::partition_point(tags_.begin(), tags_.end(),
                                    [begin](const TagSpan& span) { return span.begin + span.length <= begin; });
    for (; tag != tags_.end() && tag->begin < end; ++tag) {
      const size_t from = std::max(tag->begin, begin);
      const size_t to = std::min(tag->begin + tag->length, end);
      setFormat(static_cast<int>(from - begin), static_cast<int>(to - from), FormatOf(*tag));
    }
  }

 private:
  QTextCharFormat FormatOf(const TagSpan& tag) const {
    QTextCharFormat format;
    format.setForeground(colour_);
    if (tag.link && is_card && (tag.target == 0 || !is_card(tag.target))) {
      format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
      format.setFontUnderline(true);
    }
    return format;
  }

  std::vector<TagSpan> tags_;
  QColor colour_;
};

namespace {

// Keys that mean commands of the editor and not what a text field makes of them.
bool IsEditorKey(const QKeyEvent& key) {
  if (key.modifiers() != Qt::ControlModifier) return false;
  return key.key() == Qt::Key_Home || key.key() == Qt::Key_End || key.key() == Qt::Key_Y;
}

QStringList LocalFiles(const QMimeData& data) {
  QStringList files;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) files += url.toLocalFile();
  }
  return files;
}

}  // namespace

SideField::SideField(QWidget* parent)
    : QPlainTextEdit(parent), highlighter_(std::make_unique<TagHighlighter>(*document())) {
  setTabChangesFocus(true);
  connect(this, &QPlainTextEdit::textChanged, this, &SideField::TextChanged);
  highlighter_->SetColour(AccentColour(Accent::Notice, palette()));
}

SideField::~SideField() {
  // The highlighter takes its colours away when it goes, which the document tells as a change.
  setting_ = true;
}

// A QChar is a byte of the code page here, so positions of a document are those of the side.
bool SideField::IsForeign(QChar letter) const {
  return letter != QChar::ParagraphSeparator && letter != QChar::LineSeparator && letter != u'\n' &&
         (letter == u'\r' || !page_.ByteOf(letter.unicode()));
}

void SideField::SetCodePage(CodePage page) {
  if (page == page_) return;
  const std::string side = Side();
  page_ = page;
  QTextOption writing = document()->defaultTextOption();
  writing.setTextDirection(page.right_to_left() ? Qt::RightToLeft : Qt::LayoutDirectionAuto);
  writing.setAlignment(page.right_to_left() ? Qt::AlignRight | Qt::AlignAbsolute : Qt::Alignment(Qt::AlignLeft));
  document()->setDefaultTextOption(writing);
  SetSide(side);
}

void SideField::SetSide(std::string_view side) {
  setting_ = true;
  setPlainText(FromBytes(side, page_));
  setting_ = false;
  HighlightAnew();
}

std::string SideField::Side() const {
  QString text = document()->toRawText();
  text.replace(QChar::ParagraphSeparator, u'\n').replace(QChar::LineSeparator, u'\n');
  text.removeIf([this](QChar letter) { return IsForeign(letter); });
  return ToBytes(text, page_).value_or(std::string());
}

QTextCursor SideField::CursorAt(SideRange selection) const {
  QTextCursor cursor(document());
  cursor.setPosition(static_cast<int>(selection.begin));
  cursor.setPosition(static_cast<int>(selection.begin + selection.length), QTextCursor::KeepAnchor);
  return cursor;
}

SideRange SideField::Selection() const {
  const QTextCursor cursor = textCursor();
  return {static_cast<size_t>(cursor.selectionStart()),
          static_cast<size_t>(cursor.selectionEnd() - cursor.selectionStart())};
}

void SideField::Select(SideRange selection) {
  setTextCursor(CursorAt(selection));
  ensureCursorVisible();
}

void SideField::Apply(const SideEdit& edit) {
  CursorAt(edit.removed).insertText(FromBytes(edit.inserted, page_));
  Select(edit.selection);
  setFocus();
}

void SideField::PutTag(std::string_view tag) {
  Apply(InsertTag(Side(), Selection(), tag));
}

void SideField::Enclose(std::string_view open, std::string_view close) {
  const auto [begin, length] = Selection();
  if (length == 0 && std::string_view(Side()).substr(begin).starts_with(close))
    return Select({begin + close.size(), 0});
  Apply(EncloseInTags(Side(), Selection(), open, close));
}

void SideField::SelectIfBlank() {
  if (Side() == kBlankSide) selectAll();
}

void SideField::PutAtStart(std::string_view tag) {
  Apply(InsertAtStart(Side(), Selection(), tag));
}

void SideField::Replace(std::string_view text) {
  Apply({{0, Side().size()}, std::string(text), {}});
}

void SideField::TransferBreaks() {
  const std::string text = Side();
  const std::string broken = TransferLineBreaks(text);
  if (broken != text) Apply({{0, text.size()}, broken, {broken.size(), 0}});
}

void SideField::SetIsCard(std::function<bool(int64_t number)> is_card) {
  highlighter_->is_card = std::move(is_card);
}

void SideField::HighlightAnew() {
  // The document takes new colours for a change of its text.
  const QScopedValueRollback<bool> setting(setting_, true);
  highlighter_->Show(FindTags(Side()));
}

void SideField::TextChanged() {
  if (setting_) return;
  LeaveOutForeign();
  HighlightAnew();
  Q_EMIT SideChanged();
}

void SideField::LeaveOutForeign() {
  const QString text = document()->toRawText();
  QString left_out;
  QTextCursor cursor(document());
  for (qsizetype at = text.size() - 1; at >= 0; --at) {
    if (!IsForeign(text[at])) continue;
    if (left_out.isEmpty()) {
      setting_ = true;
      cursor.joinPreviousEditBlock();
    }
    left_out.prepend(text[at]);
    cursor.setPosition(static_cast<int>(at));
    cursor.deleteChar();
  }
  if (left_out.isEmpty()) return;
  cursor.endEditBlock();
  setting_ = false;
  Q_EMIT ForeignLeftOut(left_out);
}

bool SideField::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && IsEditorKey(*static_cast<QKeyEvent*>(event))) {
    event->ignore();
    return true;
  }
  return QPlainTextEdit::event(event);
}

void SideField::focusInEvent(QFocusEvent* event) {
  QPlainTextEdit::focusInEvent(event);
  // Whoever comes by key to a side on which nothing is written yet wants to write there.
  if (event->reason() != Qt::MouseFocusReason && event->reason() != Qt::ActiveWindowFocusReason) SelectIfBlank();
  Q_EMIT FocusTaken();
}

void SideField::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() != QEvent::PaletteChange || highlighter_ == nullptr) return;
  highlighter_->SetColour(AccentColour(Accent::Notice, palette()));
  HighlightAnew();
}

bool SideField::canInsertFromMimeData(const QMimeData* source) const {
  return source->hasImage() || source->hasUrls() || QPlainTextEdit::canInsertFromMimeData(source);
}

void SideField::insertFromMimeData(const QMimeData* source) {
  const QStringList files = LocalFiles(*source);
  if (!files.isEmpty()) {
    Q_EMIT FilesDropped(files);
  } else if (source->hasImage() && !source->hasText()) {
    Q_EMIT PicturePasted(qvariant_cast<QImage>(source->imageData()));
  } else {
    // Text only, without the looks that it had elsewhere.
    if (source->hasText()) textCursor().insertText(source->text());
    ensureCursorVisible();
  }
}

}  // namespace tessaro
