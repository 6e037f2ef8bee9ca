#pragma once

#include <QDialog>
#include <memory>

#include "edit/card_search.h"
#include "settings/program_settings.h"

namespace Ui {
class TF_wnsuch;
}

namespace tessaro {

// What a search has found, for the status line. `possible`: see CardSearch.
QString SearchText(const SearchResult& result, bool possible);

// What is typed, for a search.
SoughtText SoughtTextOf(const QString& text, const SideCodePages& pages);

// Asks what to search the cards for; stays open beside the editor.
class TF_wnsuch : public QDialog {
  Q_OBJECT

 public:
  // `settings`, where its place is kept, must live longer.
  TF_wnsuch(ProgramSettings& settings, QWidget* parent);
  ~TF_wnsuch() override;

  // Comes to the front with the first text marked, to be typed over.
  void Begin();
  // What is to be searched for. A text that cards cannot hold is empty there; StartWanted does not come with one.
  SearchQuery query() const;
  // Those that the sides are written in, from now on.
  void SetCodePages(const SideCodePages& pages) { pages_ = pages; }
  void ShowResult(const SearchResult& result, bool possible);

 Q_SIGNALS:
  // The search is to begin at the first card.
  void StartWanted();
  // It is to go on behind the card found last.
  void MoreWanted();

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  void Start();
  // False, with a word to the user, when a text is not one that cards can hold.
  bool TextsFit();

  ProgramSettings& settings_;
  SideCodePages pages_;
  std::unique_ptr<Ui::TF_wnsuch> ui_;
};

}  // namespace tessaro
