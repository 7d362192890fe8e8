#include "tensor/plan_frame.h"

#include <algorithm>
#include <cmath>

namespace Module_tensor {

namespace {

constexpr double least_extent = 1000.0;  // m, of a plan of one place
constexpr double least_scale = 1e-7;     // pixels for each metre: the earth in a few pixels
constexpr double largest_scale = 1e4;

}  // namespace

PlanFrame fitted_frame(std::span<const MapSite> sites, FrameSize size, double margin) {
  PlanFrame frame;
  if (sites.empty()) {
    return frame;
  }
  const auto [west, east] = std::ranges::minmax_element(sites, {}, &MapSite::east);
  const auto [south, north] = std::ranges::minmax_element(sites, {}, &MapSite::north);
  frame.east = 0.5 * (west->east + east->east);
  frame.north = 0.5 * (south->north + north->north);
  double width = east->east - west->east;
  double height = north->north - south->north;
  if (width == 0.0 && height == 0.0) {
    width = height = least_extent;
  }
  const auto scale_of = [margin](double pixels, double extent) {
    return extent > 0.0 ? std::max(pixels - 2.0 * margin, 1.0) / extent : largest_scale;
  };
  frame.scale = std::clamp(std::min(scale_of(size.width, width), scale_of(size.height, height)), least_scale,
                           largest_scale);
  return frame;
}

PicturePlace to_picture(const PlanFrame& frame, FrameSize size, double east, double north) {
  return {0.5 * size.width + (east - frame.east) * frame.scale,
          0.5 * size.height - (north - frame.north) * frame.scale};
}

PlanFrame zoomed(const PlanFrame& frame, FrameSize size, double factor, PicturePlace about) {
  PlanFrame result = frame;
  result.scale = std::clamp(frame.scale * factor, least_scale, largest_scale);
  const double metres = 1.0 / frame.scale - 1.0 / result.scale;  // by which a pixel's length has changed
  result.east += (about.x - 0.5 * size.width) * metres;
  result.north -= (about.y - 0.5 * size.height) * metres;
  return result;
}

PlanFrame dragged(const PlanFrame& frame, double x, double y) {
  return {frame.east - x / frame.scale, frame.north + y / frame.scale, frame.scale};
}

double bar_length(const PlanFrame& frame, double pixels) {
  const double longest = pixels / frame.scale;
  const double decade = std::pow(10.0, std::floor(std::log10(longest)));
  for (const double step : {5.0, 2.0}) {
    if (step * decade <= longest) {
      return step * decade;
    }
  }
  return decade;
}

}  // namespace Module_tensor
