// Tables of many stations: averaged soundings and tables of curves, and what of them comes into the survey.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>

#include "database/reading_facts.h"
#include "database/sites.h"
#include "database/stations.h"
#include "formats/csv/curve_table.h"
#include "output/zonge.h"
#include "projections/survey_projection.h"
#include "tests/import/proposals/planned_import.h"

using namespace Module_data_file;
using formats::csv::CurvePoint;
using formats::csv::CurveRows;
using Module_database::Curve;
using Module_database::open_survey;
using Module_database::StoredReading;
namespace fs = std::filesystem;

namespace {

constexpr double degrees_per_milliradian = 0.18 / std::numbers::pi;

class StationTables : public PlannedImport {
 protected:
  StationTables() { choices.ReferenceType = 0; }

  static std::vector<StoredReading> readings(const std::string& criteria) {
    std::vector<StoredReading> found;
    dao::Recordset rows = open_survey().database.open_recordset("SELECT * FROM ReadingsDataTable WHERE " +
                                                                criteria + " ORDER BY ID");
    for (; !rows.eof(); rows.move_next()) {
      Module_database::read_facts(found.emplace_back(Module_database::read_reading(rows)));
    }
    return found;
  }
  static StoredReading raw(double station, const std::string& data_type, const std::string& more = "") {
    const std::vector<StoredReading> found = readings("FileID > 0 AND Station = " + std::to_string(station) +
                                                      " AND DataType = '" + data_type + "'" + more);
    EXPECT_EQ(found.size(), 1U) << station << " " << data_type;
    return found.empty() ? StoredReading() : found.front();
  }
  static std::string text_of_file(const std::string& column) {
    dao::Recordset& files = open_survey().files;
    files.move_first();
    return files.get_text(column);
  }
  static double date_of_file() {
    dao::Recordset& files = open_survey().files;
    files.move_first();
    return files.get_date("DateCollected");
  }
  static Module_database::StationRows place_of(const std::string& line, double station) {
    return Module_database::find_station(Module_database::StationSearch::look_up, line, station);
  }

  // The field's averages, copied to where their companions can be left out.
  std::string field_file(const std::string& name, bool with_stn = true) const {
    const fs::path source = fs::path(BRENLOX_FIELD_DATA) / "exchange" / "zonge_avg";
    const std::string stn = fs::path(name).stem().string() + ".stn";
    if (with_stn && fs::exists(source / stn)) {
      fs::copy_file(source / stn, folder.path(stn), fs::copy_options::overwrite_existing);
    }
    fs::copy_file(source / name, folder.path(name), fs::copy_options::overwrite_existing);
    return folder.path(name);
  }
  static bool has_field_data() { return fs::exists(fs::path(BRENLOX_FIELD_DATA) / "exchange" / "zonge_avg"); }
};

CurveRows rows_of(const std::string& line, double station, const std::string& data_type) {
  CurveRows rows;
  rows.line = line;
  rows.station = station;
  rows.data_type = data_type;
  rows.points = {{8.0, double{12.3456789F}, double{-135.125F}, 0.5, 1.5, false, false},
                 {1.0, 20.0, 45.0, formats::csv::not_known, 2.0, true, false},
                 {4.0, 30.0, formats::csv::not_known, 0.25, formats::csv::not_known, false, true}};
  return rows;
}

std::string table(const std::vector<CurveRows>& curves) {
  std::string text = formats::csv::curve_table_header();
  for (const CurveRows& curve : curves) {
    text += formats::csv::curve_table_rows(curve);
  }
  return text;
}

}  // namespace

TEST_F(StationTables, Plain_averages_of_the_field) {
  if (!has_field_data()) {
    GTEST_SKIP() << "no field data beside the checkout";
  }
  ASSERT_EQ(import({field_file("K1.AVG")}), 0);
  EXPECT_EQ(report.files[0].failure, "");
  EXPECT_EQ(report.files[0].sections, 47);
  EXPECT_EQ(report.files[0].readings, 47);
  EXPECT_EQ(stations().size(), 47U);
  EXPECT_EQ(text_of_file("Filter"), "ZongeAVG");
  EXPECT_EQ(date_of_file(), day_count(1999, 1, 1));
  const StoredReading first = raw(150.0, "ExHy");
  const std::size_t last = first.curve.count() - 1;  // 8192 Hz, 0.2 (310.61 / 0.092137)^2 / 8192 ohm-m
  EXPECT_EQ(first.curve.frequencies[last], 8192.0F);
  EXPECT_NEAR(first.curve.value(1, last), 0.2 * std::pow(310.61 / 0.092137, 2) / 8192.0, 0.1);
  EXPECT_NEAR(first.curve.value(2, last), -581.6 * degrees_per_milliradian, 1e-4);
  EXPECT_NEAR(first.curve.error(1, last), 277.46 * 0.147, 1e-3);
  EXPECT_NEAR(first.curve.error(2, last), 136.0 * degrees_per_milliradian, 1e-4);
  const Module_database::StationRows place = place_of("200E", 150.0);
  EXPECT_EQ(place.MapX, 748846.846);
  EXPECT_EQ(place.MapY, 2883860.032);
  EXPECT_EQ(place.Elevation, 574.5);
  EXPECT_EQ(Module_database::find_site("200E", 150.0).value().elevation, 574.5);
}

TEST_F(StationTables, Averages_between_the_stakes_of_their_stn_file) {
  if (!has_field_data()) {
    GTEST_SKIP() << "no field data beside the checkout";
  }
  ASSERT_EQ(import({field_file("K2.AVG")}), 0);
  EXPECT_EQ(stations().size(), 28U);
  EXPECT_TRUE(told(0, "28 stations are not in the .stn file; placed in proportion between"));
  const Module_database::StationRows place = place_of("200E", 25.0);  // stakes 0 and 50
  EXPECT_EQ(place.MapX, (477159.0 + 477202.0) / 2.0);
  EXPECT_EQ(place.MapY, (2831006.0 + 2830985.0) / 2.0);
  const StoredReading first = raw(25.0, "ExHy");
  EXPECT_EQ(first.curve.value(1, 0), 87910.0F);  // not the statically corrected 63131
  EXPECT_NEAR(first.curve.error(2, 0), 158.2 * degrees_per_milliradian, 1e-4);  // the file's own
  EXPECT_NEAR(first.curve.error(1, 0), 0.16 * 87910.0, 0.1);

  new_survey("without.mdb");
  fs::remove(folder.path("K2.stn"));
  ASSERT_EQ(import({field_file("K2.AVG", false)}), 0);
  EXPECT_EQ(stations().size(), 28U);
  EXPECT_EQ(place_of("200E", 25.0).MapX, 200.0);  // by the survey's grid
  EXPECT_EQ(report.files[0].failure, "");
}

TEST_F(StationTables, Tensors_and_tippers_of_averages) {
  if (!has_field_data()) {
    GTEST_SKIP() << "no field data beside the checkout";
  }
  ASSERT_EQ(import({field_file("tf_avg.avg"), field_file("tf_avg_tipper.avg")}), 0);
  EXPECT_EQ(report.files[0].readings, 4);
  EXPECT_EQ(report.files[1].readings, 6);
  const Curve xy = raw(24.0, "ExHy").curve;
  EXPECT_NEAR(xy.value(1, 0), 57.080, 1e-4);
  EXPECT_NEAR(std::hypot(xy.value(9, 0), xy.value(10, 0)), 2.5863, 1e-4);
  EXPECT_NEAR(xy.error(1, 0), 57.080 * 0.633, 1e-3);
  EXPECT_EQ(xy.counts_at(1, 0), 1);
  EXPECT_EQ(xy.counts_at(1, 1), 0);  // skipped
  EXPECT_NEAR(xy.error(2, 5), 30.3 * 0.18 / std::numbers::pi, 1e-4);
  EXPECT_TRUE(told(1, "of UTM zone '12', are taken as they stand"));
  const auto site = Module_database::find_site("200E", 24.0).value();
  EXPECT_NEAR(site.latitude.value(), 32.83331167, 1e-9);
  EXPECT_NEAR(site.longitude.value(), -107.08305667, 1e-9);

  const StoredReading tipper = raw(22.0, "HzHx");
  EXPECT_EQ(tipper.axes.HxAzimuth, 11.0F);
  EXPECT_NEAR(tipper.curve.value(1, 0), 29.603 * std::cos(0.6946), 1e-3);
  EXPECT_EQ(tipper.curve.counts_at(1, 0), 0);
  EXPECT_EQ(place_of("200E", 22.0).MapX, 311288.0);
  EXPECT_EQ(Module_database::find_site("200E", 22.0).value().elevation, 1548.1);
}

TEST_F(StationTables, A_set_that_was_written_gives_the_curves_again) {
  const std::string text = table({rows_of("300E", 100.0, "EyHx"), rows_of("300E", 250.5, "EyHx")});
  ASSERT_EQ(import({folder.write("a.csv", text)}), 0);
  const Module_database::LineSelection selection{"300E", 0, "EyHx", 100.0F};
  int rows = 0;
  ASSERT_EQ(Module_output::output_zonge(selection, folder.path("300E_0_EyHx.avg"), {}, rows), 0);
  ASSERT_EQ(rows, 2);  // of three points one is masked in resistivity, and one has no phase
  fs::rename(folder.path("300E_0_EyHx.stn"), folder.path("300e_0_eyhx.Stn"));
  new_survey("again.mdb");
  ASSERT_EQ(import({folder.path("300E_0_EyHx.avg")}), 0);
  EXPECT_FALSE(report.files[0].has_remarks()) << remark_lines(report.files[0]).at(0);
  const Curve curve = raw(250.5, "EyHx", " AND LineNumber = '300E'").curve;
  ASSERT_EQ(curve.count(), 1U);
  EXPECT_EQ(curve.frequencies[0], 8.0F);
  EXPECT_NEAR(curve.value(1, 0), 12.3457, 1e-4);
  EXPECT_NEAR(curve.value(2, 0), -135.1, 1e-4);
  EXPECT_EQ(curve.counts_at(2, 0), 1);
  EXPECT_EQ(place_of("300E", 250.5).MapY, 250.5);

  new_survey("renamed.mdb");
  fs::rename(folder.path("300E_0_EyHx.avg"), folder.path("other.avg"));
  ASSERT_EQ(import({folder.path("other.avg")}), 0);
  EXPECT_TRUE(told(0, "it is taken as ExHy"));
  EXPECT_EQ(raw(250.5, "ExHy", " AND LineNumber = '200E'").curve.count(), 1U);
}

TEST_F(StationTables, Older_sets_have_milliradians) {
  ASSERT_EQ(import({folder.write("1E_0_ExHy.avg",
                                 "$ ASPACE= 25.0 m\nskp  Station       Freq  Resistivity     Phase\n"
                                 " 2  100  1.0  1.0E+1  785.4\n 1  100  2.0  1.0E+1  52.1\n")}),
            0);
  EXPECT_TRUE(told(0, "taken as milliradians"));
  EXPECT_NEAR(raw(100.0, "ExHy").curve.value(2, 0), 45.0, 1e-3);
}

TEST_F(StationTables, A_table_brings_many_lines_and_stations) {
  CurveRows named = rows_of("-200", 100.5, "ExHy");
  named.site = "Mt. \"Top\", east";
  named.latitude = -19.440206;
  named.longitude = 136.444403;
  named.elevation = 218.25;
  named.easting = 500000.5;
  named.northing = 6000000.25;
  named.azimuth = 11.25;
  named.dipole = 33.3;
  named.scan_rate = 4096.0;
  named.reference_type = 1;
  named.date = "2019-01-07";
  CurveRows repeat = named;
  repeat.event = 1;
  CurveRows elsewhere = rows_of("old line", 100.5, "ExHy");
  elsewhere.date = "2020-01-07";
  elsewhere.latitude = 10.0;
  elsewhere.longitude = 20.0;
  CurveRows tipper = rows_of("", 100.5, "HzHy");
  const std::string file = folder.write("a.csv", table({named, repeat, elsewhere, tipper}));
  for (const int time : {1, 2}) {
    SCOPED_TRACE(time);  // a table that is imported again takes its own place
    ASSERT_EQ(import({file}), 0);
    EXPECT_EQ(report.files[0].readings, 4);
    EXPECT_EQ(raw_readings(), 4);
  }
  EXPECT_EQ(text_of_file("Filter"), "CSV");
  EXPECT_EQ(date_of_file(), day_count(2019, 1, 7));
  EXPECT_TRUE(told(0, "the date '2020-01-07' differs from the table's first, 2019-01-07"));

  const std::string of_named = "FileID > 0 AND LineNumber = '200W' AND Station = 100.5 AND ReferenceType = 1";
  const std::vector<StoredReading> both = readings(of_named);
  ASSERT_EQ(both.size(), 2U);
  EXPECT_NE(both[0].EventNumber, both[1].EventNumber);
  EXPECT_EQ(readings(of_named + " AND SampleRate = 4096 AND DipoleLength = 33.3").size(), 2U);
  const Curve& curve = both[0].curve;
  EXPECT_EQ(both[0].axes.HxAzimuth, 11.25F);
  EXPECT_EQ(curve.frequencies, (std::vector<float>{1, 4, 8}));
  EXPECT_EQ(curve.value(1, 2), 12.3456789F);
  EXPECT_EQ(curve.value(2, 2), -135.125F);
  EXPECT_EQ(curve.error(1, 2), 0.5F);
  EXPECT_EQ(curve.error(2, 0), 2.0F);
  EXPECT_EQ(curve.mask, (std::vector<std::int32_t>{0, 1, 1, 0, 1, 1}));
  const auto site = Module_database::find_site("200W", 100.5).value();
  EXPECT_EQ(site.name, named.site);
  EXPECT_EQ(site.latitude, named.latitude);
  EXPECT_EQ(site.elevation, named.elevation);
  EXPECT_EQ(place_of("200W", 100.5).MapX, 500000.5);
  EXPECT_EQ(Module_database::find_site("old line", 100.5).value().longitude, 20.0);

  const StoredReading hz = raw(100.5, "HzHy", " AND LineNumber = '200E' AND SampleRate = 0.1");
  EXPECT_FALSE(Module_database::find_site("200E", 100.5).value().latitude);
  EXPECT_EQ(hz.curve.value(2, 2), -135.125F);
  EXPECT_EQ(hz.curve.error(2, 2), 0.5F);
  EXPECT_EQ(readings("ReductionType = 1 AND LineNumber = '200W'").size(), 1U);  // of the two repeats
}

TEST_F(StationTables, Points_of_a_table_without_masks_follow_the_rule_of_all_formats) {
  ASSERT_EQ(import({folder.write("a.csv",
                                 "station,data_type,frequency_Hz,resistivity_ohm_m,phase_deg\n"
                                 "1,EyHx,1,10,-135\n1,EyHx,2,-5,45\n")}),
            0);
  EXPECT_EQ(raw(1.0, "EyHx").curve.mask, (std::vector<std::int32_t>{1, 0, 0, 1}));
  for (const TurnEy turn : {TurnEy::always, TurnEy::where_needed}) {
    choices.turn_ey = turn;
    ASSERT_EQ(import({folder.write("b.csv",
                                   "station,data_type,frequency_Hz,resistivity_ohm_m,phase_deg\n"
                                   "2,ExHy,1,10,-135\n2,EyHx,1,10,-135\n")}),
              0);
    EXPECT_EQ(raw(2.0, "EyHx").curve.value(2, 0), 45.0F);
    EXPECT_EQ(raw(2.0, "EyHx").axes.EyTurned, Module_database::ey_turned);
    EXPECT_EQ(raw(2.0, "ExHy").curve.value(2, 0), -135.0F);
  }
}

TEST_F(StationTables, Places_are_converted_where_the_table_has_no_map_coordinates) {
  CurveRows rows = rows_of("1E", 1.0, "ExHy");
  rows.latitude = 0.0;
  rows.longitude = 3.0;
  const std::string file = folder.write("a.csv", table({rows}));
  const Proposals proposals = proposals_for({file});
  ASSERT_TRUE(proposals.choices.convert_coordinates);
  ASSERT_TRUE(proposals.choices.projection);
  choices.convert_coordinates = true;
  choices.projection = proposals.choices.projection;
  ASSERT_EQ(import({file}), 0);
  EXPECT_NEAR(place_of("1E", 1.0).MapX, 500000.0, 0.01);  // the central meridian of zone 31
  EXPECT_NEAR(place_of("1E", 1.0).MapY, 0.0, 0.01);
}

TEST_F(StationTables, Plans_know_what_tables_hold) {
  CurveRows low = rows_of("7E", 100.0, "EyHx");
  CurveRows high = rows_of("8E", 300.0, "EyHx");
  low.scan_rate = high.scan_rate = 64.0;
  for (CurveRows* const rows : {&low, &high}) {
    std::ranges::for_each(rows->points, [](CurvePoint& point) { point.phase = -120.0; });
  }
  const std::string own = folder.write("own.csv", table({low, high}));
  const std::string plain =
      folder.write("plain.csv", "station,data_type,frequency_Hz,resistivity_ohm_m\n5,ExHy,1,10\n");
  const Proposals proposals = proposals_for({own, plain});
  EXPECT_EQ(proposals.choices.turn_ey, TurnEy::where_needed);
  const ImportPlan plan = plan_for({own, plain}, proposals.choices);
  ASSERT_EQ(plan.sections.size(), 2U);
  const PlannedSection& first = plan.sections[0];
  EXPECT_EQ(first.line, "7E");
  EXPECT_EQ(first.rate, 64.0F);
  EXPECT_EQ(first.own_stations, 2U);
  EXPECT_EQ(first.editable, std::vector<PlanCell>{PlanCell::turn_ey});
  EXPECT_TRUE(first.turn_ey);
  const PlannedSection& second = plan.sections[1];
  EXPECT_EQ(second.line, proposals.choices.decode[decode_line_number].specified);
  EXPECT_EQ(second.editable, (std::vector<PlanCell>{PlanCell::line, PlanCell::rate}));
  ASSERT_EQ(
      run_import(proposals.choices, {own, plain}, ImportMode::import, report, {}, SharedStations::ask, &plan),
      0);
  EXPECT_EQ(readings("FileID > 0 AND LineNumber = '7E' AND SampleRate = 64").size(), 1U);
  EXPECT_EQ(raw(300.0, "EyHx").curve.value(2, 0), 60.0F);
  EXPECT_EQ(raw(5.0, "ExHy").curve.count(), 1U);
}

TEST_F(StationTables, A_line_without_a_letter_is_planned_as_it_is_stored) {
  choices.line_direction = LineDirection::local_north;
  const std::string file = folder.write("a.csv", table({rows_of("200", 1.0, "ExHy")}));
  EXPECT_EQ(plan_for({file}, choices).sections.at(0).line, "200N");
  ASSERT_EQ(import({file}), 0);
  EXPECT_EQ(readings("FileID > 0 AND LineNumber = '200N'").size(), 1U);
}

TEST_F(StationTables, What_cannot_be_read_leaves_the_earlier_readings) {
  const std::string file = folder.write("a.csv", table({rows_of("1E", 1.0, "ExHy")}));
  ASSERT_EQ(import({file}), 0);
  ASSERT_EQ(raw_readings(), 1);
  for (const char* const text : {"station;data_type;frequency_Hz;phase_deg\n1;ExHy;1;2\n",
                                 "station,data_type,frequency_Hz,phase_deg\n1,ExHy,1,45\n2,ExHy,\"0,5\",45\n",
                                 "station,data_type,frequency_Hz,phase_deg\n1,\"ExHy,1,45\n"}) {
    SCOPED_TRACE(text);
    ASSERT_EQ(import({folder.write("a.csv", text)}), 0);
    EXPECT_NE(report.files[0].failure, "");
    EXPECT_EQ(raw_readings(), 1);
  }
  CurveRows bad = rows_of(std::string(33, 'x'), 1.0, "ExHy");
  ASSERT_EQ(import({folder.write("b.csv", table({bad, rows_of("2E", 1.0, "ExHy")}))}), 0);
  EXPECT_TRUE(told(0, "is longer than 32 characters"));
  EXPECT_EQ(report.files[0].readings, 1);
}

// Else the stations between would be on the way to the map's origin.
TEST_F(StationTables, Stn_lines_without_a_place_are_left_out) {
  (void)folder.write("a.stn", "100 1000 2000 0\n150 x 2000 50\n200 1100 2000 100\n");
  ASSERT_EQ(import({folder.write("a.avg",
                                 "skp Station Freq Comp Resistivity Phase\n 2 100 1 ExHy 10 500\n"
                                 " 2 150 1 ExHy 10 500\n")}),
            0);
  EXPECT_EQ(place_of("200E", 150.0).MapX, 1050.0);
  EXPECT_EQ(place_of("200E", 150.0).Elevation, 50.0) << "0 is a height among others";
  EXPECT_TRUE(told(0, "is not a number, the station is left out"));
}

TEST_F(StationTables, A_station_without_values_is_named_and_the_others_come_in) {
  ASSERT_EQ(import({folder.write("a.avg",
                                 "skp Station Freq Comp Resistivity Phase\n 2 100 1 ExHy * *\n"
                                 " 2 150 1 ExHy 10 500\n")}),
            0);
  EXPECT_EQ(stations(), std::vector<double>{150.0});
  const std::vector<std::string> remarks = Module_data_file::remark_lines(report.files.at(0));
  EXPECT_NE(std::ranges::find(remarks, "station 100 has no values"), remarks.end())
      << ::testing::PrintToString(remarks);
}

TEST_F(StationTables, Stn_files_of_all_kinds) {
  const std::string avg =
      "skp Station Freq Comp Resistivity Phase\n 2 100 1 ExHy 10 500\n 2 150 1 ExHy 10 500\n 2 900 1 ExHy 10 "
      "500\n";
  for (const std::string stn :
       {"<html><body>\"Station\" \"GridE\" \"GridN\" \"Elev\"\n1E2\t11\t12\t13\n200 21 22 23\n",
        "\"\"\"dot\"\"\",\"\"\"e\"\"\"\n200,21,22,23\n100,11,12,13\n"}) {
    new_survey(std::to_string(stn.size()) + ".mdb");
    EXPECT_NE(folder.write("a.STN", stn), "");
    ASSERT_EQ(import({folder.write("a.avg", avg)}), 0);
    EXPECT_EQ(place_of("200E", 100.0).MapX, 11.0);
    EXPECT_EQ(place_of("200E", 150.0).MapY, 17.0);
    EXPECT_EQ(place_of("200E", 150.0).Elevation, 18.0);
    EXPECT_TRUE(told(0, "1 station is not in the .stn file, which gives no place there"));
  }
}
