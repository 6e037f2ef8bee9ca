#pragma once

namespace Ui {
class TF_wnlern;
}
class QMainWindow;

namespace tessaro {

// The property of an answer button that keeps its hint while another one stands in its place.
inline constexpr char kHint[] = "hint";

// How the learning window's controls are dressed and fitted into its width. None of this knows about cards.

// Icons, quiet captions and sizes, from the window's palette and font of the moment.
void DressControls(Ui::TF_wnlern& ui, QMainWindow& window);
// Folds away what has no room in this width: first the figures beside the card, then words beside icons.
void FitControls(Ui::TF_wnlern& ui, int width);
// Lets the answer buttons keep room for a note, or give up that before their keys, and says what they need then.
int AnswersWidth(Ui::TF_wnlern& ui, bool with_note);
// Gives each figure a name for screen readers that carries its value: "Nicht gewusst: 1".
void NameFigures(Ui::TF_wnlern& ui);
// Puts the control bar above or below the card.
void PlaceControlBar(Ui::TF_wnlern& ui, bool below);

}  // namespace tessaro
