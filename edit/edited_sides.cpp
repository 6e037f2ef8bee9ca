#include "edit/edited_sides.h"

#include <QLabel>
#include <QScrollBar>

#include "edit/side_field.h"
#include "platform/clock.h"
#include "settings/keys.h"
#include "settings/program_settings.h"
#include "settings/side_settings.h"
#include "store/file/card_file.h"
#include "ui_wned.h"
#include "widgets/side_look.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr int kLongPreview = 10;  // milliseconds; one that takes longer waits for a pause in the typing
constexpr int kPreviewDelay = 25;
constexpr int kWideForBoth = 760;  // pixels

}  // namespace

EditedSides::EditedSides(const Ui::TF_wned& ui, const Clock& clock)
    : clock_(clock),
      views_{{{ui.Vorne, ui.TitelVorne, ui.RichEditKarteVorne, ui.TFrameHtmlV},
              {ui.Hinten, ui.TitelHinten, ui.RichEditKarteHinten, ui.TFrameHtmlH}}},
      tabs_(*ui.PageControlKarte) {
  tabs_.addTab(u"Vorderseite"_s);
  tabs_.addTab(u"Rückseite"_s);
  tabs_.setExpanding(false);
  tabs_.setFocusPolicy(Qt::NoFocus);
  preview_timer_.setSingleShot(true);
  connect(&preview_timer_, &QTimer::timeout, this, &EditedSides::ShowPreview);
  Connect(EditSide::Front);
  Connect(EditSide::Back);
  connect(&tabs_, &QTabBar::currentChanged, this, [this](int page) {
    const EditSide side = page == 0 ? EditSide::Front : EditSide::Back;
    if (side != active_) Activate(side);
  });
}

void EditedSides::Connect(EditSide side) {
  const SideField* text = &field(side);
  connect(text, &SideField::SideChanged, this, [this] {
    preview_timer_.start();
    Q_EMIT Typed();
  });
  connect(text, &SideField::FocusTaken, this, [this, side] { Activate(side); });
  connect(text, &SideField::ForeignLeftOut, this, &EditedSides::ForeignLeftOut);
  connect(text, &SideField::FilesDropped, this, [this, side](const QStringList& paths) {
    Activate(side);
    Q_EMIT FilesDropped(paths);
  });
  connect(text, &SideField::PicturePasted, this, [this, side](const QImage& picture) {
    Activate(side);
    Q_EMIT PicturePasted(picture);
  });
  connect(views_[Index(side)].frame, &TFrameHtml::LinkClicked, this, &EditedSides::LinkClicked);
}

void EditedSides::Activate(EditSide side) {
  active_ = side;
  tabs_.setCurrentIndex(static_cast<int>(Index(side)));
  ShowPanes();
  for (const EditSide one : {EditSide::Front, EditSide::Back}) {
    QLabel& title = *views_[Index(one)].title;
    QFont font = title.font();
    font.setBold(one == side);
    title.setFont(font);
  }
  Q_EMIT Activated();
}

void EditedSides::TurnOver() {
  Activate(active_ == EditSide::Front ? EditSide::Back : EditSide::Front);
  active_field().setFocus();
}

void EditedSides::Fit(int room) {
  both_ = room >= kWideForBoth;
  ShowPanes();
}

void EditedSides::ShowPanes() {
  tabs_.setVisible(!both_);
  for (const EditSide side : {EditSide::Front, EditSide::Back}) {
    views_[Index(side)].pane->setVisible(both_ || side == active_);
    views_[Index(side)].title->setVisible(both_);
  }
}

void EditedSides::ReadLooks(const CardFile& file, const ProgramSettings& settings) {
  // The window hears of other colours before what stands in it.
  const QPalette& colours = views_.front().frame->window()->palette();
  for (const EditSide side : {EditSide::Front, EditSide::Back}) {
    const SideName name = side == EditSide::Front ? SideName::Front : SideName::Back;
    looks_[Index(side)] = LookOnScreen(file.settings(), settings.ini, name, colours);
    field(side).SetCodePage(looks_[Index(side)].page);
  }
  const MediaFolders folders =
      FoldersOf(file.paths().cards, keys::kMediaFolder.Read(settings.ini), ReadCodePages(file.settings()));
  for (const View& view : views_) view.frame->SetMediaFolders(folders);
}

void EditedSides::ShowLooks(bool marked, bool read_only) {
  for (const EditSide side : {EditSide::Front, EditSide::Back}) {
    QFont font = looks_[Index(side)].font;
    font.setStrikeOut(marked);
    field(side).setFont(font);
    field(side).setReadOnly(read_only);
  }
}

void EditedSides::SetLinkColours(const std::function<ColourClass(int64_t card_id)>& colours) {
  for (const View& view : views_) view.frame->SetLinkColours(colours);
}

void EditedSides::ShowPreview() {
  const int64_t begin = clock_.Milliseconds();
  for (const EditSide side : {EditSide::Front, EditSide::Back}) {
    TFrameHtml& frame = *views_[Index(side)].frame;
    const int at = frame.verticalScrollBar()->value();
    frame.ShowSide(field(side).Side(), looks_[Index(side)]);
    frame.verticalScrollBar()->setValue(at);
  }
  preview_timer_.setInterval(clock_.Milliseconds() - begin > kLongPreview ? kPreviewDelay : 0);
}

void EditedSides::ScrollPreviewToTop() {
  for (const View& view : views_) view.frame->verticalScrollBar()->setValue(0);
}

}  // namespace tessaro
