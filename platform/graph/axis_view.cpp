#include "platform/graph/axis_view.h"

#include <cmath>

namespace graph {
namespace {

constexpr double narrowest = 1e-3;  // of the home range
constexpr double widest = 10.0;

}  // namespace

double AxisView::to_scale(double coordinate) const {
  return type_ == AxisType::logarithmic ? std::log10(coordinate) : coordinate;
}

double AxisView::from_scale(double position) const {
  return type_ == AxisType::logarithmic ? std::pow(10.0, position) : position;
}

void AxisView::set_home(const AxisRange& home, AxisType type) {
  const bool same_kind = type == type_;
  home_ = home;
  type_ = type;
  if (!zoomed_ || !same_kind || shown_.upper <= home.lower || shown_.lower >= home.upper) {
    reset();
  }
}

void AxisView::reset() {
  shown_ = home_;
  zoomed_ = false;
}

void AxisView::show(const AxisRange& range) {
  const double span = to_scale(range.upper) - to_scale(range.lower);
  const double home_span = to_scale(home_.upper) - to_scale(home_.lower);
  if (std::isfinite(span) && span >= narrowest * home_span && span <= widest * home_span) {
    shown_ = range;
    zoomed_ = shown_ != home_;
  }
}

void AxisView::zoom_about(double centre, double factor) {
  const double pivot = to_scale(centre);
  show({from_scale(pivot + (to_scale(shown_.lower) - pivot) * factor),
        from_scale(pivot + (to_scale(shown_.upper) - pivot) * factor)});
}

void AxisView::drag(double from, double to) {
  const double shift = to_scale(from) - to_scale(to);
  show({from_scale(to_scale(shown_.lower) + shift), from_scale(to_scale(shown_.upper) + shift)});
}

}  // namespace graph
