#include "occam/results/section_geometry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <stdexcept>

#include "core/number_text.h"
#include "platform/graph/image_palette.h"

namespace Module_occam {

namespace {

constexpr double min_depth = 100.0;  // m, that can be asked for
constexpr std::size_t first_bottom = 1;

/// Index of the last node line within a depth, but always below the ground.
std::size_t bottom_row(const OccamModel& model, double max_depth) {
  const auto beyond = std::upper_bound(model.node_z.begin() + 1, model.node_z.end(), max_depth);
  return std::max(static_cast<std::size_t>(beyond - model.node_z.begin()) - 1, first_bottom);
}

double node(const std::vector<double>& nodes, int index) { return nodes[static_cast<std::size_t>(index)]; }

/// @return false if there is nothing between the padding of both sides
bool map_distance(const OccamModel& model, SectionGeometry& section) {
  const std::vector<int>& columns = model.layers.front().block_columns;
  const int first = std::abs(columns.front());
  const int end = model.mesh.columns() - std::abs(columns.back());
  if (end <= first) {
    return false;
  }
  SectionMapping& mapping = section.mapping;
  mapping.x_origin = node(model.node_x, first);
  section.right_distance = node(model.node_x, end);
  const double room = std::max(section.picture.width - 2.0 * side_frame, 1.0);
  mapping.x_scale = room / (section.right_distance - mapping.x_origin);
  return true;
}

void map_depth(const OccamModel& model, bool log_depth, std::size_t bottom, SectionGeometry& section) {
  constexpr double log_stretch = 1.4;
  SectionMapping& mapping = section.mapping;
  const double room = std::max(section.picture.height - 2.0 * end_frame, 1.0);
  section.bottom_depth = model.node_z[bottom];
  mapping.z_origin = model.node_z.front();
  if (!log_depth) {
    mapping.z_scale = room / (section.bottom_depth - mapping.z_origin);
    return;
  }
  constexpr double shallow = 10.0;  // m; a shallower scale has no decade to go by
  mapping.block_height = static_cast<double>(model.blocks.front().block_height);
  mapping.z_origin -= mapping.block_height;
  mapping.z_scale = log_stretch * room / std::log10(std::max(section.bottom_depth, shallow));
}

void add_layer(const OccamModel& model, int layer, std::span<const double> parameters,
               const SectionChoices& choices, SectionGeometry& section) {
  const int blocks = model.layers[static_cast<std::size_t>(layer)].layer_blocks();
  const SectionMapping& mapping = section.mapping;
  for (int place = 1; place < blocks - 1; ++place) {
    const OccamBlock& block = model.layer_block(layer, place);
    if (block.parameter_number < 1) {
      continue;
    }
    const double value = parameters[static_cast<std::size_t>(block.parameter_number) - 1];
    const BlockExtent& extent = block.block_extent;
    section.lowest = std::min(section.lowest, value);
    section.highest = std::max(section.highest, value);
    section.rectangles.push_back(
        {mapping.to_x(node(model.node_x, extent.left_column)),
         mapping.to_y(node(model.node_z, extent.top_row)),
         mapping.to_x(node(model.node_x, extent.end_column)),
         mapping.to_y(node(model.node_z, extent.end_row)),
         static_cast<std::uint8_t>(graph::palette_entry(value, choices.min_res, choices.max_res)),
         static_cast<float>(value), block.parameter_number});
  }
}

}  // namespace

std::optional<SectionChoices> read_choices(const TypedChoices& typed) {
  if (!is_numeric(typed.min_res) || !is_numeric(typed.max_res) || !is_numeric(typed.max_depth)) {
    return {};
  }
  const SectionChoices choices{numeric_value(typed.min_res), numeric_value(typed.max_res),
                               numeric_value(typed.max_depth), typed.log_depth};
  const double range = choices.max_res - choices.min_res;
  if (!(range > 0.0) || !std::isfinite(range) || !(choices.max_depth >= min_depth)) {
    return {};
  }
  return choices;
}

ResistivityRange suggested_range(std::span<const double> parameters) {
  double lowest = max_decades;
  double highest = -max_decades;
  for (const double value : parameters) {
    if (std::abs(value) <= max_decades) {
      lowest = std::min(lowest, value);
      highest = std::max(highest, value);
    }
  }
  if (lowest > highest) {
    return {};
  }
  if (lowest == highest) {
    return {lowest - 1.0, lowest + 1.0};
  }
  const double lower = std::floor(2.0 * lowest) / 2.0;
  return {lower, std::max(std::ceil(2.0 * highest) / 2.0, lower + 0.5)};
}

double SectionMapping::to_x(double distance) const { return (distance - x_origin) * x_scale + side_frame; }

double SectionMapping::to_y(double depth) const {
  const double scaled = block_height > 0.0 ? std::log10((depth - z_origin) / block_height) : depth - z_origin;
  return scaled * z_scale + end_frame;
}

double SectionMapping::distance_at(double x) const { return (x - side_frame) / x_scale + x_origin; }

double SectionMapping::depth_at(double y) const {
  const double scaled = (y - end_frame) / z_scale;
  return (block_height > 0.0 ? std::pow(10.0, scaled) * block_height : scaled) + z_origin;
}

const SectionRectangle* SectionGeometry::at(double x, double y) const {
  const auto over = std::ranges::find_if(rectangles, [x, y](const SectionRectangle& r) {
    return x >= r.left && x < r.right && y >= r.top && y < r.bottom;
  });
  return over == rectangles.end() ? nullptr : &*over;
}

SectionGeometry section_geometry(const OccamModel& model, std::span<const double> parameters,
                                 const SectionChoices& choices, PictureSize picture) {
  constexpr double above_all = 1000.0;  // log10 ohm-m
  SectionGeometry section{.picture = picture, .lowest = above_all, .highest = -above_all};
  if (model.layers.empty() || !map_distance(model, section)) {
    return section;
  }
  if (parameters.size() < static_cast<std::size_t>(model.num_free_params)) {
    throw std::runtime_error("the iteration has " + std::to_string(parameters.size()) +
                             " parameters, the model " + std::to_string(model.num_free_params));
  }
  const std::size_t bottom = bottom_row(model, choices.max_depth);
  section.end_depth = std::min(choices.max_depth, model.node_z.back());
  map_depth(model, choices.log_depth, bottom, section);
  // The number of a row of nodes, from 1, is used as the number of layers: a layer has one row of cells or
  // more, so every layer that reaches into the depth is included.
  const int layers = static_cast<int>(std::min(bottom + 1, model.layers.size()));
  section.rectangles.reserve(static_cast<std::size_t>(model.num_blocks()));
  for (int layer = 0; layer < layers; ++layer) {
    add_layer(model, layer, parameters, choices, section);
  }
  return section;
}

std::string resistivity_text(double value) {
  return format_number(value, "0.00") + " / " +
         (std::abs(value) > max_decades ? "***" : format_number(std::pow(10.0, value), "0.00"));
}

}  // namespace Module_occam
