#include "tests/numerics/impedance/made_tensors.h"

#include <cmath>
#include <numbers>

#include "numerics/impedance/bostick.h"
#include "numerics/impedance/effective_impedance.h"
#include "numerics/impedance/impedance_strike.h"
#include "numerics/impedance/phase_tensor.h"

namespace made {

namespace {

using namespace numerics::impedance;
using Quantities = std::map<std::string, Estimate>;

void add_earth(Quantities& all, const std::string& name, const ApparentEarth& earth) {
  all[name + " resistivity"] = earth.resistivity;
  all[name + " phase"] = earth.phase;
}

void add_phase_tensor(Quantities& all, const Tensor& tensor) {
  const std::optional<PhaseTensor> found = phase_tensor(tensor);
  if (!found) {
    return;
  }
  all["pt xx"] = found->xx;
  all["pt xy"] = found->xy;
  all["pt yx"] = found->yx;
  all["pt yy"] = found->yy;
  all["pt alpha"] = found->alpha;
  all["pt beta"] = found->beta;
  all["pt azimuth"] = found->azimuth;
  all["pt phi max"] = found->phi_max;
  all["pt phi min"] = found->phi_min;
  all["pt phase max"] = found->phase_max;
  all["pt phase min"] = found->phase_min;
  all["pt ellipticity"] = found->ellipticity;
  all["pt determinant"] = found->determinant;
  all["pt geometric phase"] = found->geometric_phase;
}

void add_arrow(Quantities& all, const std::string& name, const Arrow& arrow) {
  all[name + " length"] = arrow.length;
  all[name + " azimuth"] = arrow.azimuth;
}

}  // namespace

Eigen::Matrix2d turn(double degrees) {
  return Eigen::Rotation2Dd(-degrees * std::numbers::pi / 180.0).toRotationMatrix();
}

Tensor tensor_of(const Eigen::Matrix2cd& z, PartCovariance known) {
  return {{z(0, 0), z(0, 1), z(1, 0), z(1, 1)}, {known, known, known, known}};
}

Eigen::Matrix2cd matrix_of(const Tensor& tensor) {
  Eigen::Matrix2cd z;
  z << tensor.z[0], tensor.z[1], tensor.z[2], tensor.z[3];
  return z;
}

Eigen::Matrix2cd two_dimensional(double strike, std::complex<double> z_along, std::complex<double> z_across) {
  Eigen::Matrix2cd z;
  z << 0.0, z_along, -z_across, 0.0;
  return turn(strike).transpose() * z * turn(strike);
}

Eigen::Matrix2cd of_phase_tensor(double alpha, double beta, double phi_max, double phi_min,
                                 const Eigen::Matrix2d& X) {
  const Eigen::Matrix2d P =
      turn(alpha - beta).transpose() * Eigen::Vector2d(phi_max, phi_min).asDiagonal() * turn(alpha + beta);
  const Eigen::Matrix2d Y = X * P;
  return X.cast<std::complex<double>>() + std::complex<double>(0.0, 1.0) * Y;
}

Tensor worked_example(double sigma) {
  const PartCovariance known{sigma * sigma, sigma * sigma};
  return {{{{1, 2}, {10, 8}, {-9, -11}, {-0.5, -1}}}, {known, known, known, known}};
}

Tipper worked_tipper(double sigma) {
  const PartCovariance known{sigma * sigma, sigma * sigma};
  return {{0.10, 0.02}, {-0.25, 0.05}, known, known};
}

Quantities quantities(const Tensor& tensor) {
  constexpr double frequency = 1.0;
  Quantities all;
  add_phase_tensor(all, tensor);
  const SwiftStrike swift = swift_strike(tensor);
  all["swift strike"] = swift.strike;
  all["swift skew"] = swift.skew;
  const BahrSkew bahr = bahr_skew(tensor);
  all["bahr skew"] = bahr.skew;
  all["bahr mu"] = bahr.mu;
  all["bahr sigma"] = bahr.sigma;
  add_earth(all, "det", determinant_earth(tensor, frequency));
  add_earth(all, "mean", mean_earth(tensor, frequency));
  add_earth(all, "ssq", sum_of_squares_earth(tensor, frequency));
  const auto element = [&](const Tensor& of, Element e) {
    return apparent_earth(of[e], of.known(e), frequency);
  };
  const ApparentEarth xy = element(tensor, Element::xy);
  add_earth(all, "xy", xy);
  add_earth(all, "yx", element(tensor, Element::yx));
  const Tensor turned = rotated(tensor, 30.0);
  add_earth(all, "xx30", element(turned, Element::xx));
  add_earth(all, "xy30", element(turned, Element::xy));
  const BostickPoint bostick = bostick_point(xy, frequency);
  all["bostick depth"] = bostick.depth;
  all["bostick resistivity"] = bostick.resistivity;
  return all;
}

Quantities quantities(const Tipper& tipper) {
  Quantities all;
  add_arrow(all, "parkinson", real_arrow(tipper, ArrowConvention::parkinson));
  add_arrow(all, "wiese", real_arrow(tipper, ArrowConvention::wiese));
  add_arrow(all, "imaginary", imaginary_arrow(tipper));
  add_arrow(all, "reversed imaginary", imaginary_arrow(tipper, true));
  all["magnitude"] = tipper_magnitude(tipper);
  all["tipper strike"] = tipper_strike(tipper);
  return all;
}

double period_of(const std::string& quantity) {
  if (quantity == "swift strike") {
    return 90.0;
  }
  if (quantity == "pt azimuth" || quantity == "pt alpha" || quantity == "pt beta" ||
      quantity == "tipper strike") {
    return 180.0;
  }
  return quantity.ends_with(" azimuth") || quantity.ends_with(" phase") ? 360.0 : 0.0;
}

double difference(double a, double b, double period) {
  return period > 0.0 ? std::remainder(a - b, period) : a - b;
}

}  // namespace made
