#pragma once

#include <QDialog>
#include <memory>

#include "edit/card_search.h"
#include "settings/program_settings.h"

namespace Ui {
class TF_wnsuch;
}

namespace tessaro {

// What a search has found, for the status line.
QString SearchText(const SearchResult& result, bool possible);

// Asks what to search the cards for; stays open beside the editor.
class TF_wnsuch : public QDialog {
  Q_OBJECT

 public:
  TF_wnsuch(ProgramSettings& settings, QWidget* parent);
  ~TF_wnsuch() override;

  void Begin();
  SearchQuery query() const;
  void ShowResult(const SearchResult& result, bool possible);

 Q_SIGNALS:
  void StartWanted();
  void MoreWanted();

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  void Start();
  // Empty, with a word to the user, when a text is not one that cards can hold.
  bool TextsFit();

  ProgramSettings& settings_;
  std::unique_ptr<Ui::TF_wnsuch> ui_;
};

}  // namespace tessaro
