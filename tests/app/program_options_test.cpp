#include "app/program_options.h"

#include <gtest/gtest.h>

namespace tessaro {
namespace {

using namespace Qt::StringLiterals;

TEST(ProgramOptions, AreReadFromTheCommandLine) {
  // What is read, and "mistake".
  const std::pair<QString, std::string> cases[] = {
      {u""_s, "splash"},
      {u"a.mlb"_s, "a.mlb"},
      {u"--no-splash"_s, ""},
      {u"--settings x.ini --palette dark"_s, "x.ini dark splash"},
      {u"--settings=x.ini --palette=light Käse.mlb"_s, "Käse.mlb x.ini light"},
      {u"-- --odd.mlb"_s, "--odd.mlb"},
      {u"--palette pink"_s, "splash mistake"},
      {u"--settings"_s, "splash mistake"},
      {u"--unknown"_s, "splash mistake"},
      {u"a.mlb b.mlb"_s, "a.mlb mistake"},
  };
  for (const auto& [line, read] : cases) {
    const ProgramOptions options = ReadOptions(QStringList(u"tessaro"_s) + line.split(u' ', Qt::SkipEmptyParts));
    std::string text = options.card_file.string() + " " + options.settings.string();
    if (options.theme != Theme::Desktop) text += options.theme == Theme::Dark ? " dark" : " light";
    if (options.splash) text += " splash";
    if (!options.mistake.isEmpty()) text += " mistake";
    EXPECT_EQ(QString::fromStdString(text).simplified().toStdString(), read) << line.toStdString();
  }
}

}  // namespace
}  // namespace tessaro
