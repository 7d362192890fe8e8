// made_tensors.h: tensors whose strike, skew and phases are known, and every quantity of one by name.
#pragma once
#include <complex>
#include <map>
#include <random>
#include <string>

#include <Eigen/Dense>

#include "numerics/impedance/tensor.h"
#include "numerics/impedance/tipper.h"

namespace made {

using numerics::impedance::Estimate;
using numerics::impedance::PartCovariance;
using numerics::impedance::Tensor;
using numerics::impedance::Tipper;

/// R(t) = [[cos t, sin t], [-sin t, cos t]], degrees.
Eigen::Matrix2d turn(double degrees);

Tensor tensor_of(const Eigen::Matrix2cd& z, PartCovariance known = {});
Eigen::Matrix2cd matrix_of(const Tensor& tensor);

/// Two-dimensional ground: the electric field along the strike sees z_along, the one across it z_across, both
/// with phases in the first quadrant.
Eigen::Matrix2cd two_dimensional(double strike, std::complex<double> z_along, std::complex<double> z_across);

/// Z = X (1 + iP), where P has these angles, degrees, and principal values; X is any real matrix.
Eigen::Matrix2cd of_phase_tensor(double alpha, double beta, double phi_max, double phi_min,
                                 const Eigen::Matrix2d& X);

/// Angles and values of the worked example: f = 1 Hz, sigma 0.2 of all parts.
Tensor worked_example(double sigma = 0.2);
Tipper worked_tipper(double sigma = 0.01);

/// Everything that is made of a tensor, at 1 Hz, and what is made of its elements in axes turned by 30
/// degrees.
std::map<std::string, Estimate> quantities(const Tensor& tensor);
std::map<std::string, Estimate> quantities(const Tipper& tipper);

/// The period of an angle, degrees; 0 of any other quantity.
double period_of(const std::string& quantity);

/// a - b, for angles with this period; 0 for none.
double difference(double a, double b, double period);

}  // namespace made
