#include "tensor/windows/rose_picture.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "core/number_text.h"
#include "platform/graph/picture_axes.h"
#include "platform/widgets/panel_controls.h"

namespace Module_tensor {

using numerics::impedance::BandStrike;
using numerics::impedance::StrikeMethod;

namespace {

// Told apart by their lightness alone.
const QColor strike_colour(0, 84, 147);
const QColor alternative_colour(160, 205, 235);
const QColor line_colour(200, 90, 0);
const QColor circle_colour(150, 150, 150);

/// A place at a distance from the centre in the direction of an azimuth.
QPointF at_azimuth(QPointF centre, double radius, double azimuth) {
  const double angle = azimuth * std::numbers::pi / 180.0;
  return {centre.x() + radius * std::sin(angle), centre.y() - radius * std::cos(angle)};
}

void draw_across(QPainter& painter, QPointF centre, double radius, double azimuth) {
  painter.drawLine(at_azimuth(centre, radius, azimuth), at_azimuth(centre, radius, azimuth + 180.0));
}

/// A bin and the same one on the other side: a strike has no head.
void draw_bin(QPainter& painter, QPointF centre, double radius, double azimuth, double width) {
  constexpr double sixteenths = 16.0;  // of a degree, anticlockwise from the east
  const QRectF circle(centre.x() - radius, centre.y() - radius, 2.0 * radius, 2.0 * radius);
  for (const double side : {0.0, 180.0}) {
    painter.drawPie(circle, static_cast<int>(std::lround((90.0 - azimuth - width - side) * sixteenths)),
                    static_cast<int>(std::lround(width * sixteenths)));
  }
}

void draw_bins(QPainter& painter, QPointF centre, double radius, const Rose& rose) {
  const double highest = rose.highest();
  if (!(highest > 0.0)) {
    return;
  }
  const auto draw = [&](const std::vector<double>& counts, std::size_t bin, const QColor& colour) {
    painter.setBrush(colour);
    draw_bin(painter, centre, radius * std::sqrt(counts[bin] / highest),
             static_cast<double>(bin) * rose.bin_width, rose.bin_width);
  };
  painter.save();
  painter.setPen(QPen(Qt::white, 0.4));
  for (std::size_t bin = 0; bin < rose.strikes.size(); ++bin) {
    const double strikes = rose.strikes[bin];
    const double alternatives = rose.alternatives.empty() ? 0.0 : rose.alternatives[bin];
    if (alternatives > strikes) {
      draw(rose.alternatives, bin, alternative_colour);
    }
    if (strikes > 0.0) {
      draw(rose.strikes, bin, strike_colour);
    }
    if (alternatives > 0.0 && alternatives <= strikes) {
      draw(rose.alternatives, bin, alternative_colour);
    }
  }
  painter.restore();
}

void draw_circle(QPainter& painter, QPointF centre, double radius) {
  painter.save();
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(circle_colour, 0.8));
  painter.drawEllipse(centre, radius, radius);
  for (int azimuth = 0; azimuth < 360; azimuth += 30) {
    const double length = azimuth % 90 == 0 ? 0.07 : 0.04;
    painter.drawLine(at_azimuth(centre, radius * (1.0 - length), azimuth),
                     at_azimuth(centre, radius, azimuth));
  }
  painter.restore();
}

void draw_strike(QPainter& painter, QPointF centre, double radius, const BandAnswer& answer) {
  if (!answer.strike.strike.has_value()) {
    return;
  }
  painter.save();
  painter.setPen(QPen(Qt::black, 1.4));
  draw_across(painter, centre, radius, answer.strike.strike.value);
  painter.setPen(QPen(Qt::black, 1.0, Qt::DashLine));
  draw_across(painter, centre, radius, answer.strike.alternative);
  painter.restore();
}

void draw_rose(QPainter& painter, QPointF centre, double radius, const BandAnswer& answer) {
  draw_circle(painter, centre, radius);
  draw_bins(painter, centre, radius, answer.rose);
  draw_strike(painter, centre, radius, answer);
}

QString degrees_text(const BandStrike& strike) {
  if (!strike.strike.has_value()) {
    return "no strike";
  }
  const QString error =
      strike.strike.has_error() ? qt_text(" ± " + format_number(strike.strike.error, "0")) : QString();
  return qt_text(bearing_text(strike.strike.value)) + error;
}

double line_height(const QPainter& painter) {
  return QFontMetricsF(painter.font(), painter.device()).height();
}

void draw_line_of_text(QPainter& painter, const QRectF& within, double top, const QString& text) {
  const QFontMetricsF metrics(painter.font(), painter.device());
  painter.drawText(QRectF(within.left(), top, within.width(), metrics.height()),
                   Qt::AlignHCenter | Qt::AlignVCenter,
                   metrics.elidedText(text, Qt::ElideRight, within.width()));
}

/// A rose with its strike and number of points below it.
void draw_small(QPainter& painter, const QRectF& cell, const BandAnswer& answer) {
  const double line = line_height(painter);
  constexpr double margin = 3.0;
  const QRectF room = cell.adjusted(margin, margin, -margin, -margin - 2.0 * line);
  const double radius = std::min(room.width(), room.height()) / 2.0;
  if (radius > 4.0) {
    draw_rose(painter, room.center(), radius, answer);
  }
  if (answer.strike.used + answer.strike.left_out == 0) {
    draw_line_of_text(painter, cell, cell.bottom() - 2.0 * line, "no data");
    return;
  }
  draw_line_of_text(painter, cell, cell.bottom() - 2.0 * line, degrees_text(answer.strike));
  draw_line_of_text(painter, cell, cell.bottom() - line,
                    "n " + QString::number(static_cast<qulonglong>(answer.strike.used)));
}

const MethodAnswers& large_answers(const RoseFigure& figure) {
  const auto& methods = figure.summary->methods;
  const auto found = std::ranges::find(methods, figure.method, &MethodAnswers::method);
  return found == methods.end() ? methods.front() : *found;
}

void draw_key(QPainter& painter, const QRectF& area, const RoseFigure& figure) {
  struct Entry {
    QColor colour;
    QString text;
    bool shown;
  };
  const bool tippers = figure.method == StrikeMethod::tipper;
  const Entry entries[] = {{strike_colour, tippers ? "across the real arrows" : "strike", true},
                           {alternative_colour, "the same + 90°", !tippers},
                           {line_colour, "line", figure.line_azimuth.has_value()}};
  const double line = line_height(painter);
  const QFontMetricsF metrics(painter.font(), painter.device());
  const double box = 0.7 * line;
  double left = area.left();
  for (const Entry& entry : entries) {
    if (entry.shown) {
      painter.fillRect(QRectF(left, area.center().y() - box / 2.0, box, box), entry.colour);
      left += box + 4.0;
      const double width = metrics.horizontalAdvance(entry.text) + 2.0;
      painter.drawText(QRectF(left, area.top(), width, area.height()), Qt::AlignLeft | Qt::AlignVCenter,
                       entry.text);
      left += width + 8.0;
    }
  }
}

void draw_large(QPainter& painter, const QRectF& area, const RoseFigure& figure) {
  const double line = line_height(painter);
  const MethodAnswers& answers = large_answers(figure);
  draw_line_of_text(
      painter, area, area.top(),
      qt_text(std::string(method_name(answers.method)) + ", all of " + band_text(figure.summary->band)));
  const QRectF room = area.adjusted(2.0 * line, 2.4 * line, -2.0 * line, -3.4 * line);
  const QPointF centre = room.center();
  const double radius = std::max(std::min(room.width(), room.height()) / 2.0, 1.0);
  draw_rose(painter, centre, radius, answers.whole);
  if (figure.line_azimuth) {
    painter.save();
    painter.setPen(QPen(line_colour, 2.0));
    for (const double side : {0.0, 180.0}) {  // beside the bins, which it would cover
      painter.drawLine(at_azimuth(centre, 0.9 * radius, *figure.line_azimuth + side),
                       at_azimuth(centre, 1.08 * radius, *figure.line_azimuth + side));
    }
    painter.restore();
  }
  const std::pair<const char*, double> names[] = {{"N", 0.0}, {"E", 90.0}, {"S", 180.0}, {"W", 270.0}};
  for (const auto& [name, azimuth] : names) {
    const QPointF at = at_azimuth(centre, radius + 0.75 * line, azimuth);
    painter.drawText(QRectF(at.x() - line, at.y() - line / 2.0, 2.0 * line, line), Qt::AlignCenter, name);
  }
  draw_line_of_text(painter, area, area.bottom() - 2.0 * line,
                    degrees_text(answers.whole.strike) + ",  n " +
                        QString::number(static_cast<qulonglong>(answers.whole.strike.used)));
  draw_key(painter, QRectF(area.left(), area.bottom() - line, area.width(), line), figure);
}

/// How the headings of the bands are written: with as many digits as all have room for, two at least, and
/// where there is no room for these in smaller letters.
struct HeadingForm {
  int digits = 4;
  QFont font;
};

HeadingForm heading_form(const QPainter& painter, const std::vector<FrequencyBand>& bands, double width) {
  constexpr double gap = 4.0;
  constexpr int fewest_digits = 2;
  constexpr double least_letters = 0.6;  // of the picture's
  const QFontMetricsF metrics(painter.font(), painter.device());
  const auto widest = [&](int digits) {
    double result = 1.0;
    for (const FrequencyBand& band : bands) {
      for (const std::string& text : {frequencies_text(band, digits), periods_text(band, digits)}) {
        result = std::max(result, metrics.horizontalAdvance(qt_text(text)));
      }
    }
    return result;
  };
  HeadingForm form{.font = painter.font()};
  while (form.digits > fewest_digits && widest(form.digits) > width - gap) {
    --form.digits;
  }
  const double share = std::clamp((width - gap) / widest(form.digits), least_letters, 1.0);
  if (form.font.pointSizeF() > 0.0) {
    form.font.setPointSizeF(share * form.font.pointSizeF());
  } else {
    form.font.setPixelSize(static_cast<int>(share * form.font.pixelSize()));
  }
  return form;
}

/// The small roses: a row a method, a column for all frequencies and one a decade.
void draw_grid(QPainter& painter, const QRectF& area, const StrikeSummary& summary) {
  const double line = line_height(painter);
  const double titles = 2.0 * line;
  const double names = 1.4 * line;
  const auto columns = static_cast<double>(summary.decades.size() + 1);
  const auto rows = static_cast<double>(summary.methods.size());
  const QSizeF cell((area.width() - names) / columns, (area.height() - titles) / rows);
  const auto cell_at = [&](std::size_t row, std::size_t column) {
    return QRectF(QPointF(area.left() + names + cell.width() * static_cast<double>(column),
                          area.top() + titles + cell.height() * static_cast<double>(row)),
                  cell);
  };
  const QRectF units(area.left(), area.top(), names, line);
  draw_line_of_text(painter, units, units.top(), "Hz");
  draw_line_of_text(painter, units, units.top() + line, "s");
  draw_line_of_text(painter, cell_at(0, 0).translated(0.0, -titles), area.top(), "All");
  const HeadingForm form = heading_form(painter, summary.decades, cell.width());
  painter.save();
  painter.setFont(form.font);
  for (std::size_t i = 0; i < summary.decades.size(); ++i) {
    const FrequencyBand& band = summary.decades[i];
    const QRectF title = cell_at(0, i + 1);
    draw_line_of_text(painter, title, area.top(), qt_text(frequencies_text(band, form.digits)));
    draw_line_of_text(painter, title, area.top() + line, qt_text(periods_text(band, form.digits)));
  }
  painter.restore();
  for (std::size_t row = 0; row < summary.methods.size(); ++row) {
    const MethodAnswers& answers = summary.methods[row];
    for (std::size_t column = 0; column <= summary.decades.size(); ++column) {
      draw_small(painter, cell_at(row, column), column == 0 ? answers.whole : answers.decades[column - 1]);
    }
    const QRectF first = cell_at(row, 0);
    painter.save();
    painter.translate(area.left(), first.center().y());
    painter.rotate(-90.0);
    draw_line_of_text(painter, QRectF(-first.height() / 2.0, 0.0, first.height(), names), 0.0,
                      qt_text(std::string(method_name(answers.method))));
    painter.restore();
  }
}

}  // namespace

void paint_roses(QPainter& painter, const QRectF& area, const RoseFigure& figure) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  if (!figure.summary) {
    painter.drawText(area.adjusted(8.0, 0.0, -8.0, 0.0), Qt::AlignCenter | Qt::TextWordWrap, figure.note);
    painter.restore();
    return;
  }
  const double line = line_height(painter);
  draw_line_of_text(painter, area, area.top(), figure.heading);
  const QRectF below = area.adjusted(4.0, 1.2 * line, -4.0, -2.0);
  constexpr double large_share = 0.3;  // of the width, at most
  const double large = std::max(std::min(below.height(), large_share * below.width()), 15.0 * line);
  draw_large(painter, QRectF(below.left(), below.top(), large, below.height()), figure);
  draw_grid(painter, below.adjusted(large + line, 0.0, 0.0, 0.0), *figure.summary);
  painter.restore();
}

}  // namespace Module_tensor

RosePicture::RosePicture(QWidget* parent) : QWidget(parent) {
  setObjectName("Picture_roses");
  setToolTip("The area of a bin is in proportion to the points in it, or to their weights; north is up");
}

void RosePicture::show_figure(Module_tensor::RoseFigure figure) {
  figure_ = std::move(figure);
  update();
}

void RosePicture::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  graph::use_picture_style(painter);
  paint_roses(painter, QRectF(rect()), figure_);
}
