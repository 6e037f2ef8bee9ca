#include "widgets/icons.h"

#include <QByteArray>
#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>
#include <optional>

// Resources of a static library are dropped by the linker unless something asks for them; the macro needs the global
// namespace.
static void LoadIconResource() {
  Q_INIT_RESOURCE(icons);
}

namespace tessaro {
namespace {

using namespace Qt::Literals::StringLiterals;

// The drawings use the colour name "currentColor", which is filled in when an icon is painted: so icons follow a change
// between a light and a dark desktop without being made anew.
class LineIconEngine : public QIconEngine {
 public:
  LineIconEngine(QByteArray drawing, std::optional<QColor> colour) : drawing_(std::move(drawing)), colour_(colour) {}

  void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State /*state*/) override {
    QByteArray drawing = drawing_;
    drawing.replace("currentColor", Colour(mode).name().toLatin1());
    const int side = std::min(place.width(), place.height());
    QRectF square(0, 0, side, side);
    square.moveCenter(QRectF(place).center());
    QSvgRenderer(drawing).render(painter, square);
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return picture;
  }

  QIconEngine* clone() const override { return new LineIconEngine(drawing_, colour_); }

 private:
  QColor Colour(QIcon::Mode mode) const {
    const QPalette palette = QGuiApplication::palette();
    if (mode == QIcon::Disabled) return palette.color(QPalette::Disabled, QPalette::WindowText);
    if (mode == QIcon::Selected) return palette.color(QPalette::Active, QPalette::HighlightedText);
    return colour_.value_or(palette.color(QPalette::Active, QPalette::WindowText));
  }

  QByteArray drawing_;
  std::optional<QColor> colour_;
};

QIcon MakeIcon(std::string_view name, std::optional<QColor> colour) {
  LoadIconResource();
  QFile file(u":/icons/%1.svg"_s.arg(QLatin1StringView(name.data(), static_cast<qsizetype>(name.size()))));
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QIcon(new LineIconEngine(file.readAll(), colour));
}

}  // namespace

QIcon Icon(std::string_view name) {
  return MakeIcon(name, std::nullopt);
}

QIcon Icon(std::string_view name, const QColor& colour) {
  return MakeIcon(name, colour);
}

}  // namespace tessaro
