#include "tensor/pseudo_section.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "tensor/section_contours.h"
#include "tests/tensor/section_line.h"

using namespace Module_tensor;
using Module_database::field_phase;
using Module_database::field_resistivity;
using section_line::Line;

namespace {

/// The value of the cell of a column at a height; NaN where nothing is coloured.
double value_at(const SectionColumn& column, double height) {
  const auto cell = std::ranges::find_if(column.cells, [height](const SectionCell& candidate) {
    return candidate.heights.lower <= height && height < candidate.heights.upper;
  });
  return cell == column.cells.end() ? std::nan("") : cell->value;
}

const std::vector<float> octaves{1.0F, 2.0F, 4.0F, 8.0F, 16.0F, 32.0F};

double height(double frequency) { return -std::log10(frequency); }

}  // namespace

TEST(Pseudo_section, Curves_give_resistivity_with_static_factor_and_phases_of_the_first_quadrant) {
  Line line;
  line.add(0.0, octaves).merged[static_cast<std::size_t>(CurveType::EyHx)].ResOffset = 0.5F;
  line.curve(0, CurveType::EyHx).error_at(field_resistivity, 5) = 10.0F;
  line.add(100.0, octaves);  // its Ey was turned, and its tensors say so
  for (float& field : line.curve(1, CurveType::EyHx).data) {
    field = field == -135.0F ? 45.0F : field;
  }
  line.add_tensor(1.0, {});
  line.line.stations.back().ey_turned = true;
  struct Case {
    SectionQuantity quantity;
    double first;
    double second;
  };
  for (const Case& c :
       {Case{SectionQuantity::rho_xy, 2.0, 2.0}, Case{SectionQuantity::rho_yx, 2.0, std::log10(200.0)},
        Case{SectionQuantity::phase_xy, 45.0, 45.0}, Case{SectionQuantity::phase_yx, 45.0, 45.0}}) {
    SCOPED_TRACE(facts_of(c.quantity).word);
    const PseudoSection section = line.section(c.quantity);
    ASSERT_EQ(section.columns.size(), 2U);
    EXPECT_EQ(section.rows.size(), 6U);
    EXPECT_EQ(section.columns[0].cells.size(), 6U);
    EXPECT_NEAR(value_at(section.columns[0], height(4.0)), c.first, 1e-6);
    EXPECT_NEAR(value_at(section.columns[1], height(4.0)), c.second, 1e-6);
  }
  const PseudoSection section = line.section(SectionQuantity::rho_yx);
  EXPECT_DOUBLE_EQ(section.columns[0].points.front().frequency, 32.0);  // by growing period
  EXPECT_NEAR(section.columns[0].points.front().error, 5.0, 1e-6);      // ohm-m, with the factor
}

TEST(Pseudo_section, Frequencies_that_are_switched_off_have_no_points) {
  Line line;
  line.add(0.0, octaves);
  line.frequencies.enabled[2] = 0;
  const PseudoSection section = line.section(SectionQuantity::rho_xy);
  EXPECT_EQ(section.columns[0].points.size(), 5U);
  EXPECT_TRUE(std::isnan(value_at(section.columns[0], height(4.0))));
}

TEST(Pseudo_section, Masked_points_are_there_without_colour) {
  Line line;
  line.add(0.0, octaves);
  line.mask(0, CurveType::ExHy, field_resistivity, 3);
  line.mask(0, CurveType::ExHy, field_phase, 0);
  const PseudoSection resistivity = line.section(SectionQuantity::rho_xy);
  EXPECT_EQ(std::ranges::count(resistivity.columns[0].points, false, &SectionPoint::counts), 1);
  EXPECT_TRUE(std::isnan(value_at(resistivity.columns[0], height(8.0))));
  EXPECT_NEAR(value_at(resistivity.columns[0], height(1.0)), 2.0, 1e-6);
  EXPECT_TRUE(std::isnan(value_at(line.section(SectionQuantity::phase_xy).columns[0], height(1.0))));
  // A reading that is out of use has nothing that counts.
  line.line.curves.stations[0].merged[static_cast<std::size_t>(CurveType::ExHy)].UseReading = false;
  const PseudoSection unused = line.section(SectionQuantity::rho_xy);
  EXPECT_TRUE(unused.columns[0].cells.empty());
  EXPECT_EQ(unused.columns[0].points.size(), 6U);
  EXPECT_FALSE(range_of_data(unused).has_value());
}

TEST(Pseudo_section, Frequencies_within_a_percent_are_one_row_others_are_interpolated_but_never_beyond) {
  Line line;
  line.add(0.0, {1.0F, 4.0F, 16.0F, 64.0F}, 10.0F);
  line.curve(0, CurveType::ExHy).value(field_resistivity, 2) = 1000.0F;
  line.add(100.0, {1.009F, 4.03F, 8.0F, 16.1F, 63.5F, 256.0F});
  const PseudoSection section = line.section(SectionQuantity::rho_xy);
  ASSERT_EQ(section.rows.size(), 6U);
  const SectionColumn& column = section.columns[0];
  // 8 Hz is half way between 4 and 16 Hz: between 10 and 1000 ohm-m, 100.
  EXPECT_NEAR(value_at(column, height(8.0)), 2.0, 1e-3);
  EXPECT_TRUE(std::isnan(value_at(column, height(256.0))));
  EXPECT_EQ(column.cells.size(), 5U);
  // A mask on either side of a row leaves nothing to interpolate from.
  line.mask(0, CurveType::ExHy, field_resistivity, 1);
  EXPECT_TRUE(std::isnan(value_at(line.section(SectionQuantity::rho_xy).columns[0], height(8.0))));
}

TEST(Pseudo_section, Gaps_between_stations_and_periods_stay_without_colour) {
  Line line;
  for (const double station : {0.0, 100.0, 200.0, 500.0, 600.0}) {
    line.add(station, {1.0F, 2.0F, 4.0F, 32.0F, 64.0F, 128.0F});
  }
  const PseudoSection section = line.section(SectionQuantity::rho_xy);
  EXPECT_EQ(section.columns[1].across, (SectionRange{50.0, 150.0}));
  EXPECT_EQ(section.columns[2].across, (SectionRange{150.0, 250.0}));
  EXPECT_TRUE(section.columns[2].gap_behind);
  EXPECT_EQ(section.columns[3].across, (SectionRange{450.0, 550.0}));
  EXPECT_EQ(section.columns[4].across, (SectionRange{550.0, 650.0}));
  EXPECT_TRUE(std::isnan(value_at(section.columns[0], height(11.3))));
  EXPECT_NEAR(value_at(section.columns[0], height(5.0)), 2.0, 1e-6);
  EXPECT_EQ(std::ranges::count(section.gap_behind, true), 1);
}

TEST(Pseudo_section, A_band_that_is_sampled_less_densely_is_no_gap) {
  for (const auto& [near, far] : {std::pair(10.0F, 40.0F), {0.25F, 0.0625F}}) {
    Line short_band;  // of two intervals, at either end
    short_band.add(0.0, {1.0F, 1.25F, 1.6F, 2.0F, 2.5F, near, far});
    EXPECT_EQ(std::ranges::count(short_band.section(SectionQuantity::rho_xy).gap_behind, true), 0) << far;
  }
  Line line;
  line.add(0.0, {1.0F, 1.25F, 1.6F, 2.0F, 4.0F, 8.0F, 16.0F});
  const PseudoSection section = line.section(SectionQuantity::rho_xy);
  EXPECT_EQ(std::ranges::count(section.gap_behind, true), 0);
  EXPECT_NEAR(value_at(section.columns[0], height(6.0)), 2.0, 1e-6);
}

TEST(Pseudo_section, Single_stations_single_frequencies_equal_places_and_nothing_are_sensible) {
  Line line;
  EXPECT_TRUE(line.section(SectionQuantity::rho_xy).empty());
  line.add(700.0, {8.0F});
  for (const QuantityFacts& facts : section_quantities()) {
    EXPECT_EQ(facts.ellipses, facts.word.starts_with("ellipses")) << facts.word;
    SCOPED_TRACE(facts.word);
    const PseudoSection section = line.section(facts.quantity);
    ASSERT_EQ(section.columns.size(), 1U);
    EXPECT_LT(section.columns[0].across.lower, 700.0);
    EXPECT_GT(section.columns[0].across.upper, 700.0);
  }
  const PseudoSection one = line.section(SectionQuantity::rho_xy);
  EXPECT_EQ(one.columns[0].cells.size(), 1U);
  EXPECT_LT(one.heights->lower, height(8.0));
  EXPECT_GT(one.heights->upper, height(8.0));
  line.add(700.0, {8.0F}, 10.0F);
  line.add(800.0, {8.0F}, 1.0F);
  const PseudoSection shared = line.section(SectionQuantity::rho_xy);
  EXPECT_EQ(shared.columns[0].across, (SectionRange{650.0, 700.0}));
  EXPECT_EQ(shared.columns[1].across, (SectionRange{700.0, 750.0}));
  const auto nowhere = [](double station) {
    return station == 800.0 ? std::nullopt : std::optional(station);
  };
  EXPECT_EQ(make_pseudo_section(line.source(), SectionQuantity::rho_xy, nowhere).columns.size(), 2U);
}

TEST(Pseudo_section, Depths_of_a_half_space_grow_with_the_root_of_the_period) {
  Line line;
  line.add(0.0, {1.0F, 10.0F, 100.0F});
  const PseudoSection section = line.section(SectionQuantity::bostick_xy);
  const SectionColumn& column = section.columns[0];
  ASSERT_EQ(column.cells.size(), 3U);
  const double mu0 = 4e-7 * std::numbers::pi;
  for (const SectionPoint& point : column.points) {
    EXPECT_NEAR(point.depth, std::sqrt(100.0 / (2.0 * std::numbers::pi * point.frequency * mu0)), 0.01);
    EXPECT_NEAR(point.value, 2.0, 1e-5);  // at 45 degrees the half-space itself
  }
  const double deepest = std::log10(column.points.back().depth);
  EXPECT_NEAR(column.cells[1].heights.upper - column.cells[1].heights.lower, 0.5, 1e-6);
  EXPECT_NEAR(column.cells[2].heights.upper, deepest + 0.25, 1e-6);
  // A phase beyond the quadrant has no resistivity, and where it falls from one period to the next the depths
  // turn back: the cells stay in the order of the periods.
  line.curve(0, CurveType::ExHy).value(field_resistivity, 0) = 0.5F;
  const PseudoSection turned = line.section(SectionQuantity::bostick_xy);
  EXPECT_LT(turned.columns[0].points[2].depth, turned.columns[0].points[1].depth);
  for (const SectionCell& cell : turned.columns[0].cells) {
    EXPECT_LT(cell.heights.lower, cell.heights.upper);
  }
  line.curve(0, CurveType::ExHy).value(field_phase, 1) = 95.0F;
  EXPECT_EQ(line.section(SectionQuantity::bostick_xy).columns[0].cells.size(), 2U);
}

TEST(Pseudo_section, A_depth_alone_is_as_high_as_among_neighbours) {
  Line line;
  line.add(0.0, {1.0F, 10.0F, 100.0F});
  line.add(100.0, {10.0F});
  const PseudoSection section = line.section(SectionQuantity::bostick_xy);
  const SectionCell& alone = section.columns[1].cells.at(0);
  EXPECT_NEAR(alone.heights.lower, section.columns[0].cells[1].heights.lower, 1e-6);
  EXPECT_NEAR(alone.heights.upper, section.columns[0].cells[1].heights.upper, 1e-6);
}

TEST(Pseudo_section, Tensor_quantities_come_from_tensors_and_masks_of_either_curve_mark_them) {
  Line line;
  line.add(0.0, {0.5F, 1.0F});
  numerics::impedance::Tensor tensor;
  tensor.z = {{{1.0, 2.0}, {10.0, 8.0}, {-9.0, -11.0}, {-0.5, -1.0}}};
  line.add_tensor(1.0, tensor);
  line.mask(0, CurveType::EyHx, field_phase, 0);
  struct Case {
    SectionQuantity quantity;
    double value;
  };
  for (const Case& c :
       {Case{SectionQuantity::rho_det, std::log10(36.0068)}, Case{SectionQuantity::phase_det, 44.443},
        Case{SectionQuantity::phase_max, 50.888}, Case{SectionQuantity::phase_min, 37.998},
        Case{SectionQuantity::ellipses_by_skew, -0.15915},
        Case{SectionQuantity::ellipses_by_phase_min, 37.998},
        Case{SectionQuantity::ellipses_by_ellipticity, 0.22312}}) {
    SCOPED_TRACE(facts_of(c.quantity).word);
    const PseudoSection section = line.section(c.quantity);
    ASSERT_EQ(section.columns[0].points.size(), 2U);
    EXPECT_NEAR(section.columns[0].points[0].value, c.value, 1e-3);
    EXPECT_TRUE(section.columns[0].points[0].counts);
    EXPECT_EQ(section.columns[0].points[0].tensor != nullptr, facts_of(c.quantity).ellipses);
    EXPECT_FALSE(section.columns[0].points[1].counts);
    EXPECT_FALSE(section.columns[0].points[1].has_value());
    const double room = facts_of(c.quantity).ellipses ? std::log10(2.0) : 0.5 * std::log10(2.0);
    EXPECT_NEAR(section.heights->lower, height(1.0) - room, 1e-6);
  }
}

TEST(Pseudo_section, Tippers_show_what_is_masked_and_not_what_was_never_there) {
  Line line;
  line.add(0.0, {0.5F, 1.0F, 2.0F});
  for (const CurveType type : {CurveType::HzHx, CurveType::HzHy}) {
    line.line.curves.stations[0].merged[static_cast<std::size_t>(type)] =
        section_line::reading({0.5F, 1.0F, 2.0F}, 0.1F, 0.2F);
    line.curve(0, type).value(field_resistivity, 2) = no_data;
    line.mask(0, type, field_resistivity, 2);
  }
  line.mask(0, CurveType::HzHx, field_phase, 0);
  const PseudoSection section = line.section(SectionQuantity::tipper_magnitude);
  ASSERT_EQ(section.columns.size(), 1U);
  ASSERT_EQ(section.columns[0].points.size(), 1U);
  EXPECT_EQ(section.columns[0].points[0].frequency, 0.5);
  EXPECT_FALSE(section.columns[0].points[0].counts);
}

TEST(Pseudo_section, Residuals_are_put_beside_the_points_that_they_are_of) {
  Line line;
  line.add(0.0, octaves);
  line.mask(0, CurveType::EyHx, field_phase, 4);
  line.residuals.resize(1);
  line.residuals[0][1] = {{1.0F, 0.5, -7.0}, {2.0F, std::nan(""), 1.0}, {16.0F, 3.0, std::nan("")}};
  const PseudoSection phases = line.section(SectionQuantity::misfit_phase_yx);
  EXPECT_NEAR(value_at(phases.columns[0], height(1.0)), -7.0, 1e-12);
  EXPECT_EQ(phases.columns[0].points.size(), 3U);  // two values and the masked one
  EXPECT_EQ(line.section(SectionQuantity::misfit_rho_yx).columns[0].cells.size(), 2U);
  EXPECT_TRUE(line.section(SectionQuantity::misfit_rho_xy).columns[0].points.empty());
  EXPECT_EQ(range_of_data(phases), (SectionRange{-7.0, 7.0}));
}

TEST(Pseudo_section, Contours_of_a_plane_are_where_it_has_their_values) {
  Line line;
  const std::vector<float> decades{0.01F, 0.1F, 1.0F, 10.0F, 100.0F};
  for (const double station : {0.0, 100.0, 200.0, 300.0}) {
    line.add(station, decades);
    for (std::size_t i = 0; i < decades.size(); ++i) {  // log10 rho = x / 200 + height / 4 + 1
      line.curve(line.line.stations.size() - 1, CurveType::ExHy).value(field_resistivity, i) =
          static_cast<float>(std::pow(10.0, station / 200.0 + height(decades[i]) / 4.0 + 1.0));
    }
  }
  PseudoSection section = line.section(SectionQuantity::rho_xy);
  for (const double level : {0.7, 1.0, 1.9}) {
    double length = 0.0;
    for (const ContourPiece& piece : contour_lines(section, {-5.0, level})) {
      EXPECT_EQ(piece.level, 1U);
      EXPECT_NEAR(piece.x1 / 200.0 + piece.height1 / 4.0 + 1.0, level, 1e-5);
      EXPECT_NEAR(piece.x2 / 200.0 + piece.height2 / 4.0 + 1.0, level, 1e-5);
      length += std::abs(piece.x2 - piece.x1);
    }
    // From one edge of the grid to the other one, without a hole.
    const double left = std::max(0.0, 200.0 * (level - 1.0 - 0.5));
    const double right = std::min(300.0, 200.0 * (level - 1.0 + 0.5));
    EXPECT_NEAR(length, right - left, 1e-3) << level;
  }
  // No line through a cell that lacks a corner.
  line.mask(1, CurveType::ExHy, field_resistivity, 2);
  section = line.section(SectionQuantity::rho_xy);
  for (const ContourPiece& piece : contour_lines(section, {1.0, 1.1, 1.2, 1.3, 1.4, 1.5, 1.6})) {
    EXPECT_FALSE(std::min(piece.x1, piece.x2) < 199.9 && std::max(piece.height1, piece.height2) > -0.9 &&
                 std::min(piece.height1, piece.height2) < 0.9);
  }
}

TEST(Pseudo_section, Contours_of_a_saddle_join_what_its_middle_says) {
  Line line;
  line.add(0.0, {0.1F, 1.0F}, 10.0F);
  line.add(100.0, {0.1F, 1.0F}, 10.0F);
  line.curve(0, CurveType::ExHy).value(field_resistivity, 0) = 1000.0F;
  line.curve(1, CurveType::ExHy).value(field_resistivity, 1) = 1000.0F;
  const PseudoSection section = line.section(SectionQuantity::rho_xy);
  for (const double level : {1.5, 2.5}) {  // the middle is 2: above the one, below the other
    const auto pieces = contour_lines(section, {level});
    ASSERT_EQ(pieces.size(), 2U);
    for (const ContourPiece& piece : pieces) {
      const double near_x = 0.5 * (piece.x1 + piece.x2) < 50.0 ? 0.0 : 100.0;
      const double near_height = 0.5 * (piece.height1 + piece.height2) < 0.5 ? 0.0 : 1.0;
      const bool cuts_high = (near_x == 0.0) == (near_height == 1.0);
      EXPECT_EQ(cuts_high, level > 2.0);
    }
  }
}

TEST(Pseudo_section, Contour_levels_are_round_and_few) {
  EXPECT_EQ(contour_levels({0.0, 4.0}), (std::vector<double>{0, 0.5, 1, 1.5, 2, 2.5, 3, 3.5, 4}));
  EXPECT_EQ(contour_levels({0.0, 90.0}), (std::vector<double>{0, 20, 40, 60, 80}));
  EXPECT_EQ(contour_levels({-6.0, 6.0}), (std::vector<double>{-6, -4, -2, 0, 2, 4, 6}));
  for (const SectionRange range : {SectionRange{1e17, 1e17 + 16.0}, SectionRange{-3e-9, 1e-9}}) {
    EXPECT_LT(contour_levels(range).size(), 20U);
  }
}
