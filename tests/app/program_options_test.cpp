#include "app/program_options.h"

#include <gtest/gtest.h>

namespace tessaro {
namespace {

using namespace Qt::StringLiterals;

TEST(ProgramOptions, AreReadFromTheCommandLine) {
  const struct {
    QString line;
    std::string card_file;
    std::string settings;
    Theme theme;
    bool splash;
    bool mistake;
  } cases[] = {
      {u""_s, "", "", Theme::Desktop, true, false},
      {u"a.mlb"_s, "a.mlb", "", Theme::Desktop, false, false},
      {u"--no-splash"_s, "", "", Theme::Desktop, false, false},
      {u"--settings x.ini --palette dark"_s, "", "x.ini", Theme::Dark, true, false},
      {u"--settings=x.ini --palette=light Käse.mlb"_s, "Käse.mlb", "x.ini", Theme::Light, false, false},
      {u"-- --odd.mlb"_s, "--odd.mlb", "", Theme::Desktop, false, false},
      {u"--palette pink"_s, "", "", Theme::Desktop, true, true},
      {u"--settings"_s, "", "", Theme::Desktop, true, true},
      {u"--unknown"_s, "", "", Theme::Desktop, true, true},
      {u"a.mlb b.mlb"_s, "a.mlb", "", Theme::Desktop, false, true},
  };
  for (const auto& c : cases) {
    const ProgramOptions options = ReadOptions(QStringList(u"tessaro"_s) + c.line.split(u' ', Qt::SkipEmptyParts));
    EXPECT_EQ(options.mistake.isEmpty(), !c.mistake) << c.line.toStdString();
    EXPECT_EQ(options.card_file.string(), c.card_file);
    EXPECT_EQ(options.settings.string(), c.settings);
    EXPECT_EQ(options.theme, c.theme) << c.line.toStdString();
    EXPECT_EQ(options.splash, c.splash) << c.line.toStdString();
  }
}

}  // namespace
}  // namespace tessaro
