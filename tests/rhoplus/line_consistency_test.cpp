// What stands out of a line's curves when they are compared with layered ground, and what is proposed for it.
#include "rhoplus/line_consistency.h"

#include <cmath>
#include <set>
#include <tuple>

#include <gtest/gtest.h>

#include "rhoplus/mask_proposal.h"
#include "rhoplus/section_residuals.h"
#include "tests/numerics/rhoplus/made_data.h"

using namespace Module_rhoplus;
using Module_tensor::CurveType;
using Module_tensor::LineTensors;

namespace {

constexpr int frequency_count = 40;

/// What layers measure at 40 frequencies, nothing masked; errors come from the floors alone.
Module_database::StoredReading layered_curve(std::int32_t ID, double phase_shift) {
  const std::vector<made::RhoplusDatum> data =
      made::layered(made::ground(4), made::frequencies(frequency_count, 1e-3, 1e3), 0.04);
  Module_database::StoredReading reading;
  reading.ID = ID;
  reading.curve.assign(data.size());
  for (std::size_t i = 0; i < data.size(); ++i) {
    reading.curve.frequencies[i] = static_cast<float>(data[i].frequency);
    reading.curve.value(Module_database::field_resistivity, i) = static_cast<float>(data[i].resistivity);
    reading.curve.value(Module_database::field_phase, i) = static_cast<float>(data[i].phase + phase_shift);
    reading.curve.counts_at(Module_database::field_resistivity, i) = 1;
    reading.curve.counts_at(Module_database::field_phase, i) = 1;
  }
  return reading;
}

/// One station with both modes and a resistivity and a phase that are wrong in each of them.
LineTensors line_with_outliers(double phase_of_EyHx) {
  LineTensors line;
  Module_tensor::StationCurves& station = line.curves.stations.emplace_back();
  station.station = 100.0;
  station.merged[static_cast<std::size_t>(CurveType::ExHy)] = layered_curve(1, 0.0);
  station.merged[static_cast<std::size_t>(CurveType::EyHx)] = layered_curve(2, phase_of_EyHx);
  for (const CurveType type : consistency_types) {
    Module_database::Curve& curve = station.merged[static_cast<std::size_t>(type)].curve;
    curve.value(Module_database::field_resistivity, 12) *= 1.8F;
    curve.value(Module_database::field_phase, 27) += 17.0F;
  }
  line.stations.emplace_back().station = 100.0;
  return line;
}

Frequencies all_frequencies(const LineTensors& line) {
  Frequencies frequencies;
  frequencies.list = line.curves.stations[0].of(CurveType::ExHy).curve.frequencies;
  frequencies.enabled.assign(frequencies.list.size(), 1);
  return frequencies;
}

LineConsistency consistency_of(const LineTensors& line, const Module_output::RhoplusSettings& settings = {},
                               std::size_t threads = 1) {
  return line_consistency(line, all_frequencies(line), settings, {}, threads);
}

ProposalRules beyond(double errors, bool three_dimensional = false) {
  ProposalRules rules;
  rules.errors = errors;
  rules.three_dimensional = three_dimensional;
  return rules;
}

/// Mode, point, component.
using Value = std::tuple<std::size_t, std::size_t, char>;

std::set<Value> values_of(const MaskProposal& proposal) {
  std::set<Value> values;
  for (const ProposedPoint& point : proposal.points) {
    if (point.resistivity) {
      values.insert({point.mode_index, point.point, 'r'});
    }
    if (point.phase) {
      values.insert({point.mode_index, point.point, 'p'});
    }
  }
  return values;
}

const std::set<Value> planted{{0, 12, 'r'}, {0, 27, 'p'}, {1, 12, 'r'}, {1, 27, 'p'}};

/// A tensor of a phase tensor and a regional real part without diagonal.
Module_tensor::TensorPoint tensor_point(double frequency, const std::array<double, 4>& phases) {
  constexpr double size = 10.0;
  const auto& [xx, xy, yx, yy] = phases;
  Module_tensor::TensorPoint point;
  point.frequency = frequency;
  point.tensor.z = {
      std::complex<double>(0.0, size * yx), {size, size * yy}, {-size, -size * xx}, {0.0, -size * xy}};
  return point;
}

}  // namespace

TEST(Line_consistency, Finds_the_points_that_no_layered_earth_explains) {
  const LineTensors line = line_with_outliers(0.0);
  const LineConsistency consistency = consistency_of(line);
  ASSERT_EQ(consistency.stations.size(), 1U);
  EXPECT_FALSE(consistency.stopped);
  for (const CurveConsistency& curve : consistency.stations[0].modes) {
    ASSERT_TRUE(curve.ran());
    EXPECT_EQ(curve.used_values, 2 * frequency_count);
    EXPECT_GT(curve.points[12].resistivity, 5.0) << "datum minus model";
    EXPECT_GT(curve.points[27].phase, 5.0);
    double chi2 = 0.0;
    for (const PointResidual& point : curve.points) {
      chi2 += point.resistivity * point.resistivity + point.phase * point.phase;
    }
    EXPECT_NEAR(std::sqrt(chi2), curve.chi, 1e-4 * curve.chi);
  }
  const MaskProposal proposal = mask_proposal(line, consistency, beyond(5.0));
  EXPECT_EQ(values_of(proposal), planted);
  EXPECT_EQ(proposal.values, (std::array<std::size_t, 2>{2, 2}));
  EXPECT_EQ(
      proposal_text(proposal),
      "2 values of ExHy and 2 values of EyHx lie beyond the limit. The fit without them may leave further "
      "points beyond it.");
  EXPECT_EQ(proposal_text({}), "0 values of ExHy and 0 values of EyHx lie beyond the limit.");
  const auto curves = points_to_mask(consistency, proposal);
  ASSERT_EQ(curves.size(), 2U);
  EXPECT_EQ(curves[1].ID, 2);
  ASSERT_EQ(curves[1].points.size(), 2U);
  EXPECT_EQ(curves[1].points[0].frequency, all_frequencies(line).list[12]);
  EXPECT_FALSE(curves[1].points[0].counts);
}

TEST(Line_consistency, Brings_EyHx_to_the_first_quadrant_whatever_the_sign_of_Ey) {
  struct Case {
    const char* name;
    double phase;  // added to those of a turned Ey
    Module_tensor::EyReason reason;
    bool ey_turned;
    bool has_tensor;
    bool phases_turned;
  };
  using enum Module_tensor::EyReason;
  const Case cases[] = {{"turned, by the tensor's rule", 0.0, rule, true, true, false},
                        {"as measured, by the tensor's rule", -180.0, rule, false, true, true},
                        {"as measured, written above 180", 180.0, facts, false, false, true},
                        {"turned, without tensor", 0.0, rule, false, false, false},
                        {"as measured, without tensor", -180.0, rule, false, false, true},
                        {"turned, as the user says", 0.0, user, true, false, false}};
  const double chi = consistency_of(line_with_outliers(0.0)).stations[0].modes[1].chi;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    LineTensors line = line_with_outliers(c.phase);
    line.stations[0].ey_reason = c.reason;
    line.stations[0].ey_turned = c.ey_turned;
    line.stations[0].points.resize(c.has_tensor ? 1 : 0);
    const LineConsistency consistency = consistency_of(line);
    const CurveConsistency& curve = consistency.stations[0].modes[1];
    EXPECT_EQ(curve.phases_turned, c.phases_turned);
    EXPECT_NEAR(curve.chi, chi, 1e-3 * chi) << "32-bit phases about 225 degrees are good to 1e-5 degrees";
    EXPECT_EQ(values_of(mask_proposal(line, consistency, beyond(5.0))), planted);
  }
}

TEST(Line_consistency, Takes_errors_and_what_counts_from_settings_masks_and_frequencies) {
  LineTensors line = line_with_outliers(0.0);
  const LineConsistency usual = consistency_of(line);
  Module_output::RhoplusSettings doubled;
  doubled.resistivity_error_floor *= 2.0F;
  doubled.phase_error_floor *= 2.0F;
  const LineConsistency halved = consistency_of(line, doubled);
  EXPECT_NEAR(2.0 * halved.stations[0].modes[0].chi, usual.stations[0].modes[0].chi, 1e-3);
  EXPECT_NEAR(2.0 * halved.stations[0].modes[0].points[12].resistivity,
              usual.stations[0].modes[0].points[12].resistivity, 1e-2);

  // Without the wrong values nothing is left to stand out.
  Module_database::Curve& curve = line.curves.stations[0].merged[1].curve;
  curve.counts_at(Module_database::field_resistivity, 12) = 0;
  Frequencies frequencies = all_frequencies(line);
  frequencies.enabled[27] = 0;
  line.curves.stations[0].merged[2] = {};
  const LineConsistency without =
      line_consistency(line, frequencies, Module_output::RhoplusSettings{}, {}, 1);
  const CurveConsistency& left = without.stations[0].modes[0];
  EXPECT_EQ(left.used_values, 2 * frequency_count - 3);
  EXPECT_FALSE(left.points[12].uses_resistivity());
  EXPECT_TRUE(left.points[12].uses_phase());
  EXPECT_FALSE(left.points[27].uses_phase());
  EXPECT_LT(left.chi, 0.1);
  EXPECT_EQ(without.stations[0].modes[1].ID, 0);
  EXPECT_FALSE(without.stations[0].modes[1].ran());
  EXPECT_TRUE(mask_proposal(line, without, beyond(1.0)).empty());
}

TEST(Line_consistency, Does_not_depend_on_threads_and_stops_when_asked) {
  LineTensors line = line_with_outliers(0.0);
  for (int more = 0; more < 30; ++more) {
    line.curves.stations.push_back(line.curves.stations[0]);
    line.stations.push_back(line.stations[0]);
  }
  const LineConsistency one = consistency_of(line, {}, 1);
  const LineConsistency three = consistency_of(line, {}, 3);
  for (std::size_t station = 0; station < one.stations.size(); ++station) {
    for (std::size_t point = 0; point < frequency_count; ++point) {
      EXPECT_EQ(one.stations[station].modes[1].points[point].phase,
                three.stations[station].modes[1].points[point].phase);
    }
  }
  const LineConsistency stopped =
      line_consistency(line, all_frequencies(line), {}, [](double) { return false; });
  EXPECT_TRUE(stopped.stopped);
  EXPECT_EQ(stopped.stations.size(), line.stations.size());
}

TEST(Section_residuals, Follow_the_edits_of_every_station) {
  LineTensors line = line_with_outliers(0.0);
  line.curves.stations.push_back(line.curves.stations[0]);
  line.stations.push_back(line.stations[0]);
  const Frequencies frequencies = all_frequencies(line);
  SectionResiduals residuals;
  const auto wrong_phase = [&](std::size_t station) {
    EXPECT_TRUE(residuals.update(line, frequencies, {}, {}));
    EXPECT_EQ(residuals.stations().size(), line.stations.size());
    return residuals.stations().at(station)[0].at(27).phase;
  };
  EXPECT_GT(wrong_phase(0), 5.0);
  for (std::size_t station = 0; station < line.stations.size(); ++station) {
    SCOPED_TRACE(station);
    line.curves.stations[station].merged[static_cast<std::size_t>(CurveType::ExHy)].curve.value(
        Module_database::field_phase, 27) -= 17.0F;
    EXPECT_LT(wrong_phase(station), 2.0);
    EXPECT_EQ(wrong_phase(1) > 5.0, station == 0) << "the other one keeps its own";
  }
  for (auto& merged : line.curves.stations[0].merged) {
    merged.UseReading = false;
  }
  EXPECT_TRUE(residuals.update(line, frequencies, {}, {}));
  EXPECT_TRUE(residuals.stations()[0][0].empty()) << "what is switched off is not inverted";
}

TEST(Mask_proposal, Leaves_points_alone_where_the_tensor_is_three_dimensional) {
  LineTensors line = line_with_outliers(0.0);
  const Frequencies frequencies = all_frequencies(line);
  // beta of the first is 1/2 atan2(0.7, 1.8) = 10.6 degrees, of the second 0.
  line.stations[0].points = {tensor_point(frequencies.list[12], {1.0, 0.5, -0.2, 0.8}),
                             tensor_point(frequencies.list[27], {1.0, 0.0, 0.0, 0.6})};
  line.stations[0].ey_turned = true;
  const LineConsistency consistency = consistency_of(line);
  const MaskProposal careful = mask_proposal(line, consistency, beyond(5.0));
  EXPECT_EQ(values_of(careful), (std::set<Value>{{0, 27, 'p'}, {1, 27, 'p'}}));
  EXPECT_EQ(careful.left_three_dimensional, 2U);
  EXPECT_EQ(values_of(mask_proposal(line, consistency, beyond(5.0, true))), planted);
  ProposalRules wide = beyond(5.0);
  wide.limits.skew = 12.0;
  EXPECT_EQ(values_of(mask_proposal(line, consistency, wide)), planted);
}
