#include "tensor/site_map.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tensor/map_contents.h"
#include "tensor/plan_frame.h"
#include "tests/tensor/made_sites.h"

namespace Module_tensor {
namespace {

using Frequencies = std::vector<double>;
using Module_projections::PlaceSource;
using Module_projections::SurveyPlace;
using Module_projections::SurveyPlaces;
using numerics::geodesy::MapPlace;
using numerics::impedance::ArrowConvention;

TEST(Site_map, Brings_stations_and_places_together) {
  const std::vector<LineStations> lines{{"1E", {made::station(1, 0, {1}), made::station(2, 0, {1})}},
                                        {"2E", {made::station(3, 0, {1}), made::station(4, 0, {1})}}};
  SurveyPlaces places;
  places.source = PlaceSource::sites;
  places.system = "UTM 53S";
  places.stations = {{"1E", 100, 1, MapPlace{5000, 7000, 53}, -0.5},
                     {"1E", 200, 2, {}, 0.0},
                     {"2E", 300, 3, MapPlace{5000, 7300, 53}, 0.0}};
  const SiteMap map = site_map(lines, places);
  ASSERT_EQ(map.sites.size(), 2U);
  EXPECT_EQ(map.sites[0].line, "1E");
  EXPECT_EQ(map.sites[0].north, 7000.0);
  EXPECT_EQ(map.sites[0].true_north, -0.5);
  EXPECT_EQ(map.sites[1].station.StationID, 3);
  EXPECT_EQ(map.without_place, (std::vector<std::string>{"200", "400"}));
  EXPECT_EQ(map.spacing, 300.0);
  EXPECT_EQ(places_text(map), "sites, in UTM 53S");
}

TEST(Site_map, Spacing_is_that_of_different_places) {
  const auto spacing_of = [](const std::vector<double>& easts) {
    SurveyPlaces places;
    std::vector<LineStations> lines{{"1E", {}}};
    for (std::size_t i = 0; i < easts.size(); ++i) {
      const auto ID = static_cast<std::int32_t>(i) + 1;
      places.stations.push_back({"1E", 100.0 * ID, ID, MapPlace{easts[i], 0.0, 0}, 0.0});
      lines[0].stations.push_back(made::station(ID, 0, {1}));
    }
    return site_map(lines, places).spacing;
  };
  EXPECT_EQ(spacing_of({}), 0.0);
  EXPECT_EQ(spacing_of({4}), 0.0);
  EXPECT_EQ(spacing_of({4, 4, 4}), 0.0);
  EXPECT_EQ(spacing_of({0, 10, 20, 1000}), 10.0);
  EXPECT_EQ(spacing_of({0, 4, 10}), 4.0) << "each place counts, the first and the last, too";
  EXPECT_EQ(spacing_of({0, 6, 10}), 4.0);
  EXPECT_EQ(spacing_of({50, 0, 0, 50}), 50.0);
}

TEST(Map_frequencies, Are_those_of_all_sites_with_the_near_ones_as_one) {
  std::vector<MapSite> sites{made::site(made::station(1, 0, {0.1, 1.0, 10.0}), 0, 0),
                             made::site(made::station(2, 0, {0.1005, 1.0, 9.0}), 0, 0),
                             made::site(made::station(3, 0, {0.1005, 1.02}), 0, 0)};
  sites[2].station.tipper.push_back({300.0, {}});
  EXPECT_EQ(map_frequencies(sites), (Frequencies{300.0, 10.0, 9.0, 1.02, 1.0, 0.1005}));
  EXPECT_TRUE(map_frequencies({}).empty());
}

TEST(Values_at, Are_those_of_the_nearest_frequency_within_a_tenth) {
  const StationTensor station = made::station(1, 25, {0.1, 1.0, 1.05, 10.0});
  struct Case {
    double asked;
    double found;  // 0: none
  };
  for (const Case& c :
       {Case{1.0, 1.0}, Case{1.03, 1.05}, Case{1.02, 1.0}, Case{0.0909, 0.0}, Case{0.092, 0.1},
        Case{10.9, 10.0}, Case{11.1, 0.0}, Case{9.0, 0.0}, Case{9.2, 10.0}}) {
    SCOPED_TRACE(c.asked);
    const SiteValues values = values_at(station, c.asked, {});
    EXPECT_EQ(values.phase_tensor.has_value(), c.found != 0.0);
    EXPECT_EQ(values.real_arrow.has_value(), c.found != 0.0);
    EXPECT_EQ(values.tensor_frequency, c.found);
    EXPECT_EQ(values.any(), c.found != 0.0);
  }
  EXPECT_FALSE(values_at(StationTensor{}, 1.0, {}).any());
}

TEST(Values_at, Point_as_the_convention_says) {
  const StationTensor station = made::station(1, 25, {1.0});
  const SiteValues parkinson = values_at(station, 1.0, {});
  EXPECT_NEAR(parkinson.phase_tensor->azimuth.value, 25.0, 1e-9);
  EXPECT_NEAR(parkinson.phase_tensor->phase_max.value, 60.0, 1e-9);
  EXPECT_NEAR(parkinson.real_arrow->azimuth.value, 115.0, 1e-9);
  EXPECT_NEAR(parkinson.imaginary_arrow->azimuth.value, 115.0, 1e-9);
  const SiteValues wiese = values_at(station, 1.0, {ArrowConvention::wiese, true});
  EXPECT_NEAR(wiese.real_arrow->azimuth.value, -65.0, 1e-9);
  EXPECT_NEAR(wiese.imaginary_arrow->azimuth.value, -65.0, 1e-9);
  EXPECT_EQ(convention_text({}), "Real arrows point to conductors (Parkinson); imaginary arrows as they are");
  EXPECT_EQ(convention_text({ArrowConvention::wiese, true}),
            "Real arrows point away from conductors (Wiese); imaginary arrows reversed");
}

TEST(Ellipses, Are_uncertain_where_direction_or_skew_is) {
  numerics::impedance::PhaseTensor tensor = *values_at(made::station(1, 25, {1.0}), 1.0, {}).phase_tensor;
  EXPECT_FALSE(is_uncertain(tensor)) << "errors that nobody knows speak for nothing";
  tensor.azimuth.error = 20.0;
  tensor.beta.error = 3.0;
  tensor.ellipticity.value = 0.1;
  EXPECT_FALSE(is_uncertain(tensor));
  tensor.beta.error = 3.1;
  EXPECT_TRUE(is_uncertain(tensor));
  tensor.beta.error = 0.1;
  tensor.azimuth.error = 21.0;
  EXPECT_TRUE(is_uncertain(tensor));
  tensor.azimuth.error = 1.0;
  tensor.ellipticity.value = 0.09;
  EXPECT_TRUE(is_uncertain(tensor));
}

TEST(Value_texts, Say_values_errors_and_another_frequency) {
  StationTensor station = made::station(1, 25, {0.95});
  EXPECT_EQ(value_texts(values_at(station, 2.0, {}), 2.0),
            std::vector<std::string>{"No values at this period"});
  for (auto& known : station.points[0].tensor.covariance) {
    known = {1e-4, 1e-4, 0.0};
  }
  const auto texts = value_texts(values_at(station, 1.0, {}), 1.0);
  ASSERT_EQ(texts.size(), 9U);
  EXPECT_EQ(texts[0], "Phase tensor at 0.95 Hz:");
  EXPECT_TRUE(texts[1].starts_with("  azimuth 25.0 ± ")) << texts[1];
  EXPECT_TRUE(texts[2].starts_with("  skew (beta) 0.0 ± ")) << texts[2];
  EXPECT_EQ(texts[7], "  real: length 0.30 (error unknown), azimuth 115.0° (error unknown)");
  EXPECT_EQ(period_text(0.0794), "Period 12.59 s (0.0794 Hz)");
  EXPECT_EQ(period_text(320.0), "Period 0.003125 s (320 Hz)");
  EXPECT_EQ(period_text(12345.678), "Period 8.1E-05 s (12350 Hz)");
}

TEST(Remarks, Count_sites_and_name_those_without_a_place) {
  MapContents contents;
  contents.map.source = PlaceSource::map;
  contents.map.sites = {made::site(made::station(1, 0, {1.0}), 0, 0),
                        made::site(made::station(2, 0, {5.0}), 9, 0)};
  contents.map.without_place = {"1", "2", "3", "4", "5", "6"};
  contents.show_frequency(1.0);
  EXPECT_EQ(remarks_text(contents),
            "Of 2 sites 1 have a phase tensor here and 1 a tipper. Places: map coordinates of the stations. "
            "Without a place, and not shown: 1, 2, 3, 4, 5 and 1 more.");
  contents.show_frequency(0.0);
  EXPECT_FALSE(contents.values[0].any());
}

std::vector<MapSite> sites_at(const std::vector<std::array<double, 2>>& places) {
  std::vector<MapSite> sites;
  for (const auto& [east, north] : places) {
    sites.push_back(made::site({}, east, north));
  }
  return sites;
}

constexpr FrameSize size{600.0, 400.0};

TEST(Plan_frame, Fits_all_sites_with_one_scale) {
  struct Case {
    const char* name;
    std::vector<std::array<double, 2>> places;
    PlanFrame frame;
  };
  const Case cases[] = {{"as wide as it goes", {{0, 0}, {1000, 100}}, {500, 50, 0.5}},
                        {"as high as it goes", {{0, 0}, {100, -600}}, {50, -300, 0.5}},
                        {"one site", {{7, 8}}, {7, 8, 0.3}},
                        {"all at one place", {{7, 8}, {7, 8}}, {7, 8, 0.3}},
                        {"nothing", {}, {0, 0, 1}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const PlanFrame frame = fitted_frame(sites_at(c.places), size, 50.0);
    EXPECT_DOUBLE_EQ(frame.east, c.frame.east);
    EXPECT_DOUBLE_EQ(frame.north, c.frame.north);
    EXPECT_DOUBLE_EQ(frame.scale, c.frame.scale);
  }
}

TEST(Plan_frame, Zooms_about_the_pointer_and_is_dragged_with_it) {
  const PlanFrame frame{1000.0, 2000.0, 0.5};
  const PicturePlace site = to_picture(frame, size, 1100.0, 2060.0);
  EXPECT_EQ(site.x, 350.0);
  EXPECT_EQ(site.y, 170.0);
  const PlanFrame nearer = zoomed(frame, size, 4.0, site);
  EXPECT_EQ(nearer.scale, 2.0);
  EXPECT_NEAR(to_picture(nearer, size, 1100.0, 2060.0).x, site.x, 1e-9);
  EXPECT_NEAR(to_picture(nearer, size, 1100.0, 2060.0).y, site.y, 1e-9);
  const PlanFrame moved = dragged(frame, 30.0, -20.0);
  EXPECT_EQ(to_picture(moved, size, 1100.0, 2060.0).x, 380.0);
  EXPECT_EQ(to_picture(moved, size, 1100.0, 2060.0).y, 150.0);
  EXPECT_TRUE(std::isfinite(zoomed(frame, size, 1e300, site).east));
  EXPECT_GT(zoomed(frame, size, 1e-300, site).scale, 0.0);
}

TEST(Plan_frame, Has_a_bar_of_a_round_length) {
  EXPECT_DOUBLE_EQ(bar_length({0, 0, 1.0}, 100.0), 100.0);
  EXPECT_DOUBLE_EQ(bar_length({0, 0, 1.0}, 99.0), 50.0);
  EXPECT_DOUBLE_EQ(bar_length({0, 0, 1.0}, 49.0), 20.0);
  EXPECT_DOUBLE_EQ(bar_length({0, 0, 100.0}, 15.0), 0.1);
}

}  // namespace
}  // namespace Module_tensor
