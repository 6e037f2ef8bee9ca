#pragma once

#include <QPlainTextEdit>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "edit/markup_tools.h"
#include "platform/side_code_page.h"

class QImage;

namespace tessaro {

class TagHighlighter;

// The text of a card side while it is written: tags stand out, and what the code page cannot hold does not come in.
class SideField : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit SideField(QWidget* parent = nullptr);
  ~SideField() override;

  // The code page of the text; what is shown keeps its bytes.
  void SetCodePage(CodePage page);
  // Shows another text; nothing can be taken back then.
  void SetSide(std::string_view side);
  // The same text as it was typed, no-break spaces included.
  std::string Side() const;
  SideRange Selection() const;
  // Marks these bytes and brings them into view.
  void Select(SideRange selection);

  // The tools of the editor, each one step for taking back.
  // A tag in the place of the selection, a pair around it, a tag before all of the text. Without a selection and right
  // before the tag that closes the pair the caret goes behind that one.
  void PutTag(std::string_view tag);
  void Enclose(std::string_view open, std::string_view close);
  // Marks all of a side on which nothing is written yet, so that writing replaces it.
  void SelectIfBlank();
  void PutAtStart(std::string_view tag);
  // All of the text becomes another, the caret before it.
  void Replace(std::string_view text);
  // See TransferLineBreaks.
  void TransferBreaks();
  // Says whether a card has this number; links to others are underlined.
  void SetIsCard(std::function<bool(int64_t number)> is_card);
  // Looks anew at which links lead somewhere.
  void HighlightAnew();

 Q_SIGNALS:
  // The user or a tool has changed the text.
  void SideChanged();
  // These characters were left out.
  void ForeignLeftOut(const QString& characters);
  void FilesDropped(const QStringList& paths);
  void PicturePasted(const QImage& picture);
  void FocusTaken();

 protected:
  bool event(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool canInsertFromMimeData(const QMimeData* source) const override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  QTextCursor CursorAt(SideRange selection) const;
  void Apply(const SideEdit& edit);
  void TextChanged();
  void LeaveOutForeign();

  bool IsForeign(QChar letter) const;

  std::unique_ptr<TagHighlighter> highlighter_;
  CodePage page_;
  bool setting_ = false;
};

}  // namespace tessaro
