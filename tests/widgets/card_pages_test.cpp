#include "widgets/card_pages.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTemporaryDir>
#include <fstream>
#include <string>

#include "widgets/video_screen.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

class CardPagesTest : public testing::Test {
 protected:
  CardPagesTest() {
    QImage(20, 10, QImage::Format_RGB32).save(folder.filePath(u"bild.bmp"_s));
    for (const char* name : {"kaputt.jpg", "notiz.txt", "ton.wav", "film.avi"}) {
      std::ofstream(folder.path().toStdString() + '/' + name) << "Gruß";
    }
    pages.SetMediaFolders({folder.path().toStdString(), {}});
  }
  void ShowSide(const std::string& side) { pages.ShowSide(side, {QFont(), Qt::black, Qt::white}); }
  // The titles of the pages that are offered, the one in front in brackets.
  QString Offered() {
    QStringList titles;
    for (int page = 0; page < pages.count(); ++page) {
      if (!pages.isTabVisible(page)) continue;
      titles += page == pages.currentIndex() ? u"[%1]"_s.arg(pages.tabText(page)) : pages.tabText(page);
    }
    return titles.join(u' ');
  }

  QTemporaryDir folder;
  CardPages pages;
};

TEST_F(CardPagesTest, OffersThePagesThatTheSideHasUseFor) {
  const std::pair<const char*, QString> cases[] = {
      {"nur Text", u"[HTML]"_s},
      {"<#SHOW:bild.bmp>", u"Text [Grafik] HTML"_s},
      {"<#SHOW:bild.bmp+ (Pluszeichen)>", u"Text Grafik [HTML]"_s},
      {"<#SHOW:kaputt.jpg>", u"[HTML]"_s},
      {"<#TEXT:notiz.txt!>", u"Text [Text +] HTML"_s},
      {"<#PLAY:film.avi+>", u"Text Video [HTML]"_s},
      {"<#WAVE:ton.wav+>", u"Text Ton [HTML]"_s},
      {"<#SHOW:bild.bmp+><#PLAY:film.avi>", u"Text Grafik [Video] HTML"_s},
      {"wieder nur Text", u"[HTML]"_s},
  };
  const QSignalSpy failed(&pages, &CardPages::PictureFailed);
  for (const auto& [side, offered] : cases) {
    ShowSide(side);
    EXPECT_EQ(Offered(), offered) << side;
    EXPECT_EQ(pages.tabBar()->isVisibleTo(&pages), offered.contains(u' ')) << side;
  }
  EXPECT_EQ(failed.count(), 1) << "the picture that cannot be read";
}

TEST_F(CardPagesTest, TextPagesShowWhatAPersonReads) {
  ShowSide("<b>Eins</b> und <a href=\"1\">zwei</a><br>drei &lt;<#TEXT:notiz.txt>");
  EXPECT_EQ(pages.findChild<QPlainTextEdit*>(u"Text"_s)->toPlainText(), u"Eins und zwei\ndrei <"_s);
  EXPECT_EQ(pages.findChild<QPlainTextEdit*>(u"TextPlus"_s)->toPlainText(), u"Gruß"_s);
}

TEST_F(CardPagesTest, ASoundWithThePlusIsPlayedOnRequest) {
  QSignalSpy wanted(&pages, &CardPages::SoundWanted);
  ShowSide("<#WAVE:ton.wav+>");
  EXPECT_EQ(wanted.count(), 0);
  pages.findChild<QPushButton*>(u"ButtonTon"_s)->click();
  ShowSide("<#WAVE:ton.wav>");
  EXPECT_EQ(wanted, QList<QVariantList>({{folder.filePath(u"ton.wav"_s)}, {folder.filePath(u"ton.wav"_s)}}));
}

TEST_F(CardPagesTest, NothingOfTheVideoBeforeStaysOnTheNextSide) {
  qRegisterMetaType<VideoScreen*>();
  QSignalSpy wanted(&pages, &CardPages::VideoWanted);
  pages.resize(400, 300);
  pages.show();
  ShowSide("<#PLAY:film.avi>");
  ASSERT_EQ(wanted.count(), 1);
  auto* screen = wanted[0][1].value<VideoScreen*>();
  const auto shown = [screen] { return screen->grab().toImage().pixel(screen->rect().center()); };
  QImage frame(8, 8, QImage::Format_RGB32);
  frame.fill(Qt::red);
  screen->ShowFrame(frame);
  ASSERT_EQ(shown(), qRgb(255, 0, 0));
  ShowSide("<#PLAY:film.avi+>");
  EXPECT_EQ(shown(), qRgb(0, 0, 0));
}

}  // namespace
}  // namespace tessaro
