#pragma once

#include <QFrame>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "cards/figures.h"

class QVBoxLayout;

namespace Ui {
class TFrameBegin;
}

namespace tessaro {

// What the start page says of the open card file.
struct BeginFile {
  std::filesystem::path path;
  CardFigures figures;
  bool after_run = false;  // a run of learning has just ended
};

// The start page of the main window: what is open and what to do next, or how to begin.
class TFrameBegin : public QFrame {
  Q_OBJECT

 public:
  explicit TFrameBegin(QWidget* parent = nullptr);
  ~TFrameBegin() override;

  // How to begin: open, make, recent files, samples.
  void ShowNoFile();
  // That this card file is being loaded; ShowFile or ShowNoFile follows.
  void ShowLoading(const std::filesystem::path& path);
  void ShowFile(const BeginFile& file);
  // Shows the figures of the same card file anew; the focus stays where it is.
  void Renew(const BeginFile& file);
  // A line on how much of the open card file is known now; empty hides it.
  void ShowKnownNow(const QString& text);
  // A line on what a check of the open card file found; empty hides it.
  void ShowCheck(const QString& text);
  void SetRecent(const std::vector<std::filesystem::path>& files);
  void SetSamples(const std::vector<std::filesystem::path>& samples);

 Q_SIGNALS:
  // A button was pressed; the window around does what it says.
  void OpenWanted();
  void NewWanted();
  void LearnWanted();
  void RowOrderWanted();
  void BoxesWanted();
  void EditWanted();
  void SearchWanted();
  void CheckWanted();
  void FileWanted(const QString& path);
  void SampleWanted(const QString& path);

 protected:
  // Enter presses the button that has the focus, as Space does.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  using FileSignal = void (TFrameBegin::*)(const QString& path);

  void SetFonts();
  void ShowName(const std::filesystem::path& path);
  void ShowFigures(const CardFigures& figures);
  void AddFileButton(QVBoxLayout& list, const std::filesystem::path& path, std::string_view icon,
                     const QString& description, FileSignal signal);

  std::unique_ptr<Ui::TFrameBegin> ui_;
  bool nothing_to_learn_ = false;  // the large button makes cards then
};

}  // namespace tessaro
