#include "edit/autolink.h"

#include <QBuffer>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "cards/card_reader.h"
#include "edit/card_work.h"
#include "edit/ed_texts.h"
#include "edit/media_names.h"
#include "edit/topics.h"
#include "ui_autolink.h"
#include "widgets/scroll_pages.h"
#include "widgets/text.h"

using namespace Qt::StringLiterals;

namespace tessaro {
namespace {

constexpr auto kSection = "AUTOLINK";

// A small card, or several behind each other, on white, which pictures of this kind show as nothing.
QByteArray DrawSymbol(int cards) {
  constexpr int kSize = 24;
  QImage image(kSize, kSize, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  for (int card = cards - 1; card >= 0; --card) {
    const QRect paper(2 + card * 3, 8 - card * 3 + (cards == 1 ? -2 : 2), 14, 11);
    painter.fillRect(paper, QColor(255, 252, 230));
    painter.setPen(QColor(90, 90, 90));
    painter.drawRect(paper);
    painter.setPen(QColor(60, 110, 180));
    painter.drawLine(paper.left() + 3, paper.top() + 4, paper.right() - 2, paper.top() + 4);
    painter.drawLine(paper.left() + 3, paper.top() + 7, paper.right() - 5, paper.top() + 7);
  }
  painter.end();
  QByteArray bytes;
  QBuffer buffer(&bytes);
  image.save(&buffer, "BMP");
  return bytes;
}

}  // namespace

TF_autolink::TF_autolink(CardFile& file, CommandStack& commands, const OverviewMachine& machine, int row,
                         QWidget* parent)
    : QDialog(parent),
      file_(file),
      commands_(commands),
      machine_(machine),
      row_(row),
      ui_(std::make_unique<Ui::TF_autolink>()) {
  ui_->setupUi(this);
  const IniFile& settings = machine_.settings.ini;
  ui_->EditGruppe->setText(FromBytes(settings.GetString(kSection, "Gruppe", "oo")));
  ui_->EditEinzel->setText(FromBytes(settings.GetString(kSection, "Einzel", "o")));
  ui_->BitBtnTransfer->setEnabled(HasOldTopics(file_.settings()));
  if (!ui_->BitBtnTransfer->isEnabled()) {
    ui_->BitBtnTransfer->setToolTip(u"Diese Kartei hat keine alten Themen (Abschnitt TOPIC ihrer Einstellungen)"_s);
  }
  ShowTopics();
  // All of it is to be seen where the screen has room; else it scrolls up and down.
  const int content = ui_->Rollinhalt->minimumSizeHint().width();
  ui_->Rollfeld->setMinimumWidth(content + ui_->Rollfeld->verticalScrollBar()->sizeHint().width());
  const int rest = sizeHint().height() - ui_->Rollfeld->sizeHint().height();
  resize(width(), rest + ui_->Rollinhalt->heightForWidth(std::max(content, width() - 40)));
  FitToScreen(*this);
  connect(ui_->BitBtnGruppe, &QAbstractButton::clicked, this, [this] { ChooseSymbol(*ui_->EditGruppe); });
  connect(ui_->BitBtnEinzel, &QAbstractButton::clicked, this, [this] { ChooseSymbol(*ui_->EditEinzel); });
  connect(ui_->BitBtnSymbols, &QAbstractButton::clicked, this, &TF_autolink::UseStandardSymbols);
  connect(ui_->BitBtnVisualMap, &QAbstractButton::clicked, this, &TF_autolink::BitBtnVisualMapClick);
  connect(ui_->BitBtnTopicListe, &QAbstractButton::clicked, this, [this] {
    ShowTopics();
    ui_->StatusPanel->setText(u"%1 bearbeitet"_s.arg(file_.CardCount()));
  });
  connect(ui_->BitBtnTransfer, &QAbstractButton::clicked, this, &TF_autolink::BitBtnTransferClick);
  connect(ui_->BitBtnAutoThema, &QAbstractButton::clicked, this, &TF_autolink::BitBtnAutoThemaClick);
  connect(ui_->BitBtnClose, &QAbstractButton::clicked, this, &QDialog::accept);
}

TF_autolink::~TF_autolink() = default;

QString TF_autolink::told() const {
  return ui_->StatusPanel->text();
}

OverviewSymbols TF_autolink::Symbols() const {
  return {ToBytes(ui_->EditEinzel->text()).value_or(""), ToBytes(ui_->EditGruppe->text()).value_or("")};
}

bool TF_autolink::SymbolsFit() {
  const OverviewSymbols symbols = Symbols();
  const auto fits = [](const std::string& symbol) {
    return !symbol.empty() && symbol.find_first_of("<>\"") == std::string::npos;
  };
  if (!fits(symbols.single) || !fits(symbols.group)) {
    ui_->StatusPanel->setText(
        u"Bitte für beide Symbole Zeichen oder eine Bilddatei angeben, ohne < > und "
        u"Anführungszeichen"_s);
    return false;
  }
  machine_.settings.ini.SetString(kSection, "Gruppe", symbols.group);
  machine_.settings.ini.SetString(kSection, "Einzel", symbols.single);
  return true;
}

void TF_autolink::ChooseSymbol(QLineEdit& edit) {
  const std::filesystem::path folder = file_.paths().cards.parent_path();
  const QString chosen =
      machine_.messages.ChooseFileToOpen(this, u"Symbol wählen"_s, FromPath(folder), PictureFilter());
  if (chosen.isEmpty()) return;
  const auto name = RelativeMediaName({folder, {}}, ToPath(chosen));
  edit.setText(name ? FromBytes(*name) : chosen);
}

void TF_autolink::UseStandardSymbols() {
  const std::filesystem::path folder = file_.paths().cards.parent_path();
  for (const auto& [name, cards] : {std::pair("card.bmp", 1), {"cards.bmp", 3}}) {
    const QByteArray bytes = DrawSymbol(cards);
    if (machine_.disk.Exists(folder / name)) continue;
    if (!WriteNewFile(machine_.disk, folder / name, {bytes.constData(), static_cast<size_t>(bytes.size())})) {
      return ui_->StatusPanel->setText(u"Die Symbole konnten nicht neben die Kartei geschrieben werden"_s);
    }
  }
  ui_->EditEinzel->setText(u"card.bmp"_s);
  ui_->EditGruppe->setText(u"cards.bmp"_s);
}

void TF_autolink::ShowTopics() {
  ui_->ComboBoxHtmlMark->clear();
  ui_->ComboBoxHtmlMark2->clear();
  ui_->ComboBoxHtmlMark2->addItem(QString());
  CardWork work(isVisible() ? this : parentWidget(), machine_.clock, u"Themen suchen"_s, file_);
  for (const std::string& topic : TopicList(file_, work.keep_going())) {
    ui_->ComboBoxHtmlMark->addItem(FromBytes(topic));
    ui_->ComboBoxHtmlMark2->addItem(FromBytes(topic));
  }
  ui_->BitBtnAutoThema->setEnabled(ui_->ComboBoxHtmlMark->count() > 0);
}

void TF_autolink::Tell(const ToolResult& result, bool row_order) {
  if (result.start_row != 0) start_row_ = result.start_row;
  QString text;
  switch (result.outcome) {
    case ToolOutcome::Done:
      text = u"%1 Karten bearbeitet"_s.arg(result.cards);
      if (!result.linked) {
        text += u". Keine Karte trägt <index>: Der Verweis auf die Übersicht wurde nirgends eingetragen"_s;
      }
      break;
    case ToolOutcome::Nothing:
      text = row_order ? u"Es gibt keine Karten für eine Übersicht"_s : u"Keine Karte gehört zu diesem Thema"_s;
      break;
    case ToolOutcome::NoNumberLeft:
      machine_.messages.Error(this, NoNumberLeftText());
      return;
    case ToolOutcome::Cancelled:
      text = u"Abgebrochen; alles ist wie zuvor"_s;
      break;
    case ToolOutcome::Failed:
      text = u"Die Karten konnten nicht geändert werden; alles ist wie zuvor"_s;
      break;
  }
  ui_->StatusPanel->setText(text);
}

ToolResult TF_autolink::Run(const QString& title, const std::function<ToolResult(const KeepGoing&)>& tool) {
  CardWork work(this, machine_.clock, title, file_);
  return tool(work.keep_going());
}

void TF_autolink::BitBtnVisualMapClick() {
  if (!SymbolsFit()) return;
  const auto make = [this](const KeepGoing& keep_going) {
    return MakeRowOrderOverview(file_, commands_, Symbols(), row_, keep_going);
  };
  Tell(Run(u"Übersicht erstellen"_s, make), true);
}

void TF_autolink::BitBtnAutoThemaClick() {
  if (!SymbolsFit()) return;
  const std::string topic1 = ToBytes(ui_->ComboBoxHtmlMark->currentText()).value_or("");
  const std::string topic2 = ToBytes(ui_->ComboBoxHtmlMark2->currentText()).value_or("");
  const auto make = [&](const KeepGoing& keep_going) {
    return MakeTopicOverview(file_, commands_, Symbols(), topic1, topic2, row_, keep_going);
  };
  Tell(Run(u"Übersicht erstellen"_s, make), false);
}

void TF_autolink::BitBtnTransferClick() {
  const CardReader cards(file_);
  bool boxes = false;
  for (int row = kFirstCardRow; row <= cards.LastCardRow() && !boxes; ++row) {
    boxes = cards.Level(row) > 0 && cards.WasAnswered(row);
  }
  if (boxes && machine_.messages.Question(
                   this,
                   u"\nDas Feld der alten Themen zeigt auch die Karteifächer,\nund in dieser Kartei wurde gelernt.\n"
                   u"Trotzdem transferieren?"_s,
                   u"Transferieren"_s, u"Nicht transferieren"_s, {}, Answer::No) != Answer::Yes) {
    return;
  }
  const ToolResult result = Run(u"Themen transferieren"_s, [this](const KeepGoing& keep_going) {
    return TransferOldTopics(file_, commands_, row_, keep_going);
  });
  if (result.outcome != ToolOutcome::Done) return Tell(result, false);
  ShowTopics();
  ui_->StatusPanel->setText(u"%1 bearbeitet"_s.arg(result.cards));
}

}  // namespace tessaro
