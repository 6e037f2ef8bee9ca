#pragma once

#include <QObject>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <memory>

#include "learn/outlook_lines.h"
#include "outlook/deck_outlook.h"
#include "platform/clock.h"
#include "settings/program_settings.h"
#include "store/file/card_file.h"
#include "widgets/sliced_work.h"

namespace tessaro {

class OutlookWindow;
class TF_wneval;
class TF_wnprog;

// The windows of evaluation and forecast, which stand beside the others over the open card file.
class OutlookWindows : public QObject, private CardWatcher {
  Q_OBJECT

 public:
  // All must live longer.
  OutlookWindows(CardFile& file, ProgramSettings& settings, const Clock& clock);
  ~OutlookWindows() override;

  // Opens the window, or brings it to the front with figures of now. Nothing happens without an open card file.
  void OpenEvaluation();
  void OpenForecast();
  // Counts, beside what else goes on, how much of the open card file is known now; Summarised tells.
  void BeginSummary();
  // The lines for a learning window.
  OutlookLines Lines() const;
  // To be called before another card file takes the place of the open one. False: a dialog of theirs is open.
  [[nodiscard]] bool Close();
  // Opens a card in the editor; without it that is not offered.
  void SetEditor(std::function<void(int row)> edit) { edit_ = std::move(edit); }

 Q_SIGNALS:
  // How much is known now, in a line; empty when there is nothing to say.
  void Summarised(const QString& line);
  void LearnWanted();

 private:
  // The rows that are being counted are others now.
  void RowsShifted(const RowShift& shift) override;
  void Bring(OutlookWindow& window);
  void Summarise();

  CardFile& file_;
  ProgramSettings& settings_;
  const Clock& clock_;
  CardWatch watch_;
  std::function<void(int row)> edit_;
  LocalDays days_;
  QTimer summary_delay_;
  SlicedWork summary_;
  DeckOutlook deck_;                  // that of the summary
  std::filesystem::path summarised_;  // the card file that the last line told of
  RecallWeights weights_ = kStandardWeights;
  std::unique_ptr<TF_wneval> evaluation_;
  std::unique_ptr<TF_wnprog> forecast_;
};

}  // namespace tessaro
