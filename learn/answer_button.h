#pragma once

#include <QPushButton>
#include <optional>
#include <string>
#include <string_view>

#include "widgets/theme.h"

namespace tessaro {

// One of the large buttons under the card. It bears its name, an icon and the key that does the same.
class AnswerButton : public QPushButton {
  Q_OBJECT

 public:
  explicit AnswerButton(QWidget* parent = nullptr);
  // The accent, if any, colours border and icon. `icon_name` is one of the program's icons.
  void SetMeaning(std::optional<Accent> accent, std::string_view icon_name);
  void SetKeyText(const QString& key);
  // What pressing it would come to, quietly beside its name where there is room; empty = nothing.
  void SetNote(const QString& note);
  // Asks for room for such a note and key, so that the buttons beside it stay where they are while notes and keys
  // change. Without it a note has the room that is left.
  void KeepRoomFor(const QString& note, const QString& key);
  void KeepRoomForNote(bool on);
  // What the user does next: a stronger border, which says so before the focus ring does.
  void SetProminent(bool prominent);
  bool prominent() const { return prominent_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  int IconSide() const;
  QColor OwnColour() const;
  QColor QuietColour() const;
  QFont KeyFont() const;
  int KeyWidth(const QString& key) const;
  int NoteWidth(const QString& note) const;
  void PaintKey(QPainter& painter, int x) const;
  QSize WithoutKey() const;
  void PaintFrame(QPainter& painter) const;
  void PaintContent(QPainter& painter) const;
  void MakeIcon();

  std::optional<Accent> accent_;
  std::string icon_name_;
  QString key_text_;
  QString note_;
  QString widest_note_;
  QString widest_key_;
  bool room_for_note_ = true;
  bool prominent_ = false;
};

}  // namespace tessaro
