// section_geometry.h: a model of resistivities as coloured rectangles of a picture.
//
// Conventions: distance along the line and depth m; places in a picture are pixels from its upper left
// corner; resistivities log10 ohm-m.
#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "formats/occam/occam_model.h"

namespace Module_occam {

// The frame around the section, for its axes.
inline constexpr double side_frame = 50.0;  // at each side
inline constexpr double end_frame = 40.0;   // above and below

inline constexpr double max_decades = 10.0;  // log10 ohm-m either way; beyond it a value is no resistivity

struct PictureSize {
  double width = 0.0;
  double height = 0.0;
  friend bool operator==(const PictureSize&, const PictureSize&) = default;
};

/// What the user asks a section to show.
struct SectionChoices {
  double min_res = 0.0;  // of the first colour
  double max_res = 0.0;  // of the last one
  double max_depth = 0.0;
  bool log_depth = false;
  friend bool operator==(const SectionChoices&, const SectionChoices&) = default;
};

/// The same as typed. Nothing if a text isn't a number, the range is empty or the depth below 100 m.
struct TypedChoices {
  std::string min_res;
  std::string max_res;
  std::string max_depth;
  bool log_depth = false;
};
std::optional<SectionChoices> read_choices(const TypedChoices& typed);

/// A range of half decades that holds the parameters; those beyond 10 decades don't count. A decade to both
/// sides of parameters that are all the same, as in most start models; 0 to 3 without any.
struct ResistivityRange {
  double lower = 0.0;
  double upper = 3.0;
};
ResistivityRange suggested_range(std::span<const double> parameters);

/// From distance and depth to the picture and back.
///
/// On a logarithmic scale the depth counts from one block of the uppermost layer above the ground, in units
/// of that block. The pixels per decade depend on the depth alone, so the section may end above or below the
/// picture's end.
struct SectionMapping {
  double x_origin = 0.0;      // distance at the left end of the section
  double z_origin = 0.0;      // depth where the scale begins
  double x_scale = 0.0;       // pixels per metre
  double z_scale = 0.0;       // pixels per metre, or per decade
  double block_height = 0.0;  // of the uppermost layer; 0 on a linear scale

  [[nodiscard]] double to_x(double distance) const;
  [[nodiscard]] double to_y(double depth) const;
  [[nodiscard]] double distance_at(double x) const;
  [[nodiscard]] double depth_at(double y) const;
};

struct SectionRectangle {
  double left = 0.0;
  double top = 0.0;
  double right = 0.0;
  double bottom = 0.0;
  std::uint8_t colour = 0;   // palette entry
  float value = 0.0F;        // log10 ohm-m
  int parameter_number = 0;  // of the block, from 1
};

struct SectionGeometry {
  PictureSize picture = {};
  SectionMapping mapping = {};
  double right_distance = 0.0;  // at the right end of the section
  double bottom_depth = 0.0;    // that the scale is chosen for: the last node line within the depth asked for
  double end_depth = 0.0;       // where a drawing ends: the depth asked for, or the end of the mesh
  std::vector<SectionRectangle> rectangles = {};  // layer by layer, left to right
  double lowest = 0.0;                            // of the rectangles' values
  double highest = 0.0;

  /// The rectangle at a place; null where nothing is drawn.
  [[nodiscard]] const SectionRectangle* at(double x, double y) const;
};

/// The rectangles of the blocks down to the depth asked for, without the padding at both sides and blocks
/// without a parameter. A model without blocks between its padding gives none.
/// @param parameters  of the free blocks. Throws std::runtime_error if there are fewer than the model needs
SectionGeometry section_geometry(const OccamModel& model, std::span<const double> parameters,
                                 const SectionChoices& choices, PictureSize picture);

/// "2.00 / 100.00": a log10 resistivity and the resistivity, which is "***" beyond 10 decades.
std::string resistivity_text(double value);

}  // namespace Module_occam
