// site_map.h: the sites of a line or a survey in plan, and what is drawn of each at one period.
//
// Conventions: places in m; angles in degrees, clockwise from true north; frequency Hz.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "numerics/impedance/phase_tensor.h"
#include "numerics/impedance/tipper.h"
#include "projections/survey_places.h"
#include "tensor/colour_scale.h"
#include "tensor/station_tensor.h"

namespace Module_tensor {

struct MapSite {
  std::string line;
  double east = 0.0;        // m
  double north = 0.0;       // m
  double true_north = 0.0;  // how far it lies clockwise of up on the plan
  StationTensor station;    // in axes whose x is true north
};

struct SiteMap {
  std::vector<MapSite> sites;                // that have a place
  double spacing = 0.0;                      // m, typical one of neighbours; 0: there are no two places
  std::vector<std::string> without_place;    // the others, as station_text
  Module_projections::PlaceSource source{};  // of the places
  std::string system;                        // name of the map system, of places of sites
  numerics::geodesy::TransformParameters parameters{};  // of that system
};

/// The stations of one line, in axes whose x is true north.
struct LineStations {
  std::string line;
  std::vector<StationTensor> stations;
};

/// The stations where the survey places them.
SiteMap site_map(std::span<const LineStations> lines, const Module_projections::SurveyPlaces& places);

/// "sites, in UTM on WGS 84": what the places are.
std::string places_text(const SiteMap& map);

/// All frequencies at which a site has a tensor or a tipper, from the shortest period on. Those within 1
/// percent count as one.
std::vector<double> map_frequencies(std::span<const MapSite> sites);

/// Nothing is interpolated between the frequencies of a site: a glyph stands for what was measured. The
/// nearest one stands in for the one that is shown if it is within so much of it.
inline constexpr double frequency_tolerance = 0.1;

struct ArrowChoice {
  numerics::impedance::ArrowConvention convention = numerics::impedance::ArrowConvention::parkinson;
  bool reverse_imaginary = false;

  bool operator==(const ArrowChoice&) const = default;
};

/// What a site has at a frequency. The frequencies are its own.
struct SiteValues {
  double tensor_frequency = 0.0;
  std::optional<numerics::impedance::PhaseTensor> phase_tensor;
  double tipper_frequency = 0.0;
  std::optional<numerics::impedance::Arrow> real_arrow;
  std::optional<numerics::impedance::Arrow> imaginary_arrow;

  [[nodiscard]] bool any() const { return phase_tensor || real_arrow; }
};
/// Of the tensor and of the tipper nearest to a frequency, within frequency_tolerance of it.
SiteValues values_at(const StationTensor& station, double frequency, const ArrowChoice& arrows);

/// What the colour of an ellipse says.
enum class EllipseFill : std::uint8_t { geometric_phase, minimum_phase, skew, ellipticity };
inline constexpr std::array<std::string_view, 4> ellipse_fill_names{"Geometric mean phase", "Minimum phase",
                                                                    "Skew (beta)", "Ellipticity"};
std::string_view unit_of(EllipseFill fill);
ColourScale usual_scale(EllipseFill fill);
numerics::impedance::Estimate fill_value(const numerics::impedance::PhaseTensor& tensor, EllipseFill fill);

/// A skew that isn't known to the limit that tells three-dimensional ground, or an ellipse without a
/// direction.
bool is_uncertain(const numerics::impedance::PhaseTensor& tensor);

/// "Period 12.6 s (0.0794 Hz)".
std::string period_text(double frequency);
/// "Real arrows point to conductors (Parkinson); imaginary arrows as they are".
std::string convention_text(const ArrowChoice& arrows);
/// All values of a site with their errors, a line each.
std::vector<std::string> value_texts(const SiteValues& values, double frequency);

}  // namespace Module_tensor
