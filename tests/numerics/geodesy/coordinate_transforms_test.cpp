// The map projections against worked examples that mapping agencies have published.
#include "numerics/geodesy/coordinate_transforms.h"

#include <cmath>
#include <numbers>
#include <stdexcept>

#include <gtest/gtest.h>

using namespace numerics::geodesy;

namespace {

constexpr double millimetre = 0.001;
constexpr double shortest_degree = 69000.0;         // m, of longitude in these examples
constexpr double us_survey_foot = 1200.0 / 3937.0;  // m
constexpr double degree = std::numbers::pi / 180.0;

double dms(double degrees, double minutes, double seconds) {
  const double size = std::abs(degrees) + minutes / 60.0 + seconds / 3600.0;
  return degrees < 0.0 ? -size : size;
}

CoordinateSystemValues zone_system(std::int32_t projection, std::int32_t datum, std::int32_t zone) {
  CoordinateSystemValues values;
  values.projection = projection;
  values.datum = datum;
  values.zone_number = zone;
  values.zone_width = 6.0;
  return values;
}

CoordinateSystemValues conic_system(std::int32_t projection, std::int32_t datum, double longitude,
                                    double latitude, double parallel_1, double parallel_2) {
  CoordinateSystemValues values;
  values.projection = projection;
  values.datum = datum;
  values.origin_longitude = longitude;
  values.origin_latitude = latitude;
  values.standard_parallel_1 = parallel_1;
  values.standard_parallel_2 = parallel_2;
  return values;
}

CoordinateSystemValues texas_south_central() {
  CoordinateSystemValues values =
      conic_system(projection_lambert_conformal, 4267, -99.0, dms(27, 50, 0), dms(28, 23, 0), dms(30, 17, 0));
  values.false_easting = 2000000.0 * us_survey_foot;
  return values;
}

CoordinateSystemValues great_lakes_albers() {
  CoordinateSystemValues values =
      conic_system(projection_albers, 4269, -84.455955, 45.568977, 42.122774, 49.01518);
  values.false_easting = values.false_northing = 1000000.0;
  return values;
}

CoordinateSystemValues snyder_conic(std::int32_t projection) {
  return conic_system(projection, 4267, -96.0, 23.0, 29.5, 45.5);
}

// Meridian arc from the equator by Simpson's rule, m: an integral that no projection's series enters.
double meridian_arc(double a, double b, double latitude) {
  const double e2 = 1.0 - b * b / (a * a);
  constexpr int steps = 2000;
  const double step = latitude / steps;
  double sum = 0.0;
  for (int i = 0; i <= steps; ++i) {
    const double weight = i == 0 || i == steps ? 1.0 : (i % 2 == 1 ? 4.0 : 2.0);
    sum += weight * std::pow(1.0 - e2 * std::pow(std::sin(i * step), 2), -1.5);
  }
  return a * (1.0 - e2) * sum * step / 3.0;
}

struct Example {
  const char* name;
  CoordinateSystemValues values;
  GeographicPlace place;
  double easting;
  double northing;
  double tolerance;  // the larger of 1 mm and half of the last published digit
};

}  // namespace

TEST(Coordinate_transforms, Agree_with_published_examples) {
  // GDA: Intergovernmental Committee on Surveying and Mapping, GDA94 and GDA2020 Technical Manuals, examples
  // of Flinders Peak, Buninyong and Alice Springs.
  // EPSG: Guidance Note 7-2, examples of the methods 9802, 9822 and 1024.
  // Snyder: Map projections, a working manual, U.S. Geological Survey Professional Paper 1395, appendix A.
  const GeographicPlace buninyong{dms(-37, 39, 10.1561), dms(143, 55, 35.3839)};
  const Example examples[] = {
      {"GDA, MGA94 zone 55",
       zone_system(projection_australian_map_grid, 4283, 55),
       {dms(-37, 57, 3.7203), dms(144, 25, 29.5244)},
       273741.2966,
       5796489.7769,
       millimetre},
      {"GDA, MGA94 zone 55 of the longitude",
       zone_system(projection_utm, 4283, 0),
       {dms(-37, 57, 3.7203), dms(144, 25, 29.5244)},
       273741.2966,
       5796489.7769,
       millimetre},
      {"GDA, zone 54 given", zone_system(projection_utm, 4283, 54), buninyong, 758173.797, 5828674.340,
       millimetre},
      {"GDA, the same in zone 55", zone_system(projection_utm, 4283, 55), buninyong, 228854.0513,
       5828259.0384, millimetre},
      {"GDA, MGA94 zone 53",
       zone_system(projection_utm, 4283, 53),
       {dms(-23, 40, 12.446019), dms(133, 53, 7.847848)},
       386352.3979,
       7381850.7689,
       millimetre},
      {"GDA, MGA2020 zone 53",
       zone_system(projection_utm, 7844, 0),
       {dms(-23, 40, 12.39650), dms(133, 53, 7.87779)},
       386353.2343,
       7381852.2986,
       millimetre},
      {"EPSG, Lambert, Texas South Central",
       texas_south_central(),
       {28.5, -96.0},
       2963503.91 * us_survey_foot,
       254759.80 * us_survey_foot,
       millimetre},
      {"EPSG, Albers, Great Lakes",
       great_lakes_albers(),
       {42.75, -78.75},
       1466493.492,
       702903.006,
       millimetre},
      {"Snyder, Albers", snyder_conic(projection_albers), {35.0, -75.0}, 1885472.7, 1535925.0, 0.05},
      {"Snyder, equidistant conic",
       snyder_conic(projection_equidistant_conic),
       {35.0, -75.0},
       1885051.9,
       1540507.6,
       0.05},
      {"EPSG, 3857",
       {.projection = projection_epsg_3857},
       {dms(24, 22, 54.433), dms(-100, 20, 0.0)},
       -11169055.58,
       2800000.00,
       0.005},
  };
  for (const Example& example : examples) {
    SCOPED_TRACE(example.name);
    const MapPlace map = ll2en(crdprm(example.values), example.place);
    EXPECT_NEAR(map.easting, example.easting, example.tolerance);
    EXPECT_NEAR(map.northing, example.northing, example.tolerance);

    CoordinateSystemValues one_zone = example.values;
    one_zone.zone_number = map.zone_number;
    one_zone.hemisphere = hemisphere_south;
    ASSERT_TRUE(leads_back(one_zone));
    const GeographicPlace back = en2ll(crdprm(one_zone), {example.easting, example.northing, 0});
    const double tolerance = 2.0 * example.tolerance / shortest_degree;
    EXPECT_NEAR(back.latitude, example.place.latitude, tolerance);
    EXPECT_NEAR(back.longitude, example.place.longitude, tolerance);
  }
}

TEST(Coordinate_transforms, Lead_back_only_where_coordinates_have_one_place) {
  CoordinateSystemValues utm = zone_system(projection_utm, 4326, 1);
  EXPECT_FALSE(leads_back(utm)) << "which hemisphere?";
  EXPECT_THROW(en2ll(crdprm(utm), {500000.0, 7000000.0, 0}), std::runtime_error);
  utm.hemisphere = hemisphere_south;
  EXPECT_TRUE(leads_back(utm));
  // 10 000 000 - 0.9996 times the meridian arc to 27 degrees (2 987 625.6 m on this ellipsoid, Simpson's
  // rule)
  const double northing =
      1e7 - 0.9996 * meridian_arc(6378137.0, 6378137.0 * (1.0 - 1.0 / 298.257223563), 27.0 * degree);
  EXPECT_NEAR(en2ll(crdprm(utm), {500000.0, northing, 0}).latitude, -27.0, 1e-8);
  EXPECT_NEAR(en2ll(crdprm(utm), {500000.0, northing, 0}).longitude, -177.0, 1e-8);
  EXPECT_NEAR(en2ll(crdprm(utm), {100000.0, northing, 0}).longitude, 178.97, 0.05) << "over the date line";
  for (const MapPlace& nowhere : {MapPlace{1e9, 0.0, 0}, MapPlace{500000.0, 9e7, 0}, MapPlace{4e7, 7e6, 0},
                                  MapPlace{std::nan(""), 7e6, 0}}) {
    EXPECT_THROW(en2ll(crdprm(utm), nowhere), std::runtime_error) << nowhere.easting;
  }
  utm.zone_number = 0;
  EXPECT_FALSE(leads_back(utm)) << "which zone?";
  EXPECT_THROW(en2ll(crdprm(utm), {500000.0, 7000000.0, 0}), std::runtime_error);
  EXPECT_NEAR(en2ll(crdprm(utm), {500000.0, northing, 54}).longitude, 141.0, 1e-8);
  CoordinateSystemValues geographic;
  EXPECT_EQ(en2ll(crdprm(geographic), {190.5, -20.0, 0}).longitude, -169.5);
  EXPECT_THROW(en2ll(crdprm(geographic), {500000.0, 7000000.0, 0}), std::runtime_error) << "metres";
}

// Redfearn (1948), Transverse Mercator formulae, Empire Survey Review 69, 318-322: the series that the
// Australian Map Grid is defined by, on its spheroid (a = 6378160 m, 1/f = 298.25).
TEST(Coordinate_transforms, Give_the_Australian_Map_Grid_of_Redfearns_formulae) {
  constexpr double a = 6378160.0;
  constexpr double b = a * (1.0 - 1.0 / 298.25);
  constexpr double e2 = 1.0 - b * b / (a * a);
  constexpr double k0 = 0.9996;
  for (const std::int32_t datum : {4202, 4203}) {
    for (const GeographicPlace place : {GeographicPlace{-37.65, 144.4}, {-12.4, 130.9}, {-31.9, 149.99}}) {
      SCOPED_TRACE(place.longitude);
      const MapPlace map = ll2en(crdprm(zone_system(projection_australian_map_grid, datum, 0)), place);
      const double phi = place.latitude * degree;
      const double w = (place.longitude - central_meridian(map.zone_number, 6.0)) * degree;
      const double rho = a * (1.0 - e2) * std::pow(1.0 - e2 * std::pow(std::sin(phi), 2), -1.5);
      const double nu = a / std::sqrt(1.0 - e2 * std::pow(std::sin(phi), 2));
      const double psi = nu / rho;
      const double t = std::tan(phi);
      const double c = std::cos(phi);
      const double e1 = w * w / 6.0 * c * c * (psi - t * t);
      const double e2_term = std::pow(w * c, 4) / 120.0 *
                             (4.0 * std::pow(psi, 3) * (1.0 - 6.0 * t * t) + psi * psi * (1.0 + 8.0 * t * t) -
                              psi * 2.0 * t * t + std::pow(t, 4));
      const double e3 =
          std::pow(w * c, 6) / 5040.0 * (61.0 - 479.0 * t * t + 179.0 * std::pow(t, 4) - std::pow(t, 6));
      const double easting = 500000.0 + k0 * nu * w * c * (1.0 + e1 + e2_term + e3);
      const double n1 = w * w / 2.0 * nu * std::sin(phi) * c;
      const double n2 =
          std::pow(w, 4) / 24.0 * nu * std::sin(phi) * std::pow(c, 3) * (4.0 * psi * psi + psi - t * t);
      const double n3 =
          std::pow(w, 6) / 720.0 * nu * std::sin(phi) * std::pow(c, 5) *
          (8.0 * std::pow(psi, 4) * (11.0 - 24.0 * t * t) - 28.0 * std::pow(psi, 3) * (1.0 - 6.0 * t * t) +
           psi * psi * (1.0 - 32.0 * t * t) - psi * 2.0 * t * t + std::pow(t, 4));
      EXPECT_NEAR(map.easting, easting, millimetre);
      EXPECT_NEAR(map.northing, 1e7 + k0 * (meridian_arc(a, b, phi) + n1 + n2 + n3), millimetre);
    }
  }
}

// Snyder's equations 16-1 to 16-4 and 14-15 with the meridian arc integrated, where he prints 0.1 m; and the
// closed form of EPSG 3857.
TEST(Coordinate_transforms, Agree_with_closed_forms_to_a_millimetre) {
  const Datum clarke_1866 = find_datum(4267).value();
  const double a = clarke_1866.semi_major_axis;
  const double b = clarke_1866.semi_minor_axis;
  const double e2 = 1.0 - b * b / (a * a);
  const auto m = [&](double latitude) {
    return std::cos(latitude) / std::sqrt(1.0 - e2 * std::pow(std::sin(latitude), 2));
  };
  const auto arc = [&](double latitude) { return meridian_arc(a, b, latitude); };
  const double phi1 = 29.5 * degree;
  const double phi2 = 45.5 * degree;
  const double n = a * (m(phi1) - m(phi2)) / (arc(phi2) - arc(phi1));
  const double g = m(phi1) / n + arc(phi1) / a;
  const double rho = a * g - arc(35.0 * degree);
  const double theta = n * 21.0 * degree;
  const MapPlace conic = ll2en(crdprm(snyder_conic(projection_equidistant_conic)), {35.0, -75.0});
  EXPECT_NEAR(conic.easting, rho * std::sin(theta), millimetre);
  EXPECT_NEAR(conic.northing, a * g - arc(23.0 * degree) - rho * std::cos(theta), millimetre);

  const MapPlace web = ll2en(crdprm({.projection = projection_epsg_3857}), {24.5, -100.25});
  EXPECT_NEAR(web.easting, -100.25 * degree * 6378137.0, millimetre);
  EXPECT_NEAR(web.northing, 6378137.0 * std::log(std::tan((45.0 + 24.5 / 2.0) * degree)), millimetre);
}

TEST(Coordinate_transforms, Take_zone_and_hemisphere_as_told) {
  const auto northing = [](std::int32_t hemisphere, double false_northing, double latitude) {
    CoordinateSystemValues values = zone_system(projection_utm, 4326, 0);
    values.hemisphere = hemisphere;
    values.false_northing = false_northing;
    return ll2en(crdprm(values), {latitude, 3.0}).northing;
  };
  const double north = northing(hemisphere_north, 0.0, 40.0);
  EXPECT_DOUBLE_EQ(northing(hemisphere_from_latitude, 0.0, 40.0), north);
  EXPECT_DOUBLE_EQ(northing(hemisphere_from_latitude, 0.0, -40.0), 1e7 - north);
  EXPECT_DOUBLE_EQ(northing(77, 0.0, -40.0), 1e7 - north);
  EXPECT_DOUBLE_EQ(northing(hemisphere_north, 0.0, -40.0), -north);
  EXPECT_DOUBLE_EQ(northing(hemisphere_south, 0.0, 40.0), 1e7 + north);
  EXPECT_DOUBLE_EQ(northing(hemisphere_south, 5e6, -40.0), 5e6 - north);

  struct Zone {
    double longitude, width;
    int number;
  };
  for (const Zone& zone : {Zone{-180.0, 6.0, 1},
                           {-174.0, 6.0, 2},
                           {-174.000001, 6.0, 1},
                           {179.999, 6.0, 60},
                           {180.0, 6.0, 1},
                           {190.0, 6.0, 2},
                           {359.0, 6.0, 30},
                           {0.0, 3.0, 61},
                           {179.0, 7.0, 52}}) {
    CoordinateSystemValues values = zone_system(projection_utm, 4326, 0);
    values.zone_width = zone.width;
    EXPECT_EQ(ll2en(crdprm(values), {10.0, zone.longitude}).zone_number, zone.number) << zone.longitude;
  }
}

TEST(Coordinate_transforms, Refuse_what_gives_no_coordinates) {
  CoordinateSystemValues zone_61 = zone_system(projection_utm, 4326, 61);
  CoordinateSystemValues no_width = zone_system(projection_utm, 4326, 1);
  no_width.zone_width = 0.0;
  CoordinateSystemValues tiny_width = no_width;
  tiny_width.zone_width = 1e-300;
  CoordinateSystemValues not_finite = great_lakes_albers();
  not_finite.false_easting = std::nan("");
  for (const CoordinateSystemValues& values :
       {zone_61, no_width, tiny_width, not_finite, CoordinateSystemValues{.projection = 7},
        CoordinateSystemValues{.projection = -1},
        conic_system(projection_albers, 4326, 0.0, 0.0, 30.0, -30.0)}) {
    EXPECT_THROW((void)crdprm(values), std::runtime_error) << values.projection;
  }
  const TransformParameters web = crdprm({.projection = projection_epsg_3857});
  for (const GeographicPlace place :
       {GeographicPlace{90.0, 0.0}, {90.5, 0.0}, {std::nan(""), 0.0}, {0.0, 361.0}, {0.0, std::nan("")}}) {
    EXPECT_THROW((void)ll2en(web, place), std::runtime_error) << place.latitude;
  }
  EXPECT_THROW((void)ll2en(TransformParameters{}, {0.0, 0.0}), std::runtime_error);
  EXPECT_THROW((void)ll2en(crdprm(zone_system(projection_utm, 4326, 1)), {0.0, 3.0}), std::runtime_error);
}

TEST(Coordinate_transforms, Know_datums_by_their_number_and_say_when_they_do_not) {
  EXPECT_EQ(find_datum(4202).value().name, "AGD66");
  EXPECT_EQ(find_datum(4202).value().semi_major_axis, 6378160.0);
  EXPECT_EQ(find_datum(4314).value().name, "DHDN");  // not in the list, yet a datum
  for (const std::int32_t unknown :
       {-1, 0, 7, 32633 /* a projected system */, 4807 /* counts from Paris */}) {
    EXPECT_FALSE(find_datum(unknown).has_value()) << unknown;
  }
  for (const std::int32_t number : common_datums()) {
    EXPECT_TRUE(find_datum(number).has_value()) << number;
  }
  EXPECT_TRUE(datum_is_replaced(zone_system(projection_utm, 7, 0)));
  EXPECT_FALSE(datum_is_replaced(zone_system(projection_utm, 4326, 0)));
  EXPECT_FALSE(datum_is_replaced({.projection = projection_epsg_3857}));
  const GeographicPlace place{-30.0, 145.0};
  EXPECT_EQ(ll2en(crdprm(zone_system(projection_utm, 7, 0)), place).northing,
            ll2en(crdprm(zone_system(projection_utm, 4326, 0)), place).northing);
  EXPECT_EQ(ll2en(crdprm(zone_system(projection_australian_map_grid, 7, 0)), place).northing,
            ll2en(crdprm(zone_system(projection_australian_map_grid, 4202, 0)), place).northing);
}
