#include "tensor/tensor_quantities.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "core/number_text.h"
#include "numerics/impedance/angles.h"
#include "numerics/impedance/bostick.h"
#include "numerics/impedance/effective_impedance.h"
#include "numerics/impedance/impedance_strike.h"

namespace Module_tensor {

using namespace numerics::impedance;

namespace {

constexpr const char* ohm_m = "ohm-m";
constexpr const char* degree = "degrees";
constexpr const char* metre = "m";
constexpr const char* field_unit = "mV/km/nT";

using Quantities = std::vector<TensorQuantity>;
using OfTensor = std::function<Estimate(const Tensor&, double frequency)>;
using OfTipper = std::function<Estimate(const Tipper&)>;

/// An angle of the axes of the readings as one from north.
Estimate from_north(Estimate angle, double axes, double period) {
  return {within_period(angle.value + axes, period), angle.error};
}

void add(Quantities& quantities, const std::string& name, const char* unit, const OfTensor& of) {
  quantities.push_back({name, unit, [of](const PointValues& point) {
                          return point.tensor() ? of(*point.tensor(), point.frequency()) : Estimate{};
                        }});
}

void add(Quantities& quantities, const std::string& name, const char* unit, const OfTipper& of) {
  quantities.push_back({name, unit, [of](const PointValues& point) {
                          return point.tipper() ? of(*point.tipper()) : Estimate{};
                        }});
}

/// @param period  degrees, above 0: it is an angle of the axes
void add(Quantities& quantities, const std::string& name, const char* unit, Estimate PhaseTensor::*member,
         double period = 0.0) {
  quantities.push_back({name, unit, [member, period](const PointValues& point) -> Estimate {
                          if (!point.phase_tensor()) {
                            return {};
                          }
                          const Estimate& estimate = (*point.phase_tensor()).*member;
                          return period > 0.0 ? from_north(estimate, point.axes(), period) : estimate;
                        }});
}

Estimate real_part(std::complex<double> z, const PartCovariance& known) {
  return {z.real(), std::sqrt(known.real)};
}

Estimate imaginary_part(std::complex<double> z, const PartCovariance& known) {
  return {z.imag(), std::sqrt(known.imaginary)};
}

ApparentEarth earth_of_element(const Tensor& tensor, Element element, double frequency) {
  return apparent_earth(tensor[element], tensor.known(element), frequency);
}

constexpr std::array<const char*, element_count> element_names{"xx", "xy", "yx", "yy"};

/// What is turned from the axes of the readings into those that are asked for.
struct Turned {
  std::optional<double> azimuth;  // of x, degrees from north; none: not at all

  [[nodiscard]] std::string in_name() const { return azimuth ? plain_text(*azimuth) : std::string(); }
  template <class Part>
  [[nodiscard]] Part operator()(const Part& part, double axes) const {
    return azimuth ? rotated(part, *azimuth - axes) : part;
  }
};

void add_elements(Quantities& quantities, const Turned& turned) {
  for (std::size_t index = 0; index < element_count; ++index) {
    const std::string name = "z" + turned.in_name() + "_" + element_names[index];
    const auto part = [&](const char* suffix, auto part_of) {
      quantities.push_back({name + suffix, field_unit, [=](const PointValues& point) -> Estimate {
                              if (!point.tensor()) {
                                return {};
                              }
                              const Tensor tensor = turned(*point.tensor(), point.axes());
                              return part_of(tensor.z[index], tensor.covariance[index]);
                            }});
    };
    part("_re", real_part);
    part("_im", imaginary_part);
  }
}

void add_tipper(Quantities& quantities, const Turned& turned) {
  const auto part = [&](const std::string& name, auto component, auto covariance, auto part_of) {
    quantities.push_back({name, "", [=](const PointValues& point) -> Estimate {
                            if (!point.tipper()) {
                              return {};
                            }
                            const Tipper tipper = turned(*point.tipper(), point.axes());
                            return part_of(tipper.*component, tipper.*covariance);
                          }});
  };
  const std::string x = "tx" + turned.in_name();
  const std::string y = "ty" + turned.in_name();
  part(x + "_re", &Tipper::x, &Tipper::covariance_x, real_part);
  part(x + "_im", &Tipper::x, &Tipper::covariance_x, imaginary_part);
  part(y + "_re", &Tipper::y, &Tipper::covariance_y, real_part);
  part(y + "_im", &Tipper::y, &Tipper::covariance_y, imaginary_part);
}

/// Resistivity and phase of the off-diagonal elements in turned axes.
void add_turned_earths(Quantities& quantities, const Turned& turned) {
  for (const Element element : {Element::xy, Element::yx}) {
    const std::string name = turned.in_name() + "_" + element_names[static_cast<std::size_t>(element)];
    const auto part = [&](const std::string& prefix, const char* unit, Estimate ApparentEarth::*member) {
      quantities.push_back({prefix + name, unit, [=](const PointValues& point) -> Estimate {
                              if (!point.tensor()) {
                                return {};
                              }
                              const Tensor tensor = turned(*point.tensor(), point.axes());
                              return earth_of_element(tensor, element, point.frequency()).*member;
                            }});
    };
    part("rho", ohm_m, &ApparentEarth::resistivity);
    part("phi", degree, &ApparentEarth::phase);
  }
}

void add_phase_tensor(Quantities& quantities) {
  add(quantities, "pt_xx", "", &PhaseTensor::xx);
  add(quantities, "pt_xy", "", &PhaseTensor::xy);
  add(quantities, "pt_yx", "", &PhaseTensor::yx);
  add(quantities, "pt_yy", "", &PhaseTensor::yy);
  add(quantities, "pt_alpha", degree, &PhaseTensor::alpha, 180.0);
  add(quantities, "pt_azimuth", degree, &PhaseTensor::azimuth, 180.0);
  add(quantities, "pt_beta", degree, &PhaseTensor::beta);
  add(quantities, "pt_det", "", &PhaseTensor::determinant);
  add(quantities, "pt_ellipticity", "", &PhaseTensor::ellipticity);
  add(quantities, "pt_phi_max", degree, &PhaseTensor::phase_max);
  add(quantities, "pt_phi_min", degree, &PhaseTensor::phase_min);
  add(quantities, "pt_phi_geometric", degree, &PhaseTensor::geometric_phase);
  for (const double limit : {3.0, 5.0}) {
    quantities.push_back(
        {"dimension_beta" + plain_text(limit), "", [limit](const PointValues& point) -> Estimate {
           if (!point.phase_tensor()) {
             return {};
           }
           const Dimensionality found = dimensionality(*point.phase_tensor(), {.skew = limit});
           return {found == Dimensionality::one ? 1.0 : found == Dimensionality::two ? 2.0 : 3.0, not_known};
         }});
  }
}

void add_strikes_and_skews(Quantities& quantities) {
  quantities.push_back({"swift_strike", degree, [](const PointValues& point) {
                          return point.tensor()
                                     ? from_north(swift_strike(*point.tensor()).strike, point.axes(), 90.0)
                                     : Estimate{};
                        }});
  add(quantities, "swift_skew", "", OfTensor([](const Tensor& t, double) { return swift_strike(t).skew; }));
  add(quantities, "bahr_skew", "", OfTensor([](const Tensor& t, double) { return bahr_skew(t).skew; }));
  add(quantities, "bahr_mu", "", OfTensor([](const Tensor& t, double) { return bahr_skew(t).mu; }));
  add(quantities, "bahr_sigma", "", OfTensor([](const Tensor& t, double) { return bahr_skew(t).sigma; }));
}

void add_averages(Quantities& quantities) {
  using Average = ApparentEarth (*)(const Tensor&, double);
  const std::pair<const char*, Average> averages[] = {
      {"det", determinant_earth}, {"mean", mean_earth}, {"ssq", sum_of_squares_earth}};
  for (const auto& [name, average] : averages) {
    add(quantities, std::string(name) + "_rho", ohm_m,
        OfTensor([of = average](const Tensor& t, double f) { return of(t, f).resistivity; }));
    add(quantities, std::string(name) + "_phase", degree,
        OfTensor([of = average](const Tensor& t, double f) { return of(t, f).phase; }));
  }
}

/// The yx element is brought to the first quadrant.
BostickPoint bostick_of(const Tensor& tensor, Element element, double frequency) {
  const double sign = element == Element::yx ? -1.0 : 1.0;
  return bostick_point(apparent_earth(sign * tensor[element], tensor.known(element), frequency), frequency);
}

void add_bostick(Quantities& quantities) {
  using OfPoint = std::function<BostickPoint(const Tensor&, double)>;
  const std::pair<const char*, OfPoint> curves[] = {
      {"det", [](const Tensor& t, double f) { return bostick_point(determinant_earth(t, f), f); }},
      {"xy", [](const Tensor& t, double f) { return bostick_of(t, Element::xy, f); }},
      {"yx", [](const Tensor& t, double f) { return bostick_of(t, Element::yx, f); }}};
  for (const auto& [name, curve] : curves) {
    add(quantities, std::string("bostick_depth_") + name, metre,
        OfTensor([of = curve](const Tensor& t, double f) { return of(t, f).depth; }));
    add(quantities, std::string("bostick_rho_") + name, ohm_m,
        OfTensor([of = curve](const Tensor& t, double f) { return of(t, f).resistivity; }));
  }
}

void add_arrows(Quantities& quantities) {
  using OfPoint = std::function<Arrow(const Tipper&)>;
  const auto azimuth = [&](const char* name, const OfPoint& arrow) {
    quantities.push_back({name, degree, [arrow](const PointValues& point) {
                            return point.tipper()
                                       ? from_north(arrow(*point.tipper()).azimuth, point.axes(), 360.0)
                                       : Estimate{};
                          }});
  };
  azimuth("arrow_real_parkinson", [](const Tipper& t) { return real_arrow(t, ArrowConvention::parkinson); });
  azimuth("arrow_real_wiese", [](const Tipper& t) { return real_arrow(t, ArrowConvention::wiese); });
  azimuth("arrow_imag_as_is", [](const Tipper& t) { return imaginary_arrow(t); });
  azimuth("arrow_imag_reversed", [](const Tipper& t) { return imaginary_arrow(t, true); });
  add(quantities, "arrow_real_length", "",
      OfTipper([](const Tipper& t) { return real_arrow(t, ArrowConvention::parkinson).length; }));
  add(quantities, "arrow_imag_length", "",
      OfTipper([](const Tipper& t) { return imaginary_arrow(t).length; }));
  add(quantities, "tipper_magnitude", "", OfTipper(tipper_magnitude));
}

}  // namespace

PointValues::PointValues(double frequency, const Tensor* tensor, const Tipper* tipper, double axes)
    : frequency_(frequency), axes_(axes), tensor_(tensor), tipper_(tipper) {
  if (tensor) {
    phase_tensor_ = numerics::impedance::phase_tensor(*tensor);
  }
}

std::vector<TensorQuantity> tensor_quantities(std::optional<double> rotation) {
  Quantities quantities;
  add_elements(quantities, {});
  add_tipper(quantities, {});
  if (rotation) {
    add_elements(quantities, {rotation});
    add_tipper(quantities, {rotation});
    add_turned_earths(quantities, {rotation});
  }
  add_phase_tensor(quantities);
  add_strikes_and_skews(quantities);
  add_averages(quantities);
  add_bostick(quantities);
  add_arrows(quantities);
  std::ranges::sort(quantities, {}, &TensorQuantity::name);
  return quantities;
}

std::vector<PointValues> points_of(const StationTensor& station) {
  std::map<double, std::pair<const Tensor*, const Tipper*>> by_frequency;
  for (const TensorPoint& point : station.points) {
    by_frequency[point.frequency].first = &point.tensor;
  }
  for (const TipperPoint& point : station.tipper) {
    by_frequency[point.frequency].second = &point.tipper;
  }
  std::vector<PointValues> points;
  points.reserve(by_frequency.size());
  for (const auto& [frequency, there] : by_frequency) {
    points.emplace_back(frequency, there.first, there.second, station.axes);
  }
  return points;
}

}  // namespace Module_tensor
