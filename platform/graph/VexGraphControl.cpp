#include "platform/graph/VexGraphControl.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QToolTip>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <limits>

#include <qcustomplot.h>

#include "platform/graph/axis_ticks.h"
#include "platform/graph/frequency_axis.h"
#include "platform/graph/graph_export.h"
#include "platform/graph/graph_look.h"
#include "platform/graph/graph_marks.h"
#include "platform/graph/mouse_gestures.h"
#include "platform/graph/point_search.h"
#include "platform/graph/series_painter.h"

namespace {

constexpr double hit_radius = 8.0;  // pixels
const QString overlay_layer = QStringLiteral("overlay lines");
const QString pointer_layer = QStringLiteral("overlay");  // QCustomPlot's topmost, with a buffer of its own

void set_axis_type(QCPAxis& axis, graph::AxisType type, graph::TickLabels labels) {
  const auto scale = type == graph::AxisType::logarithmic ? QCPAxis::stLogarithmic : QCPAxis::stLinear;
  const bool reversed = labels == graph::TickLabels::inverse;
  if (axis.scaleType() != scale || axis.rangeReversed() != reversed ||
      axis.property("ticker_made").isNull()) {
    axis.setProperty("ticker_made", true);
    axis.setScaleType(scale);
    axis.setRangeReversed(reversed);
    axis.setTicker(graph::make_ticker(axis, type, labels));
  }
}

graph::AxisRange ordered(double one_end, double other_end) {
  return {std::min(one_end, other_end), std::max(one_end, other_end)};
}

/// An end of an overlay line at or beyond a limit reaches the edge of the plot area.
double to_edge(double coordinate, const graph::AxisLimits& limits) {
  if (coordinate <= limits.minimum) {
    return -std::numeric_limits<double>::infinity();
  }
  return coordinate >= limits.maximum ? std::numeric_limits<double>::infinity() : coordinate;
}

}  // namespace

VexGraphControl::VexGraphControl(QWidget* parent) : QWidget(parent), plot_(new QCustomPlot(this)) {
  setFocusPolicy(Qt::ClickFocus);  // a click ends the typing in a text box; keys belong to the window
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(plot_);
  plot_->setFocusPolicy(Qt::NoFocus);
  plot_->setAttribute(Qt::WA_TransparentForMouseEvents);
  y_title_item_ = graph::apply_look(*plot_);
  plot_->addLayer(overlay_layer, plot_->layer(QStringLiteral("legend")), QCustomPlot::limAbove);
  plot_->layer(overlay_layer)->setMode(QCPLayer::lmBuffered);
  series_painter_ = new graph::SeriesPainter(*plot_, content_);
  overlay_ = new graph::OverlayLines(*plot_, overlay_layer);
  pointer_marks_ = new graph::PointerMarks(*plot_, pointer_layer, content_);
  set_zoom_home();
  constexpr QSize min_area(50, 30);
  plot_->axisRect()->setMinimumSize(min_area);
  apply_view();
  apply_layout();
  connect(plot_, &QCustomPlot::afterReplot, this, [this] { ++draw_count_; });
  connect_gestures();
}

VexGraphControl::~VexGraphControl() {
  delete gestures_;  // hiding the widget ends a drag, and nothing is left to show that
  delete plot_;      // its elements refer to the content, which is destroyed before a base class would
                     // delete the children
}

void VexGraphControl::clear_graph() {
  content_.clear();
  pointer_marks_->set_point(std::nullopt);
}

void VexGraphControl::set_graph_data(graph::PlotTable values) { content_.set_table(std::move(values)); }

void VexGraphControl::set_graph_styles(graph::PointStyles styles) { content_.set_styles(std::move(styles)); }

void VexGraphControl::set_series_style(int series, const graph::SeriesStyle& style) {
  content_.set_series_style(series, style);
}

void VexGraphControl::draw_graph() {
  set_zoom_home();
  apply_view();
  // A line at the current station means nothing without a curve.
  overlay_->setVisible(content_.series_count() > 0);
  pointer_marks_->set_point(pointer_ ? point_at(*pointer_) : std::nullopt);
  plot_->replot(QCustomPlot::rpQueuedRefresh);
}

void VexGraphControl::begin_overlay() { overlay_->clear(); }

// The curves of a long line have tens of thousands of points, and a step to the next station moves one line.
void VexGraphControl::draw_overlay() { plot_->layer(overlay_layer)->replot(); }

void VexGraphControl::draw_overlay_line(double x1, double y1, double x2, double y2, graph::Colour colour,
                                        double width) {
  overlay_->add({to_edge(x1, x_limits_), to_edge(y1, y_limits_), to_edge(x2, x_limits_),
                 to_edge(y2, y_limits_), colour, width});
}

void VexGraphControl::draw_overlay_label(graph::PlotLabel label) { overlay_->add(std::move(label)); }

void VexGraphControl::set_x_title(const QString& title) {
  x_title_ = title;
  apply_layout();
}

void VexGraphControl::set_y_title(const QString& title) {
  y_title_ = title;
  apply_layout();
}

void VexGraphControl::set_x_frequency() {
  if (!x_is_frequency_) {
    x_is_frequency_ = true;
    connect(&graph::FrequencyAxis::instance(), &graph::FrequencyAxis::changed, this,
            &VexGraphControl::follow_frequency_axis);
  }
  set_x_title(graph::FrequencyAxis::instance().title());
}

double VexGraphControl::shown_x(double x) const {
  return x_is_frequency_ ? graph::FrequencyAxis::instance().shown(x) : x;
}

void VexGraphControl::follow_frequency_axis() {
  QToolTip::hideText();
  set_x_title(graph::FrequencyAxis::instance().title());
  draw_graph();
}

void VexGraphControl::set_x_labels_shown(bool shown) {
  x_labels_shown_ = shown;
  apply_layout();
}

int VexGraphControl::frame_height() const {
  const QMargins margins = plot_->axisRect()->margins();
  return margins.top() + margins.bottom();
}

void VexGraphControl::set_error_bars_shown(bool shown) {
  error_bars_shown_ = shown;
  series_painter_->set_error_bars(shown);
}

void VexGraphControl::reset_zoom() {
  x_view_.reset();
  y_view_.reset();
}

void VexGraphControl::set_view(const View& view) {
  x_view_ = view.x;
  y_view_ = view.y;
}

void VexGraphControl::share_x_zoom(VexGraphControl& other) {
  connect(this, &VexGraphControl::x_view_changed, &other, &VexGraphControl::follow_x_view);
  connect(&other, &VexGraphControl::x_view_changed, this, &VexGraphControl::follow_x_view);
}

std::optional<QPointF> VexGraphControl::point_position(int series, int point) const {
  const graph::PointIndex at{series, point};
  const std::optional<QPointF> position =
      content_.exists(at) ? graph::point_position(content_, at, *plot_->xAxis, *plot_->yAxis) : std::nullopt;
  return position ? std::optional(graph::marker_place(content_, *position, *plot_->yAxis).at) : std::nullopt;
}

QRect VexGraphControl::plot_area() const { return plot_->axisRect()->rect(); }

int VexGraphControl::save_png(const std::string& path, int width, int height, double scale) {
  return graph::save_png(*plot_, path, {width, height}, scale);
}

int VexGraphControl::save_pdf(const std::string& path) { return graph::save_pdf(*plot_, path, size()); }

void VexGraphControl::draw_on(QCPPainter& painter, QSize size) {
  resize(size);
  plot_->resize(size);  // a layout waits for the window to be shown
  apply_layout();
  plot_->toPainter(&painter, size.width(), size.height());
}

std::unique_ptr<QMenu> VexGraphControl::make_context_menu() {
  auto menu = std::make_unique<QMenu>(this);
  menu->addAction(tr("&Copy"), this, [this] { graph::copy_to_clipboard(*plot_, 2.0); });
  menu->addAction(tr("Save as &PNG..."), this, [this] { graph::ask_and_save_png(*plot_); });
  menu->addAction(tr("Save as P&DF..."), this, [this] { graph::ask_and_save_pdf(*plot_); });
  menu->addSeparator();
  QAction* reset = menu->addAction(tr("&Reset zoom"), this, &VexGraphControl::show_everything);
  reset->setEnabled(zoomed());
  if (content_.has_errors()) {
    QAction* bars = menu->addAction(tr("&Error bars"));
    bars->setCheckable(true);
    bars->setChecked(error_bars_shown_);
    connect(bars, &QAction::toggled, this, [this](bool shown) {
      set_error_bars_shown(shown);
      draw_graph();
      Q_EMIT error_bars_toggled(shown);
    });
  }
  return menu;
}

bool VexGraphControl::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::Show:
    case QEvent::ScreenChangeInternal:  // perhaps to a screen of another density
      if (plot_->bufferDevicePixelRatio() != devicePixelRatioF()) {
        plot_->setBufferDevicePixelRatio(devicePixelRatioF());
        plot_->replot(QCustomPlot::rpQueuedReplot);
      }
      break;
    case QEvent::FontChange:
      apply_layout();
      plot_->replot(QCustomPlot::rpQueuedReplot);
      break;
    default:
      break;
  }
  return QWidget::event(event);
}

void VexGraphControl::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  const QString x_title = plot_->xAxis->label();
  const QString y_title = y_title_item_->text();
  apply_layout();
  if (plot_->xAxis->label() != x_title || y_title_item_->text() != y_title) {
    plot_->replot(QCustomPlot::rpQueuedReplot);  // which has been drawn in its new size with the old titles
  }
}

void VexGraphControl::contextMenuEvent(QContextMenuEvent* event) {
  QMenu* menu = make_context_menu().release();  // shown without waiting; it deletes itself
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->popup(event->globalPos());
  event->accept();
}

void VexGraphControl::connect_gestures() {
  using graph::MouseGestures;
  gestures_ = new MouseGestures(*this);
  connect(gestures_, &MouseGestures::clicked, this, &VexGraphControl::select_at);
  connect(gestures_, &MouseGestures::double_clicked, this, &VexGraphControl::show_everything);
  connect(gestures_, &MouseGestures::hovered, this, &VexGraphControl::hover_at);
  connect(gestures_, &MouseGestures::left, this, &VexGraphControl::leave);
  connect(gestures_, &MouseGestures::band_dragged, this, &VexGraphControl::show_band);
  connect(gestures_, &MouseGestures::band_released, this, &VexGraphControl::zoom_to_band);
  connect(gestures_, &MouseGestures::band_cancelled, this, [this] {
    pointer_marks_->set_band(std::nullopt);
    plot_->layer(pointer_layer)->replot();
  });
  connect(gestures_, &MouseGestures::panned, this, &VexGraphControl::pan);
  connect(gestures_, &MouseGestures::wheel_turned, this, &VexGraphControl::turn_wheel);
}

void VexGraphControl::select_at(QPointF at) {
  if (const std::optional<graph::PointIndex> point = point_at(at)) {
    Q_EMIT point_selected(point->series, point->point);
  }
}

void VexGraphControl::show_everything() {
  if (zoomed()) {
    reset_zoom();
    view_changed();
  }
}

void VexGraphControl::hover_at(QPointF at) {
  pointer_ = at;
  const bool off_graph = !plot_area().contains(at.toPoint());
  const std::optional<graph::PointIndex> point = off_graph ? std::nullopt : point_at(at);
  if (point != pointer_marks_->point()) {
    pointer_marks_->set_point(point);
    plot_->layer(pointer_layer)->replot();
  }
  if (point) {
    const std::optional<QPointF> place = point_position(point->series, point->point);
    const QRect around = QRectF(*place, QSizeF()).toRect().adjusted(-9, -9, 9, 9);
    QToolTip::showText(mapToGlobal(at.toPoint()), point_text(*point), this, around);
  } else {
    QToolTip::hideText();
  }
  if (off_graph) {
    Q_EMIT pointer_moved(true, 0.0, 0.0);
  } else {
    Q_EMIT pointer_moved(false, shown_x(plot_->xAxis->pixelToCoord(at.x())),
                         plot_->yAxis->pixelToCoord(at.y()));
  }
}

void VexGraphControl::leave() {
  pointer_.reset();
  if (pointer_marks_->point()) {
    pointer_marks_->set_point(std::nullopt);
    plot_->layer(pointer_layer)->replot();
  }
  Q_EMIT pointer_moved(true, 0.0, 0.0);
}

namespace {

constexpr double thin_band = 10.0;  // pixels

/// The rectangle to zoom to, inside the plot area. One drawn thin means the whole width or height.
std::optional<QRectF> zoom_band(const QRectF& area, QPointF from, QPointF to) {
  if (!area.contains(from)) {
    return std::nullopt;
  }
  QRectF band = QRectF(from, to).normalized().intersected(area);
  const bool narrow = band.width() < thin_band;
  const bool low = band.height() < thin_band;
  if (narrow && low) {
    return std::nullopt;
  }
  if (narrow) {
    band.setLeft(area.left());
    band.setRight(area.right());
  }
  if (low) {
    band.setTop(area.top());
    band.setBottom(area.bottom());
  }
  return band;
}

}  // namespace

void VexGraphControl::show_band(QPointF from, QPointF to) {
  QToolTip::hideText();
  pointer_marks_->set_point(std::nullopt);
  pointer_marks_->set_band(band_marks() ? QRectF(from, to).normalized().intersected(plot_area())
                                        : zoom_band(plot_area(), from, to));
  plot_->layer(pointer_layer)->replot();
}

void VexGraphControl::zoom_to_band(QPointF from, QPointF to) {
  pointer_marks_->set_band(std::nullopt);
  if (band_marks()) {
    plot_->layer(pointer_layer)->replot();
    report_band(from, to);
    return;
  }
  const QRectF area = plot_area();
  const std::optional<QRectF> band = zoom_band(area, from, to);
  if (!band) {
    plot_->layer(pointer_layer)->replot();
    return;
  }
  if (band->width() < area.width()) {
    x_view_.show(
        ordered(plot_->xAxis->pixelToCoord(band->left()), plot_->xAxis->pixelToCoord(band->right())));
  }
  if (band->height() < area.height()) {
    y_view_.show({plot_->yAxis->pixelToCoord(band->bottom()), plot_->yAxis->pixelToCoord(band->top())});
  }
  view_changed();
}

bool VexGraphControl::band_marks() const { return marking_ && gestures_->shift_held(); }

void VexGraphControl::report_band(QPointF from, QPointF to) {
  const QRectF area = QRectF(plot_area()).adjusted(-1.0, -1.0, 1.0, 1.0);
  const QRectF band = QRectF(from, to).normalized().intersected(area);
  Q_EMIT points_enclosed(graph::points_inside(content_, *plot_->xAxis, *plot_->yAxis, band));
}

void VexGraphControl::pan(QPointF from, QPointF to) {
  x_view_.drag(plot_->xAxis->pixelToCoord(from.x()), plot_->xAxis->pixelToCoord(to.x()));
  y_view_.drag(plot_->yAxis->pixelToCoord(from.y()), plot_->yAxis->pixelToCoord(to.y()));
  view_changed();
}

void VexGraphControl::turn_wheel(QPointF at, double notches) {
  constexpr double factor_of_a_notch = 0.85;
  const double factor = std::pow(factor_of_a_notch, notches);
  const QRectF area = plot_area();
  const bool beside = at.x() < area.left();
  const bool below = at.y() > area.bottom();
  const QPointF inside(std::clamp(at.x(), area.left(), area.right()),
                       std::clamp(at.y(), area.top(), area.bottom()));
  if (!beside || below) {
    x_view_.zoom_about(plot_->xAxis->pixelToCoord(inside.x()), factor);
  }
  if (!below || beside) {
    y_view_.zoom_about(plot_->yAxis->pixelToCoord(inside.y()), factor);
  }
  view_changed();
}

void VexGraphControl::follow_x_view(bool zoomed, double lower, double upper) {
  if (zoomed) {
    x_view_.show({lower, upper});
  } else {
    x_view_.reset();
  }
  apply_view();
  plot_->replot(QCustomPlot::rpQueuedReplot);
}

void VexGraphControl::view_changed() {
  QToolTip::hideText();
  pointer_marks_->set_point(std::nullopt);
  apply_view();
  plot_->replot(QCustomPlot::rpQueuedReplot);  // many moves of the pointer in a frame are one drawing
  Q_EMIT x_view_changed(x_view_.zoomed(), x_view_.shown().lower, x_view_.shown().upper);
}

void VexGraphControl::set_zoom_home() {
  x_view_.set_home(graph::resolve_range(x_limits_, content_.x_extent()), x_limits_.type);
  y_view_.set_home(graph::resolve_range(y_limits_, content_.y_extent()), y_limits_.type);
}

void VexGraphControl::apply_view() {
  // A linear axis may reach zero, which has no period.
  const bool periods = x_is_frequency_ && x_limits_.type == graph::AxisType::logarithmic &&
                       graph::FrequencyAxis::instance().shows_periods();
  set_axis_type(*plot_->xAxis, x_limits_.type,
                periods ? graph::TickLabels::inverse : graph::TickLabels::coordinates);
  set_axis_type(*plot_->yAxis, y_limits_.type, graph::TickLabels::coordinates);
  plot_->xAxis->setRange(x_view_.shown().lower, x_view_.shown().upper);
  plot_->yAxis->setRange(y_view_.shown().lower, y_view_.shown().upper);
  content_.mark_points_beyond(points_beyond_marked_ && !y_view_.zoomed());
}

void VexGraphControl::apply_layout() {
  graph::apply_fonts(*plot_, *y_title_item_, font(), x_labels_shown_);
  const QMargins margins = plot_->axisRect()->margins();
  content_.set_plot_width(width() - margins.left() - margins.right());
  plot_->xAxis->setLabel(
      x_labels_shown_ ? graph::fitting_title(x_title_, font(), width() - margins.left() - margins.right())
                      : QString());
  // Centred on the plot area, which lies above the widget's middle.
  const double centre = 0.5 * (margins.top() + height() - margins.bottom());
  y_title_item_->setText(
      graph::fitting_title(y_title_, font(), 2.0 * std::min(centre, height() - centre) - 4.0));
}

std::optional<graph::PointIndex> VexGraphControl::point_at(QPointF at) const {
  const QRectF area = QRectF(plot_area()).adjusted(-1.0, -1.0, 1.0, 1.0);
  return graph::nearest_point(content_, *plot_->xAxis, *plot_->yAxis, area, at, hit_radius);
}

QString VexGraphControl::point_text(graph::PointIndex at) const {
  const graph::PlotSeries& series = content_.series(at.series);
  const auto p = static_cast<std::size_t>(at.point);
  if (point_text_) {
    const QString text = point_text_(at.series, at.point);
    const graph::FrequencyAxis& axis = graph::FrequencyAxis::instance();
    return x_is_frequency_ && axis.shows_periods() && !text.isEmpty()
               ? text + QStringLiteral("\nPeriod %1 s").arg(axis.text(shown_x(series.x[p])))
               : text;
  }
  return QStringLiteral("%1, %2").arg(shown_x(series.x[p])).arg(series.y[p]);
}
