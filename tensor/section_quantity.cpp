#include "tensor/section_quantity.h"

#include <algorithm>

namespace Module_tensor {

namespace {

using Module_averaged_data::OutlierField;
using enum SectionQuantity;

constexpr std::array<std::optional<CurveType>, 2> xy{CurveType::ExHy, std::nullopt};
constexpr std::array<std::optional<CurveType>, 2> yx{CurveType::EyHx, std::nullopt};
constexpr std::array<std::optional<CurveType>, 2> off_diagonals{CurveType::ExHy, CurveType::EyHx};
constexpr std::array<std::optional<CurveType>, 2> vertical{CurveType::HzHx, CurveType::HzHy};

constexpr auto by_period = SectionAxis::period;
constexpr auto by_depth = SectionAxis::depth;
constexpr auto rho = ScaleQuantity::log_resistivity;
constexpr auto phase = ScaleQuantity::phase;
constexpr auto misfit = ScaleQuantity::misfit;
constexpr std::string_view in_errors = "errors";
constexpr std::string_view ohm_m = "ohm-m";
constexpr std::string_view degrees = "degrees";

// clang-format off
constexpr std::array quantities{
    QuantityFacts{rho_xy, "rho-xy", "Apparent resistivity xy", ohm_m, rho, by_period, false, OutlierField::resistivity, xy},
    QuantityFacts{rho_yx, "rho-yx", "Apparent resistivity yx", ohm_m, rho, by_period, false, OutlierField::resistivity, yx},
    QuantityFacts{rho_det, "rho-det", "Apparent resistivity, determinant", ohm_m, rho, by_period, false, OutlierField::both, off_diagonals},
    QuantityFacts{phase_xy, "phase-xy", "Phase xy", degrees, phase, by_period, false, OutlierField::phase, xy},
    QuantityFacts{phase_yx, "phase-yx", "Phase yx", degrees, phase, by_period, false, OutlierField::phase, yx},
    QuantityFacts{phase_det, "phase-det", "Phase, determinant", degrees, phase, by_period, false, OutlierField::both, off_diagonals},
    QuantityFacts{phase_max, "phase-max", "Largest principal phase", degrees, phase, by_period, false, OutlierField::both, off_diagonals},
    QuantityFacts{phase_min, "phase-min", "Least principal phase", degrees, phase, by_period, false, OutlierField::both, off_diagonals},
    QuantityFacts{ellipses_by_skew, "ellipses-skew", "Phase tensor ellipses by skew", degrees, ScaleQuantity::skew, by_period, true, OutlierField::both, off_diagonals},
    QuantityFacts{ellipses_by_phase_min, "ellipses-phase-min", "Phase tensor ellipses by least phase", degrees, phase, by_period, true, OutlierField::both, off_diagonals},
    QuantityFacts{ellipses_by_ellipticity, "ellipses-ellipticity", "Phase tensor ellipses by ellipticity", "", ScaleQuantity::ellipticity, by_period, true, OutlierField::both, off_diagonals},
    QuantityFacts{tipper_magnitude, "tipper", "Tipper magnitude", "", ScaleQuantity::tipper_magnitude, by_period, false, OutlierField::both, vertical},
    QuantityFacts{bostick_xy, "bostick-xy", "Niblett-Bostick resistivity xy", ohm_m, rho, by_depth, false, OutlierField::both, xy},
    QuantityFacts{bostick_yx, "bostick-yx", "Niblett-Bostick resistivity yx", ohm_m, rho, by_depth, false, OutlierField::both, yx},
    QuantityFacts{bostick_det, "bostick-det", "Niblett-Bostick resistivity, determinant", ohm_m, rho, by_depth, false, OutlierField::both, off_diagonals},
    QuantityFacts{misfit_rho_xy, "misfit-rho-xy", "Rho+ misfit, resistivity xy", in_errors, misfit, by_period, false, OutlierField::resistivity, xy},
    QuantityFacts{misfit_rho_yx, "misfit-rho-yx", "Rho+ misfit, resistivity yx", in_errors, misfit, by_period, false, OutlierField::resistivity, yx},
    QuantityFacts{misfit_phase_xy, "misfit-phase-xy", "Rho+ misfit, phase xy", in_errors, misfit, by_period, false, OutlierField::phase, xy},
    QuantityFacts{misfit_phase_yx, "misfit-phase-yx", "Rho+ misfit, phase yx", in_errors, misfit, by_period, false, OutlierField::phase, yx},
};
// clang-format on

}  // namespace

std::span<const QuantityFacts> section_quantities() { return quantities; }

const QuantityFacts& facts_of(SectionQuantity quantity) {
  return quantities[static_cast<std::size_t>(quantity)];
}

std::string_view curve_shown_by(const QuantityFacts& facts) {
  const auto& [one, other] = facts.curves;
  return one && !other ? curve_types[static_cast<std::size_t>(*one)] : std::string_view();
}

std::optional<SectionQuantity> quantity_of(std::string_view word) {
  const auto found = std::ranges::find(quantities, word, &QuantityFacts::word);
  return found == quantities.end() ? std::nullopt : std::optional(found->quantity);
}

}  // namespace Module_tensor
