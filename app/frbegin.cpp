#include "app/frbegin.h"

#include <QDir>
#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <QPushButton>
#include <algorithm>
#include <utility>

#include "learn/lern_texts.h"
#include "ui_frbegin.h"
#include "widgets/icons.h"
#include "widgets/text.h"

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr double kTitle = 2.0;  // times the normal size
constexpr double kFigure = 1.6;
constexpr double kButton = 1.3;
constexpr double kSmall = 0.9;
constexpr int kButtonPadding = 32;  // pixels beside icon and caption
constexpr int kLettersInLine = 70;
constexpr int kRowPadding = 8;
constexpr int kRowLead = 2;  // between name and description
constexpr int kRing = 2;     // pixels, the line around the row with the focus
constexpr int kRingRadius = 4;

void Scale(QWidget* widget, double factor) {
  QFont font = widget->font();
  font.setPointSizeF(font.pointSizeF() * factor);
  widget->setFont(font);
}

// What the tour of the program and other samples are for, in a line below their name.
QString SampleDescription(const QString& name) {
  if (name == u"Erste Schritte"_s) return u"Die Bedienung in wenigen Karten"_s;
  return u"Eine fertige Kartei zum Ausprobieren"_s;
}

QString CardsInWords(int64_t count, const QString& one, const QString& many) {
  return count == 1 ? one : many.arg(QLocale().toString(static_cast<qlonglong>(count)));
}

// What there is to do now, beside the button that does it.
QString AdviceFor(const BeginFile& file) {
  const int64_t repeat = file.figures.unknown + file.figures.due;
  if (repeat > 0)
    return CardsInWords(repeat, u"Eine Karte wartet auf Wiederholung."_s, u"%1 Karten warten auf Wiederholung."_s);
  if (file.figures.never_answered > 0) {
    return CardsInWords(file.figures.never_answered, u"Eine neue Karte wartet auf Sie."_s,
                        u"%1 neue Karten warten auf Sie."_s);
  }
  if (file.figures.learnable == 0) return u"In dieser Kartei gibt es noch keine Karten zum Lernen."_s;
  if (!file.figures.next_due_in) return u"Zurzeit ist nichts zu wiederholen."_s;
  if (file.after_run) return u"Für jetzt fertig, nächste Karte in %1."_s.arg(ShortSpan(*file.figures.next_due_in));
  return u"Zurzeit ist nichts zu wiederholen. Die nächste Karte ist in %1 fällig."_s.arg(
      SpanInWords(*file.figures.next_due_in));
}

// A row of a list of files: a name and, smaller, what is to be said of it. Flat buttons of the common styles show no
// focus, and command links of Qt keep their size whatever the desktop's text has.
class FileButton : public QPushButton {
 public:
  FileButton(const QString& name, QString description, QWidget* parent)
      : QPushButton(name, parent), description_(std::move(description)) {
    setFlat(true);
    setAttribute(Qt::WA_Hover);
    setAccessibleDescription(description_);
  }
  QSize sizeHint() const override {
    const int width = std::max(QFontMetrics(NameFont()).horizontalAdvance(text()),
                               QFontMetrics(SmallFont()).horizontalAdvance(description_));
    return {TextLeft() + width + kRowPadding,
            2 * kRowPadding + QFontMetrics(NameFont()).height() + kRowLead + QFontMetrics(SmallFont()).height()};
  }
  // A long path is cut.
  QSize minimumSizeHint() const override { return {TextLeft(), sizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF row = QRectF(rect()).adjusted(1, 1, -1, -1);
    QColor face = palette().color(QPalette::WindowText);
    face.setAlphaF(isDown() ? 0.12F : underMouse() ? 0.06F : 0.0F);
    painter.setBrush(face);
    painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight), kRing) : QPen(Qt::NoPen));
    painter.drawRoundedRect(row, kRingRadius, kRingRadius);
    icon().paint(&painter, QRect(kRowPadding, kRowPadding, IconSide(), IconSide()));
    painter.setPen(palette().color(QPalette::WindowText));
    PaintLine(painter, NameFont(), kRowPadding, text());
    PaintLine(painter, SmallFont(), kRowPadding + QFontMetrics(NameFont()).height() + kRowLead, description_);
  }

 private:
  int IconSide() const { return QFontMetrics(font()).height(); }
  int TextLeft() const { return IconSide() + 2 * kRowPadding; }
  QFont NameFont() const {
    QFont bold = font();
    bold.setBold(true);
    return bold;
  }
  QFont SmallFont() const {
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * kSmall);
    return small;
  }
  void PaintLine(QPainter& painter, const QFont& font, int top, const QString& line) const {
    painter.setFont(font);
    const QFontMetrics metrics(font);
    const int width = this->width() - TextLeft() - kRowPadding;
    painter.drawText(TextLeft(), top + metrics.ascent(), metrics.elidedText(line, Qt::ElideMiddle, width));
  }

  QString description_;
};

void Empty(QVBoxLayout& list) {
  while (QLayoutItem* item = list.takeAt(0)) {
    if (item->widget() != nullptr) {
      // It is deleted when the message loop runs the next time, which may be after a question that stands over it.
      item->widget()->hide();
      item->widget()->deleteLater();
    }
    delete item;
  }
}

}  // namespace

TFrameBegin::TFrameBegin(QWidget* parent) : QFrame(parent), ui_(std::make_unique<Ui::TFrameBegin>()) {
  ui_->setupUi(this);
  SetFonts();
  ui_->ButtonLearn->setIcon(Icon("learn"));
  ui_->ButtonReihe->setIcon(Icon("next"));
  ui_->ButtonLeitner->setIcon(Icon("boxes"));
  ui_->ButtonOpen->setIcon(Icon("open"));
  ui_->ButtonNew->setIcon(Icon("new"));
  ui_->ButtonEdit->setIcon(Icon("edit"));
  ui_->ButtonSuchen->setIcon(Icon("search"));
  connect(ui_->ButtonLearn, &QPushButton::clicked, this, [this] {
    if (nothing_to_learn_) Q_EMIT EditWanted();
    if (!nothing_to_learn_) Q_EMIT LearnWanted();
  });
  connect(ui_->ButtonEdit, &QPushButton::clicked, this, &TFrameBegin::EditWanted);
  connect(ui_->ButtonSuchen, &QPushButton::clicked, this, &TFrameBegin::SearchWanted);
  connect(ui_->ButtonReihe, &QPushButton::clicked, this, &TFrameBegin::RowOrderWanted);
  connect(ui_->ButtonLeitner, &QPushButton::clicked, this, &TFrameBegin::BoxesWanted);
  connect(ui_->ButtonCheck, &QPushButton::clicked, this, &TFrameBegin::CheckWanted);
  connect(ui_->ButtonOpen, &QPushButton::clicked, this, &TFrameBegin::OpenWanted);
  connect(ui_->ButtonNew, &QPushButton::clicked, this, &TFrameBegin::NewWanted);
  for (QPushButton* button :
       {ui_->ButtonOpen, ui_->ButtonNew, ui_->ButtonReihe, ui_->ButtonLeitner, ui_->ButtonEdit, ui_->ButtonSuchen}) {
    button->setMinimumWidth(button->sizeHint().width() + kButtonPadding);
  }
  ui_->LabelExplain->setMaximumWidth(kLettersInLine * fontMetrics().averageCharWidth());
  ShowCheck({});
  ShowKnownNow({});
  ShowNoFile();
}

TFrameBegin::~TFrameBegin() = default;

void TFrameBegin::keyPressEvent(QKeyEvent* event) {
  auto* button = qobject_cast<QAbstractButton*>(focusWidget());
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter || button == nullptr || event->isAutoRepeat()) return QFrame::keyPressEvent(event);
  button->click();
}

void TFrameBegin::SetFonts() {
  Scale(ui_->LabelName, kTitle);
  Scale(ui_->LabelWelcome, kTitle);
  Scale(ui_->ButtonLearn, kButton);
  for (QLabel* figure : {ui_->FigureCards, ui_->FigureNew, ui_->FigureKnown, ui_->FigureUnknown, ui_->FigureDue}) {
    Scale(figure, kFigure);
  }
  for (QLabel* label : {ui_->LabelCards, ui_->LabelNew, ui_->LabelKnown, ui_->LabelUnknown, ui_->LabelDue,
                        ui_->LabelFolder, ui_->LabelNavigation}) {
    Scale(label, kSmall);
  }
  for (QLabel* heading : {ui_->LabelRecent, ui_->LabelSamples}) {
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
  }
}

void TFrameBegin::ShowNoFile() {
  ui_->PanelEmpty->show();
  ui_->PanelFile->hide();
  ui_->PanelSamples->show();
}

void TFrameBegin::ShowName(const std::filesystem::path& path) {
  ui_->LabelName->setText(FromPath(path.stem()));
  ui_->LabelFolder->setText(QDir::toNativeSeparators(FromPath(path.parent_path())));
}

void TFrameBegin::ShowLoading(const std::filesystem::path& path) {
  ShowName(path);
  for (QLabel* figure : {ui_->FigureCards, ui_->FigureNew, ui_->FigureKnown, ui_->FigureUnknown, ui_->FigureDue}) {
    figure->setText(u"…"_s);
  }
  ui_->LabelNavigation->hide();
  ui_->LabelAdvice->setText(u"Die Kartei wird geladen."_s);
  for (QPushButton* button : {ui_->ButtonLearn, ui_->ButtonReihe, ui_->ButtonLeitner}) button->setEnabled(false);
  ui_->PanelEmpty->hide();
  ui_->PanelSamples->hide();
  ui_->PanelFile->show();
}

void TFrameBegin::ShowFile(const BeginFile& file) {
  ShowName(file.path);
  for (QPushButton* button : {ui_->ButtonLearn, ui_->ButtonReihe, ui_->ButtonLeitner}) button->setEnabled(true);
  Renew(file);
  ui_->PanelEmpty->hide();
  ui_->PanelSamples->hide();
  ui_->PanelFile->show();
  ui_->ButtonLearn->setFocus();
}

void TFrameBegin::Renew(const BeginFile& file) {
  ShowFigures(file.figures);
  nothing_to_learn_ = file.figures.learnable == 0;
  ui_->ButtonLearn->setText(nothing_to_learn_ ? u" Karten anlegen"_s : u" Lernen"_s);
  ui_->ButtonLearn->setIcon(Icon(nothing_to_learn_ ? "new" : "learn"));
  ui_->LabelAdvice->setText(AdviceFor(file));
}

void TFrameBegin::ShowKnownNow(const QString& text) {
  // Its line is kept for it: what stands below does not move when it comes.
  ui_->LabelKnownNow->setText(text.isEmpty() ? u" "_s : text);
}

void TFrameBegin::ShowCheck(const QString& text) {
  ui_->LabelCheck->setText(text);
  ui_->PanelCheck->setVisible(!text.isEmpty());
}

void TFrameBegin::ShowFigures(const CardFigures& figures) {
  const std::pair<QLabel*, int64_t> shown[] = {{ui_->FigureCards, figures.learnable},
                                               {ui_->FigureNew, figures.never_answered},
                                               {ui_->FigureKnown, figures.known},
                                               {ui_->FigureUnknown, figures.unknown},
                                               {ui_->FigureDue, figures.unknown + figures.due}};
  for (const auto& [label, figure] : shown) label->setText(QLocale().toString(static_cast<qlonglong>(figure)));
  const int64_t left_out = figures.cards - figures.learnable;
  ui_->LabelNavigation->setText(
      left_out == figures.navigation
          ? CardsInWords(left_out, u"dazu eine Navigationskarte"_s, u"dazu %1 Navigationskarten"_s)
          : CardsInWords(left_out, u"dazu eine Karte, die nicht abgefragt wird"_s,
                         u"dazu %1 Karten, die nicht abgefragt werden"_s));
  ui_->LabelNavigation->setVisible(left_out > 0);
}

void TFrameBegin::SetRecent(const std::vector<std::filesystem::path>& files) {
  Empty(*ui_->ListRecent);
  for (const std::filesystem::path& file : files) {
    AddFileButton(*ui_->ListRecent, file, "recent", QDir::toNativeSeparators(FromPath(file.parent_path())),
                  &TFrameBegin::FileWanted);
  }
  ui_->PanelRecent->setVisible(!files.empty());
}

void TFrameBegin::SetSamples(const std::vector<std::filesystem::path>& samples) {
  Empty(*ui_->ListSamples);
  for (const std::filesystem::path& sample : samples) {
    AddFileButton(*ui_->ListSamples, sample, "cards", SampleDescription(FromPath(sample.stem())),
                  &TFrameBegin::SampleWanted);
  }
  ui_->LabelSamples->setVisible(!samples.empty());
}

void TFrameBegin::AddFileButton(QVBoxLayout& list, const std::filesystem::path& path, std::string_view icon,
                                const QString& description, FileSignal signal) {
  auto* button = new FileButton(FromPath(path.stem()), description, this);
  button->setAccessibleName(button->text());
  button->setIcon(Icon(icon));
  button->setToolTip(QDir::toNativeSeparators(FromPath(path)));
  button->setProperty("path", FromPath(path));
  connect(button, &QPushButton::clicked, this, [this, signal, file = FromPath(path)] { Q_EMIT(this->*signal)(file); });
  list.addWidget(button);
}

}  // namespace tessaro
