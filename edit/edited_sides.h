#pragma once

#include <QObject>
#include <QTimer>
#include <array>

#include "edit/markup_tools.h"
#include "widgets/htmlview.h"

class QImage;
class QLabel;
class QTabBar;

namespace Ui {
class TF_wned;
}

namespace tessaro {

class CardFile;
class Clock;
struct ProgramSettings;
class SideField;

// Both sides of a card while it is written: the fields for their texts, their previews, and which of them is in work.
class EditedSides : public QObject {
  Q_OBJECT

 public:
  // Ties the widgets of the editor window together, which with the clock must live longer.
  EditedSides(const Ui::TF_wned& ui, const Clock& clock);

  // Where the text of a side is written.
  SideField& field(EditSide side) const { return *views_[Index(side)].field; }
  // The side that has the focus or had it last; the front at first.
  EditSide active() const { return active_; }
  SideField& active_field() const { return field(active_); }
  void Activate(EditSide side);
  // Gives the focus to the other side.
  void TurnOver();
  // Both sides beside each other where there is room for them, else the active one.
  void Fit(int room);

  // Fonts and colours of the front and the back as windows show them.
  const std::array<SideLook, 2>& looks() const { return looks_; }
  CodePage page(EditSide side) const { return looks_[Index(side)].page; }
  // Reads these, and where media are looked for, from the settings; ShowLooks and ShowPreview show them.
  void ReadLooks(const CardFile& file, const ProgramSettings& settings);
  // `marked`: for deletion.
  void ShowLooks(bool marked, bool read_only);
  void SetLinkColours(const std::function<ColourClass(int64_t card_id)>& colours);

  // Shows the texts of the fields as cards. What is typed is shown by itself.
  void ShowPreview();
  void ScrollPreviewToTop();

 Q_SIGNALS:
  // The user has changed a text.
  void Typed();
  // Another side may be in work.
  void Activated();
  // In a preview; the number of the card to which the link leads.
  void LinkClicked(int card_id);
  // See SideField.
  void ForeignLeftOut(const QString& characters);
  void FilesDropped(const QStringList& paths);
  void PicturePasted(const QImage& picture);

 private:
  struct View {
    QWidget* pane;
    QLabel* title;
    SideField* field;
    TFrameHtml* frame;
  };
  static size_t Index(EditSide side) { return side == EditSide::Front ? 0 : 1; }
  void Connect(EditSide side);
  void ShowPanes();

  const Clock& clock_;
  std::array<View, 2> views_;  // front, back
  QTabBar& tabs_;
  std::array<SideLook, 2> looks_;
  EditSide active_ = EditSide::Front;
  bool both_ = true;
  QTimer preview_timer_;
};

}  // namespace tessaro
