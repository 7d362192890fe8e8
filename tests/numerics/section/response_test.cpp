// response_test.cpp: responses against closed forms, published tables and what the physics keeps unchanged.
#include "numerics/section/response.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/numerics/section/made_section.h"

namespace {

using namespace numerics::section;

Response respond(const Section& section, const std::vector<double>& sites,
                 const std::vector<double>& frequencies) {
  return compute_response(section, sites, frequencies).value();
}

void expect_near(const ModeResponse& found, const ModeResponse& expected, double log10_bound,
                 double phase_bound) {
  ASSERT_EQ(found.phase.size(), expected.phase.size());
  for (std::size_t i = 0; i < found.phase.size(); ++i) {
    EXPECT_NEAR(found.log10_resistivity[i], expected.log10_resistivity[i], log10_bound) << i;
    EXPECT_NEAR(found.phase[i], expected.phase[i], phase_bound) << i;
  }
}

double three_layers(double z) { return z < 400.0 ? 100.0 : z < 1600.0 ? 10.0 : 1000.0; }
const std::vector<double> layered_frequencies = {300.0, 30.0, 3.0, 0.3, 0.03};
// Recursion for 100, 10, 1000 ohm-m, 400 and 1200 m thick.
const ModeResponse layered_answer = {{2.053234, 1.761621, 1.251034, 1.405337, 2.147942},
                                     {46.4381, 64.2468, 58.6317, 20.0545, 17.1483}};

TEST(Response, A_layered_section_is_exact_on_any_mesh) {
  const std::vector<double> sites = {-90.0, 0.0, 20.0, 500.0};
  const Section coarse = section_of_cells({-500, -90, 0, 20, 500}, {0, 400, 1000, 1600, 5000},
                                          [](double, double z) { return three_layers(z); });
  const Section fine =
      section_of_cells({-500, -90, 0, 20, 500}, joined(even_nodes(0, 25, 1600), {1700, 1950, 2200}),
                       [](double, double z) { return three_layers(z); });
  const Response response = respond(coarse, sites, layered_frequencies);
  const Response other = respond(fine, sites, layered_frequencies);
  for (std::size_t s = 0; s < sites.size(); ++s) {
    for (std::size_t f = 0; f < layered_frequencies.size(); ++f) {
      const std::size_t at = s * layered_frequencies.size() + f;
      for (const ModeResponse* mode : {&response.te, &response.tm}) {
        EXPECT_NEAR(mode->log10_resistivity[at], layered_answer.log10_resistivity[f], 6e-7);
        EXPECT_NEAR(mode->phase[at], layered_answer.phase[f], 1e-4);  // displacement currents at 300 Hz
      }
    }
  }
  expect_near(response.te, response.tm, 1e-12, 1e-10);
  expect_near(response.te, other.te, 1e-12, 1e-10);
  expect_near(response.tm, other.tm, 1e-12, 1e-10);
}

// The left-most columns, and with them the host, differ: now the finite elements have to find the layers.
TEST(Response, A_layered_section_beside_another_host) {
  const std::vector<double> node_y = both_sides(joined({0.0, 50.0}, growing_nodes(50.0, 150.0, 1.25, 7e5)));
  const auto respond_to = [&](const std::vector<double>& node_z, double (*resistivity)(double)) {
    return respond(section_of_cells(node_y, node_z,
                                    [&](double y, double z) { return y < -2e5 ? 30.0 : resistivity(z); }),
                   {0.0}, layered_frequencies);
  };
  const Response uniform = respond_to(growing_nodes(0.0, 8.0, 1.09, 2e5), [](double) { return 100.0; });
  const ModeResponse uniform_answer = {std::vector<double>(5, 2.0), std::vector<double>(5, 45.0)};
  expect_near(uniform.te, uniform_answer, 3.2e-4, 0.15);
  expect_near(uniform.tm, uniform_answer, 3.2e-4, 0.15);

  const std::vector<double> fine_rows =
      joined(even_nodes(0, 8, 400), joined(even_nodes(400, 20, 1600), growing_nodes(1600, 25, 1.09, 5e5)));
  const Response layered = respond_to(fine_rows, three_layers);
  for (std::size_t f = 0; f < 4; ++f) {  // at the lowest frequency the layers' neighbour is felt
    for (const ModeResponse* mode : {&layered.te, &layered.tm}) {
      EXPECT_NEAR(mode->log10_resistivity[f], layered_answer.log10_resistivity[f], 5e-4) << f;
      EXPECT_NEAR(mode->phase[f], layered_answer.phase[f], 0.15) << f;
    }
  }
}

// Two quarter layers over a perfect insulator or conductor, TM: d'Erceville & Kunetz (1962), Geophysics 27,
// 651-665.
class Contact {
 public:
  static constexpr double depth = 5000.0;  // m
  static constexpr double left_resistivity = 10.0;
  static constexpr double right_resistivity = 100.0;

  static std::complex<double> impedance(bool insulator, double frequency, double y) {
    const std::complex<double> i_omega_mu = {0.0, omega_mu0(frequency)};
    const std::complex<double> k1_squared = i_omega_mu / left_resistivity;
    const std::complex<double> k2_squared = i_omega_mu / right_resistivity;
    const double rho = y < 0.0 ? left_resistivity : right_resistivity;
    const std::complex<double> k = std::sqrt(y < 0.0 ? k1_squared : k2_squared);
    std::complex<double> slope = insulator ? -k / std::tanh(k * depth) : -k * std::tanh(k * depth);
    for (int n = 1; n <= 20000; ++n) {
      const double lambda = (insulator ? n : n - 0.5) * std::numbers::pi / depth;
      const std::complex<double> l1 = lambda * lambda + k1_squared;
      const std::complex<double> l2 = lambda * lambda + k2_squared;
      const std::complex<double> d = 2.0 / depth * lambda * (k2_squared - k1_squared) / (l1 * l2);
      const std::complex<double> r1 = left_resistivity * std::sqrt(l1);
      const std::complex<double> r2 = right_resistivity * std::sqrt(l2);
      slope += lambda * (y < 0.0 ? -d * r2 / (r1 + r2) * std::exp(std::sqrt(l1) * y)
                                 : d * r1 / (r1 + r2) * std::exp(-std::sqrt(l2) * y));
    }
    return -rho * slope;
  }

  static double omega_mu0(double frequency) { return 8e-7 * std::numbers::pi * std::numbers::pi * frequency; }
};

TEST(Response, TM_beside_a_contact) {
  const std::vector<double> sites = {-2000.0, -500.0, -100.0, 100.0, 500.0, 2000.0};
  const std::vector<double> frequencies = {10.0, 1.0, 0.1, 0.01};
  struct Case {
    bool insulator;
    double frequency;  // of the answer below
    std::vector<double> log10_resistivity, phase;
  };
  const Case cases[] = {{true,
                         0.1,
                         {0.85317, 0.76956, 0.72837, 2.71459, 2.71241, 2.70910},
                         {27.594, 18.775, 11.015, 6.312, 5.468, 4.317}},
                        {false,
                         1.0,
                         {1.02420, 0.82848, 0.51598, 2.24686, 2.19151, 2.11477},
                         {48.245, 57.736, 58.425, 52.557, 52.138, 54.144}}};
  // Columns close enough at the contact, with nodes at the sites.
  std::vector<double> side = {0.0};
  for (const double site : {100.0, 500.0, 2000.0}) {
    const double from = side.back();
    const auto steps = static_cast<int>(std::ceil((site - from) / std::max(20.0, 0.1 * from)));
    for (int i = 1; i <= steps; ++i) {
      side.push_back(from + (site - from) * i / steps);
    }
  }
  const std::vector<double> node_y = both_sides(joined(side, growing_nodes(2000.0, 220.0, 1.12, 1e6)));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.insulator ? "insulator" : "conductor");
    std::vector<double> node_z;
    if (c.insulator) {
      // The field ends without a gradient at the mesh's bottom; below an insulator that is felt from afar.
      node_z = joined(growing_nodes(0.0, 10.0, 1.05, 4700.0),
                      joined({5000.0}, growing_nodes(5000.0, 250.0, 1.6, 1e8)));
    } else {
      // Skin depths below a metre: the rows shrink towards the conductor.
      node_z = growing_nodes(0.0, 10.0, 1.05, 2400.0);
      std::vector<double> up;
      for (double above = 2.0, step = 2.0; 5000.0 - above > node_z.back(); step *= 1.08, above += step) {
        up.insert(up.begin(), 5000.0 - above);
      }
      node_z = joined(joined(node_z, up), joined({5000.0}, growing_nodes(5000.0, 0.1, 1.6, 1e4)));
    }
    const Section section = section_of_cells(node_y, node_z, [&](double y, double z) {
      return z > Contact::depth ? (c.insulator ? 1e9 : 1e-6)
                                : (y < 0.0 ? Contact::left_resistivity : Contact::right_resistivity);
    });
    const Response response = respond(section, sites, frequencies);
    for (std::size_t s = 0; s < sites.size(); ++s) {
      for (std::size_t f = 0; f < frequencies.size(); ++f) {
        SCOPED_TRACE(testing::Message() << sites[s] << " m, " << frequencies[f] << " Hz");
        const std::complex<double> exact = Contact::impedance(c.insulator, frequencies[f], sites[s]);
        const double log10_resistivity = std::log10(std::norm(exact) / Contact::omega_mu0(frequencies[f]));
        const double phase = std::arg(exact) * 180.0 / std::numbers::pi;
        if (frequencies[f] == c.frequency) {
          EXPECT_NEAR(log10_resistivity, c.log10_resistivity[s], 6e-6);
          EXPECT_NEAR(phase, c.phase[s], 6e-4);
        }
        EXPECT_NEAR(response.tm.log10_resistivity[s * frequencies.size() + f], log10_resistivity, 1.5e-3);
        EXPECT_NEAR(response.tm.phase[s * frequencies.size() + f], phase, 0.1);
      }
    }
  }
}

void expect_model_comparison(const ModeResponse& found, std::size_t frequencies, std::size_t frequency,
                             const std::vector<double>& resistivity, const std::vector<double>& phase,
                             double relative_bound, double phase_bound) {
  for (std::size_t s = 0; s < resistivity.size(); ++s) {
    const std::size_t at = s * frequencies + frequency;
    EXPECT_NEAR(std::pow(10.0, found.log10_resistivity[at]), resistivity[s], relative_bound * resistivity[s])
        << s;
    if (!phase.empty()) {
      EXPECT_NEAR(found.phase[at], phase[s], phase_bound) << s;
    }
  }
}

// Models and published values: Zhdanov et al. (1997), J. Appl. Geophys. 37, 133-271.
TEST(Response, Published_block_in_a_half_space) {
  const std::vector<double> node_y = both_sides(joined(
      even_nodes(0, 50, 2000), joined(even_nodes(2000, 400, 16000), growing_nodes(16000, 600, 1.3, 2e5))));
  const std::vector<double> node_z =
      joined(even_nodes(0, 12.5, 250), joined(even_nodes(250, 50, 2250), growing_nodes(2250, 60, 1.2, 5e4)));
  const Section section = section_of_cells(node_y, node_z, [](double y, double z) {
    return std::abs(y) < 500.0 && z > 250.0 && z < 2250.0 ? 0.5 : 100.0;
  });
  const Response response = respond(section, {0, 500, 1000, 2000, 4000, 8000, 16000}, {10.0});
  expect_model_comparison(response.te, 1, 0, {8.07, 14.10, 51.50, 95.71, 104.00, 100.00, 100.00}, {}, 0.03,
                          0);
  expect_model_comparison(response.tm, 1, 0, {9.86, 46.40, 94.80, 98.30, 99.70, 100.00, 100.00}, {}, 0.03, 0);
  // An earlier program of the same scheme.
  expect_model_comparison(response.te, 1, 0, {8.07, 14.13, 50.13, 95.92, 103.94, 100.21, 100.01},
                          {76.01, 71.64, 65.93, 53.52, 46.06, 44.96, 45.00}, 1e-3, 0.05);
  expect_model_comparison(response.tm, 1, 0, {9.76, 45.23, 94.61, 98.43, 99.74, 100.01, 100.00},
                          {71.45, 50.04, 44.66, 44.84, 45.06, 45.00, 45.00}, 1e-3, 0.05);
}

TEST(Response, Published_basin_with_a_sloping_floor) {
  const std::vector<double> node_y = joined(
      [] {
        std::vector<double> left;
        for (const double out : growing_nodes(0.0, 130.0, 1.25, 1e6)) {
          left.insert(left.begin(), -12000.0 - out);
        }
        return left;
      }(),
      joined(even_nodes(-12000, 100, 8000), growing_nodes(8000, 130, 1.25, 1e6)));
  const std::vector<double> node_z =
      joined(even_nodes(0, 25, 500),
             joined(even_nodes(500, 100, 4000),
                    joined(growing_nodes(4000, 130, 1.15, 24000), growing_nodes(25000, 1500, 1.3, 4e5))));
  const Section section = section_of_cells(node_y, node_z, [](double y, double z) {
    if (z < 500.0) {
      return 25.0;
    }
    if (z > 25000.0) {
      return 5.0;
    }
    if (y < -6000.0) {
      return z < 2000.0 ? 10.0 : 1000.0;
    }
    const double floor = y < 2000.0 ? 4000.0 : std::max(1000.0, 6000.0 - y);
    return z < floor ? 2.5 : 1000.0;
  });
  const Response response = respond(section, {-10000, -7000, -6000, -5000, 2000, 3500, 5000}, {1.0, 0.01});
  // T = 1 s: average of all authors.
  expect_model_comparison(response.te, 2, 0, {12.69, 11.70, 8.68, 6.76, 6.49, 6.11, 6.18}, {}, 0.035, 0);
  expect_model_comparison(response.tm, 2, 0, {11.41, 11.30, 8.97, 6.78, 6.85, 6.33, 5.84}, {}, 0.035, 0);
  // An earlier program of the same scheme, at T = 1 s and at T = 100 s, where the published TM values
  // scatter.
  expect_model_comparison(response.te, 2, 0, {12.70, 12.00, 8.83, 6.86, 6.69, 6.26, 6.28},
                          {45.89, 53.51, 56.83, 59.71, 62.48, 61.24, 54.40}, 0.01, 0.3);
  expect_model_comparison(response.tm, 2, 0, {11.32, 11.54, 8.90, 6.75, 6.77, 6.39, 5.70},
                          {44.75, 45.15, 52.63, 62.51, 62.23, 61.87, 49.61}, 0.01, 0.3);
  expect_model_comparison(response.te, 2, 1, {38.0, 28.3, 22.9, 18.8, 17.6, 21.1, 27.3}, {}, 0.01, 0);
  expect_model_comparison(response.tm, 2, 1, {74.3, 69.6, 30.4, 5.10, 3.74, 8.29, 36.2}, {}, 0.015, 0);
}

const std::vector<double> line_y =
    both_sides(joined(even_nodes(0, 100, 1500), growing_nodes(1500, 130, 1.3, 1e5)));
const std::vector<double> line_sites = {-1000.0, -300.0, 0.0, 400.0, 1100.0};
const std::vector<double> line_frequencies = {100.0, 1.0};

double blocks(double y, double z) {
  if (z > 150.0 && z < 800.0 && y > -600.0 && y < -100.0) {
    return 5.0;
  }
  return z > 50.0 && z < 2000.0 && y > 200.0 && y < 900.0 ? 2000.0 : 100.0;
}

TEST(Response, A_mirrored_section_has_the_mirrored_response) {
  const Section section = section_of_cells(line_y, growing_nodes(0, 10, 1.12, 5e4), blocks);
  const Response response = respond(section, line_sites, line_frequencies);
  std::vector<double> sites = line_sites;
  std::transform(sites.begin(), sites.end(), sites.begin(), std::negate<>());
  const Response other = respond(mirrored(section), sites, line_frequencies);
  expect_near(response.te, other.te, 1e-11, 1e-9);
  expect_near(response.tm, other.tm, 1e-11, 1e-9);
}

TEST(Response, Air_in_the_mesh_is_the_same_as_air_above_it) {
  const std::vector<double> rows = growing_nodes(0, 10, 1.12, 5e4);
  const Response response = respond(section_of_cells(line_y, rows, blocks), line_sites, line_frequencies);
  std::vector<double> with_air = {-20.0, -10.0};
  with_air.insert(with_air.end(), rows.begin(), rows.end());
  const Section section = section_of_cells(
      line_y, with_air, [](double y, double z) { return z < 0.0 ? air_resistivity : blocks(y, z); });
  const Response other = respond(section, line_sites, line_frequencies);
  expect_near(response.te, other.te, 5e-4, 0.05);  // its rows of air are others
  expect_near(response.tm, other.tm, 5e-4, 0.05);  // it solves for the air
}

// A wide plain at another height than the host's ground, seen far from the step or slope that leads to it.
TEST(Response, A_half_space_under_high_and_low_ground) {
  const std::vector<double> node_y = joined(
      [] {
        std::vector<double> left;
        for (const double out : growing_nodes(0.0, 15.0, 1.3, 1e5)) {
          left.insert(left.begin(), -50.0 - out);
        }
        return left;
      }(),
      joined(even_nodes(-50, 10, 50), growing_nodes(50, 15, 1.3, 1e5)));
  const std::vector<double> node_z = joined(even_nodes(0, 10, 200), growing_nodes(200, 11, 1.12, 4e4));
  const std::vector<double> frequencies = {100.0, 10.0};
  for (const bool high : {true, false}) {
    for (const bool slope : {true, false}) {
      SCOPED_TRACE(testing::Message() << (high ? "high " : "low ") << (slope ? "slope" : "step"));
      const auto ground = [&](double y) {
        const double down = slope ? std::clamp(y + 50.0, 0.0, 100.0) : (y < 0.0 ? 0.0 : 100.0);
        return high ? 100.0 - down : down;
      };
      const Section section = section_of_triangles(
          node_y, node_z, [&](double y, double z) { return z < ground(y) ? air_resistivity : 100.0; });
      const Response response = respond(section, {20000.0}, frequencies);
      for (std::size_t f = 0; f < frequencies.size(); ++f) {
        EXPECT_NEAR(response.te.log10_resistivity[f], 2.0, 2e-3);
        EXPECT_NEAR(response.te.phase[f], 45.0, 0.3);
        EXPECT_NEAR(response.tm.log10_resistivity[f], 2.0, 2e-3);
        EXPECT_NEAR(response.tm.phase[f], 45.0, 0.3);
      }
    }
  }
}

// The same hillside with the low and with the high ground for a host.
TEST(Response, A_slope_gives_the_same_from_either_side) {
  const std::vector<double> node_y =
      both_sides(joined(even_nodes(0, 10, 200), growing_nodes(200, 13, 1.3, 1e5)));
  const std::vector<double> node_z = joined(even_nodes(0, 10, 300), growing_nodes(300, 12, 1.12, 4e4));
  const Section section = section_of_triangles(node_y, node_z, [&](double y, double z) {
    return z < std::clamp(y + 50.0, 0.0, 100.0) ? air_resistivity : (z > 150.0 && y > 0.0 ? 10.0 : 100.0);
  });
  const std::vector<double> sites = {-150.0, -60.0, -20.0, 0.0, 30.0, 100.0, 190.0};
  std::vector<double> mirrored_sites = sites;
  std::transform(sites.begin(), sites.end(), mirrored_sites.begin(), std::negate<>());
  const Response response = respond(section, sites, {100.0, 1.0});
  const Response other = respond(mirrored(section), mirrored_sites, {100.0, 1.0});
  expect_near(response.te, other.te, 5e-3, 0.5);
  expect_near(response.tm, other.tm, 5e-3, 0.5);
}

TEST(Response, Threads_change_nothing_and_a_stop_leaves_nothing) {
  const Section section = section_of_cells(line_y, growing_nodes(0, 10, 1.12, 5e4), blocks);
  const std::vector<double> frequencies = {100, 30, 10, 3, 1, 0.3};
  const Response one = compute_response(section, line_sites, frequencies, {.threads = 1}).value();
  std::vector<double> shares;
  const auto note = [&](double share) {
    shares.push_back(share);
    return true;
  };
  const Response three =
      compute_response(section, line_sites, frequencies, {.threads = 3, .progress = note}).value();
  EXPECT_EQ(one.te.phase, three.te.phase);
  EXPECT_EQ(one.tm.log10_resistivity, three.tm.log10_resistivity);
  EXPECT_EQ(one.te.log10_resistivity, three.te.log10_resistivity);
  EXPECT_EQ(one.tm.phase, three.tm.phase);
  EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
  EXPECT_EQ(shares.back(), 1.0);

  const auto stop = [](double) { return false; };
  EXPECT_FALSE(
      compute_response(section, line_sites, frequencies, {.threads = 2, .progress = stop}).has_value());
}

}  // namespace
