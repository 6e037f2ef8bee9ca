#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QTranslator>
#include <cstdio>
#include <exception>
#include <optional>

#include "app/crdlogo.h"
#include "app/program.h"
#include "app/program_options.h"
#include "app/single_instance.h"
#include "app/wnmain.h"
#include "widgets/icons.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int kWrongUsage = 2;

// An exception that no handler caught ends the program; it is kept until the message loop is left, because a box inside
// the handler would start the loop anew.
class Application : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    try {
      return QApplication::notify(receiver, event);
    } catch (const std::exception& error) {
      failure_ = QString::fromLocal8Bit(error.what());
      exit(EXIT_FAILURE);
      return false;
    }
  }

  const QString& failure() const { return failure_; }

 private:
  QString failure_;
};

void Print(FILE* stream, const QString& text) {
  std::fputs(text.toLocal8Bit().constData(), stream);
}

void SpeakGerman(QApplication& application) {
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  auto* translator = new QTranslator(&application);
  if (translator->load(u"qtbase_de"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
    QApplication::installTranslator(translator);
  }
}

void ShowFailure(const QString& text) {
  QMessageBox::critical(nullptr, u"Tessaro"_s, text);
}

int RunProgram(Application& application, const ProgramOptions& options) {
  ProgramPlaces places = StandardPlaces();
  if (!options.settings.empty()) {
    places.settings = std::filesystem::absolute(options.settings);
    places.backups = places.settings.parent_path() / "Sicherungen";
  }
  IniFile settings;
  (void)settings.Load(RealDisk(), places.settings);
  ApplyAppearance(settings, options.theme);
  const RealClock clock;
  RealRandom random;
  BoxMessages messages;
  ThreadBackground background;
  StartWish wish = options.wish;
  if (!wish.card_file.empty()) wish.card_file = RealDisk().Resolve(wish.card_file);
  const QString instance = SingleInstance::NameFor(places.settings);
  if (!options.another && SingleInstance::HandOver(instance, wish)) return EXIT_SUCCESS;
  Program program({RealDisk(), clock, random, messages, &background}, places);
  program.file().journal().FlushInBackground();
  TF_wnmain& window = program.main_window();
  std::optional<SingleInstance> first;
  if (!options.another) {
    QObject::connect(&first.emplace(instance), &SingleInstance::OtherStart, &window, &TF_wnmain::FulfilForOtherStart);
  }
  if (!wish.empty()) window.FulfilAtStart(wish);
  window.show();
  if (options.splash) TF_Crdlogo::ShowOver(window);
  const int result = QApplication::exec();
  if (!application.failure().isEmpty()) ShowFailure(application.failure());
  return result;
}

int Main(int argc, char** argv) {
  QStringList arguments;
  // Names of files need not be text.
  for (int i = 0; i < argc; ++i) arguments << FromPath(argv[i]);
  const ProgramOptions options = ReadOptions(arguments);
  if (options.show_help) return Print(stdout, HelpText()), EXIT_SUCCESS;
  if (options.show_version) return Print(stdout, u"Tessaro " TESSARO_VERSION "\n"_s), EXIT_SUCCESS;
  if (!options.mistake.isEmpty()) return Print(stderr, options.mistake + u"\n"_s + HelpText()), kWrongUsage;

  Application application(argc, argv);
  QApplication::setApplicationName(u"tessaro"_s);
  QApplication::setApplicationVersion(u"" TESSARO_VERSION ""_s);
  QApplication::setDesktopFileName(u"tessaro"_s);
  SpeakGerman(application);
  QApplication::setWindowIcon(Icon("cards"));
  try {
    return RunProgram(application, options);
  } catch (const std::exception& error) {
    ShowFailure(QString::fromLocal8Bit(error.what()));
    return EXIT_FAILURE;
  }
}

}  // namespace
}  // namespace tessaro

int main(int argc, char** argv) {
  return tessaro::Main(argc, argv);
}
