#pragma once

#include <QDialog>
#include <memory>

#include "settings/program_settings.h"

namespace Ui {
class TF_wnlink;
}

namespace tessaro {

// Holds a link that is being made while the editor goes to its target.
class TF_wnlink : public QDialog {
  Q_OBJECT

 public:
  // `settings`, where its place is kept, must live longer.
  TF_wnlink(ProgramSettings& settings, QWidget* parent);
  ~TF_wnlink() override;

  // Opens for a link on the card with this ID; the user may change its face. The editor stays usable.
  void Begin(const QString& source_id, const QString& face);
  // The card that the editor shows now, and to which the link would lead.
  void ShowTarget(const QString& id);

 Q_SIGNALS:
  // The link is to be made with this face. One of the two comes, once, and the dialog is gone from the screen.
  void Accepted(const QString& face);
  void Cancelled();

 protected:
  void reject() override;

 private:
  ProgramSettings& settings_;
  std::unique_ptr<Ui::TF_wnlink> ui_;
};

}  // namespace tessaro
