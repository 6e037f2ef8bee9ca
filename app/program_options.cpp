#include "app/program_options.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include "settings/keys.h"
#include "widgets/desktop_colours.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

void ReadTheme(const QString& name, ProgramOptions& options) {
  if (name == u"dark"_s) {
    options.theme = Theme::Dark;
  } else if (name == u"light"_s) {
    options.theme = Theme::Light;
  } else {
    options.mistake = u"--palette kennt nur light und dark."_s;
  }
}

}  // namespace

ProgramOptions ReadOptions(const QStringList& arguments) {
  QCommandLineParser parser;
  const QCommandLineOption settings(u"settings"_s, {}, u"DATEI"_s);
  const QCommandLineOption palette(u"palette"_s, {}, u"NAME"_s);
  const QCommandLineOption no_splash(u"no-splash"_s);
  const QCommandLineOption learn(u"learn"_s);
  const QCommandLineOption new_file(u"new-file"_s);
  const QCommandLineOption another(u"new"_s);
  const QCommandLineOption help(QStringList{u"h"_s, u"help"_s});
  const QCommandLineOption version(QStringList{u"v"_s, u"version"_s});
  parser.addOptions({settings, palette, no_splash, learn, new_file, another, help, version});

  ProgramOptions options;
  if (!parser.parse(arguments)) {
    options.mistake = u"Unbekannte oder unvollständige Angabe: %1"_s.arg(
        parser.unknownOptionNames().isEmpty() ? arguments.mid(1).join(u' ') : parser.unknownOptionNames().join(u", "));
    return options;
  }
  const QStringList files = parser.positionalArguments();
  if (files.size() > 1) options.mistake = u"Es kann nur eine Kartei zugleich geöffnet werden."_s;
  if (!files.isEmpty()) options.wish.card_file = ToPath(files.first());
  options.settings = ToPath(parser.value(settings));
  if (parser.isSet(palette)) ReadTheme(parser.value(palette), options);
  if (parser.isSet(learn)) options.wish.deed = StartWish::Deed::Learn;
  if (parser.isSet(new_file)) options.wish.deed = StartWish::Deed::NewFile;
  if (parser.isSet(new_file) && (parser.isSet(learn) || !files.isEmpty())) {
    options.mistake = u"--new-file steht allein, ohne --learn und ohne Kartei."_s;
  }
  options.splash = !parser.isSet(no_splash) && options.wish.empty();
  options.another = parser.isSet(another);
  options.show_help = parser.isSet(help);
  options.show_version = parser.isSet(version);
  return options;
}

QString HelpText() {
  return uR"(Aufruf: tessaro [Angaben] [KARTEI.mlb]

Lernen mit Karteikarten. Eine angegebene Kartei wird gleich geöffnet.

  --settings DATEI      andere Einstellungsdatei statt der eigenen tessaro.ini;
                        Sicherungen stehen dann im Ordner daneben
  --palette light|dark  helle oder dunkle Fenster statt der Farben des Desktops
  --no-splash           ohne Startbild
  --learn               gleich lernen, ohne Angabe einer Kartei mit der zuletzt
                        geöffneten
  --new-file            eine neue Kartei anlegen
  --new                 ein eigenes Programm, auch wenn schon eines läuft;
                        sonst tut dieses, was verlangt ist
  -h, --help            diese Hilfe
  -v, --version         Version
)"_s;
}

void ApplyAppearance(const IniFile& settings, Theme given) {
  ApplyTextSize(static_cast<int>(keys::kTextPercent.Read(settings)));
  const Theme theme = given != Theme::Desktop ? given : static_cast<Theme>(keys::kTheme.Read(settings));
  // Follows the desktop as long as it lives.
  auto* desktop = QCoreApplication::instance()->findChild<DesktopColours*>();
  if (theme == Theme::Desktop && desktop != nullptr) return;
  delete desktop;
  ApplyTheme(theme);
  if (theme == Theme::Desktop) new DesktopColours(QCoreApplication::instance());
}

}  // namespace tessaro
