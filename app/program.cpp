#include "app/program.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QLocale>
#include <QStandardPaths>
#include <QTimer>
#include <system_error>
#include <utility>

#include "app/answer_modes.h"
#include "app/check_texts.h"
#include "app/dlopt.h"
#include "app/program_options.h"
#include "app/sample_files.h"
#include "app/wnmain.h"
#include "cards/code_page_change.h"
#include "cards/deck_check.h"
#include "cards/figures.h"
#include "edit/wned.h"
#include "help/help_desk.h"
#include "learn/dlausw.h"
#include "learn/dllernkeys.h"
#include "learn/start_method.h"
#include "learn/wnlern.h"
#include "print/dlprint.h"
#include "settings/keys.h"
#include "widgets/long_work.h"
#include "widgets/text.h"
#include "widgets/video_screen.h"
#include "widgets/wnmedia.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

std::filesystem::path StandardFolder(QStandardPaths::StandardLocation location) {
  return ToPath(QStandardPaths::writableLocation(location));
}

}  // namespace

ProgramPlaces StandardPlaces() {
  const std::filesystem::path program = ToPath(QCoreApplication::applicationDirPath());
  return {.settings = StandardFolder(QStandardPaths::GenericConfigLocation) / "tessaro" / "tessaro.ini",
          .samples = FindSampleFolder(program),
          .documents = StandardFolder(QStandardPaths::DocumentsLocation) / "Tessaro",
          .backups = StandardFolder(QStandardPaths::AppLocalDataLocation) / "Sicherungen",
          .help = FindHelp(program)};
}

Program::Program(const Machine& machine, ProgramPlaces places)
    : machine_(machine),
      places_(std::move(places)),
      file_(machine.disk, machine.clock, CountUnknown),
      answer_gate_(machine.clock) {
  settings_.path = places_.settings;
  settings_readable_ = settings_.ini.Load(machine_.disk, settings_.path);
  help_ = std::make_unique<HelpDesk>(machine.disk, places_.help, settings_, machine.messages);
  main_window_ = std::make_unique<TF_wnmain>(*this);
  connect(&outlook_, &OutlookWindows::LearnWanted, this, [this] { OpenLearning(); });
  outlook_.SetEditor([this](int row) { OpenEditor(row); });
}

Program::~Program() {
  // The last save may still be being copied; its copy counts only when it is complete.
  if (machine_.background != nullptr) machine_.background->Wait();
  // They look at the card file to their end.
  for (const QPointer<QWidget>& window : closed_windows_) delete window.data();
}

void Program::DeleteLater(std::unique_ptr<QWidget> window) {
  std::erase_if(closed_windows_, [](const QPointer<QWidget>& closed) { return closed == nullptr; });
  closed_windows_.emplace_back(window.get());
  window.release()->deleteLater();
}

void Program::RunInBackground(QObject& receiver, BackgroundWork work) {
  if (machine_.background != nullptr) return machine_.background->Run(receiver, std::move(work));
  work()();
}

void Program::OpenLearning(std::optional<MethodChoice> choice) {
  if (!file_.IsOpen() || !StoreEdited(false) || !MayLearn()) return;
  const bool begins = learning_window_ == nullptr;
  if (begins) MakeLearningWindow();
  if (choice) learning_window_->LearnBy(*std::move(choice));
  learning_window_->show();
  learning_window_->raise();
  learning_window_->activateWindow();
  // With the first card, which comes once the window stands.
  QTimer::singleShot(0, answer_modes_.get(), [this, begins] {
    if (begins) answer_modes_->Start();
    answer_modes_->TakeFocus();
  });
  Q_EMIT LearningOpened();
}

void Program::MakeLearningWindow() {
  learning_window_ =
      std::make_unique<TF_wnlern>(file_, settings_, machine_.clock, machine_.random, machine_.messages, answer_gate_);
  connect(learning_window_.get(), &TF_wnlern::Closed, this, &Program::EndLearning);
  connect(learning_window_.get(), &TF_wnlern::SaveWanted, main_window_.get(), &TF_wnmain::FileSaveExecute);
  learning_window_->SetOutlook(outlook_.Lines());
  connect(learning_window_.get(), &TF_wnlern::EvaluationWanted, &outlook_, &OutlookWindows::OpenEvaluation);
  connect(learning_window_.get(), &TF_wnlern::EditWanted, this, &Program::OpenEditor);
  connect(learning_window_.get(), &TF_wnlern::PrintWanted, this,
          [this](int row) { PrintCards(learning_window_.get(), row); });
  TieMedia(*learning_window_);
  answer_modes_ = std::make_unique<AnswerModes>(file_, *learning_window_, *media_window_, answer_gate_, settings_,
                                                machine_.clock, machine_.random, machine_.messages, input_check_on_);
}

void Program::ChooseMethod(bool boxes) {
  if (!file_.IsOpen()) return;
  if (learning_window_ != nullptr) {
    OpenLearning();
    learning_window_->SpeedButtonLeitnerClick();
    return;
  }
  const MethodDialogState shown = {.automatic = StartMethod(settings_.ini, file_.settings()), .boxes = boxes};
  TF_dlausw dialog(file_, settings_, machine_.clock, machine_.messages, shown, main_window_.get());
  if (dialog.exec() == QDialog::Accepted) OpenLearning(dialog.TakeChoice());
}

bool Program::MayLearn() {
  if (learning_window_ != nullptr) return true;
  const int64_t now = machine_.clock.Now();
  const int64_t cards = CountFutureAnswers(file_, now);
  if (cards == 0) return true;
  const QString clock = QLocale().toString(QDateTime::fromSecsSinceEpoch(now), u"d. MMMM yyyy, HH:mm"_s);
  return machine_.messages.Question(main_window_.get(), FutureAnswersText(cards, clock), u"Trotzdem lernen"_s,
                                    u"Nicht lernen"_s, {}, Answer::No) == Answer::Yes;
}

void Program::TieMedia(TF_wnlern& learning) {
  if (media_window_ == nullptr) media_window_ = std::make_unique<TF_wnmedia>();
  TF_wnmedia* media = media_window_.get();
  connect(&learning, &TF_wnlern::SoundWanted, media, &TF_wnmedia::PlaySound);
  connect(&learning, &TF_wnlern::VideoWanted, media, [media](const QString& path, VideoScreen* screen) {
    screen != nullptr ? media->PlayVideoOn(path, *screen) : media->PlayVideo(path);
  });
  connect(&learning, &TF_wnlern::MediaStopWanted, media, &TF_wnmedia::StopAll);
  connect(media, &TF_wnmedia::VideoEnded, &learning, &TF_wnlern::VideoEnded);
}

bool Program::CloseLearning() {
  return learning_window_ == nullptr || learning_window_->close();
}

bool Program::learning() const {
  return learning_window_ != nullptr;
}

void Program::EndLearning() {
  // What plays may play on the window's own screen.
  if (media_window_ != nullptr) media_window_->StopAll();
  answer_modes_.reset();
  // The window is still busy with being closed.
  DeleteLater(std::move(learning_window_));
  // The positions of the run, which a later save of the cards would write too. A failure is of no consequence for them.
  (void)file_.SaveSettings();
  SaveSettings();
  Q_EMIT LearningClosed();
}

void Program::ShowOptions() {
  const std::filesystem::path folder = file_.IsOpen() ? file_.paths().cards.parent_path() : std::filesystem::path();
  const bool open = file_.IsOpen();
  TF_dlopt options({settings_.ini, open ? &file_.settings() : nullptr, folder, places_.backups, open ? &file_ : nullptr,
                    &machine_.clock},
                   machine_.messages, QApplication::activeWindow());
  if (media_window_ == nullptr) media_window_ = std::make_unique<TF_wnmedia>();
  connect(&options, &TF_dlopt::SoundWanted, media_window_.get(), &TF_wnmedia::PlaySound);
  connect(&options, &TF_dlopt::ParametersWanted, main_window_.get(), &TF_wnmain::LernEinstellungExecute);
  connect(&options, &TF_dlopt::KeysWanted, &options, [&] {
    TF_dllernkeys(settings_.ini, &options).exec();
    if (learning_window_ != nullptr) learning_window_->SettingsChanged();
  });
  const auto appearance = [this] {
    return std::pair(keys::kTheme.Read(settings_.ini), keys::kTextPercent.Read(settings_.ini));
  };
  const auto before = appearance();
  if (options.exec() != QDialog::Accepted) return;
  SaveSettings();
  if (file_.IsOpen()) (void)file_.SaveSettings();
  if (options.code_page_change()) ChangeCodePages(*options.code_page_change());
  // Colours given at the start stay until others are chosen.
  if (appearance() != before) ApplyAppearance(settings_.ini);
  if (learning_window_ != nullptr) learning_window_->SettingsChanged();
  if (answer_modes_ != nullptr) answer_modes_->SettingsChanged();
}

void Program::ChangeCodePages(const CodePageChange& change) {
  if (!StoreEdited(true)) return;
  if (!change.convert) {
    WriteCodePages(change.to, file_.settings());
    (void)file_.SaveSettings();
  } else if (ConvertCards(change.to)) {
    (void)main_window_->FileSaveExecute();
  }
  if (editor_ != nullptr) editor_->SettingsChanged();
}

bool Program::ConvertCards(const SideCodePages& to) {
  if (!main_window_->KeepState(main_window_.get())) return false;
  ConversionEnd end = ConversionEnd::Failed;
  {
    LongWork work(main_window_.get(), machine_.clock);
    work.AllowCancel();
    work.NextStage(u"Texte umwandeln"_s, file_.CardCount());
    end = ConvertTexts(file_, to, [&work](int row) { return work.GoesOn(row); });
  }
  if (end == ConversionEnd::Failed || end == ConversionEnd::Lacking) {
    machine_.messages.Error(main_window_.get(),
                            u"\nDie Texte konnten nicht umgewandelt werden.\nDie Kartei ist wie zuvor."_s);
  }
  return end == ConversionEnd::Done;
}

TF_wned& Program::Editor() {
  if (editor_ != nullptr) return *editor_;
  const EditorMachine machine = {machine_.clock, machine_.disk, machine_.messages,
                                 [this](QWidget* asker) { return main_window_->KeepState(asker); }};
  editor_ = std::make_unique<TF_wned>(file_, settings_, machine, cards_made_);
  connect(editor_.get(), &TF_wned::Closed, this, &Program::EndEditing);
  connect(editor_.get(), &TF_wned::SaveWanted, main_window_.get(), &TF_wnmain::FileSaveExecute);
  connect(editor_.get(), &TF_wned::LearnWanted, this, [this] { OpenLearning(); });
  connect(editor_.get(), &TF_wned::PrintWanted, this, [this](QWidget* asker) { PrintCards(asker, editor_->row()); });
  return *editor_;
}

void Program::OpenEditor(int card_row) {
  if (!file_.IsOpen()) return;
  TF_wned& editor = Editor();
  editor.ShowRow(card_row);
  editor.show();
  editor.raise();
  editor.activateWindow();
}

void Program::OpenTable() {
  if (file_.IsOpen()) Editor().ShowTable();
}

void Program::OpenSearch() {
  if (!file_.IsOpen()) return;
  OpenEditor();
  Editor().ShowSearch();
}

void Program::NumberCards() {
  if (!file_.IsOpen()) return;
  Editor().MNummerierenClick();
  if (!editor_->IsInUse()) editor_->close();
}

void Program::MakeOverviews() {
  if (!file_.IsOpen()) return;
  Editor().MHtmlAutoLink();
  if (!editor_->IsInUse()) editor_->close();
}

void Program::PrintCards(QWidget* asker, int card_row) {
  if (!file_.IsOpen() || !StoreEdited(false)) return;
  CardOffer offer = {.shown = card_row};
  if (editor_ != nullptr) {
    offer.marked = editor_->MarkedRows();
    const CardReader cards(file_);
    if (editor_->query()) {
      offer.found = [cards, search = CardSearch(*editor_->query())](int row) {
        return search.Match(cards.Question(row), cards.Answer(row)).has_value();
      };
    }
  }
  // Several rows are marked on purpose, one always is.
  const CardChoice first = offer.marked.size() > 1 ? CardChoice::Marked : CardChoice::All;
  TF_dlprint({file_, settings_, machine_.clock, machine_.messages}, std::move(offer), first, asker).exec();
  SaveSettings();
}

bool Program::StoreEdited(bool whole_file) {
  if (editor_ == nullptr) return true;
  return whole_file ? editor_->Settle() : editor_->StoreSide();
}

bool Program::CloseWindows() {
  return outlook_.Close() && (editor_ == nullptr || editor_->close()) && CloseLearning();
}

void Program::EndEditing() {
  // The window is still busy with being closed.
  DeleteLater(std::move(editor_));
  SaveSettings();
  Q_EMIT EditorClosed();
  if (learning_window_ == nullptr) return;
  learning_window_->raise();
  learning_window_->activateWindow();
}

void Program::SaveSettings() {
  // Settings that we could not read are not written over.
  if (!settings_readable_) return;
  std::error_code ignored;
  std::filesystem::create_directories(settings_.path.parent_path(), ignored);
  (void)settings_.Save(machine_.disk);
}

}  // namespace tessaro
