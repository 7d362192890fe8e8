#include "platform/graph/graph_content.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace graph {
namespace {

const QColor masked_colour(150, 150, 150);

// Distinct hues for normal and colour-blind eyes, dark enough on white. Palette styles use the first five.
const std::array<QColor, 8> palette = {QColor(0, 98, 177),   QColor(213, 94, 0),   QColor(0, 145, 105),
                                       QColor(178, 70, 150), QColor(196, 150, 0),  QColor(60, 170, 220),
                                       QColor(120, 80, 40),  QColor(120, 130, 200)};
static_assert(palette_size <= 8);

constexpr int many_series = 24;  // from here on small markers keep the curves apart

QColor to_qcolor(const Colour& colour) { return QColor(colour.red, colour.green, colour.blue); }

}  // namespace

QColor palette_style_colour(int style) {
  return palette[static_cast<std::size_t>((style - first_palette_style) % palette_size)];
}

void GraphContent::clear() {
  table_.series.clear();
  styles_.clear();
  series_styles_.clear();
}

void GraphContent::set_table(PlotTable table) { table_ = std::move(table); }

void GraphContent::set_series_style(int series, const SeriesStyle& style) {
  if (series < 0) {
    return;
  }
  const auto index = static_cast<std::size_t>(series);
  if (series_styles_.size() <= index) {
    series_styles_.resize(index + 1);
  }
  series_styles_[index] = style;
}

int GraphContent::point_count(int series) const {
  const PlotSeries& s = this->series(series);
  return static_cast<int>(std::min(s.x.size(), s.y.size()));
}

SeriesStyle GraphContent::series_style(int series) const {
  const auto index = static_cast<std::size_t>(series);
  return index < series_styles_.size() ? series_styles_[index] : SeriesStyle{};
}

int GraphContent::point_style(int series, int point) const {
  const auto s = static_cast<std::size_t>(series);
  const auto p = static_cast<std::size_t>(point);
  if (s >= styles_.size() || p >= styles_[s].size()) {
    return used_point;
  }
  return styles_[s][p] - rings(series, point);
}

int GraphContent::rings(int series, int point) const {
  const auto s = static_cast<std::size_t>(series);
  const auto p = static_cast<std::size_t>(point);
  if (s >= styles_.size() || p >= styles_[s].size()) {
    return 0;
  }
  return (styles_[s][p] + ringed / 2) & (ringed | chosen);  // a style below 0 keeps its rings
}

bool GraphContent::exists(PointIndex at) const {
  return at.series >= 0 && at.series < series_count() && at.point >= 0 && at.point < point_count(at.series);
}

bool GraphContent::is_null(double value) const { return !std::isfinite(value) || value <= null_limit; }

bool GraphContent::is_drawn(int series, int point, bool x_logarithmic, bool y_logarithmic) const {
  const PlotSeries& s = this->series(series);
  const double x = s.x[static_cast<std::size_t>(point)];
  const double y = s.y[static_cast<std::size_t>(point)];
  return !is_null(x) && !is_null(y) && (!x_logarithmic || x > 0.0) && (!y_logarithmic || y > 0.0);
}

std::optional<double> GraphContent::error(int series, int point) const {
  const std::vector<double>& errors = this->series(series).error;
  const auto p = static_cast<std::size_t>(point);
  if (p >= errors.size() || is_null(errors[p]) || !(errors[p] > 0.0)) {
    return std::nullopt;
  }
  return errors[p];
}

bool GraphContent::has_errors() const {
  return std::any_of(table_.series.begin(), table_.series.end(),
                     [](const PlotSeries& series) { return !series.error.empty(); });
}

QColor GraphContent::line_colour(int series) const {
  const std::optional<Colour> colour = series_style(series).colour;
  return colour ? to_qcolor(*colour) : palette[static_cast<std::size_t>(series % palette_size)];
}

QColor GraphContent::point_colour(int series, int point) const {
  const int style = point_style(series, point);
  if (style == masked_point) {
    return masked_colour;
  }
  if (style == unused_point) {
    return to_qcolor(unused_colour);
  }
  if (style >= first_palette_style) {
    return palette_style_colour(style);
  }
  if (style < 0) {
    const auto k = static_cast<std::size_t>(-(style + 1));
    return palette[k % palette.size()];
  }
  return line_colour(series);
}

double GraphContent::marker_radius(int series) const {
  const SeriesStyle style = series_style(series);
  const double width = std::clamp(style.width, 1.0, 4.0);
  if (style.marker == Marker::dot) {
    return std::max(0.7 * width, 1.0);
  }
  const double largest = series_count() >= many_series ? 2.2 : 3.0;
  const double distance = plot_width_ / std::max(1, point_count(series));
  return std::clamp(0.4 * distance, 1.6, largest) + 0.4 * (width - 1.0);
}

std::vector<int> GraphContent::drawing_order() const {
  std::vector<int> order(table_.series.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [this](int a, int b) { return series_style(a).width < series_style(b).width; });
  return order;
}

DataExtent GraphContent::x_extent() const {
  DataExtent extent;
  for (int s = 0; s < series_count(); ++s) {
    for (int p = 0; p < point_count(s); ++p) {
      if (is_drawn(s, p, false, false)) {
        extent.include(series(s).x[static_cast<std::size_t>(p)]);
      }
    }
  }
  return extent;
}

DataExtent GraphContent::y_extent() const {
  DataExtent extent;
  for (int s = 0; s < series_count(); ++s) {
    for (int p = 0; p < point_count(s); ++p) {
      if (is_drawn(s, p, false, false)) {
        extent.include(series(s).y[static_cast<std::size_t>(p)]);
      }
    }
  }
  return extent;
}

}  // namespace graph
