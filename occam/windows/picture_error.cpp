#include "occam/windows/picture_error.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <functional>
#include <numeric>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "occam/windows/short_site_name.h"
#include "platform/graph/frequency_axis.h"
#include "platform/graph/picture_axes.h"
#include "platform/widgets/panel_controls.h"

using namespace Module_occam;

namespace {

constexpr double largest_misfit = 6.0;  // at the ends of the palette

/// Number from 1 of the part of a range, cut into `count` parts, that a place lies in.
int part_at(double place, double start, double length, int count) {
  return std::clamp(static_cast<int>((place - start) / length * count), 0, count - 1) + 1;
}

}  // namespace

PictureError::PictureError(const QString& name, const OccamResponse& response, QWidget* parent)
    : QWidget(parent), response_(response) {
  setObjectName(name);
  setMouseTracking(true);
  connect(&graph::FrequencyAxis::instance(), &graph::FrequencyAxis::changed, this, [this] { update(); });
}

void PictureError::clear() {
  shown_ = false;
  update();
}

void PictureError::choose(const QString& title, std::optional<DataType> type) {
  title_ = title;
  type_ = type;
  setToolTip(plain_tool_tip(title_ + ", in units of the error; click on a site to see its curves"));
  update();
}

void PictureError::show_misfits(const graph::Palette& palette) {
  palette_ = palette;
  rows_.resize(static_cast<std::size_t>(response_.resp_frequency_count()));
  std::iota(rows_.begin(), rows_.end(), 1);
  std::ranges::stable_sort(rows_, std::greater<>(), [this](int number) { return frequency_of(number); });
  shown_ = true;
  update();
}

void PictureError::mark_site(int site_number) {
  marked_site_ = site_number;
  update();
}

QRectF PictureError::plot() const {
  constexpr double left = 58.0;
  constexpr double right = 56.0;
  constexpr double top = 22.0;
  constexpr double bottom = 36.0;
  return {left, top, std::max(width() - left - right, 1.0), std::max(height() - top - bottom, 1.0)};
}

void PictureError::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  graph::use_picture_style(painter);
  const QRectF area = plot();
  // Over the whole width: a narrow picture has less room above its cells than the title needs.
  painter.drawText(QRectF(0.0, 0.0, width(), area.top()), Qt::AlignCenter,
                   QFontMetricsF(painter.font()).elidedText(title_, Qt::ElideRight, width() - 2.0));
  if (shown_ && response_.resp_sites() > 0) {
    paint_cells(painter);
    paint_labels(painter);
  }
}

double PictureError::frequency_of(int frequency_number) const {
  return response_.resp_frequencies[static_cast<std::size_t>(frequency_number) - 1];
}

double PictureError::misfit_of(int site_number, int frequency_number) const {
  return type_ ? static_cast<double>(
                     response_.value(ResponseValue::misfit, *type_, site_number, frequency_number))
               : no_data;
}

void PictureError::paint_cells(QPainter& painter) const {
  const QRectF area = plot();
  const int sites = response_.resp_sites();
  const int frequencies = static_cast<int>(rows_.size());
  const auto x = [&](int site) { return qRound(area.left() + area.width() * site / sites); };
  const auto y = [&](int row) { return qRound(area.top() + area.height() * row / frequencies); };
  for (int site = 0; site < sites; ++site) {
    for (int row = 0; row < frequencies; ++row) {
      const double misfit = misfit_of(site + 1, rows_[static_cast<std::size_t>(row)]);
      const QRect cell(QPoint(x(site), y(row)), QPoint(x(site + 1) - 1, y(row + 1) - 1));
      painter.fillRect(cell,
                       is_absent(misfit)
                           ? QColor(Qt::white)
                           : graph::to_qt(palette_[static_cast<std::size_t>(graph::misfit_entry(misfit))]));
    }
  }
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(area);
  if (marked_site_ >= 1 && marked_site_ <= sites) {
    painter.setPen(QPen(Qt::black, 2.0));
    painter.drawRect(
        QRectF(x(marked_site_ - 1), area.top(), x(marked_site_) - x(marked_site_ - 1), area.height()));
    painter.setPen(QPen(Qt::black, 1.0));
  }
}

void PictureError::paint_labels(QPainter& painter) const {
  const QRectF area = plot();
  const QFontMetricsF metrics(painter.font());
  std::vector<graph::PictureTick> sites;
  double widest = 0.0;
  for (int site = 0; site < response_.resp_sites(); ++site) {
    const QString name = short_site_name(response_.resp_site_names[static_cast<std::size_t>(site)]);
    widest = std::max(widest, metrics.horizontalAdvance(name));
    sites.push_back({area.left() + area.width() * (site + 0.5) / response_.resp_sites(), name});
  }
  const graph::FrequencyAxis& axis = graph::FrequencyAxis::instance();
  std::vector<graph::PictureTick> frequencies;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    const int digits = axis.shows_periods() ? 2 : 4;  // short periods begin with zeros
    frequencies.push_back(
        {area.top() + area.height() * (static_cast<double>(row) + 0.5) / static_cast<double>(rows_.size()),
         QString::number(axis.shown(frequency_of(rows_[row])), 'g', digits)});
  }
  constexpr double gap = 6.0;
  graph::draw_bottom_axis(painter, area, graph::ticks_with_room(sites, widest + gap), "Site");
  graph::draw_left_axis(painter, area, graph::ticks_with_room(frequencies, metrics.height()),
                        axis.shows_periods() ? "s" : "Hz");
  constexpr double bar_width = 12.0;
  graph::draw_colour_bar(painter, {area.right() + 8.0, area.top(), bar_width, area.height()}, palette_,
                         -largest_misfit, largest_misfit, QString());
}

QString PictureError::text_at(QPointF at) const {
  const QRectF area = plot();
  if (!shown_ || response_.resp_sites() < 1 || rows_.empty() || !area.contains(at)) {
    return {};
  }
  const int site = part_at(at.x(), area.left(), area.width(), response_.resp_sites());
  const int row = part_at(at.y(), area.top(), area.height(), static_cast<int>(rows_.size()));
  const int frequency = rows_[static_cast<std::size_t>(row) - 1];
  const double misfit = misfit_of(site, frequency);
  const auto site_index = static_cast<std::size_t>(site) - 1;
  return QString::fromStdString("Site " + response_.resp_site_names[site_index] + " at " +
                                format_number(response_.resp_offsets[site_index], "0.0") + " m   Frequency " +
                                plain_text(static_cast<float>(frequency_of(frequency))) + " Hz   " +
                                (type_ ? data_type_name(*type_) + " error" : title_.toStdString()) + " " +
                                (is_absent(misfit) ? "NA" : format_number(misfit, "0.00")));
}

void PictureError::mouseMoveEvent(QMouseEvent* event) { Q_EMIT hovered(text_at(event->position())); }

void PictureError::mousePressEvent(QMouseEvent* event) {
  const QRectF area = plot();
  if (event->button() == Qt::LeftButton && shown_ && area.contains(event->position())) {
    Q_EMIT site_chosen(part_at(event->position().x(), area.left(), area.width(), response_.resp_sites()));
  }
}

void PictureError::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  Q_EMIT hovered(QString());
}
