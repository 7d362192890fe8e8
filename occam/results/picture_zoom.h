// picture_zoom.h: the part of a picture that is in view.
#pragma once

namespace Module_occam {

/// Places are shares of the whole picture, 0 to 1 from its upper left corner.
class PictureZoom {
 public:
  [[nodiscard]] double left() const { return left_; }
  [[nodiscard]] double top() const { return top_; }
  [[nodiscard]] double width() const { return width_; }
  [[nodiscard]] double height() const { return height_; }
  [[nodiscard]] bool zoomed() const { return width_ < 1.0 || height_ < 1.0; }

  /// From the whole picture to what is in view, both as shares, and back.
  [[nodiscard]] double to_view_x(double x) const { return (x - left_) / width_; }
  [[nodiscard]] double to_view_y(double y) const { return (y - top_) / height_; }
  [[nodiscard]] double from_view_x(double x) const { return left_ + x * width_; }
  [[nodiscard]] double from_view_y(double y) const { return top_ + y * height_; }

  /// Scales the view by `factor` (below 1 zooms in) so that a place in it stays where it is.
  void zoom_about(double view_x, double view_y, double factor);
  /// Moves the picture along with the pointer, by shares of the view.
  void drag(double view_dx, double view_dy);
  /// Shows a rectangle of the view; one that is too small to be meant is left alone.
  void show(double view_left, double view_top, double view_right, double view_bottom);
  void reset() { *this = {}; }

 private:
  void set(double left, double top, double width, double height);

  double left_ = 0.0;
  double top_ = 0.0;
  double width_ = 1.0;
  double height_ = 1.0;
};

}  // namespace Module_occam
