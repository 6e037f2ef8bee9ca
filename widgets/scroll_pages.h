#pragma once

class QDialog;
class QTabWidget;

namespace tessaro {

// Lets the pages of a dialog scroll where a screen is too small for them. To be called once, before anything asks for a
// page by its place.
void LetPagesScroll(QTabWidget& pages);
// Gives a dialog the size that it asks for, where the screen has it.
void FitToScreen(QDialog& dialog);

}  // namespace tessaro
