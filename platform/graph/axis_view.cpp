#include "platform/graph/axis_view.h"

#include <algorithm>
#include <cmath>

namespace graph {

double AxisView::to_scale(double coordinate) const {
  return type_ == AxisType::logarithmic ? std::log10(coordinate) : coordinate;
}

double AxisView::from_scale(double position) const {
  return type_ == AxisType::logarithmic ? std::pow(10.0, position) : position;
}

double AxisView::to_view(double coordinate) const {
  return (to_scale(coordinate) - to_scale(shown_.lower)) / scale_span(shown_);
}

double AxisView::from_view(double place) const {
  return from_scale(to_scale(shown_.lower) + place * scale_span(shown_));
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
  const double home_span = scale_span(home_);
  const double narrowest = rule_.narrowest * home_span;
  const double widest = rule_.widest * home_span;
  const double span = scale_span(range);
  if (!std::isfinite(span)) {
    return;
  }
  if (rule_.held_inside) {
    const double held_span = std::clamp(span, narrowest, widest);
    const double home_lower = to_scale(home_.lower);
    const double lower = std::clamp(to_scale(range.lower), home_lower, home_lower + home_span - held_span);
    shown_ = {from_scale(lower), from_scale(lower + held_span)};
  } else if (span >= narrowest && span <= widest) {
    shown_ = range;
  } else {
    return;
  }
  zoomed_ = shown_ != home_;
}

void AxisView::zoom_about(double centre, double factor) {
  const double home_span = scale_span(home_);
  const double span = scale_span(shown_);
  double scaled_span = span * factor;
  if (rule_.held_inside) {  // cut here, or the centre would move once the limit is reached
    scaled_span = std::clamp(scaled_span, rule_.narrowest * home_span, rule_.widest * home_span);
  }
  const double pivot = to_scale(centre);
  const double scaled = scaled_span / span;
  show({from_scale(pivot + (to_scale(shown_.lower) - pivot) * scaled),
        from_scale(pivot + (to_scale(shown_.upper) - pivot) * scaled)});
}

void AxisView::drag(double from, double to) {
  const double shift = to_scale(from) - to_scale(to);
  show({from_scale(to_scale(shown_.lower) + shift), from_scale(to_scale(shown_.upper) + shift)});
}

}  // namespace graph
