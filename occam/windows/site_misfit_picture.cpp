#include "occam/windows/site_misfit_picture.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "core/number_text.h"
#include "occam/windows/short_site_name.h"
#include "platform/graph/picture_axes.h"

using namespace Module_occam;

namespace {

constexpr double well_above = 1.5;  // times the misfit of all data: such a site is worth a look
const QColor usual_colour(70, 130, 180);
const QColor high_colour(205, 92, 60);

}  // namespace

SiteMisfitPicture::SiteMisfitPicture(QWidget* parent) : QWidget(parent) {
  setObjectName("Picture_site_misfit");
  setMouseTracking(true);
  setToolTip(
      "Root mean square misfit of each site, in units of the errors; click on a site to see its curves");
}

void SiteMisfitPicture::show_note(const QString& note) {
  bars_.clear();
  note_ = note;
  update();
}

void SiteMisfitPicture::show_misfits(const MisfitTable& misfits, const std::vector<std::string>& site_names) {
  bars_.clear();
  highest_ = 0.0;
  of_all_ = misfits.of_all().rms();
  for (std::size_t site = 0; site < site_names.size(); ++site) {
    bars_.push_back({site_names[site], misfits.of_site(static_cast<int>(site) + 1)});
    highest_ = std::max(highest_, bars_.back().misfit.rms());
  }
  constexpr double room = 1.08;  // above the highest bar
  highest_ *= room;
  note_.clear();
  update();
}

QRectF SiteMisfitPicture::plot() const {
  constexpr double left = 48.0;
  constexpr double right = 12.0;
  constexpr double top = 22.0;
  constexpr double bottom = 36.0;
  return {left, top, std::max(width() - left - right, 1.0), std::max(height() - top - bottom, 1.0)};
}

void SiteMisfitPicture::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  graph::use_picture_style(painter);
  const QRectF area = plot();
  painter.drawText(QRectF(0.0, 0.0, width(), area.top()), Qt::AlignCenter, "Misfit by site (RMS)");
  if (bars_.empty() || !(highest_ > 0.0)) {
    painter.drawText(rect().adjusted(8, 0, -8, 0), Qt::AlignCenter | Qt::TextWordWrap, note_);
    return;
  }
  paint_bars(painter);
  paint_axes(painter);
}

void SiteMisfitPicture::paint_bars(QPainter& painter) const {
  const QRectF area = plot();
  const double width = area.width() / static_cast<double>(bars_.size());
  const double gap = width > 4.0 ? 0.15 * width : 0.0;
  for (std::size_t site = 0; site < bars_.size(); ++site) {
    const double rms = bars_[site].misfit.rms();
    const double height = area.height() * rms / highest_;
    painter.fillRect(QRectF(area.left() + width * static_cast<double>(site) + gap, area.bottom() - height,
                            width - 2.0 * gap, height),
                     rms > well_above * of_all_ ? high_colour : usual_colour);
  }
  const double of_all = area.bottom() - area.height() * of_all_ / highest_;
  painter.setPen(QPen(Qt::black, 1.0, Qt::DashLine));
  painter.drawLine(QPointF(area.left(), of_all), QPointF(area.right(), of_all));
  painter.setPen(Qt::black);
}

void SiteMisfitPicture::paint_axes(QPainter& painter) const {
  const QRectF area = plot();
  const QFontMetricsF metrics(painter.font());
  std::vector<graph::PictureTick> sites;
  double widest = 0.0;
  for (std::size_t site = 0; site < bars_.size(); ++site) {
    const QString name = short_site_name(bars_[site].name);
    widest = std::max(widest, metrics.horizontalAdvance(name));
    sites.push_back(
        {area.left() + area.width() * (static_cast<double>(site) + 0.5) / static_cast<double>(bars_.size()),
         name});
  }
  constexpr double gap = 6.0;
  painter.drawLine(area.bottomLeft(), area.bottomRight());
  painter.drawLine(area.topLeft(), area.bottomLeft());
  graph::draw_bottom_axis(painter, area, graph::ticks_with_room(sites, widest + gap), "Site");
  graph::draw_left_axis(
      painter, area,
      graph::even_ticks(painter, 0.0, highest_, area.height(), true,
                        [&](double rms) { return area.bottom() - area.height() * rms / highest_; }),
      "RMS");
}

int SiteMisfitPicture::site_at(QPointF at) const {
  const QRectF area = plot();
  if (bars_.empty() || !area.contains(at)) {
    return 0;
  }
  const auto count = static_cast<double>(bars_.size());
  return std::clamp(static_cast<int>((at.x() - area.left()) / area.width() * count), 0,
                    static_cast<int>(bars_.size()) - 1) +
         1;
}

void SiteMisfitPicture::mouseMoveEvent(QMouseEvent* event) {
  const int number = site_at(event->position());
  if (number < 1) {
    Q_EMIT hovered(QString());
    return;
  }
  const Bar& bar = bars_[static_cast<std::size_t>(number) - 1];
  Q_EMIT hovered(
      QString::fromStdString("Site " + std::to_string(number) + ", " + bar.name + "   RMS " +
                             (bar.misfit.count > 0 ? format_number(bar.misfit.rms(), "0.00") : "NA") +
                             "   of all sites " + format_number(of_all_, "0.00")));
}

void SiteMisfitPicture::mousePressEvent(QMouseEvent* event) {
  if (const int number = site_at(event->position()); number > 0 && event->button() == Qt::LeftButton) {
    Q_EMIT site_chosen(number);
  }
}

void SiteMisfitPicture::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  Q_EMIT hovered(QString());
}
