#include "hypertext/media.h"

#include <fstream>

#include "hypertext/text_file.h"
#include "tests/support/memory_disk.h"
#include "tests/support/temporary_folder.h"

namespace tessaro {
namespace {

namespace fs = std::filesystem;

struct MediaFiles : testing::Test {
  const TemporaryFolder temporary;
  const fs::path& root = temporary.path();
  MediaFolders folders = {root / "kartei", root / "kartei" / "Medien"};

  void SetUp() override {
    for (const char* name : {"kartei/Bild.bmp", "kartei/\u00C4pfel.JPG", "kartei/Medien/ton.wav",
                             "kartei/Medien/BILD.BMP", "kartei/Bilder/Fl\u00FCsse/\u20AClbe.jpg", "kartei/alt\xE4.bmp",
                             "oben.bmp", "kartei/\u03A9.bmp", "C:/laufwerk.bmp"}) {
      fs::create_directories((root / name).parent_path());
      std::ofstream(root / name) << "x";
    }
    fs::current_path(root);
  }
  void TearDown() override { fs::current_path(testing::TempDir()); }
  std::string Found(std::string_view name) const {
    const auto path = FindMedia(RealDisk(), folders, name);
    return path ? path->lexically_normal().lexically_relative(root).string() : "-";
  }
};

TEST_F(MediaFiles, NamesAreFoundWithoutRegardToCaseAndInTheCodePage) {
  std::string up;
  while (up.size() < 120) up += "../";
  const std::pair<std::string, std::string> cases[] = {
      {"bILD.bMP", "kartei/Bild.bmp"},
      {"TON.WAV", "kartei/Medien/ton.wav"},
      {"\\bild.bmp", "kartei/Bild.bmp"},
      {"medien\\TON.wav", "kartei/Medien/ton.wav"},
      {"\xE4PFEL.jpg", "kartei/\u00C4pfel.JPG"},
      {"bilder\\FL\xDCSSE/\x80LBE.JPG", "kartei/Bilder/Fl\u00FCsse/\u20AClbe.jpg"},
      {"ALT\xC4.bmp", "kartei/alt\xE4.bmp"},
      {".\\..\\OBEN.bmp", "oben.bmp"},
      {"x\\.\\..\\..\\Kartei\\..\\oben.BMP", "oben.bmp"},
      {up + root.string().substr(1) + "/oben.bmp", "oben.bmp"},
      {up + up + root.string().substr(1) + "/oben.bmp", "-"},
      {(root / "oben.bmp").string(), "oben.bmp"},
      {"fehlt.bmp", "-"},
      {"bild.bmp\\x.bmp", "-"},
      {"..", "-"},
      {"C:\\oben.bmp", "-"},
      {"C:\\laufwerk.bmp", "-"},  // not the folder "C:" in the working folder
      {std::string("Bild.bmp\0.jpg", 13), "-"},
      {std::string(100000, 'x'), "-"},
  };
  for (const auto& [name, found] : cases) EXPECT_EQ(Found(name), found) << name.substr(0, 50);
}

TEST_F(MediaFiles, NamesMayBeWrittenInTheCodePageOfEitherSide) {
  folders.pages = {CodePage(CharacterSet::Cyrillic), CodePage(CharacterSet::Greek)};
  EXPECT_EQ(Found("\xD9.bmp"), "kartei/\u03A9.bmp");
  EXPECT_EQ(Found("\xE4pfel.jpg"), "kartei/\u00C4pfel.JPG") << "as before the sides got their sets";
}

TEST_F(MediaFiles, AnExactNameInTheAlternativeFolderYieldsToTheOwnFolder) {
  EXPECT_EQ(Found("BILD.BMP"), "kartei/Bild.bmp");
  folders.folder.clear();
  EXPECT_EQ(Found("bild.bmp"), "kartei/Medien/BILD.BMP");
  folders.alternative.clear();
  EXPECT_EQ(Found("bild.bmp"), "-");
}

TEST_F(MediaFiles, AFinderSeesNewFilesOnceItForgets) {
  MediaFinder finder(RealDisk(), folders);
  EXPECT_FALSE(finder.Find("NEU.bmp"));
  std::ofstream(folders.folder / "neu.bmp") << "x";
  finder.Forget();
  EXPECT_TRUE(finder.Find("NEU.bmp"));
}

// Every other spelling of a folder would be read from the disk anew.
TEST(MediaFinder, OneFolderIsReadOnceHoweverItIsSpelled) {
  struct CountingDisk : MemoryDisk {
    mutable std::vector<fs::path> read;
    std::vector<std::string> FileNames(const fs::path& folder) const override {
      read.push_back(folder);
      return {"bild.bmp"};
    }
    std::vector<std::string> FolderNames(const fs::path& /*folder*/) const override { return {"a", "kartei"}; }
  } disk;
  MediaFinder finder(disk, {"/a/kartei", "/a/kartei/Medien"});
  for (const char* name : {"BILD.bmp", "./BILD.bmp", "..\\kartei\\BILD.bmp", "x/../BILD.bmp", "Medien/../y/../BILD.bmp",
                           "..\\..\\a\\kartei\\BILD.bmp"})
    EXPECT_TRUE(finder.Find(name)) << name;
  EXPECT_EQ(disk.read, (std::vector<fs::path>{"/a/kartei", "/a", "/"}));
}

TEST(MediaDirective, NamesEndAtBracketsBlanksOrTheMarker) {
  // The side, and the name in it with "+" when the text is shown first.
  const std::tuple<MediaKind, std::string, std::string> cases[] = {
      {MediaKind::Picture, "<#SHOW:bild.bmp+ (Pluszeichen l\xF6schen = Grafik zuerst anzeigen)>", "bild.bmp +"},
      {MediaKind::Picture, "x<#SHOW:bild.JPG (..)>", "bild.JPG"},
      {MediaKind::Picture, "#SHOW:bild.bmp+2.bmp", "bild.bmp +"},
      {MediaKind::Picture, "#SHOW:a.bmp #SHOW:b.bmp+", "a.bmp"},
      {MediaKind::Picture, "#SHOW:bild\r\n.bmp", "bild"},
      {MediaKind::Picture, "#SHOW:bild.Bmp", "-"},
      {MediaKind::Picture, "#SHOW:bild.gif .jpg", "bild.gif"},
      {MediaKind::Picture, "#SHOW: bild.bmp", "-"},
      {MediaKind::Picture, "#SHOW:+ .bmp", "-"},
      {MediaKind::Video, "<#PLAY:film.mpeg>.mpg", "film.mpeg"},
      {MediaKind::Sound, "#WAVE:ton.mid<br>", "ton.mid"},
      {MediaKind::Text, "<#TEXT:notiz.txt (.rtf! Ausrufezeichen anf\xFCgen = Text zuerst anzeigen)>", "notiz.txt +"},
      {MediaKind::Text, "#TEXT:notiz.txt+", "notiz.txt +"},
  };
  for (const auto& [kind, side, directive] : cases) {
    const auto found = FindDirective(side, kind);
    EXPECT_EQ(found ? found->name + (found->text_first ? " +" : "") : "-", directive) << side;
  }
}

// Files, and the text that is read in each of them.
void Check(const std::vector<std::pair<std::string, std::string>>& cases) {
  for (const auto& [file, text] : cases) EXPECT_EQ(ReadableText(file), text) << file;
}

TEST(TextFile, PlainTextIsReadInTheEncodingItIsIn) {
  Check({
      {"gr\xFC\xDF \x80", "grüß €"},
      {"grüß €\r\n", "grüß €\r\n"},
      {"\xEF\xBB\xBFgrüß", "grüß"},
      {std::string("\xFF\xFE\xFC\x00\x3D\xD8\x00\xDE!", 9), "ü😀"},
      {std::string("\xFE\xFF\x00\xFC", 4), "ü"},
      {"ü\xC0\xAF", "Ã¼À¯"},  // an overlong form is no UTF-8
      {"\xC3(", "Ã("},
  });
}

// However a text is cut, what is left of it is still read in its encoding.
TEST(TextFile, ACutBeginningLosesTheLetterItWasCutIn) {
  const std::pair<std::string, size_t> cases[] = {{"abc", 3},
                                                  {"", 0},
                                                  {"gr\xC3", 2},
                                                  {"gr\xC3\xBC", 4},
                                                  {"\xE2\x82", 0},
                                                  {"x\xF0\x9F\x98", 1},
                                                  {"x\xF0\x9F\x98\x80", 5},
                                                  {"\xBC\xBC\xBC\xBC\xBC\xBC", 6},
                                                  {std::string("\xFF\xFE\xFC\0!", 5), 4}};
  for (const auto& [text, whole] : cases) EXPECT_EQ(WholeLetters(text).size(), whole) << text;
}

TEST(TextFile, RichTextIsReducedToItsLetters) {
  Check({
      {R"({\rtf1\ansi{\fonttbl{\f0\fswiss Arial;}}{\colortbl;\red0\green0\blue0;}\pard\f0\fs24 Guten \b Tag\b0 !\par
Zeile\line zwei\tab x\cell\row})",
       "Guten Tag!\nZeile\nzwei\tx\t\n"},
      {R"({\rtf1 gr\'fc\'DF \'80\'aA\~\{a\\b\}\_c\-d})", "grüß €ª\u00A0{a\\b}-cd"},
      {R"({\rtf1\uc1 \u937?\u-10179?\u-8704?x {\uc2\u228\'61\'65y}\u228?z})", "Ω😀x äyäz"},
      {R"({\rtf1{\*\generator Editor;}{\info{\title T}}{\pict\bin5 }}}}}x}y)", "y"},
      {R"({\rtf1\pict\bin999999999999 x)", ""},
      {"{\\rtf1 a\r\nb\\\r\nc\\", "ab\nc"},
      {R"({\rtf1 \'4\'zzx}}}} y)", "'zzx y"},
  });
}

}  // namespace
}  // namespace tessaro
