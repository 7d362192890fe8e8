#include "occam/results/picture_zoom.h"

#include <algorithm>
#include <cmath>

namespace Module_occam {

namespace {
constexpr double smallest_view = 1.0 / 400.0;  // of the whole, each way
constexpr double smallest_drag = 0.01;         // of the view
}  // namespace

void PictureZoom::set(double left, double top, double width, double height) {
  width_ = std::clamp(width, smallest_view, 1.0);
  height_ = std::clamp(height, smallest_view, 1.0);
  left_ = std::clamp(left, 0.0, 1.0 - width_);
  top_ = std::clamp(top, 0.0, 1.0 - height_);
}

void PictureZoom::zoom_about(double view_x, double view_y, double factor) {
  const double x = from_view_x(view_x);
  const double y = from_view_y(view_y);
  const double width = std::clamp(width_ * factor, smallest_view, 1.0);
  const double height = std::clamp(height_ * factor, smallest_view, 1.0);
  set(x - view_x * width, y - view_y * height, width, height);
}

void PictureZoom::drag(double view_dx, double view_dy) {
  set(left_ - view_dx * width_, top_ - view_dy * height_, width_, height_);
}

void PictureZoom::show(double view_left, double view_top, double view_right, double view_bottom) {
  const double width = std::abs(view_right - view_left);
  const double height = std::abs(view_bottom - view_top);
  if (width < smallest_drag || height < smallest_drag) {
    return;
  }
  set(from_view_x(std::min(view_left, view_right)), from_view_y(std::min(view_top, view_bottom)),
      width * width_, height * height_);
}

}  // namespace Module_occam
