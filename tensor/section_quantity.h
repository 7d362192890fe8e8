// section_quantity.h: what a pseudo-section can show of a line.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "reduction/edits/masks.h"
#include "tensor/colour_scale.h"
#include "tensor/line_curves.h"

namespace Module_tensor {

/// In the order of lists. xy and yx are the readings ExHy and EyHx; determinant, phase tensor and tipper have
/// no direction.
enum class SectionQuantity : std::uint8_t {
  rho_xy,
  rho_yx,
  rho_det,
  phase_xy,
  phase_yx,
  phase_det,
  phase_max,
  phase_min,
  ellipses_by_skew,
  ellipses_by_phase_min,
  ellipses_by_ellipticity,
  tipper_magnitude,
  bostick_xy,
  bostick_yx,
  bostick_det,
  misfit_rho_xy,
  misfit_rho_yx,
  misfit_phase_xy,
  misfit_phase_yx
};

/// What the cells of a section are put in place by.
enum class SectionAxis : std::uint8_t { period, depth };

struct QuantityFacts {
  SectionQuantity quantity = SectionQuantity::rho_xy;
  std::string_view word;   // on a command line
  std::string_view title;  // in a list and above a picture
  std::string_view unit;   // of its numbers; empty if it has none
  ScaleQuantity scale = ScaleQuantity::phase;
  SectionAxis axis = SectionAxis::period;
  bool ellipses = false;
  // What is masked with a point of it; `both` stands for resistivity and phase.
  Module_averaged_data::OutlierField component = Module_averaged_data::OutlierField::both;
  std::array<std::optional<CurveType>, 2> curves;  // which it comes from, or the off-diagonals of a tensor

  /// Its values are decimal logarithms; people read the number itself.
  [[nodiscard]] bool is_logarithmic() const { return scale == ScaleQuantity::log_resistivity; }
  [[nodiscard]] bool is_misfit() const { return scale == ScaleQuantity::misfit; }
};

/// In the order of SectionQuantity.
std::span<const QuantityFacts> section_quantities();
const QuantityFacts& facts_of(SectionQuantity quantity);
/// The data type of the one curve that a quantity shows; empty if it comes from several.
std::string_view curve_shown_by(const QuantityFacts& facts);
/// By the word of a command line.
std::optional<SectionQuantity> quantity_of(std::string_view word);

}  // namespace Module_tensor
