// What is made of a tensor, by a worked example, by ground whose answers are known, and where there is no
// answer.
#include <cmath>
#include <numbers>
#include <optional>
#include <random>

#include <gtest/gtest.h>

#include "numerics/impedance/bostick.h"
#include "numerics/impedance/effective_impedance.h"
#include "numerics/impedance/impedance_strike.h"
#include "numerics/impedance/layered_earth.h"
#include "numerics/impedance/phase_tensor.h"
#include "tests/numerics/impedance/made_tensors.h"

using namespace numerics::impedance;

namespace {

constexpr double none = not_known;

Eigen::Matrix2d distortion() {
  Eigen::Matrix2d D;
  D << 1.2, 0.3, -0.2, 0.8;
  return D;
}

// Phases of 60 and 30 degrees.
const std::complex<double> steep = std::polar(20.0, std::numbers::pi / 3.0);
const std::complex<double> flat = std::polar(12.0, std::numbers::pi / 6.0);

Eigen::Matrix2d random_matrix(std::mt19937& random) {
  std::uniform_real_distribution<double> uniform(-10.0, 10.0);
  Eigen::Matrix2d X;
  do {
    X << uniform(random), uniform(random), uniform(random), uniform(random);
  } while (std::abs(X.determinant()) < 5.0);
  return X;
}

struct Printed {
  std::string quantity;
  double value;
  double error;  // NaN: not printed
  double value_digit;
  double error_digit;
};

void expect_printed(const std::map<std::string, Estimate>& found, const std::vector<Printed>& expected) {
  for (const Printed& number : expected) {
    SCOPED_TRACE(number.quantity);
    ASSERT_EQ(found.count(number.quantity), 1U);
    const Estimate& estimate = found.at(number.quantity);
    EXPECT_NEAR(estimate.value, number.value, 0.51 * number.value_digit);
    if (!std::isnan(number.error)) {
      EXPECT_NEAR(estimate.error, number.error, 0.51 * number.error_digit);
    }
  }
}

}  // namespace

TEST(Tensor_analysis, Agrees_with_a_worked_example_to_all_printed_digits) {
  std::map<std::string, Estimate> found = made::quantities(made::worked_example());
  const Tensor tensor = made::worked_example();
  const BostickPoint point =
      bostick_point(apparent_earth(-tensor[Element::yx], tensor.known(Element::yx), 1.0), 1.0);
  found["bostick depth yx"] = point.depth;
  found["bostick resistivity yx"] = point.resistivity;
  expect_printed(found, {{"pt xx", 1.217877, none, 1e-6, 0},
                         {"pt xy", 0.067039, none, 1e-6, 0},
                         {"pt yx", 0.078212, none, 1e-6, 0},
                         {"pt yy", 0.793296, none, 1e-6, 0},
                         {"pt alpha", 9.443, 2.752, 1e-3, 1e-3},
                         {"pt beta", -0.15915, 0.61413, 1e-5, 1e-5},
                         {"pt azimuth", 9.602, 2.925, 1e-3, 1e-3},
                         {"pt ellipticity", 0.22312, 0.02091, 1e-5, 1e-5},
                         {"pt phase max", 50.888, 0.787, 1e-3, 1e-3},
                         {"pt phase min", 37.998, 0.943, 1e-3, 1e-3},
                         {"swift strike", 23.691, 2.482, 1e-3, 1e-3},
                         {"swift skew", 0.04161, 0.01054, 1e-5, 1e-5},
                         {"bahr skew", 0.05263, none, 1e-5, 0},
                         {"bahr mu", std::sqrt(17.0 / 722.0), none, 1e-12, 0},  // by hand
                         {"bahr sigma", 21.25 / 722.0, none, 1e-12, 0},
                         {"mean resistivity", 0.2 * 180.5, none, 1e-9, 0},
                         {"det resistivity", 36.0068, 0.7718, 1e-4, 1e-4},
                         {"det phase", 44.443, 0.614, 1e-3, 1e-3},
                         {"bostick depth", 2038.18, 31.83, 1e-2, 1e-2},
                         {"bostick resistivity", 43.558, 2.230, 1e-3, 1e-3},
                         {"bostick depth yx", 2262.02, none, 1e-2, 0},
                         {"bostick resistivity yx", 31.301, none, 1e-3, 0},
                         {"xy30 resistivity", 27.6671, 0.9409, 1e-4, 1e-4},
                         {"xy30 phase", 39.309, 0.974, 1e-3, 1e-3}});
  const Tensor turned = rotated(tensor, 30.0);
  EXPECT_LT(std::abs(turned[Element::xx] - std::complex(1.058013, -0.049038)), 1e-6);
  EXPECT_LT(std::abs(turned[Element::xy] - std::complex(9.100481, 7.450962)), 1e-6);
}

TEST(Tensor_analysis, Arrows_of_the_worked_example) {
  const Tipper tipper = made::worked_tipper();
  expect_printed(made::quantities(tipper), {{"parkinson azimuth", 111.801, 2.128, 1e-3, 1e-3},
                                            {"parkinson length", 0.26926, 0.01, 1e-5, 1e-5},
                                            {"wiese azimuth", -68.199, 2.128, 1e-3, 1e-3},
                                            {"tipper strike", 21.801, 2.128, 1e-3, 1e-3}});
  const Tipper turned = rotated(tipper, 30.0);
  EXPECT_LT(std::abs(turned.x - std::complex(-0.038397, 0.042321)), 1e-6);
  EXPECT_LT(std::abs(turned.y - std::complex(-0.266506, 0.033301)), 1e-6);
  const Arrow arrow = real_arrow(tipper, ArrowConvention::parkinson);
  EXPECT_DOUBLE_EQ(arrow.north, -0.10);
  EXPECT_DOUBLE_EQ(arrow.east, 0.25);
  EXPECT_DOUBLE_EQ(imaginary_arrow(tipper).north, 0.02);
  EXPECT_DOUBLE_EQ(imaginary_arrow(tipper, true).east, -0.05);
  const Tipper to_south{0.3, 0.0, {}, {}};
  EXPECT_EQ(real_arrow(to_south, ArrowConvention::parkinson).azimuth.value, 180.0);  // not -180
  EXPECT_EQ(tipper_strike(to_south).value, 90.0);
}

TEST(Tensor_analysis, Layered_ground_has_no_strike_and_one_impedance) {
  const Layer half_space[] = {{100.0, 0.0}};
  constexpr double frequency = 0.1;
  const std::complex<double> z = surface_impedance(half_space, frequency);
  for (const double axes : {0.0, 17.0, 90.0}) {
    SCOPED_TRACE(axes);
    const Tensor tensor = rotated(made::tensor_of(made::two_dimensional(0.0, z, z)), axes);
    const PhaseTensor found = phase_tensor(tensor).value();
    EXPECT_NEAR(found.ellipticity.value, 0.0, 1e-12);
    EXPECT_FALSE(found.azimuth.has_value());
    EXPECT_FALSE(found.alpha.has_value());
    EXPECT_NEAR(found.beta.value, 0.0, 1e-9);
    EXPECT_NEAR(found.phase_max.value, 45.0, 1e-9);
    EXPECT_NEAR(found.phase_min.value, 45.0, 1e-9);
    EXPECT_NEAR(found.geometric_phase.value, 45.0, 1e-9);
    EXPECT_FALSE(swift_strike(tensor).strike.has_value());
    EXPECT_EQ(dimensionality(found), Dimensionality::one);
    for (const ApparentEarth& earth : {determinant_earth(tensor, frequency), mean_earth(tensor, frequency),
                                       sum_of_squares_earth(tensor, frequency)}) {
      EXPECT_NEAR(earth.resistivity.value, 100.0, 1e-9);
      EXPECT_NEAR(earth.phase.value, 45.0, 1e-9);
    }
  }
  // The penetration of Bostick is the depth of a perfect conductor whose impedance has the same size.
  const ApparentEarth earth = apparent_earth(z, {}, frequency);
  const BostickPoint point = bostick_point(earth, frequency);
  EXPECT_NEAR(point.resistivity.value, 100.0, 1e-9);
  const Layer above_conductor[] = {{1e6, point.depth.value}, {1e-9, 0.0}};
  EXPECT_NEAR(std::abs(surface_impedance(above_conductor, frequency)), std::abs(z), 2e-3 * std::abs(z));
}

TEST(Tensor_analysis, Finds_strike_and_phases_of_two_dimensional_ground_below_distortion) {
  struct Case {
    const char* name;
    std::complex<double> along, across;
    double azimuth;
  };
  const Case cases[] = {{"larger phase across", flat, steep, 25.0},
                        {"larger phase along", steep, flat, -65.0}};
  for (const Case& c : cases) {
    for (const bool distorted : {false, true}) {
      SCOPED_TRACE(c.name + std::string(distorted ? ", distorted" : ""));
      const Eigen::Matrix2cd plain = made::two_dimensional(25.0, c.along, c.across);
      const Eigen::Matrix2cd z = distorted ? distortion() * plain : plain;
      const Tensor tensor = made::tensor_of(z);
      const PhaseTensor found = phase_tensor(tensor).value();
      EXPECT_NEAR(found.azimuth.value, c.azimuth, 1e-9);
      EXPECT_NEAR(found.beta.value, 0.0, 1e-9);
      EXPECT_NEAR(found.phase_max.value, 60.0, 1e-9);
      EXPECT_NEAR(found.phase_min.value, 30.0, 1e-9);
      EXPECT_EQ(dimensionality(found), Dimensionality::two);
      EXPECT_NEAR(bahr_skew(tensor).skew.value, 0.0, 1e-7);  // the root of rounding
      const ApparentEarth earth = determinant_earth(tensor, 1.0);
      EXPECT_NEAR(earth.resistivity.value, 0.2 * 20.0 * 12.0 * (distorted ? 1.02 : 1.0), 1e-9);
      EXPECT_NEAR(earth.phase.value, 45.0, 1e-9);
      if (!distorted) {
        EXPECT_NEAR(swift_strike(tensor).strike.value, 25.0, 1e-9);
        EXPECT_NEAR(swift_strike(tensor).skew.value, 0.0, 1e-12);
      }
    }
  }
}

TEST(Tensor_analysis, Finds_the_angles_that_a_phase_tensor_was_made_with) {
  struct Case {
    double alpha, beta, phi_max, phi_min;
    Dimensionality dimensions;
  };
  const Case cases[] = {{40, 8, 1.5, 0.6, Dimensionality::three},
                        {40, -2, 1.5, 0.6, Dimensionality::two},
                        {-89, 0.5, 0.9, 0.8, Dimensionality::one},
                        {12, -4, 3.0, -0.2, Dimensionality::three},  // a negative determinant
                        {70, 60, 1.2, 0.5, Dimensionality::three}};  // phases beyond 90 degrees
  std::mt19937 random(5);
  for (const Case& c : cases) {
    for (int trial = 0; trial < 10; ++trial) {
      SCOPED_TRACE("alpha " + std::to_string(c.alpha) + ", trial " + std::to_string(trial));
      const Tensor tensor = made::tensor_of(
          made::of_phase_tensor(c.alpha, c.beta, c.phi_max, c.phi_min, random_matrix(random)));
      const PhaseTensor found = phase_tensor(tensor).value();
      EXPECT_NEAR(made::difference(found.alpha.value, c.alpha, 180.0), 0.0, 1e-8);
      EXPECT_NEAR(found.beta.value, c.beta, 1e-8);
      EXPECT_NEAR(made::difference(found.azimuth.value, c.alpha - c.beta, 180.0), 0.0, 1e-8);
      EXPECT_GT(found.azimuth.value, -90.0);
      EXPECT_LE(found.azimuth.value, 90.0);
      EXPECT_NEAR(found.phi_max.value, c.phi_max, 1e-10);
      EXPECT_NEAR(found.phi_min.value, c.phi_min, 1e-10);
      EXPECT_NEAR(found.determinant.value, c.phi_max * c.phi_min, 1e-10);
      EXPECT_EQ(std::signbit(found.geometric_phase.value), std::signbit(c.phi_min));
      EXPECT_EQ(dimensionality(found), c.dimensions);
    }
  }
}

TEST(Tensor_analysis, A_skew_counts_as_far_as_its_error_leaves_it) {
  PhaseTensor tensor;
  tensor.beta = {-4.0, 1.5};
  tensor.ellipticity = {0.3, 0.01};
  EXPECT_EQ(dimensionality(tensor), Dimensionality::three);
  EXPECT_EQ(dimensionality(tensor, {.skew = 5.0}), Dimensionality::two);
  EXPECT_EQ(dimensionality(tensor, {.use_errors = true}), Dimensionality::two);
  EXPECT_EQ(dimensionality(tensor, {.ellipticity = 0.5, .use_errors = true}), Dimensionality::one);
  tensor.beta.error = not_known;
  EXPECT_EQ(dimensionality(tensor, {.use_errors = true}), Dimensionality::three);
}

TEST(Tensor_analysis, Quantities_follow_the_axes_as_they_should) {
  const auto turns_with_axes = [](const std::string& name) {
    return name == "pt alpha" || name == "pt azimuth" || name == "swift strike" || name == "tipper strike" ||
           name == "parkinson azimuth" || name == "wiese azimuth" || name == "imaginary azimuth";
  };
  const auto is_invariant = [](const std::string& name) {
    return name == "pt beta" || name.starts_with("pt ph") || name == "pt ellipticity" ||
           name == "pt determinant" || name == "pt geometric phase" || name == "swift skew" ||
           name.starts_with("bahr") || name.starts_with("det") || name.starts_with("mean") ||
           name.starts_with("ssq") || name.ends_with(" length") || name == "magnitude";
  };
  std::mt19937 random(3);
  std::uniform_real_distribution<double> angle(-360.0, 360.0);
  const Tensor tensor = made::worked_example();
  const Tipper tipper = made::worked_tipper();
  std::map<std::string, Estimate> before = made::quantities(tensor);
  before.merge(made::quantities(tipper));
  std::size_t compared = 0;
  for (int trial = 0; trial < 100; ++trial) {
    const double axes = angle(random);
    SCOPED_TRACE(axes);
    std::map<std::string, Estimate> after = made::quantities(rotated(tensor, axes));
    after.merge(made::quantities(rotated(tipper, axes)));
    for (const auto& [name, estimate] : before) {
      if (!turns_with_axes(name) && !is_invariant(name)) {
        continue;
      }
      SCOPED_TRACE(name);
      ++compared;
      const double shift = turns_with_axes(name) ? axes : 0.0;
      EXPECT_NEAR(made::difference(after[name].value + shift, estimate.value, made::period_of(name)), 0.0,
                  1e-9);
      EXPECT_NEAR(after[name].error, estimate.error, 1e-9 * estimate.error);  // all parts are equally known
    }
  }
  EXPECT_EQ(compared, 100U * 30U);
}

TEST(Tensor_analysis, Resistivity_phase_and_their_errors_come_back_from_the_impedance) {
  const std::complex<double> z = impedance_of(130.0, -110.0, 8.0);
  const ApparentEarth earth = apparent_earth(z, covariance_of(z, 130.0, 7.0, 0.9), 8.0);
  EXPECT_NEAR(earth.resistivity.value, 130.0, 1e-10);
  EXPECT_NEAR(earth.resistivity.error, 7.0, 1e-10);
  EXPECT_NEAR(earth.phase.value, -110.0, 1e-10);
  EXPECT_NEAR(earth.phase.error, 0.9, 1e-10);
  EXPECT_NEAR(std::norm(z), 5.0 * 8.0 * 130.0, 1e-9);

  // One error stands for both: d rho / (2 rho) is the phase error in radians.
  const double phase_error = 7.0 / 260.0 * 180.0 / std::numbers::pi;
  EXPECT_NEAR(apparent_earth(z, covariance_of(z, 130.0, 7.0, none), 8.0).phase.error, phase_error, 1e-10);
  EXPECT_NEAR(apparent_earth(z, covariance_of(z, 130.0, none, phase_error), 8.0).resistivity.error, 7.0,
              1e-10);
  EXPECT_NEAR(apparent_earth(z, covariance_of(z, 130.0, 7.0, 1e9), 8.0).phase.error, 90.0, 1e-10);
  // From a variance, sigma twice |Z|: d rho is 4 rho, and the phase error beyond what it can be.
  const PartCovariance large = covariance_of(z, 130.0, 4.0 * 130.0, 2.0 * 180.0 / std::numbers::pi);
  EXPECT_NEAR(std::sqrt(large.real) / std::abs(z), 2.0, 1e-10);
  EXPECT_NEAR(std::sqrt(large.imaginary) / std::abs(z), 2.0, 1e-10);
  EXPECT_NEAR(large.cross / std::norm(z), 0.0, 1e-10);
  EXPECT_FALSE(covariance_of(z, 130.0, none, none).is_known());
  EXPECT_FALSE(covariance_of(0.0, 0.0, 7.0, 1.0).is_known());
}

TEST(Tensor_analysis, Stored_in_32_bits_quantities_stay_as_near_as_their_condition_lets_them) {
  std::mt19937 random(29);
  std::uniform_real_distribution<double> uniform;
  for (int trial = 0; trial < 200; ++trial) {
    const double ellipticity = std::pow(10.0, -3.0 * uniform(random));  // down to nearly layered
    const Tensor exact =
        made::tensor_of(made::of_phase_tensor(180.0 * uniform(random), 20.0 * uniform(random),
                                              1.0 + ellipticity, 1.0 - ellipticity, random_matrix(random)));
    Tensor stored;
    for (std::size_t element = 0; element < element_count; ++element) {
      const ApparentEarth earth = apparent_earth(exact.z[element], {}, 3.0);
      stored.z[element] = impedance_of(static_cast<float>(earth.resistivity.value),
                                       static_cast<float>(earth.phase.value), 3.0);
      const double rounding = 2e-7 * std::abs(exact.z[element]);
      stored.covariance[element] = {rounding * rounding, rounding * rounding};
    }
    const PhaseTensor before = phase_tensor(exact).value();
    const PhaseTensor after = phase_tensor(stored).value();
    SCOPED_TRACE("ellipticity " + std::to_string(ellipticity));
    EXPECT_NEAR(made::difference(after.azimuth.value, before.azimuth.value, 180.0), 0.0,
                2.0 * after.azimuth.error);
    EXPECT_NEAR(after.beta.value, before.beta.value, 2.0 * after.beta.error);
    EXPECT_NEAR(after.phase_min.value, before.phase_min.value, 2.0 * after.phase_min.error);
  }
}

TEST(Tensor_analysis, What_is_not_known_of_an_element_reaches_only_what_depends_on_it) {
  Tensor tensor = made::worked_example();
  tensor.known(Element::yy) = {};
  EXPECT_TRUE(phase_tensor(tensor)->azimuth.has_value());
  EXPECT_FALSE(phase_tensor(tensor)->azimuth.has_error());
  EXPECT_FALSE(swift_strike(tensor).strike.has_error());
  EXPECT_NEAR(mean_earth(tensor, 1.0).resistivity.error,
              mean_earth(made::worked_example(), 1.0).resistivity.error, 1e-12);
  // A quarter turn only changes places and signs.
  const Tensor turned = rotated(tensor, 90.0);
  EXPECT_EQ(turned[Element::xx], tensor[Element::yy]);
  EXPECT_EQ(turned[Element::xy], -tensor[Element::yx]);
  EXPECT_FALSE(turned.known(Element::xx).is_known());
  EXPECT_EQ(turned.known(Element::xy).real, tensor.known(Element::yx).real);
  EXPECT_TRUE(turned.known(Element::yy).is_known());
  EXPECT_FALSE(rotated(tensor, 20.0).known(Element::xy).is_known());
}

TEST(Tensor_analysis, A_cusp_has_no_value_or_no_error_and_nothing_is_infinite) {
  const PartCovariance known{0.01, 0.01};
  Eigen::Matrix2d no_width;
  no_width << 1.0, 0.0, 0.0, 0.0;
  const struct {
    const char* name;
    Tensor tensor;
  } cases[] = {
      {"zero", made::tensor_of(Eigen::Matrix2cd::Zero(), known)},
      {"one impedance", made::tensor_of(made::two_dimensional(0.0, steep, steep), known)},
      {"along the axes", made::tensor_of(made::two_dimensional(0.0, steep, flat), known)},
      {"det P = 0", made::tensor_of(made::of_phase_tensor(0, 0, 1, 0, Eigen::Matrix2d::Identity()), known)},
      {"det Z = 0", made::tensor_of(no_width.cast<std::complex<double>>(), known)},
      {"trace only", made::tensor_of(Eigen::Matrix2cd::Identity() * steep, known)},
      {"real", made::tensor_of(Eigen::Matrix2d::Random().cast<std::complex<double>>(), known)}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    for (const auto& [quantity, estimate] : made::quantities(c.tensor)) {
      SCOPED_TRACE(quantity);
      EXPECT_FALSE(std::isinf(estimate.value) || std::isinf(estimate.error));
      EXPECT_TRUE(estimate.has_value() || !estimate.has_error());
    }
  }
  EXPECT_FALSE(phase_tensor(cases[0].tensor));
  EXPECT_EQ(determinant_earth(cases[0].tensor, 1.0).resistivity.value, 0.0);
  EXPECT_FALSE(determinant_earth(cases[0].tensor, 1.0).resistivity.has_error());
  EXPECT_FALSE(determinant_earth(cases[0].tensor, 1.0).phase.has_value());
  EXPECT_FALSE(phase_tensor(cases[1].tensor)->alpha.has_value());
  EXPECT_FALSE(phase_tensor(cases[1].tensor)->phase_max.has_error());
  EXPECT_EQ(phase_tensor(cases[3].tensor)->geometric_phase.value, 0.0);
  EXPECT_FALSE(phase_tensor(cases[3].tensor)->geometric_phase.has_error());
  EXPECT_FALSE(swift_strike(cases[5].tensor).skew.has_value());
  Tensor absent = made::worked_example();
  absent[Element::xx] = {none, none};
  EXPECT_FALSE(phase_tensor(absent));

  const Tipper none_at_all{0.0, 0.0, known, known};
  EXPECT_EQ(real_arrow(none_at_all, ArrowConvention::wiese).length.value, 0.0);
  EXPECT_FALSE(real_arrow(none_at_all, ArrowConvention::wiese).length.has_error());
  EXPECT_FALSE(real_arrow(none_at_all, ArrowConvention::wiese).azimuth.has_value());
  EXPECT_FALSE(tipper_strike({0.03, 0.03, known, known}).has_value());
  EXPECT_TRUE(tipper_strike({0.05, 0.0, known, known}).has_value());

  for (const double phase : {-10.0, 0.0, 90.0, 135.0, none}) {
    const BostickPoint point = bostick_point({{100.0, 5.0}, {phase, 1.0}}, 1.0);
    EXPECT_TRUE(point.depth.has_error()) << phase;
    EXPECT_FALSE(point.resistivity.has_value()) << phase;
  }
}
