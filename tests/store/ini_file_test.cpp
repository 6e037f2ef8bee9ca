#include "store/ini_file.h"

#include <gtest/gtest.h>

#include "store/code_page.h"
#include "tests/support/memory_disk.h"

namespace tessaro {
namespace {

constexpr std::string_view kForeign =
    "; Kommentar\r\n"
    "lose=1\r\n"
    "\r\n"
    "[POS]\r\n"
    "x = 10\r\n"
    "X=20\r\n"
    "pfad=C:\\temp\\neu;a,b\r\n"
    "  text  =  \" mit Rand \"  \r\n"
    "einfach='x'\r\n"
    "ungleich=\"x'\r\n"
    "allein=\"\r\n"
    ";x=99\r\n"
    "leer=\r\n"
    "\r\n"
    "kein Schl\xFCssel\r\n"
    "[\xC4nderung]\r\n"
    "k=v\r\n"
    "\r\n"
    "[pos]\r\n"
    "spaet=7 Tage\r\n";

TEST(IniFile, ReadsWhatStandsInAFile) {
  IniFile ini;
  ini.Parse(kForeign);
  const struct {
    std::string_view section, key, value;
  } cases[] = {
      {"POS", "x", "10"},
      {"pos", "X", "10"},
      {"POS", "pfad", "C:\\temp\\neu;a,b"},
      {"POS", "TEXT", " mit Rand "},
      {"POS", "einfach", "x"},
      {"POS", "ungleich", "\"x'"},
      {"POS", "allein", "\""},
      {"POS", "leer", ""},
      {"POS", "spaet", "7 Tage"},
      {"änderung"_cp, "K", "v"},
      {"POS", "k", "fallback"},
      {"", "lose", "fallback"},
      {"P", "x", "fallback"},
      {"POS", ";x", "fallback"},
      {"POS", "", "fallback"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ini.GetString(c.section, c.key, "fallback"), c.value) << c.section << '/' << c.key;
  EXPECT_TRUE(ini.Has("POS", "leer"));
  EXPECT_FALSE(ini.Has("POS", "lose"));
  EXPECT_EQ(ini.Text(), kForeign);
}

TEST(IniFile, ReadsNumbersAtTheStartOfAValue) {
  IniFile ini;
  ini.Parse("[n]\na=12 Tage\nb=-7\nc=Tage 12\nd=\ne=99999999999999999999\nf=+\ng=007");
  const struct {
    std::string_view key;
    int64_t value;
  } cases[] = {{"a", 12}, {"b", -7}, {"c", 5}, {"d", 5}, {"e", INT64_MAX}, {"f", 5}, {"g", 7}, {"h", 5}};
  for (const auto& c : cases) EXPECT_EQ(ini.GetInt("n", c.key, 5), c.value) << c.key;
}

// Sets one value, and expects the file to differ in nothing else.
TEST(IniFile, ChangesNothingButTheValue) {
  const struct {
    std::string_view before, section, key, value, after;
  } cases[] = {
      {"", "S", "k", "v", "[S]\nk=v\n"},
      {"[S]\r\nk = a ; b\r\n#\r\n", "s", "K", "v", "[S]\r\nk = v\r\n#\r\n"},
      {"[S]\nk=1\nk=2\n", "S", "k", "3", "[S]\nk=3\nk=2\n"},
      {"[S]\na=1\n\n[T]\nb=2", "S", "k", "v", "[S]\na=1\nk=v\n\n[T]\nb=2"},
      {"[S]\na=1\n\n[T]\nb=2", "T", "k", "v", "[S]\na=1\n\n[T]\nb=2\nk=v\n"},
      {"[S]\na=1", "U", "k", "v", "[S]\na=1\n\n[U]\nk=v\n"},
      {"[S]\na=1\r", "S", "k", "v", "[S]\na=1\r\nk=v\n"},
      {"a=1\r\n", "S", "a", "v", "a=1\r\n\r\n[S]\r\na=v\r\n"},
      {"[S]\nk= \"a\" \n", "S", "k", "a", "[S]\nk= \"a\" \n"},
      {"[S]\nk=\n", "S", "k", "", "[S]\nk=\n"},
      {"[S]\n[T]\n[S]\nk=1\n", "S", "k", "2", "[S]\n[T]\n[S]\nk=2\n"},
      {"[S]\n[T]\nx=1\n[S]\nk=1\n", "S", "m", "2", "[S]\nm=2\n[T]\nx=1\n[S]\nk=1\n"},
      {"\xEF\xBB\xBF[S]\nk=1\n", "S", "k", "2", "\xEF\xBB\xBF[S]\nk=2\n"},
  };
  for (const auto& c : cases) {
    IniFile ini;
    ini.Parse(c.before);
    EXPECT_TRUE(ini.SetString(c.section, c.key, c.value));
    EXPECT_EQ(ini.Text(), c.after) << c.before;
  }
}

TEST(IniFile, ReadsBackEveryValueThatALineCanHold) {
  IniFile ini;
  for (const std::string_view value : {"", " ", "\t a \t", "\"", "\"\"", "'", "'a'", "\"a\"", "\"a'", "[a]", ";a", "=",
                                       "a=b", "C:\\a\\", "\xE4\xFF\x80\x1A\v", " \"a", "a\" "}) {
    ASSERT_TRUE(ini.SetString("S", "k", value));
    EXPECT_EQ(ini.GetString("S", "k", "?"), value);
    IniFile again;
    again.Parse(ini.Text());
    EXPECT_EQ(again.GetString("S", "k", "?"), value);
  }
}

TEST(IniFile, RefusesWhatNoLineCanHold) {
  IniFile ini;
  ini.Parse("[S]\nk=1\n");
  using namespace std::string_view_literals;
  const struct {
    std::string_view section, key, value;
  } cases[] = {{"S", "k", "a\nb"}, {"S", "k", "a\rb"}, {"S", "k", "a\0b"sv}, {"S", "a=b", "v"},
               {"S", "[k", "v"},   {"S", ";k", "v"},   {"S", " k", "v"},     {"S", "", "v"},
               {"S]", "k", "v"},   {"S\n", "k", "v"},  {"", "k", "v"}};
  for (const auto& c : cases) EXPECT_FALSE(ini.SetString(c.section, c.key, c.value)) << c.section << '/' << c.key;
  EXPECT_EQ(ini.Text(), "[S]\nk=1\n");
}

TEST(IniFile, RemovesAKeyWhereverItStands) {
  IniFile ini;
  ini.Parse("[S]\r\nk=1\r\nm=2\r\nK=3\r\n[T]\r\nk=4\r\n[s]\r\nk=5");
  ini.Remove("S", "k");
  EXPECT_EQ(ini.Text(), "[S]\r\nm=2\r\n[T]\r\nk=4\r\n[s]\r\n");
}

TEST(IniFile, LoadsAndSavesAFile) {
  MemoryDisk disk;
  IniFile ini;
  EXPECT_TRUE(ini.Load(disk, "/a.ini"));
  EXPECT_TRUE(ini.SetInt("POS", "x", -5));
  disk.PutSymbolicLink("/link.ini", "/a.ini");
  EXPECT_TRUE(ini.Save(disk, "/link.ini"));
  EXPECT_TRUE(disk.FileNames("/") == std::vector<std::string>{"a.ini"}) << "the link stays one";
  IniFile again;
  EXPECT_TRUE(again.Load(disk, "/a.ini"));
  EXPECT_EQ(again.GetInt("POS", "x", 0), -5);
  disk.FailAt(1);
  EXPECT_FALSE(ini.Load(disk, "/a.ini"));
  EXPECT_EQ(ini.GetInt("POS", "x", 0), -5);
}

}  // namespace
}  // namespace tessaro
