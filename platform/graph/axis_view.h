// axis_view.h: the part of one axis that is in view: its home range, or what a person has zoomed to.
#pragma once
#include "platform/graph/axis_limits.h"

namespace graph {

class AxisView {
 public:
  /// The range of the unzoomed axis. A zoom stays as it is, unless the kind of axis changes or the zoomed
  /// part lies wholly outside the new range.
  void set_home(const AxisRange& home, AxisType type);

  const AxisRange& shown() const { return shown_; }
  bool zoomed() const { return zoomed_; }
  void reset();

  /// Zooms to a range. Ranges too narrow for readable ticks, or far wider than the home range, leave the view
  /// as it is.
  void show(const AxisRange& range);

  /// Scales the range by `factor` (below 1 zooms in) so that `centre` keeps its place.
  void zoom_about(double centre, double factor);

  /// Moves the range so that what was at `from` comes to lie at `to`.
  void drag(double from, double to);

 private:
  double to_scale(double coordinate) const;  // logarithm or the coordinate itself
  double from_scale(double position) const;

  AxisRange home_;
  AxisRange shown_;
  AxisType type_ = AxisType::linear;
  bool zoomed_ = false;
};

}  // namespace graph
