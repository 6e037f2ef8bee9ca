#include "print/dlprint.h"

#include <QPrinter>
#include <QScrollBar>
#include <QShortcut>
#include <QStandardItemModel>
#include <algorithm>
#include <array>
#include <utility>

#include "settings/kept_place.h"
#include "settings/keys.h"
#include "settings/side_settings.h"
#include "ui_dlprint.h"
#include "widgets/count_texts.h"
#include "widgets/icons.h"
#include "widgets/long_work.h"
#include "widgets/side_look.h"
#include "widgets/text.h"
#include "widgets/window_place.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr double kListMargin = 15;  // millimetres
constexpr double kEmptyEdge = 8;    // printers leave less free
constexpr int kSliceMilliseconds = 8;
constexpr int kLettersBeside = 40;  // the width of what is beside the preview

struct Grid {
  int columns;
  int rows;
};
constexpr std::array kGrids = {Grid{2, 2}, Grid{2, 4}, Grid{2, 5}, Grid{4, 5}};

constexpr std::array kPaper = {QPageSize::A3, QPageSize::A4, QPageSize::A5, QPageSize::A6, QPageSize::Letter};

struct ChoiceText {
  CardChoice choice;
  const char16_t* text;
  const char16_t* missing;  // why there are none
};
constexpr std::array kChoosable = {
    ChoiceText{CardChoice::All, u"Alle Karten", u""},
    ChoiceText{CardChoice::Found, u"Gefundene Karten", u"Suchen Sie zuerst im Karteneditor"},
    ChoiceText{CardChoice::Due, u"Fällige Karten", u""},
    ChoiceText{CardChoice::Marked, u"Markierte Karten", u"Markieren Sie zuerst Karten in der Übersichtstabelle"},
    ChoiceText{CardChoice::Shown, u"Diese Karte", u"Drucken Sie dazu aus dem Karteneditor oder dem Lernfenster"},
};

QString PagesText(int pages) {
  return pages == 1 ? u"eine Seite"_s : u"%1 Seiten"_s.arg(NumberText(pages));
}

}  // namespace

TF_dlprint::TF_dlprint(const PrintTies& ties, CardOffer offer, CardChoice first, QWidget* parent)
    : QDialog(parent),
      ties_(ties),
      offer_(std::move(offer)),
      ui_(std::make_unique<Ui::TF_dlprint>()),
      printer_(std::make_unique<QPrinter>(QPrinter::HighResolution)) {
  ui_->setupUi(this);
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  FillBoxes(first);
  ConnectControls();
  ui_->LabelSeite->setMinimumWidth(fontMetrics().horizontalAdvance(u"Seite 000 von 000, Vorderseiten"_s));
  ui_->Wahl->setFixedWidth(
      std::max(ui_->Felder->sizeHint().width(), fontMetrics().averageCharWidth() * kLettersBeside));
  RestoreWindowPlace(*this, ties_.settings.ini, place_suffix::kPrinting);
  ChooseCards();
}

TF_dlprint::~TF_dlprint() = default;

void TF_dlprint::FillBoxes(CardChoice first) {
  const IniFile& settings = ties_.settings.ini;
  auto* model = qobject_cast<QStandardItemModel*>(ui_->ComboBoxKarten->model());
  for (const ChoiceText& choice : kChoosable) {
    auto* item = new QStandardItem(QString::fromUtf16(choice.text));
    item->setEnabled(offer_.Has(choice.choice));
    if (!item->isEnabled()) item->setToolTip(QString::fromUtf16(choice.missing));
    model->appendRow(item);
  }
  auto choice = static_cast<CardChoice>(keys::kPrintCards.Read(settings));
  if (first != CardChoice::All) choice = first;
  if (!offer_.Has(choice)) choice = CardChoice::All;
  ui_->ComboBoxKarten->setCurrentIndex(static_cast<int>(choice));
  ui_->CheckBoxNavigation->setChecked(keys::kPrintNavigation.Read(settings));
  ui_->ComboBoxForm->setCurrentIndex(static_cast<int>(keys::kPrintForm.Read(settings)));
  ui_->ComboBoxSeiten->setCurrentIndex(static_cast<int>(keys::kPrintSides.Read(settings)));
  ui_->SpinBoxSchrift->setValue(static_cast<int>(keys::kPrintPercent.Read(settings)));
  ui_->CheckBoxBreit->setChecked(keys::kPreviewWide.Read(settings));
  ui_->Blatt->SetWide(ui_->CheckBoxBreit->isChecked());
  const QPageLayout page = printer_->pageLayout();
  for (const QPageSize::PageSizeId size : kPaper) ui_->ComboBoxFormat->addItem(QPageSize::name(size), size);
  const QPageSize::PageSizeId own = page.pageSize().id();
  if (ui_->ComboBoxFormat->findData(own) < 0) ui_->ComboBoxFormat->addItem(page.pageSize().name(), own);
  ui_->ComboBoxFormat->setCurrentIndex(ui_->ComboBoxFormat->findData(own));
  ui_->CheckBoxQuer->setChecked(page.orientation() == QPageLayout::Landscape);
  ShowGrids();
  ui_->ComboBoxBlatt->setCurrentIndex(static_cast<int>(keys::kPrintGrid.Read(settings)));
}

// The sizes that the cards have on this paper.
void TF_dlprint::ShowGrids() {
  const QSizeF paper = PageLayout().fullRect(QPageLayout::Millimeter).size();
  const int chosen = ui_->ComboBoxBlatt->currentIndex();
  const QSignalBlocker quiet(ui_->ComboBoxBlatt);
  ui_->ComboBoxBlatt->clear();
  for (Grid grid : kGrids) {
    const int cells = grid.columns * grid.rows;
    if (paper.width() > paper.height()) std::swap(grid.columns, grid.rows);
    const auto part = [](double length, int parts) { return qRound((length - 2 * kEmptyEdge) / parts); };
    ui_->ComboBoxBlatt->addItem(u"%1 zu je %2 × %3 mm"_s.arg(cells)
                                    .arg(part(paper.width(), grid.columns))
                                    .arg(part(paper.height(), grid.rows)));
  }
  ui_->ComboBoxBlatt->setCurrentIndex(chosen);
}

void TF_dlprint::ConnectControls() {
  for (QComboBox* box : {ui_->ComboBoxForm, ui_->ComboBoxBlatt, ui_->ComboBoxSeiten}) {
    connect(box, &QComboBox::currentIndexChanged, this, &TF_dlprint::MakePages);
  }
  connect(ui_->ComboBoxKarten, &QComboBox::currentIndexChanged, this, &TF_dlprint::ChooseCards);
  connect(ui_->CheckBoxNavigation, &QCheckBox::toggled, this, &TF_dlprint::ChooseCards);
  connect(ui_->SpinBoxSchrift, &QSpinBox::valueChanged, this, &TF_dlprint::MakePages);
  const auto change_paper = [this] {
    ShowGrids();
    MakePages();
  };
  connect(ui_->ComboBoxFormat, &QComboBox::currentIndexChanged, this, change_paper);
  connect(ui_->CheckBoxQuer, &QCheckBox::toggled, this, change_paper);
  connect(ui_->CheckBoxBreit, &QCheckBox::toggled, ui_->Blatt, &PageView::SetWide);
  const auto dress = [this](QToolButton* button, const char* icon, auto act) {
    button->setIcon(Icon(icon));
    button->setAutoRaise(true);
    connect(button, &QAbstractButton::clicked, this, act);
  };
  dress(ui_->ButtonErste, "first", [this] { GoTo(0); });
  dress(ui_->ButtonVorige, "previous", [this] { GoTo(ui_->Blatt->page() - 1); });
  dress(ui_->ButtonNaechste, "following", [this] { GoTo(ui_->Blatt->page() + 1); });
  dress(ui_->ButtonLetzte, "last", [this] { GoToEnd(); });
  connect(ui_->BitBtnDrucken, &QAbstractButton::clicked, this, &TF_dlprint::BitBtnDruckenClick);
  connect(ui_->BitBtnPdf, &QAbstractButton::clicked, this, &TF_dlprint::BitBtnPdfClick);
  connect(ui_->BitBtnClose, &QAbstractButton::clicked, this, &QDialog::reject);
  const auto on = [this](const QKeySequence& keys, auto act) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, act);
  };
  on(QKeySequence::Save, [this] { BitBtnPdfClick(); });
  on(QKeySequence::Print, [this] { BitBtnDruckenClick(); });
  on(Qt::Key_PageUp, [this] { Leaf(-1); });
  on(Qt::Key_PageDown, [this] { Leaf(1); });
  on(Qt::CTRL | Qt::Key_Home, [this] { GoTo(0); });
  on(Qt::CTRL | Qt::Key_End, [this] { GoToEnd(); });
  connect(&counting_, &QTimer::timeout, this, &TF_dlprint::CountPages);
}

CardChoice TF_dlprint::Choice() const {
  return static_cast<CardChoice>(ui_->ComboBoxKarten->currentIndex());
}

QPageLayout TF_dlprint::PageLayout() const {
  QPageLayout page = printer_->pageLayout();
  page.setMode(QPageLayout::FullPageMode);
  page.setPageSize(QPageSize(static_cast<QPageSize::PageSizeId>(ui_->ComboBoxFormat->currentData().toInt())));
  page.setOrientation(ui_->CheckBoxQuer->isChecked() ? QPageLayout::Landscape : QPageLayout::Portrait);
  return page;
}

PrintOrder TF_dlprint::Order(const QPageLayout& page) const {
  PrintOrder order;
  order.form = static_cast<PrintForm>(ui_->ComboBoxForm->currentIndex());
  order.sides = static_cast<PrintSides>(ui_->ComboBoxSeiten->currentIndex());
  const Grid grid = kGrids[static_cast<size_t>(std::max(ui_->ComboBoxBlatt->currentIndex(), 0))];
  order.columns = grid.columns;
  order.rows = grid.rows;
  order.percent = ui_->SpinBoxSchrift->value();
  order.paper = PaperOf(page);
  order.margin = PixelsOf(order.form == PrintForm::Cards ? kEmptyEdge : kListMargin);
  order.title = FromPath(ties_.file.paths().cards.stem());
  return order;
}

PrintSource TF_dlprint::Source() const {
  const CardReader cards(ties_.file);
  const IniFile& settings = ties_.file.settings();
  return {.cards = static_cast<int>(rows_.size()),
          .side = [this, cards](int card, SideName side) { return cards.Side(rows_[static_cast<size_t>(card)], side); },
          .front = ReadSideLook(settings, SideName::Front),
          .back = ReadSideLook(settings, SideName::Back),
          .folders = FoldersOf(ties_.file.paths().cards, keys::kMediaFolder.Read(ties_.settings.ini),
                               ReadCodePages(ties_.file.settings()))};
}

void TF_dlprint::ChooseCards() {
  const DueAt at = {ReadParameters(ties_.settings.ini), ties_.clock.Now()};
  std::optional<std::vector<int>> rows;
  {
    LongWork work(this, ties_.clock);
    work.AllowCancel();
    work.NextStage(u"Karten auswählen"_s, ties_.file.cards().RowCount());
    rows = ChosenCards(ties_.file, Choice(), offer_, ui_->CheckBoxNavigation->isChecked(), at,
                       [&work](int row) { return work.GoesOn(row); });
  }
  none_ = rows ? u"Es gibt keine solche Karte."_s : u"Die Auswahl wurde abgebrochen."_s;
  rows_ = std::move(rows).value_or(std::vector<int>());
  MakePages();
}

void TF_dlprint::MakePages() {
  told_.clear();
  ui_->Blatt->ShowPages(nullptr);
  pages_ = std::make_unique<PrintedPages>(Source(), Order(PageLayout()));
  ui_->Blatt->ShowPages(pages_.get());
  ui_->Rahmen->verticalScrollBar()->setValue(0);
  ShowControls();
  ShowSentence();
  GoTo(0);
  counting_.start(0);
}

void TF_dlprint::ShowControls() {
  const PrintForm form = pages_->order().form;
  ui_->ComboBoxBlatt->setEnabled(form == PrintForm::Cards);
  ui_->ComboBoxSeiten->setEnabled(form != PrintForm::List);
  ui_->CheckBoxNavigation->setEnabled(Choice() == CardChoice::All || Choice() == CardChoice::Found);
  ui_->BitBtnDrucken->setEnabled(!rows_.empty());
  ui_->BitBtnPdf->setEnabled(!rows_.empty());
}

void TF_dlprint::ShowSentence() {
  static constexpr std::array kSentences = {
      u"Vorder- und Rückseite stehen nebeneinander. Was zu breit ist, wird verkleinert; wo auch dann etwas "
      u"fehlt, zeigt es eine schwarze Ecke.",
      u"Erst kommt eine Seite mit Vorderseiten, dann eine mit ihren Rückseiten; beidseitig über die lange Kante "
      u"gedruckt, liegen sie hintereinander. Was zu lang ist, wird verkleinert, bis auf 6 Punkt; was auch dann keinen "
      u"Platz hat, fehlt, und eine schwarze Ecke zeigt das an.",
      u"Jede Seite steht auf einem eigenen Blatt, so groß es geht. Was zu lang ist, geht auf dem nächsten weiter."};
  const QString sentence = QString::fromUtf16(kSentences[static_cast<size_t>(pages_->order().form)]);
  ui_->LabelSatz->setText(rows_.empty() ? none_ : sentence);
  ui_->LabelSatz->setMinimumHeight(ui_->LabelSatz->heightForWidth(ui_->Wahl->width()));
}

void TF_dlprint::GoTo(int page) {
  while (pages_->Count() <= page && pages_->FindPage()) continue;
  ui_->Blatt->ShowPage(std::clamp(page, 0, std::max(pages_->Count() - 1, 0)));
  ShowPosition();
}

// First over the page that is shown, where it is scrolled, then to the next one.
void TF_dlprint::Leaf(int direction) {
  QScrollBar& bar = *ui_->Rahmen->verticalScrollBar();
  if (direction > 0 ? bar.value() < bar.maximum() : bar.value() > bar.minimum()) {
    return bar.setValue(bar.value() + direction * bar.pageStep());
  }
  const int before = ui_->Blatt->page();
  GoTo(before + direction);
  if (ui_->Blatt->page() != before) bar.setValue(direction > 0 ? bar.minimum() : bar.maximum());
}

void TF_dlprint::GoToEnd() {
  {
    LongWork work(this, ties_.clock);
    work.AllowCancel();
    work.NextStage(u"Seiten einteilen"_s, static_cast<int64_t>(rows_.size()));
    while (!pages_->AllKnown() && work.GoesOn(pages_->CardsBefore(pages_->Count() - 1)) && pages_->FindPage()) continue;
  }
  GoTo(pages_->Count() - 1);
}

void TF_dlprint::ShowPosition() {
  const int count = pages_->Count();
  const int page = ui_->Blatt->page();
  const QString number = NumberText(page + 1);
  const QString all = NumberText(count);
  QString place = (pages_->AllKnown() ? u"Seite %1 von %2"_s : u"Seite %1 von mehr als %2"_s).arg(number, all);
  if (pages_->order().form == PrintForm::Cards && pages_->order().sides == PrintSides::Both) {
    place += page % 2 == 0 ? u", Vorderseiten"_s : u", Rückseiten"_s;
  }
  ui_->LabelSeite->setText(count == 0 ? QString() : place);
  for (QWidget* button : {ui_->ButtonErste, ui_->ButtonVorige}) button->setEnabled(page > 0);
  const bool more = page + 1 < count || !pages_->AllKnown();
  for (QWidget* button : {ui_->ButtonNaechste, ui_->ButtonLetzte}) button->setEnabled(more);
  const QString cards = CardsText(static_cast<int64_t>(rows_.size()));
  if (!told_.isEmpty()) return ui_->LabelStand->setText(told_);
  ui_->LabelStand->setText(rows_.empty() || !pages_->AllKnown() ? cards : u"%1 auf %2"_s.arg(cards, PagesText(count)));
}

// A few milliseconds at a time, beside what the user does.
void TF_dlprint::CountPages() {
  if (LongWork::Running()) return;
  const int64_t begun = ties_.clock.Milliseconds();
  bool more = true;
  while (more && ties_.clock.Milliseconds() - begun < kSliceMilliseconds) more = pages_->FindPage();
  if (!more) counting_.stop();
  ShowPosition();
}

void TF_dlprint::Keep() {
  IniFile& settings = ties_.settings.ini;
  keys::kPrintCards.Write(ui_->ComboBoxKarten->currentIndex(), settings);
  keys::kPrintForm.Write(ui_->ComboBoxForm->currentIndex(), settings);
  keys::kPrintSides.Write(ui_->ComboBoxSeiten->currentIndex(), settings);
  keys::kPrintGrid.Write(ui_->ComboBoxBlatt->currentIndex(), settings);
  keys::kPrintPercent.Write(ui_->SpinBoxSchrift->value(), settings);
  keys::kPrintNavigation.Write(ui_->CheckBoxNavigation->isChecked(), settings);
  keys::kPreviewWide.Write(ui_->CheckBoxBreit->isChecked(), settings);
  KeepWindowPlace(*this, settings, place_suffix::kPrinting);
}

void TF_dlprint::done(int result) {
  if (LongWork::Running()) return;
  counting_.stop();
  Keep();
  QDialog::done(result);
}

}  // namespace tessaro
