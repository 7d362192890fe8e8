// axis_view.h: the part of one axis that is in view: its home range, or what the user has zoomed to.
#pragma once
#include "platform/graph/axis_limits.h"

namespace graph {

/// How far a zoom may go.
struct ZoomRule {
  double narrowest = 1e-3;   // of the home range
  double widest = 10.0;      // of the home range
  bool held_inside = false;  // true: the view stays within the home range, and a zoom beyond a limit stops
                             // there; false: the view may leave it, and a zoom beyond a limit does nothing
};

/// An axis of a picture of something that ends: beside it there is nothing to see.
inline constexpr ZoomRule picture_zoom{.narrowest = 1.0 / 400.0, .widest = 1.0, .held_inside = true};

class AxisView {
 public:
  AxisView() = default;
  explicit AxisView(const ZoomRule& rule) : rule_(rule) {}

  /// The range of the unzoomed axis. A zoom stays as it is, unless the kind of axis changes or the zoomed
  /// part lies wholly outside the new range.
  void set_home(const AxisRange& home, AxisType type);

  const AxisRange& shown() const { return shown_; }
  bool zoomed() const { return zoomed_; }
  void reset();

  /// Zooms to a range, as far as the rule allows.
  void show(const AxisRange& range);

  /// Scales the range by `factor` (below 1 zooms in) so that `centre` keeps its place.
  void zoom_about(double centre, double factor);

  /// Moves the range so that what was at `from` comes to lie at `to`.
  void drag(double from, double to);

  /// Where a coordinate lies in the view: 0 at its lower end, 1 at its upper end.
  double to_view(double coordinate) const;
  double from_view(double place) const;

 private:
  double to_scale(double coordinate) const;  // logarithm or the coordinate itself
  double from_scale(double position) const;
  double scale_span(const AxisRange& range) const { return to_scale(range.upper) - to_scale(range.lower); }

  ZoomRule rule_;
  AxisRange home_;
  AxisRange shown_;
  AxisType type_ = AxisType::linear;
  bool zoomed_ = false;
};

}  // namespace graph
