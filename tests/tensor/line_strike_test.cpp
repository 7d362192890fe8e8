// The strike of lines whose ground has a known one, by band, method and station.
#include "tensor/line_strike.h"

#include <gtest/gtest.h>

#include "tensor/dimensions.h"
#include "tensor/strike_summary.h"
#include "tests/tensor/made_tensors.h"

using namespace Module_tensor;
using numerics::impedance::Dimensionality;
using numerics::impedance::StrikeChoices;
using numerics::impedance::StrikeMethod;
using numerics::impedance::StrikeWeights;

namespace {

const std::vector<double> one_a_decade{0.01F, 0.1F, 1.0, 10.0, 100.0};

/// Five stations over ground of strike 25 whose sensors lie in different directions.
std::vector<StationTensor> turned_sensors(double tm_phase = 30.0) {
  std::vector<StationTensor> stations;
  for (const double axes : {0.0, 12.0, -35.0, 90.0, 200.0}) {
    stations.push_back(made::station(100.0 + axes, one_a_decade, {25.0, axes, 60.0, tm_phase}));
  }
  return stations;
}

double modulo_90(double angle) { return angle - 90.0 * std::round(angle / 90.0); }

}  // namespace

TEST(Line_strike, Is_from_north_whatever_axes_the_sensors_have) {
  const auto stations = strike_stations(turned_sensors());
  for (const StrikeMethod method :
       {StrikeMethod::phase_tensor_azimuth, StrikeMethod::phase_tensor_alpha, StrikeMethod::swift_sum}) {
    for (const StrikeWeights weights : {StrikeWeights::none, StrikeWeights::ellipticity_squared}) {
      SCOPED_TRACE(method_name(method));
      const auto strike = line_strike(stations, {}, {method, weights});
      EXPECT_NEAR(strike.strike.value, 25.0, 1e-6);
      EXPECT_NEAR(std::abs(strike.alternative - strike.strike.value), 90.0, 1e-9);
      EXPECT_EQ(strike.used, 25);
      EXPECT_EQ(strike.left_out, 0);
      EXPECT_NEAR(strike.strike.error, 0.0, 1e-5);
    }
  }
}

TEST(Line_strike, Stations_with_swapped_principal_phases_do_not_cancel) {
  auto line = turned_sensors();
  line.resize(2);
  auto other_side = made::station(300.0, one_a_decade, {25.0, 40.0, 30.0, 60.0});
  line.push_back(other_side);
  other_side.station = 400.0;
  line.push_back(other_side);
  const auto strike = line_strike(strike_stations(line), {}, {});
  EXPECT_NEAR(strike.strike.value, 25.0, 1e-6);
  EXPECT_NEAR(strike.deviation, 0.0, 1e-3);
}

TEST(Line_strike, Limits_leave_points_out_and_count_them) {
  auto line = turned_sensors();
  line.push_back(made::station(500.0, one_a_decade, {25.0, 0.0, 45.0, 45.0}));  // no strike at all
  for (TensorPoint& point : line.front().points) {                              // skewed by far
    point.tensor[numerics::impedance::Element::xx] += std::complex(1.0, 9.0);
    point.tensor[numerics::impedance::Element::yy] += std::complex(2.0, 9.0);
  }
  const auto strike = line_strike(strike_stations(line), {}, {});
  EXPECT_NEAR(strike.strike.value, 25.0, 1e-6);
  EXPECT_EQ(strike.used, 20);
  EXPECT_EQ(strike.left_out, 10);
}

TEST(Line_strike, Decades_have_strikes_of_their_own_and_share_no_frequency) {
  std::vector<StationTensor> line;
  for (const double number : {1.0, 2.0, 3.0}) {
    StationTensor shallow = made::station(number, {100.0, 30.0F, 10.0}, {-20.0, 5.0});
    const StationTensor deep = made::station(number, {1.0, 0.1F}, {35.0, 5.0});
    shallow.points.insert(shallow.points.end(), deep.points.begin(), deep.points.end());
    line.push_back(shallow);
  }
  const auto stations = strike_stations(line);
  const auto whole = whole_band(stations);
  ASSERT_TRUE(whole);
  const auto decades = decades_of(stations, *whole);
  ASSERT_EQ(decades.size(), 4);
  const std::vector<std::pair<double, std::size_t>> expected{{35.0, 3}, {35.0, 3}, {-20.0, 6}, {-20.0, 3}};
  for (std::size_t i = 0; i < decades.size(); ++i) {
    SCOPED_TRACE(band_text(decades[i]));
    const auto strike = line_strike(stations, decades[i], {});
    EXPECT_NEAR(strike.strike.value, expected[i].first, 1e-6);
    EXPECT_EQ(strike.used, expected[i].second);
  }
  EXPECT_EQ(line_strike(stations, *whole, {}).used, 15);
}

TEST(Line_strike, A_band_cuts_its_decades_and_keeps_both_ends) {
  const auto stations = strike_stations(turned_sensors());
  const auto band = read_band("10", "0.1", *whole_band(stations));
  ASSERT_TRUE(band);
  EXPECT_EQ(band_text(*band), "0.1 - 10 Hz");
  EXPECT_EQ(period_text(*band), "0.1 - 10 s");
  EXPECT_EQ(line_strike(stations, *band, {}).used, 15);
  std::size_t points = 0;
  for (const FrequencyBand& decade : decades_of(stations, *band)) {
    points += line_strike(stations, decade, {}).used;
  }
  EXPECT_EQ(points, 15);
}

TEST(Line_strike, Typed_bands) {
  const FrequencyBand data{0.01, 100.0};
  const auto open = read_band(" ", "5", data);
  ASSERT_TRUE(open);
  EXPECT_EQ(open->lower, 0.01);
  EXPECT_EQ(open->upper, 5.0);
  for (const char* const bad : {"0", "-1", "x", "1e", "1 2", "1E999"}) {
    EXPECT_FALSE(read_band(bad, "", data)) << bad;
    EXPECT_FALSE(read_band("1", bad, data)) << bad;
  }
}

TEST(Line_strike, Of_a_station_has_a_deviation_and_no_error) {
  auto line = turned_sensors();
  line[1].points[2].masked_diagonals = 2;
  const auto stations = strike_stations(line);
  const StationStrike strike = station_strike(stations[1], {}, {});
  EXPECT_NEAR(strike.strike.strike.value, 25.0, 1e-6);
  EXPECT_FALSE(strike.strike.strike.has_error());
  EXPECT_NEAR(strike.strike.deviation, 0.0, 1e-3);
  EXPECT_NEAR(strike.median_skew, 0.0, 1e-9);
  EXPECT_TRUE(std::isnan(station_strike(stations[1], {0.5, 5.0}, {}).strike.deviation)) << "of one point";
  EXPECT_EQ(strike.masked_diagonals, 2);
  EXPECT_EQ(station_strike(stations[1], {50.0, 200.0}, {}).masked_diagonals, 0);
}

TEST(Line_strike, Median_skew_of_a_station_is_of_the_amounts_in_the_band) {
  auto stations = strike_stations({made::station(100.0, one_a_decade, {})});
  const std::array skews{5.0, -1.0, 3.0, 2.0, -9.0};
  for (std::size_t i = 0; i < skews.size(); ++i) {
    stations[0].phase_tensors[i]->beta.value = skews[i];
  }
  EXPECT_EQ(station_strike(stations[0], {}, {}).median_skew, 3.0);
  EXPECT_EQ(station_strike(stations[0], {0.001, 20.0}, {}).median_skew, 2.5);
}

TEST(Line_strike, Of_arrows_is_what_they_stand_across) {
  std::vector<StationTensor> line;
  for (const double axes : {0.0, 30.0}) {
    StationTensor station = made::station(axes, {}, {0.0, axes});
    for (const double azimuth : {16.0, 20.0, 204.0}) {  // across a strike of 110, or -70
      station.tipper.push_back({1.0 / azimuth, numerics::impedance::rotated(made::arrow(azimuth), axes)});
    }
    station.tipper.push_back({1.0, {}});  // without a direction
    line.push_back(station);
  }
  const auto stations = strike_stations(line);
  const auto strike = line_strike(stations, {}, {StrikeMethod::tipper});
  EXPECT_NEAR(strike.strike.value, -70.0, 1e-6);
  EXPECT_NEAR(modulo_90(strike.alternative - strike.strike.value), 0.0, 1e-9);
  EXPECT_EQ(strike.used, 6);
  EXPECT_EQ(strike.left_out, 2);
  const ArrowVotes votes =
      arrow_votes(said_within(point_strikes(stations, {StrikeMethod::tipper}), {}), 20.0);
  EXPECT_EQ(votes.strike, 0);
  EXPECT_EQ(votes.alternative, 6);
}

TEST(Line_strike, Sentences_tell_of_masked_diagonals_where_there_are_some) {
  auto line = turned_sensors();
  const StrikeQuestion question;
  auto stations = strike_stations(line);
  EXPECT_EQ(data_sentences(*strike_summary(stations, question), question).size(), 1U);
  line[1].points[2].masked_diagonals = 2;
  stations = strike_stations(line);
  const auto sentences = data_sentences(*strike_summary(stations, question), question);
  ASSERT_EQ(sentences.size(), 2U);
  EXPECT_EQ(sentences[1], "2 of 50 diagonal values are masked and were taken all the same.");
}

TEST(Line_strike, Frequencies_that_are_switched_off_have_no_say) {
  auto line = turned_sensors();
  line[0].points[4].masked_diagonals = 2;
  line[0].masked_diagonals = 2;
  line[0].tipper.push_back({100.0, made::arrow(16.0)});
  const Frequencies frequencies{{0.01F, 0.1F, 1.0F, 10.0F, 100.0F}, {1, 1, 1, 0, 0}};
  const auto stations = strike_stations(line, frequencies);
  EXPECT_EQ(line_strike(stations, {}, {}).used, 15);
  EXPECT_EQ(whole_band(stations)->upper, 1.0);
  EXPECT_TRUE(stations[0].tensors.tipper.empty());
  EXPECT_EQ(stations[0].tensors.masked_diagonals, 0);
}

TEST(Strike_rose, Of_arrows_has_one_lobe) {
  StationTensor station = made::station(1.0, {}, {});
  for (const double azimuth : {12.0, 14.0, 17.0}) {  // across 102, 104 and 107
    station.tipper.push_back({azimuth, made::arrow(azimuth)});
  }
  const StrikeChoices choices{StrikeMethod::tipper};
  const auto stations = strike_stations({station});
  const double common = line_strike(stations, {}, choices).strike.value;
  EXPECT_NEAR(common, -76.0, 1.0);
  const Rose rose =
      strike_rose(said_within(point_strikes(stations, choices), {}), choices.method, 5.0, common);
  EXPECT_EQ(rose.strikes[20], 2.0);
  EXPECT_EQ(rose.strikes[21], 1.0);
  EXPECT_TRUE(rose.alternatives.empty());
}

TEST(Strike_rose, Keeps_a_lobe_together_and_its_other_solution_apart) {
  // Strikes of 44 and 46 fall on both sides of what a strike modulo 90 is cut at.
  const auto stations = strike_stations({made::station(1.0, {1.0, 2.0}, {44.0, 10.0}),
                                         made::station(2.0, {1.0, 2.0, 4.0}, {46.5, -10.0, 30.0, 60.0})});
  const StrikeChoices choices{StrikeMethod::phase_tensor_azimuth, StrikeWeights::none};
  const double common = line_strike(stations, {}, choices).strike.value;
  const Rose rose =
      strike_rose(said_within(point_strikes(stations, choices), {}), choices.method, 5.0, common);
  ASSERT_EQ(rose.strikes.size(), 36);
  const std::size_t turn = common > 0.0 ? 0 : 18;  // the common one is near 45 or near -45
  EXPECT_EQ(rose.strikes[(8 + turn) % 36], 2.0);
  EXPECT_EQ(rose.strikes[(9 + turn) % 36], 3.0);
  EXPECT_EQ(rose.alternatives[(26 + turn) % 36], 2.0);
  EXPECT_EQ(rose.alternatives[(27 + turn) % 36], 3.0);
  EXPECT_EQ(rose.points, 5);
  EXPECT_EQ(rose.highest(), 3.0);
}

TEST(Strike_direction, Says_which_solution_is_across_the_line) {
  struct Case {
    double strike, azimuth;
    const char* sentence;
  };
  const Case cases[] = {
      {-27.0, 63.0, "The line runs at 63 degrees: N27W is across it."},
      {63.0, 63.0, "The line runs at 63 degrees: N27W is across it."},
      {-5.0, 63.0, "The line runs at 63 degrees: N5W is nearer to its normal, 22 degrees off."},
      {18.0, 63.0, "The line runs at 63 degrees: N18E and N72W are both about 45 degrees off its normal."},
      {0.0, 178.0, "The line runs at 178 degrees: N90E is across it."}};
  for (const Case& c : cases) {
    EXPECT_EQ(direction_sentences(c.strike, c.azimuth, {}).front(), c.sentence);
  }
  EXPECT_EQ(direction_sentences(-27.0, std::nullopt, {3, 9}).back(),
            "The tippers favour N63E: it is across 9 of 12 real arrows.");
}

TEST(Strike_direction, Azimuth_of_a_line_of_places) {
  Module_projections::StationPlaces places;
  for (int i = 0; i < 5; ++i) {  // to the north-north-west
    places.stations.push_back(
        {100.0 * i, numerics::geodesy::MapPlace{500000.0 - 577.35 * i, 7.8e6 + 1000.0 * i}});
  }
  places.stations.push_back({900.0, std::nullopt});
  ASSERT_TRUE(line_azimuth(places));
  EXPECT_NEAR(*line_azimuth(places), 150.0, 1e-3);
  places.stations[1].place->easting += 3000.0;
  places.stations[3].place->easting -= 3000.0;
  EXPECT_FALSE(line_azimuth(places));
}

TEST(Strike_summary, Of_nothing_is_none) {
  EXPECT_FALSE(strike_summary({}, {}));
  EXPECT_FALSE(strike_summary(strike_stations({made::station(1.0, {}, {})}), {}));
  StrikeQuestion beside;
  beside.band = FrequencyBand{1000.0, 2000.0};
  const auto summary = strike_summary(strike_stations(turned_sensors()), beside);
  ASSERT_TRUE(summary);
  EXPECT_FALSE(summary->best.strike.has_value());
  EXPECT_TRUE(summary->decades.empty());
  EXPECT_EQ(summary->stations.size(), 5);
}

/// Every number of a summary.
std::vector<double> numbers_of(const StrikeSummary& summary) {
  std::vector<double> numbers{summary.best.strike.value, static_cast<double>(summary.votes.strike),
                              static_cast<double>(summary.stations.size())};
  const auto add = [&](const BandAnswer& answer) {
    numbers.insert(numbers.end(), {answer.strike.strike.value, answer.strike.strike.error,
                                   static_cast<double>(answer.strike.left_out), answer.rose.bin_width});
    numbers.insert(numbers.end(), answer.rose.strikes.begin(), answer.rose.strikes.end());
  };
  for (const MethodAnswers& method : summary.methods) {
    add(method.whole);
    std::ranges::for_each(method.decades, add);
  }
  std::ranges::replace_if(
      numbers, [](double number) { return std::isnan(number); }, -1000.0);
  return numbers;
}

TEST(Strike_summary, Of_one_question_after_the_other_is_that_of_each_alone) {
  auto line = turned_sensors();
  line[0].tipper.push_back({100.0, made::arrow(16.0)});
  line[1].tipper.push_back({0.1, made::arrow(70.0)});
  const auto stations = strike_stations(line);
  StrikeQuestion question;
  StrikeSummaries summaries;
  const auto agrees = [&] {
    return numbers_of(*summaries.summary(stations, question)) ==
           numbers_of(*strike_summary(stations, question));
  };
  EXPECT_TRUE(agrees());
  question.bin_width = 5.0;
  EXPECT_TRUE(agrees());
  for (const StrikeMethod method :
       {StrikeMethod::swift_sum, StrikeMethod::tipper, StrikeMethod::phase_tensor_alpha}) {
    question.choices.method = method;
    EXPECT_TRUE(agrees()) << method_name(method);
  }
  question.choices.weights = StrikeWeights::none;
  EXPECT_TRUE(agrees());
  question.band = FrequencyBand{0.05, 20.0};
  EXPECT_TRUE(agrees());
  question.choices.skew_limit = 0.0;
  EXPECT_TRUE(agrees());
  question.choices.least_ellipticity = 0.9;
  question.band.reset();
  EXPECT_TRUE(agrees());
}

TEST(Dimensions, By_skew_and_ellipticity_with_cells_between_periods) {
  auto station = made::station(1.0, {0.1F, 1.0, 10.0, 10000.0}, {25.0, 12.0});
  station.points[0].tensor = made::two_dimensional(0.0, 45.0, 45.0, 0.0);
  station.points[2].tensor[numerics::impedance::Element::xx] += std::complex(1.0, 9.0);
  station.points[2].tensor[numerics::impedance::Element::yy] += std::complex(2.0, 9.0);
  const auto stations = strike_stations({station});
  const auto cells = dimension_cells(stations.front(), {});
  ASSERT_EQ(cells.size(), 4);
  EXPECT_EQ(cells[0].dimension, Dimensionality::one);
  EXPECT_EQ(cells[1].dimension, Dimensionality::two);
  EXPECT_EQ(cells[2].dimension, Dimensionality::three);
  EXPECT_NEAR(cells[1].longest_period, std::sqrt(10.0), 1e-6);
  EXPECT_NEAR(cells[1].shortest_period, std::sqrt(0.1), 1e-6);
  EXPECT_GT(cells[2].shortest_period, 0.01) << "a gap of three decades stays one";
  const auto counts = dimension_counts({cells}, {1.0, 100.0});
  EXPECT_EQ(counts, (std::array<std::size_t, 3>{0, 1, 1}));
}

TEST(Dimensions, Cells_meet_where_files_take_wider_steps) {
  std::vector<double> frequencies;
  for (const double decades : {0.0, 0.05, 0.1, 0.15, 0.2, 0.5, 0.8, 1.1, 1.4}) {
    frequencies.push_back(std::pow(10.0, decades));
  }
  const auto stations = strike_stations({made::station(1.0, frequencies, {25.0, 12.0})});
  const auto cells = dimension_cells(stations.front(), {});
  ASSERT_EQ(cells.size(), frequencies.size());
  for (std::size_t i = 1; i < cells.size(); ++i) {
    EXPECT_NEAR(cells[i - 1].shortest_period, cells[i].longest_period, 1e-9) << i;
  }
}
