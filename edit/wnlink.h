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
  TF_wnlink(ProgramSettings& settings, QWidget* parent);
  ~TF_wnlink() override;

  void Begin(const QString& source_id, const QString& face);
  void ShowTarget(const QString& id);

 Q_SIGNALS:
  void Accepted(const QString& face);
  void Cancelled();

 protected:
  void reject() override;

 private:
  ProgramSettings& settings_;
  std::unique_ptr<Ui::TF_wnlink> ui_;
};

}  // namespace tessaro
