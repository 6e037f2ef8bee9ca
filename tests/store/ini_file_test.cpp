#include "store/file/ini_file.h"

#include <gtest/gtest.h>

#include "platform/code_page.h"
#include "tests/support/memory_disk.h"

namespace tessaro {
namespace {

TEST(IniFile, ReadsWhatStandsInAFile) {
  IniFile ini;
  constexpr std::string_view kText = R"(; Kommentar
lose=1

[POS]
x = 10
X=20
pfad=C:\temp\neu;a,b
  text  =  " mit Rand "
einfach='x'
ungleich="x'
allein="
;x=99
leer=

kein Schlüssel
[Änderung]
k=v

[pos]
spaet=7 Tage
)"_cp;
  ini.Parse(kText);
  std::string values;
  for (const char* key : {"x", "X", "pfad", "TEXT", "einfach", "ungleich", "allein", "leer", "spaet", ";x", "", "k"})
    values += ini.GetString("pos", key, "fehlt") + '|';
  EXPECT_EQ(values, "10|10|C:\\temp\\neu;a,b| mit Rand |x|\"x'|\"||7 Tage|fehlt|fehlt|fehlt|");
  EXPECT_EQ(ini.GetString("änderung"_cp, "K"), "v");
  EXPECT_TRUE(ini.Has("POS", "leer") && !(ini.Has("POS", "lose") || ini.Has("", "lose") || ini.Has("P", "x")));
  EXPECT_TRUE(ini.GetInt("pos", "x", 5) == 10 && ini.GetInt("pos", "spaet", 5) == 7 &&
              ini.GetInt("pos", "leer", 5) == 5);
  EXPECT_EQ(ini.Text(), kText);
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
  }
}

TEST(IniFile, RefusesWhatNoLineCanHold) {
  IniFile ini;
  using namespace std::string_view_literals;
  for (const std::string_view value : {"a\nb"sv, "a\rb"sv, "a\0b"sv}) EXPECT_FALSE(ini.SetString("S", "k", value));
  for (const char* key : {"a=b", "[k", ";k", " k", ""}) EXPECT_FALSE(ini.SetString("S", key, "v")) << key;
  for (const char* section : {"S]", "S\n", ""}) EXPECT_FALSE(ini.SetString(section, "k", "v")) << section;
  EXPECT_EQ(ini.Text(), "");
}

TEST(IniFile, RemovesAKeyWhereverItStands) {
  IniFile ini;
  ini.Parse("[S]\r\nk=1\r\nm=2\r\nK=3\r\n[T]\r\nk=4\r\n[s]\r\nk=5");
  ini.Remove("S", "k");
  EXPECT_EQ(ini.Text(), "[S]\r\nm=2\r\n[T]\r\nk=4\r\n[s]\r\n");
}

TEST(IniFile, RepeatsItsChangesInAnotherTextAndListsAsAWhole) {
  IniFile ours;
  ours.Parse("[A]\nk=1\nm=1\nx=1\n[L]\n1=a\n2=b\n[M]\n1=q\n[OLD]\na=1\n; b\nc=2\n");
  EXPECT_TRUE(ours.SetString("A", "k", "1") && !ours.changed()) << "it had that value";
  ours.SetString("A", "m", "2");
  ours.SetString("N", "new", "3");
  ours.Remove("a", "X");
  ours.Remove("A", "none");
  ours.SetString("L", "1", "c");
  ours.RemoveSection("old");
  EXPECT_TRUE(ours.changed());
  IniFile theirs;
  theirs.Parse("; theirs\n[A]\nk=9\nx=1\nown=1\n[L]\n1=z\n2=y\n3=x\n[M]\n1=r\n[OLD]\na=1\nc=3\nforeign=4\n");
  ours.RepeatIn(theirs, std::array{std::string_view("L"), std::string_view("M")});
  EXPECT_EQ(theirs.Text(), "; theirs\n[A]\nk=9\nown=1\nm=2\n[L]\n1=c\n2=b\n[M]\n1=r\n[OLD]\nforeign=4\n\n[N]\nnew=3\n");
}

TEST(IniFile, LoadsAndSavesAFile) {
  MemoryDisk disk;
  IniFile ini;
  EXPECT_TRUE(ini.Load(disk, "/a.ini") && ini.SetInt("POS", "x", -5));
  disk.PutSymbolicLink("/link.ini", "/a.ini");
  EXPECT_TRUE(ini.Save(disk, "/link.ini"));
  EXPECT_TRUE(disk.FileNames("/") == std::vector<std::string>{"a.ini"}) << "the link stays one";
  ini.Remove("POS", "x");
  disk.FailAt(1);
  EXPECT_TRUE(!(ini.Load(disk, "/a.ini") || ini.Text() != "[POS]\n") && ini.Load(disk, "/a.ini"));
  EXPECT_EQ(ini.GetInt("POS", "x", 0), -5);
}

}  // namespace
}  // namespace tessaro
